"""The settings window: every section in both appearances, at both densities, and what its controls do."""
from harness.settings_window import SECTIONS, SettingsWindow
from stage import Stage


def sections(album, stage, window, look, scale):
    suffix = f"-{scale}x" if scale > 1 else ""
    for index, section in enumerate(SECTIONS):
        if index:
            stage.desktop.key("Down")
        album.add(window.look(), f"{section}-{look}{suffix}")
        if section in ("appearance", "privacy", "about"):
            window.scroll(8)
            stage.park()
            album.add(window.look(), f"{section}-end-{look}{suffix}")


def states(album, stage, window, look):
    """Moments of the sections, from the first one on."""
    desktop = stage.desktop
    desktop.key("Home")
    window.look()
    stage.program.set("general.showAutomatically", False)
    album.add(window.look(), f"general-warning-{look}")
    stage.program.set("general.showAutomatically", True)
    window.look()
    window.click("combo box", "Open on hover")
    desktop.key("Down")
    album.add(window.look(), f"general-picker-{look}")
    desktop.key("Escape")
    desktop.key("Tab", "Tab")
    album.add(window.look(), f"general-focus-{look}")

    window.choose("Modules")
    window.look()
    window.switch("Projects")
    x, y = window.place("check box", "Audio Info")
    top = window.place("check box", "Color")[1]
    desktop.move_pointer(x + 48, y)
    album.add(window.look(), f"modules-pointer-{look}")
    desktop.run("xdotool", "mousedown", "1")
    for step in range(1, 11):
        desktop.run("xdotool", "mousemove", str(x + 52), str(y + (top + 20 - y) * step // 10))
    album.add(window.look(), f"modules-drag-{look}")
    desktop.run("xdotool", "mouseup", "1")
    window.look()

    window.choose("Shortcuts")
    window.look()
    window.click("push button", "Not set")
    album.add(window.look(), f"shortcuts-recording-{look}")
    desktop.key("shift+super+v")
    stage.park()
    album.add(window.look(), f"shortcuts-conflict-{look}")

    window.choose("Appearance")
    window.look()
    window.choose("Aurora")
    album.add(window.look(), f"appearance-theme-{look}")
    stage.program.set("appearance.notchTheme", "spectrum")

    window.choose("Privacy")
    window.look()
    window.click("push button", "Clear history now")
    stage.park()
    album.add(window.look(), f"privacy-alert-{look}")
    desktop.key("Escape")
    window.look()

    window.choose("About")
    window.look()
    window.click("push button", "Check Now")
    stage.park()
    album.add(window.look(), f"about-failed-{look}")


def run(album):
    for dark in (True, False):
        look = "dark" if dark else "light"
        with Stage(dark) as stage:
            stage.park()
            window = SettingsWindow(stage.desktop, stage.program)
            album.add(stage.desktop.settled(0, 0, 1920, 900), f"desktop-{look}")
            sections(album, stage, window, look, 1)
            states(album, stage, window, look)
        with Stage(dark, scale=2, width=960, height=700) as stage:
            stage.park()
            window = SettingsWindow(stage.desktop, stage.program)
            sections(album, stage, window, look, 2)
