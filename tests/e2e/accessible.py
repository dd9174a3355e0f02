#!/usr/bin/python3
"""Lists what a program shows, as a screen reader would find it.

usage: accessible.py APPLICATION

Prints a JSON array with one object for each accessible object that is showing: role, name, text, value, states and the
rectangle on the screen. Runs as a process of its own, because libatspi looks for its bus once in a process.
"""
import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

STATES = ("CHECKED", "ENABLED", "FOCUSED", "SELECTED", "ACTIVE")


def value_of(accessible):
    try:
        return Atspi.Value.get_current_value(accessible) if "Value" in accessible.get_interfaces() else None
    except GLib.Error:
        return None


def text_of(accessible):
    try:
        return Atspi.Text.get_text(accessible, 0, -1) if "Text" in accessible.get_interfaces() else ""
    except GLib.Error:
        return ""


def describe(accessible):
    states = accessible.get_state_set()
    box = Atspi.Component.get_extents(accessible, Atspi.CoordType.SCREEN)
    return {
        "role": accessible.get_role_name(),
        "name": accessible.get_name(),
        "text": text_of(accessible),
        "value": value_of(accessible),
        "states": [state for state in STATES if states.contains(getattr(Atspi.StateType, state))],
        "box": [box.x, box.y, box.width, box.height],
    }


def walk(accessible, found):
    for index in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(index)
        if child is None:
            continue
        try:
            if child.get_state_set().contains(Atspi.StateType.SHOWING):
                found.append(describe(child))
            walk(child, found)
        except GLib.Error:
            continue  # it went away while it was looked at


def main():
    Atspi.init()
    desktop = Atspi.get_desktop(0)
    found = []
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application is not None and application.get_name() == sys.argv[1]:
            walk(application, found)
    json.dump(found, sys.stdout)


if __name__ == "__main__":
    main()
