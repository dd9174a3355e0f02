#!/usr/bin/env python3
"""Windows of one program, each with its title, that say what happens to them: usage two_windows.py CLASS TITLE...

Prints lines of JSON: "state" with a window's title and the words of the toolkit for its state, and "closed".
"""
import json
import sys

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("Gdk", "3.0")
from gi.repository import Gdk, GLib, Gtk  # noqa: E402


def say(*words):
    print(json.dumps(words), flush=True)


def tell_state(window, event):
    say("state", window.get_title(), event.new_window_state.value_nicks)


def tell_size(window, event):
    say("size", window.get_title(), event.width, event.height)


def tell_key(window, event):
    say("key", window.get_title(), Gdk.keyval_name(event.keyval))


def tell_end(window, remaining):
    say("closed", window.get_title())
    remaining.discard(window)
    if not remaining:
        Gtk.main_quit()


def open_windows(titles):
    remaining = set()
    for title in titles:
        window = Gtk.Window(title=title)
        window.set_default_size(400, 300)
        window.connect("window-state-event", tell_state)
        window.connect("configure-event", tell_size)
        window.connect("key-press-event", tell_key)
        window.connect("destroy", tell_end, remaining)
        remaining.add(window)
        window.show_all()


if __name__ == "__main__":
    GLib.set_prgname(sys.argv[1])
    Gdk.set_program_class(sys.argv[1])
    open_windows(sys.argv[2:])
    Gtk.main()
