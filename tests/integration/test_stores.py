"""Nothing that was copied is lost: kills, full disks, read-only homes, foreign stores, edits without the program."""
import json
import os
import random
import signal
import subprocess
import unittest

from harness.desktop import Desktop
from harness.peer import xclip
from harness.program import Program
from harness.waiting import holds_for, wait_until

ROUNDS = 12


class Stores(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 800, compositor=False, bus=False)
        self.addCleanup(self.desktop.close)
        self.program = Program(self.desktop, start=False)
        self.addCleanup(self.program.kill)
        self.folder = self.program.data_folder()
        self.path = os.path.join(self.folder, "clipboard.json")

    def copy(self, text):
        xclip(self.desktop, text.encode())
        wait_until(lambda: any(r.get("text") == text for r in self.program.history()), f"recorded: {text}")

    def stored(self):
        with open(self.path) as file:
            return json.load(file)

    def test_kill_at_random_moments(self):
        random.seed(7)
        copied = []
        for round_ in range(ROUNDS):
            self.program.start()
            for number in range(3):
                text = f"round {round_} copy {number} " + "x" * random.randrange(2000)
                self.copy(text)
                copied.append(text)
                self.program.call("clipboard", "pin", "1")
            # A second is granted; then whatever is being written is hit in the middle.
            holds_for(lambda: self.program.process.poll() is None, "runs", 1.0)
            latest = f"late {round_}"
            xclip(self.desktop, latest.encode())
            holds_for(lambda: self.program.process.poll() is None, "runs", random.uniform(0.3, 0.7))
            self.program.process.send_signal(signal.SIGKILL)
            self.program.process.wait()
            stored = [record["text"] for record in self.stored()]
            for text in copied[-60:]:
                self.assertIn(text, stored)
            self.assertEqual([name for name in os.listdir(self.folder) if "unreadable" in name], [])

    def test_full_disk(self):
        self.start_in_namespace("mount -t tmpfs -o size=96k,mode=0700 tmpfs \"$XDG_DATA_HOME\"")
        inside = f"/proc/{self.program.process.pid}/root{self.path}"
        self.copy("before it was full")
        wait_until(lambda: os.path.exists(inside), "saved")
        filler = f"/proc/{self.program.process.pid}/root{self.folder}/filler"
        with open(filler, "wb", buffering=0) as file:
            try:
                while file.write(b"x" * 1024):
                    pass
            except OSError:
                pass
        self.program.expected_lines = ["No space left"]
        big = "while full " + "y" * 20000
        self.copy(big)
        with open(inside) as file:
            self.assertEqual([r["text"] for r in json.load(file)], ["before it was full"], "the old file is whole")
        erased = self.program.call("clipboard", "delete", "2", check=False)
        self.assertEqual((erased.returncode, len(erased.stderr.splitlines())), (1, 1), "it is still on the disk")
        os.unlink(filler)
        self.copy("room again")
        wait_until(lambda: [r["text"] for r in json.load(open(inside))] == ["room again", big], "saving resumes")

    def test_read_only_home(self):
        # A lock, a large array and a journal beside it, as a killed program leaves them.
        os.makedirs(self.folder, exist_ok=True)
        with open(self.path, "w") as file:
            json.dump([{"id": "9B2C1A8E-0000-4000-8000-000000000001", "kind": "text", "text": "x" * 5_000_000, "date": 1.5,
                        "pinned": False}], file, separators=(",", ":"))
        self.program.start()
        self.copy("in the journal")
        wait_until(lambda: os.path.exists(os.path.join(self.folder, "clipboard.journal")), "a journal")
        holds_for(lambda: self.program.process.poll() is None, "runs", 1.0)
        self.program.kill()
        self.start_in_namespace("mount --bind -o ro \"$HOME\" \"$HOME\"")
        self.assertEqual(self.program.history()[0]["text"], "in the journal")
        self.copy("kept in memory")
        told = self.program.call("settings", "set", "appearance.notchTheme", "ember", check=False)
        self.assertEqual(told.returncode, 1)
        self.assertRegex(told.stderr, "settings: cannot write .*/defaults.json")
        self.assertEqual(self.program.status()["theme"], "ember", "it takes effect all the same")
        self.program.expected_lines = [self.folder]
        self.program.stop()
        self.assertEqual(len(self.program.log().splitlines()), 1, self.program.log())

    def start_in_namespace(self, mount):
        os.makedirs(self.program.environment["XDG_DATA_HOME"], exist_ok=True)
        command = ["unshare", "--mount"] if os.getuid() == 0 else ["unshare", "--mount", "--user", "--map-root-user"]
        with open(self.desktop.folder / "program.log", "ab") as log:
            self.program.process = subprocess.Popen(
                [*command, "sh", "-c", f"{mount} && exec {self.program.command}"], env=self.program.environment,
                stdout=log, stderr=log)
        wait_until(self.program.is_listening, "the program answers")

    def test_unreadable_stores_are_kept_aside(self):
        record = {"id": "9B2C1A8E-0000-4000-8000-000000000001", "kind": "text", "text": "good", "date": 1.5, "pinned": False}
        whole = json.dumps([record])
        cases = {
            "truncated": whole[:-20],
            "binary": "\x00\x01\x02" * 100,
            "foreign": json.dumps({"items": [1, 2]}),
            "wrong type": json.dumps([{**record, "date": "yesterday"}]),
        }
        os.makedirs(self.folder, exist_ok=True)
        for name, text in cases.items():
            with self.subTest(name):
                with open(self.path, "w") as file:
                    file.write(text)
                self.program.start()
                self.assertEqual(self.program.history(), [])
                with open(self.path) as file:
                    self.assertEqual(file.read(), text, "untouched until the next save")
                self.copy(f"after {name}")
                self.program.process.send_signal(signal.SIGTERM)
                self.assertEqual(self.program.process.wait(10), 0)
                self.assertEqual([r["text"] for r in self.stored()], [f"after {name}"])
                kept = [entry for entry in os.listdir(self.folder) if "unreadable" in entry]
                self.assertEqual(len(kept), 1)
                with open(os.path.join(self.folder, kept[0])) as file:
                    self.assertEqual(file.read(), text)
                os.unlink(os.path.join(self.folder, kept[0]))

    def test_edits_without_the_program(self):
        self.program.start()
        for text in ("one", "two", "three"):
            self.copy(text)
        self.program.stop()
        self.assertEqual(sorted(os.listdir(self.folder)), ["clipboard.json", "lock"])
        self.assertEqual(os.stat(self.path).st_mode & 0o777, 0o600)
        self.assertEqual(os.stat(self.folder).st_mode & 0o777, 0o700)
        half_written = os.path.join(self.folder, ".clipboard.json.Ab3xYz")
        with open(half_written, "w") as file:
            file.write("[")
        self.program.call("clipboard", "list")
        self.assertTrue(os.path.exists(half_written), "listing removes nothing: another program may be writing")
        self.program.call("clipboard", "pin", "3")
        self.assertFalse(os.path.exists(half_written))
        self.program.call("clipboard", "delete", "2")
        self.assertEqual([(r["text"], r["pinned"]) for r in self.program.history()], [("one", True), ("two", False)])
        self.assertEqual(self.program.call("clipboard", "pin", "9", check=False).returncode, 1)
        self.program.call("clipboard", "clear")
        self.assertEqual([r["text"] for r in self.stored()], ["one"])
        self.program.start()
        self.assertEqual([r["text"] for r in self.program.history()], ["one"])
        self.program.set("clipboard.clearOnQuit", True)
        self.copy("gone at quit")
        self.program.stop()
        self.assertEqual([r["text"] for r in self.stored()], ["one"])


if __name__ == "__main__":
    unittest.main(verbosity=1)
