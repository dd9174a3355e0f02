#!/usr/bin/python3
"""Lists what a program shows, as a screen reader would find it.

usage: accessible.py APPLICATION

Each line of the input is a question, a JSON object. Its "what" is one of
  everything  what is showing, or only what has the question's "role" and "name", where they are not null
  windows     the windows that are showing
  controls    the enabled controls of the active window that can have the focus
  focused     the one of them that has it
The answer is a line with a JSON array that has one object for each: the name of its window and whether that is active,
role, name, labels, description, text, value, states and the rectangle on the screen. Each of these is a message to the
program and back, so a narrow question is answered several times as fast as a wide one.

Runs as a process of its own, because libatspi looks for its bus once in a process, and looks
anew each time in a child of it, because libatspi keeps what it has seen.
"""
import json
import os
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

STATES = ("CHECKED", "ENABLED", "FOCUSABLE", "FOCUSED", "SELECTED", "ACTIVE")

# Say that they can have the focus, and are parts or surroundings of the control that has it.
SURROUNDINGS = ("filler",)
PARTS = ("page tab", "list item", "table cell", "tree item", "table column header")


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


def fits(accessible, question):
    return question["role"] in (None, accessible.get_role_name()) and \
        question["name"] in (None, accessible.get_name())


def walk(accessible, question, found):
    for index in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(index)
        if child is None:
            continue
        try:
            # The items of a closed menu say that they are showing.
            if child.get_state_set().contains(Atspi.StateType.SHOWING):
                if fits(child, question):
                    found.append(describe(child))
                walk(child, question, found)
        except GLib.Error:
            continue  # it went away while it was looked at


def is_control(states, role):
    return role not in SURROUNDINGS and states.contains(Atspi.StateType.FOCUSABLE) and \
        states.contains(Atspi.StateType.ENABLED)


def walk_controls(accessible, found):
    for index in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(index)
        if child is None:
            continue
        try:
            states = child.get_state_set()
            role = child.get_role_name()
            if not states.contains(Atspi.StateType.SHOWING) or role in PARTS:
                continue
            if is_control(states, role):
                found.append(describe(child))
            walk_controls(child, found)
        except GLib.Error:
            continue  # it went away while it was looked at


def find_focused(accessible):
    """The first of the controls that has the focus."""
    for index in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(index)
        if child is None:
            continue
        try:
            states = child.get_state_set()
            if not states.contains(Atspi.StateType.SHOWING):
                continue
            role = child.get_role_name()
            if role in PARTS:
                continue
            if states.contains(Atspi.StateType.FOCUSED) and is_control(states, role):
                return describe(child)
            found = find_focused(child)
            if found is not None:
                return found
        except GLib.Error:
            continue  # it went away while it was looked at
    return None


def look_at_window(window, question):
    what = question["what"]
    states = window.get_state_set()
    active = states.contains(Atspi.StateType.ACTIVE)
    if not states.contains(Atspi.StateType.SHOWING) or (what in ("controls", "focused") and not active):
        return []
    found = []
    if what == "controls":
        walk_controls(window, found)
    elif what == "focused":
        focused = find_focused(window)
        found += [] if focused is None else [focused]
    elif what == "windows":
        found.append(describe(window))
    else:
        if fits(window, question):
            found.append(describe(window))
        walk(window, question, found)
    place = {"window": window.get_name(), "active": active}
    return [{**place, **one} for one in found]


def look(application_name, question):
    Atspi.init()
    desktop = Atspi.get_desktop(0)
    found = []
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application is not None and application.get_name() == application_name:
            for number in range(application.get_child_count()):
                window = application.get_child_at_index(number)
                found += look_at_window(window, question) if window is not None else []
    print(json.dumps(found), flush=True)


def main():
    for line in sys.stdin:
        child = os.fork()
        if child == 0:
            look(sys.argv[1], json.loads(line))
            os._exit(0)
        if os.waitpid(child, 0)[1] != 0:
            print("null", flush=True)


if __name__ == "__main__":
    main()
