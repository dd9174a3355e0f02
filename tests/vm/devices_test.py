"""How the driver stands to trackballs and keyboards that come, go, and do not behave."""
import pathlib
import time

import driver
import evdev
import link
import uhid
from case import PRODUCT, PRODUCT_VERSION, DriverCase
from evdev import BTN_MOUSE, EV_KEY, EV_REL, REL_X
from usb_gadget import GadgetTrackball
from waiting import wait_until

KEY_A = 30
HOLDS_KEY = {0: 1, 1: (10, 0, 0), 12: (20, 0, 3)}  # a click, the key A
PLUG_CYCLES, PLUGGED_AT_ONCE = 100, 5

LOOKS_AT_THE_CLOCK = True


class TrackballTest(DriverCase):
    def test_two_trackballs_share_what_they_hold(self):
        first = self.take()
        second = self.plug()
        self.link.expect_condition(link.TAKEN)
        pointer = self.driver.pointer
        first.press(0)
        self.wait_for(pointer, (EV_KEY, BTN_MOUSE, 1))
        second.press(0)
        second.report(x=4)  # of one trackball, what comes later comes out later
        self.wait_for(pointer, (EV_REL, REL_X, 4))
        first.release(0)
        first.report(x=2)
        self.wait_for(pointer, (EV_REL, REL_X, 2))
        second.release(0)
        self.wait_for(pointer, (EV_KEY, BTN_MOUSE, 0))

    def test_unplugged_trackball_holds_nothing(self):
        ball = self.take(link.record(HOLDS_KEY))
        ball.press(0, 1)
        self.wait_for(self.driver.pointer, (EV_KEY, BTN_MOUSE, 1))
        self.wait_for(self.driver.keyboard, (EV_KEY, KEY_A, 1))
        ball.unplug()
        self.link.expect_condition(link.DETACHED)
        self.assert_nothing_pressed()

    def test_trackball_with_a_held_button_is_taken_when_it_is_up(self):
        ball = self.plug()
        ball.press(2)
        self.connect().apply(link.record())
        self.link.expect_condition(link.WAITING)
        with evdev.Reader(ball.node) as reader:
            ball.report(x=1)
            self.wait_for(reader, (EV_REL, REL_X, 1))
        ball.release(2)
        self.link.expect_condition(link.TAKEN)

    def test_rival_is_reported_and_outlasted(self):
        ball = self.plug()
        with evdev.Reader(ball.node) as rival:
            self.assertTrue(rival.grab())
            self.connect().apply(link.record())
            state = self.link.expect_condition(link.BUSY)
            self.assertNotEqual(state.error, 0)
            time.sleep(0.5)  # so that it has tried again in vain
            states = [each for each in self.link.received if isinstance(each, link.DeviceState)]
            self.assertFalse([each for each in states if each.condition == link.TAKEN])
        self.link.expect_condition(link.TAKEN)
        with evdev.Reader(ball.node) as late:
            self.assertFalse(late.grab())

    def test_lost_events_leave_no_button_behind(self):
        ball = self.take(link.record({0: 1, 1: 2, 2: 3, 12: (20, 0, 3)}))
        ball.press(0)
        self.wait_for(self.driver.pointer, (EV_KEY, BTN_MOUSE, 1))
        self.driver.pause()
        ball.release(0)
        ball.press(1)
        for step in range(2000):
            ball.report(x=1 + step % 2, y=1)
        self.driver.go_on()
        pointer = self.driver.pointer
        wait_until(lambda: pointer.pressed() == [BTN_MOUSE + 1], "the state of the buttons")
        ball.release(1)
        self.assert_nothing_pressed()
        pointer.events()
        ball.press(0)
        self.wait_for(pointer, (EV_KEY, BTN_MOUSE, 1))

    def test_plugging_leaks_nothing(self):
        self.connect().apply(link.record())
        before = None
        for cycle in range(PLUG_CYCLES):
            balls = [uhid.Trackball(PRODUCT, PRODUCT_VERSION) for _ in range(PLUGGED_AT_ONCE)]
            for _ in balls:
                self.link.expect_condition(link.TAKEN)
            balls[cycle % len(balls)].press(0)
            for ball in balls:
                ball.unplug()
            for _ in balls:
                self.link.expect_condition(link.DETACHED)
            if cycle == 4:
                before = self.driver.descriptors()
        self.assertEqual(self.driver.descriptors(), before)
        self.assert_nothing_pressed()

    def test_driver_that_is_stopped_says_so_and_leaves_a_plain_mouse(self):
        ball = self.take()
        ball.press(0)
        self.wait_for(self.driver.pointer, (EV_KEY, BTN_MOUSE, 1))
        self.assert_plain_after(self.driver.process.terminate, ball)
        self.link.expect_status(link.STOPPING)
        self.link.expect_end()
        self.assertEqual(self.driver.process.wait(timeout=5), 0)


