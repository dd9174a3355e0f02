#!/usr/bin/env python3
"""Prints for each source of input in GNOME's Wayland session whether texts are typed by it once it is on.

usage: gnome_group_check.py BUILD_DIR

Needs what gnome_check.py needs but the sound server, and ibus, without which the shell does not say what is on.
"""
import json
import pathlib
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from gnome_session import GnomeSession, Trackball, wait_until  # noqa: E402
from desktop import isolate  # noqa: E402
from trackball_desk import Lines  # noqa: E402

SCHEMA = "org.gnome.desktop.input-sources"
MANAGER = "imports.ui.status.keyboard.getInputSourceManager()"
SLOTS = (2, 3, 4, 5, 6)
# What only one of the layouts types at all, so that a wrong group is not taken for the right one.
TEXTS = {"us": "yz;'[]", "de": "yzöäß", "ru": "яйцо", "fr": "azqwéè", "gr": "αβγ"}


class Reader:
    """The editor of the tests, as a program of the Wayland session."""

    def __init__(self, session):
        process = session.desktop.start(
            ["env", "QT_QPA_PLATFORM=wayland", session.desktop.build / "tests/e2e/commands/text_reader"],
            stdout=subprocess.PIPE, stderr=session.log, text=True)
        self.lines = Lines(process.stdout)
        self.lines.wait_for(lambda line: line == "focus", "the editor to have the keys")
        self.text = ""

    def reads(self, text):
        """Whether that comes after all that has come before."""
        def take(line):
            if line.startswith("text "):
                self.latest = json.loads(line[5:])[0]
            return self.latest == self.text + text
        self.latest = self.text
        try:
            self.lines.wait_for(take, "the text", seconds=8)
            return True
        except AssertionError:
            return False
        finally:
            self.text = self.latest


def main(build):
    slots = dict(zip(SLOTS, range(180, 180 + len(TEXTS))))
    with GnomeSession(build, "wayland") as session, Trackball(session, slots, TEXTS.values()) as trackball:
        reader = Reader(session)
        wait_until(lambda: trackball.click(SLOTS[0]) or reader.reads(TEXTS["us"]), "the window to get all of the keys")
        for layouts in (["us", "de", "ru"], list(TEXTS)):
            session.settings(SCHEMA, "sources", "[" + ", ".join(f"('xkb', '{name}')" for name in layouts) + "]")
            wait_until(lambda: session.script(f"Object.keys({MANAGER}.inputSources).length") == len(layouts), "the sources")
            for layout in [*layouts, *reversed(layouts)]:
                session.script(f"{MANAGER}.inputSources[{layouts.index(layout)}].activate(true)")
                time.sleep(1)  # as no person is quicker
                trackball.click(SLOTS[list(TEXTS).index(layout)])
                seen = reader.reads(TEXTS[layout])
                print(f"{layout} of {','.join(layouts)}: {'seen' if seen else 'not seen: ' + repr(reader.text)}",
                      trackball.problems() or "", flush=True)


if __name__ == "__main__":
    isolate()
    main(*sys.argv[1:])
