"""`ostrelle doctor`: what this desktop offers, told truly on desktops that offer more and less."""
import json
import os
import pathlib
import signal
import socket
import subprocess
import unittest

import harness
from harness.desktop import BUILD, Desktop
from harness.program import Program
from harness.sound import SoundServer

COMMAND = str(BUILD / "bin" / "ostrelle")
PORTAL = pathlib.Path(harness.__file__).with_name("portal.py")
# What the program asks of a portal on an ordinary desktop, and does more simply without.
USED = {"FileChooser": "OpenFile", "OpenURI": "OpenURI", "Settings": "ReadAll", "FileTransfer": "RetrieveFiles"}


def examined(environment):
    """Exit status, and of each finding its state; the sentences are those for people, too."""
    asked = subprocess.run([COMMAND, "doctor", "--json"], env=environment, capture_output=True, text=True, timeout=30)
    report = json.loads(asked.stdout)
    told = subprocess.run([COMMAND, "doctor"], env=environment, capture_output=True, text=True, timeout=30)
    for finding in report["findings"]:
        assert finding["text"] in told.stdout, (finding, told.stdout)
    assert (asked.stderr, told.stderr, told.returncode) == ("", "", asked.returncode), (asked.stderr, told.stderr)
    assert report["complete"] == (asked.returncode == 0)
    return asked.returncode, {finding["name"]: finding["state"] for finding in report["findings"]}


class Doctor(unittest.TestCase):
    def desktop(self, **options):
        desktop = Desktop(1280, 800, **options)
        self.addCleanup(desktop.close)
        return desktop

    def test_a_bare_desktop_lacks_nothing_that_matters(self):
        desktop = self.desktop(compositor=False, bus=False)
        status, states = examined(desktop.environment)
        self.assertEqual(status, 0, states)
        self.assertEqual({name: states[name] for name in ("display", "compositor", "blur", "bus", "portal", "sound",
                                                          "thumbnails", "facts", "data", "shortcuts", "autostart")},
                         {"display": "works", "compositor": "fallsBack", "blur": "fallsBack", "bus": "fallsBack",
                          "portal": "fallsBack", "sound": "fallsBack", "thumbnails": "works", "facts": "works",
                          "data": "works", "shortcuts": "unknown", "autostart": "works"})
        self.assertFalse(os.path.exists(desktop.home / "data"), "it changes nothing")

    def test_beside_a_running_program(self):
        desktop = self.desktop()
        with Program(desktop) as program:
            status, states = examined(program.environment)
            self.assertEqual((status, states["compositor"], states["bus"], states["shortcuts"]),
                             (0, "works", "works", "works"))
            # Another program of the desktop, here of another user's home, comes too late for the same keys.
            other = Program(desktop, start=False, environment={
                name: str(desktop.folder / f"other-{name}") for name in
                ("HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR")})
            self.addCleanup(other.kill)
            program.expected_lines = ["another program may hold it"]  # one log for both
            os.makedirs(other.environment["XDG_RUNTIME_DIR"], mode=0o700)
            other.start()
            self.assertEqual(examined(other.environment)[1]["shortcuts"], "fallsBack")

    def portal(self, desktop, *methods):
        """A portal that takes the place of one before."""
        desktop.stop("portal", signal.SIGKILL)
        portal = desktop.spawn("portal", ["/usr/bin/python3", str(PORTAL), *methods], stdout=subprocess.PIPE)
        self.assertEqual(portal.stdout.readline(), b"ready\n")
        return portal

    def test_each_use_of_a_portal(self):
        desktop = self.desktop(compositor=False)

        def told():
            status, states = examined(desktop.environment)
            self.assertEqual(status, 0, states)
            self.assertEqual([states[name] for name in ("Screenshot", "GlobalShortcuts", "Background")], ["works"] * 3,
                             "on an X server of its own and outside a sandbox the program does these by itself")
            return {name: states[name] for name in ("portal", *USED)}
        self.portal(desktop, *(f"{interface}.{method}" for interface, method in USED.items()))
        self.assertEqual(told(), dict.fromkeys(("portal", *USED), "works"))
        # One that has the interface, but not what the program calls there.
        self.portal(desktop, "Settings.ReadAll", "FileChooser.SaveFile")
        self.assertEqual(told(), {**dict.fromkeys(USED, "fallsBack"), "portal": "works", "Settings": "works"})
        # One that never answers.
        self.portal(desktop, "Settings.ReadAll").send_signal(signal.SIGSTOP)
        self.addCleanup(desktop.stop, "portal", signal.SIGKILL)
        self.assertEqual(told(), dict.fromkeys(("portal", *USED), "fallsBack"))

    def test_the_sound_server_is_tried(self):
        desktop = self.desktop(compositor=False, bus=False)

        def sound(server):
            return examined({**desktop.environment, **server.environment})[1]["sound"]
        server = SoundServer(desktop.folder)
        self.assertEqual(sound(server), "fallsBack", "a name is no server")
        server.start()
        self.addCleanup(server.kill)
        self.assertEqual(sound(server), "works")
        server.kill()
        with socket.socket(socket.AF_UNIX) as hung:
            hung.bind(f"{server.folder}/native")
            hung.listen()
            self.assertEqual(sound(server), "fallsBack", "one that never answers")
        # Found by itself, in its usual place.
        os.unlink(f"{server.folder}/native")
        usual = SoundServer(desktop.runtime / "pulse")
        os.makedirs(usual.folder)
        usual.start()
        self.addCleanup(usual.kill)
        self.assertEqual(examined(desktop.environment)[1]["sound"], "works")

    def test_what_matters(self):
        desktop = self.desktop(compositor=False, bus=False)
        without = {name: value for name, value in desktop.environment.items() if name != "DISPLAY"}
        status, states = examined(without)
        self.assertEqual((status, states["display"], states["thumbnails"]), (1, "missing", "works"))
        self.assertNotIn("compositor", states)
        status, states = examined({**desktop.environment, "PATH": str(desktop.home)})
        self.assertEqual((status, states["opening"]), (1, "missing"))


if __name__ == "__main__":
    unittest.main()
