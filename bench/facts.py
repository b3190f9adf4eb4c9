#!/usr/bin/python3
"""Facts of one file, whole command, beside ffprobe, mediainfo, exiftool and vipsheader in the same run, and of a thousand
mixed files; prints figure and budget side by side and exits 1 when one is missed. Needs ffmpeg, mediainfo,
libimage-exiftool-perl, libvips-tools, imagemagick, libheif-examples, libjxl-tools.
Usage: bench/facts.py [ROUNDS]"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
from whole_command import BUILD, best_of, finish, report, run  # noqa: E402

OSTRELLE = str(BUILD / "bin/ostrelle")
COMMON_AUDIO = {"song.wav": [], "song.aiff": [], "song.flac": [], "song.mp3": ["-b:a", "192k"], "song.ogg": [],
                "song.opus": [], "song.m4a": []}
RARE_AUDIO = {"song.wma": [], "song.ac3": [], "song.mka": ["-c:a", "libvorbis"], "song.caf": []}
COMMON_IMAGES = ("photo.png", "photo.jpg", "photo.gif", "photo.webp", "photo.tif", "photo.bmp")
RARE_IMAGES = ("photo.psd", "photo.exr", "photo.heic", "photo.jxl", "photo.jp2", "photo.svg")
MOST_SECONDS = 4


def make_files(folder):
    sound = ["-f", "lavfi", "-i", "sine=f=220:d=20,aformat=channel_layouts=stereo"]
    for name, options in {**COMMON_AUDIO, **RARE_AUDIO}.items():
        subprocess.run(["ffmpeg", "-v", "error", "-y", *sound, *options, folder / name], check=True)
    source = folder / "photo.png"
    subprocess.run(["convert", "-size", "1500x1000", "plasma:navy-gold", "-depth", "8", source], check=True)
    for name in COMMON_IMAGES[1:] + ("photo.psd", "photo.jp2"):
        subprocess.run(["convert", source, folder / name], check=True)
    subprocess.run(["ffmpeg", "-v", "error", "-y", "-i", source, folder / "photo.exr"], check=True)
    subprocess.run(["heif-enc", "-o", folder / "photo.heic", source], check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cjxl", "-e", "1", source, folder / "photo.jxl"], check=True, stderr=subprocess.DEVNULL)
    (folder / "photo.svg").write_text("<svg xmlns='http://www.w3.org/2000/svg' width='90' height='60'/>")


def measure(path, rounds, share, others):
    beside_us = {name: [*command, str(path)] for name, command in others.items()}
    # Those that know the kind: there are pictures that ffprobe does not.
    beside_us = {name: command for name, command in beside_us.items()
                 if subprocess.run(command, capture_output=True).returncode == 0}
    best = best_of({"ostrelle": [OSTRELLE, "inspect", "--no-tempo", str(path)], **beside_us}, rounds, silent=True)
    least = min((best[name][0] for name in beside_us), default=float("inf"))
    beside = ", ".join(f"{name} {best[name][0]:.1f}" for name in beside_us)
    report(f"facts of {path.name}, wall", best["ostrelle"][0], share * least, "ms", beside)


def measure_many(folder):
    many = folder / "many"
    many.mkdir()
    names = [name for name in (*COMMON_AUDIO, *RARE_AUDIO, *COMMON_IMAGES, *RARE_IMAGES)]
    for i in range(1000):
        name = names[i % len(names)]
        os.link(folder / name, many / f"{i:04}{pathlib.Path(name).suffix}")
    wall, cpu, _ = run([OSTRELLE, "inspect", "--json", "--no-tempo", "--jobs", "2", "--recursive", str(many)], silent=True)
    report("facts of 1000 mixed files, wall", wall / 1000, MOST_SECONDS, "s", f"{cpu / 1000:.2f} s CPU")
    shutil.rmtree(many)


def main():
    rounds = int(sys.argv[1]) if len(sys.argv) > 1 else 15
    ffprobe = {"ffprobe": ["ffprobe", "-v", "error", "-show_format", "-show_streams"]}
    tools = {**ffprobe, "mediainfo": ["mediainfo"], "exiftool": ["exiftool"]}
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        make_files(folder)
        for each in COMMON_AUDIO:
            measure(folder / each, rounds, 0.75, tools)
        for each in COMMON_IMAGES:
            measure(folder / each, rounds, 0.75, {**tools, "vipsheader": ["vipsheader"]})
        for each in (*RARE_AUDIO, *RARE_IMAGES):
            measure(folder / each, rounds, 1, ffprobe)
        measure_many(folder)
    finish()


main()
