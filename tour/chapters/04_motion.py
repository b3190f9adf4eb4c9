"""A strip of frames of the opening, and what it looks like without a compositor."""
import time

from harness.screen import Picture
from stage import Stage

WIDTH, HEIGHT = 700, 210
SHOWN_MS = (0, 40, 80, 120, 160, 220, 320, 600)


def opening(stage):
    """(milliseconds, picture) of every screen refresh while the notch opens."""
    process = stage.program.start_call("open")
    frames = []
    started = None
    begin = time.monotonic()
    last = None
    while time.monotonic() - begin < 3:
        picture = stage.desktop.frames.grab(stage.middle() - WIDTH // 2, 0, WIDTH, HEIGHT)
        now = time.monotonic()
        if last is not None and picture.data != last and started is None:
            started = now
        last = picture.data
        if started is not None:
            frames.append(((now - started) * 1000, picture))
            if now - started > 0.8:
                break
    process.wait()
    assert started is not None, "the notch never moved"
    return frames


def strip(frames):
    """The frames nearest to the wanted moments, one below the other."""
    chosen = [min(frames, key=lambda frame: abs(frame[0] - moment))[1] for moment in SHOWN_MS]
    return Picture(WIDTH, HEIGHT * len(chosen), b"".join(picture.data for picture in chosen))


def run(album):
    for compositor in (True, False):
        with Stage(compositor=compositor) as stage:
            name = "composited" if compositor else "no-compositor"
            stage.park()
            stage.look()
            frames = opening(stage)
            distinct = len({picture.data for _, picture in frames})
            assert distinct > 8, f"the opening is not fluid: {distinct} different frames"
            album.add(strip(frames), f"opening-{name}")
            album.add(stage.look(), f"open-{name}")
            stage.close()
            album.add(stage.look(height=120), f"closed-{name}")
