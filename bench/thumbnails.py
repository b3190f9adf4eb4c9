#!/usr/bin/python3
"""Thumbnails of 24-megapixel pictures, whole command, beside vipsthumbnail and gdk-pixbuf-thumbnailer in the same run;
prints figure and budget side by side and exits 1 when one is missed. Needs libvips-tools and libgdk-pixbuf2.0-bin.
Usage: bench/thumbnails.py [ROUNDS]"""
import os
import pathlib
import subprocess
import sys
import tempfile
import time

BUILD = pathlib.Path(os.environ.get("OSTRELLE_BUILD", pathlib.Path(__file__).resolve().parents[1] / "build/release"))
RESULTS = []


def report(what, figure, budget, unit, more=""):
    ok = figure <= budget
    RESULTS.append(ok)
    print(f"{'ok  ' if ok else 'MISS'} {what:<48} {figure:9.2f} {unit:<6} budget {budget:.4g}{'  ' + more if more else ''}",
          flush=True)


def run(command):
    """(wall ms, CPU ms, peak MB) of a command with all its processes, each of which counts by itself for the peak."""
    begin = time.monotonic()
    pid = os.posix_spawnp(command[0], command, os.environ)
    _, status, usage = os.wait4(pid, 0)
    wall = (time.monotonic() - begin) * 1000
    if status != 0:
        sys.exit(f"{' '.join(command)}: status {status}")
    return wall, (usage.ru_utime + usage.ru_stime) * 1000, usage.ru_maxrss / 1024


def picture(folder, name):
    """Gradients with noise: neither so smooth nor so rough that it would favour a decoder."""
    path = str(folder / name)
    subprocess.run(["convert", "-size", "6000x4000", "gradient:navy-gold", "-attenuate", "0.3", "+noise", "Gaussian",
                    "-quality", "90" if name.endswith("jpg") else "65", "PNG24:" + path if name.endswith("png") else path],
                   check=True)
    return path


def measure(name, path, folder, rounds):
    output = str(folder / "out.png")
    commands = {"ostrelle": [str(BUILD / "bin/ostrelle"), "thumbnail", path, "--size", "256", "--output", output],
                "vips": ["vipsthumbnail", path, "-s", "256", "-o", output],
                "gdk-pixbuf": ["gdk-pixbuf-thumbnailer", "-s", "256", path, output]}
    best = {key: [float("inf")] * 3 for key in commands}
    for _ in range(rounds):
        for key, command in commands.items():
            best[key] = [min(pair) for pair in zip(best[key], run(command))]
    others = [best["vips"], best["gdk-pixbuf"]]
    beside = ", ".join(f"{key} {best[key][0]:.0f} ms ({best[key][1]:.0f} CPU) {best[key][2]:.1f} MB" for key in best)
    report(f"thumbnail of a 24-megapixel {name}, wall", best["ostrelle"][0], 1.2 * min(o[0] for o in others), "ms", beside)
    memory = 16 if name == "JPEG" else min(o[2] for o in others) / 2
    report("its peak memory, largest process", best["ostrelle"][2], memory, "MB")


def main():
    rounds = int(sys.argv[1]) if len(sys.argv) > 1 else 9
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        measure("JPEG", picture(folder, "picture.jpg"), folder, rounds)
        measure("PNG", picture(folder, "picture.png"), folder, rounds)
    sys.exit(0 if all(RESULTS) else 1)


main()
