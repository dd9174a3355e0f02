"""From a trackball's button to the keys that are typed for it, and to what else its command does."""
import os
import pathlib
import plistlib
import signal
import sys
import unittest

TESTS = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(TESTS / "support"), str(TESTS / "e2e/commands")]

# An emulated desktop is slow.
os.environ["VELTRIX_WAIT_SECONDS"] = "90"

import driver  # noqa: E402
import evdev  # noqa: E402
import seat  # noqa: E402
import uhid  # noqa: E402
from case import PRODUCT, PRODUCT_VERSION  # noqa: E402
from desktop import Desktop  # noqa: E402
from evdev import EV_KEY  # noqa: E402
from layout_texts import LAYOUTS  # noqa: E402
from trackball_desk import entry  # noqa: E402
from us_keyboard import TypedText  # noqa: E402
from usb_gadget import GadgetTrackball  # noqa: E402
from waiting import wait_until  # noqa: E402

KEY_LEFTCTRL, KEY_I, KEY_C = 29, 23, 46
USAGE_OF_S = 0x16
# Long enough for anything that is under way in the machine to show.
QUIET_SECONDS = 0.5

SENTENCE, SIGNS, LONG, COPY, SCRIPT, ITEM = range(1, 7)  # what the buttons do
LONG_TEXT = ("".join(chr(ord("a") + number % 26) for number in range(49)).title() + "\n") * 20
SNIPPETS = [*LAYOUTS["us"], LONG_TEXT]
ACTIONS = {SENTENCE: 180, SIGNS: 181, LONG: 182, COPY: 35,
           SCRIPT: {"cmd": 73, "str": '#!/bin/sh\nprintf %s "$PWD" > script.ran\n'},
           ITEM: {"cmd": 70, "str": "~/a $(touch harm) note.txt"}}
OPENER = """[Desktop Entry]
Type=Application
Name=Opener
Exec=/bin/sh {home}/opener %f
MimeType=text/plain;
"""


