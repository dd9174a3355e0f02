#!/usr/bin/python3
"""The whole pane without a mouse: every control is reached, has a name, and nothing keeps the focus for good.

usage: keyboard_only_test.py BUILD_DIR [unittest options]
"""
import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from desktop import isolate, wait_until  # noqa: E402
from pane_test_case import EDITOR, MAIN, PaneTestCase  # noqa: E402

KEYSTROKE_FIELD = "Keystroke:"
LARGEST_ROUND = 60  # steps of Tab after which a walk that does not come round is given up

# How the name of the category begins, and the command whose parameters are shown.
PARAMETER_PAGES = {
    "nothing": ("General", "No Action"), "click": ("Clicks", "Click"), "scroll": ("Scrolling", "Scroll Up"),
    "keystroke": ("Keys", "Keystroke"), "snippet": ("Keys", "Snippet 1"), "item": ("Open", "Open Item"),
    "application": ("Open", "Launch Application"), "address": ("Open", "Open URL"), "script": ("Open", "Run Script"),
}


def identity(control):
    """What a listener knows a control by; a menu is known by its label, for its name is what is chosen in it."""
    name = tuple(control["labels"]) if control["role"] == "combo box" else control["name"]
    return control["role"], name, control["description"]


def has_label(label):
    return lambda control: label in control["labels"]


def has_name(name):
    return lambda control: control["name"] == name


