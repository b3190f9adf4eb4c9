"""The real program on a private desktop, driven by its command and by input."""
import json
import os
import subprocess

from .desktop import BUILD
from .waiting import wait_until


class Program:
    """Runs `ostrelle`; every line it writes to standard error that was not announced fails the test at the end."""

    def __init__(self, desktop, *arguments, environment=None, start=True):
        self.desktop = desktop
        self.command = str(BUILD / "bin" / "ostrelle")
        self.environment = {**desktop.environment, **(environment or {})}
        self.expected_lines = []
        self._log = desktop.folder / "program.log"
        self._log.write_bytes(b"")
        self.process = None
        if start:
            self.start(*arguments)

    def start(self, *arguments, wait=True):
        with open(self._log, "ab") as log:
            self.process = subprocess.Popen([self.command, *arguments], env=self.environment, stdout=log, stderr=log,
                                            start_new_session=True)
        if wait:
            wait_until(self.is_listening, "the program answers", 30)

    def is_listening(self):
        if self.process.poll() is not None:
            raise AssertionError(f"the program ended with {self.process.returncode}: {self.log()}")
        return self.call("status", check=False).returncode == 0

    def call(self, *arguments, check=True, timeout=30):
        result = subprocess.run([self.command, *arguments], env=self.environment, capture_output=True, text=True,
                                timeout=timeout)
        if check and result.returncode != 0:
            raise AssertionError(f"ostrelle {' '.join(arguments)}: exit {result.returncode}: {result.stderr.strip()}")
        return result

    def start_call(self, *arguments):
        """A command that goes on while the caller does something else."""
        return subprocess.Popen([self.command, *arguments], env=self.environment, stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL)

    def status(self):
        return json.loads(self.call("status", "--json").stdout)

    def hear(self):
        """Lets the program hear what happened on the desktop before: each answer comes after a round of its event loop."""
        for _ in range(5):
            self.status()

    def history(self):
        return json.loads(self.call("clipboard", "list", "--json").stdout)

    def set(self, key, value):
        self.call("settings", "set", key, value if isinstance(value, str) else json.dumps(value))

    def wait_phase(self, phase, seconds=10):
        wait_until(lambda: self.status()["phase"] == phase, f"phase {phase}", seconds)

    def stop(self):
        """Quits and checks that it ended well and said nothing unexpected."""
        if self.process and self.process.poll() is None:
            self.call("quit")
            self.process.wait(10)
            assert self.process.returncode == 0, f"exit {self.process.returncode}: {self.log()}"
        unexpected = [line for line in self.log().splitlines()
                      if line and not any(part in line for part in self.expected_lines)]
        assert not unexpected, "unexpected lines on standard error:\n" + "\n".join(unexpected)

    def kill(self):
        if self.process and self.process.poll() is None:
            self.process.kill()
            self.process.wait()

    def log(self):
        return self._log.read_text() if self._log.exists() else ""

    def data_folder(self):
        return os.path.join(self.environment["XDG_DATA_HOME"], "Ostrelle")

    def __enter__(self):
        return self

    def __exit__(self, kind, *rest):
        if kind is None:
            self.stop()
        else:
            print("--- the program's standard error ---\n" + self.log())
            self.kill()
