"""What every chapter does: a desktop with its scenery and the program on it, and looks at the notch."""
import json
import os

from harness.desktop import Desktop
from harness.program import Program
from harness.waiting import wait_until
from scenery import Scenery


class Stage:
    def __init__(self, dark=True, scale=1, width=1920, height=1080, compositor=True):
        self.scale = scale
        self.desktop = Desktop(round(width * scale), round(height * scale), compositor=compositor,
                               environment={"QT_SCALE_FACTOR": str(scale)} if scale != 1 else None)
        try:
            self.scenery = Scenery(self.desktop, dark, scale)
            self.program = Program(self.desktop)
            self.program.set("appearance.preference", "dark" if dark else "light")
        except BaseException:
            self.desktop.close()
            raise

    def middle(self):
        """Native x of the middle of the screen."""
        return self.desktop.frames.width // 2

    def look(self, width=760, height=210):
        """The notch and what is around it, once it has come to rest."""
        width, height = round(width * self.scale), round(height * self.scale)
        return self.desktop.settled(self.middle() - width // 2, 0, width, height)

    def point(self, x, y):
        """Moves the pointer to a point given from the middle of the screen's top edge, logical pixels."""
        self.desktop.move_pointer(self.middle() + x * self.scale, y * self.scale)

    def park(self):
        self.point(0, 900)

    def open(self, *tool):
        self.program.call("open", *tool)
        self.program.wait_phase("expanded")

    def close(self):
        self.program.call("close")
        self.program.wait_phase("idle")

    def wait_selection(self, tool):
        wait_until(lambda: self.program.status()["selection"] == tool, f"the tool {tool} is open")

    def wait_thumbnails(self, count):
        folder = self.desktop.home / "cache" / "thumbnails"
        wait_until(lambda: len(list(folder.glob("*/*.png"))) >= count, f"{count} thumbnails are made", 20)

    def names(self, tool):
        """What the shelf or the projects hold."""
        records = json.loads(self.program.call(tool, "list", "--json").stdout)
        return [record.get("displayName") or os.path.basename(record["path"]) for record in records]

    def __enter__(self):
        return self

    def __exit__(self, kind, *rest):
        try:
            self.program.__exit__(kind, *rest)
        finally:
            self.desktop.close()
