"""What tells the desktop of the program: valid for the desktop's own validators, and true."""
import configparser
import re
import struct
import subprocess
import unittest

from harness.installation import APPLICATION, Installation


def run(*command):
    return subprocess.run([str(word) for word in command], capture_output=True, text=True)


class Metadata(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.installed = Installation()

    @classmethod
    def tearDownClass(cls):
        cls.installed.remove()

    def assert_silent(self, *command):
        result = run(*command)
        self.assertEqual((result.returncode, result.stdout + result.stderr), (0, ""))

    def entry(self):
        parser = configparser.ConfigParser(interpolation=None)
        parser.optionxform = str
        parser.read(self.installed.desktop_entry(), encoding="utf-8")
        return parser

    def test_the_desktop_entry_is_valid(self):
        self.assert_silent("desktop-file-validate", "--warn-kde", self.installed.desktop_entry())

    def test_every_action_runs_a_command_that_exists(self):
        entry = self.entry()
        actions = [name for name in entry["Desktop Entry"]["Actions"].split(";") if name]
        self.assertEqual(entry.sections()[1:], [f"Desktop Action {name}" for name in actions])
        self.assertEqual([entry[section]["Name"] for section in entry.sections()],
                         ["Ostrelle", "Open Notch", "Clipboard", "Pick Color", "Settings"])
        for section in entry.sections():
            program, *words = entry[section]["Exec"].split()
            self.assertEqual(program, self.installed.command().name)
            # Each command takes --help beside its arguments, and fails on those that it does not know.
            self.assert_runs(*words[:1], "--help")
            self.assertIn(words[1] if len(words) > 1 else "", run(self.installed.command(), *words[:1], "--help").stdout)

    def assert_runs(self, *words):
        result = run(self.installed.command(), *words)
        self.assertEqual((result.returncode, result.stderr), (0, ""), words)

    def test_the_appstream_data_is_valid_and_fits_the_rest(self):
        result = run("appstreamcli", "validate-tree", "--no-net", self.installed.root)
        self.assertEqual(result.returncode, 0, result.stdout)
        version = run(self.installed.command(), "--version").stdout.split()[1]
        self.assertIn(f'<release version="{version}"', self.installed.metainfo().read_text())

    def test_no_licence_is_claimed_that_nobody_stated(self):
        self.assertIn("license>", self.installed.metainfo().read_text())
        self.assertNotIn("license", self.installed.unlicensed_metainfo)

    def test_the_icons_have_the_sizes_of_their_folders(self):
        self.assertEqual(self.entry()["Desktop Entry"]["Icon"], APPLICATION)
        pictures = sorted(self.installed.share("icons", "hicolor").glob("*/apps/*.png"))
        self.assertGreater(len(pictures), 5)
        for picture in pictures:
            size = int(re.match(r"(\d+)x", picture.parts[-3]).group(1))
            self.assertEqual(struct.unpack(">II", picture.read_bytes()[16:24]), (size, size), picture)
            self.assertEqual(picture.name, f"{APPLICATION}.png")

    def test_the_installed_command_finds_its_helpers(self):
        icon = self.installed.share("icons", "hicolor", "48x48", "apps", f"{APPLICATION}.png")
        self.assertIn("48 × 48", run(self.installed.command(), "inspect", icon).stdout)


if __name__ == "__main__":
    unittest.main()
