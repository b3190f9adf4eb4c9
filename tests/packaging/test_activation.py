"""The installed program, started and asked by the desktop's own means: its bus and its launcher."""
import configparser
import json
import subprocess
import unittest

from harness.desktop import Desktop
from harness.installation import APPLICATION, Installation
from harness.waiting import wait_until

OBJECT = "/" + APPLICATION.replace(".", "/")


class Activation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.installed = Installation()

    @classmethod
    def tearDownClass(cls):
        cls.installed.remove()

    def setUp(self):
        self.desktop = Desktop(environment=self.installed.environment())
        self.addCleanup(self.desktop.close)
        # What the bus starts would outlive the desktop.
        self.addCleanup(self.command, "quit", check=False)

    def command(self, *words, check=True):
        return subprocess.run(["ostrelle", *words], env=self.desktop.environment, check=check, capture_output=True,
                              text=True, timeout=30)

    def wait_for(self, **expected):
        def is_so():
            answer = self.command("status", "--json", check=False)
            status = json.loads(answer.stdout) if answer.returncode == 0 else {}
            return {key: status.get(key) for key in expected} == expected
        wait_until(is_so, f"status {expected}")

    def actions(self):
        entry = configparser.ConfigParser(interpolation=None)
        entry.read(self.installed.desktop_entry(), encoding="utf-8")
        return [name for name in entry["Desktop Entry"]["Actions"].split(";") if name]

    def call_bus(self, method, *arguments):
        """The bus starts who is asked for."""
        return subprocess.run(["gdbus", "call", "--session", "--dest", APPLICATION, "--object-path", OBJECT, "--method",
                               f"org.freedesktop.Application.{method}", "--", *arguments],
                              env=self.desktop.environment, capture_output=True, text=True, timeout=30)

    def test_a_click_in_the_menu_starts_it_and_another_one_opens_it_again(self):
        self.desktop.run("gapplication", "launch", APPLICATION)
        self.wait_for(phase="expanded", selection=None)
        process = json.loads(self.command("status", "--json").stdout)["pid"]
        self.command("close")
        self.wait_for(phase="idle")
        # By the command of the entry, as launchers do that know nothing of the bus.
        self.desktop.spawn("launcher", ["gio", "launch", str(self.installed.desktop_entry())])
        self.wait_for(phase="expanded", pid=process)

    def test_a_first_start_from_the_menu_shows_the_quick_tour_and_nothing_above_it(self):
        self.command("settings", "reset", "app.hasCompletedOnboarding")
        self.desktop.run("gapplication", "launch", APPLICATION)

        def active():
            window = subprocess.run(["xdotool", "getactivewindow", "getwindowname"], env=self.desktop.environment,
                                    capture_output=True, text=True)
            return window.stdout.strip()
        wait_until(lambda: active() == "Welcome to Ostrelle", "the tour is in front")
        # What the menu asked for has been heard by now.
        self.call_bus("Activate", "{}")
        self.wait_for(phase="idle")
        self.assertEqual(active(), "Welcome to Ostrelle")

    def test_an_action_starts_it_and_is_done(self):
        self.desktop.run("gapplication", "action", APPLICATION, "clipboard")
        self.wait_for(phase="expanded", selection="clipboard")

    def test_it_takes_the_actions_of_its_entry_and_no_others(self):
        for action in self.actions():
            result = self.call_bus("ActivateAction", action, "[]", "{'activation-token': <'a token'>}")
            self.assertEqual((result.returncode, result.stdout), (0, "()\n"), action + result.stderr)
        for method, arguments in (("ActivateAction", ("erase-everything", "[]", "{}")), ("Open", ("[]", "{}"))):
            self.assertNotEqual(self.call_bus(method, *arguments).returncode, 0)

    def test_started_by_command_it_is_known_to_the_bus_and_leaves_it(self):
        def names():
            return self.desktop.run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
                                    "--method", "org.freedesktop.DBus.ListNames")
        self.assertNotIn(APPLICATION, names())
        self.desktop.spawn("program", ["ostrelle"])
        wait_until(lambda: APPLICATION in names(), "the name is there")
        self.command("quit")
        self.assertNotIn(APPLICATION, names())

    def test_the_unit_of_the_session_is_valid(self):
        result = subprocess.run(["systemd-analyze", "verify", "--user", "--man=no", str(self.installed.unit())],
                                env=self.desktop.environment, capture_output=True, text=True)
        self.assertEqual((result.returncode, result.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main()
