"""From a click in the window to the key that the trackball's button then types; and what is left when parts of that end."""
import os
import pathlib
import random
import signal
import subprocess
import sys
import time

TESTS = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(TESTS / "support"), str(TESTS / "e2e")]

# An emulated desktop is slow.
os.environ["VELTRIX_WAIT_SECONDS"] = "90"

import driver  # noqa: E402
import evdev  # noqa: E402
import seat  # noqa: E402
from case import PRODUCT, PRODUCT_VERSION, PlainMouse  # noqa: E402
from evdev import EV_KEY, EV_REL  # noqa: E402
from pane_test_case import PaneTestCase  # noqa: E402
from usb_gadget import GadgetTrackball  # noqa: E402
from waiting import wait_until  # noqa: E402
from window import Window  # noqa: E402

KEY_LEFTCTRL, KEY_LEFTALT, KEY_T = 29, 56, 20
ROUNDS_WITH_HELPER, ROUNDS_WITH_DRIVER, ROUNDS_WITH_PANE = 20, 6, 6
REPORTS_WITH_HUNG_HELPER = 100

LOOKS_AT_THE_CLOCK = True


class ChainTest(PlainMouse, PaneTestCase):
    build = os.environ["VELTRIX_BUILD"]

    @classmethod
    def setUpClass(cls):
        cls.ball = GadgetTrackball(PRODUCT, PRODUCT_VERSION)  # the helper looks for devices on a USB bus

    def setUp(self):
        seat.set_active_user(os.getuid())
        self.ball.release(*range(8))  # what a failed test may have left held
        self.driver = self.enterContext(driver.Driver())
        super().setUp()

    def is_taken(self):
        """Whether a movement comes out of the driver; looks for nothing else, as a try to grab would be in its way."""
        self.driver.pointer.events()
        self.ball.report(x=1)
        return self.driver.pointer.read(1, seconds=0.1) != []

    def wait_for_taken(self):
        wait_until(self.is_taken, "the driver to take the trackball", seconds=30)

    def choose_keystroke(self, window):
        """For button 2, by clicks; keys lead on where looking for places to click would take minutes here."""
        window.click("combo box", label="Button 2")
        window.click("list item", "Edit Assignment…")
        window.wait_for_focus("the commands", lambda control: control["name"] == "Commands of the category")
        window.key("Left")
        window.wait_for_focus("the categories", lambda control: control["name"] == "Categories of commands")
        window.key("k")
        window.key("Right")
        window.wait_for_focus("the commands", lambda control: control["name"] == "Commands of the category")
        window.key("Home")
        window.key("Tab")
        window.wait_for_focus("the label", lambda control: "Label:" in control["labels"])
        window.key("Tab")
        window.wait_for_focus("the keystroke field", lambda control: "Keystroke:" in control["labels"])
        window.key("ctrl+alt+t")
        window.key("Shift_L", "Shift_L")  # leads out of the field
        window.wait_for_focus("what follows the field", lambda control: "Keystroke:" not in control["labels"])
        window.key("Return")
        self.wait_for_saved(1, cmd=10, key=17)

    def test_click_in_the_window_changes_what_the_button_types(self):
        self.desktop.start_helper()
        self.wait_for_taken()
        window = Window(self.desktop)
        self.choose_keystroke(window)
        wait_until(lambda: self.held_action(1)[0] == 10, "the helper to hold the keystroke", seconds=30)
        keys = [KEY_LEFTCTRL, KEY_LEFTALT, KEY_T]
        self.driver.keyboard.events()
        self.ball.press(1)
        self.assertCountEqual(self.driver.keyboard.read(3), [(EV_KEY, key, 1) for key in keys])
        self.ball.release(1)
        self.assertCountEqual(self.driver.keyboard.read(3), [(EV_KEY, key, 0) for key in keys])

    def press_some(self, chance):
        held = [button for button in range(4) if chance.random() < 0.6]
        if held:
            self.ball.press(*held)
        time.sleep(chance.random() * 0.05)
        return held

    def release_all(self, held):
        if held:
            self.ball.release(*held)

    def helper_pid(self):
        return self.desktop.owner_of("com.aldmoor.VeltrixHelper")

    def test_killed_helper_leaves_a_plain_mouse_and_is_followed_by_another(self):
        chance = random.Random(5)
        first = self.desktop.start([self.desktop.helper_program])
        for _ in range(ROUNDS_WITH_HELPER):
            self.wait_for_taken()
            pid = wait_until(self.helper_pid, "a helper", seconds=30)
            held = self.press_some(chance)
            self.assert_plain_after(lambda: os.kill(int(pid), signal.SIGKILL), self.ball)
            first.poll()
            for reader in (self.driver.pointer, self.driver.keyboard):
                wait_until(lambda: reader.pressed() == [], "the release of all keys and buttons")
            self.release_all(held)
        self.wait_for_taken()
        os.kill(int(self.helper_pid()), signal.SIGTERM)
        wait_until(lambda: self.helper_pid() is None, "the last helper to end")

    def test_killed_driver_is_found_again_by_the_helper(self):
        chance = random.Random(6)
        self.desktop.start([self.desktop.helper_program])
        for _ in range(ROUNDS_WITH_DRIVER):
            self.wait_for_taken()
            held = self.press_some(chance)
            self.assert_plain_after(self.driver.kill, self.ball)
            self.driver.restart()
            self.release_all(held)
        self.wait_for_taken()

    def test_hung_helper_does_not_stop_the_events(self):
        helper = self.desktop.start([self.desktop.helper_program, "--no-keeper"])
        self.wait_for_taken()
        self.driver.pointer.events()
        helper.send_signal(signal.SIGSTOP)
        try:
            for _ in range(REPORTS_WITH_HUNG_HELPER):
                self.ball.press(0)
                self.assertEqual(self.driver.pointer.read(1), [(EV_KEY, evdev.BTN_MOUSE, 1)])
                self.ball.report(x=1)
                [(kind, axis, distance)] = self.driver.pointer.read(1)
                self.assertEqual((kind, axis), (EV_REL, evdev.REL_X))
                self.assertIn(distance, (1, 2))  # acceleration carries parts of a step along
                self.ball.release(0)
                self.assertEqual(self.driver.pointer.read(1), [(EV_KEY, evdev.BTN_MOUSE, 0)])
        finally:
            helper.send_signal(signal.SIGCONT)
        wait_until(lambda: self.desktop.status() is not None, "the helper to answer again", seconds=30)
        self.assertEqual(self.desktop.status()["DriverState"], "connected")

    def test_killed_window_changes_nothing(self):
        self.desktop.start([self.desktop.helper_program])
        self.wait_for_taken()
        for number in range(ROUNDS_WITH_PANE):
            window = self.desktop.start_window(stderr=subprocess.DEVNULL)
            time.sleep(random.Random(number).random() * 4)
            self.driver.pointer.events()
            self.ball.press(0)
            self.assertEqual(self.driver.pointer.read(1), [(EV_KEY, evdev.BTN_MOUSE, 1)])
            window.kill()
            window.wait()
            self.ball.report(x=1)
            self.assertEqual(self.driver.pointer.read(1), [(EV_REL, evdev.REL_X, 1)])
            self.ball.release(0)
            self.assertEqual(self.driver.pointer.read(1), [(EV_KEY, evdev.BTN_MOUSE, 0)])
