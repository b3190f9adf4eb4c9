"""What other programs really copy, and what must never be kept."""
import base64
import hashlib
import os
import struct
import subprocess
import unittest

from harness.desktop import BUILD, Desktop
from harness.peer import Peer, paste, xclip
from harness.program import Program
from harness.waiting import holds_for, wait_until


class Clipboard(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop(1280, 800)
        cls.notes = Peer(cls.desktop, "Notes", (0, 400, 300, 200))
        cls.notes.activate()

    @classmethod
    def tearDownClass(cls):
        cls.desktop.close()

    def setUp(self):
        xclip(self.desktop, b"what was there before")
        self.program = Program(self.desktop)
        self.addCleanup(self.program.kill)
        self.program.call("clipboard", "clear")

    def tearDown(self):
        if self.program.process.poll() is None:
            for record in self.program.history():
                if record["pinned"]:
                    self.program.call("clipboard", "pin", "1")
            self.program.call("clipboard", "clear")
            self.program.stop()

    def newest(self):
        records = sorted(self.program.history(), key=lambda record: -record["date"])
        return records[0] if records else {}

    def copy_and_wait(self, text):
        xclip(self.desktop, text.encode())
        wait_until(lambda: self.newest().get("text") == text, f"recorded: {text!r}")

    def test_kinds_of_a_gtk_program_and_of_xclip(self):
        self.assertEqual(self.program.history(), [], "what was there before is not recorded")
        self.notes.activate()
        self.notes.copy_text("  a line\nand another  ")
        wait_until(lambda: self.newest().get("text") == "  a line\nand another  ", "text, untrimmed")
        self.assertEqual((self.newest()["kind"], self.newest()["appName"]), ("text", "Notes"))
        self.notes.copy_text(" https://example.org/a?b ")
        wait_until(lambda: self.newest()["kind"] == "link", "a link")
        picture = str(self.desktop.folder / "p.png")
        subprocess.run(["convert", "-size", "300x200", "plasma:", f"png24:{picture}"], check=True)
        self.notes.copy_image(picture)
        wait_until(lambda: self.newest()["kind"] == "image", "an image")
        self.assertEqual(self.newest()["imageType"], "public.png")
        self.assertNotIn("imageData", self.newest(), "no image bytes in the list")
        xclip(self.desktop, b"file:///tmp/a%0Ab\r\nfile://elsewhere/x\r\nhttp://example.org/y\r\nfile:///tmp/c\r\n",
              "text/uri-list")
        wait_until(lambda: self.newest()["kind"] == "files", "files")
        self.assertEqual(self.newest()["paths"], ["/tmp/a\nb", "/tmp/c"])
        xclip(self.desktop, b"cut\nfile:///tmp/d%20e", "x-special/gnome-copied-files")
        wait_until(lambda: self.newest().get("paths") == ["/tmp/d e"], "files of a file manager")
        xclip(self.desktop, b"   \n ")
        holds_for(lambda: len(self.program.history()) == 5, "blanks are not recorded", 1.2)

    def test_repeats_limit_and_pins(self):
        self.program.set("clipboard.limit", 3)
        for text in ("one", "two", "three"):
            self.copy_and_wait(text)
        self.program.call("clipboard", "pin", "3")
        self.copy_and_wait("four")
        self.copy_and_wait("five")
        shown = [record["text"] for record in self.program.history()]
        self.assertEqual(shown, ["one", "five", "four", "three"])
        self.copy_and_wait("four")
        self.assertEqual([record["text"] for record in self.program.history()], ["one", "four", "five", "three"])
        self.program.call("clipboard", "delete", "2")
        self.assertEqual([record["text"] for record in self.program.history()], ["one", "five", "three"])
        self.program.call("settings", "reset", "clipboard.limit")

    def test_reuse_is_not_recorded_and_survives_the_exit(self):
        self.copy_and_wait("keep me")
        self.copy_and_wait("newer")
        self.program.call("clipboard", "copy", "2")
        wait_until(lambda: paste(self.desktop) == b"keep me", "the entry is on the clipboard")
        holds_for(lambda: [r["text"] for r in self.program.history()] == ["newer", "keep me"], "not recorded again", 1.2)
        self.program.stop()
        self.assertEqual(paste(self.desktop), b"keep me", "it survives the program")
        xclip(self.desktop, b"something else")
        wait_until(lambda: subprocess.run(["pgrep", "-f", str(BUILD / "bin" / "ostrelle-keeper")],
                                          capture_output=True).returncode != 0, "the keeper goes with the next copy")
        self.program.start()

    def test_an_image_comes_back_byte_for_byte(self):
        picture = self.desktop.folder / "noise.png"
        subprocess.run(["convert", "-size", "1200x900", "xc:gray", "+noise", "random", f"png24:{picture}"], check=True)
        data = picture.read_bytes()
        self.assertGreater(len(data), 1_000_000, "large enough for an incremental transfer")
        xclip(self.desktop, data, "image/png")
        wait_until(lambda: self.newest().get("kind") == "image", "the image is recorded")
        self.copy_and_wait("in between")
        self.program.call("clipboard", "copy", "2")
        wait_until(lambda: hashlib.sha256(paste(self.desktop, "image/png") or b"").digest() ==
                   hashlib.sha256(data).digest(), "the same bytes are offered again", 20)
        self.program.stop()
        with open(os.path.join(self.program.data_folder(), "clipboard.json")) as file:
            import json
            stored = json.load(file)
        self.assertEqual(base64.b64decode(next(r for r in stored if r["kind"] == "image")["imageData"]), data)
        self.program.start()

    def test_images_of_other_formats_become_png(self):
        def made(size, kind):
            return subprocess.run(["convert", "-size", size, "xc:#ff00ff", f"{kind}:-"], check=True,
                                  capture_output=True).stdout

        photograph = made("640x360", "jpeg")
        for data, target, size in ((photograph, "image/jpeg", (640, 360)), (made("90x50", "bmp3"), "image/x-bmp", (90, 50)),
                                   (made("70x30", "webp"), "image/webp", (70, 30))):
            before = len(self.program.history())
            xclip(self.desktop, data, target)
            wait_until(lambda: len(self.program.history()) == before + 1, f"{target} is recorded")
            self.assertEqual(self.newest()["imageType"], "public.png")
            self.program.call("clipboard", "copy", "1")
            png = wait_until(lambda: paste(self.desktop, "image/png"), "it is offered as PNG")
            self.assertEqual((png[:4], struct.unpack(">II", png[16:24])), (b"\x89PNG", size))
        # What cannot be converted costs one line, and nothing of it is kept.
        self.program.expected_lines.append("A copied image is not recorded: it cannot be read")
        xclip(self.desktop, photograph[:30] + b"not a photograph", "image/jpeg")
        wait_until(lambda: "not recorded" in self.program.log(), "a line in the log")
        self.assertEqual(len(self.program.history()), 3)
        self.assertEqual(self.program.log().count("\n"), 1, self.program.log())

        def magenta():
            picture = self.desktop.frames.grab(320, 60, 640, 400)
            return sum(red > 230 and green < 40 and blue > 230
                       for blue, green, red in zip(*(picture.data[i::4] for i in range(3))))

        self.assertEqual(magenta(), 0)
        self.program.call("open", "clipboard")
        wait_until(lambda: magenta() > 3 * 28 * 28 * 0.9, "three rows show their pictures")
        self.desktop.key("Escape", "Escape")
        self.program.wait_phase("idle")
        helpers = lambda: subprocess.run(["pgrep", "-P", str(self.program.process.pid), "ostrelle-media"],
                                         capture_output=True).returncode == 0
        wait_until(lambda: not helpers(), "no helper stays")

    def test_privacy(self):
        owner = str(BUILD / "bin" / "peers" / "selection-owner")
        process = subprocess.Popen([owner, "serve", "--text", "secret", "--marker", "org.nspasteboard.ConcealedType"],
                                   env=self.desktop.environment, stdout=subprocess.PIPE)
        process.stdout.readline()
        holds_for(lambda: not self.program.history(), "a marker of concealed content is respected", 0.9)
        process.kill()
        process.wait()
        process.stdout.close()
        self.program.set("clipboard.enabled", False)
        xclip(self.desktop, b"while off")
        holds_for(lambda: not self.program.history(), "off is off", 0.9)
        self.program.set("clipboard.enabled", True)
        holds_for(lambda: not self.program.history(), "and is not made up for", 0.9)
        vault = Peer(self.desktop, "Bitwarden", (400, 400, 200, 200))
        vault.activate()
        vault.copy_text("a password")
        holds_for(lambda: not self.program.history(), "a password manager is left out from the first start", 1.2)
        vault.desktop.stop("peer-Bitwarden")
        self.notes.activate()
        self.copy_and_wait("public again")
        with open(f"/proc/{self.program.process.pid}/limits") as limits:
            self.assertRegex(limits.read(), "Max core file size +1 +1 ", "none, also where dumps are piped")

    def test_tool_undo_and_erasure(self):
        # So large a history that an erasure by itself only adds a line to the journal.
        picture = self.desktop.folder / "large.png"
        subprocess.run(["convert", "-size", "1400x1000", "xc:gray", "+noise", "random", f"png24:{picture}"], check=True)
        xclip(self.desktop, picture.read_bytes(), "image/png")
        wait_until(lambda: self.newest().get("kind") == "image", "the image is recorded")
        self.program.call("clipboard", "pin", "1")
        for text in ("alpha", "beta", "gamma"):
            self.copy_and_wait(text)
        self.program.call("open", "clipboard")
        wait_until(lambda: self.program.status()["hasFocus"], "the panel has the keyboard")
        self.desktop.key("Down", "Down", "Delete")
        wait_until(lambda: len(self.program.history()) == 3, "Delete removes the selected entry")
        self.desktop.key("ctrl+z")
        texts = lambda: [r["text"] for r in self.program.history() if "text" in r]
        wait_until(lambda: texts() == ["gamma", "beta", "alpha"], "Ctrl+Z undoes")
        self.desktop.key("Down", "Down", "Delete")
        wait_until(lambda: len(texts()) == 2, "removed again")
        folder = self.program.data_folder()
        wait_until(lambda: os.path.exists(os.path.join(folder, "clipboard.journal")), "only a line in the journal")
        self.desktop.key("Escape", "Escape")
        self.program.wait_phase("idle")
        gone = {"alpha", "beta", "gamma"} - set(texts())
        needle = gone.pop().encode()
        wait_until(lambda: not any(needle in open(os.path.join(folder, name), "rb").read()
                                   for name in os.listdir(folder) if os.path.isfile(os.path.join(folder, name))),
                   "what was erased has left the disk")


if __name__ == "__main__":
    unittest.main(verbosity=1)
