"""Facts of files by command: without a program, a display or a bus, of any name, in the order of the names."""
import json
import os
import struct
import subprocess
import tempfile
import unittest
import wave
import zlib

from harness.desktop import BUILD

RATE = 44100


def png(width, height):
    def chunk(name, body):
        return struct.pack(">I", len(body)) + name + body + struct.pack(">I", zlib.crc32(name + body))

    rows = b"".join(b"\0" + bytes(3 * width) for _ in range(height))
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


def clicks(path, seconds, bpm):
    """A click on every beat, the bass drum of a metronome."""
    samples = bytearray(2 * RATE * seconds)
    beat = 0
    while (begin := round(beat * 60 / bpm * RATE)) < RATE * seconds:
        for i in range(min(2000, RATE * seconds - begin)):
            level = int(20000 * (1 - i / 2000) * (1 if i // 200 % 2 else -1))
            samples[2 * (begin + i):2 * (begin + i) + 2] = struct.pack("<h", level)
        beat += 1
    with wave.open(os.fsdecode(path), "wb") as file:
        file.setparams((1, 2, RATE, 0, "NONE", ""))
        file.writeframes(bytes(samples))


class Inspect(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="ostrelle-inspect-")
        self.addCleanup(folder.cleanup)
        self.folder = os.fsencode(folder.name)
        self.environment = {"PATH": os.environ["PATH"], "HOME": folder.name, "LANG": "C.UTF-8"}

    def write(self, name, content):
        path = os.path.join(self.folder, os.fsencode(name))
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(content)
        return os.fsencode(name)

    def inspect(self, *arguments, stdin=b"", status=0):
        result = subprocess.run([BUILD / "bin" / "ostrelle", "inspect", *arguments], env=self.environment,
                                cwd=self.folder, input=stdin, capture_output=True, timeout=60)
        self.assertEqual(result.returncode, status, result)
        return result.stdout.decode(), result.stderr.decode()

    def objects(self, *arguments, **more):
        out, err = self.inspect("--json", *arguments, **more)
        self.assertEqual(err, "")
        return [json.loads(line) for line in out.splitlines()]

    def test_the_rows_of_the_tools(self):
        self.write("photo.png", png(3, 2))
        clicks(os.path.join(self.folder, b"beat.wav"), 20, 120)
        out, err = self.inspect("beat.wav", "photo.png")
        self.assertEqual(err, "")
        rows = [line.split("  ", 2)[-1] for line in out.splitlines()]
        self.assertEqual(rows[0], "beat.wav")
        self.assertIn("≈ 120 BPM", rows[1])
        self.assertEqual(out.splitlines()[2:], [
            "  Format       WAV", "  Sample Rate  44.1 kHz", "  Bit Depth    16 bit", "  Channels     Mono",
            "  Bitrate      706 kbps", "  Duration     00:20", "  File Size    1.8 MB",
            "photo.png", "  Dimensions   3 × 2", "  Format       PNG", "  File Size    1 KB", "  Color Space  RGB",
            "  Bit Depth    8 bit"])
        self.assertNotIn("Tempo", self.inspect("--no-tempo", "beat.wav")[0])
        heard = self.objects("beat.wav")[0]
        self.assertEqual(heard["tempo"], {"bpm": 120, "source": "estimate"})
        self.assertEqual(heard["info"], {"name": "beat.wav", "duration": 20, "format": "WAV", "sampleRate": RATE,
                                         "bitDepth": 16, "channels": 1, "bitrateKbps": 706,
                                         "byteSize": 2 * RATE * 20 + 44})

    def test_names_of_any_bytes_in_their_order(self):
        names = [self.write(name, png(1, 1)) for name in (b"z.png", b"caf\xe9.png", b"two\nlines.png", "ö.png", "a.png")]
        text = ["z.png", "caf%E9.png", "two\nlines.png", "ö.png", "a.png"]
        found = self.objects("-0", "-", stdin=b"\0".join(names))
        self.assertEqual([each["file"] for each in found], text)
        self.assertEqual([each["ok"] for each in found], [True] * 5)
        self.assertEqual(found[1]["info"]["name"], "caf%E9.png")
        again = self.objects(*names, "--jobs", "3")
        self.assertEqual(again, found)
        self.assertEqual([each["file"] for each in self.objects("-", stdin="ö.png\n\nz.png".encode())], ["ö.png", "z.png"])

    def test_refusals_do_not_disturb_the_rest(self):
        self.write("good.png", png(1, 1))
        self.write("empty.png", b"")
        self.write("cut.wav", b"RIFF")
        self.write("text.mp3", b"no sound, only words\n" * 200)
        self.write("notes.txt", b"words")
        os.mkfifo(os.path.join(self.folder, b"pipe.wav"))
        os.symlink("loop.png", os.path.join(self.folder, b"loop.png"))
        os.symlink("good.png", os.path.join(self.folder, b"link.png"))
        os.mkdir(os.path.join(self.folder, b"folder.png"))
        names = ["empty.png", "cut.wav", "text.mp3", "notes.txt", "pipe.wav", "loop.png", "folder.png", "gone.png",
                 "/dev/zero", "link.png", "good.png"]
        found = self.objects(*names, status=1)
        self.assertEqual([each["file"] for each in found if each["ok"]], ["link.png", "good.png"])
        self.assertTrue(all(each["error"] for each in found if not each["ok"]))
        self.assertNotIn("kind", found[3])
        out, err = self.inspect(*names, status=1)
        self.assertEqual([line.split()[2] for line in err.splitlines()], names[:-2])
        self.assertEqual([line for line in out.splitlines() if not line.startswith(" ")], names[-2:])

    def test_folders(self):
        for name in ("a/b/1.png", "a/2.png", "a/notes.txt", "3.png"):
            self.write(name, png(1, 1))
        os.symlink("..", os.path.join(self.folder, b"a/up"))
        self.assertEqual([each["file"] for each in self.objects("--recursive", "a", "3.png")],
                         ["a/2.png", "a/b/1.png", "3.png"])
        self.assertFalse(self.objects("a", status=1)[0]["ok"])

    def test_what_cannot_be_read_is_told_in_its_place(self):
        for name in ("a/1.png", "a/b/2.png", "a/b/c/3.png", "a/d.png"):
            self.write(name, png(1, 1))
        locked = os.path.join(self.folder, b"a/b")
        os.chmod(locked, 0)
        self.addCleanup(os.chmod, locked, 0o700)
        # The superuser is let in everywhere, but for these.
        rights = ["setpriv", "--bounding-set", "-dac_override,-dac_read_search"] if os.geteuid() == 0 else []
        result = subprocess.run([*rights, BUILD / "bin" / "ostrelle", "inspect", "--json", "--recursive", "a"],
                                env=self.environment, cwd=self.folder, capture_output=True, timeout=60)
        found = [json.loads(line) for line in result.stdout.splitlines()]
        self.assertEqual([each["file"] for each in found], ["a/1.png", "a/b", "a/d.png"])
        self.assertEqual([each["ok"] for each in found], [True, False, True])
        self.assertTrue(found[1]["error"])
        self.assertEqual((result.returncode, result.stderr), (1, b""))

    def test_standard_descriptors_that_are_closed(self):
        self.write("a.png", png(1, 1))

        def shell(line):
            return subprocess.run(f"{BUILD}/bin/ostrelle inspect --json {line}", shell=True, env=self.environment,
                                  cwd=self.folder, capture_output=True, timeout=60)

        self.assertTrue(json.loads(shell("a.png <&-").stdout)["ok"])
        self.assertTrue(json.loads(shell("a.png 2>&-").stdout)["ok"])
        for line in ("- <&-", "- </"):
            unread = shell(line)
            self.assertEqual((unread.returncode, json.loads(unread.stdout)["ok"]), (1, False))
        unwritten = shell("a.png >&-")
        self.assertEqual((unwritten.returncode, unwritten.stdout), (1, b""))
        self.assertTrue(unwritten.stderr)

    def test_many_files(self):
        names = [self.write(f"{i}.png", png(1 + i % 50, 1)) for i in range(300)]
        found = self.objects(*names)
        self.assertEqual([each["info"]["pixelWidth"] for each in found], [1 + i % 50 for i in range(300)])
        # Whoever reads only the first line ends it.
        reader = subprocess.run(f"yes 1.png | {BUILD}/bin/ostrelle inspect --json - | head -n 1", shell=True,
                                env=self.environment, cwd=self.folder, capture_output=True, timeout=60)
        self.assertEqual(json.loads(reader.stdout)["file"], "1.png")

    def test_wrong_usage(self):
        for arguments in ([], ["--jobs", "0", "a.png"], ["--jobs", "x", "a.png"], ["--fly", "a.png"]):
            out, err = self.inspect(*arguments, status=2)
            self.assertEqual((out, len(err.splitlines())), ("", 1))


if __name__ == "__main__":
    unittest.main(verbosity=1)
