"""Files of other programs shown by the inspectors: over their landing zones, inside their tools, chosen in a dialog, and
such as are none; and sounds played there."""
import json
import os
import subprocess
import unittest

from harness.desktop import Desktop
from harness.drag import DragSource, uri
from harness.inspector import copied_facts
from harness.program import Program
from harness.sound import Recorder, SoundServer
from harness.waiting import holds_for, wait_until
from harness.wire import Wire

MIDDLE = 640
CAUGHT = (MIDDLE, 300)
INSIDE = (MIDDLE, 190)


class Stand(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 800)
        self.addCleanup(self.desktop.close)
        self.files = self.desktop.folder / "files"
        self.files.mkdir()
        subprocess.run(["convert", "-size", "40x30", "xc:red", "-depth", "8", self.files / "picture.png"], check=True)
        subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "sine=220:duration=20", "-metadata", "TBPM=128",
                        self.files / "horn.mp3"], check=True)
        (self.files / "notes.txt").write_text("Rail, quay, horn.\n")
        (self.files / "empty.png").touch()
        os.mkfifo(self.files / "pipe.png")
        self.server = SoundServer(self.desktop.folder)
        self.addCleanup(self.server.kill)
        self.program = Program(self.desktop, environment=self.server.environment)
        self.addCleanup(self.program.kill)
        self.wire = Wire(self.program)

    def tearDown(self):
        self.wire.close()
        if self.program.process.poll() is None:
            self.program.stop()

    def pick_up(self, name):
        source = DragSource(self.desktop, "gtk", uri(self.files / name))
        self.addCleanup(source.end)
        source.pick_up()
        return source

    def count(self, tool):
        return self.wire.status()["counts"][tool]

    def drop_on_zone(self, name, tool):
        source = self.pick_up(name)
        wait_until(lambda: self.wire.status()["dragCatchArmed"], "the catch is armed", 5)
        source.move(*CAUGHT)
        zone = wait_until(lambda: self.wire.status()["dropZones"].get(tool), f"the zone of {tool}", 5)
        source.move(zone["x"] + zone["width"] / 2, zone["y"] + zone["height"] / 2)
        self.program.hear()
        source.let_go()

    def drop_inside(self, name, tool="imageInfo"):
        source = self.pick_up(name)
        # Afterwards: the press that picks up is one outside, which closes the panel.
        self.program.call("open", tool)
        self.program.wait_phase("expanded")
        # Until the source has been told that its file is welcome.
        for step in range(3):
            source.move(INSIDE[0] + 4 * step, INSIDE[1])
            self.program.hear()
        source.let_go()

    def facts(self):
        return copied_facts(self.desktop, MIDDLE + 60, 24 + 22)


class Inspectors(Stand):
    def test_what_is_let_go_over_its_zone_is_shown(self):
        self.drop_on_zone("picture.png", "imageInfo")
        wait_until(lambda: self.count("imageInfo") == 1, "the picture is shown", 5)
        self.assertEqual(self.wire.status()["selection"], "imageInfo")
        self.assertEqual(self.facts()["Dimensions"], "40 × 30")
        self.program.call("close")
        self.program.wait_phase("idle")
        self.drop_on_zone("horn.mp3", "audioInfo")
        wait_until(lambda: self.count("audioInfo") == 1, "the sound is shown", 5)
        self.assertEqual(self.wire.status()["selection"], "audioInfo")
        self.assertEqual(self.facts()["Tempo"], "128 BPM")
        # They are remembered.
        self.wire.close()
        self.program.stop()
        self.program.start()
        self.wire = Wire(self.program)
        self.assertEqual((self.count("imageInfo"), self.count("audioInfo")), (1, 1))

    def test_an_open_tool_keeps_its_file_when_another_is_refused(self):
        self.drop_inside("picture.png")
        wait_until(lambda: self.count("imageInfo") == 1, "the picture is shown", 5)
        for name in ("notes.txt", "empty.png", "pipe.png"):
            with self.subTest(name):
                self.drop_inside(name)
                holds_for(lambda: self.count("imageInfo") == 1, f"{name} is not kept", 0.5)
                self.assertEqual(self.facts()["Dimensions"], "40 × 30")
        self.assertEqual(self.wire.status()["phase"], "expanded")

    def test_keys_forget_and_bring_back(self):
        self.drop_inside("picture.png")
        wait_until(lambda: self.count("imageInfo") == 1, "the picture is shown", 5)
        wait_until(lambda: self.wire.status()["hasFocus"], "the panel has the keyboard")

        def is_forgotten():
            self.desktop.key("Tab", "Delete")
            return self.count("imageInfo") == 0

        wait_until(is_forgotten, "the file is forgotten")
        self.desktop.key("ctrl+z")
        wait_until(lambda: self.count("imageInfo") == 1, "it is back")
        defaults = json.loads((self.desktop.home / "config" / "Ostrelle" / "defaults.json").read_text())
        self.assertIn("$data", defaults["imageInfo.recents"])
        self.desktop.key("Escape")
        wait_until(lambda: self.wire.status()["selection"] is None, "back on the selector")

    def active_title(self):
        return subprocess.run(["xdotool", "getactivewindow", "getwindowname"], env=self.desktop.environment,
                              capture_output=True, text=True).stdout.strip()

    def test_a_chooser_behind_a_window_comes_to_the_front(self):
        self.program.call("open", "imageInfo")
        self.program.wait_phase("expanded")
        self.desktop.settled(MIDDLE - 300, 0, 600, 320)
        folder = (MIDDLE + 294 - 12 - 11, 24 + 22)
        self.desktop.click(*folder)
        title = "Choose an image to inspect."
        wait_until(lambda: title in self.desktop.run("wmctrl", "-l"), "the chooser is there")
        wait_until(lambda: self.active_title() == title, "it is active")
        self.desktop.spawn("cover", ["xterm", "-geometry", "120x40+200+150", "-T", "cover", "-e", "cat"])
        wait_until(lambda: self.active_title() == "cover", "another window lies before it")
        self.desktop.click(*folder)
        wait_until(lambda: self.active_title() == title, "it is active again")
        self.assertEqual(self.wire.status()["phase"], "expanded")
        self.desktop.key("Escape")
        wait_until(lambda: title not in self.desktop.run("wmctrl", "-l"), "it is closed")


class Player(Stand):
    def hears(self, what):
        recorder = Recorder(self.server)
        self.addCleanup(recorder.close)
        wait_until(lambda: recorder.first, what)
        return recorder

    def test_a_link_is_played_and_a_server_that_dies_takes_nothing_along(self):
        self.program.expected_lines = ["the sound server went away"]
        self.server.start()
        os.symlink("horn.mp3", self.files / "linked.mp3")
        self.drop_inside("linked.mp3", "audioInfo")
        wait_until(lambda: self.count("audioInfo") == 1, "the sound is shown", 5)
        wait_until(lambda: self.wire.status()["hasFocus"], "the panel has the keyboard")
        self.desktop.key("space")
        self.hears("it is heard")
        self.server.kill()
        wait_until(lambda: "the sound server went away" in self.program.log(), "it is told")
        self.assertEqual(self.facts()["Tempo"], "128 BPM")
        self.server.start()
        self.desktop.key("space")
        recorder = self.hears("it is heard again")
        # Another file takes its place, which is read and silent.
        self.drop_inside("horn.mp3", "audioInfo")
        wait_until(lambda: self.count("audioInfo") == 2, "the other one is shown", 5)
        wait_until(lambda: recorder.is_silent(0.6), "it is silent", 3)


if __name__ == "__main__":
    unittest.main()
