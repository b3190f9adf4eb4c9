"""Other programs on the desktop: GTK windows with names of their own, and plain selection owners."""
import json
import pathlib
import subprocess

from .waiting import wait_until

APP = pathlib.Path(__file__).with_name("peer_app.py")


class Peer:
    """A GTK program with a window; `kind` is "normal", "desktop" or "dock"."""

    def __init__(self, desktop, name, geometry=(100, 300, 400, 300), picture="", kind="normal"):
        self.desktop, self.name = desktop, name
        self.process = desktop.spawn(f"peer-{name}", ["/usr/bin/python3", str(APP), name, ",".join(map(str, geometry)),
                                                      str(picture), kind],
                                     stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        assert self._line() == "ready"
        self.window = wait_until(lambda: self._find(), f"the window of {name}")

    def _line(self):
        return self.process.stdout.readline().decode().strip()

    def _find(self):
        result = subprocess.run(["xdotool", "search", "--onlyvisible", "--class", f"^{self.name}$"],
                                env=self.desktop.environment, capture_output=True, text=True)
        return result.stdout.split()[-1:] and result.stdout.split()[-1]

    def tell(self, line):
        """Sends a command; returns what it printed before "ok"."""
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()
        answers = []
        while (answer := self._line()) != "ok":
            assert answer or self.process.poll() is None, f"{self.name} has ended"
            answers.append(answer)
        return answers

    def activate(self):
        self.desktop.run("xdotool", "windowactivate", "--sync", self.window)

    def copy_text(self, text):
        self.tell("text " + json.dumps(text))

    def copy_image(self, path):
        self.tell(f"image {path}")

    def clicks(self):
        return int(self.tell("click-count")[0])


def xclip(desktop, data, target=None, selection="clipboard"):
    """Copies bytes with xclip, which goes on serving them in the background."""
    command = ["xclip", "-selection", selection, "-in"]
    if target:
        command += ["-t", target]
    subprocess.run(command, input=data, env=desktop.environment, check=True, timeout=10,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def paste(desktop, target=None):
    command = ["xclip", "-selection", "clipboard", "-out"]
    if target:
        command += ["-t", target]
    result = subprocess.run(command, env=desktop.environment, capture_output=True, timeout=10)
    return result.stdout if result.returncode == 0 else None
