"""The notch under a real pointer and a real keyboard."""
import unittest

from harness.desktop import Desktop
from harness.peer import Peer, paste, xclip
from harness.program import Program
from harness.waiting import holds_for, wait_until


class Notch(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 800)
        self.addCleanup(self.desktop.close)
        self.below = Peer(self.desktop, "Below", (0, 0, 1280, 800))
        self.program = Program(self.desktop)
        self.addCleanup(self.program.kill)

    def tearDown(self):
        if self.program.process.poll() is None:
            self.program.stop()

    def point(self, x, y):
        """From the middle of the top edge."""
        self.desktop.move_pointer(640 + x, y)

    def click(self, x, y, button=1):
        self.desktop.click(640 + x, y, button)

    def focus(self):
        return self.desktop.run("xdotool", "getwindowfocus").strip()

    def test_hovers_opens_and_closes_when_the_pointer_leaves(self):
        self.program.set("general.hoverOpenDelay", 0.3)
        focus = self.focus()
        self.point(0, 5)
        self.program.wait_phase("hover")
        self.program.wait_phase("expanded")
        self.assertTrue(self.program.status()["openedByHover"])
        self.assertEqual(self.focus(), focus, "hovering takes no focus")
        self.point(0, 600)
        self.program.wait_phase("idle")

    def test_hovering_with_delay_zero_never_opens(self):
        self.program.set("general.hoverOpenDelay", 0)
        self.point(0, 5)
        self.program.wait_phase("hover")
        holds_for(lambda: self.program.status()["phase"] == "hover", "stays in hover", 1.0)

    def test_a_clicked_hover_panel_stays(self):
        self.program.set("general.hoverOpenDelay", 0.1)
        self.point(0, 5)
        self.program.wait_phase("expanded")
        self.click(0, 120)
        wait_until(lambda: self.program.status()["hasFocus"], "a click into the panel takes the keyboard")
        self.point(0, 600)
        holds_for(lambda: self.program.status()["phase"] == "expanded", "stays open", 1.2)
        self.program.call("close")

    def test_click_escape_digits_and_focus_back(self):
        self.below.activate()
        self.program.hear()
        focus = self.focus()
        self.click(0, 5)
        self.program.wait_phase("expanded")
        wait_until(lambda: self.program.status()["hasFocus"], "the panel has the keyboard")
        self.desktop.key("3")
        wait_until(lambda: self.program.status()["selection"] == "assets", "3 opens the third tool")
        self.desktop.key("Escape")
        wait_until(lambda: self.program.status()["selection"] is None, "Escape goes back")
        self.assertEqual(self.program.status()["phase"], "expanded")
        self.desktop.key("9")
        self.desktop.key("Escape")
        self.program.wait_phase("idle")
        wait_until(lambda: self.focus() == focus, "the focus is back where it was")

    def test_clicks_outside_pass_and_close(self):
        self.click(0, 5)
        self.program.wait_phase("expanded")
        before = self.below.clicks()
        # Inside the native window, outside the surface.
        self.click(-420, 60)
        wait_until(lambda: self.below.clicks() == before + 1, "the click reaches the window below")
        self.program.wait_phase("idle")
        # Just outside of the closed lozenge too.
        self.click(130, 12)
        wait_until(lambda: self.below.clicks() == before + 2, "the click beside the lozenge reaches the window below")
        self.assertEqual(self.program.status()["phase"], "idle")

    def test_another_application_closes_it(self):
        other = Peer(self.desktop, "Other", (100, 500, 200, 200))
        self.below.activate()
        self.program.hear()
        self.program.call("open")
        self.program.wait_phase("expanded")
        other.activate()
        self.program.wait_phase("idle")
        wait_until(lambda: self.focus() == other.window, "the other application keeps the focus")

    def test_tiles_open_and_switch_by_pointer(self):
        self.click(0, 5)
        self.program.wait_phase("expanded")
        self.desktop.settled(200, 0, 880, 300)
        self.click(-132, 75)
        wait_until(lambda: self.program.status()["selection"] == "color", "the second tile opens its tool")
        self.desktop.settled(200, 0, 880, 300)
        self.click(44, 95)
        wait_until(lambda: self.program.status()["selection"] == "projects", "the strip switches tools")
        self.assertEqual(self.program.status()["phase"], "expanded")

    def test_the_context_menu_appears_above_and_works_by_keyboard(self):
        self.click(0, 5, button=3)
        menu = wait_until(lambda: self.desktop.run("xdotool", "search", "--onlyvisible", "--class", "ostrelle").split()[1:],
                          "the menu is there")
        self.assertTrue(menu)
        self.desktop.key("Up", "Return")
        self.assertEqual(self.program.process.wait(10), 0, "the last entry quits")

    def test_geometry_follows_the_tables(self):
        status = self.program.status()
        self.assertEqual(status["surface"], {"x": 544, "y": 0, "width": 192, "height": 24})
        self.assertEqual(status["interaction"], {"x": 537, "y": 0, "width": 206, "height": 29})
        self.assertEqual(status["window"]["width"], 206 + 92)
        self.program.call("open")
        status = self.program.status()
        self.assertEqual(status["surface"], {"x": 346, "y": 0, "width": 588, "height": 154})
        self.assertEqual((status["window"]["width"], status["window"]["height"]), (680, 200))
        self.program.call("open", "clipboard")
        wait_until(lambda: self.program.status()["surface"]["height"] == 288, "the tool's own height")
        wait_until(lambda: self.program.status()["window"]["height"] == 334, "and the window holds it")
        self.program.call("close")
        # Grown at once, shrunk late.
        self.assertEqual(self.program.status()["window"]["width"], 680, "still large")
        wait_until(lambda: self.program.status()["window"]["width"] == 298, "the window shrinks")

    def test_hidden_when_not_shown_automatically(self):
        self.program.set("general.showAutomatically", False)
        self.assertEqual(self.program.status()["surface"]["width"], 0)
        before = self.below.clicks()
        self.click(0, 5)
        wait_until(lambda: self.below.clicks() == before + 1, "nothing is in the way")
        self.program.call("open")
        self.program.wait_phase("expanded")
        self.program.call("close")

    def test_a_dead_key_composes_in_the_search_field(self):
        self.desktop.run("setxkbmap", "us", "-variant", "intl")
        self.program.call("open", "clipboard")
        wait_until(lambda: self.program.status()["hasFocus"], "the panel has the keyboard")
        xclip(self.desktop, "caf\u00e9".encode())
        xclip(self.desktop, b"tea")
        wait_until(lambda: len(self.program.history()) >= 1, "recorded")
        xclip(self.desktop, "caf\u00e9".encode())
        wait_until(lambda: any(r.get("text") == "caf\u00e9" for r in self.program.history()), "recorded")
        # By key code: dead acute is the key right of semicolon (48) on this layout.
        for code in ("54", "38", "41", "48", "26"):  # c a f ´ e
            self.desktop.run("xdotool", "key", code)
        # Nothing was selected while the history was empty.
        self.desktop.key("Down", "Return")
        self.program.wait_phase("idle")
        wait_until(lambda: paste(self.desktop) == "caf\u00e9".encode(), "the composed word found its entry")


if __name__ == "__main__":
    unittest.main(verbosity=1)
