#!/usr/bin/python3
"""The tempo of a three-minute song: CPU time of the whole command, beside the tempo programs of Debian that are installed
(soundstretch, aubio-tools, bpm-tools with sox, vamp-examples) in the same run; prints figure and budget side by side and
exits 1 when one is missed. Programs that read no MP3 are given what lame decodes, which counts. Needs ffmpeg, lame.
Usage: bench/tempo.py [ROUNDS]"""
import array
import glob
import math
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
import wave

sys.dont_write_bytecode = True
from whole_command import BUILD, best_of, finish, report  # noqa: E402

OSTRELLE = str(BUILD / "bin/ostrelle")
RATE = 44100
MOST_CPU = 120
OTHER_KINDS = {"vbr.mp3": ["-q:a", "2"], "flac": [], "ogg": ["-c:a", "libvorbis"], "opus": [], "m4a": [], "wma": []}


def write_song(path, bpm=124, seconds=180):
    """Drums and a bass, bar after bar."""
    random.seed(1)
    beat = round(60 / bpm * RATE)
    bar = [0.0] * (4 * beat)

    def add(at, seconds, level, sound):
        for i in range(int(seconds * RATE)):
            bar[(int(at * beat) + i) % len(bar)] += level * sound(i / RATE)

    for n in range(4):
        add(n, 0.2, 0.4, lambda t: math.sin(2 * math.pi * (50 + 40 * math.exp(-30 * t)) * t) * math.exp(-12 * t))
        add(n, 0.3, 0.1, lambda t: math.sin(2 * math.pi * 110 * t) + math.sin(2 * math.pi * 220 * t))
        add(n, 0.05, 0.08, lambda t: random.uniform(-1, 1) * math.exp(-60 * t))
        add(n + 0.5, 0.05, 0.08, lambda t: random.uniform(-1, 1) * math.exp(-60 * t))
    for n in (1, 3):
        add(n, 0.2, 0.25, lambda t: random.uniform(-1, 1) * math.exp(-25 * t))
    left = [max(-1, min(1, value + random.uniform(-0.01, 0.01))) for value in bar]
    right = [max(-1, min(1, value + random.uniform(-0.01, 0.01))) for value in bar]
    frames = array.array("h", (round(32000 * value) for pair in zip(left, right) for value in pair)).tobytes()
    with wave.open(str(path), "wb") as file:
        file.setparams((2, 2, RATE, 0, "NONE", ""))
        for _ in range(round(seconds * RATE / len(bar))):
            file.writeframes(frames)


def others(path):
    """The commands of the installed programs, by name."""
    wav = path.with_suffix(".decoded.wav") if path.suffix == ".mp3" else path
    decode = "" if wav == path else f"lame --quiet --decode {path} {wav} && "
    found = {"aubio": f"aubio tempo {path}", "aubiotrack": f"aubiotrack -i {path}",
             "bpm": f"{decode}sox {wav} -t raw -r 44100 -e float -c 1 - | bpm",
             "soundstretch": f"{decode}soundstretch {wav} -bpm"}
    commands = {name: ["sh", "-c", command] for name, command in found.items() if shutil.which(name)}
    plugins = glob.glob("/usr/lib/*/vamp/vamp-example-plugins.so")
    if plugins and shutil.which("vamp-simple-host"):
        plugin = f"VAMP_PATH={os.path.dirname(plugins[0])} vamp-simple-host vamp-example-plugins:fixedtempo"
        commands["vamp"] = ["sh", "-c", f"{plugin} {path}"]
    return commands


def main():
    rounds = int(sys.argv[1]) if len(sys.argv) > 1 else 9
    with tempfile.TemporaryDirectory() as name:
        song = pathlib.Path(name) / "song.wav"
        write_song(song)
        compressed = song.with_suffix(".mp3")
        subprocess.run(["ffmpeg", "-loglevel", "error", "-i", song, "-b:a", "192k", compressed], check=True)
        for path in (compressed, song):
            commands = {"ostrelle": [OSTRELLE, "inspect", str(path)], **others(path)}
            spent = {key: best[1] for key, best in best_of(commands, rounds, silent=True).items()}
            ours = spent.pop("ostrelle")
            beside = ", ".join(f"{key} {figure:.0f}" for key, figure in spent.items())
            report(f"tempo of a 3-minute {path.suffix}, CPU", ours, MOST_CPU, "ms", beside)
            for key, figure in spent.items():
                report(f"the same beside {key}", ours, figure, "ms")
        for kind, options in OTHER_KINDS.items():
            path = song.with_suffix("." + kind)
            subprocess.run(["ffmpeg", "-loglevel", "error", "-i", song, *options, path], check=True)
            spent = best_of({"": [OSTRELLE, "inspect", str(path)]}, rounds, silent=True)[""][1]
            print(f"     {kind:<10} {spent:8.1f} ms", flush=True)
    finish()


main()
