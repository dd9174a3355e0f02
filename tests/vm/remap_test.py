"""Every kind of trackball works by its record: what leaves the driver is what the engine says, event by event."""
import random
import tempfile
import time
import unittest

import driver
import entries
import evdev
import link
import seat
import uhid
from predictor import Predictor, of_keyboard, of_pointer

GENERATED = 20
FEWEST_EVENTS = 20 * GENERATED  # of one kind; otherwise next to nothing would have been compared
BUTTONS = 8
# A ball that lay still for so long has no speed left, so that what it does next depends on no clock.
STILL_SECONDS = 0.25
# What the engine does by itself within this time is waited for, the longest being a triple click of 190 ms; what comes
# later, as the repetition of a held button after 300 ms, belongs to the next step.
SOON_MICROSECONDS = 200_000


def now():
    return time.monotonic_ns() // 1000


class Play:
    """Moves one trackball and compares what comes out with the prediction."""

    def __init__(self, ball, predictor, outputs):
        self._ball, self._predictor, self._outputs = ball, predictor, outputs
        self._moved = 0
        self._owed = []
        self.steps = []
        self.compared = 0

    def apply(self, connection, record, scroll, product, version):
        connection.apply(record, product, version, scroll)
        return self._compare(self._predictor.apply(now(), record, scroll))

    def report(self, **what):
        buttons = {name: what.pop(name, ()) for name in ("pressed", "released")}
        if what:
            time.sleep(max(0.0, self._moved + STILL_SECONDS - time.monotonic()))
            self._moved = time.monotonic()
        self.steps.append({**what, **{name: value for name, value in buttons.items() if value}})
        predicted = self._predictor.frame(now(), **what, **buttons)
        if what:
            self._ball.report(**what)
        elif buttons["pressed"]:
            self._ball.press(*buttons["pressed"])
        else:
            self._ball.release(*buttons["released"])
        self._compare(predicted)

    def _compare(self, predicted):
        events, deadline = predicted
        self._owed += events
        began, expired = now(), False
        while deadline is not None and deadline - began < SOON_MICROSECONDS:
            more, deadline = self._predictor.until(deadline)
            self._owed += more
            expired = True
        # What a held button repeats must not begin while this looks on.
        if deadline is not None and not expired:
            return
        events, self._owed = self._owed, []
        self.compared += len(events)
        for reader, belongs in zip(self._outputs, (of_keyboard, of_pointer)):
            wanted = [event for event in events if belongs(event)]
            came = reader.read(len(wanted))
            if came != wanted:
                raise AssertionError(f"{came} instead of {wanted} after {self.steps}")


class RemapTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        seat.set_active_user(0)
        cls.driver = driver.Driver()
        cls.link = link.Link()
        cls.link.expect_status(link.ACCEPTED)
        cls.predictor = Predictor()

    @classmethod
    def tearDownClass(cls):
        cls.predictor.close()
        cls.link.close()
        cls.driver.stop()

    def play(self, play, chance):
        buttons = list(range(BUTTONS))
        chance.shuffle(buttons)
        play.report(x=chance.randint(-30, 30) or 1, y=chance.randint(-30, 30))
        for button in buttons:
            play.report(pressed=[button])
            play.report(released=[button])
        first, second = chance.sample(range(BUTTONS), 2)
        play.report(pressed=[first])
        play.report(pressed=[second])
        play.report(released=[first])
        play.report(released=[second])
        for chord in ((0, 1), (2, 3)):
            play.report(pressed=chord)
            play.report(released=chord)
        play.report(wheel=chance.choice((-1, 1)))
        play.report(x=chance.randint(-127, 127), y=chance.randint(-127, 127) or 1)

    def kind(self, index):
        factory = entries.factory_entries()[index]
        product, version = factory["device product id"], factory["device version min"] or 0x0100
        made = entries.entries_of(factory, GENERATED)
        with tempfile.TemporaryDirectory() as folder:
            records = entries.records_of(made, folder)
        with uhid.Trackball(product, version, BUTTONS) as ball:
            state = self.link.expect_condition(link.LEFT_ALONE, product=product, productVersion=version)
            scroll = entries.scroll_parameters(factory)
            self.link.apply(records[0], product, version, scroll)
            self.link.expect_condition(link.TAKEN, number=state.number)
            with evdev.Reader(ball.node) as rival:
                self.assertFalse(rival.grab(), "others can take it as well")
            outputs = (self.driver.keyboard, self.driver.pointer)
            self.predictor.model(product, now())
            play = Play(ball, self.predictor, outputs)
            for number, (entry, record) in enumerate(zip(made, records)):
                with self.subTest(product=hex(product), entry=number):
                    play.steps = []
                    play.apply(self.link, record, scroll, product, version)
                    self.play(play, random.Random(number))
                    for reader in outputs:
                        self.assertEqual(reader.read(1, seconds=0), [])
            print(f"{play.compared} events", end=" ... ", flush=True)
            self.assertGreater(play.compared, FEWEST_EVENTS)
            self.link.withdraw(product, version)
            self.link.expect_condition(link.LEFT_ALONE, number=state.number)
            for reader in outputs:
                reader.events()
                self.assertEqual(reader.pressed(), [])
            self.predictor.model(product, now())

    def test_crest(self):
        self.kind(0)

    def test_skiffline(self):
        self.kind(1)

    def test_skiffline_of_old(self):
        self.kind(2)

    def test_cirra(self):
        self.kind(3)

    def test_cirra_with_dial_rim(self):
        self.kind(4)

    def test_roaming_cirra(self):
        self.kind(5)
