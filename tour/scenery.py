"""What lies behind the notch on the tour: a wallpaper, a top bar and a window full of colour."""
import subprocess

from harness.peer import Peer

DARK = {
    "sky": ("#1b1f4b", "#7a2f8f"), "bar": "#14142a", "ground": "#101018",
    "window": "#1d1c24", "title": "#2a2933", "view": "#123a44", "sun": "#ffcf70", "hill": "#1f7a80",
    "panel": "#24232b", "text": "#8f8da0",
    "clips": ("#5b6ee1", "#8b5bea", "#2fa88a", "#e0903a", "#d94f8a", "#3fa9f5"),
}
LIGHT = {
    "sky": ("#bfe3f5", "#f7f4ee"), "bar": "#e4eef3", "ground": "#e9e7ee",
    "window": "#ffffff", "title": "#efeef3", "view": "#f3e3cf", "sun": "#4f7de0", "hill": "#d48fd0",
    "panel": "#f6f5f9", "text": "#9a98a8",
    "clips": ("#e8637f", "#46b082", "#232129", "#6c55c9", "#ecd7b5", "#3fa9f5"),
}


def _draw(path, width, height, commands):
    subprocess.run(["convert", "-size", f"{width}x{height}", *commands, f"png24:{path}"], check=True)


def _window_commands(width, height, colors, s):
    def rect(color, x, y, w, h, r=1):
        return ["-fill", color, "-draw", f"roundrectangle {x * s},{y * s} {(x + w) * s},{(y + h) * s} {r * s},{r * s}"]

    commands = [f"xc:{colors['window']}"]
    w, h = width / s, height / s
    commands += rect(colors["title"], 0, 0, w, 34)
    for index in range(3):
        commands += rect(colors["text"], w - 60 + index * 18, 12, 10, 10, 5)
    commands += rect(colors["view"], 20, 50, w * 0.62, 300)
    commands += ["-fill", colors["hill"], "-draw",
                 f"polygon {60 * s},{350 * s} {200 * s},{210 * s} {300 * s},{290 * s} {420 * s},{180 * s} "
                 f"{600 * s},{350 * s}"]
    commands += ["-fill", colors["sun"], "-draw", f"circle {380 * s},{150 * s} {420 * s},{150 * s}"]
    commands += rect(colors["panel"], w * 0.62 + 40, 50, w * 0.38 - 60, 300, 8)
    for index, color in enumerate(colors["clips"][3:] + colors["clips"][:2]):
        commands += rect(color, w * 0.62 + 60, 80 + index * 40, 120 + 37 * index % 190, 8, 4)
    x = 20
    for index, color in enumerate(colors["clips"] * 3):
        row = index % 3
        clip_width = 120 + (index * 53) % 180
        commands += rect(color, 20 + (x * 0.8) % (w - 220), 380 + row * 46, clip_width, 38, 5)
        x += clip_width
    return commands


class Scenery:
    """Puts the scene on the desktop. `scale` enlarges the drawing for high-density screens."""

    def __init__(self, desktop, dark=True, scale=1):
        colors = DARK if dark else LIGHT
        width, height = desktop.frames.width, desktop.frames.height
        wallpaper = desktop.folder / "wallpaper.png"
        _draw(wallpaper, width, height, [f"gradient:{colors['sky'][0]}-{colors['sky'][1]}"])
        self.wallpaper = Peer(desktop, "Wallpaper", (0, 0, width, height), wallpaper, "desktop")
        window = desktop.folder / "window.png"
        size = (round(1180 * scale), round(620 * scale))
        bar_height = round(24 * scale)
        _draw(window, *size, _window_commands(*size, colors, scale))
        self.window = Peer(desktop, "Editor", ((width - size[0]) // 2 + round(90 * scale), round(92 * scale), *size), window)
        bar = desktop.folder / "bar.png"
        _draw(bar, width, bar_height, [f"xc:{colors['bar']}"])
        self.bar = Peer(desktop, "Bar", (0, 0, width, bar_height), bar, "dock")
        desktop.run("xprop", "-id", self.bar.window, "-f", "_NET_WM_STRUT_PARTIAL", "32c", "-set", "_NET_WM_STRUT_PARTIAL",
                    f"0, 0, {bar_height}, 0, 0, 0, 0, 0, 0, {width - 1}, 0, 0")
        self.window.activate()
