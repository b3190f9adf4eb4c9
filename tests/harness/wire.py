"""The program's control socket, without a process per question."""
import json
import os
import socket
import time


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

    def longest_gap(self, seconds):
        """Longest time that the main thread needed to answer a question, ms."""
        worst, end = 0.0, time.monotonic() + seconds
        while time.monotonic() < end:
            begin = time.monotonic()
            self.ask("ping")
            worst = max(worst, (time.monotonic() - begin) * 1000)
        return worst

    def close(self):
        self.file.close()
        self.socket.close()
