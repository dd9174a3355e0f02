"""The emulated machine itself: its devices are those that the other tests take them for."""
import unittest

import evdev
import uhid
from evdev import BTN_MOUSE, EV_KEY, EV_REL, REL_HWHEEL, REL_HWHEEL_HI_RES, REL_WHEEL, REL_WHEEL_HI_RES, REL_X, REL_Y


class MachineTest(unittest.TestCase):
    def test_trackball_is_what_was_asked_for(self):
        with uhid.Trackball(product=0x1020, version=0x0100, buttons=4) as ball, evdev.Reader(ball.node) as reader:
            self.assertEqual(reader.identity(), (3, 0xA1D0, 0x1020, 0x0100))

    def test_reports_become_events(self):
        with uhid.Trackball(buttons=16) as ball, evdev.Reader(ball.node) as reader:
            ball.report(x=3, y=-5)
            self.assertEqual(reader.read(2), [(EV_REL, REL_X, 3), (EV_REL, REL_Y, -5)])
            for button in range(16):
                ball.press(button)
                self.assertEqual(reader.read(1), [(EV_KEY, BTN_MOUSE + button, 1)])
                self.assertEqual(reader.pressed(), [BTN_MOUSE + button])
                ball.release(button)
                self.assertEqual(reader.read(1), [(EV_KEY, BTN_MOUSE + button, 0)])
            ball.report(wheel=-1, tilt=2)
            self.assertEqual(reader.read(4), [(EV_REL, REL_WHEEL, -1), (EV_REL, REL_WHEEL_HI_RES, -120),
                                              (EV_REL, REL_HWHEEL, 2), (EV_REL, REL_HWHEEL_HI_RES, 240)])

    def test_fine_wheel_reports_parts_of_a_detent(self):
        with uhid.Trackball(hi_res=True) as ball, evdev.Reader(ball.node) as reader:
            ball.report(wheel=1)
            self.assertEqual(reader.read(1), [(EV_REL, REL_WHEEL_HI_RES, 15)])

    def test_exclusive_reader_keeps_others_out_until_the_unplug(self):
        with uhid.Trackball() as ball, evdev.Reader(ball.node) as reader, evdev.Reader(ball.node) as rival:
            self.assertTrue(reader.grab())
            self.assertFalse(rival.grab())
            ball.press(0)
            self.assertTrue(reader.read(1))
            self.assertEqual(rival.events(), [])
            ball.unplug()
            reader.read(99)
            self.assertTrue(reader.gone)

    def test_keyboard_types(self):
        with uhid.Keyboard() as keyboard, evdev.Reader(keyboard.node) as reader:
            keyboard.press(0x04)
            keyboard.press(0xE1)
            self.assertEqual(reader.pressed(), [30, 42])
