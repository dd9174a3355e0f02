#!/usr/bin/env python3
"""What the helper's commands do under Xfce's window manager and settings daemon, in an X11 session.

usage: xfce_check.py BUILD_DIR [CODE...]
"""
import pathlib
import re
import sys

from desktop_check import main, sees, wait_until
from x11_windows import HALF, QUIET, WIDTH, X11Check, is_about

STATE_OF_SESSION = ("dbus-send", "--session", "--print-reply", "--dest=org.xfce.SessionManager", "/org/xfce/SessionManager",
                    "org.xfce.Session.Manager.GetState")
# Xfce's own session without its panel, its file manager and its desktop.
SESSION = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-session" version="1.0">
  <property name="sessions" type="empty">
    <property name="Failsafe" type="empty">
      <property name="Count" type="int" value="2"/>
    </property>
  </property>
</channel>
"""


class XfceCheck(X11Check):
    name = "Xfce"
    environment = {"XDG_CURRENT_DESKTOP": "XFCE"}

    def start(self, desktop):
        settings = desktop.home / ".config/xfce4/xfconf/xfce-perchannel-xml"
        settings.mkdir(parents=True)
        (settings / "xfce4-session.xml").write_text(SESSION)
        # The bus would start it too, but not wait for it to have written its files.
        service = pathlib.Path("/usr/share/dbus-1/services/org.xfce.Xfconf.service").read_text(encoding="utf-8")
        desktop.start([re.search(r"^Exec=(.*)", service, re.MULTILINE)[1]], **QUIET)
        wait_until(lambda: desktop.owner_of("org.xfce.Xfconf"), "the settings")
        desktop.start(["xfce4-session", "--disable-tcp"], **QUIET)
        wait_until(lambda: desktop.run(STATE_OF_SESSION).stdout.endswith("uint32 1\n"), "the session to be idle")
        wait_until(lambda: desktop.run(["xprop", "-root", "_NET_NUMBER_OF_DESKTOPS"]).stdout.strip().endswith("= 4"),
                   "the window manager with its workspaces")

    @sees(74)
    def test_close_window(self):
        self.open("one", "A")
        self.open("other", "B")
        self.do(74)
        wait_until(lambda: not self.exists("B"), "B to be gone")
        assert self.exists("A"), "A is gone too"

    @sees(75)
    def test_minimize_window(self):
        self.open("one", "A", "B")
        self.do(75)
        self.wait_state("B", "HIDDEN")
        self.wait_active("A")

    @sees(76)
    def test_maximize_window(self):
        self.open("one", "A")
        before = self.place("A")
        self.do(76)
        self.wait_state("A", "MAXIMIZED_VERT")
        self.wait_place("A", lambda place: is_about(place, 0, WIDTH), "to fill the screen")
        self.do(76)
        self.wait_place("A", lambda place: place == before, "to be as it was")

    @sees(78)
    def test_next_window(self):
        self.open("one", "A", "B", "C")
        self.do(78)
        self.wait_active("B")

    @sees(79)
    def test_previous_window(self):
        self.open("one", "A", "B", "C")
        self.do(79)
        self.wait_active("A")

    @sees(80)
    def test_next_window_of_the_application(self):
        self.open_together("one", "A", "B")
        self.open("other", "X")
        self.activate("B")
        self.do(80)
        self.wait_active("A")

    @sees(81, 82)
    def test_window_to_the_halves(self):
        self.open("one", "A")
        for lock in (False, True):
            self.set_num_lock(lock)
            self.do(81)
            self.wait_place("A", lambda place: is_about(place, 0, HALF), f"on the left, Num Lock {lock}")
            self.do(82)
            self.wait_place("A", lambda place: is_about(place, HALF, WIDTH), f"on the right, Num Lock {lock}")

    @sees(83)
    def test_move_window_with_the_ball(self):
        self.open("one", "A")
        x, y, *size = self.place("A")
        self.do(83)
        self.move_ball_until("A", lambda place: [*place[2:]] == size and place[:2] != (x, y), "to have moved")
        self.click_ball()
        place = self.place("A")
        self.move_ball()
        assert self.place("A") == place, "it still moves"

    @sees(84)
    def test_resize_window_with_the_ball(self):
        self.open("one", "A")
        before = self.place("A")
        self.do(84)
        self.move_ball_until("A", lambda place: place[2:] != before[2:], "to have another size")
        self.click_ball()

    @sees(85)
    def test_window_menu(self):
        self.open("one", "A")
        assert not self.popup_of("xfwm4"), "there is a menu already"
        self.do(85)
        wait_until(lambda: self.popup_of("xfwm4"), "the menu")
        self.run_tool("xdotool", "key", "Escape")
        wait_until(lambda: not self.popup_of("xfwm4"), "the menu to be gone")

    @sees(86)
    def test_keep_window_on_top(self):
        self.open("one", "A")
        self.do(86)
        self.wait_state("A", "ABOVE")
        self.do(86)
        self.wait_state("A", "ABOVE", there=False)

    @sees(90, 91)
    def test_neighbouring_workspaces(self):
        self.go_to_workspace(0)
        self.do(91)
        self.wait_workspace(1)
        self.do(90)
        self.wait_workspace(0)

    @sees(92, 93)
    def test_window_to_neighbouring_workspaces(self):
        self.go_to_workspace(0)
        self.open("one", "A", "B")
        for command, workspace in ((93, 1), (92, 0)):
            self.do(command)
            self.wait_workspace(workspace)
            wait_until(lambda: self.workspace_of("B") == workspace, "B to come along")
            self.wait_active("B")
        assert self.workspace_of("A") == 0

    @sees(94, 95, 96, 97)
    def test_workspaces_by_number(self):
        for command, workspace in ((97, 3), (96, 2), (95, 1), (94, 0)):
            self.do(command)
            self.wait_workspace(workspace)

    @sees(100, needs=["xfce4-appfinder"])
    def test_show_applications(self):
        self.do(100)
        wait_until(lambda: self.popup_of("xfce4-appfinder"), "the finder of applications")
        self.close_popup("xfce4-appfinder")

    @sees(101, needs=["xfce4-appfinder"])
    def test_run_a_command(self):
        self.do(101)
        wait_until(lambda: self.popup_of("xfce4-appfinder"), "the field for commands")
        self.close_popup("xfce4-appfinder")

    @sees(102)
    def test_show_desktop(self):
        self.open("one", "A", "B")
        self.do(102)
        wait_until(lambda: not self.visible("A") and not self.visible("B"), "the windows to be hidden")
        self.do(102)
        wait_until(lambda: self.visible("A") and self.visible("B"), "the windows to come back")

    @sees(155, needs=["xfce4-screenshooter"])
    def test_screenshot_of_the_screen(self):
        self.do(155)
        wait_until(lambda: self.popup_of("xfce4-screenshooter"), "the picture to be offered")
        self.close_popup("xfce4-screenshooter")

    @sees(156, needs=["xfce4-screenshooter"])
    def test_screenshot_of_the_window(self):
        self.open("one", "A")
        self.do(156)
        wait_until(lambda: self.popup_of("xfce4-screenshooter"), "the picture to be offered")
        self.close_popup("xfce4-screenshooter")

    @sees(157, needs=["xfce4-screenshooter"])
    def test_screenshot_of_an_area(self):
        self.do(157)
        wait_until(self.drags_an_area, "an area to be asked for and the picture to be offered")
        self.close_popup("xfce4-screenshooter")

    def drags_an_area(self):
        self.run_tool("xdotool", "mousemove", "100", "100", "mousedown", "1", "mousemove", "300", "300", "mouseup", "1")
        return self.run_tool("xdotool", "search", "--onlyvisible", "--name", "^Screenshot$")

    @sees(163, 166, 167)
    def test_questions_before_leaving(self):
        for command in (163, 166, 167):
            self.do(command)
            wait_until(lambda: self.popup_of("xfce4-session"), "the question")
            self.close_popup("xfce4-session")

    @sees(160, needs=["xflock4"])
    def test_lock_screen(self):
        locked = self.desk.desktop.home / "locked"
        self.run_tool("xfconf-query", "-c", "xfce4-session", "-p", "/general/LockCommand", "-n", "-t", "string",
                      "-s", f"touch {locked}")
        self.do(160)
        wait_until(locked.exists, "the locker of the session to start")


if __name__ == "__main__":
    sys.exit(main(XfceCheck))
