#!/usr/bin/env python3
"""Keystrokes in the field under Wayland: with a compositor that lets a window have its keys, and with one that does not.

usage: keystroke_wayland_test.py BUILD_DIR [unittest options]

Both compositors are windows of an X server, where a tool types.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path[:0] = [str(pathlib.Path(__file__).resolve().parent), str(pathlib.Path(__file__).resolve().parent.parent / "support")]
from desktop import Desktop, wait_until  # noqa: E402
from probe import Probe, Typing  # noqa: E402

BUILD = ""
NOBODY = 65534


class Compositor(Typing):
    """What the tests of both compositors share. `first_grab` is what comes of the field's first focus."""

    first_grab = ""

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(Desktop(BUILD, screen="800x600x24", with_helper=False))
        cls.socket = cls.start_compositor()
        window = wait_until(cls.compositor_window, "the compositor's window")
        cls.desktop.run(["xdotool", "windowfocus", "--sync", window])

    @classmethod
    def compositor_window(cls):
        # There is no other window, and without a window manager not every compositor's has a title.
        found = re.search(r"^ +(0x[0-9a-f]+) ", cls.desktop.run(["xwininfo", "-root", "-children"]).stdout, re.MULTILINE)
        return found[1] if found else None

    @classmethod
    def new_socket(cls, folder):
        names = [name for name in folder.glob("wayland-*") if name.is_socket()]
        return names[0] if names else None

    def setUp(self):
        self.probe = Probe(self.desktop, QT_QPA_PLATFORM="wayland", WAYLAND_DISPLAY=self.socket)
        self.addCleanup(self.probe.kill)
        self.probe.wait_for("window active", self.first_grab)

    def test_keys_that_a_window_would_act_on_are_recorded(self):
        self.key("ctrl+q", "Tab", "shift+Tab", "Escape", "Return", "Menu", "super+z")
        read = self.probe.wait_for("key 12 0x1000 17", "key 48 0x0000 9", "key 48 0x0200 0", "key 53 0x0000 27",
                                   "key 36 0x0000 13", "key 110 0x0000 0", "key 6 0x0100 122")
        self.assertNotIn("popup", read)
        self.assertNotIn("closed", read)

    def test_caps_lock_alone_and_with_shift(self):
        self.expect_caps_lock_alone_and_with_shift()

    def test_two_taps_of_shift_lead_on(self):
        self.key("Shift_L", "Shift_L")
        self.probe.wait_for("focus next", "grab none")


class KeystrokeWestonTest(Compositor, unittest.TestCase):
    """The one that has no way to ask for its keys."""

    first_grab = "grab trying"

    @classmethod
    def start_compositor(cls):
        cls.desktop.start(["weston", "--backend=x11-backend.so", "--use-pixman", "--shell=kiosk-shell.so", "--no-config",
                           "--width=640", "--height=480", f"--log={cls.desktop.home}/weston.log"],
                          stderr=subprocess.DEVNULL)
        return wait_until(lambda: cls.new_socket(cls.desktop.home / "run"), "weston")


class KeystrokeSwayTest(Compositor, unittest.TestCase):
    first_grab = "grab held"

    @classmethod
    def start_compositor(cls):
        # It does not run as root, so then it gets a user and a folder of its own; those of the desktop stay closed.
        as_user = []
        cls.folder = cls.desktop.home
        if os.getuid() == 0:
            as_user = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]
            cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="veltrix-sway-"))
            cls.addClassCleanup(shutil.rmtree, cls.folder)
            os.chown(cls.folder, NOBODY, NOBODY)
        (cls.folder / "config").write_text(
            f"xwayland disable\nbindsym Mod4+e exec echo >> {cls.folder}/meta-e\n"
            f"bindsym Mod1+Tab exec echo >> {cls.folder}/alt-tab\n")
        cls.desktop.start(["env", f"HOME={cls.folder}", f"XDG_RUNTIME_DIR={cls.folder}", "WLR_BACKENDS=x11",
                           "WLR_RENDERER=pixman", *as_user, "sway", "--config", cls.folder / "config"],
                          stderr=subprocess.DEVNULL)
        return wait_until(lambda: cls.new_socket(cls.folder), "sway")

    def times_run(self, name):
        path = self.folder / name
        return path.stat().st_size if path.exists() else 0

    def expect_desktop_keys(self):
        before = self.times_run("meta-e")
        self.key("super+e")
        wait_until(lambda: self.times_run("meta-e") == before + 1, "the compositor to act on its key")

    def expect_recorded(self):
        before = self.times_run("meta-e")
        self.key("super+e")
        self.probe.wait_for("key 14 0x0100 101")
        self.assertEqual(self.times_run("meta-e"), before)

    def test_keys_of_the_compositor_are_recorded_and_not_acted_on(self):
        self.expect_recorded()
        self.key("alt+Tab")
        self.probe.wait_for("key 48 0x0800 9")
        self.assertEqual(self.times_run("alt-tab"), 0)

    def test_keys_go_back_with_the_focus(self):
        self.probe.focus_plain()
        self.expect_desktop_keys()
        self.probe.focus_field()
        self.expect_recorded()

    def test_keys_go_back_while_nothing_is_recorded(self):
        self.probe.tell("remove")
        self.probe.wait_for("grab none")
        self.expect_desktop_keys()

    def test_keys_go_back_when_the_window_is_hidden_and_come_again_with_it(self):
        self.probe.tell("hide")
        self.probe.wait_for("grab none")
        self.expect_desktop_keys()
        self.probe.tell("show")
        self.probe.wait_for("grab held")
        self.expect_recorded()

    def test_keys_go_back_when_another_window_comes_to_the_front(self):
        other = Probe(self.desktop, QT_QPA_PLATFORM="wayland", WAYLAND_DISPLAY=self.socket)
        self.addCleanup(other.kill)
        other.tell("plain")
        self.probe.wait_for("grab none")
        self.expect_desktop_keys()

    def test_a_killed_program_keeps_nothing(self):
        self.expect_recorded()
        self.probe.kill()
        self.expect_desktop_keys()


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    unittest.main(verbosity=2)
