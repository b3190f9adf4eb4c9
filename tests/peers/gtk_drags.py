#!/usr/bin/python3
"""gtk_drags.py source URI... | target

A GTK window at (40, 400) out of which a pressed button drags the files, or one at (400, 400) that takes anything.
Prints "ready"; a source "began" and "ended copy" or "ended none"; a target "type NAME BYTES" for each type dropped,
percent-encoded, then "done"."""
import sys
import urllib.parse

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("Gdk", "3.0")
from gi.repository import Gdk, GLib, Gtk  # noqa: E402


def tell(line):
    print(line, flush=True)


class Window(Gtk.Window):
    def __init__(self, x):
        super().__init__(type=Gtk.WindowType.POPUP)
        self.set_default_size(200, 100)
        self.move(x, 400)
        self.add_events(Gdk.EventMask.BUTTON_PRESS_MASK | Gdk.EventMask.BUTTON_MOTION_MASK)
        self.connect("map-event", lambda *_: GLib.idle_add(tell, "ready") and False)


def source(uris):
    window = Window(40)
    window.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [], Gdk.DragAction.COPY)
    window.drag_source_add_uri_targets()
    outcome = ["copy"]
    window.connect("drag-begin", lambda *_: tell("began"))
    window.connect("drag-data-get", lambda _w, _c, data, _i, _t: data.set_uris(uris))
    window.connect("drag-failed", lambda *_: outcome.append("none"))
    window.connect("drag-end", lambda *_: tell("ended " + outcome[-1]))
    return window


def target():
    window = Window(400)
    window.drag_dest_set(0, [], Gdk.DragAction.COPY)
    wanted = []

    def motion(_window, context, _x, _y, time):
        Gdk.drag_status(context, Gdk.DragAction.COPY, time)
        return True

    def ask(context, time):
        if wanted:
            window.drag_get_data(context, wanted.pop(0), time)
        else:
            Gtk.drag_finish(context, True, False, time)
            tell("done")

    def dropped(_window, context, _x, _y, time):
        wanted.extend(atom for atom in context.list_targets() if "/" in atom.name())
        ask(context, time)
        return True

    def received(_window, context, _x, _y, data, _info, time):
        tell(f"type {data.get_target().name()} {urllib.parse.quote_from_bytes(data.get_data() or b'', '/:')}")
        ask(context, time)

    window.connect("drag-motion", motion)
    window.connect("drag-drop", dropped)
    window.connect("drag-data-received", received)
    return window


shown = source(sys.argv[2:]) if sys.argv[1] == "source" else target()
shown.show_all()
Gtk.main()
