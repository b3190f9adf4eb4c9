"""Key combinations that work whatever program is in front."""
import json
import resource
import subprocess
import unittest

from harness.desktop import OPENBOX, Desktop
from harness.drag import DragSource, uri
from harness.keyboard import (CAPS_LOCK, CONTROL, ESCAPE, NUM_LOCK, SCROLL_LOCK, SHIFT, SPACE, SUPER, C, F, Keyboard, V, Y)
from harness.peer import Peer
from harness.program import Program
from harness.waiting import holds_for, wait_until

REFUSAL = 'Shift+Super+V does not work for "Open Clipboard"'
GREEDY = OPENBOX.replace("<keyboard></keyboard>", '<keyboard><keybind key="W-S-v"><action name="ToggleShowDesktop"/>'
                         "</keybind></keyboard>")
DEFAULTS = {"toggleNotch": "unset", "openClipboard": "registered", "pickColor": "registered"}


class Shortcuts(unittest.TestCase):
    def begin(self, **options):
        self.desktop = Desktop(1280, 800, **options)
        self.addCleanup(self.desktop.close)
        self.keyboard = Keyboard(self.desktop)
        self.addCleanup(self.keyboard.close)
        self.program = Program(self.desktop)
        self.addCleanup(self.program.kill)

    def tearDown(self):
        if self.program.process and self.program.process.poll() is None:
            self.program.stop()

    def shows(self, tool, what):
        wait_until(lambda: (self.program.status()["phase"], self.program.status()["selection"]) == ("expanded", tool),
                   what)
        wait_until(lambda: self.program.status()["hasFocus"], what + ", with the keyboard")

    def focus(self):
        return self.desktop.run("xdotool", "getwindowfocus").strip()

    def combos(self):
        rows = json.loads(self.program.call("shortcuts", "list", "--json").stdout)
        return {row["action"]: row["combo"] for row in rows}

    def work_from_another_program(self):
        below = Peer(self.desktop, "Below", (0, 100, 600, 400))
        below.activate()
        self.program.hear()
        focus = self.focus()
        self.assertEqual(self.program.status()["shortcuts"], DEFAULTS)
        self.keyboard.press(SUPER, SHIFT, V)
        self.shows("clipboard", "the clipboard opens")
        self.keyboard.hold(SUPER, SHIFT, C)
        self.shows("color", "the colour tool takes its place while the keys are held")
        wait_until(lambda: self.program.status()["sampling"], "the loupe is open")
        self.keyboard.release()
        self.keyboard.press(SUPER, SHIFT, V)  # rests under the loupe
        self.keyboard.press(ESCAPE)
        wait_until(lambda: not self.program.status()["sampling"], "Escape closes the loupe")
        self.shows("color", "the tool is still there")
        self.keyboard.press(ESCAPE)
        self.shows(None, "Escape goes back")
        self.keyboard.press(ESCAPE)
        self.program.wait_phase("idle")
        wait_until(lambda: self.focus() == focus, "the focus is back where it was")

        self.program.call("shortcuts", "set", "toggleNotch", "Super+Space")
        for key in (CAPS_LOCK, NUM_LOCK, SCROLL_LOCK):
            self.keyboard.press(key)
        self.keyboard.hold(SUPER, SPACE)
        self.program.wait_phase("expanded")
        holds_for(lambda: self.program.status()["phase"] == "expanded", "a held key opens it once", 1.0)
        self.keyboard.release()
        self.shows(None, "the selector is open")
        self.keyboard.press(SUPER, SPACE)
        self.program.wait_phase("idle")

    def test_work_from_another_program(self):
        self.begin()
        self.work_from_another_program()

    def test_work_under_another_window_manager(self):
        self.begin(wm="xfwm4", compositor=False)
        self.work_from_another_program()

    def test_are_kept_and_stay_removed(self):
        self.begin()
        self.assertEqual(self.program.call("shortcuts", "set", "toggleNotch", "alt+CTRL+c").stderr, "")
        self.program.call("shortcuts", "unset", "openClipboard")
        self.assertIn("toggleNotch, pickColor\n", self.program.call("status").stdout)
        self.program.stop()
        kept = {"toggleNotch": "Control+Alt+C", "openClipboard": None, "pickColor": "Shift+Super+C"}
        self.assertEqual(self.combos(), kept)
        self.program.start()
        self.assertEqual(self.combos(), kept)
        self.assertEqual(self.program.status()["shortcuts"],
                         {"toggleNotch": "registered", "openClipboard": "unset", "pickColor": "registered"})
        stored = json.loads((self.desktop.home / "config" / "Ostrelle" / "defaults.json").read_text())
        self.assertEqual(stored["shortcut.openClipboard"], {"$data": "bnVsbA=="})

    def test_what_cannot_be_set_changes_nothing(self):
        self.begin()
        for _ in ("running", "not running"):
            before = self.combos()
            for arguments, status in ((("set", "pickColor", "Super+Shift+V"), 1), (("set", "pickColor", "V"), 2),
                                      (("set", "pickColor", "Super+Nokey"), 2), (("set", "pickColor", "Hyper+V"), 2),
                                      (("set", "toggle", "Super+V"), 2), (("unset", "toggle"), 2)):
                answer = self.program.call("shortcuts", *arguments, check=False)
                self.assertEqual((answer.returncode, answer.stderr.count("\n")), (status, 1), arguments)
            self.assertEqual(self.combos(), before)
            self.program.stop()

    def test_a_full_disk(self):
        """A combination, or a setting, works at once; that it will not be there tomorrow is told, whoever sets it."""
        self.begin()
        self.program.stop()
        defaults = self.desktop.home / "config" / "Ostrelle" / "defaults.json"
        for step in range(8):  # more than there will be room for
            self.program.call("color", "add", f"{step}, 0, 0")
        room = 300
        failure = (1, f"ostrelle: shortcuts: cannot write {defaults}\n")

        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (room, room))

        alone = subprocess.run([self.program.command, "shortcuts", "set", "toggleNotch", "Super+F"],
                               env=self.program.environment, capture_output=True, text=True, preexec_fn=limit)
        self.assertEqual((alone.returncode, alone.stderr), failure)
        self.program.start()
        resource.prlimit(self.program.process.pid, resource.RLIMIT_FSIZE, (room, resource.RLIM_INFINITY))
        self.program.expected_lines += ["could not be saved: cannot write"]
        told = self.program.call("shortcuts", "set", "toggleNotch", "Super+F", check=False)
        self.assertEqual((told.returncode, told.stderr), failure)
        told = self.program.call("settings", "set", "appearance.notchTheme", "frost", check=False)
        self.assertEqual((told.returncode, told.stderr), (1, f"ostrelle: settings: cannot write {defaults}\n"))
        self.keyboard.press(SUPER, F)
        self.shows(None, "it works all the same")
        resource.prlimit(self.program.process.pid, resource.RLIMIT_FSIZE, (resource.RLIM_INFINITY,) * 2)
        self.program.call("shortcuts", "unset", "openClipboard")
        self.program.stop()
        self.assertEqual((self.combos()["toggleNotch"], self.combos()["openClipboard"]), ("Super+F", None))
        self.assertEqual(json.loads(defaults.read_text())["appearance.notchTheme"], "frost")

    def test_follow_the_layout_by_name_and_not_by_place(self):
        self.begin()
        self.desktop.run("setxkbmap", "de")
        wait_until(lambda: self.program.call("shortcuts", "set", "toggleNotch", "Super+ö", check=False).returncode == 0,
                   "the German layout is noticed")
        self.program.call("shortcuts", "set", "toggleNotch", "Super+Z")  # right of T
        self.keyboard.press(SUPER, Y)
        self.shows(None, "the key is right of T")
        self.desktop.run("setxkbmap", "us")
        wait_until(lambda: self.combos()["toggleNotch"] == "Super+Y", "it is called otherwise")
        self.keyboard.press(SUPER, Y)
        self.program.wait_phase("idle")
        self.program.stop()
        self.desktop.run("setxkbmap", "de")
        self.assertEqual(self.combos()["toggleNotch"], "Super+Z")
        del self.program.environment["DISPLAY"]
        self.assertEqual(self.combos()["toggleNotch"], "Super+Y", "a US board without a display")
        self.program.call("shortcuts", "set", "pickColor", "Super+;")
        self.assertEqual(self.combos()["pickColor"], "Super+;")

    def test_what_another_program_holds_is_taken_when_it_lets_go(self):
        self.begin(wm=None)
        config = self.desktop.folder / "greedy.xml"
        config.write_text(GREEDY)
        self.program.stop()
        self.desktop.spawn("wm", ["openbox", "--sm-disable", "--config-file", str(config)])
        wait_until(lambda: "window id" in self.desktop.root_property("_NET_SUPPORTING_WM_CHECK"), "openbox is there")
        self.program.expected_lines += [REFUSAL]
        self.program.start()
        self.assertEqual(self.program.status()["shortcuts"], {**DEFAULTS, "openClipboard": "refused"})
        self.assertEqual(self.program.log().count(REFUSAL), 1)
        again = self.program.call("shortcuts", "set", "openClipboard", "Shift+Super+V")
        self.assertEqual(again.stderr.count("\n"), 1, "warned")
        self.assertEqual(self.combos()["openClipboard"], "Shift+Super+V")
        self.assertIn("openClipboard refused", self.program.call("status").stdout)
        self.desktop.stop("wm")
        self.desktop.start_wm("xfwm4")
        wait_until(lambda: self.program.status()["shortcuts"] == DEFAULTS, "tried again")
        self.keyboard.press(SUPER, SHIFT, V)
        self.shows("clipboard", "it works")

    def test_come_through_menus_and_drags(self):
        self.begin()
        Peer(self.desktop, "Below", (0, 0, 1280, 800))
        self.desktop.click(640, 5, button=3)

        def menus():
            return self.desktop.run("xdotool", "search", "--onlyvisible", "--class", "ostrelle").split()[1:]

        wait_until(menus, "the notch's menu is open")
        self.keyboard.press(SUPER, SHIFT, V)
        self.shows("clipboard", "the clipboard opens")
        self.assertFalse(menus(), "instead of the menu")

        self.program.call("shortcuts", "set", "toggleNotch", "Control+Super+Space")
        file = self.desktop.folder / "notes.txt"
        file.touch()
        for make, arguments in (("plain", ("--type", "text/uri-list", uri(file) + "\r\n")), ("qt", (uri(file),))):
            self.program.call("close")
            self.program.wait_phase("idle")
            source = DragSource(self.desktop, make, *arguments)
            source.pick_up()
            self.keyboard.press(CONTROL, SUPER, SPACE)
            self.program.wait_phase("expanded")
            self.keyboard.press(CONTROL, SUPER, SPACE)
            self.program.wait_phase("idle")
            source.move(640, 12)
            wait_until(lambda: self.program.status()["dropTargets"], "the drag goes on as before")
            source.let_go()
            wait_until(lambda: self.program.status()["selection"] == "assets", "the shelf has the file")
            source.end()
            self.program.call("shelf", "clear")


if __name__ == "__main__":
    unittest.main()
