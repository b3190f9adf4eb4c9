"""Files: dragged to the notch, offered landing zones, kept on the shelf; folders pinned as projects."""
import pathlib
import shutil

from hand import Hand
from harness.waiting import wait_until
from sample_files import make_files
from stage import Stage

MANAGER = pathlib.Path(__file__).resolve().parents[1] / "file_manager.py"
CELL, COLUMNS = 110, 4
PLACE = (740, 640)
HEIGHT = 480


class Manager(Hand):
    """The file manager, and the hand that drags out of it."""

    def __init__(self, stage, paths, look):
        super().__init__(stage)
        self.paths = paths
        stage.desktop.spawn("manager", ["/usr/bin/python3", str(MANAGER), ",".join(map(str, PLACE)), "2", look,
                                        *map(str, paths)])
        log = stage.desktop.folder / "manager.log"
        wait_until(lambda: "ready" in log.read_text(), "the file manager is there")

    def drag(self, name):
        index = [path.name for path in self.paths].index(name)
        self.pick_up(PLACE[0] + index % COLUMNS * CELL + CELL // 2, PLACE[1] + index // COLUMNS * CELL + CELL // 2)


def zones(album, look, stage, manager):
    manager.drag("Night ferry.jpg")
    if look == "dark":
        album.add(stage.look(height=860), "drag-noticed")
    manager.enter("assets", "imageInfo", "audioInfo")
    album.add(stage.look(height=280), f"zones-{look}")
    manager.hover("imageInfo")
    album.add(stage.look(height=280), f"zones-pointer-{look}")
    manager.hover("assets")
    manager.let_go()
    wait_until(lambda: stage.names("shelf") == ["Horn, wide.flac", "Night ferry.jpg"], "the shelf has taken both")
    stage.wait_selection("assets")
    stage.close()

    manager.drag("Ferry film")
    manager.enter("assets", "projects")
    manager.hover("projects")
    album.add(stage.look(height=280), f"zones-folder-{look}")
    manager.let_go()
    wait_until(lambda: stage.names("projects") == ["Ferry film"], "the folder is pinned")
    stage.close()

    if look == "light":
        return
    manager.drag("Notes.txt")
    manager.enter("assets")
    manager.hover("assets")
    album.add(stage.look(height=280), "zones-one")
    stage.park()
    manager.let_go()
    stage.program.wait_phase("idle")


def shelf(album, look, stage, manager):
    stage.program.call("shelf", "clear")
    stage.open("assets")
    album.add(stage.look(height=HEIGHT), f"shelf-empty-{look}")
    stage.close()
    kept = [path for path in manager.paths if path.name not in ("Dawn.mp4", "Sound")]
    stage.program.call("shelf", "add", *map(str, kept))
    # The last one comes by a drag over the open shelf.
    manager.drag("Dawn.mp4")
    stage.open("assets")
    stage.point(0, 160)
    album.add(stage.look(height=HEIGHT), f"shelf-targeted-{look}")
    manager.let_go()
    wait_until(lambda: len(stage.names("shelf")) == len(kept) + 1, "the open shelf has taken it")
    stage.park()
    stage.wait_thumbnails(5)
    album.add(stage.look(height=HEIGHT), f"shelf-{look}")
    stage.point(-215, 185)
    album.add(stage.look(height=HEIGHT), f"shelf-pointer-{look}")
    stage.park()
    stage.desktop.key("Home", "shift+Right", "shift+Right")
    album.add(stage.look(height=HEIGHT), f"shelf-selected-{look}")
    stage.close()


def projects(album, look, stage, files):
    others = [files.parent / name for name in ("Harbour cut", "Old rushes", "Titles")]
    for folder in others:
        folder.mkdir()
    stage.program.call("projects", "add", str(files / "Sound"), *map(str, others))
    shutil.rmtree(others[1])
    stage.open("projects")
    album.add(stage.look(height=HEIGHT), f"projects-{look}")
    stage.point(-100, 250)
    album.add(stage.look(height=HEIGHT), f"projects-pointer-{look}")
    stage.park()
    stage.desktop.key("Home", "F2")
    stage.desktop.key("ctrl+a")
    stage.desktop.type("Night ferry, the film")
    album.add(stage.look(height=HEIGHT), f"projects-rename-{look}")
    stage.desktop.key("Return")
    wait_until(lambda: "Night ferry, the film" in stage.names("projects"), "the project is renamed")
    album.add(stage.look(height=HEIGHT), f"projects-renamed-{look}")
    stage.close()


def run(album):
    for dark in (True, False):
        look = "dark" if dark else "light"
        with Stage(dark) as stage:
            stage.park()
            files = stage.desktop.folder / "files"
            manager = Manager(stage, make_files(files), look)
            zones(album, look, stage, manager)
            shelf(album, look, stage, manager)
            projects(album, look, stage, files)
