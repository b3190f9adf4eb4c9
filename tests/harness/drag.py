"""Drags out of other programs: sources of three makes, and the hand that drags."""
import itertools
import signal
import urllib.parse

from .desktop import BUILD, ROOT
from .waiting import wait_until

PEERS = BUILD / "bin" / "peers"
MAKES = {
    "plain": [str(PEERS / "drag-source")],
    "qt": [str(PEERS / "toolkit-drags"), "source"],
    "gtk": ["/usr/bin/python3", str(ROOT / "tests" / "peers" / "gtk_drags.py"), "source"],
}
_numbers = itertools.count(1)


def uri(path):
    """Of a path, str or bytes."""
    return "file://" + urllib.parse.quote(path if isinstance(path, bytes) else str(path))


class DragSource:
    """A program out of which a pressed button drags. `plain` takes the peer's options, `qt` and `gtk` the URIs."""

    def __init__(self, desktop, make, *arguments):
        self.desktop = desktop
        self.name = f"drag-source-{next(_numbers)}"
        self.process = desktop.spawn(self.name, [*MAKES[make], *map(str, arguments)])
        self._log = desktop.folder / f"{self.name}.log"
        self._read = 0
        self.wait("ready")

    def said(self):
        """What it has said since its latest press."""
        return self._log.read_text().splitlines()[self._read:]

    def wait(self, line, seconds=10):
        wait_until(lambda: line in self.said(), f"the source says {line}", seconds)

    def press(self):
        self._read += len(self.said())
        self.desktop.move_pointer(100, 450)
        self.desktop.run("xdotool", "mousedown", "1")

    def pick_up(self):
        """Presses and moves until its drag begins."""
        self.press()
        steps = itertools.count(1)

        def began():
            step = next(steps) % 20
            self.desktop.run("xdotool", "mousemove", str(110 + step), str(450 + step))
            return "began" in self.said()

        wait_until(began, "a drag begins")

    def move(self, x, y):
        self.desktop.move_pointer(x, y)

    def let_go(self):
        self.desktop.run("xdotool", "mouseup", "1")

    def end(self):
        """Ends it without a word, also in the middle of a drag."""
        self.desktop.stop(self.name, signal.SIGKILL)
