#!/usr/bin/python3
"""The tempo of a three-minute song: CPU time of a media helper from its start to its end, beside the tempo programs of
Debian that are installed (bpm-tools with sox, aubio-tools) in the same run; prints figure and budget side by side and
exits 1 when one is missed. Needs ffmpeg.
Usage: bench/tempo.py [ROUNDS]      the comparison
       bench/tempo.py --of FILE...  the tempo of files, and what it took"""
import array
import math
import os
import pathlib
import random
import shutil
import socket
import struct
import subprocess
import sys
import tempfile
import wave

BUILD = pathlib.Path(os.environ.get("OSTRELLE_BUILD", pathlib.Path(__file__).resolve().parents[1] / "build/release"))
RATE = 44100
# HelperRequest and HelperAnswer of src/media/common/HelperProtocol.h.
REQUEST, ANSWER = struct.Struct("=8I16s"), struct.Struct("=10I")
MAGIC, TEMPO, DONE, DECLINED = 0x4D74734F, 5, 0, 1
KINDS = {"mp3": ["-b:a", "192k"], "vbr.mp3": ["-q:a", "2"], "wav": [], "flac": [], "ogg": ["-c:a", "libvorbis"],
         "opus": [], "m4a": [], "wma": []}
RESULTS = []


def report(what, figure, budget, more=""):
    ok = figure <= budget
    RESULTS.append(ok)
    print(f"{'ok  ' if ok else 'MISS'} {what:<44} {figure:8.1f} ms  budget {budget:.4g}{'  ' + more if more else ''}", flush=True)


def cpu_ms(usage):
    return (usage.ru_utime + usage.ru_stime) * 1000


def ask(helper, path):
    """(status, answer as text, CPU ms of the whole life of the helper)"""
    ours, theirs = socket.socketpair()
    with ours:
        actions = [(os.POSIX_SPAWN_DUP2, theirs.fileno(), 0)]
        pid = os.posix_spawn(BUILD / "bin" / helper, [helper], {}, file_actions=actions)
        theirs.close()
        with open(path, "rb") as file:
            request = REQUEST.pack(MAGIC, 1, TEMPO, 0, 0, 0, 20, 16384, b"")
            socket.send_fds(ours, [request], [file.fileno()])
        answer = ours.recv(ANSWER.size, socket.MSG_WAITALL)
        status, size = ANSWER.unpack(answer)[2::7] if len(answer) == ANSWER.size else (None, 0)
        text = ours.recv(size, socket.MSG_WAITALL).decode() if size else ""
    return status, text, cpu_ms(os.wait4(pid, 0)[2])


def tempo_of(path):
    """(answer, CPU ms of the helpers that it takes)"""
    status, text, spent = ask("ostrelle-media", path)
    if status == DECLINED:
        status, text, more = ask("ostrelle-media-extra", path)
        spent += more
    return text if status == DONE else f"status {status}", spent


def whole_command(command):
    """CPU ms of a shell command with all its processes."""
    pid = os.fork()
    if pid == 0:
        null = os.open(os.devnull, os.O_WRONLY)
        os.dup2(null, 1)
        os.dup2(null, 2)
        os.execvp("sh", ["sh", "-c", command])
    _, status, usage = os.wait4(pid, 0)
    if status != 0:
        sys.exit(f"{command}: status {status}")
    return cpu_ms(usage)


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


def compare(rounds):
    with tempfile.TemporaryDirectory() as name:
        song = pathlib.Path(name) / "song.wav"
        write_song(song)
        files = {}
        for kind, options in KINDS.items():
            files[kind] = song if kind == "wav" else song.with_suffix("." + kind)
            if kind != "wav":
                subprocess.run(["ffmpeg", "-loglevel", "error", "-i", song, *options, files[kind]], check=True)
        others = {}
        if shutil.which("bpm") and shutil.which("sox"):
            others["bpm"] = f"sox -V1 {files['mp3']} -t raw -r 44100 -e float -c 1 - | bpm"
        if shutil.which("aubio"):
            others["aubio"] = f"aubio tempo {files['mp3']}"
        ours = {kind: [] for kind in files}
        theirs = {key: [] for key in others}
        for _ in range(rounds):
            for kind, path in files.items():
                ours[kind].append(tempo_of(path))
            for key, command in others.items():
                theirs[key].append(whole_command(command))
        beside = ", ".join(f"{key} {min(theirs[key]):.0f}" for key in others)
        best = {kind: min(spent for _, spent in runs) for kind, runs in ours.items()}
        report("tempo of a 3-minute MP3, helper", best["mp3"], 120, beside)
        for key in others:
            report(f"the same beside {key}", best["mp3"], min(theirs[key]))
        for kind, runs in ours.items():
            print(f"     {kind:<8} {best[kind]:8.1f} ms  {' '.join(sorted({answer for answer, _ in runs}))}")
    sys.exit(0 if all(RESULTS) else 1)


def main():
    if sys.argv[1:2] == ["--of"]:
        for path in sys.argv[2:]:
            answer, spent = tempo_of(path)
            print(f"{path}: {answer} {spent:.1f} ms")
    else:
        compare(int(sys.argv[1]) if len(sys.argv) > 1 else 9)


main()
