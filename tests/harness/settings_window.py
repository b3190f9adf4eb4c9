"""The settings window, found as a screen reader finds things and used as a hand and a keyboard do."""
import re
import subprocess

from .reader import accessible_objects
from .waiting import wait_until

TITLE = "Ostrelle Settings"
SECTIONS = ("general", "modules", "shortcuts", "appearance", "privacy", "about")


class SettingsWindow:
    def __init__(self, desktop, program, section="general"):
        self.desktop, self.program = desktop, program
        program.call("settings", "--section", section)
        self.wait_open()

    @classmethod
    def opened(cls, desktop, program):
        """One that something else than this opens."""
        window = cls.__new__(cls)
        window.desktop, window.program = desktop, program
        window.wait_open()
        return window

    def find(self):
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{TITLE}$"],
                               env=self.desktop.environment, capture_output=True, text=True).stdout.split()
        return found[0] if found else None

    def wait_open(self):
        """Waits until it is there with the keyboard, and has come to rest."""
        self.window = wait_until(self.find, "the settings window is there")
        wait_until(self.has_focus, "the settings window has the keyboard")
        facts = self.desktop.run("xwininfo", "-id", self.window)
        self.x, self.y, self.width, self.height = (
            int(re.search(rf"{name}:\s+(-?\d+)", facts).group(1))
            for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        self.look()

    def has_focus(self):
        return self.desktop.run("xdotool", "getwindowfocus").strip() == self.window

    def wait_closed(self):
        wait_until(lambda: not self.find(), "the settings window is closed")

    def look(self):
        """The window's content once it has come to rest."""
        return self.desktop.settled(self.x, self.y, self.width, self.height)

    def control(self, role, name):
        return accessible_objects(self.desktop, "Ostrelle")[role, name]

    def find_control(self, role, name):
        """The same, or None while there is none."""
        return accessible_objects(self.desktop, "Ostrelle").get((role, name))

    def place(self, role, name):
        """The middle of a control on the screen."""
        x, y, width, height = self.control(role, name)["extents"]
        return x + width // 2, y + height // 2

    def click(self, role, name):
        self.desktop.click(*self.place(role, name))

    def switch(self, name):
        self.click("check box", name)

    def choose(self, name):
        """A segment, a theme or a section."""
        self.click("radio button", name)

    def pick(self, picker, steps):
        """From the list that a picker opens, so many choices below the current one, which lies under the pointer."""
        x, y = self.place("combo box", picker)
        self.desktop.click(x, y)
        self.look()
        self.desktop.click(x, y + 25 * steps)

    def scroll(self, steps):
        """Over the page; down when positive."""
        self.desktop.move_pointer(self.x + self.width - 20, self.y + self.height // 2)
        for _ in range(abs(steps)):
            self.desktop.run("xdotool", "click", "5" if steps > 0 else "4")
        self.look()

    def close(self):
        self.desktop.key("Escape")
        self.wait_closed()
