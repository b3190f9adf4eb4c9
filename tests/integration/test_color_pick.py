"""The loupe in the hand of a user: exact pixels, every way to end it, the running program and none."""
import json
import signal
import struct
import subprocess
import unittest

from harness.desktop import Desktop
from harness.loupe import Loupe, colour_at, hexadecimal, set_root_bytes, show_picture
from harness.peer import Peer
from harness.program import Program
from harness.waiting import wait_until

GAMMA = 1.8
# Display P3, adapted to the D50 of profiles (ICC.1:2010, "colorant" tags).
PRIMARIES = {"rXYZ": (0.5151, 0.2412, -0.0011), "gXYZ": (0.2920, 0.6922, 0.0419), "bXYZ": (0.1571, 0.0666, 0.7841)}


def wide_profile():
    """A matrix profile of a wide screen, byte by byte."""
    def number(value):
        return struct.pack(">i", round(value * 65536))

    curve = struct.pack(">4sII", b"curv", 0, 1) + struct.pack(">H", round(GAMMA * 256)) + b"\0\0"
    blocks = [(name.encode(), b"XYZ \0\0\0\0" + b"".join(map(number, xyz))) for name, xyz in PRIMARIES.items()]
    blocks += [(b"wtpt", b"XYZ \0\0\0\0" + b"".join(map(number, (0.9642, 1.0, 0.8249))))]
    blocks += [(name, curve) for name in (b"rTRC", b"gTRC", b"bTRC")]
    table, body = struct.pack(">I", len(blocks)), b""
    start = 128 + 4 + 12 * len(blocks)
    for name, block in blocks:
        table += struct.pack(">4sII", name, start + len(body), len(block))
        body += block
    header = struct.pack(">I4sI4s4s4s", start + len(body), b"lcms", 0x02400000, b"mntr", b"RGB ", b"XYZ ")
    header += struct.pack(">6H", 2026, 1, 1, 0, 0, 0) + b"acsp" + b"\0" * 28
    header += b"".join(map(number, (0.9642, 1.0, 0.8249)))
    return header.ljust(128, b"\0") + table + body


def in_srgb(colour):
    """What the wide screen shows for this, in sRGB."""
    red, green, blue = ((part / 255) ** GAMMA for part in colour)
    linear = (1.2249 * red - 0.2249 * green, -0.0421 * red + 1.0421 * green,
              -0.0196 * red - 0.0786 * green + 1.0983 * blue)
    clamped = [min(max(part, 0), 1) for part in linear]
    return [255 * (12.92 * part if part <= 0.0031308 else 1.055 * part ** (1 / 2.4) - 0.055) for part in clamped]


