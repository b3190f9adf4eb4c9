"""The Debian package: built, installed into a root of its own, started on a private X server, purged without a trace."""
import json
import pathlib
import subprocess
import tempfile
import unittest

from harness.desktop import BUILD, Desktop
from harness.installation import APPLICATION
from harness.package_root import package_root
from harness.waiting import wait_until

NEEDED = ["usr/bin/ostrelle", "usr/libexec/ostrelle/ostrelle-notch", f"usr/share/applications/{APPLICATION}.desktop",
          f"usr/share/icons/hicolor/scalable/apps/{APPLICATION}.svg", "usr/share/man/man1/ostrelle.1.gz",
          f"usr/share/dbus-1/services/{APPLICATION}.service", f"usr/lib/systemd/user/app-{APPLICATION}.service"]


def keyboard_is_in(desktop, title):
    """Whether the window of this title has it."""
    asked = subprocess.run(["xdotool", "getwindowfocus", "getwindowname"], env=desktop.environment, capture_output=True,
                           text=True)
    return asked.stdout.strip() == title


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory(prefix="ostrelle-package-")
        cls.addClassCleanup(scratch.cleanup)
        subprocess.run(["cpack", "--config", str(BUILD / "CPackConfig.cmake"), "-B", scratch.name,
                        "-D", "CPACK_DEBIAN_COMPRESSION_TYPE=gzip"], cwd=scratch.name, check=True, capture_output=True)
        cls.package, = pathlib.Path(scratch.name).glob("*.deb")

    def field(self, name):
        return subprocess.run(["dpkg-deb", "--field", str(self.package), name], check=True, capture_output=True,
                              text=True).stdout.strip()

    def test_depends_on_what_it_links(self):
        depends = {entry.split()[0] for entry in self.field("Depends").split(", ")}
        # Of the program, of its helpers, and what no linker knows of.
        self.assertLessEqual({"libc6", "libqt6widgets6", "libxcb1", "libavcodec59", "hicolor-icon-theme"}, depends)
        scripts = subprocess.run(["dpkg-deb", "--info", str(self.package)], check=True, capture_output=True, text=True)
        for script in ("postinst", "prerm", "postrm", "preinst"):
            self.assertNotIn(f" {script} ", scripts.stdout, "nothing runs as root")

    def test_keeps_the_rules_for_packages(self):
        # Whoever deploys adds these two, when the licence is chosen and something is released.
        deployers = "no-copyright-file,no-changelog"
        checked = subprocess.run(["lintian", "--fail-on", "error,warning", "--suppress-tags", deployers,
                                  str(self.package)], capture_output=True, text=True, timeout=120)
        self.assertEqual((checked.returncode, checked.stdout), (0, ""), checked.stderr)

    def be_a_stranger(self, desktop, call):
        """Who reads nothing of the first run, and then looks for the settings."""
        wait_until(lambda: keyboard_is_in(desktop, "Welcome to Ostrelle"), "the first run is shown")
        for _ in range(5):
            desktop.key("Return")
        wait_until(lambda: json.loads(call("status", "--json").stdout)["phase"] == "expanded", "it leads to the notch")
        self.assertEqual(call("settings").returncode, 0)
        wait_until(lambda: keyboard_is_in(desktop, "Ostrelle Settings"), "settings open")

    def live_in(self, root):
        """Installed, started, quit and purged; what it leaves."""
        print(f"root: {root.kind}")
        root.dpkg("--install", str(self.package))
        self.assertLessEqual(set(NEEDED), root.changes())
        command = root.program("usr/bin/ostrelle")
        desktop = Desktop(first_run=True)
        self.addCleanup(desktop.close)
        desktop.spawn("installed", command)

        def call(*words):
            return subprocess.run([*command, *words], env=desktop.environment, capture_output=True, text=True,
                                  timeout=30)
        try:
            wait_until(lambda: call("status").returncode == 0, "the installed program answers", 30)
            self.be_a_stranger(desktop, call)
            self.assertEqual(call("color", "add", "#123456").returncode, 0)
            doctor = call("doctor")
            self.assertEqual(doctor.returncode, 0, doctor.stdout)
        finally:
            call("quit")
        root.dpkg("--purge", "ostrelle")
        kept = desktop.home / "config" / "Ostrelle" / "defaults.json"
        self.assertIn("color.recents", kept.read_text(), "the user's own stays")
        return root.changes()

    def test_comes_and_goes_without_a_trace(self):
        root = package_root()
        self.addCleanup(root.close)
        self.assertEqual(self.live_in(root), set())


if __name__ == "__main__":
    unittest.main()
