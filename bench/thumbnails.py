#!/usr/bin/python3
"""Thumbnails of 24-megapixel pictures, whole command, beside vipsthumbnail and gdk-pixbuf-thumbnailer in the same run;
prints figure and budget side by side and exits 1 when one is missed. Needs libvips-tools and libgdk-pixbuf2.0-bin.
Usage: bench/thumbnails.py [ROUNDS]"""
import pathlib
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
from whole_command import BUILD, best_of, finish, report  # noqa: E402


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
    best = best_of(commands, rounds)
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
    finish()


main()
