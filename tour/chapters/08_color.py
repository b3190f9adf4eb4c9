"""The colour tool: nothing picked yet, a colour with its text forms, those that are kept, and the dot on the tile."""
import json

from harness.peer import paste
from harness.waiting import wait_until
from stage import Stage

HEIGHT = 520
CONTENT = 24 + 106  # below the top bar, the header and the tools
READOUT = 182
SHELF = 56
RECENTS = ["#2F3E8C", "#D98A3D", "#E9E4FD", "#1F1D4E", "#F6EADB", "#C2E9D0", "#2C7F9E", "#5B2A57", "#B5446E", "#FBECD3",
           "#12323C", "#FF6FB0", "#6D57C9", "#A0D8EA", "#1D5F7C", "#45B08A", "#E8593C", "#F7B267"]
FAVORITES = ["#0B090F", "#FFFFFF", "#00B2F7", "#E43EAA", "#12323C", "#B5446E", "#F7B267"]


class Tool:
    """The colour tool on the stage."""

    def __init__(self, stage):
        self.stage = stage

    def lists(self):
        return json.loads(self.stage.program.call("color", "list", "--json").stdout)

    def recents(self):
        return [color["hex"] for color in self.lists()["recents"]]

    def favorites(self):
        return [color["hex"] for color in self.lists()["favorites"]]

    def fill(self):
        for color in RECENTS:
            self.stage.program.call("color", "add", color)
        for color in FAVORITES:
            self.stage.program.call("color", "favorite", color)
        assert self.recents() == RECENTS[::-1] and self.favorites() == FAVORITES[::-1], self.lists()

    def empty(self):
        for option in ([], ["--favorites"]):
            self.stage.program.call("color", "clear", *option)

    def swatch(self, shelf, index):
        """Middle of a swatch, from the middle of the screen's top edge."""
        return -294 + 14 + 11 + 30 * index, CONTENT + READOUT + 12 + SHELF * shelf + 22 + 11

    def click(self, x, y):
        self.stage.point(x, y)
        self.stage.desktop.click(self.stage.middle() + x * self.stage.scale, y * self.stage.scale)

    def copied(self, text):
        wait_until(lambda: paste(self.stage.desktop) == text.encode(), f"{text} is copied")

    def look(self):
        return self.stage.look(height=HEIGHT)


def invitation(album, look, stage, tool):
    stage.open("color")
    album.add(tool.look(), f"color-empty-{look}")
    stage.desktop.type("#f7b2")
    stage.desktop.type("67")
    album.add(tool.look(), f"color-typed-first-{look}")
    stage.desktop.key("Escape")
    tool.click(0, CONTENT + 115)
    wait_until(lambda: stage.program.status()["sampling"], "the loupe is open")
    stage.desktop.key("Escape")
    wait_until(lambda: not stage.program.status()["sampling"], "it is closed")
    assert tool.recents() == []
    stage.close()


def readout(album, look, stage, tool):
    tool.fill()
    stage.open("color")
    stage.point(*tool.swatch(0, 5))
    album.add(tool.look(), f"color-readout-{look}")
    stage.desktop.key("2")
    tool.copied("247, 178, 103")
    album.add(tool.look(), f"color-copied-{look}")
    stage.park()
    # Not a favorite.
    tool.click(*tool.swatch(0, 3))
    stage.park()
    album.add(tool.look(), f"color-walked-{look}")
    stage.desktop.key("Right", "Down")
    album.add(tool.look(), f"color-focus-{look}")
    before = tool.favorites()
    stage.desktop.key("Delete")
    wait_until(lambda: len(tool.favorites()) == len(before) - 1, "the favorite is gone")
    stage.desktop.key("ctrl+z")
    wait_until(lambda: tool.favorites() == before, "it is back")
    stage.desktop.type("rgb(57 180 244)")
    album.add(tool.look(), f"color-typed-{look}")
    stage.desktop.key("Return")
    wait_until(lambda: tool.recents()[0] == "#39B4F4", "a typed colour is listed")
    stage.close()


def badge(album, look, stage):
    stage.open()
    album.add(stage.look(), f"color-badge-{look}")
    stage.close()
    album.add(stage.look(height=60), f"color-marks-{look}")


def many_favorites(album, look, stage, tool):
    for step in range(24):
        stage.program.call("color", "favorite", f"hsl({step * 15} 70% 60%)")
    stage.open("color")
    stage.park()
    album.add(tool.look(), f"color-many-{look}")
    stage.desktop.key("Down", "Down", "End")
    album.add(tool.look(), f"color-many-end-{look}")
    stage.close()


def run(album):
    for dark in (True, False):
        look = "dark" if dark else "light"
        with Stage(dark) as stage:
            stage.park()
            tool = Tool(stage)
            invitation(album, look, stage, tool)
            readout(album, look, stage, tool)
            badge(album, look, stage)
            many_favorites(album, look, stage, tool)
            for theme in ("ember", "frost"):
                stage.program.set("appearance.notchTheme", theme)
                stage.open("color")
                stage.park()
                album.add(tool.look(), f"color-{theme}-{look}")
                stage.close()
    with Stage(scale=2) as stage:
        stage.park()
        tool = Tool(stage)
        tool.fill()
        stage.open("color")
        stage.park()
        stage.desktop.key("2")
        album.add(tool.look(), "color-scale-2", 2)
