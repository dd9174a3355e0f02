#!/usr/bin/env python3
"""Every command that types keys reaches the program that has the keys of an X11 session.

usage: shortcuts_test.py BUILD_DIR [unittest options]
"""
import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from trackball_desk import Desk, Reader, isolate  # noqa: E402
from typed_keys import BROWSING, EDITING, KEYS, MEDIA, OF_GNOME, OF_OTHERS, batches, press_each  # noqa: E402

BUILD = ""


class ShortcutsTest(unittest.TestCase):
    def press_each(self, shortcuts, layout, **options):
        for batch in batches(shortcuts):
            with Desk(BUILD, batch, **options) as desk:
                desk.set_layout(layout)
                press_each(self, desk, Reader(desk), batch, shortcuts)

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

    # The window manager takes no keys for itself in these two.

    def test_keys_of_gnome(self):
        self.press_each(OF_GNOME, "us", environment={"XDG_CURRENT_DESKTOP": "GNOME"}, key_bindings={})

    def test_keys_of_other_desktops(self):
        self.press_each(OF_OTHERS, "us", key_bindings={})


if __name__ == "__main__":
    isolate()
    BUILD = sys.argv.pop(1)
    unittest.main(verbosity=2)
