"""Checking for updates, against a real HTTPS server."""
import json
import re
import unittest

from harness.desktop import Desktop
from harness.feed import MIRROR, MISTAKEN, SERVER, STRANGER, FeedServer, deployed_program, endless, redirect, response, stalled
from harness.program import Program
from harness.settings_window import SettingsWindow
from harness.waiting import holds_for, wait_until

NEWER = {"version": "v9.1", "url": "https://get.example/9.1", "notes": "Faster.\x1b[31m", "future": True}
UNREADABLE = "The update server sent something unreadable."
AUTOMATIC = "Check for updates automatically"
ACCENT = (228, 62, 170)


class Updates(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop(environment={"LANG": "de_DE.UTF-8", "LANGUAGE": "de"})
        cls.server = FeedServer(cls.desktop.folder)
        cls.command = deployed_program()

    @classmethod
    def tearDownClass(cls):
        cls.server.close()
        cls.desktop.close()

    def setUp(self):
        self.program = Program(self.desktop, start=False, environment=self.server.environment)
        self.program.command = self.command
        self.version = self.program.call("--version").stdout.split()[1]
        self.server.answers = {SERVER: response(NEWER)}
        self.server.requests.clear()
        self.server.tunnels.clear()

    def check(self):
        result = self.program.call("update", "check", "--json", check=False)
        answer = json.loads(result.stdout)
        self.assertEqual(result.returncode, 1 if answer["state"] == "failed" else 0)
        self.assertEqual(result.stderr, "")
        return answer

    def test_tells_what_the_server_says(self):
        newer = {"state": "available", "version": "v9.1", "url": "https://get.example/9.1", "notes": "Faster.\x1b[31m"}
        exact = json.dumps({"version": "9"}).encode().ljust(64 * 1024)
        for name, answer, wanted in (
                ("newer", response(NEWER), newer),
                ("as large as may be", response(exact),
                 {"state": "available", "version": "9", "url": "https://home.ostrelle.test/"}),
                ("equal", response({"version": self.version + ".0"}), {"state": "current"}),
                ("downgrade", response({"version": "0.0.9", "url": "https://get.example/"}), {"state": "current"}),
                ("an http address", response({"version": "9", "url": "http://get.example/"}), UNREADABLE),
                ("malformed", response(b"<html>"), "The update feed is not JSON: illegal value."),
                ("huge", response(exact + b" "), UNREADABLE),
                ("endless", endless("200 OK"), UNREADABLE),
                ("no HTTP", b"220 mail ready\r\n\r\n", UNREADABLE),
                ("wrong status", response(NEWER, "503 Service Unavailable"), "The update server answered 503."),
                ("endless, wrong status", endless("404 Not Found"), "The update server answered 404."),
                ("not modified", b"HTTP/1.1 304 Not Modified\r\n\r\n", "The update server answered 304."),
                ("slow", stalled(response(NEWER)[:-9]), "The update server did not answer in time."),
                ("cut off", response(NEWER)[:-9], "transfer closed with 9 bytes remaining to read.")):
            with self.subTest(name):
                self.server.answers = {SERVER: answer}
                wanted = {"state": "failed", "message": wanted} if isinstance(wanted, str) else wanted
                self.assertEqual(self.check(), wanted)

    def test_goes_on_to_https_only_and_trusts_nobody_else(self):
        self.server.answers[MIRROR] = response({"version": "9.2", "url": "https://get.example/9.2"})
        for host, wanted in ((MIRROR, "^9.2$"), (SERVER, "Maximum .* redirects"),
                             (MISTAKEN, "no alternative certificate subject name"),
                             (STRANGER, "unable to get local issuer certificate")):
            with self.subTest(host):
                self.server.answers[SERVER] = redirect(f"https://{host}/elsewhere.json")
                answer = self.check()
                self.assertRegex(answer.get("message", answer.get("version")), wanted)
        for location in (f"http://{MIRROR}/", "file:///etc/passwd"):
            with self.subTest(location):
                self.server.answers[SERVER] = redirect(location)
                self.server.tunnels.clear()
                self.assertEqual(self.check()["message"], "The update server led to an address that is not HTTPS.")
                self.assertEqual(len(self.server.tunnels), 1)
        self.program.environment["https_proxy"] = "http://127.0.0.1:9"
        self.assertRegex(self.check()["message"], "Failed to connect")

    def test_the_request_tells_nothing_of_the_user(self):
        self.server.answers = {SERVER: redirect(f"https://{MIRROR}/here.json"), MIRROR: response(NEWER)}
        product = "Ostrelle/" + self.version
        self.check()
        wanted = [rf"GET /version\.json\?t=\d{{10}} HTTP/1\.1\r\nHost: {SERVER}\r\nUser-Agent: {product}\r\nAccept: \*/\*\r\n\r\n",
                  rf"GET /here\.json HTTP/1\.1\r\nHost: {MIRROR}\r\nUser-Agent: {product}\r\nAccept: \*/\*\r\n\r\n"]
        self.assertEqual([name for name, _ in self.server.requests], [SERVER, MIRROR])
        for pattern, (_, request) in zip(wanted, self.server.requests):
            self.assertIsNotNone(re.fullmatch(pattern, request.decode()), request)
        self.assertIn(f"\r\nUser-Agent: {product}\r\n", self.server.tunnels[0].decode())

    def test_the_running_program_checks_by_itself_and_when_asked(self):
        self.stand_in_for_the_browser()
        with self.program as program:
            program.start()
            program.call("open")
            program.wait_phase("expanded")
            wait_until(lambda: self.server.requests, "the check after the start", 30)
            wait_until(self.has_dot, "the gear tells of the update")
            self.offered_by_the_gear()
            text = program.call("update", "check").stdout
            self.assertEqual(text, "Version v9.1 is available\nFaster. [31m\nhttps://get.example/9.1\n")
            self.assertEqual(len(self.server.requests), 2)
            program.set("updates.skippedVersion", "v9.1")
            self.assertEqual(self.check()["state"], "available", "a manual check offers also what is to be skipped")
            self.server.answers[SERVER] = response({"version": self.version + ".0"})
            self.assertEqual(program.call("update", "check").stdout, "You're up to date\n")
            wait_until(lambda: not self.has_dot(), "nothing to tell any more")
            self.server.answers[SERVER] = response(b"", "500 Oh")
            failed = program.call("update", "check", check=False)
            self.assertEqual((failed.returncode, failed.stdout, failed.stderr),
                             (1, "", "ostrelle: could not check for updates: The update server answered 500.\n"))

    def stand_in_for_the_browser(self):
        """What opens an address on this desktop, which has no portal, tells which one it was given."""
        folder = self.desktop.folder / "browser"
        folder.mkdir()
        self.opened = folder / "opened"
        opener = folder / "xdg-open"
        opener.write_text(f'#!/bin/sh\nprintf %s "$1" > "{folder}/part" && mv "{folder}/part" "{self.opened}"\n')
        opener.chmod(0o755)
        self.program.environment["PATH"] = f"{folder}:{self.program.environment['PATH']}"

    def test_the_switch_begins_and_cancels_the_checks(self):
        self.program.set("updates.autoCheck", False)
        with self.program as program:
            program.start()
            window = SettingsWindow(self.desktop, program, "about")
            self.assertEqual(window.control("panel", "Version " + self.version)["description"],
                             "Automatic checks are off.")
            self.server.answers[SERVER] = response({"version": self.version})
            window.switch(AUTOMATIC)
            wait_until(lambda: self.server.requests, "a check soon after", 30)
            wait_until(lambda: self.last_checked(window), "its time is shown as it is written here")
            window.switch(AUTOMATIC)
            window.switch(AUTOMATIC)
            window.switch(AUTOMATIC)
            wait_until(lambda: program.call("settings", "get", "updates.autoCheck").stdout == "false\n", "off")
            before = len(self.server.requests)
            holds_for(lambda: len(self.server.requests) == before, "the one that was to come is cancelled", 7)
            program.call("settings", "reset", "updates.autoCheck")

    @staticmethod
    def last_checked(window):
        status = window.find_control("panel", "You're up to date")
        return status and re.fullmatch(r"Last checked \d{1,2} [A-Z][a-z]{2} \d{4} at \d{2}:\d{2}\.", status["description"])

    def offered_by_the_gear(self):
        surface = self.program.status()["surface"]
        self.desktop.settled(0, 0, self.desktop.frames.width, 300)
        self.desktop.click(int(surface["x"] + surface["width"]) - 23, int(surface["y"]) + 24 + 5 + 11)
        window = SettingsWindow.opened(self.desktop, self.program)
        self.assertIn("checked", window.control("radio button", "About")["states"])
        self.assertEqual(window.control("panel", "Version v9.1 is available")["description"], "Faster. [31m")
        window.click("push button", "Download")
        wait_until(self.opened.exists, "the release is opened")
        self.assertEqual(self.opened.read_text(), NEWER["url"])
        window.close()
        self.program.call("open")
        self.program.wait_phase("expanded")

    def has_dot(self):
        surface = self.program.status()["surface"]
        x, y = int(surface["x"] + surface["width"]) - 34, int(surface["y"]) + 20
        picture = self.desktop.frames.grab(x, y, 34, 34)
        return sum(picture.pixel(i, j)[:3] == ACCENT for i in range(34) for j in range(34)) > 12

    def test_a_build_that_nobody_deployed_says_so(self):
        program = Program(self.desktop, start=False, environment=self.server.environment)
        for running in (False, True):
            if running:
                program.start()
            failed = program.call("update", "check", check=False)
            self.assertEqual((failed.returncode, failed.stderr), (
                1, "ostrelle: could not check for updates: This build of Ostrelle has no update server.\n"))
        program.stop()
        self.assertEqual(self.server.tunnels, [])


if __name__ == "__main__":
    unittest.main(verbosity=1)
