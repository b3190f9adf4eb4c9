#!/usr/bin/python3
"""Another program: a GTK window with a name of its own that copies what it is told to, line by line on its input:
    text JSON-STRING | image PATH | picture PATH (shows it) | click-count (prints the clicks on the window so far)
Prints "ready" and, after each command, "ok"."""
import json
import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GdkPixbuf, GLib, Gtk  # noqa: E402


class Peer:
    def __init__(self, name, geometry, picture, kind):
        GLib.set_prgname(name)
        Gdk.set_program_class(name)
        self.clicks = 0
        self.window = Gtk.Window(title=name)
        x, y, width, height = geometry
        self.window.set_default_size(width, height)
        self.window.set_decorated(False)
        if kind == "desktop":
            self.window.set_type_hint(Gdk.WindowTypeHint.DESKTOP)
        elif kind == "dock":
            self.window.set_type_hint(Gdk.WindowTypeHint.DOCK)
        box = Gtk.EventBox()
        self.image = Gtk.Image()
        self.image.set_size_request(1, 1)
        if picture:
            self.image.set_from_file(picture)
        box.add(self.image)
        box.add_events(Gdk.EventMask.BUTTON_PRESS_MASK)
        box.connect("button-press-event", self.pressed)
        content = box
        if picture:
            # A layout does not ask for the picture's size: a window may be smaller than what it shows.
            content = Gtk.Layout()
            content.put(box, 0, 0)
        self.window.add(content)
        self.window.connect("destroy", Gtk.main_quit)
        self.window.show_all()
        self.window.move(x, y)
        self.clipboard = Gtk.Clipboard.get(Gdk.SELECTION_CLIPBOARD)

    def pressed(self, *_):
        self.clicks += 1
        return False

    def command(self, line):
        verb, _, rest = line.partition(" ")
        if verb == "text":
            self.clipboard.set_text(json.loads(rest), -1)
        elif verb == "image":
            self.clipboard.set_image(GdkPixbuf.Pixbuf.new_from_file(rest))
        elif verb == "picture":
            self.image.set_from_file(rest)
        elif verb == "present":
            self.window.present_with_time(Gdk.CURRENT_TIME)
        elif verb == "click-count":
            print(self.clicks)
        print("ok", flush=True)


def main():
    name, geometry, picture, kind = sys.argv[1:5]
    peer = Peer(name, [int(part) for part in geometry.split(",")], picture, kind)

    def readable(source, _condition):
        line = source.readline()
        if not line:
            Gtk.main_quit()
            return False
        peer.command(line.rstrip("\n"))
        return True

    GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, readable)
    print("ready", flush=True)
    Gtk.main()


main()
