"""What the driver does when helpers and people do not behave."""
import os
import random
import struct

import evdev
import link
import seat
from case import PRODUCT, PRODUCT_VERSION, DriverCase
from evdev import BTN_MOUSE, EV_KEY, EV_REL, REL_X
from waiting import wait_until

KEY_A = 30
HOLDS_KEY = {0: 1, 1: (10, 0, 0), 12: (20, 0, 3)}  # a click, the key A
OTHER_USER = 4321

LOOKS_AT_THE_CLOCK = True


class HelperTest(DriverCase):
    def test_gone_helper_leaves_a_plain_mouse(self):
        ball = self.take(link.record(HOLDS_KEY))
        ball.press(0, 1)
        self.wait_for(self.driver.keyboard, (EV_KEY, KEY_A, 1))
        self.assert_plain_after(self.link.close, ball)
        self.assert_nothing_pressed()

    def test_typed_keys_are_released_with_the_connection(self):
        self.plug()
        self.connect().type_keys(7, [(KEY_A, 1), (KEY_A, 0), (KEY_A, 1)])
        done = self.link.expect(lambda each: isinstance(each, link.KeysTyped), "the keys to be typed")
        self.assertEqual((done.id, done.count, done.outcome), (7, 3, 0))
        self.assertEqual(self.driver.keyboard.pressed(), [KEY_A])
        self.link.close()
        self.assert_nothing_pressed()

    def test_pointer_moves_for_the_helper(self):
        self.take()
        pointer = self.driver.pointer
        self.link.move_pointer(-300, 0)
        self.wait_for(pointer, (EV_REL, REL_X, -300))

    def test_other_user_is_refused(self):
        seat.set_active_user(OTHER_USER)
        refused = self.enterContext(link.Link())
        refused.expect_status(link.NOT_THE_ACTIVE_USER)
        refused.expect_end()

    def test_user_who_leaves_the_screen_loses_the_trackball(self):
        ball = self.take()
        ball.press(0)
        self.assert_plain_after(lambda: seat.set_active_user(OTHER_USER), ball)
        self.link.expect_status(link.NOT_THE_ACTIVE_USER)
        self.link.expect_end()
        self.assert_nothing_pressed()
        os.seteuid(OTHER_USER)
        try:
            other = self.enterContext(link.Link())
        finally:
            os.seteuid(0)
        other.expect_status(link.ACCEPTED)

    def test_newer_helper_takes_the_place(self):
        self.take()
        newer = self.enterContext(link.Link())
        newer.expect_status(link.ACCEPTED)
        self.link.expect_status(link.REPLACED)
        self.link.expect_end()

    def test_broken_packets_end_the_connection(self):
        chance = random.Random(1)
        ball = self.plug()
        apply = struct.pack("=HHH2x", 0xA1D0, PRODUCT, PRODUCT_VERSION) + link.record() + bytes(20)
        own = link.VERSION
        broken = [(link.APPLY, apply, own + 1), (link.APPLY, apply[:-1], own), (link.APPLY, apply + b"\0", own),
                  (99, b"", own), (link.STATUS, bytes(28), own), (link.MONITOR, struct.pack("=I", 2), own),
                  (link.APPLY, bytes(4000), own)]
        broken += [(chance.randrange(1, 6), chance.randbytes(chance.randrange(1, 268)), own) for _ in range(20)]
        for kind, body, version in broken:
            with self.subTest(kind=kind, size=len(body), version=version), link.Link() as connection:
                connection.expect_status(link.ACCEPTED)
                connection.apply(link.record())
                connection.expect_condition(link.TAKEN)
                self.assert_plain_after(lambda: connection.send(kind, body, version), ball)
                connection.expect_status(link.BROKEN_RULE)
                connection.expect_end()

    def test_flood_of_packets_ends_the_connection(self):
        ball = self.take()
        with self.assertRaises((BrokenPipeError, ConnectionResetError)):
            for _ in range(100_000):
                self.link.move_pointer(1, 1)
        self.assert_plain_after(lambda: None, ball)
        self.connect().apply(link.record())
        self.link.expect_condition(link.TAKEN)

    def test_hung_helper_holds_nothing_up(self):
        ball = self.take()
        pointer = self.driver.pointer
        for _ in range(200):
            ball.press(0)
            ball.release(0)
            self.wait_for(pointer, (EV_KEY, BTN_MOUSE, 1), (EV_KEY, BTN_MOUSE, 0))

    def test_helper_that_does_not_listen_loses_the_connection(self):
        ball = self.take()
        self.link.monitor(1)
        with evdev.Reader(ball.node) as plain:
            def pressed():
                ball.press(0)
                ball.release(0)
                return plain.events()
            wait_until(pressed, "the trackball as a plain mouse", 60)
        self.assert_nothing_pressed()
        self.connect().apply(link.record())
        self.link.expect_condition(link.TAKEN)
