"""What an inspector shows, as its own menu copies it."""
import itertools
import subprocess

from .peer import paste, xclip
from .waiting import wait_until

NOTHING = b"nothing was copied"
# Two presses at one place are a double click, which opens no menu.
_places = itertools.cycle((0, 40))


def _windows(desktop):
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--class", "ostrelle"], env=desktop.environment,
                           capture_output=True, text=True)
    return set(found.stdout.split())


def copied_facts(desktop, x, y):
    """Label to value of the rows of the open inspector; the point is in the header of the panel."""
    xclip(desktop, NOTHING)
    desktop.move_pointer(x + next(_places), y)
    before = _windows(desktop)
    desktop.run("xdotool", "click", "3")
    menu = wait_until(lambda: _windows(desktop) - before, "the menu is there")
    desktop.key("Down", "Return")
    wait_until(lambda: paste(desktop) != NOTHING, "the facts are copied")
    wait_until(lambda: not _windows(desktop) & menu, "the menu is gone")
    return dict(line.split("\t") for line in paste(desktop).decode().splitlines())
