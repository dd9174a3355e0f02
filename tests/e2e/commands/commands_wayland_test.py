#!/usr/bin/env python3
"""Texts and shortcuts in a program of a Wayland session, from the button of a trackball on.

usage: commands_wayland_test.py BUILD_DIR [unittest options]

The compositor is a window of an X server, whose keyboard the driver of the tests uses.
"""
import pathlib
import re
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from layout_texts import LAYOUTS  # noqa: E402
from trackball_desk import Desk, Reader, isolate, wait_until  # noqa: E402
from typed_keys import BROWSING, EDITING, KEYS, MEDIA, batches, press_each  # noqa: E402

BUILD = ""
COPY, UNICODE = 4, 5


class WaylandTest(unittest.TestCase):
    def desk_with(self, layout, beside):
        return self.enterContext(self.desk({2: 180, 3: 181, COPY: 35, UNICODE: 182}, [*LAYOUTS[layout], "a世b"], layout,
                                           beside))

    def desk(self, actions, snippets, layout, beside=""):
        def start_compositor(desktop):
            name, _, variant = layout.partition(":")
            desktop.run(["setxkbmap", "-layout", name + beside, "-variant", variant])
            desktop.start(["weston", "--backend=x11-backend.so", "--use-pixman", "--shell=kiosk-shell.so", "--no-config",
                           "--width=640", "--height=480", f"--log={desktop.home}/weston.log"],
                          stderr=subprocess.DEVNULL)
            folder = desktop.home / "run"
            socket = wait_until(lambda: next((path for path in folder.glob("wayland-*") if path.is_socket()), None),
                                "weston")
            desktop.environment["WAYLAND_DISPLAY"] = str(socket)
            def window():
                found = re.search(r"^ +(0x[0-9a-f]+) .*weston", desktop.run(["xwininfo", "-root", "-tree"]).stdout,
                                  re.MULTILINE | re.IGNORECASE)
                return found and found[1]
            desktop.run(["xdotool", "windowfocus", "--sync", wait_until(window, "the compositor's window")])
        return Desk(BUILD, actions, snippets, prepare=start_compositor)

    def type_under(self, layout, beside=""):
        desk = self.desk_with(layout, beside)
        reader = Reader(desk, QT_QPA_PLATFORM="wayland")
        whole = ""
        for slot, text in zip((2, 3), LAYOUTS[layout]):
            desk.click(slot)
            whole += text
            reader.wait_for_text(whole)
        desk.click(COPY)
        reader.lines.wait_for(lambda line: line == "copy", "the keys of Copy")
        self.assertEqual(desk.problems(), [])

    def test_us(self):
        self.type_under("us")

    def test_de(self):
        self.type_under("de")

    def test_fr(self):
        self.type_under("fr")

    def test_dvorak(self):
        self.type_under("us:dvorak")

    def test_ru(self):
        # Programs take a shortcut under Cyrillic letters by a Latin layout beside it.
        self.type_under("ru", ",us")

    def press_each(self, shortcuts):
        for batch in batches(shortcuts):
            with self.desk(batch, (), "us") as desk:
                press_each(self, desk, Reader(desk, QT_QPA_PLATFORM="wayland"), batch, shortcuts)

    def test_keys(self):
        self.press_each(KEYS)

    def test_editing(self):
        self.press_each(EDITING)

    def test_browsing(self):
        self.press_each(BROWSING)

    def test_media(self):
        self.press_each(MEDIA)


if __name__ == "__main__":
    isolate()
    BUILD = sys.argv.pop(1)
    unittest.main(verbosity=2)
