"""The inspectors: what a sound or a picture is, its tempo, played in place, and the files seen last."""
import base64
import json
import os
import re
import signal
import subprocess
import threading
import time

from harness.drag import DragSource, uri
from harness.inspector import copied_facts
from harness.sound import children
from harness.waiting import holds_for, wait_until
from harness.wire import Wire
from stage import Stage

HEIGHT = 560
CONTENT = 24 + 106  # below the top bar, the header and the tools
DETAIL = {"audioInfo": 212, "imageInfo": 186}
REFERENCE_DATE = 978307200
BEATS = "aevalsrc='0.7*sin(2*PI*900*t)*exp(-60*mod(t,60/84))+0.05*sin(2*PI*110*t)':s=48000:d=40"


def ffmpeg(path, *arguments):
    subprocess.run(["ffmpeg", "-v", "error", *arguments, str(path)], check=True)
    return path


def convert(path, *commands):
    subprocess.run(["convert", *commands, str(path)], check=True)
    return path


def make_sounds(folder):
    """Beats at 84 in a minute without a word about it, and others; of each the path and a summary."""
    folder.mkdir()
    return {
        "beats": ffmpeg(folder / "ferry-horn-wide.wav", "-f", "lavfi", "-i", BEATS, "-ac", "2", "-c:a", "pcm_s24le"),
        "tagged": ffmpeg(folder / "night-theme.mp3", "-f", "lavfi", "-i", "sine=220:duration=4", "-metadata", "TBPM=128"),
        "flac": ffmpeg(folder / "rail-foley.flac", "-f", "lavfi", "-i", "sine=330:duration=48"),
    }


def make_pictures(folder):
    folder.mkdir()
    return {
        "png": convert(folder / "harbour.png", "-size", "3840x2160", "gradient:#9fd8f2-#1f7a80", "-fill", "#e85d86",
                       "-draw", "polygon 2000,300 2000,1300 2500,1300", "-fill", "#fff", "-draw",
                       "polygon 1600,1400 2300,1400 2100,1700 1750,1700", "-alpha", "set", "-depth", "8", "-units",
                       "PixelsPerInch", "-density", "144"),
        "tiff": convert(folder / "ridge-04.tif", "-size", "1200x800", "gradient:#f7b267-#a8446e", "-fill", "#5b2a57",
                        "-draw", "polygon 0,800 400,390 700,800"),
        "jpeg": convert(folder / "poppy-still.jpg", "-size", "960x1200", "xc:#f6efe2", "-fill", "#e2574c", "-draw",
                        "circle 480,420 480,680", "-fill", "#23303c", "-draw", "circle 480,420 480,490"),
    }


