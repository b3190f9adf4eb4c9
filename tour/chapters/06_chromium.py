"""Chromium: what can be dragged out of it to the notch, and tiles of the shelf dropped into a page."""
from browser import Browser
from hand import Hand
from harness.waiting import wait_until
from sample_files import make_files
from stage import Stage

NEEDS = ("chromium",)
PLACE = (670, 420, 580, 560)
HEIGHT = 1000


def drag_in(album, stage, browser, hand):
    """Chromium names a picture of a local page by its URL alone."""
    hand.pick_up(*browser.middle_of("image", "Local picture"))
    hand.enter("assets", "imageInfo")
    hand.hover("assets")
    album.add(stage.look(height=HEIGHT), "picture-of-a-page")
    hand.let_go()
    wait_until(lambda: stage.names("shelf") == ["Poster.png"], "the shelf has the picture's file")
    stage.close()


def refuse(stage, browser, hand):
    """What is no file on this machine: the page is told that its drag is over, and nothing has changed."""
    for role, name in (("image", "Inline picture"), ("push button", "Promise")):
        hand.pick_up(*browser.middle_of(role, name))
        stage.point(0, 20)
        hand.let_go()
        browser.wait(ended=name)
        stage.program.wait_phase("idle")
        assert stage.names("shelf") == ["Poster.png"], f"{name} is no file"


def drag_out(album, stage, browser, hand, files):
    """One tile, then all of them."""
    stage.program.call("shelf", "add", *map(str, files))
    stage.open("assets")
    stage.wait_thumbnails(2)
    stage.close()
    place = browser.middle_of("push button", "Drop files here")
    sizes = {path.name: path.stat().st_size for path in files}
    shelf = stage.names("shelf")
    for dragged in (shelf[:1], shelf):
        stage.open("assets")
        stage.desktop.key("Home")
        if len(dragged) > 1:
            stage.desktop.key("ctrl+a")
        hand.press(stage.middle() - 230, 173)
        hand.carry(*place, lambda: browser.has_said(over=True))
        album.add(stage.look(height=HEIGHT), f"dragged-out-{len(dragged)}")
        hand.let_go()
        browser.wait(dropped=[[name, sizes[name]] for name in dragged])
        album.add(stage.look(height=HEIGHT), f"dropped-{len(dragged)}")
        stage.close()


def drag_download(album, stage, browser, hand):
    browser.show_downloads()
    hand.pick_up(*browser.middle_of("link", "Kept text.txt"))
    hand.enter("assets")
    hand.hover("assets")
    album.add(stage.look(height=HEIGHT), "downloaded-file")
    hand.let_go()
    wait_until(lambda: stage.names("shelf")[:1] == ["Kept text.txt"], "the shelf has the downloaded file")
    stage.close()


def run(album):
    with Stage() as stage:
        stage.park()
        files = {path.name: path for path in make_files(stage.desktop.folder / "files")}
        browser = Browser(stage.desktop, files["Poster.png"], PLACE)
        hand = Hand(stage)
        drag_in(album, stage, browser, hand)
        refuse(stage, browser, hand)
        drag_out(album, stage, browser, hand, [files[name] for name in ("Poster.png", "Notes.txt", "Night ferry.jpg")])
        drag_download(album, stage, browser, hand)
