#!/usr/bin/python3
"""file_manager.py X,Y MARKED dark|light PATH...
A window of files and folders, four in a row in cells of CELL, the first of which are marked: dragged out of it, a marked
one takes the others along. Prints "ready"."""
import pathlib
import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GdkPixbuf, Gio, GLib, Gtk  # noqa: E402

CELL = 110
COLUMNS = 4
STYLE = b".cell { border-radius: 8px } .marked { background: rgba(90, 130, 230, 0.35) } label { font-size: 11px }"


def picture(path):
    try:
        return GdkPixbuf.Pixbuf.new_from_file_at_size(str(path), 56, 56)
    except GLib.Error:
        icon = Gio.File.new_for_path(str(path)).query_info("standard::icon", 0, None).get_icon()
        return Gtk.IconTheme.get_default().lookup_by_gicon(icon, 56, Gtk.IconLookupFlags.FORCE_SIZE).load_icon()


def cell(path, uris, isMarked):
    box = Gtk.Box(orientation=Gtk.Orientation.VERTICAL, spacing=6, margin=8)
    shown = picture(path)
    box.pack_start(Gtk.Image.new_from_pixbuf(shown), True, True, 0)
    box.pack_start(Gtk.Label(label=path.name, max_width_chars=12, ellipsize=2), False, False, 0)
    events = Gtk.EventBox()
    events.add(box)
    events.set_size_request(CELL, CELL)
    events.get_style_context().add_class("cell")
    if isMarked:
        events.get_style_context().add_class("marked")
    events.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [], Gdk.DragAction.COPY)
    events.drag_source_add_uri_targets()
    events.drag_source_set_icon_pixbuf(shown)
    events.connect("drag-data-get", lambda _w, _c, data, _i, _t: data.set_uris(uris))
    return events


def main():
    place, marked, look, *names = sys.argv[1:]
    paths = [pathlib.Path(name) for name in names]
    Gtk.Settings.get_default().set_property("gtk-application-prefer-dark-theme", look == "dark")
    style = Gtk.CssProvider()
    style.load_from_data(STYLE)
    Gtk.StyleContext.add_provider_for_screen(Gdk.Screen.get_default(), style, 600)
    GLib.set_prgname("Files")
    window = Gtk.Window(title="Files", decorated=False)
    grid = Gtk.Grid()
    for index, path in enumerate(paths):
        dragged = paths[:int(marked)] if index < int(marked) else [path]
        grid.attach(cell(path, [file.as_uri() for file in dragged], index < int(marked)), index % COLUMNS,
                    index // COLUMNS, 1, 1)
    window.add(grid)
    window.connect("map-event", lambda *_: GLib.idle_add(lambda: print("ready", flush=True)) and False)
    window.show_all()
    window.move(*map(int, place.split(",")))
    Gtk.main()


main()