class ColorPick(unittest.TestCase):
    def desktop_of(self, width=1280, height=800, **options):
        desktop = Desktop(width, height, **options)
        self.addCleanup(desktop.close)
        self.peer = show_picture(desktop)
        return desktop

    def opened(self, desktop, at, *arguments, **options):
        loupe = Loupe(desktop, at, *arguments, **options)
        self.addCleanup(loupe.kill)
        self.assertIsNone(loupe.process.poll(), "the loupe is open")
        return loupe

    def recents(self, desktop):
        listed = Program(desktop, start=False).call("color", "list", "--json").stdout
        return [entry["hex"] for entry in json.loads(listed)["recents"]]

    def check_free(self, desktop, x=900, y=600):
        clicks = self.peer.clicks()
        desktop.click(x, y)
        wait_until(lambda: self.peer.clicks() > clicks, "the pointer is free")

    def use_everything(self, desktop):
        """The same outcome, whoever opens the loupe."""
        loupe = self.opened(desktop, (300, 400))
        loupe.move(617, 433)
        desktop.run("xdotool", "click", "1")
        self.assertEqual(loupe.answer(), (0, hexadecimal(colour_at(617, 433)), ""))
        self.check_free(desktop)

        loupe = self.opened(desktop, (300, 400), "--format", "rgb")
        desktop.key("Right", "Right", "Down")
        wait_until(lambda: loupe.is_at(302, 401), "the loupe follows the keys")
        desktop.key("shift+Left", "Up", "Return")
        self.assertEqual(loupe.answer(), (0, ", ".join(map(str, colour_at(292, 400))), ""))

        loupe = self.opened(desktop, (500, 500), "--format", "json")
        desktop.key("shift+Return")
        loupe.move(520, 520)
        desktop.key("space")
        status, out, _ = loupe.answer()
        picked = json.loads(out)
        self.assertEqual((status, picked["hex"]), (0, hexadecimal(colour_at(520, 520))))
        self.assertEqual([picked[part] for part in "rgb"], [part / 255 for part in colour_at(520, 520)])

        expected = [hexadecimal(colour_at(*at)) for at in ((520, 520), (500, 500), (292, 400), (617, 433))]
        wait_until(lambda: self.recents(desktop) == expected, "all are kept")

        for ending in (("key", "Escape"), ("click", "3")):
            loupe = self.opened(desktop, (300, 400))
            desktop.run("xdotool", *ending)
            self.assertEqual(loupe.answer(), (1, "", "ostrelle: color pick: no color was picked"))
            self.check_free(desktop)
        self.assertEqual(self.recents(desktop), expected)

        loupe = self.opened(desktop, (300, 400))
        second = Program(desktop, start=False).call("color", "pick", check=False)
        self.assertEqual((second.returncode, second.stdout), (1, ""))
        self.assertIn("a loupe is open already", second.stderr)
        desktop.key("Escape")
        loupe.answer()

    def test_picks_without_the_program(self):
        desktop = self.desktop_of()
        self.use_everything(desktop)
        self.assertEqual(Program(desktop, start=False).call("status", check=False).returncode, 3, "nothing runs")

    def test_picks_in_the_running_program(self):
        desktop = self.desktop_of()
        with Program(desktop) as program:
            program.call("open", "color")
            program.wait_phase("expanded")
            self.use_everything(desktop)

    def test_the_panel_stays_open_while_its_user_picks_elsewhere(self):
        desktop = self.desktop_of()
        with Program(desktop) as program:
            program.call("open", "color")
            program.wait_phase("expanded")
            loupe = self.opened(desktop, (300, 700))
            self.assertTrue(program.status()["sampling"])
            desktop.run("xdotool", "click", "1")
            self.assertEqual(loupe.answer()[1], hexadecimal(colour_at(300, 700)))
            program.hear()
            self.assertEqual((program.status()["phase"], program.status()["sampling"]), ("expanded", False))
            self.check_free(desktop)
            program.wait_phase("idle")

    def test_one_of_many_that_start_in_the_same_moment(self):
        desktop = self.desktop_of(compositor=False, bus=False)
        program = Program(desktop, start=False)
        desktop.run("xdotool", "mousemove", "300", "400")
        for _ in range(8):
            picks = [subprocess.Popen([program.command, "color", "pick"], env=program.environment,
                                      stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True) for _ in range(4)]
            for pick in picks:
                self.addCleanup(pick.kill)
            wait_until(lambda: sum(pick.poll() is None for pick in picks) == 1, "three have ended")
            # It takes keys only when it is there: until then they go nowhere.
            wait_until(lambda: desktop.key("Return") or all(pick.poll() is not None for pick in picks), "picked")
            told = sorted(pick.communicate() for pick in picks)
            self.assertEqual(told[:3], [("", "ostrelle: color pick: a loupe is open already\n")] * 3)
            self.assertEqual(told[3], (hexadecimal(colour_at(300, 400)) + "\n", ""))

    def test_wrong_usage(self):
        program = Program(Desktop(320, 200, wm=None, compositor=False, bus=False), start=False)
        self.addCleanup(program.desktop.close)
        for words in (("--format", "cmyk"), ("--format",), ("here",)):
            self.assertEqual(program.call("color", "pick", *words, check=False).returncode, 2)
        program.environment.pop("DISPLAY")
        nowhere = program.call("color", "pick", check=False)
        self.assertEqual((nowhere.returncode, nowhere.stderr), (1, "ostrelle: No display: DISPLAY is not set.\n"))

    def test_two_screens_of_two_sizes_at_every_corner(self):
        desktop = self.desktop_of(2199, 800, environment={"QT_SCREEN_SCALE_FACTORS": "L=1;R=2"}, compositor=False)
        desktop.run("xrandr", "--setmonitor", "L", "1200/340x800/210+0+0", "screen")
        desktop.run("xrandr", "--setmonitor", "R", "999/300x700/200+1200+0", "none")
        for corner in ((0, 0), (1199, 0), (0, 799), (1199, 799), (1200, 0), (2198, 0), (1200, 699), (2198, 699)):
            with self.subTest(corner=corner):
                loupe = self.opened(desktop, corner, scale=1 if corner[0] < 1200 else 2)
                desktop.run("xdotool", "click", "1")
                self.assertEqual(loupe.answer()[1], hexadecimal(colour_at(*corner)))

    def test_profiles_of_the_screens(self):
        desktop = self.desktop_of(1280, 800, compositor=False)
        desktop.run("xrandr", "--setmonitor", "L", "640/170x800/210+0+0", "screen")
        desktop.run("xrandr", "--setmonitor", "R", "640/170x800/210+640+0", "none")
        for place, name in (((333, 444), "_ICC_PROFILE"), ((1000, 444), "_ICC_PROFILE_1")):
            set_root_bytes(desktop, name, wide_profile())
            loupe = self.opened(desktop, place, "--format", "json")
            desktop.key("Return")
            picked = json.loads(loupe.answer()[1])
            for part, expected in zip("rgb", in_srgb(colour_at(*place))):
                self.assertAlmostEqual(picked[part] * 255, expected, delta=0.6)
            set_root_bytes(desktop, name, b"")
        set_root_bytes(desktop, "_ICC_PROFILE", b"anything")
        loupe = self.opened(desktop, (333, 444))
        desktop.key("Return")
        self.assertEqual(loupe.answer(), (0, hexadecimal(colour_at(333, 444)), ""), "what is no profile changes nothing")

    def test_ends_with_whoever_asked(self):
        desktop = self.desktop_of()
        loupe = self.opened(desktop, (300, 400))
        loupe.process.send_signal(signal.SIGTERM)
        self.assertEqual(loupe.answer()[0], 1)
        self.check_free(desktop)
        loupe = self.opened(desktop, (300, 400))
        loupe.kill()
        self.check_free(desktop)
        program = Program(desktop)
        self.opened(desktop, (300, 400))
        program.kill()
        self.check_free(desktop)

    def test_outlives_a_command_that_goes_away(self):
        desktop = self.desktop_of()
        with Program(desktop):
            loupe = self.opened(desktop, (300, 400))
            loupe.kill()
            loupe.move(400, 500)
            desktop.run("xdotool", "click", "1")
            wait_until(lambda: self.recents(desktop) == [hexadecimal(colour_at(400, 500))], "it is recorded all the same")
            self.check_free(desktop)

    def test_above_full_screen_windows_and_the_notch(self):
        desktop = self.desktop_of()
        with Program(desktop):
            # The notch is part of what was captured; the loupe is not.
            loupe = self.opened(desktop, (640, 6))
            desktop.key("Return")
            self.assertEqual(loupe.answer()[1], "#000000")
            full = Peer(desktop, "Full", (0, 0, 1280, 800))
            full.activate()
            desktop.set_window_state(full.window, "fullscreen")
            wait_until(lambda: "FULLSCREEN" in desktop.run("xprop", "-id", full.window, "_NET_WM_STATE"), "full screen")
            shown = desktop.settled(200, 700, 1, 1).pixel(0, 0)
            loupe = self.opened(desktop, (200, 700))
            desktop.run("xdotool", "click", "1")
            self.assertEqual(loupe.answer()[1], hexadecimal(shown))
            self.assertEqual(full.clicks(), 0)

    def test_without_shared_memory(self):
        desktop = self.desktop_of(environment={"QT_SCALE_FACTOR": "2"}, server=("-extension", "MIT-SHM"))
        loupe = self.opened(desktop, (300, 400), scale=2)
        loupe.move(901, 707)
        desktop.run("xdotool", "click", "1")
        self.assertEqual(loupe.answer(), (0, hexadecimal(colour_at(901, 707)), ""))

    def test_deep_colour_keeps_its_bits(self):
        desktop = Desktop(640, 480, wm=None, compositor=False, bus=False, depth=30)
        self.addCleanup(desktop.close)
        # 513, 2 and 1023 steps of 1023.
        desktop.run("xsetroot", "-solid", "rgb:8060/00a0/ffff")
        desktop.run("xdotool", "mousemove", "300", "200")
        program = Program(desktop, start=False)
        process = subprocess.Popen([program.command, "color", "pick", "--format", "json"], env=program.environment,
                                   stdout=subprocess.PIPE, text=True)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        wait_until(lambda: "0x" in desktop.run("xwininfo", "-root", "-children").replace("Root window id: 0x", ""),
                   "the loupe opens")
        # It takes keys only when it is there: until then they go nowhere.
        wait_until(lambda: desktop.key("Return") or process.poll() is not None, "picked")
        picked = json.loads(process.stdout.read())
        self.assertEqual([round(picked[part] * 1023, 6) for part in "rgb"], [513, 2, 1023])


if __name__ == "__main__":
    unittest.main(verbosity=1)
