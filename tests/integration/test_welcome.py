"""The first run by real input: how it comes, what it changes, and that it does not come back."""
import json
import subprocess
import unittest

from harness.desktop import Desktop
from harness.peer import Peer
from harness.program import Program
from harness.waiting import holds_for, wait_until
from harness.welcome_window import TITLE, WelcomeWindow

KEY = "app.hasCompletedOnboarding"
BELOW = (90, 140, 60)


class FirstRun(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 900, first_run=True)
        self.addCleanup(self.desktop.close)
        self.put_below()
        self.program = Program(self.desktop, start=False)
        self.addCleanup(lambda: self.program.kill())

    def put_below(self):
        picture = self.desktop.folder / "below.png"
        subprocess.run(["convert", "-size", "1280x900", "xc:rgb(%d,%d,%d)" % BELOW, str(picture)], check=True)
        self.below = Peer(self.desktop, "Below", (0, 0, 1280, 900), picture)

    def tearDown(self):
        if self.program.process and self.program.process.poll() is None:
            self.program.stop()

    def open(self):
        """As on a first start."""
        self.program.start()
        self.window = WelcomeWindow(self.desktop)
        return self.window

    def value(self, key):
        return json.loads(self.program.call("settings", "get", key).stdout)

    def is_shown(self):
        return TITLE in self.desktop.run("wmctrl", "-l")

    def active_title(self):
        return subprocess.run(["xdotool", "getactivewindow", "getwindowname"], env=self.desktop.environment,
                              capture_output=True, text=True).stdout.strip()

    def own_windows(self):
        return self.desktop.run("xdotool", "search", "--onlyvisible", "--class", "ostrelle").split()

    def restart(self):
        self.program.stop()
        self.program.start()
        self.program.hear()

    def test_return_leads_to_the_notch(self):
        window = self.open()
        self.assertTrue(self.is_shown(), "with an entry in the taskbar")
        state = self.desktop.run("xprop", "-id", window.window, "_NET_WM_STATE", "_NET_WM_WINDOW_TYPE")
        self.assertNotIn("SKIP_TASKBAR", state)
        self.assertIn("_NET_WM_WINDOW_TYPE_NORMAL", state)
        self.assertEqual(window.step(), 0)
        # A screen reader tells what has the keyboard: the title of each step as it comes.
        self.assertIn("active", window.objects()["frame", TITLE]["states"])
        for role, title in (("heading", "It lives at the top of your screen"), ("heading", "Six tools"),
                            ("heading", "Make it yours"), ("label", "You're set")):
            self.desktop.key("Return")
            wait_until(lambda: "focused" in window.objects().get((role, title), {"states": ()})["states"],
                       f"{title} is told")
        self.assertIn(("push button", "Get Started"), window.objects())
        self.assertFalse(self.value(KEY))
        self.desktop.key("Return")
        window.wait_closed()
        self.program.wait_phase("expanded")
        wait_until(lambda: self.program.status()["hasFocus"], "the panel has the keyboard")
        # Another window becomes the active one when this one goes, and that is nobody's click beside the notch.
        holds_for(lambda: self.program.status()["phase"] == "expanded", "the notch stays open", 1)
        self.assertIsNone(self.program.status()["selection"])
        self.desktop.key("1")
        wait_until(lambda: self.program.status()["selection"] == "clipboard", "keys choose a tool at once")
        self.assertTrue(self.value(KEY))
        self.restart()
        self.assertFalse(self.is_shown())

    def test_every_way_of_closing_completes_it(self):
        ways = {
            "Escape": lambda window: self.desktop.key("Escape"),
            "Ctrl+W": lambda window: self.desktop.key("ctrl+w"),
            "the close button": lambda window: window.click("push button", "Close"),
            "the window manager": lambda window: self.desktop.run("wmctrl", "-i", "-c", window.window),
        }
        self.program.start()
        for name, close in ways.items():
            with self.subTest(name):
                window = WelcomeWindow(self.desktop)
                window.go_to(1)
                close(window)
                window.wait_closed()
                wait_until(lambda: self.value(KEY), "the first run is completed")
                self.assertEqual(self.program.status()["phase"], "idle")
                wait_until(lambda: self.active_title() == "Below", "the window below is active again")
                self.restart()
                self.assertFalse(self.is_shown())
                self.program.call("settings", "reset", KEY)
                self.restart()

    def test_who_quits_has_closed_nothing(self):
        for name, end in {"quit": lambda: self.program.call("quit"),
                          "SIGTERM": lambda: self.program.process.terminate()}.items():
            with self.subTest(name):
                self.open().go_to(1)
                end()
                self.program.process.wait(10)
                self.open().wait_step(0)
                self.program.stop()

    def test_comes_again_when_asked_for(self):
        self.open().go_to(2)
        self.below.activate()
        wait_until(lambda: not self.window.has_focus(), "another window is in front")
        self.program.call("welcome")
        wait_until(self.window.has_focus, "it comes to the front")
        self.assertEqual(self.window.step(), 2, "as it is")
        self.program.stop()  # with the window open
        self.assertEqual(self.program.call("welcome", "more", check=False).returncode, 2)
        self.program.start("welcome")
        self.window = WelcomeWindow(self.desktop)
        self.assertEqual(self.window.step(), 0)
        self.desktop.key("Escape")
        self.window.wait_closed()
        # By the notch's menu, from the selector: "Welcome…" is its second entry.
        self.desktop.click(640, 5, button=3)
        wait_until(lambda: len(self.own_windows()) > 1, "the menu is there")
        self.desktop.move_pointer(640, 700)
        self.desktop.key("Down", "Down", "Return")
        WelcomeWindow(self.desktop)
        self.program.wait_phase("idle")

    def test_changes_take_effect_as_they_are_made(self):
        window = self.open()
        width = self.program.status()["surface"]["width"]
        self.assertEqual(window.step(), 0)  # from now on someone listens, and is told the title first
        window.go_to(2)
        self.desktop.key("Tab")
        wait_until(lambda: "focused" in window.objects()["check box", "Clipboard"]["states"], "the switch is next")
        window.click("check box", "Clipboard")
        wait_until(lambda: "clipboard" not in self.value("modules.enabled"), "the tool is hidden")
        wait_until(lambda: self.program.status()["surface"]["width"] < width, "the notch is smaller")
        window.click("check box", "Clipboard")
        wait_until(lambda: self.program.status()["surface"]["width"] == width, "and as before")
        # By keys alone: to the picker, along it, back to a switch, then on.
        window.click("radio button", "Color")
        self.desktop.key("Tab", "Right", "Right", "shift+Tab", "space")
        wait_until(lambda: "projects" not in self.value("modules.enabled"), "keys switch it, too")
        self.assertIn("focused", window.objects()["check box", "Projects"]["states"])
        self.assertEqual(window.objects()["check box", "Projects"]["description"], "Hidden from the notch")
        self.desktop.key("Return")
        window.wait_step(3)
        window.click("radio button", "Ember")
        wait_until(lambda: self.value("appearance.notchTheme") == "ember", "the theme is chosen")
        self.desktop.key("Tab", "Right")
        wait_until(lambda: self.program.status()["theme"] == "ultraviolet", "keys choose, too")
        before = window.look().pixel(10, 400)
        window.click("radio button", "Light" if before[0] < 128 else "Dark")
        wait_until(lambda: abs(window.look().pixel(10, 400)[0] - before[0]) > 128, "the window follows")
        self.desktop.key("Return")
        window.wait_step(4)
        self.program.call("shortcuts", "set", "toggleNotch", "Ctrl+Alt+Space")
        wait_until(lambda: any(node["description"] == "⌃⌥Space" for node in window.objects().values()),
                   "shortcuts are those of the moment")
        self.desktop.key("Escape")
        window.wait_closed()
        self.restart()
        self.assertEqual(self.value("appearance.notchTheme"), "ultraviolet")
        self.assertNotIn("projects", self.value("modules.enabled"))

    def test_is_moved_by_its_background(self):
        window = self.open()
        self.assertEqual((window.x, window.y), (340, 170), "in the middle of the screen")
        window.look()
        x, y = window.x + 300, window.y + 30
        self.desktop.move_pointer(x, y)
        self.desktop.run("xdotool", "mousedown", "1")
        self.desktop.run("xdotool", "mousemove", str(x - 10), str(y + 10), "mousemove", str(x - 20), str(y + 15))

        def is_moved():
            # The window manager takes over in its own time.
            self.desktop.run("xdotool", "mousemove_relative", "--", "-10", "5")
            now = window.place_on_screen()
            return now[0] < window.x - 40 and now[1] > window.y + 20

        wait_until(is_moved, "it moves with the pointer")
        self.desktop.run("xdotool", "mouseup", "1")

    def test_follows_the_compositor(self):
        window = self.open()

        def corner():
            """Along the diagonal, from outside of the round corner inwards."""
            picture = self.desktop.frames.grab(window.x, window.y, 12, 12)
            return [picture.pixel(at, at) for at in range(12)]

        def is_soft():
            pixels = corner()
            return pixels[1] == BELOW and len(set(pixels[2:8])) > 3

        wait_until(is_soft, "the corner is smooth")
        self.desktop.stop("compositor")

        def is_cut():
            pixels = corner()
            return pixels[3] == BELOW and (0, 0, 0) not in pixels and pixels[8] != BELOW

        wait_until(is_cut, "it is cut to its outline")
        self.desktop.start_compositor()
        wait_until(is_soft, "smooth again")

    def test_casts_a_shadow_where_there_is_room_for_one(self):
        self.desktop.close()
        self.desktop = Desktop(1280, 900, wm="xfwm4", compositor=False, first_run=True)  # it composites by itself
        self.addCleanup(self.desktop.close)
        self.put_below()
        self.program = Program(self.desktop, start=False)
        window = self.open()
        self.assertEqual((window.x, window.y), (340, 170), "in the middle of the screen")

        def below_it(distance):
            picture = self.desktop.frames.grab(window.x + 300, window.y + window.height, 1, distance + 1)
            return sum(picture.pixel(0, distance))

        wait_until(lambda: below_it(8) < below_it(60) - 20 < sum(BELOW) - 20, "it casts a shadow")
        self.desktop.click(window.x + 300, window.y + window.height + 30)
        wait_until(lambda: self.active_title() == "Below", "which takes no clicks")


if __name__ == "__main__":
    unittest.main()
