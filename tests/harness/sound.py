"""A sound server of one's own, which plays into the void, and an ear behind it."""
import array
import os
import subprocess
import threading
import time

from .waiting import wait_until

RATE = 48000


class SoundServer:
    """PulseAudio in `folder`. Who has its `environment` beside the usual one plays there."""

    def __init__(self, folder):
        self.folder = str(folder)
        self.environment = {"PULSE_SERVER": f"unix:{self.folder}/native"}
        self.process = None

    def start(self):
        # Without rewinding what is handed over is heard within 50 ms.
        self.process = subprocess.Popen(
            ["pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1", "--high-priority=no",
             "--realtime=no", "-L", f"module-null-sink sink_name=void rate={RATE} channels=2 norewinds=1",
             "-L", f"module-native-protocol-unix auth-anonymous=1 socket={self.folder}/native"],
            env={"PATH": os.environ["PATH"], "HOME": self.folder, "XDG_RUNTIME_DIR": self.folder},
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
        wait_until(lambda: os.path.exists(f"{self.folder}/native"), "the sound server listens")
        return self

    def kill(self):
        if self.process:
            self.process.kill()
            self.process.wait()
            self.process = None
            # So that the next start() waits for its own.
            os.unlink(f"{self.folder}/native")


class Recorder:
    """Notes when something was heard first and last, on the monotonic clock."""

    def __init__(self, server):
        self.process = subprocess.Popen(
            ["parec", "--device=void.monitor", "--format=s16ne", "--channels=1", f"--rate={RATE}", "--latency-msec=1"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env={**os.environ, **server.environment})
        self.first = self.last = None
        self._listens = threading.Event()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        assert self._listens.wait(20), "the recorder hears nothing at all"

    def _read(self):
        while data := os.read(self.process.stdout.fileno(), 1 << 16):
            now = time.monotonic()
            self._listens.set()
            if any(array.array("h", data[:len(data) & ~1])):
                self.first = self.first or now
                self.last = now

    def forget(self):
        self.first = self.last = None

    def is_silent(self, seconds):
        """Something was heard, and nothing for so long."""
        return self.last is not None and time.monotonic() - self.last > seconds

    def close(self):
        self.process.kill()
        self.process.wait()
        self._reader.join()
        self.process.stdout.close()


def children(pid):
    """All processes below it."""
    found = []
    for task in os.listdir(f"/proc/{pid}/task"):
        try:
            with open(f"/proc/{pid}/task/{task}/children") as file:
                below = [int(child) for child in file.read().split()]
            found += below + [process for child in below for process in children(child)]
        except FileNotFoundError:
            continue
    return found
