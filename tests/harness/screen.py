"""Pictures of a private X server, read from the frame buffer that Xvfb maps into a file (fast enough for animation
frames, and exactly what a person would see, compositor included)."""
import mmap
import os
import struct
import subprocess


class Picture:
    """A rectangle of pixels, 4 bytes each: blue, green, red, unused."""

    def __init__(self, width, height, data):
        self.width, self.height, self.data = width, height, data

    def pixel(self, x, y):
        """(red, green, blue)"""
        offset = (y * self.width + x) * 4
        blue, green, red = self.data[offset:offset + 3]
        return red, green, blue

    def save(self, path, scale=1):
        command = ["convert", "-size", f"{self.width}x{self.height}", "-depth", "8", "bgra:-", "-alpha", "off"]
        if scale != 1:
            command += ["-filter", "point", "-resize", f"{scale * 100}%"]
        subprocess.run(command + [f"png24:{path}"], input=bytes(self.data), check=True)


class FrameBuffer:
    def __init__(self, folder):
        self._file = open(os.path.join(folder, "Xvfb_screen0"), "rb")
        self._map = mmap.mmap(self._file.fileno(), 0, prot=mmap.PROT_READ)
        header = struct.unpack(">25I", self._map[:100])
        self.width, self.height, self._stride = header[4], header[5], header[12]
        self._start = header[0] + header[19] * 12

    def grab(self, x=0, y=0, width=None, height=None):
        """A copy of a rectangle, clipped to the screen."""
        x, y = max(0, int(x)), max(0, int(y))
        width = min(int(width or self.width), self.width - x)
        height = min(int(height or self.height), self.height - y)
        rows = []
        for row in range(y, y + height):
            begin = self._start + row * self._stride + x * 4
            rows.append(self._map[begin:begin + width * 4])
        return Picture(width, height, b"".join(rows))

    def close(self):
        self._map.close()
        self._file.close()
