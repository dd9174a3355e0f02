"""What tests with a driver, a connection of their own to it and trackballs have in common."""
import subprocess
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
PLAIN_AT_LAST_SECONDS = 2
# One round in ten may take longer: a busy host stops the emulated machine for a while now and then. A few rounds prove
# no more than that the trackball comes back at all.
ENOUGH_ROUNDS = 10


def slowness_of_host(pieces=400):
    """How much longer work takes than if the host gave the machine all its time: 1 on a quiet host."""
    subprocess.run(["udevadm", "settle", "-t", "10"], check=False)  # nothing else is to run in the machine itself
    times = []
    for _ in range(pieces):
        began = time.monotonic()
        sum(range(3000))
        times.append(time.monotonic() - began)
    return sum(times) / pieces / min(times)


class PlainMouse:
    """For test cases in which trackballs become ordinary mice again."""

    def assert_plain_after(self, end, ball):
        """Others hear the trackball in time after `end`, which is called."""
        with evdev.Reader(ball.node) as reader:
            self.assertEqual(reader.events(), [])
            began = time.monotonic()
            end()

            def heard():
                ball.report(x=1)
                return reader.events()
            heard_at = wait_until(heard, "the trackball as a plain mouse", PLAIN_AT_LAST_SECONDS)[0][0]
        if not hasattr(self, "_delays"):
            self._delays = []
            self.addCleanup(self._assert_in_time)
        self._delays.append(heard_at - began)

    def _assert_in_time(self):
        delays, slowness = sorted(self._delays), slowness_of_host()
        print(f"plain after {delays[len(delays) // 2] * 1000:.0f} ms, at most {delays[-1] * 1000:.0f}, on a host that is "
              f"{slowness:.1f} times slower", end=" ... ", flush=True)
        if len(delays) >= ENOUGH_ROUNDS:
            self.assertLess(delays[len(delays) * 9 // 10], PLAIN_WITHIN_SECONDS * slowness)


class DriverCase(PlainMouse, unittest.TestCase):
    """Each test has a driver of its own; the superuser is at the screen."""

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
