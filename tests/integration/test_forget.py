"""`ostrelle forget --all`: nothing of what was copied, staged, shown and picked is left on the disk."""
import base64
import json
import os
import pty
import subprocess
import unittest

from harness.desktop import BUILD, Desktop
from harness.loupe import Loupe
from harness.peer import xclip
from harness.program import Program
from harness.waiting import wait_until

SECRET = "hydrangea"
# What a file may hold that cannot be decoded.
DAMAGED = f'[{{"text":"{SECRET}'


class Forget(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 800, compositor=False, bus=False)
        self.addCleanup(self.desktop.close)
        self.program = Program(self.desktop, start=False)
        self.addCleanup(self.program.kill)
        self.folder = self.program.data_folder()
        self.defaults = os.path.join(self.program.environment["XDG_CONFIG_HOME"], "Ostrelle", "defaults.json")
        self.file = os.path.join(self.desktop.folder, SECRET)
        os.mkdir(self.file)

    def fill(self):
        """One or two of each; the history as a program leaves it, with one entry pinned."""
        os.makedirs(self.folder, mode=0o700, exist_ok=True)
        clips = [{"id": f"00000000-0000-4000-8000-00000000000{number}", "kind": "text", "text": f"{SECRET} {number}",
                  "date": 800000000 + number, "pinned": number == 1} for number in (1, 2)]
        self.write(os.path.join(self.folder, "clipboard.json"), json.dumps(clips))
        self.write(os.path.join(self.folder, "clipboard.unreadable-20260101-101010.json"), DAMAGED)
        self.write(os.path.join(self.folder, "shelf.unreadable-20260101-101010.json"), DAMAGED)
        self.program.call("color", "add", "#123456")
        self.program.call("color", "favorite", "#123456")
        self.program.call("color", "favorite", "#654321")
        self.program.call("shelf", "add", self.file)
        self.program.call("projects", "add", self.file)
        self.program.call("settings", "set", "clipboard.limit", "50")
        with open(self.defaults) as file:
            values = json.load(file)
        values["imageInfo.recents"] = {"$data": self.encoded_recents()}
        self.write(self.defaults, json.dumps(values))

    def encoded_recents(self):
        recents = [{"path": f"/x/{SECRET}.png", "name": f"{SECRET}.png", "summary": "PNG", "date": 1.0}]
        return base64.b64encode(json.dumps(recents).encode()).decode()

    @staticmethod
    def write(path, text):
        with open(path, "w") as file:
            file.write(text)
        os.chmod(path, 0o600)

    def forget(self, *options, check=True):
        return self.program.call("forget", "--all", *options, check=check)

    def left(self):
        """Names of the stores' files in which something that was to be erased still stands."""
        left = []
        for folder in (self.folder, os.path.dirname(self.defaults)):
            for name in os.listdir(folder):
                if name == "projects.json" or not os.path.isfile(os.path.join(folder, name)):
                    continue
                with open(os.path.join(folder, name)) as file:
                    text = file.read()
                if SECRET in text or "aHlkcmFuZ2Vh" in text or self.encoded_recents()[:12] in text:
                    left.append(name)
        return left

    def check_forgotten(self):
        self.assertEqual(self.left(), [])
        for command in ("clipboard", "shelf"):
            self.assertEqual(json.loads(self.program.call(command, "list", "--json").stdout), [])
        self.assertEqual(json.loads(self.program.call("color", "list", "--json").stdout),
                         {"recents": [], "favorites": []})
        with open(self.defaults) as file:
            recents = json.load(file).get("imageInfo.recents", {"$data": "W10="})
        self.assertEqual(recents, {"$data": "W10="}, "an empty array")
        self.assertEqual(len(json.loads(self.program.call("projects", "list", "--json").stdout)), 1)
        self.assertEqual(self.program.call("settings", "get", "clipboard.limit").stdout, "50\n")
        self.assertTrue(os.path.isdir(self.file))

    COUNTS = {"clipboard": 2, "shelf": 1, "recentFiles": 1, "recentColors": 1, "favoriteColors": 2}

    def test_without_the_program(self):
        self.fill()
        self.assertEqual(json.loads(self.forget("--yes", "--json").stdout), self.COUNTS)
        self.check_forgotten()

    def test_with_the_program(self):
        self.fill()
        self.program.start()
        said = self.forget("--yes").stdout
        for line in ("2 entries of the clipboard history", "1 entry of the shelf", "1 recent file", "1 recent color",
                     "2 favorite colors"):
            self.assertIn(f"  {line}\n", said)
        self.check_forgotten()
        self.program.call("shelf", "add", self.file)
        self.program.stop()

    def test_what_is_under_way(self):
        self.program.start()
        owner = subprocess.Popen([str(BUILD / "bin" / "peers" / "selection-owner"), "wait", "--text", SECRET],
                                 env=self.desktop.environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(owner.communicate)
        self.addCleanup(owner.kill)
        while owner.stdout.readline() != "asked UTF8_STRING\n":
            self.assertIsNone(owner.poll())
        loupe = Loupe(self.desktop, (300, 400))
        self.addCleanup(loupe.kill)
        self.desktop.run("xdotool", "keydown", "shift", "click", "1", "keyup", "shift")
        recents = lambda: json.loads(self.program.call("color", "list", "--json").stdout)["recents"]
        wait_until(recents, "a color is gathered")
        self.forget("--yes")
        self.assertEqual(loupe.answer(), (1, "", "ostrelle: color pick: no color was picked"))
        self.assertEqual(recents(), [])
        owner.stdin.write("\n")
        owner.stdin.flush()
        # Copies are recorded in their order.
        xclip(self.desktop, b"afterwards")
        wait_until(self.program.history, "the next copy is recorded")
        self.assertEqual([clip["text"] for clip in self.program.history()], ["afterwards"])
        self.assertEqual(self.left(), [])
        self.program.stop()

    def test_stores_that_cannot_be_read(self):
        for is_running in (False, True):
            with self.subTest(is_running=is_running):
                self.fill()
                for name in ("clipboard.json", "shelf.json"):
                    self.write(os.path.join(self.folder, name), DAMAGED)
                self.write(self.defaults, DAMAGED)
                if is_running:
                    self.program.expected_lines = ["could not be read", "cannot be read"]
                    self.program.start()
                self.forget("--yes")
                self.assertEqual(self.left(), [])

    def test_what_cannot_be_erased_is_told(self):
        self.fill()
        os.unlink(os.path.join(self.folder, "clipboard.unreadable-20260101-101010.json"))
        # A folder, whoever put it there, is kept aside like an unreadable file, and is not for us to empty.
        os.unlink(os.path.join(self.folder, "shelf.json"))
        os.mkdir(os.path.join(self.folder, "shelf.json"))
        refused = self.forget("--yes", check=False)
        self.assertEqual((refused.returncode, refused.stdout), (1, ""))
        self.assertEqual(json.loads(self.program.call("clipboard", "list", "--json").stdout), [], "the rest is erased")

    def answered(self, answer):
        """What the command does at a terminal where the user types `answer`."""
        controller, terminal = pty.openpty()
        command = subprocess.Popen([self.program.command, "forget", "--all"], env=self.program.environment,
                                   stdin=terminal, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        os.close(terminal)
        os.write(controller, answer)
        out, err = command.communicate(timeout=30)
        os.close(controller)
        return command.returncode, out.decode(), err.decode()

    def test_asks_first(self):
        self.fill()
        nobody = subprocess.run([self.program.command, "forget", "--all"], env=self.program.environment,
                                stdin=subprocess.DEVNULL, capture_output=True, timeout=30)
        self.assertEqual((nobody.returncode, nobody.stdout), (2, b""))
        for answer in (b"n\n", b"\n", b"\x04"):
            status, out, err = self.answered(answer)
            self.assertEqual((status, out), (1, ""), answer)
            self.assertIn("Erase? [y/N]", err)
        self.assertEqual(len(self.program.history()), 2)
        self.assertEqual(self.answered(b"yes\n")[0], 0)
        self.check_forgotten()


if __name__ == "__main__":
    unittest.main()
