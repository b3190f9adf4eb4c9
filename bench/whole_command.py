"""What the scripts that time whole commands share."""
import os
import pathlib
import sys
import time

BUILD = pathlib.Path(os.environ.get("OSTRELLE_BUILD", pathlib.Path(__file__).resolve().parents[1] / "build/release"))
RESULTS = []


def report(what, figure, budget, unit, more=""):
    ok = figure <= budget
    RESULTS.append(ok)
    print(f"{'ok  ' if ok else 'MISS'} {what:<48} {figure:9.2f} {unit:<6} budget {budget:.4g}{'  ' + more if more else ''}",
          flush=True)


def run(command, silent=False):
    """(wall ms, CPU ms, peak MB) of a command with all its processes, each of which counts by itself for the peak."""
    quiet = [(os.POSIX_SPAWN_OPEN, 1, os.devnull, os.O_WRONLY, 0), (os.POSIX_SPAWN_OPEN, 2, os.devnull, os.O_WRONLY, 0)]
    begin = time.monotonic()
    pid = os.posix_spawnp(command[0], command, os.environ, file_actions=quiet if silent else [])
    _, status, usage = os.wait4(pid, 0)
    wall = (time.monotonic() - begin) * 1000
    if status != 0:
        sys.exit(f"{' '.join(command)}: status {status}")
    return wall, (usage.ru_utime + usage.ru_stime) * 1000, usage.ru_maxrss / 1024


def best_of(commands, rounds, silent=False):
    """The least (wall ms, CPU ms, peak MB) of each of several commands, by name, in turns."""
    best = {key: [float("inf")] * 3 for key in commands}
    for _ in range(rounds):
        for key, command in commands.items():
            best[key] = [min(pair) for pair in zip(best[key], run(command, silent))]
    return best


def finish():
    sys.exit(0 if all(RESULTS) else 1)
