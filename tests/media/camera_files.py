#!/usr/bin/python3
"""Writes files as cameras write them: the TIFF structure and tags of each make around a JPEG preview and a small, empty
sensor image.
Usage: camera_files.py PREVIEW.jpg WIDTH HEIGHT ORIENTATION FOLDER    makes FOLDER/dng-ORIENTATION.dng and so on"""
import pathlib
import struct
import sys

BYTE, ASCII, SHORT, LONG, RATIONAL, UNDEFINED, SRATIONAL = 1, 2, 3, 4, 5, 7, 10
SIZES = {BYTE: 1, ASCII: 1, SHORT: 2, LONG: 4, RATIONAL: 8, UNDEFINED: 1, SRATIONAL: 8}
SENSOR = (96, 64)


class Blob:
    """Bytes elsewhere in the file; an entry with it holds their offset."""

    def __init__(self, data):
        self.data = data


class Tiff:
    """Collects directories and what they point to; offsets are known when all is laid out, so it is done twice."""

    def __init__(self, order, header):
        self.order = order
        self.bytes = bytearray(header)

    def place(self, data):
        self.bytes += b"\0" * (len(self.bytes) % 2)
        offset = len(self.bytes)
        self.bytes += data
        return offset

    def packed(self, kind, values):
        if kind in (BYTE, UNDEFINED):
            return bytes(values)
        if kind == ASCII:
            return values.encode() + b"\0"
        if kind in (RATIONAL, SRATIONAL):
            letter = "I" if kind == RATIONAL else "i"
            return b"".join(struct.pack(self.order + 2 * letter, *value) for value in values)
        return struct.pack(self.order + str(len(values)) + {SHORT: "H", LONG: "I"}[kind], *values)

    def directory(self, entries, following=0):
        """Places the directory; entries are (tag, kind, values), where a value may be a Blob. Returns its offset."""
        packed = []
        for tag, kind, values in sorted(entries):
            if kind != ASCII:
                values = values if isinstance(values, (list, tuple, bytes)) else [values]
                values = [self.place(value.data) if isinstance(value, Blob) else value for value in values]
            data = self.packed(kind, values)
            packed.append((tag, kind, len(data) // SIZES[kind],
                           data.ljust(4, b"\0") if len(data) <= 4 else struct.pack(self.order + "I", self.place(data))))
        directory = struct.pack(self.order + "H", len(packed))
        for tag, kind, count, data in packed:
            directory += struct.pack(self.order + "HHI", tag, kind, count) + data
        return self.place(directory + struct.pack(self.order + "I", following))


def sensor_entries(compression, bits, data):
    width, height = SENSOR
    return [(254, LONG, 0), (256, LONG, width), (257, LONG, height), (258, SHORT, bits), (259, SHORT, compression),
            (262, SHORT, 32803), (273, LONG, Blob(data)), (277, SHORT, 1), (278, LONG, height), (279, LONG, len(data)),
            (33421, SHORT, (2, 2)), (33422, BYTE, (0, 1, 1, 2))]


def jpeg_entries(preview):
    return [(513, LONG, Blob(preview)), (514, LONG, len(preview))]


def camera(make, model, orientation):
    return [(271, ASCII, make), (272, ASCII, model), (274, SHORT, orientation), (306, ASCII, "2024:05:01 12:00:00")]


def empty_sensor():
    return b"\0\2" * (SENSOR[0] * SENSOR[1])


def little_bitmap():
    width, height = 16, 12
    data = b"\x80" * (3 * width * height)
    return [(254, LONG, 1), (256, LONG, width), (257, LONG, height), (258, SHORT, (8, 8, 8)), (259, SHORT, 1),
            (262, SHORT, 2), (273, LONG, Blob(data)), (277, SHORT, 3), (278, LONG, height), (279, LONG, len(data))]


def dng(preview, size, orientation):
    """A little bitmap in the first directory; sensor image and preview in directories below."""
    file = Tiff("<", b"II*\0\0\0\0\0")
    sensor = file.directory(sensor_entries(1, 16, empty_sensor()) + [
        (50714, SHORT, 0), (50717, LONG, 4095), (50719, LONG, (4, 4)), (50720, LONG, (88, 56))])
    shown = file.directory([(254, LONG, 1), (256, LONG, size[0]), (257, LONG, size[1]), (258, SHORT, (8, 8, 8)),
                            (259, SHORT, 7), (262, SHORT, 6), (273, LONG, Blob(preview)), (277, SHORT, 3),
                            (278, LONG, size[1]), (279, LONG, len(preview))])
    matrix = [(10000, 10000), (0, 1), (0, 1), (0, 1), (10000, 10000), (0, 1), (0, 1), (0, 1), (10000, 10000)]
    first = file.directory(little_bitmap() + camera("Pentax", "PENTAX K-5", orientation) + [
        (330, LONG, (sensor, shown)), (50706, BYTE, (1, 4, 0, 0)), (50707, BYTE, (1, 1, 0, 0)),
        (50708, ASCII, "PENTAX K-5"), (50721, SRATIONAL, matrix), (50728, RATIONAL, [(1, 2), (1, 1), (2, 3)]),
        (50778, SHORT, 21)])
    struct.pack_into("<I", file.bytes, 4, first)
    return file.bytes


