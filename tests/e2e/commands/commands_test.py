#!/usr/bin/env python3
"""What the helper's commands do in the programs of an X11 session, from the button of a trackball on.

usage: commands_test.py BUILD_DIR [unittest options]
"""
import pathlib
import random
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from layout_texts import LAYOUTS  # noqa: E402
from trackball_desk import Desk, Lines, Reader, focused_window, isolate, wait_until  # noqa: E402

BUILD = ""
COPY, NEXT_WORKSPACE, RETURN, UNICODE, LONG, CLOSE, OTHER = 4, 5, 6, 7, 10, 11, 13
LONG_TEXT = ("".join(chr(ord("a") + i % 26) for i in range(49)).title() + "\n") * 20


def watch_notices(desk):
    monitor = desk.desktop.start(["dbus-monitor", "--session", "interface='org.freedesktop.Notifications'"],
                                 stdout=subprocess.PIPE, text=True)
    notices = Lines(monitor.stdout)
    notices.wait_for(lambda line: "NameLost" in line, "the monitor to listen")
    return notices


class TypingTest(unittest.TestCase):
    """Each character arrives, in its order, in an editor and in a terminal."""

    def type_in(self, layout, start_reader, *locks):
        shuffled = list(LAYOUTS[layout][1] * 3)
        random.shuffle(shuffled)
        texts = [*LAYOUTS[layout], "".join(shuffled)]
        with Desk(BUILD, {2: 180, 3: 181, 4: 182}, texts) as desk:
            desk.set_layout(layout)
            lamps = desk.lock(*locks)
            expect = start_reader(desk)
            whole = ""
            for slot, text in zip((2, 3, 4), texts):
                desk.click(slot)
                whole += text
                expect(whole)
                desk.wait_for_lamps(lamps)
            self.assertEqual(desk.problems(), [])

    def in_editor(self, desk):
        return Reader(desk).wait_for_text

    def in_terminal(self, desk):
        typed = desk.desktop.home / "typed"
        desk.desktop.start(["xterm", "-u8", "-e", "sh", "-c", f"stty raw -echo; exec cat > {typed}"],
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_until(lambda: typed.exists() and focused_window(desk.desktop), "the terminal")

        def expect(text):
            wanted = text.replace("\n", "\r").encode()
            try:
                wait_until(lambda: typed.read_bytes() == wanted, "the text")
            except AssertionError:
                self.assertEqual(typed.read_bytes().decode(errors="replace"), wanted.decode())
        return expect

    def test_us_in_editor(self):
        self.type_in("us", self.in_editor)

    def test_us_in_terminal(self):
        self.type_in("us", self.in_terminal)

    def test_de_in_editor(self):
        self.type_in("de", self.in_editor)

    def test_de_in_terminal(self):
        self.type_in("de", self.in_terminal)

    def test_fr_in_editor(self):
        self.type_in("fr", self.in_editor)

    def test_fr_in_terminal(self):
        self.type_in("fr", self.in_terminal)

    def test_dvorak_in_editor(self):
        self.type_in("us:dvorak", self.in_editor)

    def test_dvorak_in_terminal(self):
        self.type_in("us:dvorak", self.in_terminal)

    def test_ru_in_editor(self):
        self.type_in("ru", self.in_editor)

    def test_ru_in_terminal(self):
        self.type_in("ru", self.in_terminal)

    def test_us_with_caps_lock(self):
        self.type_in("us", self.in_editor, "Caps_Lock")

    def test_de_with_caps_lock(self):
        self.type_in("de", self.in_editor, "Caps_Lock", "Num_Lock")

    def test_fr_with_caps_lock(self):
        self.type_in("fr", self.in_editor, "Caps_Lock")

    def test_dvorak_with_caps_lock(self):
        self.type_in("us:dvorak", self.in_terminal, "Caps_Lock")

    def test_ru_with_caps_lock(self):
        self.type_in("ru", self.in_terminal, "Caps_Lock")


class KeysTest(unittest.TestCase):
    ACTIONS = {2: 180, 3: 181, COPY: 35, NEXT_WORKSPACE: 107, RETURN: 54, UNICODE: 182, LONG: 183, CLOSE: 74, OTHER: 55}
    SNIPPETS = ["short", "a", "a世b", LONG_TEXT]

    def setUp(self):
        self.desk = self.enterContext(Desk(BUILD, self.ACTIONS, self.SNIPPETS))

    def read(self):
        self.reader = Reader(self.desk)
        return self.reader

    def test_copy_follows_the_layout_at_once(self):
        reader = self.read()
        # Programs take a shortcut under Cyrillic letters by a Latin layout beside it.
        for layout in ("us", "us:dvorak", "de", "ru,us", "us"):
            self.desk.set_layout(layout)
            self.desk.click(COPY)
            reader.lines.wait_for(lambda line: line == "copy", f"the keys of Copy under {layout}")

    def test_copy_is_the_same_with_caps_lock(self):
        reader = self.read()
        self.desk.lock("Caps_Lock")
        self.desk.click(COPY)
        reader.lines.wait_for(lambda line: line == "copy", "the keys of Copy")

    def test_lock_that_is_turned_counts_for_the_next_text(self):
        reader = self.read()
        whole = ""
        for _ in range(3):
            self.desk.lock("Caps_Lock")
            self.desk.click(2)
            whole += "short"
            reader.wait_for_text(whole)

    def test_held_button_repeats_its_key_until_it_is_up(self):
        reader = self.read()
        self.desk.press(RETURN)
        reader.lines.wait_for(lambda line: line.count("\\n") >= 4, "repeated keys")
        self.desk.release(RETURN)
        self.desk.click(COPY)
        reader.lines.wait_for(lambda line: line == "copy", "the next command")
        self.assertFalse([line for line in reader.lines.drain() if line.startswith("text")])

    def test_thousand_characters_arrive(self):
        reader = self.read()
        self.desk.click(LONG)
        reader.wait_for_text(LONG_TEXT)
        self.assertEqual(self.desk.problems(), [])

    def test_same_button_stops_the_text(self):
        reader = self.read()
        self.desk.click(LONG)
        reader.lines.wait_for(lambda line: line.startswith("text"), "the first character")
        self.desk.click(LONG)
        self.desk.click(2)
        self.expect_cut_off(reader, "short")
        self.assertEqual(self.desk.problems(), [])

    def test_key_of_a_keyboard_stops_the_text(self):
        reader = self.read()
        self.desk.click(LONG)
        reader.lines.wait_for(lambda line: line.startswith("text"), "the first character")
        self.desk.say("key")
        wait_until(self.desk.problems, "the helper to tell")
        self.assertEqual(self.desk.problems(), [(183, "a key of the keyboard stopped the typing")])
        self.desk.say("no key")
        self.desk.click(2)
        self.expect_cut_off(reader, "short")

    def expect_cut_off(self, reader, after):
        line = reader.lines.wait_for(lambda each: each.endswith(f'{after}"]'), "the next text")
        typed = line[len('text ["'):-len(f'{after}"]')].replace("\\n", "\n")
        self.assertTrue(typed and LONG_TEXT.startswith(typed), typed)
        self.assertLess(len(typed), len(LONG_TEXT) // 2)

    def test_another_button_does_not_get_into_the_text(self):
        reader = self.read()
        self.desk.click(LONG)
        self.desk.click(2)
        self.desk.click(RETURN)
        reader.wait_for_text(LONG_TEXT + "short\n")

    def test_characters_that_no_key_has_are_told_and_the_others_typed(self):
        reader = self.read()
        self.desk.click(UNICODE)
        reader.wait_for_text("ab")
        wait_until(self.desk.problems, "the helper to tell")
        self.assertEqual(self.desk.problems(), [(182, "the keyboard layout has no U+4E16 世")])
        self.assertIn("last command that failed: Text snippet 3: the keyboard layout has no U+4E16 世",
                      self.desk.desktop.ctl("status").stdout)

    def test_window_closes(self):
        reader = self.read()
        # The window manager names the active window after it has given it the keys.
        wait_until(lambda: self.desk.desktop.run(["xdotool", "getactivewindow", "getwindowpid"]).stdout.strip()
                   == str(reader.process.pid), "the window manager to say that the editor is in front")
        self.desk.click(CLOSE)
        reader.lines.wait_for(lambda line: line == "close", "the question to close")

    def test_command_that_this_desktop_does_not_have_is_told(self):
        notices = watch_notices(self.desk)
        self.desk.click(NEXT_WORKSPACE)
        notices.wait_for(lambda line: '"it is not possible on this desktop"' in line, "the notice to the person")
        wait_until(self.desk.problems, "the helper to tell")
        self.assertEqual(self.desk.problems(), [(107, "it is not possible on this desktop")])

    def test_end_of_the_helper_leaves_no_key_down(self):
        reader = self.read()
        self.desk.press(RETURN)
        reader.lines.wait_for(lambda line: line.count("\\n") >= 2, "repeated keys")
        self.desk.helper.kill()
        self.desk.helper.wait()
        def is_still():
            reader.lines.drain()
            try:
                reader.lines.wait_for(lambda line: line.startswith("text"), "more", seconds=0.5)
            except AssertionError:
                return True
            return False
        wait_until(is_still, "the end of the repeated key")


class GermanTest(unittest.TestCase):
    def test_reason_is_told_in_the_language_of_the_person_and_recorded_in_english(self):
        actions = {2: {"cmd": 71, "str": "Nothing"}, 3: {"cmd": 73, "str": "exit 7"}, NEXT_WORKSPACE: 107}
        told = {2: ("die Anwendung Nothing ist nicht installiert", (71, "the application Nothing is not installed")),
                3: ("das Skript endete mit Rückgabewert 7", (73, "the script ended with exit status 7")),
                NEXT_WORKSPACE: ("auf diesem Desktop ist er nicht möglich", (107, "it is not possible on this desktop"))}
        with Desk(BUILD, actions, environment={"LANGUAGE": "de"}) as desk:
            notices = watch_notices(desk)
            for number, (slot, (german, english)) in enumerate(told.items(), 1):
                desk.click(slot)
                notices.wait_for(lambda line: f'"{german}"' in line, "the notice to the person")
                wait_until(lambda: len(desk.problems()) == number, "the helper to tell")
                self.assertEqual(desk.problems()[-1], english)


if __name__ == "__main__":
    isolate()
    BUILD = sys.argv.pop(1)
    unittest.main(verbosity=2)
