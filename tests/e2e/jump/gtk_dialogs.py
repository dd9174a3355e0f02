#!/usr/bin/python3
"""A program with dialogs of GTK, led like the one of Qt: "dialog" opens one, "window" a window that is none, "place"
prints where the default button is, "close" closes it. Each line is answered by one."""
import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import GLib, Gtk  # noqa: E402


class Dialogs:
    def __init__(self):
        self.window = None
        self.button = None

    def show(self, window, button):
        self.window = window
        self.button = button
        window.show_all()

    def open_dialog(self):
        dialog = Gtk.MessageDialog(message_type=Gtk.MessageType.QUESTION, buttons=Gtk.ButtonsType.OK_CANCEL,
                                   text="Go on?", title="GTK dialog")
        dialog.set_default_response(Gtk.ResponseType.OK)
        self.show(dialog, dialog.get_widget_for_response(Gtk.ResponseType.OK))

    def open_window(self):
        window = Gtk.Window(title="GTK window")
        window.add(Gtk.Button(label="Go"))
        self.show(window, window.get_child())

    def place(self):
        _, x, y = self.window.get_window().get_origin()
        left, top = self.button.translate_coordinates(self.window, 0, 0)
        size = self.button.get_allocation()
        return f"{x + left} {y + top} {size.width} {size.height}"

    def close(self):
        if self.window is not None:
            self.window.destroy()
            self.window = None

    def obey(self, _source, _condition):
        line = sys.stdin.readline().strip()
        if not line:
            Gtk.main_quit()
            return False
        answer = {"dialog": self.open_dialog, "window": self.open_window, "place": self.place, "close": self.close}[line]()
        print(answer or "done", flush=True)
        return True


GLib.io_add_watch(0, GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, Dialogs().obey)
print("ready", flush=True)
Gtk.main()
