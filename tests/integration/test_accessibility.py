"""The notch as a screen reader meets it."""
import json
import pathlib
import subprocess
import unittest

import harness
from harness.desktop import Desktop
from harness.peer import xclip
from harness.program import Program
from harness.waiting import wait_until

READER = pathlib.Path(harness.__file__).with_name("accessible.py")


class Accessibility(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 800)
        self.addCleanup(self.desktop.close)
        self.program = Program(self.desktop)
        self.addCleanup(self.program.kill)

    def objects(self, *action):
        """(role, name) to what is seen of it; with an action, after it was done."""
        answer = subprocess.run(["/usr/bin/python3", "-B", str(READER), *action], env=self.desktop.environment, text=True,
                                capture_output=True, timeout=60)
        self.assertEqual(answer.returncode, 0, answer.stderr)
        found = {}

        def collect(node):
            found[node["role"], node["name"]] = node
            for child in node["children"]:
                collect(child)

        collect(json.loads(answer.stdout))
        return found

    def test_tools_and_rows_have_role_name_state_and_focus(self):
        xclip(self.desktop, b"a copied text")
        wait_until(lambda: self.program.history(), "the copy is recorded")
        self.program.call("open", "clipboard")
        wait_until(lambda: self.program.status()["hasFocus"], "the panel has the keyboard")
        seen = self.objects()
        self.assertIn(("dialog", "Ostrelle"), seen)
        self.assertIn("focused", seen["text", "Search history"]["states"])
        self.assertIn("selected", seen["list item", "a copied text, 13 characters, now"]["states"])
        tile = seen["push button", "Clipboard"]
        self.assertIn("checked", tile["states"])
        self.assertEqual(tile["description"], "Everything you've copied, one keystroke away.")
        self.assertNotIn("enabled", seen["push button", "Settings"]["states"])

        seen = self.objects("push button", "Color", "Press")
        wait_until(lambda: self.program.status()["selection"] == "color", "pressing a tile shows its tool")
        self.objects("push button", "Back to tools", "Press")
        wait_until(lambda: self.program.status()["selection"] is None, "the back button goes back")


if __name__ == "__main__":
    unittest.main()
