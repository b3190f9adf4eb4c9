"""Every setting changed in the real window: seen in the running notch, in the file, and after a restart."""
import itertools
import json
import os
import pathlib
import unittest

from harness.desktop import BUILD, Desktop
from harness.drag import DragSource, uri
from harness.peer import Peer, xclip
from harness.program import Program
from harness.settings_window import SettingsWindow
from harness.waiting import holds_for, wait_until


class Settings(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 900)
        self.addCleanup(self.desktop.close)
        self.below = Peer(self.desktop, "Below", (0, 0, 1280, 900))
        self.program = Program(self.desktop)
        self.addCleanup(self.program.kill)

    def tearDown(self):
        if self.program.process.poll() is None:
            self.program.stop()

    def open(self, section):
        self.window = SettingsWindow(self.desktop, self.program, section)
        return self.window

    def value(self, key):
        return json.loads(self.program.call("settings", "get", key).stdout)

    def stored(self):
        path = pathlib.Path(self.program.environment["XDG_CONFIG_HOME"]) / "Ostrelle" / "defaults.json"
        return json.loads(path.read_text()) if path.exists() else {}

    def wait_value(self, key, value):
        wait_until(lambda: self.value(key) == value, f"{key} is {value}")
        wait_until(lambda: self.stored().get(key) == value, f"{key} is stored")

    def restart(self):
        """Everything that was set is still in force, and the window shows it."""
        before = self.program.call("settings", "list", "--json").stdout
        self.program.stop()
        self.program.start()
        self.assertEqual(self.program.call("settings", "list", "--json").stdout, before)

    def texts(self):
        return [record.get("text") for record in self.program.history()]

    # General

    def test_general(self):
        entry = pathlib.Path(self.program.environment["XDG_CONFIG_HOME"]) / "autostart" / "org.ostrelle.Ostrelle.desktop"
        window = self.open("general")
        self.assertEqual(self.program.call("autostart", "status").stdout, "off\n")
        window.switch("Launch at login")
        wait_until(entry.exists, "the autostart entry is there")
        self.assertEqual(self.program.call("autostart", "status").stdout, "on\n")
        self.program.call("autostart", "off")
        self.assertFalse(entry.exists())
        wait_until(lambda: "checked" not in window.control("check box", "Launch at login")["states"],
                   "the switch shows what the command did")

        window.switch("Show automatically")
        self.wait_value("general.showAutomatically", False)
        self.assertEqual(self.program.status()["surface"]["width"], 0)
        window.switch("Show automatically")
        self.wait_value("general.showAutomatically", True)
        self.assertGreater(self.program.status()["surface"]["width"], 0)

        self.assertTrue(window.control("combo box", "Open on hover")["description"].startswith("1 s. "))
        window.pick("Open on hover", -2)
        self.wait_value("general.hoverOpenDelay", 0.3)
        self.desktop.move_pointer(640, 5)
        self.program.wait_phase("expanded")
        self.assertTrue(window.has_focus(), "hovering takes no focus from the window")
        self.desktop.move_pointer(640, 700)
        self.program.wait_phase("idle")
        window.pick("Open on hover", -1)
        self.wait_value("general.hoverOpenDelay", 0)
        self.desktop.move_pointer(640, 5)
        self.program.wait_phase("hover")
        holds_for(lambda: self.program.status()["phase"] == "hover", "hovering never opens", 1)
        self.desktop.move_pointer(640, 700)

        window.switch("Haptic feedback")
        self.wait_value("general.haptics", False)
        window.choose("Expressive")
        self.wait_value("general.animationIntensity", "expressive")
        window.switch("Catch dragged files")
        self.wait_value("general.catchDraggedFiles", False)
        window.close()
        source = DragSource(self.desktop, "plain", "--type", "text/uri-list", uri("/tmp/a") + "\r\n")
        source.pick_up()
        source.move(640, 40)
        self.program.hear()
        self.assertFalse(self.program.status()["dragCatchArmed"])
        source.let_go()
        source.end()
        self.restart()

    def ticks(self):
        return self.program.log().count("alignment tick")

    def ticks_of_an_opening(self):
        before = self.ticks()
        self.program.call("open")
        self.program.wait_phase("expanded")
        self.program.hear()
        after = self.ticks()
        self.program.call("close")
        self.program.wait_phase("idle")
        return after - before

    def test_haptics(self):
        self.program.stop()
        self.program.environment["QT_LOGGING_RULES"] = "ostrelle.platform.debug=true"
        self.program.expected_lines.append(" ostrelle.platform ")
        self.program.start()
        self.assertEqual(self.ticks_of_an_opening(), 1)
        window = self.open("general")
        for count in (0, 1):
            window.switch("Haptic feedback")
            self.wait_value("general.haptics", count == 1)
            self.assertEqual(self.ticks_of_an_opening(), count)

    def edge(self):
        """The lowest row of the open panel in the middle of the screen, dark above a light window."""
        column = self.desktop.frames.grab(640, 0, 1, 600)
        return max((y for y in range(600) if sum(column.pixel(0, y)) < 3 * 90), default=0)

    def overshoot(self):
        """How many pixels the panel goes beyond its place as it opens; frames may be missed, so the most of some."""
        most = 0
        for _ in range(3):
            start = self.edge()
            edges = []
            opening = self.program.start_call("open", "clipboard")

            def is_at_rest():
                edges.append(self.edge())
                return opening.poll() is not None and len(edges) > 50 and {start} != set(edges[-50:]) == {edges[-1]}

            wait_until(is_at_rest, "the panel has opened and is at rest", 20)
            most = max(most, *(edge - edges[-1] for edge in edges))
            self.program.call("close")
            self.program.wait_phase("idle")
            self.desktop.settled(320, 0, 640, 600)
        return most

    def test_animation_intensity(self):
        self.program.set("appearance.preference", "dark")
        found = {}
        for name in ("Subtle", "Expressive", "Standard"):
            window = self.open("general")
            window.choose(name)
            self.wait_value("general.animationIntensity", name.lower())
            window.close()
            found[name] = self.overshoot()
        # Of the way down: nothing, less than a hundredth, a twentieth.
        self.assertEqual(found["Subtle"], 0, found)
        self.assertGreater(found["Expressive"], found["Standard"] + 5, found)

    # Modules

    def first_tool(self):
        self.program.call("open")
        wait_until(lambda: self.program.status()["hasFocus"], "the panel has the keyboard")
        self.desktop.key("1")
        tool = wait_until(lambda: self.program.status()["selection"], "1 opens a tool")
        self.program.call("close")
        self.program.wait_phase("idle")
        return tool

    def test_modules(self):
        window = self.open("modules")
        self.assertEqual(self.first_tool(), "clipboard")
        window.switch("Clipboard")
        wait_until(lambda: "clipboard" not in self.value("modules.enabled"), "the clipboard tool is hidden")
        self.assertEqual(self.first_tool(), "color")
        window.switch("Clipboard")
        wait_until(lambda: "clipboard" in self.value("modules.enabled"), "and shown again")

        _, y = window.place("check box", "Projects")
        x = window.x + 260
        _, top = window.place("check box", "Clipboard")
        self.desktop.move_pointer(x, y)
        self.desktop.run("xdotool", "mousedown", "1")
        for step in range(1, 13):
            self.desktop.run("xdotool", "mousemove", str(x), str(y + (top - y) * step // 12))
        wait_until(lambda: self.value("modules.order")[0] == "projects", "the order is stored while the row is held")
        self.desktop.run("xdotool", "mouseup", "1")
        self.assertEqual(self.value("modules.order"),
                         ["projects", "clipboard", "color", "assets", "imageInfo", "audioInfo"])
        window.look()
        self.assertEqual(self.first_tool(), "projects")

        # By keys alone: into the page, and the first row down by two.
        self.desktop.run("xdotool", "windowactivate", "--sync", window.window)
        self.desktop.key("Tab", "alt+Down", "alt+Down")
        wait_until(lambda: self.value("modules.order")[:3] == ["clipboard", "color", "projects"], "moved by keys")
        self.assertIn("focused", window.control("check box", "Projects")["states"])
        window.close()
        self.restart()

    def row(self, name):
        """A place in the row of a tool."""
        _, y = self.window.place("check box", name)
        return self.window.x + 400, y

    def stir(self, place, condition, what):
        """Moves about a place until something has happened; a drag tells of itself only by its motion."""
        steps = itertools.count()

        def has_happened():
            self.desktop.run("xdotool", "mousemove", str(place[0] + next(steps) % 3), str(place[1]))
            return condition()

        wait_until(has_happened, what)

    def order(self):
        return self.value("modules.order")

    def test_tools_moved_by_drags_of_other_programs(self):
        self.open("modules")
        before = self.order()
        # Below what the notch takes while something is dragged.
        assets, audio = self.row("Assets"), self.row("Audio Info")
        self.assertGreater(assets[1], 400)
        for mode in ([], ["--mode", "hang"]):
            text = "projects" if mode else "Projects"
            source = DragSource(self.desktop, "plain", "--type", "text/plain", text, *mode)
            source.pick_up()
            self.stir(assets, lambda: source.said().count("status 0") > 2, "it is not taken")
            source.let_go()
            source.wait("left")
            self.assertEqual(self.order(), before)
            source.end()
        source = DragSource(self.desktop, "plain", "--type", "text/plain", "projects")
        source.pick_up()
        self.stir(assets, lambda: self.order().index("projects") == 2, "it takes the place of the row that it enters")
        self.stir(audio, lambda: self.order().index("projects") == 5, "also below")
        self.assertEqual(self.stored()["modules.order"], self.order())
        self.stir(audio, lambda: "status 1" in source.said()[-2:], "it may be dropped there")
        source.let_go()
        source.wait("finished 1")
        source.end()
        self.assertEqual(self.order(), ["clipboard", "color", "assets", "imageInfo", "audioInfo", "projects"])
        self.assertEqual(self.program.status()["phase"], "idle")
        self.window.close()

    def test_a_tool_taken_out_of_the_window(self):
        window = self.open("modules")
        target = self.desktop.spawn("text-target", [str(BUILD / "bin" / "peers" / "toolkit-drags"), "target"])
        log = self.desktop.folder / "text-target.log"
        wait_until(lambda: log.read_text() == "ready\n", "somebody takes drags")
        color, audio, outside = self.row("Color"), self.row("Audio Info"), (window.x - 150, window.y + 200)
        for drop in (True, False):
            if drop:
                self.take_out("Projects", outside)
                # Over the notch it is no file.
                self.stir((640, 6), lambda: True, "over the notch")
                self.program.hear()
                self.assertEqual(self.program.status()["dropTargets"], [])
                self.stir(audio, lambda: self.order()[-1] == "projects", "back in the list it goes on")
                self.stir((450, 450), lambda: True, "over the other program")
                self.desktop.run("xdotool", "mouseup", "1")
                wait_until(lambda: log.read_text().endswith("done\n"), "dropped there")
                self.assertIn("\ntype text/plain projects\n", log.read_text())
                self.assertEqual(self.order()[-1], "projects")
            else:
                self.take_out("Projects", outside)
                self.stir(color, lambda: self.order()[1] == "projects", "back in the list it goes on")
                self.desktop.key("Escape")
                wait_until(lambda: self.find_row("Projects"), "the row is put down")
                self.desktop.run("xdotool", "mouseup", "1")
                self.assertEqual(self.order()[1], "projects")
                self.assertTrue(window.find(), "Escape ends the drag, not the window")
        self.desktop.stop("text-target")
        window.close()

    def find_row(self, name):
        node = self.window.find_control("check box", name)
        return node and "showing" in node["states"]

    def take_out(self, name, outside):
        """Until its row is a drag of the desktop, whose selection has an owner then."""
        x, y = self.row(name)
        self.desktop.move_pointer(x, y)
        self.desktop.run("xdotool", "mousedown", "1")
        for step in range(1, 9):
            self.desktop.run("xdotool", "mousemove", str(x + (outside[0] - x) * step // 8), str(y))
        self.stir(outside, lambda: not self.find_row(name), "the row is in the hand")

    # Shortcuts

    def test_shortcuts(self):
        window = self.open("shortcuts")
        window.click("push button", "Not set")
        wait_until(lambda: window.find() and ("push button", "Press keys…") in self.objects(), "it records")
        self.desktop.key("a")
        self.desktop.key("ctrl+alt+space")
        wait_until(lambda: ("push button", "⌃⌥Space") in self.objects(), "the keys are shown")
        self.desktop.key("ctrl+alt+space")
        self.program.wait_phase("expanded")
        wait_until(lambda: self.program.status()["hasFocus"], "the panel has the keyboard")
        self.desktop.key("ctrl+alt+space")
        self.program.wait_phase("idle")
        wait_until(window.has_focus, "the window has the keyboard again")

        # A shortcut of ours reaches no window, and does nothing while one is recorded.
        window.click("push button", "⇧⌘C")
        self.desktop.key("shift+super+v")
        wait_until(lambda: any(node["description"] == "Used by Open Clipboard" for node in self.objects().values()),
                   "the conflict is told")
        self.assertEqual(self.program.status()["phase"], "idle")
        self.assertIn(("push button", "⇧⌘C"), self.objects())

        window.click("push button", "⇧⌘C")
        self.desktop.key("Escape")
        self.assertTrue(window.find(), "Escape ends the recording, not the window")
        window.click("push button", "⇧⌘C")
        self.desktop.key("BackSpace")
        wait_until(lambda: ("push button", "Not set") in self.objects(), "removed")
        self.assertEqual(self.stored()["shortcut.pickColor"], {"$data": "bnVsbA=="})
        window.close()
        self.program.stop()
        self.program.start()
        listed = json.loads(self.program.call("shortcuts", "list", "--json").stdout)
        self.assertEqual([row["combo"] for row in listed], ["Control+Alt+Space", "Shift+Super+V", None])
        self.desktop.key("ctrl+alt+space")
        self.program.wait_phase("expanded")
        self.program.call("close")

    def objects(self):
        from harness.reader import accessible_objects
        return accessible_objects(self.desktop, "Ostrelle")

    # Appearance

    def test_appearance(self):
        window = self.open("appearance")
        window.choose("Light")
        self.wait_value("appearance.preference", "light")
        self.assertEqual(self.program.status()["appearance"], "light")
        self.assertEqual(window.look().pixel(200, 3), (0xF6, 0xF3, 0xF8), "the window follows")
        window.choose("Dark")
        self.wait_value("appearance.preference", "dark")
        self.assertEqual(self.program.status()["appearance"], "dark")
        window.choose("Aurora")
        self.wait_value("appearance.notchTheme", "aurora")
        self.assertEqual(self.program.status()["theme"], "aurora")
        self.desktop.key("Right")
        self.assertEqual(self.program.status()["theme"], "aurora", "the page has the keys only after Tab")
        window.close()
        self.restart()

    # Privacy

    def copy(self, text):
        xclip(self.desktop, text.encode())

    def test_privacy(self):
        self.copy("before")
        wait_until(lambda: self.texts() == ["before"], "recorded")
        window = self.open("privacy")
        window.switch("Remember clipboard history")
        self.wait_value("clipboard.enabled", False)
        self.copy("unseen")
        holds_for(lambda: self.texts() == ["before"], "nothing is recorded", 1)
        window.switch("Remember clipboard history")
        self.wait_value("clipboard.enabled", True)

        xclip(self.desktop, b"secret", "x-kde-passwordManagerHint")
        window.switch("Skip concealed copies")
        self.wait_value("clipboard.ignoreConcealed", False)
        window.pick("Items to keep", -2)
        self.wait_value("clipboard.limit", 20)
        for number in range(22):
            self.copy(f"copy {number}")
            wait_until(lambda: self.texts()[0] == f"copy {number}", "recorded")
        self.assertEqual(len(self.texts()), 20)

        # The page's end, where the excluded applications are.
        window.scroll(8)
        window.click("text", "Excluded Apps")
        # What lies selected elsewhere is nobody's to wait for.
        xclip(self.desktop, b"elsewhere", selection="primary")
        self.desktop.run("xdotool", "click", "2")
        self.desktop.key("ctrl+End", "Return")
        self.desktop.type("  Below ")
        wait_until(lambda: self.value("clipboard.excludedApps")[-1:] == ["Below"], "the identifier is stored")
        self.assertEqual(self.stored()["clipboard.excludedApps"][-1], "Below")
        self.assertNotIn("elsewhere", " ".join(self.stored()["clipboard.excludedApps"]))
        self.below.activate()
        self.program.hear()
        self.below.copy_text("from an excluded application")
        holds_for(lambda: self.texts()[0] == "copy 21", "it is not recorded", 1)

        self.program.call("clipboard", "pin", "3")
        self.desktop.run("xdotool", "windowactivate", "--sync", window.window)
        window.scroll(-8)
        window.switch("Clear history on quit")
        self.wait_value("clipboard.clearOnQuit", True)
        window.close()
        self.restart()
        wait_until(lambda: self.texts() == ["copy 19"], "only what is pinned is left")

        window = self.open("privacy")
        window.click("push button", "Clear history now")
        window.look()
        self.desktop.key("Escape")
        window.look()
        self.assertEqual(self.texts(), ["copy 19"])
        window.click("push button", "Clear history now")
        window.look()
        self.desktop.key("Return")
        wait_until(lambda: not self.texts(), "pinned ones too")
        wait_until(lambda: json.loads((pathlib.Path(self.program.data_folder()) / "clipboard.json").read_text()) == [],
                   "and from the disk")
        window.close()

    # About, and the window itself

    def test_about_and_quit(self):
        window = self.open("about")
        window.switch("Check for updates automatically")
        self.wait_value("updates.autoCheck", False)
        window.click("push button", "Check Now")
        wait_until(lambda: any(name == "Couldn't check for updates" for _, name in self.objects()), "a check without a feed")
        window.scroll(8)
        window.click("push button", "Quit Ostrelle")
        self.assertEqual(self.program.process.wait(10), 0)

    def test_the_window_is_an_ordinary_one(self):
        self.desktop.click(640, 5)
        self.program.wait_phase("expanded")
        wait_until(lambda: self.program.status()["hasFocus"], "the panel has the keyboard")
        self.program.hear()
        surface = self.program.status()["surface"]
        self.desktop.settled(200, 0, 880, 300)
        self.desktop.click(surface["x"] + surface["width"] - 23, 24 + 5 + 11)
        window = SettingsWindow.opened(self.desktop, self.program)
        self.assertEqual(self.program.status()["phase"], "idle", "opening it closes the notch")
        self.assertEqual((window.width, window.height), (620, 452))
        self.assertIn(window.window, [f"{int(line.split()[0], 16)}" for line in
                                      self.desktop.run("wmctrl", "-l").splitlines()], "it is in the taskbar")
        properties = self.desktop.run("xprop", "-id", window.window, "_NET_WM_WINDOW_TYPE", "_NET_WM_STATE")
        self.assertIn("_NET_WM_WINDOW_TYPE_NORMAL", properties)
        self.assertNotIn("SKIP_TASKBAR", properties)

        # Behind another program's window, a second request brings the same one to the front.
        self.below.activate()
        wait_until(lambda: not window.has_focus(), "another program is in front")
        self.program.call("settings", "--section", "about")
        wait_until(window.has_focus, "it is in front again")
        self.assertIn("checked", window.control("radio button", "General")["states"], "on the section that it had")

        # The notch opened and closed over it gives the keyboard back to it.
        self.program.call("open")
        wait_until(lambda: self.program.status()["hasFocus"], "the panel has the keyboard")
        self.program.call("close")
        wait_until(window.has_focus, "the window has it again")
        self.desktop.key("ctrl+w")
        window.wait_closed()
        self.assertEqual(self.program.status()["phase"], "idle")

    def memory(self):
        rollup = (pathlib.Path("/proc") / str(self.program.process.pid) / "smaps_rollup").read_text()
        return sum(int(line.split()[1]) for line in rollup.splitlines() if line.startswith("Private_Dirty"))

    def test_closing_gives_the_memory_back(self):
        for _ in range(2):  # what is loaded once, fonts for example, stays
            self.visit()
        before = self.memory()
        for _ in range(3):
            self.visit()
        self.assertLess(self.memory() - before, 600, "KiB kept by three more visits of every section")

    def visit(self):
        window = self.open("general")
        for _ in range(5):
            self.desktop.key("Down")
            window.look()
        window.close()

    def test_the_command_starts_the_program_with_the_window(self):
        self.program.stop()
        self.program.start("settings", "--section", "privacy")
        window = SettingsWindow.opened(self.desktop, self.program)
        self.assertIn("checked", window.control("radio button", "Privacy")["states"])
        window.close()
        answer = self.program.call("settings", "--section", "nowhere", check=False)
        self.assertEqual((answer.returncode, "unknown section nowhere" in answer.stderr), (2, True))
        self.program.stop()
        for verb, said in (("status", "off\n"), ("on", ""), ("status", "on\n"), ("off", ""), ("status", "off\n")):
            self.assertEqual(self.program.call("autostart", verb).stdout, said, "without a running program")
        os.makedirs(self.desktop.home / "config" / "autostart", exist_ok=True)
        (self.desktop.home / "config" / "autostart" / "org.ostrelle.Ostrelle.desktop").write_text(
            "[Desktop Entry]\nExec=ostrelle\nX-GNOME-Autostart-enabled=false\n")
        self.assertEqual(self.program.call("autostart", "status").stdout, "requires approval\n")
        self.program.start()
        window = self.open("general")
        self.assertIn(("label", "Login item is turned off in System Settings ▸ General ▸ Login Items."), self.objects())
        window.close()


if __name__ == "__main__":
    unittest.main(verbosity=1)
