"""The command line and the running program."""
import json
import os
import signal
import subprocess
import unittest

from harness.desktop import Desktop
from harness.peer import xclip
from harness.program import Program
from harness.waiting import wait_until

STATUS_KEYS = {"pid", "version", "phase", "selection", "surface", "interaction", "window", "screen", "metrics",
               "openedByHover", "dragCatchArmed", "dropTargets", "dropZones", "hasFocus", "sampling", "theme",
               "appearance", "compositor", "counts", "shortcuts"}


class Commands(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop()

    @classmethod
    def tearDownClass(cls):
        cls.desktop.close()

    def test_status_opens_closes_and_quits(self):
        with Program(self.desktop) as program:
            status = program.status()
            self.assertEqual(set(status), STATUS_KEYS)
            self.assertEqual(status["pid"], program.process.pid, "the command became the program")
            self.assertEqual((status["phase"], status["selection"]), ("idle", None))
            program.call("open", "clipboard")
            program.wait_phase("expanded")
            self.assertEqual(program.status()["selection"], "clipboard")
            self.assertFalse(program.status()["openedByHover"])
            program.call("toggle")
            program.wait_phase("idle")
            program.call("toggle")
            program.wait_phase("expanded")
            self.assertIsNone(program.status()["selection"])
            program.call("close")
            program.wait_phase("idle")
            self.assertIn("idle", program.call("status").stdout)

    def test_a_second_start_hands_over(self):
        with Program(self.desktop) as program:
            second = program.call()
            self.assertEqual(second.returncode, 0)
            program.wait_phase("expanded")

    def test_of_two_starts_at_once_one_wins(self):
        for _ in range(5):
            program = Program(self.desktop, start=False)
            starts = [subprocess.Popen([program.command], env=program.environment, stderr=subprocess.PIPE)
                      for _ in range(4)]
            wait_until(lambda: sum(start.poll() is not None for start in starts) == 3, "three of four hand over")
            ended = [start for start in starts if start.poll() is not None]
            self.assertEqual([start.returncode for start in ended], [0, 0, 0])
            winner = next(start for start in starts if start not in ended)
            self.assertEqual(program.status()["pid"], winner.pid)
            program.call("quit")
            self.assertEqual(winner.wait(5), 0)
            for start in starts:
                start.stderr.close()

    def test_a_start_while_it_ends_becomes_the_next_program(self):
        import socket as sockets
        with Program(self.desktop) as program:
            xclip(self.desktop, os.urandom(400_000).hex().encode())
            wait_until(lambda: program.history(), "recorded")
            program.call("clipboard", "copy", "1")
            with sockets.socket(sockets.AF_UNIX) as client:
                client.connect(os.path.join(program.environment["XDG_RUNTIME_DIR"], "ostrelle", "control"))
                client.sendall(b'{"verb":"quit"}\n')
                client.recv(100)
                first = program.process
                program.start("open", "color")
            self.assertEqual(first.wait(10), 0)
            program.wait_phase("expanded")
            program.call("clipboard", "clear")

    def test_open_starts_and_opens(self):
        with Program(self.desktop, "open", "color") as program:
            program.wait_phase("expanded")
            self.assertEqual(program.status()["selection"], "color")

    def test_without_a_running_program(self):
        program = Program(self.desktop, start=False)
        for command in (["status"], ["status", "--json"], ["close"], ["toggle"], ["quit"], ["clipboard", "copy", "1"]):
            result = program.call(*command, check=False)
            self.assertEqual(result.returncode, 3, command)
            self.assertEqual(len(result.stderr.splitlines()), 1, command)

    def test_wrong_usage(self):
        program = Program(self.desktop, start=False)
        for command in (["fly"], ["open", "Clipboard"], ["clipboard", "pin", "0"], ["clipboard", "pin", "x"],
                        ["settings", "get", "no.such"], ["settings", "set", "general.haptics", "maybe"],
                        ["settings", "set", "appearance.notchTheme", "mono"], ["settings", "set", "clipboard.limit", "1.5"],
                        ["settings", "set", "modules.order", '["clipboard", "flying"]'],
                        ["settings", "set", "display.notch", '{"screen": "wide"}'], ["settings", "reset", "no.such"]):
            result = program.call(*command, check=False)
            self.assertEqual(result.returncode, 2, command)
            self.assertEqual(len(result.stderr.splitlines()), 1, command)
        for place, command in (("stdout", [program.command, "settings", "list"]),
                               ("XDG_CONFIG_HOME", [program.command, "settings", "set", "clipboard.limit", "5"])):
            with self.subTest(f"no room for {place}"), open("/dev/full", "w") as full:
                result = subprocess.run(command, env={**program.environment, "XDG_CONFIG_HOME": "/dev/full"},
                                        stdout=full, stderr=subprocess.PIPE)
                self.assertEqual((result.returncode, len(result.stderr.splitlines())), (1, 1), result.stderr)
        self.assertIn("Exit status", program.call("--help").stdout)
        self.assertIn("bare word", program.call("settings", "set", "--help").stdout)
        self.assertRegex(program.call("--version").stdout, r"^ostrelle \d+\.\d+\.\d+\n$")

    def test_settings_live_and_on_the_file(self):
        program = Program(self.desktop, start=False)
        path = os.path.join(program.environment["XDG_CONFIG_HOME"], "Ostrelle", "defaults.json")
        program.set("appearance.notchTheme", "ember")
        program.set("general.hoverOpenDelay", 0.5)
        with open(path) as file:
            self.assertEqual(json.load(file), {"app.hasCompletedOnboarding": True, "appearance.notchTheme": "ember",
                                               "general.hoverOpenDelay": 0.5})
        self.assertEqual(os.stat(path).st_mode & 0o777, 0o600)
        program.set("modules.order", ["assets"])
        with open(path) as file:
            stored = json.load(file)
        self.assertEqual((stored["modules.order"][:2], stored["modules.enabled"][0]), (["assets", "clipboard"], "assets"))
        program.start()
        try:
            self.assertEqual(program.status()["theme"], "ember")
            program.set("appearance.notchTheme", "frost")
            self.assertEqual(program.status()["theme"], "frost")
            idle_width = program.status()["surface"]["width"]
            program.set("modules.enabled", ["clipboard", "assets"])
            wait_until(lambda: program.status()["surface"]["width"] < idle_width, "fewer tools, a smaller notch")
            self.assertEqual(json.loads(program.call("settings", "get", "modules.enabled").stdout), ["assets", "clipboard"])
            program.call("settings", "reset", "modules.enabled")
            program.call("settings", "reset", "modules.order")
            wait_until(lambda: program.status()["surface"]["width"] == idle_width, "all tools again")
            program.call("settings", "reset", "appearance.notchTheme")
            self.assertEqual(program.status()["theme"], "spectrum")
        finally:
            program.stop()
        with open(path) as file:
            self.assertEqual(json.load(file), {"app.hasCompletedOnboarding": True, "general.hoverOpenDelay": 0.5})
        program.call("settings", "reset", "general.hoverOpenDelay")

    def test_signals_end_it_well(self):
        for sig in (signal.SIGTERM, signal.SIGINT):
            program = Program(self.desktop)
            program.process.send_signal(sig)
            self.assertEqual(program.process.wait(10), 0)
            self.assertEqual(program.log(), "")

    def test_without_a_display(self):
        program = Program(self.desktop, start=False)
        for display in ("", ":987"):
            result = subprocess.run([program.command], env={**program.environment, "DISPLAY": display},
                                    capture_output=True, text=True, timeout=10)
            self.assertEqual(result.returncode, 1)
            self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)

    def test_another_user_is_refused(self):
        if os.getuid() != 0:
            self.fail("this test changes the user and needs root")
        with Program(self.desktop) as program:
            os.chmod(self.desktop.folder, 0o755)
            socket = os.path.join(program.environment["XDG_RUNTIME_DIR"], "ostrelle", "control")
            self.assertEqual(os.stat(socket).st_mode & 0o777, 0o600)
            self.assertEqual(os.stat(os.path.dirname(socket)).st_mode & 0o777, 0o700)
            # Even with the doors wide open the program asks who is there.
            for path in (self.desktop.runtime, os.path.dirname(socket)):
                os.chmod(path, 0o755)
            os.chmod(socket, 0o666)
            probe = ("import socket,sys; s=socket.socket(socket.AF_UNIX); s.connect(sys.argv[1]); "
                     "s.sendall(b'{\"verb\":\"status\"}\\n'); print(len(s.recv(100)))")
            result = subprocess.run(["setpriv", "--reuid=65534", "--clear-groups", "/usr/bin/python3", "-c", probe, socket],
                                    capture_output=True, text=True, timeout=10)
            self.assertTrue(result.returncode != 0 or result.stdout.strip() == "0", result)
            for path in (self.desktop.runtime, os.path.dirname(socket), self.desktop.folder):
                os.chmod(path, 0o700)
            self.assertEqual(program.status()["phase"], "idle")

    def test_garbage_on_the_socket(self):
        import socket as sockets
        with Program(self.desktop) as program:
            path = os.path.join(program.environment["XDG_RUNTIME_DIR"], "ostrelle", "control")
            for message in (b"\n", b"{}\n", b"\xff\xfe\n", b'{"verb": 7}\n', b'{"verb":"clipboard.pin","number":-3}\n',
                            b'{"verb":"settings.set","key":"clipboard.limit","value":{}}\n', b"x" * 2_000_000):
                with sockets.socket(sockets.AF_UNIX) as client:
                    client.connect(path)
                    try:
                        client.sendall(message)
                        client.settimeout(2)
                        client.recv(4096)
                    except OSError:
                        pass
            self.assertEqual(program.status()["phase"], "idle")


if __name__ == "__main__":
    unittest.main(verbosity=1)
