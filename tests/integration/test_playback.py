"""Sounds on the shelf, played by the running program and heard behind its sound server."""
import subprocess
import unittest

from harness.desktop import Desktop
from harness.program import Program
from harness.sound import Recorder, SoundServer, children
from harness.waiting import holds_for, wait_until


class Playback(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(1280, 800, compositor=False, bus=False)
        self.addCleanup(self.desktop.close)
        self.server = SoundServer(self.desktop.folder)
        self.addCleanup(self.server.kill)
        self.program = Program(self.desktop, environment=self.server.environment)
        self.addCleanup(self.program.kill)
        self.program.call("shelf", "add", *map(self.sound, ("long.flac", "song.m4a")))
        self.program.call("open", "assets")
        wait_until(lambda: self.program.status()["hasFocus"], "the panel has the keyboard")
        # The keys are the shelf's as soon as it stands there.
        self.desktop.settled(340, 0, 600, 260, quiet=0.5)

    def sound(self, name):
        path = str(self.desktop.folder / name)
        subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "anoisesrc=amplitude=0.3:duration=20", path],
                       check=True)
        return path

    def record(self):
        recorder = Recorder(self.server)
        self.addCleanup(recorder.close)
        return recorder

    def test_plays_what_is_chosen_until_told_to_stop(self):
        self.server.start()
        recorder = self.record()
        for key in ("Home", "End"):
            recorder.forget()
            self.desktop.key(key, "space")
            wait_until(lambda: recorder.first, "it is heard")
            holds_for(lambda: not recorder.is_silent(0.3), "it goes on", 1)
            self.desktop.key("space")
            wait_until(lambda: recorder.is_silent(0.6), "it is silent", 2)
            wait_until(lambda: not children(self.program.process.pid), "its player is gone")
        self.program.stop()

    def test_taking_a_file_off_the_shelf_silences_it(self):
        self.server.start()
        recorder = self.record()
        self.desktop.key("Home", "space")
        wait_until(lambda: recorder.first, "it is heard")
        self.desktop.key("Delete")
        wait_until(lambda: recorder.is_silent(0.6), "it is silent", 2)
        self.program.stop()

    def test_no_player_outlives_the_program(self):
        self.server.start()
        recorder = self.record()
        self.desktop.key("Home", "space")
        wait_until(lambda: recorder.first, "it is heard")
        self.program.kill()
        wait_until(lambda: recorder.is_silent(0.6), "it is silent", 2)

    def test_without_a_sound_server_it_only_says_so(self):
        self.program.expected_lines = ["there is no sound server"]
        self.desktop.key("Home", "space")
        wait_until(lambda: "there is no sound server" in self.program.log(), "it has tried")
        self.server.start()
        recorder = self.record()
        self.desktop.key("space")
        wait_until(lambda: recorder.first, "it is heard")
        self.program.stop()


if __name__ == "__main__":
    unittest.main()
