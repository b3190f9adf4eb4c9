#!/usr/bin/python3
"""How long a sound takes from the wish to the sound server, and to the ear of a recorder behind it, by kind of file; how
long it is heard after the wish for silence; and what playing costs. Prints figure and budget side by side and exits 1 when
one is missed. Needs pulseaudio, pulseaudio-utils and ffmpeg; plays into the void on a server of its own.
Usage: bench/playback.py [ROUNDS]"""
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "tests"))
sys.dont_write_bytecode = True

from harness.desktop import BUILD  # noqa: E402
from harness.sound import RATE, Recorder, SoundServer, children  # noqa: E402
from harness.waiting import holds_for, wait_until  # noqa: E402

RESULTS = []
LIGHT = {"a.wav": [], "a.aiff": [], "a.flac": [], "a.ogg": [], "a.opus": ["-c:a", "libopus"], "a.mp3": []}
EXTRA = {"a.m4a": [], "a.wma": [], "a.ac3": [], "a.mkv": ["-c:a", "aac"],
         "film.mp4": ["-f", "lavfi", "-i", "testsrc=size=1280x720:duration=20", "-map", "0:a", "-map", "1:v"]}


def report(what, figure, budget, unit, more=""):
    ok = figure <= budget
    RESULTS.append(ok)
    print(f"{'ok  ' if ok else 'MISS'} {what:<52} {figure:9.2f} {unit:<3} budget {budget:g}{'  ' + more if more else ''}",
          flush=True)


class Driver:
    def __init__(self, environment):
        self.process = subprocess.Popen([BUILD / "bin/playback-driver"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        env=environment, text=True, bufsize=1)

    def say(self, line):
        self.process.stdin.write(line + "\n")
        return time.monotonic()

    def hears(self, word):
        answer = self.process.stdout.readline().strip()
        if answer != word:
            sys.exit(f"the player says {answer!r} and not {word!r}")
        return time.monotonic()


def cpu_ms(pid):
    with open(f"/proc/{pid}/schedstat") as file:
        return int(file.read().split()[0]) / 1e6


def measure(driver, recorder, path, rounds, budget):
    handed, heard, silent = [], [], []
    for _ in range(rounds):
        recorder.forget()
        begin = driver.say(str(path))
        handed.append((driver.hears("started") - begin) * 1000)
        wait_until(lambda: recorder.first, "sound", interval=0.001)
        heard.append((recorder.first - begin) * 1000)
        holds_for(lambda: not recorder.is_silent(0.2), "it goes on", 0.3)
        stop = driver.say("")
        wait_until(lambda: recorder.is_silent(0.7), "silence")
        silent.append((recorder.last - stop) * 1000)
    report(f"{path.name}: wish to the server, median of {rounds}", statistics.median(handed), budget, "ms",
           f"max {max(handed):.0f}")
    report(f"{path.name}: wish to the recorder, median of {rounds}", statistics.median(heard), budget, "ms",
           f"max {max(heard):.0f}")
    return silent


def measure_cost(driver, path):
    driver.say(str(path))
    driver.hears("started")
    holds_for(lambda: True, "plays", 1)
    players = children(driver.process.pid)
    before = sum(map(cpu_ms, [driver.process.pid, *players]))
    holds_for(lambda: True, "plays", 10)
    spent = sum(map(cpu_ms, [driver.process.pid, *players])) - before
    report(f"{path.name}: CPU per second of playing", spent / 10, 10, "ms", f"{len(players)} processes")
    driver.say("")


def main():
    rounds = int(sys.argv[1]) if len(sys.argv) > 1 else 9
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        noise = ["-f", "lavfi", "-i", f"anoisesrc=amplitude=0.3:sample_rate={RATE}:duration=20", "-ac", "2"]
        for kind, options in (LIGHT | EXTRA).items():
            inputs = noise[:4] + options[:4] if "-i" in options else noise[:4]
            rest = noise[4:] + (options[4:] if "-i" in options else options)
            subprocess.run(["ffmpeg", "-v", "error", *inputs, *rest, str(folder / kind)], check=True)
        server = SoundServer(folder)
        try:
            server.start()
            recorder, driver = Recorder(server), Driver({**os.environ, **server.environment})
            silent = []
            for kind in LIGHT:
                silent += measure(driver, recorder, folder / kind, rounds, 80)
            for kind in EXTRA:
                silent += measure(driver, recorder, folder / kind, rounds, 200)
            report(f"wish for silence to silence, worst of {len(silent)}", max(silent), 150, "ms",
                   f"median {statistics.median(silent):.0f}")
            for kind in ("a.flac", "a.mp3", "a.m4a"):
                measure_cost(driver, folder / kind)
            driver.process.stdin.close()
            driver.process.wait()
            recorder.close()
        finally:
            server.kill()
    sys.exit(0 if all(RESULTS) else 1)


main()
