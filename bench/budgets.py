#!/usr/bin/python3
"""Measures the running program against its budgets and prints figure and budget side by side; exits 1 when one is missed.
Usage: bench/budgets.py [--compare] [NAME ...]
--compare measures the clipboard managers that are installed (parcellite, clipit, copyq, xfce4-clipman) in the same run."""
import argparse
import json
import math
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "tests"))
sys.dont_write_bytecode = True

from harness.desktop import BUILD, Desktop  # noqa: E402
from harness.drag import DragSource, uri  # noqa: E402
from harness.keyboard import SHIFT, SUPER, Keyboard, V  # noqa: E402
from harness.loupe import Loupe, show_picture  # noqa: E402
from harness.peer import Peer, xclip  # noqa: E402
from harness.program import Program  # noqa: E402
from harness.waiting import holds_for, wait_until  # noqa: E402
from harness.wire import Wire  # noqa: E402

RESULTS = []
TICKS = os.sysconf("SC_CLK_TCK")


def report(what, figure, budget, unit, more=""):
    ok = figure <= budget
    RESULTS.append(ok)
    print(f"{'ok  ' if ok else 'MISS'} {what:<58} {figure:9.2f} {unit:<6} budget {budget:g}{'  ' + more if more else ''}",
          flush=True)


def memory(pid):
    """(resident, proportional) MB"""
    values = {}
    with open(f"/proc/{pid}/smaps_rollup") as file:
        for line in file:
            key, _, rest = line.partition(":")
            if rest.strip().endswith("kB"):
                values[key] = int(rest.split()[0]) / 1024
    return values["Rss"], values["Pss"]


def cpu_ms(pid):
    total = 0.0
    for task in os.listdir(f"/proc/{pid}/task"):
        with open(f"/proc/{pid}/task/{task}/schedstat") as file:
            total += int(file.read().split()[0]) / 1e6
    return total


def wakeups(pid):
    """Context switches by thread."""
    switches = {}
    for task in os.listdir(f"/proc/{pid}/task"):
        with open(f"/proc/{pid}/task/{task}/status") as file:
            switches[task] = sum(int(line.split()[1]) for line in file if "ctxt_switches" in line)
    return switches


def wakeups_since(pid, before):
    return sum(count - before.get(task, 0) for task, count in wakeups(pid).items())


def copies(wire):
    return wire.status()["counts"]["clipboard"]


def fill_with_images(program, count=200):
    """A history of `count` one-MiB images, written as the store has it."""
    import base64
    import uuid
    folder = program.data_folder()
    os.makedirs(folder, mode=0o700, exist_ok=True)
    header = base64.b64decode("iVBORw0KGgoAAAANSUhEUgAAAgAAAAIACAIAAAB7GkOtAAAA")
    with open(os.path.join(folder, "clipboard.json"), "w") as file:
        file.write("[")
        for number in range(count):
            data = base64.b64encode(header + os.urandom(1024 * 1024 - len(header))).decode()
            file.write(("," if number else "") + json.dumps(
                {"id": str(uuid.uuid4()).upper(), "kind": "image", "imageData": data, "imageType": "public.png",
                 "date": 800000000.0 - number, "pinned": False}, separators=(",", ":")))
        file.write("]")
    program.set("clipboard.limit", count + 300)


def quiet(program, seconds):
    holds_for(lambda: program.process.poll() is None, "runs", seconds)


def measure_memory(desktop):
    with Program(desktop) as program:
        quiet(program, 3)
        resident, proportional = memory(program.process.pid)
        report("memory idle, empty history, resident", resident, 45, "MB")
        report("memory idle, empty history, proportional", proportional, 22, "MB")


def measure_memory_images(desktop):
    program = Program(desktop, start=False)
    fill_with_images(program)
    program.start()
    wire = Wire(program)
    wait_until(lambda: copies(wire) == 200, "the history is loaded", 30)
    wire.close()
    quiet(program, 3)
    report("memory idle, 200 one-MiB images, resident", memory(program.process.pid)[0], 80, "MB")
    program.stop()
    shutil.rmtree(program.data_folder())