class Tool:
    """One of the two tools on the stage."""

    def __init__(self, stage, name):
        self.stage, self.name = stage, name
        self.strip = CONTENT + DETAIL[name]

    def count(self):
        return self.stage.program.status()["counts"][self.name]

    def drag(self, path):
        """Over the open tool; let go by the caller."""
        source = DragSource(self.stage.desktop, "gtk", uri(path))
        source.pick_up()
        self.stage.open(self.name)
        # Until the source has been told that its file is welcome.
        for step in range(3):
            source.move(self.stage.middle() + 4 * step, (CONTENT + 60) * self.stage.scale)
            self.stage.program.hear()
        return source

    def drop(self, path):
        source = self.drag(path)
        source.let_go()
        self.stage.park()
        source.end()

    def show(self, path):
        """Drops a file and waits until its facts are on display."""
        recorded = self.recents()[:1]
        self.drop(path)
        wait_until(lambda: self.recents()[:1] != recorded and self.recents()[0]["path"] == str(path),
                   f"{path.name} is shown")

    def defaults(self):
        return self.stage.desktop.home / "config" / "Ostrelle" / "defaults.json"

    def recents(self):
        stored = json.loads(self.defaults().read_text() or "{}").get(f"{self.name}.recents")
        return json.loads(base64.b64decode(stored["$data"])) if stored else []

    def add_recents(self, files):
        """As if they had been shown before: (path, summary), the newest first."""
        program = self.stage.program
        program.stop()
        defaults = json.loads(self.defaults().read_text())
        date = time.time() - REFERENCE_DATE
        older = [{"path": str(path), "name": path.name, "summary": summary, "date": date - 60 * index}
                 for index, (path, summary) in enumerate(files)]
        known = [str(path) for path, _ in files]
        recents = [recent for recent in self.recents() if recent["path"] not in known] + older
        defaults[f"{self.name}.recents"] = {"$data": base64.b64encode(json.dumps(recents).encode()).decode()}
        self.defaults().write_text(json.dumps(defaults))
        program.start()
        assert self.count() == len(recents), "the stored files are listed"

    def facts(self):
        """Label to value of the rows."""
        facts = copied_facts(self.stage.desktop, self.stage.middle() + 60, 24 + 22)
        self.stage.park()
        return facts

    def click(self, x, y):
        """From the middle of the screen's top edge."""
        self.stage.desktop.click(self.stage.middle() + x * self.stage.scale, y * self.stage.scale)

    def expand(self):
        self.click(204, self.strip + 16)

    def look(self):
        return self.stage.look(height=HEIGHT)

    def glance(self, sound):
        """While something is heard, which never comes to rest."""
        holds_for(sound.is_heard, "it plays on", 0.6)
        width = 760
        return self.stage.desktop.frames.grab(self.stage.middle() - width // 2, 0, width, HEIGHT)

    def refuse(self, album, look, stranger):
        """A file that is none, while another one is on display."""
        listed = self.count()
        self.drop(stranger)
        album.add(self.look(), f"{self.name}-refused-over-facts-{look}")
        assert self.count() == listed, "what is refused is not kept"

    def wells(self, album, look, stranger, own):
        """Without a file: inviting, under a drag, refusing."""
        self.stage.open(self.name)
        album.add(self.look(), f"{self.name}-empty-{look}")
        source = self.drag(own)
        album.add(self.look(), f"{self.name}-targeted-{look}")
        source.move(100, 450)
        source.let_go()
        source.end()
        self.drop(stranger)
        album.add(self.look(), f"{self.name}-refused-{look}")
        assert self.count() == 0, "what is refused is not kept"


class Sound:
    """A sound server without a device."""

    def __init__(self, desktop):
        self.desktop = desktop
        desktop.spawn("sound", ["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no", "-L",
                                "module-null-sink", "-L", "module-native-protocol-unix"])
        wait_until(lambda: self.ask("info"), "the sound server answers")

    def ask(self, *question):
        answer = subprocess.run(["pactl", *question], env=self.desktop.environment, capture_output=True, text=True)
        return answer.stdout if answer.returncode == 0 else ""

    def is_heard(self):
        return bool(self.ask("list", "short", "sink-inputs").strip())


def send(what, processes):
    for process in processes:
        try:
            os.kill(process, what)
        except ProcessLookupError:
            pass


class Standstill:
    """Time stands still for the helpers of a program, for those too that it starts meanwhile, until go_on()."""

    def __init__(self, program):
        self._program = program
        self._stopped = set()
        self._over = threading.Event()
        self._stop_new()
        self._watch = threading.Thread(target=self._keep, daemon=True)
        self._watch.start()

    def _stop_new(self):
        new = set(children(self._program)) - self._stopped
        send(signal.SIGSTOP, new)
        self._stopped |= new

    def _keep(self):
        while not self._over.wait(0.001):
            self._stop_new()

    def go_on(self):
        self._over.set()
        self._watch.join()
        send(signal.SIGCONT, self._stopped)


def listen(tool, path):
    """Shows a file and stops time for its helpers while they listen to it; what to start them again with."""
    wire = Wire(tool.stage.program)
    program = tool.stage.program.status()["pid"]

    def is_shown(before):
        # They get on by moments, so that what they know is told before they know more.
        standstill = Standstill(program)
        if wire.status()["counts"][tool.name] > before:
            return standstill
        standstill.go_on()
        return None

    for _ in range(5):
        tool.stage.open(tool.name)
        source = tool.drag(path)
        before = wire.status()["counts"][tool.name]
        source.let_go()
        standstill = wait_until(lambda: is_shown(before), f"{path.name} is shown", interval=0)
        source.end()
        tool.stage.park()
        if tool.facts().get("Tempo") == "Listening…":
            wire.close()
            return standstill.go_on
        standstill.go_on()
        forget_all(tool)
    raise AssertionError("the tempo is found before anybody can look")


def forget_all(tool):
    tool.stage.open(tool.name)
    tool.click(258, tool.strip + 16)
    wait_until(lambda: tool.count() == 0, "the recent files are forgotten")


def audio(album, look, stage, sounds, stranger):
    tool = Tool(stage, "audioInfo")
    tool.wells(album, look, stranger, sounds["beats"])
    go_on = listen(tool, sounds["beats"])
    album.add(tool.look(), f"audioInfo-listening-{look}")
    go_on()
    wait_until(lambda: re.fullmatch(r"≈ \d+(\.\d)? BPM", tool.facts()["Tempo"]), "a tempo is heard")
    facts = tool.facts()
    assert facts == {"Tempo": facts["Tempo"], "Format": "WAV", "Sample Rate": "48 kHz", "Bit Depth": "24 bit",
                     "Channels": "Stereo", "Bitrate": "2304 kbps", "Duration": "00:40", "File Size": "11.5 MB"}, facts
    album.add(tool.look(), f"audioInfo-estimate-{look}")
    heard = float(facts["Tempo"].split()[1])
    tool.click(-24, CONTENT + 86 + 13)
    wait_until(lambda: tool.facts()["Tempo"].split()[1] == f"{2 * heard:g}", "read as double time")
    album.add(tool.look(), f"audioInfo-double-time-{look}")

    tool.show(sounds["tagged"])
    assert tool.facts()["Tempo"] == "128 BPM", tool.facts()
    album.add(tool.look(), f"audioInfo-tagged-{look}")
    tool.refuse(album, look, stranger)
    stage.close()

    tool.add_recents([(sounds["beats"], "00:40 · WAV"), (sounds["flac"], "00:48 · FLAC"),
                      (sounds["flac"].parent / "crowd-quay.aiff", "02:11 · AIFF"),
                      (sounds["tagged"], "00:04 · MP3")])
    sound = Sound(stage.desktop)
    tool.show(sounds["flac"])
    stage.desktop.key("space")
    wait_until(sound.is_heard, "it is heard")
    stage.desktop.key("Right", "Right", "Right")
    album.add(tool.glance(sound), f"audioInfo-playing-{look}")
    stage.point(-14, tool.strip + 51)
    album.add(tool.glance(sound), f"audioInfo-recents-{look}")
    tool.expand()
    stage.point(60, tool.strip + 30 + 45)
    album.add(tool.glance(sound), f"audioInfo-all-recents-{look}")
    stage.park()
    stage.desktop.key("space")
    wait_until(lambda: not sound.is_heard(), "it is quiet")
    # One that is gone leaves the list when it is asked for.
    listed = tool.count()
    tool.click(60, tool.strip + 30 + 2 * 30 + 15)
    wait_until(lambda: tool.count() == listed - 1, "the missing file is forgotten")
    stage.close()


def image(album, look, stage, pictures, stranger):
    tool = Tool(stage, "imageInfo")
    tool.wells(album, look, stranger, pictures["png"])
    tool.show(pictures["png"])
    facts = tool.facts()
    wanted = {"Dimensions": "3840 × 2160", "Format": "PNG", "Bit Depth": "8 bit + alpha", "Resolution": "144 DPI"}
    assert facts.items() >= wanted.items(), facts
    stage.close()
    tool.add_recents([(pictures["tiff"], "1200 × 800 · TIFF"), (pictures["jpeg"], "960 × 1200 · JPEG"),
                      (pictures["png"].parent / "skyline.png", "5120 × 2880 · PNG"),
                      (pictures["png"], "3840 × 2160 · PNG")])
    tool.show(pictures["png"])
    album.add(tool.look(), f"imageInfo-{look}")
    stage.point(-14, tool.strip + 51)
    album.add(tool.look(), f"imageInfo-recents-{look}")
    tool.expand()
    stage.point(60, tool.strip + 30 + 45)
    album.add(tool.look(), f"imageInfo-all-recents-{look}")
    stage.park()
    tool.refuse(album, look, stranger)
    stage.close()


def run(album):
    for dark in (True, False):
        look = "dark" if dark else "light"
        with Stage(dark) as stage:
            stage.park()
            sounds = make_sounds(stage.desktop.folder / "sounds")
            pictures = make_pictures(stage.desktop.folder / "pictures")
            paper = stage.desktop.folder / "Shot list.txt"
            paper.write_text("Rail, quay, horn.\n")
            audio(album, look, stage, sounds, paper)
            image(album, look, stage, pictures, paper)