class KeyboardTest(DriverCase):
    def wake_ups(self):
        text = pathlib.Path(f"/proc/{self.driver.process.pid}/status").read_text()
        return int(next(line.split()[1] for line in text.splitlines() if line.startswith("voluntary_ctxt_switches")))

    def settled_wake_ups(self):
        """How often it has slept, once it sleeps."""
        def unchanged():
            before = self.wake_ups()
            time.sleep(0.1)
            return before if self.wake_ups() == before else None
        return wait_until(unchanged, "the driver to sleep")

    def test_only_modifier_keys_reach_the_driver(self):
        keyboard = self.enterContext(uhid.Keyboard())
        ball = self.take(link.record(speed=20, acceleration=0, slow=2048 >> 8))
        pointer = self.driver.pointer
        ball.report(x=8)
        moved = pointer.read(1)
        with evdev.Reader(keyboard.node) as typed:
            before = self.settled_wake_ups()
            for usage in range(0x04, 0x1E):
                keyboard.press(usage)
                keyboard.release(usage)
                self.assertEqual(len(typed.read(2)), 2)
            self.assertEqual(self.wake_ups(), before)
            keyboard.press(0xE2)
            typed.read(1)
            wait_until(lambda: self.wake_ups() > before, "the driver to learn of the modifier key")
        ball.report(x=32)
        self.wait_for(pointer, moved[0])
        keyboard.release(0xE2)


