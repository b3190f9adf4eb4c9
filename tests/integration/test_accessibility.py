"""The notch as a screen reader meets it."""
import unittest

from harness.desktop import Desktop
from harness.peer import xclip
from harness.program import Program
from harness.reader import accessible_objects
from harness.waiting import wait_until


class Accessibility(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 800)
        self.addCleanup(self.desktop.close)
        self.program = Program(self.desktop)
        self.addCleanup(self.program.kill)

    def objects(self, *action):
        return accessible_objects(self.desktop, "Ostrelle", *action)

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
        self.assertIn("enabled", seen["push button", "Settings"]["states"])

        seen = self.objects("push button", "Color", "Press")
        wait_until(lambda: self.program.status()["selection"] == "color", "pressing a tile shows its tool")
        self.program.call("color", "add", "#F7B267")
        seen = self.objects()
        self.assertLessEqual({"focusable", "enabled"}, set(seen["push button", "Pick Color"]["states"]))
        self.objects("push button", "#F7B267", "Press")
        self.objects("push button", "Add to favorites", "Press")
        wait_until(lambda: {("push button", "Color #F7B267"), ("push button", "HSL 31°, 90%, 69%"),
                            ("push button", "Remove from favorites"),
                            ("panel", "Recent"), ("panel", "Favorites")} <= set(self.objects()),
                   "what is pressed is shown")
        self.objects("push button", "Back to tools", "Press")
        wait_until(lambda: self.program.status()["selection"] is None, "the back button goes back")


if __name__ == "__main__":
    unittest.main()