def lossless_jpeg():
    """The frame of a lossless JPEG of 14 bits in two columns, without its data."""
    width, height = SENSOR
    huffman = bytes([0]) + bytes([0, 1, 5, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0]) + bytes(range(12))
    frame = struct.pack(">BHHB", 14, height, width // 2, 2) + bytes([1, 0x11, 0, 2, 0x11, 0])
    scan = bytes([2, 1, 0, 2, 0, 1, 0, 0])
    parts = b"\xff\xd8"
    for marker, content in ((0xc4, huffman), (0xc3, frame), (0xda, scan)):
        parts += struct.pack(">BBH", 0xff, marker, len(content) + 2) + content
    return parts + b"\0" * 64 + b"\xff\xd9"


def cr2(preview, size, orientation):
    """The preview as the first directory's strip; the sensor image in the fourth."""
    file = Tiff("<", b"II*\0\0\0\0\0CR\2\0\0\0\0\0")
    data = lossless_jpeg()
    fourth = file.directory([(259, SHORT, 6), (273, LONG, Blob(data)), (279, LONG, len(data)),
                             (50752, SHORT, (1, SENSOR[0] // 2, SENSOR[0] // 2))])
    third = file.directory(little_bitmap(), fourth)
    second = file.directory([(513, LONG, Blob(preview[:2])), (514, LONG, 2)], third)
    exif = file.directory([(33434, RATIONAL, [(1, 125)]), (36864, UNDEFINED, b"0221")])
    first = file.directory(camera("Canon", "Canon EOS 40D", orientation) + [
        (256, SHORT, size[0]), (257, SHORT, size[1]), (258, SHORT, (8, 8, 8)), (259, SHORT, 6),
        (273, LONG, Blob(preview)), (279, LONG, len(preview)), (34665, LONG, exif)], second)
    struct.pack_into("<I", file.bytes, 4, first)
    struct.pack_into("<I", file.bytes, 12, fourth)
    return file.bytes


def nef(preview, size, orientation):
    """Most significant byte first; a little bitmap, and the preview in a directory below beside the sensor image."""
    file = Tiff(">", b"MM\0*\0\0\0\0")
    shown = file.directory([(254, LONG, 1), (259, SHORT, 6), (282, RATIONAL, [(300, 1)]), (531, SHORT, 2)]
                           + jpeg_entries(preview))
    sensor = file.directory(sensor_entries(1, 16, empty_sensor()))
    first = file.directory(little_bitmap() + camera("NIKON CORPORATION", "NIKON D90", orientation)
                           + [(330, LONG, (shown, sensor))])
    struct.pack_into(">I", file.bytes, 4, first)
    return file.bytes


def arw(preview, size, orientation):
    """The preview in the first directory; the sensor image below it."""
    file = Tiff("<", b"II*\0\0\0\0\0")
    sensor = file.directory(sensor_entries(32767, 14, b"\0" * (SENSOR[0] * SENSOR[1])))
    first = file.directory(camera("SONY", "ILCE-7M3", orientation) + jpeg_entries(preview)
                           + [(254, LONG, 1), (259, SHORT, 6), (330, LONG, sensor)])
    struct.pack_into("<I", file.bytes, 4, first)
    return file.bytes


def tif(preview, size, orientation):
    """No camera's file: an editor has saved it, with the camera's name and a smaller copy below."""
    file = Tiff("<", b"II*\0\0\0\0\0")
    smaller = file.directory(little_bitmap())
    width, height = 60, 40
    data = b"\x80" * (3 * width * height)
    first = file.directory(camera("NIKON CORPORATION", "NIKON D1X", orientation) + [
        (254, LONG, 0), (256, SHORT, width), (257, SHORT, height), (258, SHORT, (8, 8, 8)), (259, SHORT, 1),
        (262, SHORT, 2), (273, LONG, Blob(data)), (277, SHORT, 3), (278, SHORT, height), (279, LONG, len(data)),
        (282, RATIONAL, [(300, 1)]), (296, SHORT, 2), (330, LONG, smaller)])
    struct.pack_into("<I", file.bytes, 4, first)
    return file.bytes


def main():
    preview = pathlib.Path(sys.argv[1]).read_bytes()
    size = int(sys.argv[2]), int(sys.argv[3])
    orientation = int(sys.argv[4])
    folder = pathlib.Path(sys.argv[5])
    for make in (dng, cr2, nef, arw, tif):
        (folder / f"{make.__name__}-{orientation}.{make.__name__}").write_bytes(make(preview, size, orientation))


main()
