"""Screens added, removed, rearranged and scaled; top bars; declared camera notches; compositor and window manager come and
go."""
import unittest

from harness.desktop import Desktop
from harness.peer import Peer
from harness.program import Program
from harness.waiting import wait_until


class Screens(unittest.TestCase):
    def desktop_of(self, width=1280, height=800, **options):
        desktop = Desktop(width, height, **options)
        self.addCleanup(desktop.close)
        return desktop

    def add_right_screen(self, desktop):
        desktop.run("xrandr", "--setmonitor", "R", "1280/340x800/210+1280+0", "none")

    def test_follows_the_pointer_and_survives_removal(self):
        desktop = self.desktop_of(2560, 800)
        desktop.run("xrandr", "--setmonitor", "L", "1280/340x800/210+0+0", "screen")
        self.add_right_screen(desktop)
        desktop.move_pointer(300, 400)
        with Program(desktop) as program:
            self.assertEqual(program.status()["screen"]["name"], "L")
            desktop.move_pointer(1900, 400)
            wait_until(lambda: program.status()["screen"]["name"] == "R", "an idle notch follows the pointer")
            self.assertEqual(program.status()["surface"]["x"], 1280 + 640 - 96)
            program.call("open")
            program.wait_phase("expanded")
            desktop.move_pointer(300, 400)
            self.assertEqual(program.status()["screen"]["name"], "R", "an open notch stays")
            desktop.run("xrandr", "--delmonitor", "R")
            wait_until(lambda: program.status()["screen"]["name"] != "R", "the screen is gone, the notch is not")
            self.assertEqual(program.status()["phase"], "expanded")
            program.call("close")
            self.add_right_screen(desktop)
            desktop.move_pointer(1900, 400)
            wait_until(lambda: program.status()["screen"]["name"] == "R", "and it follows again")

    def test_scales(self):
        for factor in ("1.25", "1.5", "2"):
            with self.subTest(factor=factor), self.desktop_of(environment={"QT_SCALE_FACTOR": factor}) as desktop:
                self.check_scale(desktop, float(factor))
        desktop = self.desktop_of()
        desktop.run("xrdb", "-merge", "-", input="Xft.dpi: 144\n")
        self.check_scale(desktop, 1.5)

    def check_scale(self, desktop, factor):
        with Program(desktop) as program:
            status = program.status()
            self.assertEqual(status["screen"]["scale"], factor)
            self.assertEqual(status["surface"]["width"], 192)
            # The lozenge fills its native pixels exactly.
            half, height = int(96 * factor), int(24 * factor)
            picture = desktop.settled(640 - 200 * factor / 2 - 40, 0, 200 * factor + 80, 60)
            middle = picture.width // 2
            self.assertEqual(picture.pixel(middle - half + 14, 2), (0, 0, 0))
            desktop.move_pointer(640, 400)
            # Its input region is in native pixels too: the far corner of it reacts.
            desktop.move_pointer(640 + int(95 * factor), height // 2)
            program.wait_phase("hover")
            desktop.move_pointer(640 + int(112 * factor), height // 2)
            program.wait_phase("idle")

    def test_the_top_bar_gives_the_height(self):
        desktop = self.desktop_of()
        with Program(desktop) as program:
            self.assertEqual(program.status()["metrics"]["menuBarHeight"], 24)
            bar = Peer(desktop, "Bar", (0, 0, 1280, 37), kind="dock")
            desktop.run("xprop", "-id", bar.window, "-f", "_NET_WM_STRUT_PARTIAL", "32c", "-set",
                        "_NET_WM_STRUT_PARTIAL", "0, 0, 37, 0, 0, 0, 0, 0, 0, 1279, 0, 0")
            wait_until(lambda: program.status()["metrics"]["menuBarHeight"] == 37, "the bar counts")
            self.assertEqual(program.status()["surface"]["height"], 37)
            # And the lozenge is above the bar.
            wait_until(lambda: desktop.frames.grab(640, 30, 1, 1).pixel(0, 0) == (0, 0, 0), "the lozenge covers the bar")

    def test_a_declared_camera_notch(self):
        desktop = self.desktop_of()
        with Program(desktop) as program:
            name = program.status()["screen"]["name"]
            program.set("display.notch", {name: "180x32"})
            wait_until(lambda: program.status()["metrics"]["hasHardwareNotch"], "the notch is there")
            metrics = program.status()["metrics"]
            self.assertEqual(metrics["hardwareNotchSize"], {"width": 180, "height": 32})
            self.assertEqual(metrics["menuBarHeight"], 32)
            self.assertEqual(program.status()["surface"]["height"], 53)
            program.call("settings", "reset", "display.notch")
            wait_until(lambda: not program.status()["metrics"]["hasHardwareNotch"], "and gone")

    def test_compositor_and_window_manager_come_and_go(self):
        desktop = self.desktop_of()
        Peer(desktop, "Below", (0, 0, 1280, 800))
        with Program(desktop) as program:
            self.assertTrue(program.status()["compositor"])
            program.call("open")
            program.wait_phase("expanded")
            desktop.stop("compositor")
            wait_until(lambda: not program.status()["compositor"], "notices that the compositor has gone")
            # Shaped to the outline: what is beside it is the window below, not black.
            wait_until(lambda: desktop.frames.grab(330, 100, 1, 1).pixel(0, 0) != (0, 0, 0), "no black rectangle")
            desktop.start_compositor()
            wait_until(lambda: program.status()["compositor"], "notices the new compositor")
            desktop.stop("wm")
            desktop.start_wm()
            self.assertEqual(program.status()["phase"], "expanded")
            program.call("close")
            program.wait_phase("idle")
            desktop.click(640, 5)
            program.wait_phase("expanded")

    def test_above_full_screen_windows_and_on_every_desktop(self):
        desktop = self.desktop_of()
        full = Peer(desktop, "Full", (0, 0, 1280, 800))
        with Program(desktop) as program:
            full.activate()
            desktop.set_window_state(full.window, "fullscreen")
            wait_until(lambda: "FULLSCREEN" in desktop.run("xprop", "-id", full.window, "_NET_WM_STATE"), "full screen")
            wait_until(lambda: desktop.frames.grab(640, 22, 1, 1).pixel(0, 0) == (0, 0, 0), "the lozenge is above")
            desktop.run("xdotool", "set_desktop", "1")
            wait_until(lambda: desktop.frames.grab(640, 22, 1, 1).pixel(0, 0) == (0, 0, 0), "and on the other desktop")
            clients = desktop.root_property("_NET_CLIENT_LIST")
            self.assertEqual(clients.count("0x"), 1, "no taskbar entry: " + clients)
            program.status()

    def test_without_a_bus_and_without_a_compositor(self):
        desktop = self.desktop_of(bus=False, compositor=False)
        with Program(desktop) as program:
            self.assertFalse(program.status()["compositor"])
            desktop.click(640, 5)
            program.wait_phase("expanded")


if __name__ == "__main__":
    unittest.main(verbosity=1)
