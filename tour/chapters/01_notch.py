"""Closed, hover, open; both appearances; six themes; the ways in and out."""
from harness.keyboard import SHIFT, SUPER, Keyboard, V
from stage import Stage

THEMES = ("spectrum", "sunset", "aurora", "ember", "ultraviolet", "frost")


def states(album, dark):
    look = "dark" if dark else "light"
    with Stage(dark) as stage:
        stage.park()
        stage.program.wait_phase("idle")
        album.add(stage.look(height=120), f"closed-{look}")
        # Slow enough that hovering shows and does not open yet.
        stage.program.set("general.hoverOpenDelay", 30)
        stage.point(20, 10)
        stage.program.wait_phase("hover")
        album.add(stage.look(height=120), f"hover-{look}")
        stage.desktop.run("xdotool", "click", "1")
        stage.program.wait_phase("expanded")
        stage.park()
        album.add(stage.look(), f"selector-{look}")
        stage.point(-120, 80)
        album.add(stage.look(), f"selector-pointer-{look}")
        stage.park()
        if dark:
            stage.desktop.key("Tab", "Tab", "Right", "Right")
            album.add(stage.look(), "selector-keyboard-dark")
        for theme in THEMES[1:]:
            stage.program.set("appearance.notchTheme", theme)
            album.add(stage.look(), f"theme-{theme}-{look}")
        stage.program.set("appearance.notchTheme", "spectrum")
        stage.desktop.key("3")
        stage.wait_selection("assets")
        album.add(stage.look(height=320), f"tool-to-come-{look}")
        stage.desktop.key("Escape")
        stage.wait_selection(None)
        stage.desktop.key("Escape")
        stage.program.wait_phase("idle")
        if dark:
            keyboard = Keyboard(stage.desktop)
            keyboard.press(SUPER, SHIFT, V)
            stage.wait_selection("clipboard")
            album.add(stage.look(height=320), "shortcut-dark")
            keyboard.close()


def run(album):
    states(album, dark=True)
    states(album, dark=False)
