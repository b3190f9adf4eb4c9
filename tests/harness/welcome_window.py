"""The window of the first run, used as a hand and a keyboard do."""
import re
import subprocess

from .reader import accessible_objects
from .waiting import wait_until

TITLE = "Welcome to Ostrelle"
STEPS = ("welcome", "reach", "tools", "look", "ready")
WIDTH, HEIGHT = 600, 560


class WelcomeWindow:
    def __init__(self, desktop, scale=1):
        self.desktop, self.scale = desktop, scale
        self.window = wait_until(self.find, "the window of the first run is there")
        wait_until(self.has_focus, "the window of the first run has the keyboard")
        self.x, self.y = self.place_on_screen()
        self.width, self.height = round(WIDTH * scale), round(HEIGHT * scale)

    def place_on_screen(self):
        """Where what the user sees as the window begins: around it may lie room for its shadow."""
        facts = self.desktop.run("xwininfo", "-id", self.window)
        x, y = (int(re.search(rf"Absolute upper-left {axis}:\s+(-?\d+)", facts).group(1)) for axis in "XY")
        extents = self.desktop.run("xprop", "-id", self.window, "-notype", "_GTK_FRAME_EXTENTS")
        left, _, top, _ = (int(number) for number in re.findall(r"\d+", extents))
        return x + left, y + top

    def find(self):
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{TITLE}$"],
                               env=self.desktop.environment, capture_output=True, text=True).stdout.split()
        return found[0] if found else None

    def has_focus(self):
        return self.desktop.run("xdotool", "getwindowfocus").strip() == self.window

    def wait_closed(self):
        wait_until(lambda: not self.find(), "the window of the first run is closed")

    def look(self, around=0):
        """The window once it has come to rest, with so much of the desktop around it."""
        edge = round(around * self.scale)
        return self.desktop.settled(self.x - edge, self.y - edge, self.width + 2 * edge, self.height + 2 * edge)

    def objects(self):
        return accessible_objects(self.desktop, "Ostrelle")

    def step(self):
        """The number of the step that is shown, from 0 on."""
        names = [name for role, name in self.objects() if re.fullmatch(r"Step \d of 5", name)]
        return int(names[0].split()[1]) - 1

    def wait_step(self, number):
        wait_until(lambda: self.step() == number, f"step {number} is shown")

    def go_to(self, number):
        """By Return, from the first step on."""
        for _ in range(number):
            self.desktop.key("Return")
        self.wait_step(number)

    def place(self, role, name):
        """The middle of a control on the screen."""
        x, y, width, height = self.objects()[role, name]["extents"]
        return x + width // 2, y + height // 2

    def click(self, role, name):
        self.desktop.click(*self.place(role, name))
