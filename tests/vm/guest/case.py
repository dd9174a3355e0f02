"""What tests with a driver, a connection of their own to it and trackballs have in common."""
import time
import unittest

import driver
import evdev
import link
import seat
import uhid
from waiting import wait_until

PRODUCT, PRODUCT_VERSION = 0x2041, 0x0107
# How long a hand may find the trackball dead when whoever has it goes away.
PLAIN_WITHIN_SECONDS = 0.1


class DriverCase(unittest.TestCase):
    """Each test has a driver of its own; the superuser is at the screen."""

    def assert_plain_after(self, end, ball):
        assert_plain_after(self, end, ball)

    def setUp(self):
        seat.set_active_user(0)
        self.driver = self.enterContext(driver.Driver())
        self.link = None

    def connect(self):
        self.link = self.enterContext(link.Link())
        self.link.expect_status(link.ACCEPTED)
        return self.link

    def plug(self, **options):
        ball = self.enterContext(uhid.Trackball(PRODUCT, PRODUCT_VERSION, **options))
        self.assertTrue(ball.node)
        return ball

    def take(self, record=None, **options):
        """A trackball that works by the record, or one that clicks."""
        ball = self.plug(**options)
        if self.link is None:
            self.connect()
        self.link.apply(record or link.record())
        self.link.expect_condition(link.TAKEN)
        self.listen()
        return ball

    def listen(self):
        """From now on nothing that the driver gives out is missed."""
        return self.driver.pointer, self.driver.keyboard

    def wait_for(self, reader, *events):
        """Those events come next."""
        self.assertEqual(reader.read(len(events)), list(events))

    def assert_nothing_pressed(self):
        """What the driver gives out holds nothing down, as soon as it had the time to see to it."""
        for reader in (self.driver.pointer, self.driver.keyboard):
            wait_until(lambda: reader.pressed() == [], "the release of all keys and buttons")


def assert_plain_after(case, end, ball):
    """Others hear the trackball in time after `end`, which is called."""
    with evdev.Reader(ball.node) as reader:
        case.assertEqual(reader.events(), [])
        began = time.monotonic()
        end()

        def heard():
            ball.report(x=1)
            return reader.events()
        heard_at = wait_until(heard, "the trackball as a plain mouse")[0][0]
    case.assertLess(heard_at - began, PLAIN_WITHIN_SECONDS)
