"""The clipboard tool: filled by other programs' real copies, searched, used by keyboard, empty."""
import subprocess

from harness.peer import Peer, paste, xclip
from harness.waiting import wait_until
from stage import Stage

HEIGHT = 480


def fill(stage):
    """Copies from several programs, the newest last."""
    program, desktop = stage.program, stage.desktop

    def recorded(count):
        wait_until(lambda: len(program.history()) == count, f"{count} copies recorded")

    picture = desktop.folder / "ferry.png"
    subprocess.run(["convert", "-size", "1920x1080", "gradient:#9fd8f2-#1f7a80", "-fill", "#fff", "-draw",
                    "polygon 900,300 1150,760 760,760", f"png24:{picture}"], check=True)
    notes = Peer(desktop, "Notes", (20, 700, 200, 120))
    web = Peer(desktop, "Web", (240, 700, 200, 120))
    files = Peer(desktop, "Files", (460, 700, 200, 120))
    photos = Peer(desktop, "Photos", (680, 700, 200, 120))
    stage.scenery.window.activate()
    stage.scenery.window.copy_text("#F7B267, #B5446E, #5B2A57, #12333F")
    recorded(1)
    web.activate()
    web.copy_text("https://example.org/night-ferry/press-kit")
    recorded(2)
    program.call("clipboard", "pin", "1")
    program.call("clipboard", "pin", "2")
    notes.activate()
    notes.copy_text("Rail, quay, horn. Three beats, no music.")
    recorded(3)
    files.activate()
    xclip(desktop, b"file:///srv/ferry/night.mov\r\nfile:///srv/ferry/dawn.mov\r\nfile:///srv/ferry/quay.mov\r\n",
          "text/uri-list")
    recorded(4)
    notes.activate()
    notes.copy_text("The ferry leaves at dusk; hold the wide until the horn, then cut to the rail.")
    recorded(5)
    files.activate()
    xclip(desktop, "copy\nfile:///srv/ferry/Night%20ferry%20%E2%80%94%20horn,%20wide.wav".encode(),
          "x-special/gnome-copied-files")
    recorded(6)
    photos.activate()
    photos.copy_image(picture)
    recorded(7)
    kinds = [record["kind"] for record in program.history()]
    assert kinds == ["link", "text", "image", "files", "text", "files", "text"], kinds
    stage.scenery.window.activate()
    # The activation has arrived everywhere before the notch opens.
    stage.program.hear()
    stage.look()


def tool(album, dark):
    look = "dark" if dark else "light"
    with Stage(dark) as stage:
        stage.park()
        stage.open("clipboard")
        album.add(stage.look(height=HEIGHT), f"empty-{look}")
        stage.close()
        fill(stage)
        stage.open("clipboard")
        album.add(stage.look(height=HEIGHT), f"history-{look}")
        stage.point(240, 280)
        album.add(stage.look(height=HEIGHT), f"history-pointer-{look}")
        stage.park()
        stage.desktop.type("ferry")
        album.add(stage.look(height=HEIGHT), f"searched-{look}")
        stage.desktop.key("ctrl+a")
        stage.desktop.type("halide")
        album.add(stage.look(height=HEIGHT), f"nothing-matches-{look}")
        stage.desktop.key("ctrl+a", "BackSpace", "Down", "Down")
        album.add(stage.look(height=HEIGHT), f"keyboard-{look}")
        stage.desktop.key("ctrl+a")
        stage.desktop.type("hold the wide")
        stage.desktop.key("Return")
        stage.program.wait_phase("idle")
        wait_until(lambda: (paste(stage.desktop) or b"").startswith(b"The ferry leaves"), "the entry is on the clipboard")


def run(album):
    tool(album, dark=True)
    tool(album, dark=False)
