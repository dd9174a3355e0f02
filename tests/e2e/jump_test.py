#!/usr/bin/python3
"""The pointer goes to the default buttons of dialogs: real programs, a window manager, a bus and a display of their own.

usage: jump_test.py BUILD_DIR [unittest options]
"""
import os
import pathlib
import signal
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from desktop import Desktop, isolate, wait_until  # noqa: E402

HERE = pathlib.Path(__file__).resolve().parent
TRACKBALL = "A1D0:2041:0107"
CORNER = (5, 5)
BUILD = ""


class Program:
    """A program with dialogs, led by lines."""

    def __init__(self, desktop, command):
        self.process = desktop.start(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                     text=True)
        while self.process.stdout.readline() != "ready\n":
            assert self.process.poll() is None

    def tell(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()
        return self.process.stdout.readline().strip()

    def middle_of_button(self):
        x, y, width, height = map(int, self.tell("place").split())
        return x + width // 2, y + height // 2


class JumpTestCase(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Desktop(BUILD, window_manager=True, accessibility=True, key_bindings={}))
        # Programs are to take part because the service is on, as at a person's desk, and for no other reason.
        for forced in ("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "QT_ACCESSIBILITY"):
            del self.desktop.environment[forced]
        self.turn_service(True)

    def turn_service(self, on):
        done = self.desktop.run(
            ["dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
             "org.freedesktop.DBus.Properties.Set", "string:org.a11y.Status", "string:IsEnabled",
             f"variant:boolean:{str(on).lower()}"])
        self.assertEqual(done.returncode, 0, done.stderr)

    def granted(self):
        return self.desktop.status()["AccessibilityGranted"]


class ListeningTest(JumpTestCase):
    def start(self, jump=True):
        self.desktop.set_jump(jump)
        self.helper = self.desktop.start_helper(TRACKBALL)
        if jump:
            self.wait_for_state("listening")
        self.move_pointer(*CORNER)

    def qt(self):
        return Program(self.desktop, [self.desktop.build / "tests/e2e/jump_qt_dialogs"])

    def gtk(self):
        return Program(self.desktop, ["/usr/bin/python3", "-B", HERE / "jump/gtk_dialogs.py"])

    def wait_for_state(self, state):
        wait_until(lambda: self.desktop.status()["JumpState"] == state, f"jumping to be {state}")

    def wait_for_dialogs(self, count):
        """The outcome of the last, once the program is done with so many dialogs."""
        wait_until(lambda: self.desktop.status()["LastJump"]["dialogs"] >= count, f"dialog {count}")
        last = self.desktop.status()["LastJump"]
        self.assertEqual(last["dialogs"], count)
        return last["outcome"]

    def pointer(self):
        words = self.desktop.run(["xdotool", "getmouselocation", "--shell"]).stdout.split()
        place = dict(word.split("=") for word in words)
        return int(place["X"]), int(place["Y"])

    def move_pointer(self, x, y):
        self.desktop.run(["xdotool", "mousemove", x, y])
        wait_until(lambda: self.pointer() == (x, y), "the pointer to be moved")

    def wait_for_active(self, title):
        wait_until(lambda: self.desktop.run(["xdotool", "getactivewindow", "getwindowname"]).stdout.strip() == title,
                   f"{title} to be in front")

    def activate(self, title):
        window = self.desktop.run(["xdotool", "search", "--onlyvisible", "--name", f"^{title}$"]).stdout.split()[-1]
        self.desktop.run(["xdotool", "windowactivate", "--sync", window])
        self.wait_for_active(title)

    def jump_processes(self):
        found = subprocess.run(["pgrep", "-u", str(os.getuid()), "-r", "DRSTt", "-x", "veltrix-jump"],
                               capture_output=True, text=True)
        return [int(pid) for pid in found.stdout.split()]

    def expect_jump_to(self, program, dialogs):
        self.assertEqual(self.wait_for_dialogs(dialogs), "moved")
        self.assertEqual(self.pointer(), program.middle_of_button())

    def test_pointer_goes_to_the_default_button_of_a_qt_dialog(self):
        self.start()
        program = self.qt()
        program.tell("dialog")
        self.expect_jump_to(program, 1)

    def test_pointer_goes_to_the_default_button_of_a_gtk_dialog(self):
        self.start()
        program = self.gtk()
        program.tell("dialog")
        self.expect_jump_to(program, 1)

    def test_default_button_that_comes_later_is_found(self):
        self.start()
        program = self.qt()
        program.tell("late")
        self.expect_jump_to(program, 1)

    def test_program_that_begins_with_a_dialog_is_served(self):
        self.start()
        program = Program(self.desktop, [self.desktop.build / "tests/e2e/jump_qt_dialogs", "dialog"])
        self.expect_jump_to(program, 1)

    def test_scaled_programs_are_served(self):
        self.start()
        self.desktop.environment.update(QT_SCALE_FACTOR="2", GDK_SCALE="2")
        for dialogs, program in enumerate((self.qt(), self.gtk()), 1):
            program.tell("dialog")
            self.assertEqual(self.wait_for_dialogs(dialogs), "moved")
            x, y, width, height = (2 * int(word) for word in program.tell("place").split())
            self.assertEqual(self.pointer(), (x + width // 2, y + height // 2))
            program.tell("close")
            self.move_pointer(*CORNER)

    def test_same_dialog_opened_again_counts_again(self):
        self.start()
        program = self.qt()
        for dialogs in (1, 2):
            program.tell("dialog")
            self.expect_jump_to(program, dialogs)
            program.tell("close")
            self.move_pointer(*CORNER)

    def test_dialog_that_comes_to_the_front_again_leaves_the_pointer_alone(self):
        self.start()
        qt, gtk = self.qt(), self.gtk()
        qt.tell("dialog")
        self.expect_jump_to(qt, 1)
        gtk.tell("window")
        self.wait_for_active("GTK window")
        self.move_pointer(*CORNER)
        self.activate("Qt dialog")
        gtk.tell("close")
        gtk.tell("dialog")
        self.expect_jump_to(gtk, 2)

    def test_windows_to_work_in_are_none_of_its_business(self):
        self.start()
        qt, gtk = self.qt(), self.gtk()
        qt.tell("window")
        self.wait_for_active("Qt window")
        gtk.tell("window")
        self.wait_for_active("GTK window")
        self.assertEqual(self.pointer(), CORNER)
        gtk.tell("close")
        gtk.tell("dialog")
        self.expect_jump_to(gtk, 1)

    def test_drag_is_not_interrupted(self):
        self.start()
        program = self.qt()
        self.desktop.run(["xdotool", "mousedown", "1"])
        program.tell("dialog")
        self.assertEqual(self.wait_for_dialogs(1), "button-held")
        self.assertEqual(self.pointer(), CORNER)
        self.desktop.run(["xdotool", "mouseup", "1"])

    def test_nothing_runs_and_nothing_moves_while_it_is_off(self):
        self.start(jump=False)
        self.assertEqual(self.desktop.status()["JumpState"], "off")
        program = self.gtk()
        program.tell("dialog")
        self.wait_for_active("GTK dialog")
        self.assertEqual(self.jump_processes(), [])
        self.assertEqual(self.pointer(), CORNER)

    def test_program_that_hangs_holds_up_nobody(self):
        self.start()
        hanging, gtk = self.qt(), self.gtk()
        hanging.process.stdin.write("hang\n")
        hanging.process.stdin.flush()
        status = pathlib.Path(f"/proc/{hanging.process.pid}/status")
        try:
            wait_until(lambda: "State:\tT" in status.read_text(), "the program to hang")
            gtk.tell("dialog")
            self.wait_for_active("GTK dialog")
            wait_until(lambda: self.pointer() == gtk.middle_of_button(), "the pointer to be on the button")
        finally:
            hanging.process.send_signal(signal.SIGCONT)

    def test_killed_listener_is_followed_by_another(self):
        self.start()
        (killed,) = self.jump_processes()
        os.kill(killed, signal.SIGKILL)
        wait_until(lambda: self.jump_processes() not in ([], [killed]), "the next one")
        self.wait_for_state("listening")
        program = self.gtk()
        program.tell("dialog")
        self.expect_jump_to(program, 1)

    def test_listener_ends_with_the_permission_and_with_the_helper(self):
        self.start()
        self.desktop.simulation("SetAccessibility", False)
        self.wait_for_state("off")
        wait_until(lambda: not self.jump_processes(), "the listener to end")
        self.desktop.simulation("SetAccessibility", True)
        self.wait_for_state("listening")
        self.helper.terminate()
        wait_until(lambda: not self.jump_processes(), "the listener to end")

    def test_listener_is_of_no_use_alone(self):
        done = self.desktop.run([self.desktop.build / "lib/veltrix/veltrix-jump"])
        self.assertEqual(done.returncode, 2)
        self.assertIn("VeltrixHelper starts this program", done.stderr)


class PermissionTest(JumpTestCase):
    """The helper with real trackballs, which here are none."""

    def test_helper_may_jump_exactly_while_the_service_is_on(self):
        self.desktop.start_helper()
        wait_until(self.granted, "the helper to know that the service is on")
        self.turn_service(False)
        wait_until(lambda: not self.granted(), "the helper to know that it is off")
        self.turn_service(True)
        wait_until(self.granted, "the helper to know that it is on again")
        os.kill(int(self.desktop.owner_of("org.a11y.Bus")), signal.SIGKILL)
        wait_until(lambda: not self.granted(), "the helper to know that the service has gone")

    def test_helper_never_may_under_wayland(self):
        self.desktop.environment["XDG_SESSION_TYPE"] = "wayland"
        self.desktop.start_helper()
        self.assertFalse(self.granted())
        self.turn_service(False)
        self.turn_service(True)
        for _ in range(3):  # each a question and an answer, which one about the service would not outlast
            self.assertFalse(self.granted())


if __name__ == "__main__":
    isolate()
    BUILD = sys.argv.pop(1)
    unittest.main(verbosity=2)
