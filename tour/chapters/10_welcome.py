"""The first run: every step in both appearances and all themes, the demonstration's frames, and at three densities."""
from harness.waiting import wait_until
from harness.welcome_window import STEPS, WelcomeWindow
from stage import Stage

THEMES = ("sunset", "aurora", "ember", "ultraviolet", "frost")


def opened(stage):
    stage.park()
    stage.program.call("welcome")
    return WelcomeWindow(stage.desktop, stage.scale)


def walk(album, stage, name, around=40):
    """Through all steps."""
    window = opened(stage)
    for number, step in enumerate(STEPS):
        window.wait_step(number)
        album.add(window.look(around), f"{name}-{number + 1}-{step}")
        if number < len(STEPS) - 1:
            stage.desktop.key("Return")
    return window


def demonstration(album, stage, window, name):
    """Its frames, from closed to open and back, as they come."""
    window.wait_step(1)
    place = (window.x + 130, window.y + 90, 340, 180)
    before = window.desktop.settled(*place, quiet=0.5)
    frames = []

    def moves():
        picture = stage.desktop.frames.grab(*place)
        if picture.data != (frames[-1] if frames else before).data:
            frames.append(picture)
        return len(frames) >= 24

    wait_until(moves, "the demonstration moves", 15)
    for number in range(0, len(frames), 4):
        album.add(frames[number], f"{name}-demo-{number // 4 + 1}")


def tools(album, window, name):
    window.wait_step(2)
    window.click("radio button", "Assets")
    window.click("check box", "Assets")
    album.add(window.look(), f"{name}-tool-hidden")
    window.desktop.key("shift+Tab", "shift+Tab", "Right")
    album.add(window.look(), f"{name}-tool-by-key")
    window.click("radio button", "Assets")
    window.click("check box", "Assets")


def run(album):
    for dark in (True, False):
        look = "dark" if dark else "light"
        with Stage(dark, width=960, height=760) as stage:
            window = walk(album, stage, look)
            for number in (3, 2):
                window.click("push button", "Back")
                window.wait_step(number)
            tools(album, window, look)
            window.click("push button", "Back")
            demonstration(album, stage, window, look)
            for theme in THEMES:
                stage.program.set("appearance.notchTheme", theme)
                album.add(window.look(), f"{look}-{theme}")
            window.click("push button", "Close")
            window.wait_closed()
        for scale in (1.25, 2):
            with Stage(dark, scale=scale, width=960, height=760) as stage:
                walk(album, stage, f"{look}-{scale}x")
    with Stage(dark=True, width=960, height=760, compositor=False) as stage:
        album.add(opened(stage).look(40), "without-a-compositor")
