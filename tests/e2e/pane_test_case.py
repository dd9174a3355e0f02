"""What the tests of the whole pane have in common: a desktop with one trackball, its settings and its record."""
import pathlib
import plistlib
import struct
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from desktop import Desktop, wait_until  # noqa: E402
from window import Window  # noqa: E402

PRODUCT = 0x2041
VERSION = 0x107
TRACKBALL = "A1D0:2041:0107"
ACTIONS = 16  # where they start in the record
ACTION = struct.Struct("=HHHI")

MAIN = "Veltrix"
EDITOR = "Button Assignment"


def note(name):
    """An action of the window manager that leaves a trace of each time it ran."""
    return f'<action name="Execute"><command>sh -c "echo >> $HOME/{name}"</command></action>'


KEYS_OF_THE_DESKTOP = {"A-Tab": note("alt-tab"), "W-e": note("meta-e"), "A-F4": '<action name="Close"/>'}


class PaneTestCase(unittest.TestCase):
    build = ""

    def setUp(self):
        self.desktop = Desktop(self.build, window_manager=True, accessibility=True, key_bindings=KEYS_OF_THE_DESKTOP)
        self.desktop.__enter__()
        self.addCleanup(self.desktop.__exit__, None, None, None)

    def open_window(self, *options, may_jump=True):
        """`may_jump` is what the helper says of moving the pointer from the first time that it is asked."""
        self.desktop.start_helper(TRACKBALL)
        if not may_jump:
            self.desktop.simulation("SetAccessibility", False)
        window = Window(self.desktop, *options)
        wait_until(lambda: window.shown("page tab", "Pointer"), "the pages of a connected trackball")
        window.wait_for_window(MAIN)
        return window

    def factory_document(self):
        return plistlib.loads((self.desktop.build / "lib/veltrix/DefaultSettings.plist").read_bytes())

    def document(self):
        """The settings file; None before there is one."""
        try:
            return plistlib.loads(self.desktop.settings_file.read_bytes())
        except FileNotFoundError:
            return None

    def write_document(self, document):
        self.desktop.settings_file.parent.mkdir(parents=True, exist_ok=True)
        self.desktop.settings_file.write_bytes(plistlib.dumps(document))

    @staticmethod
    def entry(document):
        return next(one for one in document["devices"] if one["device product id"] == PRODUCT and
                    one["device version min"] <= VERSION and
                    (one["device version max"] == 0 or VERSION <= one["device version max"]))

    def saved_action(self, button):
        """What the file says about a button, empty before there is a file."""
        document = self.document()
        return self.entry(document)["buttons"].get(f"{button:02}", {}) if document else {}

    def wait_for_saved(self, button, **expected):
        def saved():
            action = self.saved_action(button)
            return all(action.get(key) == value for key, value in expected.items())
        wait_until(saved, f"button {button} to be saved with {expected}; it is {self.saved_action(button)}")

    def held_action(self, button):
        """Command, modifiers and argument in the record that the helper holds."""
        record = bytes.fromhex(self.desktop.status()["Records"][0]["record"])
        self.assertEqual(len(record), 176)
        command, modifiers, argument, reserved = ACTION.unpack_from(record, ACTIONS + button * ACTION.size)
        self.assertEqual(reserved, 0)
        return command, modifiers, argument

    def wait_for_held(self, button, *expected):
        wait_until(lambda: self.held_action(button) == expected, f"{expected} in the record")

    def times_run(self, name):
        """How often the window manager has acted on a key of its own."""
        path = self.desktop.home / name
        return path.stat().st_size if path.exists() else 0
