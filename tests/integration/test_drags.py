"""Files of other programs dragged to the notch: caught, offered landing zones, taken; and drags that go wrong."""
import json
import os
import signal
import unittest

from harness.desktop import Desktop
from harness.drag import DragSource, uri
from harness.program import Program
from harness.waiting import holds_for, wait_until
from harness.wire import Wire

MIDDLE = 640
CAUGHT = (MIDDLE, 300)  # in the catch area, beside every zone
ELSEWHERE = (MIDDLE, 700)


class Drags(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 800)
        self.addCleanup(self.desktop.close)
        self.files = self.desktop.folder / "files"
        self.files.mkdir()
        (self.files / "Songs").mkdir()
        for name in ("notes.txt", "picture.png", "horn.wav", "100% night\nferry.txt"):
            (self.files / name).touch()
        self.program = Program(self.desktop)
        self.addCleanup(self.program.kill)
        self.wire = Wire(self.program)
        self.addCleanup(self.wire.close)
        self.usual = self.wire.longest_gap(0.5)

    def tearDown(self):
        if self.program.process.poll() is None:
            self.program.stop()

    def uris(self, *names):
        return [uri(self.files / name) for name in names]

    def source(self, make, *arguments):
        source = DragSource(self.desktop, make, *arguments)
        self.addCleanup(source.end)
        return source

    def plain(self, *uris, options=()):
        return self.source("plain", "--type", "text/uri-list", "".join(f"{line}\r\n" for line in uris), *options)

    def catch(self, source):
        """Picks up and waits until the notch is ready for it."""
        source.pick_up()
        wait_until(lambda: self.wire.status()["dragCatchArmed"], "the catch is armed", 2)

    def enter(self, source, point=CAUGHT, zones=None):
        source.move(*point)
        return wait_until(lambda: self.is_offering(zones), f"zones {zones or ''}", 2)

    def is_offering(self, zones=None):
        """The frames of the zones, once all of them are shown."""
        status = self.wire.status()
        frames = status["dropZones"]
        isShown = status["dropTargets"] and len(frames) == len(status["dropTargets"])
        return frames if isShown and zones in (None, status["dropTargets"]) else None

    def over(self, source, frame):
        source.move(frame["x"] + frame["width"] / 2, frame["y"] + frame["height"] / 2)
        self.program.hear()

    def names(self, tool="shelf"):
        records = json.loads(self.program.call(tool, "list", "--json").stdout)
        return [os.path.basename(record["path"]) for record in records]

    def waits_for(self, *names, tool="shelf"):
        wait_until(lambda: self.names(tool) == list(names), f"the {tool} holds {names}, not {self.names(tool)}", 5)

    def answers_for(self, seconds):
        """Within 100 ms, and what a busy machine takes when nothing is dragged."""
        self.assertLess(self.wire.longest_gap(seconds), 100 + self.usual)

    def is_at_rest(self):
        wait_until(lambda: not self.wire.status()["dragCatchArmed"] and not self.wire.status()["dropTargets"]
                   and self.wire.status()["phase"] == "idle", "closed and disarmed", 5)

    def test_every_make_of_source_from_catch_to_tool(self):
        """What is dragged decides the zones; the one under the pointer takes all of it, in its order."""
        for make, names, zones, chosen, tool in (
                ("qt", ("picture.png", "notes.txt"), ["assets", "imageInfo"], "assets", "shelf"),
                ("gtk", ("picture.png", "Songs"), ["assets", "projects"], "projects", "projects"),
                ("plain", ("horn.wav",), ["assets", "audioInfo"], "assets", "shelf")):
            with self.subTest(make):
                before = self.names(tool)
                source = self.plain(*self.uris(*names)) if make == "plain" else self.source(make, *self.uris(*names))
                self.catch(source)
                self.assertEqual(self.wire.status()["surface"], {"x": 522, "y": 0, "width": 236, "height": 38})
                frames = self.enter(source, zones=zones)
                self.over(source, frames[chosen])
                source.let_go()
                taken = [name for name in names if tool == "shelf" or name == "Songs"]
                expected = taken[::-1] + before if tool == "shelf" else before + taken
                self.waits_for(*expected, tool=tool)
                source.wait("finished 1" if make == "plain" else "ended copy")
                status = self.wire.status()
                self.assertEqual((status["phase"], status["selection"], status["dropTargets"], status["dropZones"]),
                                 ("expanded", "assets" if tool == "shelf" else "projects", [], {}))
                self.program.call("close")
                self.is_at_rest()
                source.end()

    def test_names_arrive_whole_and_foreign_ones_not_at_all(self):
        odd = "100% night\nferry.txt"
        notUtf8 = os.fsencode(self.files) + b"/caf\xe9.txt"
        open(notUtf8, "w").close()
        source = self.plain("http://example.org/a.png", uri(notUtf8), "file://elsewhere.example.org/b.txt",
                            "file:relative", "%", *self.uris(odd), "# nothing")
        self.catch(source)
        self.enter(source, zones=["assets"])
        source.let_go()
        self.waits_for(odd)
        self.program.call("close")
        self.is_at_rest()
        # Nothing that could be taken: neither zones nor a copy cursor.
        source = self.plain("http://example.org/a.png", uri(notUtf8))
        self.catch(source)
        source.move(*CAUGHT)
        source.wait("status 0")
        source.let_go()
        source.wait("left")
        self.is_at_rest()
        self.assertEqual(self.names(), [odd])

    def test_release_outside_of_the_zones_and_elsewhere(self):
        source = self.source("gtk", *self.uris("picture.png"))
        self.catch(source)
        self.enter(source, zones=["assets", "imageInfo"])
        source.let_go()
        self.waits_for("picture.png")
        self.assertEqual(self.wire.status()["selection"], "assets", "the first one takes it")
        self.program.call("close")
        self.is_at_rest()
        # Over the notch and away again; let go there.
        self.catch(source)
        self.enter(source)
        source.move(*ELSEWHERE)
        wait_until(lambda: self.wire.status()["phase"] == "idle", "the zones are gone", 1)
        self.assertTrue(self.wire.status()["dragCatchArmed"], "it may come back")
        self.enter(source, zones=["assets", "imageInfo"])
        source.move(*ELSEWHERE)
        source.let_go()
        self.is_at_rest()
        self.assertEqual(self.names(), ["picture.png"])

    def test_out_and_in_again_keeps_the_zones(self):
        source = self.source("qt", *self.uris("picture.png"))
        self.catch(source)
        self.enter(source)
        for _ in range(5):
            hand = self.desktop.spawn("hand", ["xdotool", "mousemove", *map(str, ELSEWHERE), "sleep", "0.07",
                                               "mousemove", *map(str, CAUGHT), "mousemove_relative", "1", "0"])
            holds_for(lambda: self.wire.status()["dropTargets"], "the zones stay", 0.4)
            self.assertEqual(hand.wait(), 0)
        source.let_go()
        self.waits_for("picture.png")

    def test_a_source_that_dies_and_the_next_drag(self):
        for make in ("gtk", "qt", "plain"):
            with self.subTest(make):
                dying = self.plain(*self.uris("notes.txt")) if make == "plain" else \
                    self.source(make, *self.uris("notes.txt"))
                self.catch(dying)
                self.enter(dying)
                dying.end()
                wait_until(lambda: not self.wire.status()["dropTargets"], "the zones go with it", 2)
                self.desktop.run("xdotool", "mouseup", "1")
                self.is_at_rest()
                self.assertEqual(self.names(), [])
        source = self.source("gtk", *self.uris("horn.wav"))
        self.catch(source)
        frames = self.enter(source, zones=["assets", "audioInfo"])
        self.over(source, frames["assets"])
        source.let_go()
        self.waits_for("horn.wav")

    def test_a_source_that_hangs(self):
        """One that never gives its list, and one that stops altogether: nobody waits, and nothing is taken."""
        source = self.plain(*self.uris("notes.txt"), options=("--mode", "hang"))
        self.catch(source)
        source.move(*CAUGHT)
        self.answers_for(1.0)
        source.let_go()
        self.is_at_rest()
        source.end()

        source = self.plain(*self.uris("notes.txt"))
        self.catch(source)
        self.enter(source)
        source.process.send_signal(signal.SIGSTOP)
        source.move(*ELSEWHERE)
        source.let_go()
        self.answers_for(1.0)
        self.is_at_rest()
        source.end()
        self.assertEqual(self.names(), [])

    def test_more_files_than_are_taken(self):
        for number in range(10_001):
            (self.files / f"{number}.txt").touch()
        listed = self.desktop.folder / "list"
        folder = uri(self.files)
        self.program.expected_lines.append("has more files than are taken")
        many = "".join(f"{folder}/{number}.txt\r\n" for number in range(100_000))
        self.assertGreater(len(many), 4 * 1024 * 1024)
        first = len(many[:4 * 1024 * 1024].splitlines())
        huge = f"{folder}/{'x' * 250}\r\n" * 200_000
        self.assertGreater(len(huge), 50_000_000)
        for text, count in ((many, min(first, 10_000)), (huge, 0)):
            listed.write_text(text)
            source = self.source("plain", "--list", listed)
            self.catch(source)
            source.move(*CAUGHT)
            self.answers_for(1.5)
            self.enter(source, (CAUGHT[0] + 5, CAUGHT[1]), ["assets"])
            source.let_go()
            wait_until(lambda: self.wire.status()["counts"]["assets"] == count, f"{count} taken", 20)
            self.assertEqual(self.program.log().count("\n"), 1, self.program.log())
            self.program.call("shelf", "clear")
            self.program.call("close")
            self.is_at_rest()
            source.end()
            (self.desktop.folder / "program.log").write_text("")
        with open(f"/proc/{self.program.process.pid}/status") as file:
            peak = next(int(entry.split()[1]) for entry in file if entry.startswith("VmHWM"))
        self.assertLess(peak, 160 * 1024, "memory stays bounded")

    def test_when_drags_are_not_to_be_caught(self):
        self.program.set("general.catchDraggedFiles", False)
        source = self.source("qt", *self.uris("notes.txt"))
        source.pick_up()
        source.move(*CAUGHT)
        holds_for(lambda: not self.wire.status()["dragCatchArmed"] and self.wire.status()["phase"] == "idle",
                  "nothing comes towards it", 0.5)
        # Brought onto the lozenge itself, it is taken all the same.
        self.enter(source, (MIDDLE, 10), ["assets"])
        source.let_go()
        self.waits_for("notes.txt")

    def test_an_open_tool_is_asked(self):
        """Opened in the middle of a drag, by a shortcut for example."""
        source = self.plain(*self.uris("notes.txt"))
        self.catch(source)
        for tool in ("color", "projects"):
            self.program.call("open", tool)
            before = len(source.said())
            source.move(MIDDLE, 120)
            wait_until(lambda: source.said()[before:], "the source is answered")
            holds_for(lambda: not self.wire.status()["dropTargets"], "no zones over an open tool", 0.3)
            self.assertNotIn("status 1", source.said()[before:], f"{tool} takes no file")
        self.program.call("open", "assets")
        source.move(MIDDLE, 125)
        source.wait("status 1")
        self.assertEqual(self.wire.status()["dropTargets"], [])
        source.let_go()
        self.waits_for("notes.txt")
        source.wait("finished 1")
        # And a tool that takes nothing lets it go.
        self.catch(source)
        self.program.call("open", "color")
        source.move(MIDDLE, 120)
        source.wait("status 0")
        source.let_go()
        source.wait("left")
        self.assertEqual((self.wire.status()["phase"], self.names()), ("expanded", ["notes.txt"]))


if __name__ == "__main__":
    unittest.main(verbosity=1)