class KeyboardOnlyTest(PaneTestCase):
    def step(self, window, key="Tab", before=None):
        """Moves the focus on from `before`, by default from where it is, and yields the control that has it then."""
        before = before or window.focused()
        if before is not None and KEYSTROKE_FIELD in before["labels"]:
            window.key("Shift_L", "Shift_L")  # every other key would be recorded
        else:
            window.key(key)
        return window.wait_for_focus(f"{key} to lead on from {before and identity(before)}",
                                     lambda control: before is None or identity(control) != identity(before))

    def go_to(self, window, what, accepts):
        control = wait_until(window.focused, "a focus")
        for _ in range(LARGEST_ROUND):
            if accepts(control):
                return control
            control = self.step(window, before=control)
        raise AssertionError(f"Tab does not lead to {what}")

    def go_round(self, window):
        """Tab from control to control until it comes round, with the arrows between radio buttons."""
        first = wait_until(window.focused, "a focus")
        order = [first]
        while True:
            control = self.step(window, before=order[-1])
            if identity(control) == identity(first):
                return order
            order.append(control)
            self.assertLess(len(order), LARGEST_ROUND, "Tab does not come round")
            if control["role"] == "radio button":
                order += self.go_through_choices(window, control)

    def go_through_choices(self, window, control):
        beside = [one for one in window.controls() if one["role"] == "radio button"]
        beside.sort(key=lambda one: one["box"])
        place = [identity(one) for one in beside].index(identity(control))
        reached = [self.step(window, "Left") for _ in beside[:place]]
        reached += [self.step(window, "Right") for _ in beside[1:]]
        return reached

    def expect_everything_is_reached(self, window):
        """In the active window, whose controls have names that tell them apart."""
        controls = window.controls()
        identities = [identity(one) for one in controls]
        self.assertEqual([one for one in identities if not one[1]], [], "without a name")
        self.assertEqual([one for one in identities if identities.count(one) > 1], [], "alike")
        order = [identity(one) for one in self.go_round(window)]
        self.assertEqual(sorted(set(identities) - set(order)), [], "never reached")
        return order

    def open_page(self, window, name):
        self.go_to(window, "the tabs", lambda control: control["role"] == "page tab list")
        window.key("Home")
        for _ in range(10):
            wait_until(lambda: window.focused(), "the tabs")
            if window.focused()["name"] == name:
                return
            self.step(window, "Right")
        raise AssertionError(f"no page {name!r}")

    def open_editor(self, window, label="Button 2"):
        self.go_to(window, label, has_label(label))
        window.key("space")
        self.choose_in_menu(window, "Edit Assignment…")
        window.wait_for_window(EDITOR)
        window.wait_for_focus("the commands", has_name("Commands of the category"))

    def choose_in_menu(self, window, item):
        wait_until(lambda: window.shown("list item", item), "the menu to open")

        def selected():
            window.key(item[0].lower())  # again, for the menu may take the keys later than it shows
            return any("SELECTED" in one["states"] for one in window.shown("list item", item))
        wait_until(selected, f"{item!r} to be selected")
        window.key("Return")
        wait_until(lambda: not window.shown("list item", "Mute"), "the menu to close")

    def wait_for_row(self, window, title):
        def selected():
            return any(one["name"].startswith(title) and "SELECTED" in one["states"]
                       for one in window.shown("list item"))
        wait_until(selected, f"{title!r} to be selected")

    def choose(self, window, category, command):
        self.go_to(window, "the categories", has_name("Categories of commands"))
        window.type(category.lower())
        self.wait_for_row(window, category)
        window.key("Right")
        window.wait_for_focus("the commands", has_name("Commands of the category"))
        for _ in range(30):
            if any("SELECTED" in one["states"] for one in window.shown("list item", command)):
                return
            window.key("Down")
        raise AssertionError(f"no command {command!r}")

    def press(self, window, name):
        self.go_to(window, name, lambda control: control["role"] == "push button" and control["name"] == name)
        window.key("space")

    def test_from_the_opened_window_to_the_saved_keystroke(self):
        window = self.open_window()
        self.open_editor(window)
        self.choose(window, "Keys", "Keystroke")
        self.go_to(window, "the field", has_label(KEYSTROKE_FIELD))
        window.key("alt+Tab")
        window.key("ctrl+alt+t")
        wait_until(lambda: window.focused()["text"] == "Ctrl\u00a0Alt\u00a0T", "the keystroke")
        self.assertEqual(self.times_run("alt-tab"), 0)
        self.step(window)
        window.key("Return")
        window.wait_for_end_of_window(EDITOR)
        self.wait_for_saved(1, cmd=10, key=17, mod=0x1800)
        self.wait_for_held(1, 10, 0x1800, 17)
        window.wait_for_focus("the menu that led to the editor", has_label("Button 2"))
        self.open_editor(window)
        self.choose(window, "Clicks", "Triple Click")
        window.key("Escape")
        window.wait_for_end_of_window(EDITOR)
        self.assertEqual(self.saved_action(1)["cmd"], 10)
        self.assertEqual(window.close(), 0)

    def test_every_control_of_every_page_is_reached(self):
        window = self.open_window()
        for page in ("Buttons", "Pointer", "Scrolling", "Help"):
            with self.subTest(page=page):
                self.open_page(window, page)
                order = self.expect_everything_is_reached(window)
                self.assertEqual(order[0][0], "page tab list")
                if page != "Help":
                    self.assertEqual(order[-1][1], "Restore Defaults")

    def test_every_control_of_the_editor_is_reached_on_every_page(self):
        window = self.open_window()
        self.open_editor(window)
        for page, (category, command) in PARAMETER_PAGES.items():
            with self.subTest(page=page):
                self.choose(window, category, command)
                self.expect_everything_is_reached(window)

    def test_every_control_of_the_choosers_is_reached(self):
        window = self.open_window()
        self.open_editor(window)
        for command, button, title in (
                ("Open Item", "Choose a file or folder", "Choose a File or Folder"),
                ("Launch Application", "Choose an application", "Choose an Application")):
            with self.subTest(sheet=title):
                self.choose(window, "Open", command)
                self.press(window, button)
                window.wait_for_window(title)
                self.expect_everything_is_reached(window)
                window.key("Escape")
                window.wait_for_window(EDITOR)

    def test_scroll_parameters_are_changed(self):
        document = self.factory_document()
        document["paramUI"] = True
        self.write_document(document)
        window = self.open_window()
        self.open_page(window, "Scrolling")
        self.press(window, "Advanced…")
        window.wait_for_window("How the Page Rolls On")
        self.expect_everything_is_reached(window)
        self.go_to(window, "the first slider", lambda control: control["role"] == "slider")
        window.key("Home")
        window.key("Right")
        window.key("Return")
        window.wait_for_end_of_window("How the Page Rolls On")
        wait_until(lambda: self.entry(self.document())["param"]["triggerTime"] == 5, "the file")

    def test_warning_is_read_and_left(self):
        window = self.open_window(may_jump=False)
        self.open_page(window, "Pointer")
        box = "Jump to the default button of a dialog that opens"
        self.go_to(window, "the box", has_name(box))
        window.key("space")
        window.wait_for_window("Jumping is not possible yet")
        self.assertEqual([one["name"] for one in window.controls()], ["OK"])
        window.key("Return")
        window.wait_for_end_of_window("Jumping is not possible yet")
        window.wait_for_focus("the box", has_name(box))


if __name__ == "__main__":
    isolate()
    PaneTestCase.build = sys.argv.pop(1)
    unittest.main(verbosity=2)
