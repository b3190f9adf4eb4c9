"""The same at twice the density."""
import importlib

from stage import Stage

fill = importlib.import_module("chapters.02_clipboard").fill


def run(album):
    for dark in (True, False):
        look = "dark" if dark else "light"
        with Stage(dark, scale=2, width=1280, height=800) as stage:
            stage.park()
            album.add(stage.look(height=120), f"closed-2x-{look}")
            stage.open()
            album.add(stage.look(), f"selector-2x-{look}")
            stage.close()
            fill(stage)
            stage.open("clipboard")
            album.add(stage.look(height=480), f"clipboard-2x-{look}")
