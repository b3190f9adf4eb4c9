"""The loupe of `ostrelle color pick`, and a picture to point it at."""
import ctypes
import subprocess
import time

from .peer import Peer
from .program import Program
from .waiting import wait_until

WHITE = (255, 255, 255)


def colour_at(x, y):
    """Every pixel of the picture has a colour of its own."""
    return x % 256, y % 256, x // 256 * 16 + y // 256


def hexadecimal(colour):
    return "#%02X%02X%02X" % tuple(colour)


def show_picture(desktop):
    width, height = desktop.frames.width, desktop.frames.height
    pixels = bytes(part for y in range(height) for x in range(width) for part in colour_at(x, y))
    path = desktop.folder / "picture.png"
    subprocess.run(["convert", "-size", f"{width}x{height}", "-depth", "8", "rgb:-", f"png24:{path}"], input=pixels,
                   check=True)
    peer = Peer(desktop, "Picture", (0, 0, width, height), path, "desktop")
    wait_until(lambda: desktop.frames.grab(70, 700, 1, 1).pixel(0, 0) == colour_at(70, 700), "the picture is shown")
    return peer


def set_root_bytes(desktop, name, data):
    """A property of the root window, of bytes; none at all when `data` is empty."""
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    display = ctypes.c_void_p(x11.XOpenDisplay(desktop.environment["DISPLAY"].encode()))
    root = ctypes.c_ulong(x11.XDefaultRootWindow(display))
    atom = ctypes.c_ulong(x11.XInternAtom(display, name.encode(), 0))
    cardinal, replace = ctypes.c_ulong(6), 0
    if data:
        x11.XChangeProperty(display, root, atom, cardinal, 8, replace, data, len(data))
    else:
        x11.XDeleteProperty(display, root, atom)
    x11.XCloseDisplay(display)


class Loupe:
    """A command that picks, from its start to its answer. Positions are native pixels."""

    def __init__(self, desktop, at, *arguments, scale=1, poll=0.02):
        self.desktop, self.scale, self.magnification = desktop, scale, 9
        self._point(*at)
        program = Program(desktop, start=False)
        self.process = subprocess.Popen([program.command, "color", "pick", *arguments], env=program.environment,
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        wait_until(lambda: self.process.poll() is not None or self.is_at(*at), "the loupe opens", interval=poll)
        self.opened = time.monotonic()

    def is_at(self, x, y):
        """The middle square has a white frame."""
        step = round(self.magnification * self.scale / 2 + 0.6 * self.scale)
        picture = self.desktop.frames.grab(x, y + step if y < 2 * step else y - step, 1, 1)
        return picture.pixel(0, 0) == WHITE

    def _point(self, x, y):
        self.desktop.run("xdotool", "mousemove", str(x), str(y))

    def move(self, x, y):
        self._point(x, y)
        wait_until(lambda: self.is_at(x, y), f"the loupe comes to {x}, {y}")

    def zoom(self, steps):
        """By the wheel: how many screen pixels wide a pixel is shown goes from 4 to 16."""
        self.magnification = min(max(self.magnification + steps, 4), 16)
        for _ in range(abs(steps)):
            self.desktop.run("xdotool", "click", "4" if steps > 0 else "5")

    def answer(self):
        """(exit status, standard output, standard error)"""
        out, err = self.process.communicate(timeout=20)
        return self.process.returncode, out.strip(), err.strip()

    def kill(self):
        self.process.kill()
        self.process.communicate()
