"""All of it at a glance: each tool once, in a theme of its own, on a dense screen. The front page shows these."""
import importlib

from harness.peer import Peer
from harness.waiting import wait_until
from sample_files import make_files
from stage import Stage
import dusk

clipboard = importlib.import_module("chapters.02_clipboard")
inspectors = importlib.import_module("chapters.06_inspectors")
color = importlib.import_module("chapters.08_color")

WIDTH, HEIGHT = 1280, 720
PICTURE = (840, 500)
TOOLS = {"clipboard": "spectrum", "color": "sunset", "assets": "aurora", "projects": "ultraviolet", "imageInfo": "frost",
         "audioInfo": "ember"}


def fill(stage):
    """Something in every tool."""
    clipboard.fill(stage)
    color.Tool(stage).fill()
    files = stage.desktop.home / "Files"
    stage.program.call("shelf", "add", *map(str, make_files(files)))
    folders = [stage.desktop.home / "Films" / name for name in ("Night ferry", "Harbour cut", "Titles", "Sound library")]
    for folder in folders:
        folder.mkdir(parents=True)
    stage.program.call("projects", "add", *map(str, folders))
    stage.open("assets")
    stage.wait_thumbnails(5)
    stage.close()


def show_files(stage):
    pictures = inspectors.make_pictures(stage.desktop.folder / "pictures")
    sounds = inspectors.make_sounds(stage.desktop.folder / "sounds")
    image, audio = inspectors.Tool(stage, "imageInfo"), inspectors.Tool(stage, "audioInfo")
    image.show(pictures["tiff"])
    image.show(pictures["png"])
    for sound in ("tagged", "flac", "beats"):
        audio.show(sounds[sound])


def hang_wallpaper(stage, dark):
    """Before the scenery, which tells windows apart, where this shows what glass is for."""
    frames = stage.desktop.frames
    path = stage.desktop.folder / f"dusk-{dark}.png"
    dusk.draw(path, frames.width, frames.height, dark)
    Peer(stage.desktop, "Dusk" if dark else "Day", (0, 0, frames.width, frames.height), path, "dock").activate()


def show(album, stage, tool, theme, look):
    stage.program.set("appearance.notchTheme", theme)
    stage.open(tool)
    stage.park()
    album.add(stage.look(*PICTURE), f"{tool}-{look}")
    stage.close()


def run(album):
    with Stage(scale=2, width=WIDTH, height=HEIGHT) as stage:
        stage.park()
        fill(stage)
        show_files(stage)
        stage.close()
        hang_wallpaper(stage, True)
        album.add(stage.look(WIDTH, HEIGHT), "closed")
        for tool, theme in TOOLS.items():
            show(album, stage, tool, theme, "dark")
        stage.program.set("appearance.preference", "light")
        hang_wallpaper(stage, False)
        for tool in ("clipboard", "color"):
            show(album, stage, tool, TOOLS[tool], "light")
