"""The hand that drags files, and lets go of them."""
import itertools

from harness.waiting import wait_until


class Hand:
    def __init__(self, stage):
        self.stage = stage

    def press(self, x, y):
        self.stage.desktop.move_pointer(x, y)
        self.stage.desktop.run("xdotool", "mousedown", "1")

    def let_go(self):
        self.stage.desktop.run("xdotool", "mouseup", "1")

    def carry(self, x, y, is_there):
        """Moves to a point of the screen, and around it: some programs act only while the pointer moves."""
        steps = itertools.count()

        def moved():
            step = next(steps) % 8
            self.stage.desktop.run("xdotool", "mousemove", str(int(x) + 3 * step), str(int(y) + 2 * step))
            return is_there()

        wait_until(moved, f"something is carried to {x}, {y}", 30)

    def pick_up(self, x, y):
        """Presses and drags a little, out of another program, until the notch is ready for the files."""
        self.press(x, y)
        self.carry(x - 40, y - 40, lambda: self.stage.program.status()["dragCatchArmed"])

    def enter(self, *zones):
        """Moves over the notch, below every zone."""
        self.carry(self.stage.middle(), 250 * self.stage.scale,
                   lambda: self.stage.program.status()["dropTargets"] == list(zones))
        self.stage.look()

    def hover(self, zone):
        frame = self.stage.program.status()["dropZones"][zone]
        self.stage.desktop.move_pointer(frame["x"] + frame["width"] * 0.7, frame["y"] + frame["height"] * 0.7)
