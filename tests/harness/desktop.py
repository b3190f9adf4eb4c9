"""A private desktop: X server, window manager, compositor and session bus of its own, in a home of its own."""
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time

from .screen import FrameBuffer
from .waiting import wait_until

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("OSTRELLE_BUILD", ROOT / "build" / "release"))

OPENBOX = """<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
<focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
<placement><policy>Smart</policy></placement>
<theme><name>Clearlooks</name></theme>
<desktops><number>2</number></desktops>
<keyboard></keyboard>
<mouse><context name="Client"><mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/>
</mousebind></context></mouse>
<applications></applications>
</openbox_config>
"""


class Desktop:
    def __init__(self, width=1920, height=1080, wm="openbox", compositor=True, bus=True, environment=None,
                 depth=24, server=(), first_run=False):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="ostrelle-desktop-"))
        self.home = self.folder / "home"
        self.runtime = self.folder / "run"
        for folder in (self.home, self.runtime):
            folder.mkdir(mode=0o700)
        if not first_run:
            self._complete_first_run()
        self._processes = {}
        self.environment = {
            "PATH": os.environ["PATH"],
            "LANG": "C.UTF-8",
            "HOME": str(self.home),
            "XDG_RUNTIME_DIR": str(self.runtime),
            "XDG_DATA_HOME": str(self.home / "data"),
            "XDG_CONFIG_HOME": str(self.home / "config"),
            "XDG_CACHE_HOME": str(self.home / "cache"),
            "NO_AT_BRIDGE": "1",
            **(environment or {}),
        }
        try:
            self._start_server(width, height, depth, server)
            if bus:
                self._start_bus()
            if wm:
                self.start_wm(wm)
            if compositor:
                self.start_compositor()
        except BaseException:
            self.close()
            raise

    def _complete_first_run(self):
        """As if the program had been started here before."""
        folder = self.home / "config" / "Ostrelle"
        folder.mkdir(mode=0o700, parents=True)
        defaults = folder / "defaults.json"
        defaults.write_text('{"app.hasCompletedOnboarding": true}')
        defaults.chmod(0o600)

    # Processes

    def spawn(self, name, command, **options):
        """Starts a process of the desktop; it is ended with the desktop."""
        log = open(self.folder / f"{name}.log", "ab")
        options.setdefault("stdout", log)
        options.setdefault("stderr", log)
        process = subprocess.Popen(command, env=self.environment, start_new_session=True, **options)
        log.close()
        self._processes[name] = process
        return process

    def stop(self, name, sig=signal.SIGTERM):
        process = self._processes.pop(name, None)
        for pipe in (process.stdin, process.stdout) if process else ():
            if pipe:
                pipe.close()
        if process and process.poll() is None:
            process.send_signal(sig)
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()

    def run(self, *command, **options):
        """Runs a command on this desktop and returns its standard output."""
        return subprocess.run(command, env=self.environment, check=True, capture_output=True, text=True,
                              timeout=options.pop("timeout", 30), **options).stdout

    def _start_server(self, width, height, depth, options):
        frames = self.folder / "frames"
        frames.mkdir()
        read_end, write_end = os.pipe()
        self.spawn("Xvfb", ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{width}x{height}x{depth}", "-noreset",
                            "-nolisten", "tcp", "-fbdir", str(frames), "-dpi", "96", *options], pass_fds=[write_end])
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start: " + (self.folder / "Xvfb.log").read_text())
        self.environment["DISPLAY"] = f":{number}"
        self.frames = FrameBuffer(frames)
        # A parked pointer, away from the notch.
        self.run("xdotool", "mousemove", str(width // 2), str(height - 10))

    def _start_bus(self):
        address = f"unix:path={self.runtime}/bus"
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        self.spawn("bus", ["dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address={address}"])
        wait_until((self.runtime / "bus").exists, "the session bus listens")

    def start_wm(self, name="openbox"):
        command = [name]
        if name == "openbox":
            config = self.folder / "openbox.xml"
            config.write_text(OPENBOX)
            command += ["--sm-disable", "--config-file", str(config)]
        self.spawn("wm", command)
        wait_until(lambda: "window id" in self.root_property("_NET_SUPPORTING_WM_CHECK"), f"{name} manages windows")

    def start_compositor(self):
        self.spawn("compositor", ["picom", "--backend", "xrender", "--config", "/dev/null"])
        wait_until(self.has_compositor, "picom composites")

    def has_compositor(self):
        # The owner window of picom's selection carries its name.
        tree = subprocess.run(["xwininfo", "-root", "-tree"], env=self.environment, capture_output=True, text=True)
        return '"picom"' in tree.stdout

    def set_window_state(self, window, state):
        """Asks the window manager, as an application does (EWMH, _NET_WM_STATE)."""
        self.run("wmctrl", "-i", "-r", window, "-b", f"add,{state}")

    def root_property(self, name):
        return subprocess.run(["xprop", "-root", name], env=self.environment, capture_output=True, text=True).stdout

    # Input

    def move_pointer(self, x, y):
        self.run("xdotool", "mousemove", str(int(x)), str(int(y)))
        # A warp alone makes no raw motion; a step there and back does.
        self.run("xdotool", "mousemove_relative", "--", "1", "0", "mousemove_relative", "--", "-1", "0")

    def click(self, x, y, button=1):
        self.move_pointer(x, y)
        self.run("xdotool", "click", str(button))

    def key(self, *keys):
        self.run("xdotool", "key", *keys)

    def type(self, text):
        self.run("xdotool", "type", "--delay", "5", text)

    # The picture

    def settled(self, x, y, width, height, quiet=0.15, seconds=5.0):
        """Waits until a rectangle of the screen has not changed for `quiet` seconds; returns it."""
        state = {"data": None, "since": time.monotonic()}

        def is_quiet():
            picture = self.frames.grab(x, y, width, height)
            now = time.monotonic()
            if picture.data != state["data"]:
                state.update(data=picture.data, since=now)
            return picture if now - state["since"] >= quiet else None

        return wait_until(is_quiet, "the picture comes to rest", seconds)

    # End

    def close(self):
        if hasattr(self, "frames"):
            self.frames.close()
        for name in reversed(list(self._processes)):
            self.stop(name)
        shutil.rmtree(self.folder, ignore_errors=True)

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.close()
