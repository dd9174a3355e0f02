"""The driver and its helper end at any moment, with buttons held: nothing stays down, and everything comes back."""
import random
import time

import evdev
import link
from case import DriverCase

# A click, the key A, drag lock, the key S with a modifier key, a wheel.
ACTIONS = {0: 1, 1: (10, 0, 0), 2: 7, 3: (10, 256, 1), 12: (20, 0, 3)}
ROUNDS_WITH_DRIVER, ROUNDS_WITH_HELPER = 65, 105

LOOKS_AT_THE_CLOCK = True


class KillTest(DriverCase):
    def setUp(self):
        super().setUp()
        self.chance = random.Random(4)
        self.ball = self.take(link.record(ACTIONS))

    def hold_some(self):
        """Buttons are down and up, and events are on their way."""
        held = [button for button in range(4) if self.chance.random() < 0.6]
        for button in held:
            self.ball.press(button)
            self.ball.report(x=self.chance.randint(-9, 9), wheel=self.chance.randint(-1, 1))
        time.sleep(self.chance.random() * 0.03)
        return held

    def be_taken_again(self, held):
        self.link = link.Link()
        self.addCleanup(self.link.close)
        self.link.expect_status(link.ACCEPTED)
        self.link.apply(link.record(ACTIONS))
        if held:
            self.link.expect_condition(link.WAITING)
            self.ball.release(*held)
        self.link.expect_condition(link.TAKEN)
        self.assertEqual(self.driver.pointer.pressed(), [])
        self.assertEqual(self.driver.keyboard.pressed(), [])
        self.ball.press(1)
        self.assertEqual(self.driver.keyboard.read(1), [(evdev.EV_KEY, 30, 1)])
        self.ball.release(1)
        self.assertEqual(self.driver.keyboard.read(1), [(evdev.EV_KEY, 30, 0)])

    def test_killed_driver(self):
        for _ in range(ROUNDS_WITH_DRIVER):
            held = self.hold_some()
            self.assert_plain_after(self.driver.kill, self.ball)
            self.driver.restart()
            self.link.close()
            self.be_taken_again(held)

    def test_killed_helper(self):
        for _ in range(ROUNDS_WITH_HELPER):
            held = self.hold_some()
            self.assert_plain_after(self.link.close, self.ball)
            self.assert_nothing_pressed()
            self.driver.pointer.events()
            self.driver.keyboard.events()
            self.be_taken_again(held)
