"""Files: dragged to the notch, offered landing zones, kept on the shelf; folders pinned as projects."""
import json
import pathlib
import shutil
import subprocess

from harness.waiting import wait_until
from stage import Stage

MANAGER = pathlib.Path(__file__).resolve().parents[1] / "file_manager.py"
CELL, COLUMNS = 110, 4
PLACE = (740, 640)
HEIGHT = 480
PDF = b"""%PDF-1.4
1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj
2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj
3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 420 594]/Contents 4 0 R>>endobj
4 0 obj<</Length 152>>stream
0.13 0.2 0.25 rg 40 500 240 40 re f 0.85 0.3 0.55 rg 40 250 340 200 re f
0.7 g 40 200 340 12 re f 40 170 300 12 re f 40 140 330 12 re f 40 110 210 12 re f     
endstream endobj
trailer<</Root 1 0 R>>
"""


def make_files(folder):
    """Small ones of every kind; the first two are marked in the file manager."""
    def convert(name, *commands):
        subprocess.run(["convert", *commands, str(folder / name)], check=True)

    def ffmpeg(name, *arguments):
        subprocess.run(["ffmpeg", "-v", "error", *arguments, str(folder / name)], check=True)

    folder.mkdir()
    convert("Night ferry.jpg", "-size", "1200x800", "gradient:#f7b267-#5b2a57", "-fill", "#ffe8b0", "-draw",
            "circle 820,240 920,240", "-fill", "#a8446e", "-draw", "polygon 0,800 400,390 700,800")
    cover = folder / "cover.png"
    convert("cover.png", "-size", "400x400", "gradient:#3fa9f5-#d94f8a")
    ffmpeg("Horn, wide.flac", "-f", "lavfi", "-i", "sine=220:duration=1", "-i", str(cover), "-map", "0", "-map", "1",
           "-disposition:v", "attached_pic")
    cover.unlink()
    ffmpeg("Dawn.mp4", "-f", "lavfi", "-i", "testsrc2=size=480x270:rate=10:duration=1", "-pix_fmt", "yuv420p")
    (folder / "Shot list.pdf").write_bytes(PDF)
    (folder / "Notes.txt").write_text("Rail, quay, horn.\n")
    convert("Poster.png", "-size", "600x800", "gradient:#12333f-#2fa88a", "-fill", "#f7b267", "-draw",
            "circle 300,300 300,420")
    for name in ("Ferry film", "Sound"):
        (folder / name).mkdir()
    return [folder / name for name in ("Night ferry.jpg", "Horn, wide.flac", "Ferry film", "Notes.txt", "Dawn.mp4",
                                       "Shot list.pdf", "Poster.png", "Sound")]


class Manager:
    """The file manager, and the hand that drags out of it."""

    def __init__(self, stage, paths, look):
        self.stage, self.paths = stage, paths
        stage.desktop.spawn("manager", ["/usr/bin/python3", str(MANAGER), ",".join(map(str, PLACE)), "2", look,
                                        *map(str, paths)])
        log = stage.desktop.folder / "manager.log"
        wait_until(lambda: "ready" in log.read_text(), "the file manager is there")

    def pick_up(self, name):
        """Drags a little until the notch is ready for the file."""
        index = [path.name for path in self.paths].index(name)
        x = PLACE[0] + index % COLUMNS * CELL + CELL // 2
        y = PLACE[1] + index // COLUMNS * CELL + CELL // 2
        self.stage.desktop.move_pointer(x, y)
        self.stage.desktop.run("xdotool", "mousedown", "1")
        for step in range(1, 8):
            self.stage.desktop.run("xdotool", "mousemove", str(x - 6 * step), str(y - 4 * step))
        wait_until(lambda: self.stage.program.status()["dragCatchArmed"], "the drag is noticed", 2)

    def enter(self, *zones):
        """Moves over the notch, below every zone."""
        self.stage.point(0, 250)
        wait_until(lambda: self.stage.program.status()["dropTargets"] == list(zones), f"zones {zones}", 2)
        self.stage.look()

    def hover(self, zone):
        frame = self.stage.program.status()["dropZones"][zone]
        self.stage.desktop.move_pointer(frame["x"] + frame["width"] * 0.7, frame["y"] + frame["height"] * 0.7)

    def let_go(self):
        self.stage.desktop.run("xdotool", "mouseup", "1")


def names(stage, tool):
    records = json.loads(stage.program.call(tool, "list", "--json").stdout)
    return [record.get("displayName") or pathlib.Path(record["path"]).name for record in records]


def zones(album, look, stage, manager):
    manager.pick_up("Night ferry.jpg")
    if look == "dark":
        album.add(stage.look(height=860), "drag-noticed")
    manager.enter("assets", "imageInfo", "audioInfo")
    album.add(stage.look(height=280), f"zones-{look}")
    manager.hover("imageInfo")
    album.add(stage.look(height=280), f"zones-pointer-{look}")
    manager.hover("assets")
    manager.let_go()
    wait_until(lambda: names(stage, "shelf") == ["Horn, wide.flac", "Night ferry.jpg"], "the shelf has taken both")
    stage.wait_selection("assets")
    stage.close()

    manager.pick_up("Ferry film")
    manager.enter("assets", "projects")
    manager.hover("projects")
    album.add(stage.look(height=280), f"zones-folder-{look}")
    manager.let_go()
    wait_until(lambda: names(stage, "projects") == ["Ferry film"], "the folder is pinned")
    stage.close()

    if look == "light":
        return
    manager.pick_up("Notes.txt")
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
    manager.pick_up("Dawn.mp4")
    stage.open("assets")
    stage.point(0, 160)
    album.add(stage.look(height=HEIGHT), f"shelf-targeted-{look}")
    manager.let_go()
    wait_until(lambda: len(names(stage, "shelf")) == len(kept) + 1, "the open shelf has taken it")
    stage.park()
    thumbnails = stage.desktop.home / "cache" / "thumbnails"
    wait_until(lambda: len([path for path in thumbnails.glob("*/*.png")]) >= 5, "the thumbnails are made", 20)
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
    wait_until(lambda: "Night ferry, the film" in names(stage, "projects"), "the project is renamed")
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