def measure_memory_copy(desktop):
    """After a photograph of 24 megapixels was copied as JPEG, hence converted, and the panel was opened and closed."""
    photograph = subprocess.run(["convert", "-size", "300x200", "-seed", "7", "plasma:navy-gold", "-resize", "6000x4000!",
                                 "-quality", "90", "jpeg:-"], capture_output=True, check=True).stdout
    with Program(desktop) as program:
        quiet(program, 2)
        idle = memory(program.process.pid)[0]
        wire = Wire(program)
        xclip(desktop, photograph, "image/jpeg")
        wait_until(lambda: copies(wire) == 1, "the photograph is recorded", 30)
        wire.ask("open", tool="clipboard")
        quiet(program, 3)
        wire.ask("close")
        quiet(program, 3)
        wire.close()
        report("memory idle after a copied 24-megapixel JPEG, resident", memory(program.process.pid)[0], 45, "MB",
               f"{idle:.1f} before")
        program.call("clipboard", "clear")


def painted(desktop):
    """The lozenge is black in the middle of the top edge, where the desktop is not."""
    return desktop.frames.grab(desktop.frames.width // 2, 3, 1, 1).pixel(0, 0) == (0, 0, 0)


def measure_start(desktop):
    Peer(desktop, "Below", (0, 0, 1920, 1080))
    times = []
    for _ in range(7):
        program = Program(desktop, start=False)
        wait_until(lambda: not painted(desktop), "the panel is gone")
        begin = time.monotonic()
        program.start(wait=False)
        wait_until(lambda: painted(desktop), "the panel is on screen", interval=0.001)
        times.append((time.monotonic() - begin) * 1000)
        wait_until(program.is_listening, "the program answers")
        program.stop()
    report("start to the panel on screen, median of 7", statistics.median(times), 150, "ms", f"max {max(times):.0f}")


def measure_first_frame(desktop):
    Peer(desktop, "Below", (0, 0, 1920, 1080))
    middle = desktop.frames.width // 2
    times = []
    with Program(desktop) as program:
        wire = Wire(program)
        for _ in range(11):
            closed = desktop.settled(middle - 200, 0, 400, 60, quiet=0.8).data
            begin = time.monotonic()
            wire.ask("open")
            wait_until(lambda: desktop.frames.grab(middle - 200, 0, 400, 60).data != closed, "the first frame", interval=0.001)
            times.append((time.monotonic() - begin) * 1000)
            wire.ask("close")
        wire.close()
    report("open to its first frame on screen, median of 11", statistics.median(times), 30, "ms", f"max {max(times):.0f}")


def measure_shortcut(desktop):
    """From the press of the last key, in another program, to the first frame of the opening."""
    Peer(desktop, "Below", (0, 0, 1920, 1080)).activate()
    middle = desktop.frames.width // 2
    area = (middle - 200, 0, 400, 60)
    keyboard = Keyboard(desktop)
    times = []
    with Program(desktop) as program:
        wire = Wire(program)
        for _ in range(11):
            keyboard.hold(SUPER, SHIFT)
            closed = desktop.settled(*area, quiet=0.8).data
            begin = time.monotonic()
            keyboard.hold(V)
            wait_until(lambda: desktop.frames.grab(*area).data != closed, "the first frame", interval=0.001)
            times.append((time.monotonic() - begin) * 1000)
            keyboard.release()
            wire.ask("close")
        wire.close()
    keyboard.close()
    report("shortcut to its first frame on screen, median of 11", statistics.median(times), 30, "ms",
           f"max {max(times):.0f}")


def measure_wakeups(desktop):
    with Program(desktop) as program:
        quiet(program, 3)
        before = wakeups(program.process.pid)
        cpu = cpu_ms(program.process.pid)
        time_span = 15
        quiet(program, time_span)
        report("wake-ups while idle, per 15 s", wakeups_since(program.process.pid, before), 0, "",
               f"{max(cpu_ms(program.process.pid) - cpu, 0):.2f} ms of CPU")


def copy_cost(desktop, pid, count, recorded=None):
    """CPU ms of one process per text copy of another program, `count` in a row."""
    before = cpu_ms(pid)
    for number in range(count):
        xclip(desktop, f"copied text number {number} {time.monotonic()}".encode())
        if recorded:
            recorded(number)
    holds_for(lambda: os.path.exists(f"/proc/{pid}"), "runs", 2)
    return (cpu_ms(pid) - before) / count


def measure_copies(desktop):
    with Program(desktop) as program:
        quiet(program, 1)
        report("CPU per text copy, 200 in a row", copy_cost(desktop, program.process.pid, 200), 1, "ms")
        program.call("clipboard", "clear")


def measure_copies_images(desktop):
    """The same above 200 MiB of history, each copy recorded by itself; bytes written to the disk beside it."""
    program = Program(desktop, start=False)
    fill_with_images(program)
    program.start()
    wire = Wire(program)
    wait_until(lambda: copies(wire) == 200, "the history is loaded", 30)

    def written():
        with open(f"/proc/{program.process.pid}/io") as file:
            return next(int(line.split()[1]) for line in file if line.startswith("write_bytes"))

    def recorded(number):
        wait_until(lambda: copies(wire) >= 201 + number, "recorded", interval=0.01)

    base = written()
    cpu = cpu_ms(program.process.pid)
    count = 60
    for number in range(count):
        xclip(desktop, f"text {number} ".encode() + b"t" * 2000)
        recorded(number)
    per_copy = (written() - base) / count
    report("bytes written per 2 kB text copy over 200 MiB of history", per_copy / 1024, 3 * 2 + 8, "KiB",
           f"{(cpu_ms(program.process.pid) - cpu) / count:.2f} ms of CPU each, questions included")
    base = written()
    images = 8
    for number in range(images):
        data = subprocess.run(["convert", "-size", "600x582", "xc:gray", "+noise", "random", "-define",
                               "png:compression-level=0", "png24:-"], capture_output=True, check=True).stdout
        xclip(desktop, data, "image/png")
        recorded(count + number)
    report("bytes written per 1 MiB image copy, by its size", (written() - base) / images / len(data), 5, "times")
    wire.close()
    program.stop()
    shutil.rmtree(program.data_folder())


def measure_gaps(desktop):
    owner = str(BUILD / "bin" / "peers" / "selection-owner")
    with Program(desktop) as program:
        wire = Wire(program)
        for mode in ("hang-targets", "hang-incr", "die-incr", "huge", "drip", "burst"):
            idle = wire.longest_gap(3)
            process = subprocess.Popen([owner, mode], env=desktop.environment, stdout=subprocess.DEVNULL)
            hostile = wire.longest_gap(4)
            process.kill()
            process.wait()
            report(f"longest gap with a clipboard owner: {mode}", max(0.0, hostile - idle), 16, "ms",
                   f"{hostile:.1f} beside {idle:.1f} idle")
        wire.close()


def measure_commands(desktop):
    with Program(desktop) as program:
        def median_of(*arguments):
            times = []
            for _ in range(15):
                begin = time.monotonic()
                program.call(*arguments)
                times.append((time.monotonic() - begin) * 1000)
            return statistics.median(times)

        report("ostrelle status, whole command, median of 15", median_of("status"), 25, "ms")
        report("second start handed over, median of 15", median_of(), 50, "ms")
        program.call("close")


def luminance(rgb):
    """By WCAG 2.1, "relative luminance"."""
    linear = [value / 12.92 if value <= 0.04045 else ((value + 0.055) / 1.055) ** 2.4 for value in (v / 255 for v in rgb)]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def film(desktop, area, seconds):
    """Every picture that a part of the screen shows from now on, each with the time of its coming."""
    frames, end = [], time.monotonic() + seconds

    def look():
        picture = desktop.frames.grab(*area)
        if not frames or picture.data != frames[-1][1].data:
            frames.append((time.monotonic(), picture))
        return time.monotonic() >= end

    wait_until(look, "the film is over", seconds + 1, interval=0.0005)
    return frames


class Lettering:
    """The title of a landing zone as it comes to rest: the pixels of its letters and those that are surely none."""

    LEAST_CONTRAST = 2

    def __init__(self, picture, left, top, width=40, height=14):
        levels = {(x, y): luminance(picture.pixel(left + x, top + y)) for x in range(width) for y in range(height)}
        highest, lowest = max(levels.values()), min(levels.values())
        self.left, self.top = left, top
        self.letters = [place for place, level in levels.items() if level > lowest + 0.7 * (highest - lowest)]
        self.ground = [place for place, level in levels.items() if level < lowest + 0.05 * (highest - lowest)]
        assert len(self.letters) > 20 and len(self.ground) > 100, "there is a title"

    def contrast(self, picture, top):
        """Of letters to ground (WCAG 2.1) if the title stands at this height, else 1."""
        def levels(places):
            return [luminance(picture.pixel(self.left + x, top + y)) for x, y in places]
        letters, ground = levels(self.letters), levels(self.ground)
        if min(letters) <= max(ground):
            return 1
        return (statistics.mean(letters) + 0.05) / (statistics.mean(ground) + 0.05)

    def is_seen(self, picture):
        """At any height: zones may come from above."""
        return any(self.contrast(picture, top) >= self.LEAST_CONTRAST for top in range(self.top + 1))


def measure_drags(desktop):
    """From the source's taking of the drag selection to the armed catch, at different times after the press; and from the
    drag's entering to the first frame of the opening and to the first in which the title of a landing zone can be read."""
    Peer(desktop, "Below", (0, 0, 1920, 1080))
    below = desktop.folder / "notes.txt"
    below.touch()
    middle = desktop.frames.width // 2
    area = (middle - 90, 0, 180, 170)
    noticed, moved, seen = [], [], []
    with Program(desktop) as program:
        wire = Wire(program)
        source = DragSource(desktop, "plain", "--type", "text/uri-list", uri(below) + "\r\n")
        for number in range(11):
            source.press()
            holds_for(lambda: True, "holds still", 0.05 + number * 0.013)
            desktop.run("xdotool", "mousemove", "130", "460", "mousemove", "131", "460")
            wait_until(lambda: "began" in source.said(), "the drag begins", interval=0.001)
            begin = time.monotonic()
            wait_until(lambda: wire.status()["dragCatchArmed"], "noticed", interval=0.001)
            noticed.append((time.monotonic() - begin) * 1000)

            # Below what is filmed: the server draws the pointer into its picture.
            desktop.settled(*area, quiet=0.5)
            point = str(middle), "300"
            hand = subprocess.Popen(["xdotool", "mousemove", *point, "mousemove_relative", "1", "0"],
                                    env=desktop.environment)
            wait_until(lambda: "entered" in source.said(), "the drag enters", interval=0.0005)
            begin = time.monotonic()
            frames = film(desktop, area, 0.4)
            hand.wait()
            at_rest = desktop.settled(*area)
            zone = wire.status()["dropZones"]["assets"]
            title = Lettering(at_rest, 70, round(zone["y"] + 35))
            moved.append((next(at for at, picture in frames if picture.data != frames[0][1].data) - begin) * 1000)
            seen.append((next(at for at, picture in frames if title.is_seen(picture)) - begin) * 1000)
            desktop.move_pointer(middle, 900)
            source.let_go()
            wait_until(lambda: not wire.status()["dragCatchArmed"], "disarmed")
        wire.close()
    report("drag noticed after it began, worst of 11", max(noticed), 100, "ms", f"median {statistics.median(noticed):.0f}")
    report("drag entered to the first frame, median of 11", statistics.median(moved), 50, "ms", f"max {max(moved):.0f}")
    report("drag entered to the first landing zone, median of 11", statistics.median(seen), 50, "ms",
           f"max {max(seen):.0f}")


def main_thread_ms(pid):
    with open(f"/proc/{pid}/task/{pid}/schedstat") as file:
        return int(file.read().split()[0]) / 1e6


def sample_files(folder, count):
    """Photographs, screenshots, drawings, documents, films, songs and files without a picture, in turn."""
    samples = folder / "samples"
    samples.mkdir()

    def made(name, *command):
        subprocess.run([*command, str(samples / name)], check=True)

    made("photograph.jpg", "convert", "-size", "4000x3000", "gradient:navy-gold", "-attenuate", "0.3", "+noise", "Gaussian",
         "-quality", "90")
    made("screenshot.png", "convert", "-size", "1600x1200", "plasma:navy-gold")
    made("film.mp4", "ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", "testsrc2=duration=2:size=1280x720:rate=25")
    made("song.mp3", "ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", "sine=duration=2")
    (samples / "drawing.svg").write_text('<svg xmlns="http://www.w3.org/2000/svg" width="100" height="100">'
                                         '<circle cx="50" cy="50" r="40" fill="red"/></svg>')
    (samples / "document.pdf").write_bytes(PAGE)
    (samples / "notes.txt").write_text("notes")
    (samples / "package.zip").write_bytes(b"PK\3\4" + b"\0" * 100)
    kinds = sorted(samples.iterdir())
    files = folder / "files"
    files.mkdir()
    paths = []
    for number in range(count):
        kind = kinds[number % len(kinds)]
        paths.append(files / f"{kind.stem} {number}{kind.suffix}")
        os.link(kind, paths[-1])
    return paths


# Readers find the objects of such a document by looking for them.
PAGE = (b"%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj 2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj "
        b"3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]/Contents 4 0 R>>endobj "
        b"4 0 obj<</Length 35>>stream\n1 0 0 rg 100 100 300 300 re f      \nendstream endobj trailer<</Root 1 0 R>>\n%%EOF\n")


def measure_shelf(desktop):
    """1,000 files added to the grid in view, by one command and by one drop, each to a program that was just started:
    CPU of the main thread, and the longest time that it took to answer meanwhile and until the last thumbnail is there."""
    paths = sample_files(desktop.folder, 1000)
    lists = {count: desktop.folder / f"list-{count}" for count in (1, 1000)}
    for count, listed in lists.items():
        listed.write_text("".join(f"{uri(path)}\r\n" for path in paths[:count]))
    cache = desktop.home / "cache" / "thumbnails"

    def thumbnails():
        return sum(len(files) for _, _, files in os.walk(cache))

    def command(program, wire, count):
        program.call("open", "assets")
        quiet(program, 1)
        return lambda: program.start_call("shelf", "add", *map(str, paths[:count]))

    def drop(program, wire, count):
        source = DragSource(desktop, "plain", "--list", lists[count])
        source.pick_up()
        wait_until(lambda: wire.status()["dragCatchArmed"], "the catch is armed")
        source.move(desktop.frames.width // 2, 300)
        wait_until(lambda: wire.status()["dropTargets"], "zones")
        quiet(program, 1)
        return source.let_go

    def added(prepare, count, measure):
        shutil.rmtree(cache, ignore_errors=True)
        with Program(desktop) as program:
            wire = Wire(program)
            add = prepare(program, wire, count)
            figures = measure(program, wire, add, lambda: wire.status()["counts"]["assets"] == count)
            program.call("shelf", "clear")
            wire.close()
        return figures

    def cost(program, wire, add, is_added):
        before = main_thread_ms(program.process.pid)
        add()
        wait_until(is_added, "the files are on the shelf", interval=0.05)
        quiet(program, 1)
        return main_thread_ms(program.process.pid) - before

    def gaps(program, wire, add, is_added):
        idle = wire.longest_gap(2)
        add()
        adding = wire.longest_gap(10, until=is_added)
        last = {"count": 0, "time": time.monotonic()}

        def is_over():
            if thumbnails() != last["count"]:
                last.update(count=thumbnails(), time=time.monotonic())
            return time.monotonic() - last["time"] > 1.5

        begin = time.monotonic()
        return idle, adding, wire.longest_gap(60, until=is_over), last["count"], last["time"] - begin

    for how, prepare in (("a command", command), ("a drop", drop)):
        all_of_them, one = added(prepare, 1000, cost), added(prepare, 1, cost)
        report(f"1,000 files added by {how}, main thread", max(0.0, all_of_them - one), 100, "ms",
               f"{all_of_them:.1f} beside {one:.1f} for one file")
        idle, adding, making, count, seconds = added(prepare, 1000, gaps)
        report(f"1,000 files added by {how}, longest gap", max(0.0, adding - idle), 16, "ms",
               f"{adding:.1f} beside {idle:.1f} idle")
        report(f"their thumbnails ({count} in {seconds:.1f} s), longest gap", max(0.0, making - idle), 16, "ms",
               f"{making:.1f} beside {idle:.1f} idle")


def measure_loupe(desktop):
    """Of the running program: how soon the loupe is there, what it costs while the pointer circles at 125 reports a second
    and while it rests, and the memory afterwards, beside that of a program whose panel has been open: letters take five
    megabytes once, wherever they are drawn first."""
    show_picture(desktop)
    with Program(desktop) as program:
        pid = program.process.pid
        program.call("open", "color")
        quiet(program, 2)
        program.call("close")
        quiet(program, 3)
        idle = memory(pid)[0]
        shown = []
        for _ in range(5):
            desktop.move_pointer(960, 700)
            begin = time.monotonic()
            loupe = Loupe(desktop, (960, 700), poll=0.001)
            shown.append((loupe.opened - begin) * 1000)
            desktop.key("Escape")
            loupe.answer()
        loupe = Loupe(desktop, (960, 700))
        circle = [(960 + round(400 * math.cos(step / 40)), 540 + round(300 * math.sin(step / 40))) for step in range(1250)]
        steps = [word for x, y in circle for word in ("mousemove", str(x), str(y), "sleep", "0.008")]
        cpu, begin = cpu_ms(pid), time.monotonic()
        subprocess.run(["xdotool", *steps], env=desktop.environment, check=True)
        moving = (cpu_ms(pid) - cpu) / (time.monotonic() - begin) / 10
        quiet(program, 1)
        before, cpu = wakeups(pid), cpu_ms(pid)
        quiet(program, 5)
        resting, woken = cpu_ms(pid) - cpu, wakeups_since(pid, before)
        open_memory = memory(pid)[0]
        desktop.key("Escape")
        loupe.answer()
        quiet(program, 3)
        report("loupe to its first frame, whole command, median of 5", statistics.median(shown), 50, "ms")
        report("loupe while the pointer moves, of one core", moving, 15, "%")
        report("loupe at rest, wake-ups in 5 s", woken, 0, "", f"{max(resting, 0):.2f} ms of CPU")
        report("memory after the loupe, resident, beyond before", memory(pid)[0] - idle, 1, "MB",
               f"{idle:.1f} before, {open_memory:.1f} open")


COMPARED = {"parcellite": ["parcellite"], "clipit": ["clipit"], "copyq": ["copyq"],
            "xfce4-clipman": ["xfce4-clipman"]}


def compare(desktop):
    print("\nThe same for what else is installed:")
    for name, command in COMPARED.items():
        if not shutil.which(command[0]):
            continue
        process = desktop.spawn(name, command)
        holds_for(lambda: True, "settles", 4)
        if process.poll() is not None:
            print(f"     {name}: does not start here")
            continue
        resident, proportional = memory(process.pid)
        cost = copy_cost(desktop, process.pid, 200)
        before = wakeups(process.pid)
        holds_for(lambda: True, "idles", 15)
        print(f"     {name:<16} resident {resident:6.1f} MB, proportional {proportional:6.1f} MB, "
              f"{cost:6.2f} ms of CPU per copy, {wakeups_since(process.pid, before)} wake-ups in 15 s", flush=True)
        desktop.stop(name)


MEASURES = {"memory": measure_memory, "memory-images": measure_memory_images,
            "memory-copy": measure_memory_copy, "start": measure_start,
            "first-frame": measure_first_frame, "shortcut": measure_shortcut, "wakeups": measure_wakeups,
            "copies": measure_copies, "copies-images": measure_copies_images, "gaps": measure_gaps,
            "commands": measure_commands, "drags": measure_drags, "shelf": measure_shelf,
            "loupe": measure_loupe}


def main():
    words = argparse.ArgumentParser(description="Prints figure and budget of each; exits 1 when a budget is missed.")
    words.add_argument("names", metavar="NAME", nargs="*", help=f"all without one; {', '.join(MEASURES)}")
    words.add_argument("--compare", action="store_true", help="the clipboard managers that are installed, too")
    wanted = words.parse_args()
    if unknown := set(wanted.names) - set(MEASURES):
        words.error(f"there is no {', '.join(unknown)}")
    for name in wanted.names or MEASURES:
        with Desktop() as desktop:
            MEASURES[name](desktop)
    if wanted.compare:
        with Desktop() as desktop:
            compare(desktop)
    sys.exit(0 if all(RESULTS) else 1)


main()
