"""A wallpaper worth looking at through glass: hills before a low sun, at dusk or by day."""
import math
import random
import subprocess

DARK = (("#141235", "#3a1f63", "#8a2f78", "#e0617a", "#f7b267"), (0.775, 0.55, "#ffb86b", "#ffe7b8"),
        ("#7a2f6e", "#4d2260", "#2c1748", "#150d2a"))
LIGHT = (("#8fd0f2", "#bfe6f5", "#e9f3ef", "#fbe9d2", "#ffd9b0"), (0.225, 0.5, "#fff3d0", "#fffaf0"),
         ("#a9c9d8", "#7fb2c4", "#4f93a8", "#2f7287"))


def _hills(width, height, base, seed):
    """A ridge of a few waves, the same at every run."""
    chance = random.Random(seed)
    waves = [(chance.uniform(0.6, 1.6) * wave, chance.uniform(0, 2 * math.pi), 0.04 / wave ** 0.9)
             for wave in (1, 2, 3, 5, 8, 13)]
    steps = 64
    line = [(step / steps * width,
             height * (base + sum(high * math.sin(2 * math.pi * often * step / steps + phase)
                                  for often, phase, high in waves))) for step in range(steps + 1)]
    return "polygon " + " ".join(f"{x:.0f},{y:.0f}" for x, y in [(0, height), *line, (width, height)])


def draw(path, width, height, dark=True):
    sky, (across, down, glow, disc), hills = DARK if dark else LIGHT
    band = math.ceil(height / (len(sky) - 1))
    command = ["convert"]
    for top, bottom in zip(sky, sky[1:]):
        command += ["(", "-size", f"{width}x{band}", f"gradient:{top}-{bottom}", ")"]
    command += ["-append", "-resize", f"{width}x{height}!"]
    x, y, radius = across * width, down * height, 0.055 * height
    halo = round(14 * radius)
    command += ["(", "-size", f"{halo}x{halo}", f"radial-gradient:{glow}b0-{glow}00", ")", "-geometry",
                f"{x - halo / 2:+.0f}{y - halo / 2:+.0f}", "-compose", "screen", "-composite", "-compose", "over",
                "-fill", disc, "-draw", f"circle {x},{y} {x + radius},{y}"]
    for index, color in enumerate(hills):
        command += ["-fill", color, "-draw", _hills(width, height, 0.66 + 0.08 * index, index + 3)]
    subprocess.run([*command, f"png24:{path}"], check=True)
