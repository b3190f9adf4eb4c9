"""What the program logs: by level and category in the journal, as much as is asked for, never what was copied."""
import os
import subprocess
import tempfile
import unittest

from harness.desktop import BUILD, Desktop
from harness.peer import xclip
from harness.program import Program
from harness.waiting import wait_until

SECRET = "hydrangea"
WARNING = "The settings could not be read; the defaults are used"


class Logs(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 800, compositor=False, bus=False)
        self.addCleanup(self.desktop.close)
        (self.desktop.home / "config" / "Ostrelle" / "defaults.json").write_text(f'{{"{SECRET}')

    def logged(self, is_journal, rules=None):
        """The lines of a start that has to warn of its settings."""
        with tempfile.TemporaryFile("w+") as log:
            status = os.fstat(log.fileno())
            journal = f"{status.st_dev}:{status.st_ino if is_journal else status.st_ino + 1}"
            environment = {**self.desktop.environment, "JOURNAL_STREAM": journal}
            if rules:
                environment["QT_LOGGING_RULES"] = rules
            subprocess.run([BUILD / "bin" / "ostrelle-notch", "--check-update"], env=environment, stderr=log,
                           stdout=subprocess.DEVNULL, timeout=30)
            log.seek(0)
            return log.read().splitlines()

    def test_levels_and_categories_are_for_the_journal(self):
        self.assertIn(f"<4>ostrelle.foundation: {WARNING}", self.logged(is_journal=True))
        # Of a service whose standard error goes elsewhere.
        self.assertIn(f"ostrelle: {WARNING}", self.logged(is_journal=False))

    def test_the_user_says_how_much(self):
        self.assertFalse(any(WARNING in line for line in self.logged(True, "ostrelle.foundation.warning=false")))

    def test_nothing_of_what_was_copied(self):
        with Program(self.desktop, environment={"QT_LOGGING_RULES": "ostrelle.*=true"}) as program:
            program.expected_lines = [WARNING]
            xclip(self.desktop, SECRET.encode())
            wait_until(lambda: len(program.history()) == 1, "recorded")
            program.call("clipboard", "copy", "1")
            program.call("clipboard", "delete", "1")
            program.call("open", "clipboard")
            program.hear()
            program.expected_lines.append("")
            self.assertIn(WARNING, program.log())
            self.assertNotIn(SECRET, program.log())


if __name__ == "__main__":
    unittest.main()