class CommandsTest(unittest.TestCase):
    """All tests have one desktop and one driver, because an emulated machine takes long to start them."""

    @classmethod
    def setUpClass(cls):
        cls.ball = GadgetTrackball(PRODUCT, PRODUCT_VERSION)  # the helper looks for devices on a USB bus
        seat.set_active_user(os.getuid())
        cls.driver = cls.enterClassContext(driver.Driver())
        cls.desktop = cls.enterClassContext(Desktop(os.environ["VELTRIX_BUILD"]))
        cls.write_settings()
        cls.set_layout("us")
        cls.addClassCleanup(cls.end_helper)
        cls.helper = cls.desktop.start([cls.desktop.helper_program])

    def setUp(self):
        status = wait_until(self.status_when_taken, "the trackball to work by its record", seconds=60)
        self.earlier = self.problems(status)
        self.typed = TypedText(self.driver.keyboard)
        self.addCleanup(self.calm_down)

    def calm_down(self):
        """Leaves nothing of a failed test to the next one."""
        self.ball.release(*range(8))
        while self.driver.keyboard.read(1, QUIET_SECONDS):
            pass

    @classmethod
    def write_settings(cls):
        settings = {"version": 2, "devices": [entry(ACTIONS)],
                    "snippets": [{"name": text[:5], "text": text} for text in SNIPPETS]}
        cls.desktop.settings_file.parent.mkdir(parents=True)
        cls.desktop.settings_file.write_bytes(plistlib.dumps(settings))

    @classmethod
    def helper_pid(cls):
        return cls.desktop.owner_of("com.aldmoor.VeltrixHelper")

    @classmethod
    def end_helper(cls):
        """Also one that has followed another, of which the desktop does not know."""
        if pid := cls.helper_pid():
            os.kill(int(pid), signal.SIGTERM)
            wait_until(lambda: cls.helper_pid() is None, "the helper to end", seconds=30)

    @classmethod
    def set_layout(cls, name, variant=""):
        done = cls.desktop.run(["setxkbmap", "-layout", name, "-variant", variant])
        assert done.returncode == 0, done.stderr

    def status_when_taken(self):
        status = self.desktop.status()
        taken = status and any(device["condition"] == "taken" for device in status["DriverDevices"])
        return status if taken else None

    def problems(self, status=None):
        """What the helper tells of commands that failed."""
        return [(problem["command"], problem["reason"])
                for problem in (status or self.desktop.status())["CommandProblems"]]

    def assert_no_new_problems(self):
        self.assertEqual(self.problems(), self.earlier)

    def click(self, button):
        self.ball.press(button)
        self.ball.release(button)

    def begin_long_text(self):
        self.click(LONG)
        self.typed.wait_for(20)

    def assert_cut_off(self):
        """The text has ended before its end, and no key is down."""
        text = self.typed.follow(QUIET_SECONDS)
        self.assertTrue(text and LONG_TEXT.startswith(text), text)
        self.assertLess(len(text), len(LONG_TEXT) // 2)
        self.assertEqual(self.typed.held, set())
        self.assertEqual(self.driver.keyboard.pressed(), [])

    def test_text_is_typed_key_by_key(self):
        wanted = ""
        for button, text in ((SENTENCE, SNIPPETS[0]), (SIGNS, SNIPPETS[1]), (LONG, SNIPPETS[2])):
            self.click(button)
            wanted += text
            self.assertEqual(self.typed.wait_for(len(wanted)), wanted)
        self.assertEqual(self.typed.follow(QUIET_SECONDS), wanted)
        self.assert_no_new_problems()

    def test_text_is_the_same_with_caps_lock(self):
        node = evdev.nodes(driver.KEYBOARD)[0]
        wanted = ""
        for lit in (1, 0):
            evdev.light(node, evdev.LED_CAPSL, lit)
            self.typed.has_caps_lock = bool(lit)
            for button, text in ((SENTENCE, SNIPPETS[0]), (SIGNS, SNIPPETS[1])):
                self.click(button)
                wanted += text
                self.assertEqual(self.typed.wait_for(len(wanted)), wanted)
        self.assert_no_new_problems()

    def test_copy_is_held_with_the_button_wherever_the_layout_has_it(self):
        self.addCleanup(self.set_layout, "us")
        for layout, key in ((("us", ""), KEY_C), (("us", "dvorak"), KEY_I)):
            self.set_layout(*layout)
            self.ball.press(COPY)
            self.assertEqual(self.driver.keyboard.read(2), [(EV_KEY, KEY_LEFTCTRL, 1), (EV_KEY, key, 1)])
            self.assertEqual(self.driver.keyboard.read(1, QUIET_SECONDS), [])
            self.ball.release(COPY)
            self.assertEqual(self.driver.keyboard.read(2), [(EV_KEY, key, 0), (EV_KEY, KEY_LEFTCTRL, 0)])
        self.assert_no_new_problems()

    def wait_for_file(self, name):
        path = self.desktop.home / name
        wait_until(lambda: path.exists() and path.read_text(), f"the file {name}", seconds=30)
        return path.read_text()

    def test_script_runs_in_the_home_folder(self):
        self.click(SCRIPT)
        self.assertEqual(self.wait_for_file("script.ran"), str(self.desktop.home))
        self.assert_no_new_problems()

    def test_item_is_opened_by_the_application_for_its_type(self):
        home = self.desktop.home
        item = ACTIONS[ITEM]["str"].replace("~", str(home))
        pathlib.Path(item).write_text("Some words.\n")
        (home / "opener").write_text('printf %s "$1" > "$HOME/item.opened"\n')
        applications = home / ".local/share/applications"
        applications.mkdir(parents=True)
        (applications / "opener.desktop").write_text(OPENER.format(home=home))
        (home / ".config").mkdir(exist_ok=True)
        (home / ".config/mimeapps.list").write_text("[Default Applications]\ntext/plain=opener.desktop\n")
        self.click(ITEM)
        self.assertEqual(self.wait_for_file("item.opened"), item)
        self.assert_no_new_problems()
        self.assertEqual(list(home.rglob("harm")), [])

    def test_killed_helper_leaves_no_key_down_and_the_next_one_types_the_whole_text(self):
        killed = self.helper_pid()
        self.begin_long_text()
        os.kill(int(killed), signal.SIGKILL)
        self.assert_cut_off()
        self.helper.wait()
        wait_until(self.status_when_taken, "the trackball to work by its record again", seconds=60)
        self.assertNotEqual(self.helper_pid(), killed)
        self.typed = TypedText(self.driver.keyboard)
        self.click(LONG)
        self.assertEqual(self.typed.wait_for(len(LONG_TEXT)), LONG_TEXT)

    def test_key_of_a_keyboard_stops_the_text(self):
        keyboard = self.enterContext(uhid.Keyboard())
        self.assertTrue(keyboard.node)
        self.begin_long_text()
        keyboard.press(USAGE_OF_S)
        self.assert_cut_off()
        wait_until(lambda: self.problems() != self.earlier, "the helper to tell", seconds=30)
        self.assertEqual(self.problems(), [*self.earlier, (182, "a key of the keyboard stopped the typing")])
        keyboard.release(USAGE_OF_S)
        self.typed = TypedText(self.driver.keyboard)
        self.click(SENTENCE)
        self.assertEqual(self.typed.wait_for(len(SNIPPETS[0])), SNIPPETS[0])
