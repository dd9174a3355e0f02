#!/usr/bin/python3
"""From the hand to the record: the real window, the real helper, a bus and a display of their own.

usage: live_settings_test.py BUILD_DIR [unittest options]
"""
import pathlib
import plistlib
import signal
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from desktop import Desktop, isolate, wait_until  # noqa: E402
from window import Window  # noqa: E402

SKIFFLINE = "A1D0:2041:0107"
CREST = "A1D0:1020:0100"
BUILD = ""


class LiveSettingsTest(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(BUILD, window_manager=True, accessibility=True)
        self.desktop.__enter__()
        self.addCleanup(self.desktop.__exit__, None, None, None)

    def options(self, product_id, version=None):
        """The options of the first entry of that product in the file, empty when there is no file."""
        try:
            document = plistlib.loads(self.desktop.settings_file.read_bytes())
        except FileNotFoundError:
            return {}
        for entry in document["devices"]:
            if entry["device product id"] == product_id and (
                    version is None or entry["device version min"] <= version and
                    (entry["device version max"] == 0 or version <= entry["device version max"])):
                return entry["options"]
        return {}

    def record(self, product_id):
        status = self.desktop.status()
        for device in status["Devices"]:
            if device["product"] == product_id:
                held = next(one for one in status["Records"] if one["id"] == device["id"])
                return bytes.fromhex(held["record"])
        return None

    def generation(self):
        return self.desktop.status()["Generation"]

    def messages(self):
        """What the helper has been sent lately, the latest last."""
        return self.desktop.status()["RecentMessages"]

    def end_speed(self):
        """The speed in the file once it is the slowest or the fastest; a click before the key may save another one."""
        speed = self.options(0x2041, 0x107).get("speed")
        return speed if speed in (80, 5000) else None

    def open_pointer_page(self):
        window = Window(self.desktop)
        wait_until(lambda: window.shown("page tab", "Pointer"), "the pages of a connected trackball")
        window.open_page("Pointer")
        return window

    def test_speed_moved_by_keyboard_and_mouse_reaches_file_and_record(self):
        self.desktop.start_helper(SKIFFLINE)
        window = self.open_pointer_page()
        before = self.generation()
        window.click("slider", "Pointer speed", at=0.2)
        window.key("Home")
        wait_until(self.end_speed, "the file")
        wait_until(lambda: self.generation() > before, "the helper to read the file again")
        for keys, position in (("End", None), ("Home", None), ("Right", None), ("Page_Up", None)):
            previous = self.options(0x2041, 0x107)["speed"]
            window.key(keys)
            wait_until(lambda old=previous: self.options(0x2041, 0x107)["speed"] != old, f"{keys} to reach the file")
            speed = self.options(0x2041, 0x107)["speed"]
            wait_until(lambda value=speed: self.record(0x2041)[1] == (value // 20) & 0xFF, "the record")
        window.click("slider", "Pointer speed", at=0.9)
        by_mouse = self.options(0x2041, 0x107)["speed"]
        wait_until(lambda: self.record(0x2041)[1] == (by_mouse // 20) & 0xFF, "the record")
        self.assertEqual(window.close(), 0)

    def test_entries_of_other_trackballs_and_snippets_stay_as_they_were(self):
        self.desktop.start_helper(SKIFFLINE)
        window = self.open_pointer_page()
        window.click("slider", "Pointer speed", at=0.5)
        window.key("Home")
        wait_until(lambda: self.options(0x2041, 0x107), "the file")
        factory = plistlib.loads((self.desktop.build / "lib/veltrix/DefaultSettings.plist").read_bytes())
        window.close()
        document = plistlib.loads(self.desktop.settings_file.read_bytes())
        for mine, theirs in zip(document["devices"], factory["devices"]):
            same_device = mine["device product id"] == 0x2041 and mine["device version min"] == 0x107
            if not same_device:
                self.assertEqual(mine, theirs)
        self.assertEqual(document["snippets"], factory["snippets"])

    def test_trackballs_that_come_and_go_are_followed(self):
        self.desktop.start_helper("")
        window = Window(self.desktop)
        window.open_page("Help")
        wait_until(lambda: window.text_shown("No device found."), "the text for no trackball")
        self.desktop.simulation("Plug", CREST)
        wait_until(lambda: window.text_shown("Crest Pointer™ Rev. 1.00"), "the first trackball")
        self.desktop.simulation("Plug", SKIFFLINE)
        wait_until(lambda: window.text_shown("Skiffline™ Trackball Rev. 1.07"), "the second trackball")
        self.desktop.simulation("Unplug", CREST)
        wait_until(lambda: not window.text_shown("Crest Pointer™ Rev."), "the first trackball to go")
        self.assertTrue(window.text_shown("Skiffline™ Trackball Rev. 1.07"))
        self.assertEqual(window.close(), 0)

    def test_helper_that_is_killed_and_comes_back_is_found_again(self):
        helper = self.desktop.start_helper(SKIFFLINE)
        window = self.open_pointer_page()
        helper.send_signal(signal.SIGKILL)
        helper.wait()
        window.click("slider", "Pointer speed", at=0.5)
        window.key("Home")
        speed = wait_until(self.end_speed, "a save without a helper")
        self.desktop.start_helper(SKIFFLINE)
        wait_until(lambda: self.record(0x2041)[1] == (speed // 20) & 0xFF, "the new helper's record")
        window.key("End")
        wait_until(lambda: self.options(0x2041, 0x107)["speed"] != speed, "the next change")
        speed = self.options(0x2041, 0x107)["speed"]
        wait_until(lambda: self.record(0x2041)[1] == (speed // 20) & 0xFF, "the next change's record")
        self.assertEqual(window.close(), 0)

    def test_leaving_saves_then_announces_then_says_goodbye(self):
        self.desktop.start_helper(SKIFFLINE)
        window = Window(self.desktop)
        wait_until(lambda: self.desktop.status()["PaneShown"], "the window to say that it is shown")
        saved = self.desktop.settings_file.stat().st_mtime_ns
        generation = self.generation()
        self.assertEqual(self.messages()[-1], "VXR1")
        self.assertEqual(window.close(), 0)
        wait_until(lambda: not self.desktop.status()["PaneShown"], "the helper to know that the window was left")
        self.assertEqual(self.messages()[-2:], ["VXUp", "VXR0"])
        self.assertGreater(self.desktop.settings_file.stat().st_mtime_ns, saved)
        self.assertGreater(self.generation(), generation)

    def test_second_start_raises_the_first_window(self):
        self.desktop.start_helper(SKIFFLINE)
        window = Window(self.desktop)
        second = self.desktop.run([self.desktop.program("veltrix-settings")])
        self.assertEqual(second.returncode, 0, second.stderr)
        self.assertIsNone(window.process.poll())
        windows = self.desktop.run(["xdotool", "search", "--onlyvisible", "--name", "^Veltrix$"]).stdout.split()
        self.assertEqual(len(windows), 1)
        self.assertEqual(window.close(), 0)

    def test_window_starts_the_helper_and_puts_it_among_the_login_items(self):
        window = Window(self.desktop)
        wait_until(lambda: self.desktop.ctl("devices").returncode == 0, "the helper that the window starts")
        autostart = list((self.desktop.home / ".config/autostart").glob("*.desktop"))
        self.assertEqual(len(autostart), 1)
        self.assertIn("VeltrixHelper.app", autostart[0].read_text())
        self.assertEqual(window.close(), 0)
        self.desktop.run(["kill", self.desktop.owner_of("com.aldmoor.VeltrixHelper")])
        wait_until(lambda: self.desktop.ctl("devices").returncode != 0, "the helper to end")

    def test_unreadable_file_leaves_the_last_records_in_force(self):
        self.desktop.start_helper(SKIFFLINE)
        window = self.open_pointer_page()
        window.click("slider", "Pointer speed", at=0.5)
        window.key("Home")
        wait_until(lambda: self.options(0x2041, 0x107), "the file")
        self.assertEqual(window.close(), 0)
        record = self.record(0x2041)
        self.desktop.settings_file.write_bytes(b"<plist><dict><key>torn")
        self.desktop.send_settings_changed()
        wait_until(lambda: self.desktop.status()["SettingsError"], "the helper to have tried")
        self.assertEqual(self.record(0x2041), record)


if __name__ == "__main__":
    isolate()
    BUILD = sys.argv.pop(1)
    unittest.main(verbosity=2)
