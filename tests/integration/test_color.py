"""The colour tool by command: with the program and without it, what it shows, and what the disk has."""
import base64
import json
import os
import resource
import subprocess
import unittest

from harness.desktop import Desktop
from harness.peer import Peer, paste
from harness.program import Program
from harness.waiting import wait_until

ORANGE, BLUE, PLUM = (247, 178, 103), (0, 178, 247), (91, 42, 87)


def hex_of(color):
    return "#%02X%02X%02X" % color


class ColorCommands(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 800, compositor=False, bus=False)
        self.addCleanup(self.desktop.close)
        self.program = Program(self.desktop, start=False)
        self.addCleanup(self.program.kill)
        self.defaults = self.desktop.home / "config" / "Ostrelle" / "defaults.json"

    def color(self, *arguments):
        result = self.program.call("color", *arguments)
        self.assertEqual((result.stdout, result.stderr), ("", ""))

    def lists(self):
        return json.loads(self.program.call("color", "list", "--json").stdout)

    def hexes(self):
        return [[color["hex"] for color in self.lists()[name]] for name in ("recents", "favorites")]

    def stored(self, key):
        return json.loads(base64.b64decode(json.loads(self.defaults.read_text())[key]["$data"]))

    def edit_everything(self):
        """The same edits have the same outcome, whoever does them, and are on the disk when they are done."""
        self.assertEqual(self.lists(), {"recents": [], "favorites": []})
        self.assertEqual(self.program.call("color", "list").stdout, "")
        for text in ("#5b2a57", "rgb(0 178 247)", "hsl(31, 90%, 69%)", "#F7B267", "00b2f7"):
            self.color("add", text)
            self.assertEqual(len(self.stored("color.recents")), len(self.lists()["recents"]))
        # One that looks like a listed one is that one.
        self.assertEqual(self.hexes(), [["#00B2F7", "#F7B267", "#F7B269", "#5B2A57"], []])
        self.color("favorite", "hsl(31, 90%, 69%)")
        self.color("favorite", "#5B2A57")
        self.color("favorite", "#F7B269")
        self.color("favorite", "#F7B267")
        self.assertEqual(self.hexes()[1], ["#F7B267", "#5B2A57"])
        recents = self.lists()["recents"]
        self.assertEqual(set(recents[0]), {"r", "g", "b", "hex"})
        self.assertEqual((recents[0]["r"], recents[0]["g"], recents[0]["b"]), (0, 178 / 255, 247 / 255))
        # Not rounded.
        self.assertNotEqual(recents[2]["b"] * 255, round(recents[2]["b"] * 255))
        self.assertEqual(self.stored("color.recents"),
                         [{name: color[name] for name in "rgb"} for color in recents])
        lines = self.program.call("color", "list").stdout.splitlines()
        self.assertEqual(len(lines), 6)
        self.assertEqual(lines[1].split(None, 2), ["recent", "#F7B267", "247, 178, 103  31°, 90%, 69%"])
        self.assertTrue(lines[5].startswith("favorite  #5B2A57"))
        for words, status, part in ((("add", "orange"), 2, "color add: orange is no color"),
                                    (("favorite", "\x1b[31m#12"), 2, "color favorite:  [31m#12 is no color"),
                                    (("add",), 2, "usage: ostrelle color add COLOR"),
                                    (("add", "1,", "2,", "3"), 2, "usage: ostrelle color add COLOR")):
            result = self.program.call("color", *words, check=False)
            self.assertEqual((result.returncode, result.stdout, len(result.stderr.splitlines())), (status, "", 1), words)
            self.assertIn(part, result.stderr)
        self.color("clear")
        self.assertEqual(self.hexes(), [[], ["#F7B267", "#5B2A57"]])
        self.color("clear", "--favorites")
        self.assertEqual(self.hexes(), [[], []])
        self.assertEqual(self.stored("color.favorites"), [])
        for step in range(30):
            self.color("add", f"{step}, 0, 0")
        self.assertEqual(self.hexes()[0], [hex_of((step, 0, 0)) for step in range(29, 11, -1)])

    def test_without_the_program(self):
        self.edit_everything()
        self.assertEqual(os.stat(self.defaults).st_mode & 0o777, 0o600)

    def test_with_the_program(self):
        with self.program:
            self.program.start()
            self.edit_everything()
            self.assertEqual(self.program.status()["counts"]["color"], 18)

    def test_shows_what_is_kept(self):
        """Stored by a command, shown by the tool, edited in the tool, read by a command."""
        for color in (PLUM, ORANGE):
            self.color("add", hex_of(color))
        # Damaged: it starts empty, and the rest is kept.
        values = json.loads(self.defaults.read_text())
        values["color.favorites"] = {"$data": base64.b64encode(b'[{"r":1,"g":"x","b":0}]').decode()}
        self.defaults.write_text(json.dumps(values))
        with self.program:
            self.program.start()
            self.program.call("open", "color")
            self.program.wait_phase("expanded")
            self.assertEqual(self.hexes(), [[hex_of(ORANGE), hex_of(PLUM)], []])
            # A colour from outside is listed, badged and not put on display.
            self.color("add", hex_of(BLUE))
            self.desktop.key("3")
            wait_until(lambda: paste(self.desktop) == "31°, 90%, 69%".encode(), "the form on display is copied")
            self.desktop.key("Left", "1")
            wait_until(lambda: paste(self.desktop) == hex_of(BLUE).encode(), "the newest one is copied")
            self.color("favorite", hex_of(PLUM))
            self.desktop.key("Down", "Down", "Delete")
            wait_until(lambda: self.hexes()[1] == [], "the favorite is gone")
            self.desktop.key("ctrl+z")
            wait_until(lambda: self.hexes()[1] == [hex_of(PLUM)], "it is back")
            self.desktop.type("#0f8")
            self.desktop.key("Return")
            wait_until(lambda: self.hexes()[0][0] == "#00FF88", "a typed colour is listed")
            self.desktop.key("Escape")
            wait_until(lambda: self.program.status()["selection"] is None, "back at the tools")
            self.assertIn((0, 255, 136), self.badge_pixels(), "the dot has the latest colour")
            self.program.call("color", "add", hex_of(ORANGE))
            wait_until(lambda: ORANGE in self.badge_pixels(), "the dot follows")

    def test_gathers_from_the_screen(self):
        picture = self.desktop.folder / "halves.png"
        subprocess.run(["convert", "-size", "200x200", f"xc:{hex_of(PLUM)}", "-size", "200x200", f"xc:{hex_of(BLUE)}",
                        "+append", str(picture)], check=True)
        Peer(self.desktop, "Halves", (100, 400, 400, 200), picture)
        with self.program:
            self.program.start()
            self.program.call("open", "color")
            self.program.wait_phase("expanded")
            surface = self.program.status()["surface"]
            # Without a compositor what the glass has not reached yet is the window below.
            self.desktop.settled(surface["x"], surface["y"], surface["width"], surface["height"])
            self.desktop.click(surface["x"] + surface["width"] / 2, surface["y"] + surface["height"] - 53)
            wait_until(lambda: self.program.status()["sampling"], "the button opens the loupe")
            self.desktop.move_pointer(200, 500)
            self.desktop.run("xdotool", "keydown", "shift", "click", "1", "keyup", "shift")
            wait_until(lambda: self.hexes()[0] == [hex_of(PLUM)], "one is kept while the loupe stays")
            self.assertTrue(self.program.status()["sampling"])
            self.desktop.click(400, 500)
            wait_until(lambda: not self.program.status()["sampling"], "the other one closes it")
            self.assertEqual(self.hexes()[0], [hex_of(BLUE), hex_of(PLUM)])
            self.assertEqual(self.program.status()["selection"], "color", "a click elsewhere did not close the notch")
            self.desktop.key("1")
            wait_until(lambda: paste(self.desktop) == hex_of(BLUE).encode(), "the last one is on display")

    def badge_pixels(self):
        """Around the dot on the second of six tiles."""
        width, height = 16, 40
        left = self.desktop.frames.width // 2 - 132 + 10
        picture = self.desktop.frames.grab(left, 50, width, height)
        return {tuple(picture.pixel(x, y)) for x in range(width) for y in range(height)}

    def test_a_full_disk(self):
        """An edit counts as done when it is on the disk, whoever does it; else it is told."""
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (300, 300))

        self.color("add", hex_of(ORANGE))
        before = self.defaults.read_text()
        failure = f"ostrelle: color: cannot write {self.defaults}\n"
        for step in range(3):
            alone = subprocess.run([self.program.command, "color", "add", f"{step}, 1, 1"],
                                   env=self.program.environment, capture_output=True, text=True, preexec_fn=limit)
        self.assertEqual((alone.returncode, alone.stderr), (1, failure))
        with open(self.desktop.folder / "program.log", "ab") as log:
            self.program.process = subprocess.Popen([self.program.command], env=self.program.environment, stdout=log,
                                                    stderr=log, preexec_fn=limit)
        wait_until(self.program.is_listening, "the program answers")
        self.program.expected_lines = ["could not be saved: cannot write"]
        told = self.program.call("color", "add", "hsl(123 45% 67%)", check=False)
        self.assertEqual((told.returncode, told.stderr), (1, failure))
        self.assertTrue(before in self.defaults.read_text() or len(self.stored("color.recents")) < 5)
        self.color("clear")
        self.assertEqual(self.stored("color.recents"), [])
        self.program.stop()


if __name__ == "__main__":
    unittest.main(verbosity=1)