class TypingTest(DriverCase):
    """A text is stopped by the keyboard of the person, by a word of the helper's, and by nothing else."""
    STEPS = [(KEY_A, down) for _ in range(link.MOST_KEY_STEPS // 2) for down in (1, 0)]

    def setUp(self):
        super().setUp()
        self.keyboard = self.enterContext(uhid.Keyboard())
        self.ball = self.take(link.record({0: 1, 1: (10, 0, 1)}))  # a click, the key S

    def begin(self, stoppable=True, interval=20):
        self.link.type_keys(1, self.STEPS, interval=interval, stoppable=stoppable)
        self.link.type_keys(2, self.STEPS, interval=interval, stoppable=stoppable)
        self.wait_for(self.driver.keyboard, (EV_KEY, KEY_A, 1))

    def expect_stop(self):
        first, second = self.link.expect_typed(1), self.link.expect_typed(2)
        self.assertEqual((first.outcome, second.outcome), (link.STOPPED, link.STOPPED))
        self.assertLess(first.count, len(self.STEPS))
        self.assertEqual(second.count, 0)
        self.assert_nothing_pressed()

    def test_any_key_of_a_keyboard_stops_a_text(self):
        self.begin()
        self.keyboard.press(0x1B)
        self.expect_stop()

    def test_key_that_was_down_stops_a_text_only_when_it_comes_again(self):
        with evdev.Reader(self.keyboard.node) as typed:
            self.keyboard.press(0x1B)
            typed.read(1)
        self.begin()
        self.keyboard.release(0x1B)
        time.sleep(0.1)  # some steps that could be stopped
        self.assertFalse(self.link.take())
        self.keyboard.press(0x1B)
        self.expect_stop()

    def test_text_does_not_begin_with_a_modifier_key_held(self):
        with evdev.Reader(self.keyboard.node) as typed:
            self.keyboard.press(0xE0)
            typed.read(1)
        self.link.type_keys(1, self.STEPS, stoppable=True)
        answer = self.link.expect_typed(1)
        self.assertEqual((answer.count, answer.outcome), (0, link.STOPPED))

    def test_keyboard_that_comes_meanwhile_counts(self):
        self.begin(interval=100)
        late = self.enterContext(uhid.Keyboard("Late Keyboard"))
        wait_until(lambda: late.node in self.driver.open_files(), "the driver to know of the keyboard")
        late.press(0x1B)
        self.expect_stop()

    def test_helper_stops_a_text(self):
        self.begin()
        self.link.stop_typing()
        self.expect_stop()

    def test_keys_of_a_shortcut_are_not_stopped(self):
        self.link.type_keys(1, self.STEPS, interval=5)
        self.wait_for(self.driver.keyboard, (EV_KEY, KEY_A, 1))
        self.keyboard.press(0x1B)
        answer = self.link.expect_typed(1)
        self.assertEqual((answer.count, answer.outcome), (len(self.STEPS), link.TYPED))

    def test_trackballs_button_that_holds_a_key_stops_nothing(self):
        self.begin()
        self.ball.press(1)
        self.ball.release(1)
        answer = self.link.expect_typed(1)
        self.assertEqual(answer.outcome, link.TYPED)


class LampsTest(DriverCase):
    """What a desktop lights on the driver's keyboard reaches the helper."""

    def setUp(self):
        super().setUp()
        self.listen()
        self.node = evdev.nodes(driver.KEYBOARD)[0]
        self.connect()

    def light(self, lamp, lit):
        evdev.light(self.node, lamp, lit)

    def expect_lamps(self, lit, among):
        self.link.expect(lambda each: isinstance(each, link.Lamps) and each.lit & among == lit,
                         f"lamps {lit} of {among}")

    def test_each_change_is_told(self):
        for lit in (1, 0, 1):
            self.light(evdev.LED_CAPSL, lit)
            self.expect_lamps(link.CAPS_LOCK_LAMP * lit, link.CAPS_LOCK_LAMP)
        for lit in (0, 1, 0):  # the console may have lit it
            self.light(evdev.LED_NUML, lit)
        self.expect_lamps(link.CAPS_LOCK_LAMP | link.NUM_LOCK_LAMP, link.CAPS_LOCK_LAMP | link.NUM_LOCK_LAMP)
        self.expect_lamps(link.CAPS_LOCK_LAMP, link.CAPS_LOCK_LAMP | link.NUM_LOCK_LAMP)

    def test_next_helper_hears_of_what_is_lit(self):
        self.light(evdev.LED_CAPSL, 1)
        self.expect_lamps(link.CAPS_LOCK_LAMP, link.CAPS_LOCK_LAMP)
        self.link.close()
        self.connect()
        self.expect_lamps(link.CAPS_LOCK_LAMP, link.CAPS_LOCK_LAMP)


class UsbTest(DriverCase):
    def test_trackball_on_a_usb_bus_is_known_by_its_own_version(self):
        ball = GadgetTrackball(PRODUCT, 0x0212)
        with evdev.Reader(ball.node) as reader:
            self.assertNotEqual(reader.identity()[3], 0x0212)  # the input device has another one
        self.connect()
        state = self.link.expect_condition(link.LEFT_ALONE)
        self.assertEqual((state.vendor, state.product, state.productVersion), (uhid.VENDOR, PRODUCT, 0x020C))
        self.link.apply(link.record(), PRODUCT, 0x0212)
        self.link.apply(link.record(HOLDS_KEY), PRODUCT, 0x020C)
        self.link.expect_condition(link.TAKEN)
        pointer, keyboard = self.listen()
        for _ in range(5):
            ball.press(0)
            self.wait_for(pointer, (EV_KEY, BTN_MOUSE, 1))
            ball.press(1)
            self.wait_for(keyboard, (EV_KEY, KEY_A, 1))
            ball.unplug()
            self.wait_for(keyboard, (EV_KEY, KEY_A, 0))
            self.wait_for(pointer, (EV_KEY, BTN_MOUSE, 0))
            self.link.expect_condition(link.DETACHED)
            ball.plug()
            self.link.expect_condition(link.TAKEN)
