#!/usr/bin/env python3
"""Every command that types keys reaches the program that has the keys of an X11 session.

usage: shortcuts_test.py BUILD_DIR [unittest options]
"""
import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from trackball_desk import Desk, Reader, isolate  # noqa: E402

BUILD = ""
MENU = "menu"  # what the toolkit makes of the key
FREE_SLOTS = (2, 3, 4, 5, 6, 7, 10, 11, 13, 14, 15)

EDITING = {
    32: "Ctrl+Z", 33: "Ctrl+Shift+Z", 34: "Ctrl+X", 35: "Ctrl+C", 36: "Ctrl+V", 37: "Ctrl+Shift+V", 38: "Ctrl+A",
    39: "Ctrl+F", 40: "F3", 41: "Shift+F3", 42: "Ctrl+H", 43: "Ctrl+B", 44: "Ctrl+I", 45: "Ctrl+U", 46: "Ctrl+N",
    47: "Ctrl+O", 48: "Ctrl+S", 49: "Ctrl+Shift+S", 50: "Ctrl+P", 51: "Ctrl+Q"}
KEYS = {54: "Return", 55: "Esc", 56: "Tab", 57: "Del", 58: "Backspace", 59: MENU}
BROWSING = {
    110: "Alt+Left", 111: "Alt+Right", 112: "F5", 113: "Alt+Home", 114: "Ctrl+T", 115: "Ctrl+W", 116: "Ctrl+Shift+T",
    117: "Ctrl+PgDown", 118: "Ctrl+PgUp", 119: "Ctrl+L", 120: "Ctrl+D", 60: "PgUp", 61: "PgDown", 62: "Ctrl+Home",
    63: "Ctrl+End", 64: "Ctrl++", 65: "Ctrl+-", 66: "Ctrl+0", 77: "F11"}
# Without a player these keys come to whoever has the keyboard. Volume and the like would change the real one's.
MEDIA = {140: "Media Play", 141: "Media Stop", 142: "Media Next", 143: "Media Previous"}


class ShortcutsTest(unittest.TestCase):
    def press_each(self, shortcuts, layout):
        codes = list(shortcuts)
        for first in range(0, len(codes), len(FREE_SLOTS)):
            actions = dict(zip(FREE_SLOTS, codes[first:first + len(FREE_SLOTS)]))
            with Desk(BUILD, actions) as desk:
                desk.set_layout(layout)
                reader = Reader(desk)
                for slot, code in actions.items():
                    with self.subTest(command=code, layout=layout):
                        desk.click(slot)
                        # A sign that is above another one on its key takes Shift as well.
                        wanted = {MENU} if shortcuts[code] == MENU else {f"shortcut {shortcuts[code]}", f"shortcut {shortcuts[code].replace('Ctrl+', 'Ctrl+Shift+')}"
                                  if code in (64, 65, 66) else ""}
                        reader.lines.wait_for(lambda line: line in wanted, f"command {code}", seconds=5)
                self.assertEqual(desk.problems(), [])

    def test_keys(self):
        self.press_each(KEYS, "us")

    def test_editing(self):
        self.press_each(EDITING, "us")

    def test_editing_under_another_layout(self):
        self.press_each(EDITING, "fr")

    def test_browsing(self):
        self.press_each(BROWSING, "us")

    def test_browsing_under_another_layout(self):
        self.press_each(BROWSING, "de")

    def test_media(self):
        self.press_each(MEDIA, "us")


if __name__ == "__main__":
    isolate()
    BUILD = sys.argv.pop(1)
    unittest.main(verbosity=2)
