"""Hostile peers and vanishing servers: the program goes on, and the next honest copy is recorded."""
import os
import signal
import subprocess
import unittest

from harness.desktop import BUILD, Desktop
from harness.peer import paste, xclip
from harness.program import Program
from harness.waiting import holds_for, wait_until

SEARCH_FIELD_Y = 151  # on the clipboard tool
OWNER = str(BUILD / "bin" / "peers" / "selection-owner")


class Faults(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 800)
        self.addCleanup(self.desktop.close)
        self.program = Program(self.desktop)
        self.addCleanup(self.program.kill)

    def resident_kib(self):
        with open(f"/proc/{self.program.process.pid}/status") as file:
            return next(int(line.split()[1]) for line in file if line.startswith("VmHWM"))

    def owner(self, *arguments):
        process = subprocess.Popen([OWNER, *arguments], env=self.desktop.environment, stdout=subprocess.PIPE)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        process.stdout.readline()
        return process

    def next_copy_is_recorded(self, text):
        xclip(self.desktop, text.encode())
        wait_until(lambda: any(r.get("text") == text for r in self.program.history()), f"recorded: {text}", 20)

    def test_hostile_owners(self):
        for mode in ("refuse", "hang-targets", "hang-incr", "die-incr", "announce-4g", "drip", "huge", "garbage-targets"):
            with self.subTest(mode):
                process = self.owner(mode)
                # Answers at once while the peer does its worst.
                holds_for(lambda: self.program.call("status", timeout=2).returncode == 0, "the program answers", 1.0)
                self.next_copy_is_recorded(f"after {mode}")
                process.kill()
        self.assertLess(self.resident_kib(), 160 * 1024, "memory stays bounded")

    def test_a_stopped_owner(self):
        process = self.owner("serve", "--text", "never read")
        process.send_signal(signal.SIGSTOP)
        holds_for(lambda: self.program.call("status", timeout=2).returncode == 0, "the program answers", 1.0)
        self.next_copy_is_recorded("after the stopped one")
        process.send_signal(signal.SIGCONT)

    def test_text_fields_wait_for_nobody(self):
        self.program.call("open", "clipboard")
        wait_until(lambda: self.program.status()["hasFocus"], "the panel has the keyboard")
        owners = [self.owner("serve", "--selection", selection, "--text", selection)
                  for selection in ("CLIPBOARD", "PRIMARY")]
        for owner in owners:
            owner.send_signal(signal.SIGSTOP)
        answers_at_once = lambda: self.program.call("status", timeout=2).returncode == 0
        for provoke in (lambda: self.desktop.click(640, SEARCH_FIELD_Y, button=2), lambda: self.desktop.key("ctrl+v"),
                        lambda: self.desktop.key("shift+Insert")):
            provoke()
            holds_for(answers_at_once, "the program answers", 1.0)
        self.desktop.type("typed")
        self.desktop.key("ctrl+a", "ctrl+c")
        wait_until(lambda: paste(self.desktop) == b"typed", "the field has the keyboard, and what was typed only")
        for owner in owners:
            owner.send_signal(signal.SIGCONT)

    def test_a_burst(self):
        process = self.owner("burst", "--count", "1000")
        process.wait(30)
        self.next_copy_is_recorded("after the burst")
        self.assertLessEqual(len(self.program.history()), 61)

    def test_the_display_goes(self):
        self.next_copy_is_recorded("must be saved")
        self.desktop.stop("Xvfb", signal.SIGKILL)
        self.assertNotEqual(self.program.process.wait(10), 0)
        self.assertEqual(len(self.program.log().splitlines()), 1, self.program.log())
        path = os.path.join(self.program.data_folder(), "clipboard.json")
        with open(path) as file:
            self.assertIn("must be saved", file.read())


if __name__ == "__main__":
    unittest.main(verbosity=1)
