"""`ostrelle doctor`: what this desktop offers, told truly on desktops that offer more and less."""
import json
import os
import subprocess
import unittest

from harness.desktop import BUILD, Desktop
from harness.program import Program

COMMAND = str(BUILD / "bin" / "ostrelle")


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
