#!/usr/bin/env python3
"""Keystrokes in the field under X11, against a window manager with keys of its own.

usage: keystroke_x11_test.py BUILD_DIR [unittest options]
"""
import pathlib
import subprocess
import sys
import unittest

sys.path[:0] = [str(pathlib.Path(__file__).resolve().parent), str(pathlib.Path(__file__).resolve().parent.parent / "support")]
from desktop import Desktop, wait_until  # noqa: E402
from probe import Probe, Typing  # noqa: E402

BUILD = ""


def note(name):
    return f'<action name="Execute"><command>sh -c "echo >> $HOME/{name}"</command></action>'


KEYS = {"W-e": note("meta-e"), "W-Tab": note("meta-tab"), "A-Tab": note("alt-tab"),
        "A-F4": '<action name="Close"/>', "Print": note("print")}


class KeystrokeX11Test(Typing, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(Desktop(
            BUILD, window_manager=True, key_bindings=KEYS, with_helper=False))

    def setUp(self):
        for name in ("meta-e", "meta-tab", "alt-tab", "print"):
            (self.desktop.home / name).unlink(missing_ok=True)
        self.probe = Probe(self.desktop)
        self.probe.wait_for("grab held")
        self.addCleanup(self.probe.kill)

    def layout(self, name):
        self.desktop.run(["setxkbmap", name])
        self.addCleanup(self.desktop.run, ["setxkbmap", "us"])

    def times_run(self, name):
        """How often the window manager has acted on a key."""
        path = self.desktop.home / name
        return path.stat().st_size if path.exists() else 0

    def expect_desktop_keys(self):
        """The window manager acts on its keys; what it did not get before, it does not do later."""
        before = self.times_run("meta-e")
        self.key("super+e")
        wait_until(lambda: self.times_run("meta-e") == before + 1, "the window manager to act on its key")

    def hold_keyboard(self):
        """Another client that wants the keyboard for itself, and what became of it."""
        holder = self.desktop.start([self.desktop.build / "tests/keyboard/keyboard_holder"], stdin=subprocess.PIPE,
                                    stdout=subprocess.PIPE, text=True)
        self.addCleanup(holder.stdout.close)
        return holder, holder.stdout.readline().strip()

    def test_keys_of_the_window_manager_are_recorded_and_not_acted_on(self):
        self.key("super+e", "super+Tab", "alt+Tab", "alt+F4", "Print")
        self.probe.wait_for("key 14 0x0100 101", "key 48 0x0100 9", "key 48 0x0800 9", "key 118 0x0800 0")
        self.probe.focus_plain()
        self.expect_desktop_keys()
        self.assertEqual([self.times_run(name) for name in ("meta-e", "meta-tab", "alt-tab", "print")], [1, 0, 0, 0])
        self.assertIsNone(self.probe.process.poll())

    def test_the_window_manager_acts_on_its_keys_in_other_controls(self):
        self.probe.focus_plain()
        self.key("super+e", "super+Tab", "alt+Tab", "Print")
        for name in ("meta-e", "meta-tab", "alt-tab", "print"):
            wait_until(lambda name=name: self.times_run(name) == 1, name)
        self.key("alt+F4")
        self.probe.wait_for("closed")

    def test_keys_are_recorded_once_each_by_their_place(self):
        self.layout("fr")
        self.key("a", "ctrl+a", "Tab", "shift+Tab", "Escape", "Return", "KP_5", "F5")
        self.probe.wait_for("key 12 0x0000 97", "key 12 0x1000 1", "key 48 0x0000 9", "key 48 0x0200 0",
                            "key 53 0x0000 27", "key 36 0x0000 13")
        self.probe.tell("plain")
        self.assertEqual(len([line for line in self.probe.seen if line.startswith("key 12 ")]), 2)

    def test_caps_lock_alone_and_with_shift(self):
        self.expect_caps_lock_alone_and_with_shift()

    def test_a_dead_key_is_recorded_without_a_character(self):
        self.layout("de")
        self.key("dead_acute", "e")
        self.probe.wait_for("key 24 0x0000 0", "key 14 0x0000 101")

    def test_the_right_alt_of_a_layout_with_three_levels_is_option(self):
        self.layout("de")
        self.xdotool("keydown", "ISO_Level3_Shift", "key", "e", "keyup", "ISO_Level3_Shift")
        self.probe.wait_for("key 14 0x0800 8364")

    def test_the_menu_key_opens_nothing(self):
        self.key("Menu", "x")
        read = self.probe.wait_for("key 110 0x0000 0", "key 7 0x0000 120")
        self.assertNotIn("popup", read)

    def test_two_taps_of_shift_lead_on_and_give_the_keys_back(self):
        self.key("Shift_L", "Shift_L")
        self.probe.wait_for("focus next")
        self.expect_desktop_keys()

    def test_keys_go_back_after_a_while_so_that_the_screen_can_be_locked(self):
        self.probe.tell("hurry")
        self.probe.wait_for("grab none")
        holder, state = self.hold_keyboard()
        self.assertEqual(state, "held")
        holder.stdin.close()

    def test_the_first_key_after_a_while_takes_the_keys_again(self):
        self.probe.tell("hurry")
        self.probe.wait_for("grab none")
        self.probe.tell("patience")
        self.xdotool("keydown", "alt")
        self.addCleanup(self.xdotool, "keyup", "alt")
        self.probe.wait_for("grab held")
        self.key("Tab")
        self.probe.wait_for("key 48 0x0800 9")
        self.assertEqual(self.times_run("alt-tab"), 0)

    def test_keys_go_back_while_nothing_is_recorded(self):
        self.probe.tell("remove")
        self.probe.wait_for("grab none")
        self.expect_desktop_keys()
        self.probe.tell("install")
        self.probe.wait_for("grab held")
        self.key("super+e")
        self.probe.wait_for("key 14 0x0100 101")

    def test_keys_go_back_when_the_window_is_hidden_and_come_again_with_it(self):
        self.probe.tell("hide")
        self.probe.wait_for("grab none", "window inactive")
        self.expect_desktop_keys()
        self.probe.tell("show")
        # The window manager leaves a window that comes back behind until somebody asks for it.
        self.xdotool("search", "--sync", "--onlyvisible", "--name", "Keystroke probe", "windowactivate")
        self.probe.wait_for("grab held")

    def test_keys_go_back_when_another_window_comes_to_the_front(self):
        other = Probe(self.desktop)
        self.addCleanup(other.kill)
        other.tell("plain")
        self.probe.wait_for("focus nothing", "grab none")
        self.expect_desktop_keys()
        other.tell("close")
        self.probe.wait_for("grab held")

    def test_keys_go_back_when_the_window_closes(self):
        self.probe.tell("close")
        self.probe.process.wait(timeout=20)
        self.expect_desktop_keys()

    def test_a_killed_program_holds_nothing(self):
        _, before = self.hold_keyboard()
        self.assertEqual(before, "refused")
        self.probe.kill()
        holder, after = self.hold_keyboard()
        self.assertEqual(after, "held")
        holder.stdin.close()

    def test_a_keyboard_that_somebody_else_has_is_asked_for_again(self):
        self.probe.focus_plain()
        holder, state = self.hold_keyboard()
        self.assertEqual(state, "held")
        self.probe.tell("field")
        self.probe.wait_for("grab trying")
        holder.stdin.close()
        self.probe.wait_for("grab held")
        self.key("super+e")
        self.probe.wait_for("key 14 0x0100 101")

    def test_a_keyboard_that_stays_with_somebody_else_is_given_up(self):
        self.probe.focus_plain()
        holder, state = self.hold_keyboard()
        self.assertEqual(state, "held")
        self.probe.tell("field")
        self.probe.wait_for("grab trying", "grab none")
        holder.stdin.close()
        holder.wait(timeout=20)
        self.key("x")
        self.probe.wait_for("key 7 0x0000 120")


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    unittest.main(verbosity=2)
