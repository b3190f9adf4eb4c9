"""The program's control socket, without a process per question."""
import json
import os
import socket
import time

from .waiting import pause


class Wire:
    def __init__(self, program):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.connect(os.path.join(program.environment["XDG_RUNTIME_DIR"], "ostrelle", "control"))
        self.file = self.socket.makefile("rb")

    def ask(self, verb, **more):
        self.socket.sendall(json.dumps({"verb": verb, **more}).encode() + b"\n")
        return json.loads(self.file.readline())

    def status(self):
        return self.ask("status")["result"]

    def longest_gap(self, seconds, until=lambda: False):
        """Longest time that the main thread needed to answer a question, ms; asked every 2 ms, so that asking itself takes
        nothing from whoever has work, for so many seconds or until a condition holds."""
        worst, end = 0.0, time.monotonic() + seconds
        while time.monotonic() < end and not until():
            begin = time.monotonic()
            self.ask("ping")
            worst = max(worst, (time.monotonic() - begin) * 1000)
            pause(0.002)
        return worst

    def close(self):
        self.file.close()
        self.socket.close()
