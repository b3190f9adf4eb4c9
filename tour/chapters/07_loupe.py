"""The loupe over everything: another program, the notch, an edge, several colours, and twice the density."""
from harness.loupe import Loupe
from stage import Stage


def around(stage, x, y, width=420, height=420):
    """The loupe and what is about it; given in native pixels, near edges cut."""
    s = stage.scale
    return stage.desktop.settled(max(0, x - width * s // 2), max(0, y - height * s // 2), width * s, height * s)


def escape(stage, loupe):
    stage.desktop.key("Escape")
    loupe.answer()


def places(stage):
    """The rim of the sun in the window, the notch's colour tool, and the edge of the screen, native pixels."""
    s = stage.scale
    told = stage.desktop.run("xdotool", "getwindowgeometry", "--shell", stage.scenery.window.window)
    window = dict(line.split("=") for line in told.split())
    sun = int(window["X"]) + 352 * s, int(window["Y"]) + 122 * s
    return sun, (stage.middle() - 174 * s, 98 * s), (2, 420 * s)


def run(album):
    for dark in (True, False):
        look = "dark" if dark else "light"
        with Stage(dark) as stage:
            stage.park()
            sun, tile, edge = places(stage)
            loupe = Loupe(stage.desktop, sun)
            album.add(around(stage, *sun), f"loupe-{look}")
            loupe.zoom(-6)
            album.add(around(stage, *sun), f"four-times-{look}")
            loupe.zoom(13)
            album.add(around(stage, *sun), f"sixteen-times-{look}")
            loupe.zoom(-7)
            stage.desktop.key("shift+Return", "Right", "shift+Return")
            album.add(around(stage, sun[0] + 1, sun[1]), f"two-gathered-{look}")
            loupe.move(*edge)
            album.add(around(stage, *edge), f"at-the-edge-{look}")
            corner = (stage.desktop.frames.width - 3, stage.desktop.frames.height - 3)
            loupe.move(*corner)
            album.add(around(stage, *corner), f"in-the-corner-{look}")
            escape(stage, loupe)
            stage.open("color")
            stage.look(height=420)
            loupe = Loupe(stage.desktop, tile)
            album.add(stage.look(height=420), f"over-the-notch-{look}")
            escape(stage, loupe)
    with Stage(scale=2, width=1280, height=800) as stage:
        stage.park()
        sun = places(stage)[0]
        loupe = Loupe(stage.desktop, sun, scale=2)
        album.add(around(stage, *sun), "loupe-2x")
        escape(stage, loupe)
    with Stage(compositor=False) as stage:
        stage.park()
        sun = places(stage)[0]
        loupe = Loupe(stage.desktop, sun)
        album.add(around(stage, *sun), "without-a-compositor")
        escape(stage, loupe)
