#!/usr/bin/env python3
"""Texts go by the layout that is on in sway, though it tells that to no window but the focused one.

usage: sway_group_test.py BUILD_DIR [unittest options]

sway runs on an X server of its own, so that no key reaches it: with each one it would take over the group of that
server. What cannot be typed by the layout is reported, and that is looked at.
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from trackball_desk import Desk, isolate, wait_until  # noqa: E402

BUILD = ""
LATIN, CYRILLIC = 2, 3
NOBODY = 65534  # sway refuses to run as root


class SwayGroupTest(unittest.TestCase):
    def start_sway(self, desktop):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        (folder / "config").write_text("xwayland disable\ninput type:keyboard xkb_layout us,ru\n")
        server = desktop.start(["Xvfb", "-displayfd", "1", "-screen", "0", "640x480x24", "-nolisten", "tcp"],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        display = f":{server.stdout.readline().strip()}"
        as_user = []
        if os.getuid() == 0:
            as_user = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]
            os.chown(folder, NOBODY, NOBODY)
        self.socket = folder / "ipc"
        desktop.start([*as_user, "env", f"XDG_RUNTIME_DIR={folder}", f"HOME={folder}", f"SWAYSOCK={self.socket}",
                       f"DISPLAY={display}", "WLR_BACKENDS=x11", "WLR_RENDERER=pixman", "sway", "--config", folder / "config"],
                      stderr=subprocess.DEVNULL)
        wait_until(lambda: self.switch_to(0), "sway")
        desktop.environment.update(WAYLAND_DISPLAY=str(folder / "wayland-1"), SWAYSOCK=str(self.socket))

    def switch_to(self, group):
        return subprocess.run(["swaymsg", "--quiet", "--socket", self.socket, "input", "type:keyboard",
                               "xkb_switch_layout", str(group)], stderr=subprocess.DEVNULL).returncode == 0

    def test_text_goes_by_the_group_that_is_on(self):
        desk = self.enterContext(Desk(BUILD, {LATIN: 180, CYRILLIC: 181}, ["q", "й"], prepare=self.start_sway))
        problems = 0
        for group, strange in ((0, CYRILLIC), (1, LATIN), (0, CYRILLIC)):
            self.assertTrue(self.switch_to(group))
            for slot in (LATIN, CYRILLIC):
                desk.click(slot)
            problems += 1
            wait_until(lambda: len(desk.problems()) >= problems, "the text that cannot be typed to be reported")
            self.assertEqual([command for command, _ in desk.problems()][problems - 1:], [178 + strange])


if __name__ == "__main__":
    isolate()
    BUILD = sys.argv.pop(1)
    unittest.main(verbosity=2)
