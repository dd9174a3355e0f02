#!/usr/bin/python3
"""Lists what a program shows, as a screen reader would find it.

usage: accessible.py APPLICATION

For each line of the input prints a line with a JSON array that has one object for each accessible object that is
showing: the name of its window and whether that is active, role, name, labels, description, text, value, states and the
rectangle on the screen. Runs as a process of its own, because libatspi looks for its bus once in a process, and looks
anew each time in a child of it, because libatspi keeps what it has seen.
"""
import json
import os
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

STATES = ("CHECKED", "ENABLED", "FOCUSABLE", "FOCUSED", "SELECTED", "ACTIVE")


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


def labels_of(accessible):
    """The names of what labels it, which screen readers read before its own."""
    return [relation.get_target(index).get_name() for relation in accessible.get_relation_set()
            if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY
            for index in range(relation.get_n_targets())]


def describe(accessible):
    states = accessible.get_state_set()
    box = Atspi.Component.get_extents(accessible, Atspi.CoordType.SCREEN)
    return {
        "role": accessible.get_role_name(),
        "name": accessible.get_name(),
        "labels": labels_of(accessible),
        "description": accessible.get_description(),
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
            # The items of a closed menu say that they are showing.
            if child.get_state_set().contains(Atspi.StateType.SHOWING):
                found.append(describe(child))
                walk(child, found)
        except GLib.Error:
            continue  # it went away while it was looked at


def look_at_window(window):
    if window is None or not window.get_state_set().contains(Atspi.StateType.SHOWING):
        return []
    found = [describe(window)]
    walk(window, found)
    place = {"window": found[0]["name"], "active": "ACTIVE" in found[0]["states"]}
    return [{**place, **one} for one in found]


def look(application_name):
    Atspi.init()
    desktop = Atspi.get_desktop(0)
    found = []
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application is not None and application.get_name() == application_name:
            for number in range(application.get_child_count()):
                found += look_at_window(application.get_child_at_index(number))
    print(json.dumps(found), flush=True)


def main():
    for _ in sys.stdin:
        child = os.fork()
        if child == 0:
            look(sys.argv[1])
            os._exit(0)
        if os.waitpid(child, 0)[1] != 0:
            print("null", flush=True)


if __name__ == "__main__":
    main()
