#!/usr/bin/python3
"""What the buttons do, chosen with the mouse: from the click to the file and the helper's record.

usage: assignment_test.py BUILD_DIR [unittest options]
"""
import pathlib
import plistlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from desktop import isolate, wait_until  # noqa: E402
from pane_test_case import EDITOR, PaneTestCase  # noqa: E402

KEYSTROKE = 10
BUTTON_2 = 1
CONTROL_OPTION = 0x1800
COMMAND = 0x0100
OPTION = 0x0800
KEY_T, KEY_E, KEY_TAB = 17, 14, 48


class AssignmentTest(PaneTestCase):
    def open_editor(self, label="Button 2"):
        window = self.open_window()
        self.choose_edit_item(window, label)
        return window

    def choose_edit_item(self, window, label="Button 2"):
        window.click("combo box", label=label)
        window.click("list item", "Edit Assignment…")
        window.wait_for_window(EDITOR)

    def choose(self, window, category, command):
        window.click_row(category, "Categories of commands")
        window.click_row(command, "Commands of the category")

    def choose_keystroke(self, window):
        self.choose(window, "Keys and Text", "Keystroke")
        window.click("text", label="Keystroke:")
        window.wait_for_focus("the keystroke field", lambda control: "Keystroke:" in control["labels"])

    def wait_for_text(self, window, label, text):
        wait_until(lambda: any(one["text"] == text for one in window.shown("text", label=label)),
                   f"{text!r} beside {label!r}")

    def type_lines(self, window, first, second):
        window.type(first)
        window.key("Return")
        window.type(second)

    def confirm(self, window, button="OK"):
        window.click("push button", button)
        window.wait_for_end_of_window(EDITOR)

    def test_keystroke_chosen_by_clicks_reaches_menu_file_and_record(self):
        window = self.open_editor()
        self.choose_keystroke(window)
        window.key("ctrl+alt+t")
        self.confirm(window)
        self.wait_for_saved(BUTTON_2, cmd=KEYSTROKE, key=KEY_T, mod=CONTROL_OPTION)
        self.wait_for_held(BUTTON_2, KEYSTROKE, CONTROL_OPTION, KEY_T)
        self.assertEqual(window.find("combo box", label="Button 2")["name"], "Type Ctrl\u00a0Alt\u00a0T")
        self.assertEqual(window.close(), 0)
        self.assertEqual(self.saved_action(BUTTON_2)["key"], KEY_T)

    def test_keys_of_the_window_manager_are_recorded_while_the_field_has_the_focus(self):
        window = self.open_editor()
        self.choose_keystroke(window)
        window.key("super+e")
        self.wait_for_text(window, "Keystroke:", "Super\u00a0E")
        self.assertEqual([box["name"].strip("\u00a0") for box in window.shown("check box") if "CHECKED" in box["states"]],
                         ["Super"])
        window.key("alt+Tab")
        self.wait_for_text(window, "Keystroke:", "Alt\u00a0Tab")
        self.assertEqual((self.times_run("meta-e"), self.times_run("alt-tab")), (0, 0))
        self.confirm(window)
        self.wait_for_saved(BUTTON_2, cmd=KEYSTROKE, key=KEY_TAB, mod=OPTION)
        self.wait_for_held(BUTTON_2, KEYSTROKE, OPTION, KEY_TAB)
        # What the field took, the desktop has again.
        window.key("alt+Tab")
        wait_until(lambda: self.times_run("alt-tab") == 1, "the window manager to act on its key")
        self.assertEqual(self.times_run("meta-e"), 0)

    def test_cancel_leaves_menu_file_and_record(self):
        window = self.open_editor()
        record = self.held_action(BUTTON_2)
        document = self.document()
        self.choose_keystroke(window)
        window.key("ctrl+alt+t")
        self.wait_for_text(window, "Keystroke:", "Ctrl\u00a0Alt\u00a0T")
        self.confirm(window, "Cancel")
        self.assertTrue(window.shown("combo box", "Right Click", label="Button 2"))
        self.assertEqual(self.document(), document)
        self.assertEqual(self.held_action(BUTTON_2), record)
        self.assertEqual(window.close(), 0)
        self.assertEqual(self.saved_action(BUTTON_2), self.entry(self.factory_document())["buttons"]["01"])

    def test_typed_snippet_stays_after_cancel(self):
        window = self.open_editor()
        self.choose(window, "Keys and Text", "Snippet 2")
        window.click("text", label="Name:")
        window.key("ctrl+a")
        window.type("Greeting")
        window.click("text", label="Text:")
        window.key("ctrl+a")
        self.type_lines(window, "Dear all,", "hello")
        self.wait_for_text(window, "Text:", "Dear all,\nhello")
        wait_until(lambda: window.shown("list item", "Greeting"), "the browser to show the name")
        self.confirm(window, "Cancel")
        self.assertEqual(window.close(), 0)
        self.assertEqual(self.document()["snippets"][1], {"name": "Greeting", "text": "Dear all,\nhello"})
        self.assertEqual(self.saved_action(BUTTON_2)["cmd"], 2)

    def test_address_and_script(self):
        window = self.open_editor()
        self.choose(window, "Open and Launch", "Open URL")
        window.click("text", label="Address:")
        window.type("https://example.org/a?b=c")
        self.confirm(window)
        self.wait_for_saved(BUTTON_2, str="https://example.org/a?b=c")
        url = self.saved_action(BUTTON_2)["cmd"]
        self.wait_for_held(BUTTON_2, url, 0, 0)
        self.choose_edit_item(window, "Button 3")
        self.choose(window, "Open and Launch", "Run Script")
        window.click("text", label="Script:")
        self.type_lines(window, "echo one", "echo two")
        self.confirm(window)
        self.wait_for_saved(2, str="echo one\necho two")
        self.assertNotEqual(self.saved_action(2)["cmd"], url)

    def test_application_from_the_list_and_item_from_the_panel(self):
        entries = self.desktop.home / ".local/share/applications"
        entries.mkdir(parents=True)
        for name in ("Abacus", "Zither"):
            (entries / f"{name.lower()}.desktop").write_text(
                f"[Desktop Entry]\nType=Application\nName={name}\nComment=About {name}\nExec=true\n")
        (self.desktop.home / "Minutes").mkdir()
        window = self.open_editor()
        self.choose(window, "Open and Launch", "Launch Application")
        window.click("push button", "Choose an application")
        window.wait_for_window("Choose an Application")
        window.type("zith")
        wait_until(lambda: not window.shown("list item", "Abacus"), "the search")
        window.click("list item", "Zither")
        window.click("push button", "Choose")
        self.wait_for_text(window, "Application:", "Zither")
        self.confirm(window)
        self.wait_for_saved(BUTTON_2, str="Zither")
        self.choose_edit_item(window, "Button 3")
        self.choose(window, "Open and Launch", "Open Item")
        window.click("push button", "Choose a file or folder")
        window.wait_for_window("Choose a File or Folder")
        window.click("table cell", "Minutes")
        window.click("push button", "Choose")
        window.wait_for_window(EDITOR)
        self.confirm(window)
        self.wait_for_saved(2, str="~/Minutes")

    def test_restore_defaults_brings_the_factory_buttons_back(self):
        window = self.open_window()
        window.click("combo box", label="Button 2")
        window.click("list item", "Undo")
        self.wait_for_saved(BUTTON_2, cmd=32)
        self.wait_for_held(BUTTON_2, 32, 0, 0)
        window.click("push button", "Restore Defaults")
        wait_until(lambda: window.shown("combo box", "Right Click", label="Button 2"), "the menu")
        self.assertEqual(window.close(), 0)
        self.assertEqual(self.entry(self.document()), self.entry(self.factory_document()))
        self.wait_for_held(BUTTON_2, 2, 0, 0)

    def test_support_information_lies_on_the_desktop(self):
        (self.desktop.home / "Desktop").mkdir()
        window = self.open_window()
        window.open_page("Help")
        window.click("push button", "Save Information…")
        path = self.desktop.home / "Desktop/Veltrix Info.plist"
        wait_until(path.exists, "the file")
        document = plistlib.loads(path.read_bytes())
        self.assertIn("support", document)
        self.assertEqual(document["snippets"], self.factory_document()["snippets"])
        self.assertEqual(window.close(), 0)
        self.assertNotIn("support", self.document())


if __name__ == "__main__":
    isolate()
    PaneTestCase.build = sys.argv.pop(1)
    unittest.main(verbosity=2)
