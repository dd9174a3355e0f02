#!/usr/bin/env python3
"""What the helper's commands do under Plasma's window manager and service for shortcuts, under X11 and Wayland.

usage: plasma_check.py BUILD_DIR [CODE...]
"""
import contextlib
import json
import os
import pathlib
import re
import signal
import sys

from desktop_check import main, sees, wait_until
from x11_windows import HALF, HEIGHT, QUIET, WIDTH, X11Check, is_about

SETTINGS = "[Desktops]\nNumber=4\nRows=1\n"


def is_running(process):
    try:
        return pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[0] != "Z"
    except FileNotFoundError:
        return False


class PlasmaCheck(X11Check):
    name = "Plasma X11"
    environment = {"XDG_CURRENT_DESKTOP": "KDE", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5"}

    def start(self, desktop):
        (desktop.home / ".config").mkdir()
        (desktop.home / ".config/kwinrc").write_text(SETTINGS)
        # What the bus starts belongs to the session, which is younger than the bus.
        desktop.run(["dbus-update-activation-environment", "DISPLAY", *self.environment, "QT_QPA_PLATFORM"])
        desktop.start(["kglobalaccel5"], **QUIET)
        desktop.start(["kwin_x11"], **QUIET)
        wait_until(lambda: self.shortcuts_of(desktop, "kwin"), "the window manager")
        wait_until(lambda: desktop.run(["xprop", "-root", "_NET_NUMBER_OF_DESKTOPS"]).stdout.strip().endswith("= 4"),
                   "the window manager with its workspaces")

    def finish(self):
        """What the bus has started goes on for a while when the bus is gone, and writes files."""
        names = set(re.findall(r"org\.kde\.[\w.]+", self.run_tool(
            "dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/", "org.freedesktop.DBus.ListNames")))
        processes = {int(owner) for owner in map(self.desk.desktop.owner_of, names) if owner}
        for process in processes:
            with contextlib.suppress(ProcessLookupError):
                os.kill(process, signal.SIGKILL)
        wait_until(lambda: not any(map(is_running, processes)), "the services to end")

    @staticmethod
    def shortcuts_of(desktop, component):
        return re.findall('string "(.*)"', desktop.run(
            ["dbus-send", "--session", "--print-reply", "--dest=org.kde.kglobalaccel", f"/component/{component}",
             "org.kde.kglobalaccel.Component.shortcutNames"]).stdout)

    def kwin(self, path, interface, method, *arguments):
        return self.run_tool("dbus-send", "--session", "--print-reply=literal", "--dest=org.kde.KWin", path,
                             f"{interface}.{method}", *arguments).strip()

    def shows_desktop(self):
        return self.root("_NET_SHOWING_DESKTOP") == [1]

    def effect_is_active(self, name):
        return "true" in self.kwin("/Effects", "org.kde.kwin.Effects", "isEffectLoaded", f"string:{name}") and \
            name in self.kwin("/Effects", "org.freedesktop.DBus.Properties", "Get", "string:org.kde.kwin.Effects",
                              "string:activeEffects")

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
        self.do(81)
        self.wait_place("A", lambda place: is_about(place, 0, HALF), "on the left")
        self.do(82)
        self.wait_place("A", lambda place: is_about(place, HALF, WIDTH), "on the right")

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
        self.do(85)

        def maximizes():
            self.run_tool("xdotool", "key", "x")  # underlined in the menu
            return "MAXIMIZED_VERT" in self.states("A")
        wait_until(maximizes, "the menu to maximize the window")

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

    @sees(102)
    def test_show_desktop(self):
        self.open("one", "A", "B")
        self.do(102)
        wait_until(lambda: self.shows_desktop(), "the desktop")
        self.do(102)
        wait_until(lambda: not self.shows_desktop(), "the windows to come back")

    @sees(107)
    def test_overview(self):
        self.do(107)
        wait_until(lambda: self.effect_is_active("overview"), "the overview")
        self.do(107)
        wait_until(lambda: not self.effect_is_active("overview"), "the windows to come back")

    @sees(136)
    def test_show_all_windows(self):
        self.open("one", "A", "B")
        self.do(136)
        wait_until(lambda: self.effect_is_active("windowview"), "the windows side by side")
        self.do(136)
        wait_until(lambda: not self.effect_is_active("windowview"), "the windows to come back")

    @sees(203, 204, 205)
    def test_magnifier(self):
        self.do(203)
        wait_until(lambda: self.effect_is_active("zoom"), "the magnifier")
        self.do(204)
        wait_until(lambda: not self.effect_is_active("zoom"), "the actual size")
        self.do(203)
        wait_until(lambda: self.effect_is_active("zoom"), "the magnifier")
        self.do(205)
        wait_until(lambda: not self.effect_is_active("zoom"), "the actual size")

    @sees(155, 156, needs=["spectacle"])
    def test_screenshots(self):
        self.open("one", "A")
        for command in (155, 156):
            before = set(self.desk.desktop.home.rglob("*.png"))
            self.do(command)
            wait_until(lambda: set(self.desk.desktop.home.rglob("*.png")) - before, "a picture")

    @sees(157, needs=["spectacle"])
    def test_screenshot_of_an_area(self):
        self.do(157)
        wait_until(lambda: self.popup_of("spectacle"), "an area to be asked for")
        self.close_popup("spectacle")

    @sees(163, 166, 167)
    def test_questions_before_leaving(self):
        for command in (163, 166, 167):
            self.do(command)
            wait_until(lambda: self.popup_of("ksmserver-logout-greeter"), "the question")
            self.close_popup("ksmserver-logout-greeter")
            wait_until(lambda: self.desk.desktop.owner_of("org.kde.LogoutPrompt") is None, "the end of the question")

    @sees(101, needs=["krunner"])
    def test_run_a_command(self):
        self.do(101)
        wait_until(lambda: self.popup_of("krunner"), "the field for commands")
        self.close_popup("krunner")

    def shell_windows(self, kind):
        return [number for number in self.run_tool("xdotool", "search", "--onlyvisible", "--class", "plasmashell").split()
                if kind in self.run_tool("xprop", "-id", number, "_NET_WM_WINDOW_TYPE")]

    @sees(100, needs=["plasmashell"])
    def test_show_applications(self):
        self.desk.desktop.start(["plasmashell"], **QUIET)
        wait_until(lambda: self.shell_windows("TYPE_DOCK"), "the panel")
        self.do(100)
        wait_until(lambda: self.shell_windows("TYPE_APPLET_POPUP"), "the menu of applications")


class PlasmaWaylandCheck(PlasmaCheck):
    """The compositor is a window of an X server, whose pointer and keyboard it takes for its own."""

    name = "Plasma Wayland"
    environment = {**PlasmaCheck.environment, "XDG_SESSION_TYPE": "wayland"}
    # No tool tells of windows that do not stand in the list of them.
    test_show_applications = test_run_a_command = test_screenshot_of_an_area = test_questions_before_leaving = None
    # As a window, the compositor has no OpenGL, which these are made with.
    test_overview = test_show_all_windows = test_magnifier = test_screenshots = None

    def start(self, desktop):
        (desktop.home / ".config").mkdir()
        (desktop.home / ".config/kwinrc").write_text(SETTINGS)
        desktop.start(["kwin_wayland", "--x11-display", desktop.environment["DISPLAY"], "--width", WIDTH, "--height", HEIGHT,
                       "--no-lockscreen", "--socket", "wayland-9"], **QUIET)
        wait_until(lambda: self.shortcuts_of(desktop, "kwin"), "the window manager")
        desktop.environment["WAYLAND_DISPLAY"] = "wayland-9"
        wait_until((pathlib.Path(desktop.environment["XDG_RUNTIME_DIR"]) / "wayland-9").exists, "the compositor")
        desktop.run(["dbus-update-activation-environment", "DISPLAY", "WAYLAND_DISPLAY", *self.environment])

    def set_up(self):
        super().set_up()
        self._told, self._focus = [], {}

    def open(self, program, *titles):
        for title in titles:
            self.open_together(program, title)

    def open_together(self, program, *titles):
        self._told.append(self.open_windows(program, *titles))
        for title in titles:
            self.windows[title] = wait_until(lambda: self.number_of(title), f"window {title}")
        self.activate(titles[-1])

    def number_of(self, title):
        found = re.search(r"\{[0-9a-f-]{36}\}", self.kwin("/WindowsRunner", "org.kde.krunner1", "Match", f"string:{title}"))
        return found and found[0]

    def activate(self, title):
        self.kwin("/WindowsRunner", "org.kde.krunner1", "Run", f"string:0_{self.windows[title]}", "string:")
        self.wait_active(title)

    def active(self):
        """By what the windows say of themselves."""
        for lines in self._told:
            for what, title, *words in map(json.loads, lines.drain()):
                if what == "state":
                    self._focus[title] = "focused" in words[0]
        return next((title for title, focused in self._focus.items() if focused), None)

    def about(self, title):
        text = self.kwin("/KWin", "org.kde.KWin", "getWindowInfo", f"string:{self.windows[title]}")
        return dict(re.findall(r"(\w+) +variant +(?:\w+ )?(.*?) *\)", text.replace("\n", " ")))

    def exists(self, title):
        return bool(self.about(title))

    def states(self, title):
        about = self.about(title)
        words = {"minimized": "HIDDEN", "keepAbove": "ABOVE"}
        found = {state for word, state in words.items() if about[word] == "true"}
        return found | ({"MAXIMIZED_VERT"} if about["maximizeVertical"] != "0" else set())

    def place(self, title):
        about = self.about(title)
        return tuple(round(float(about[word])) for word in ("x", "y", "width", "height"))

    def workspace(self):
        return int(self.kwin("/KWin", "org.kde.KWin", "currentDesktop").split()[-1]) - 1

    def go_to_workspace(self, number):
        self.kwin("/KWin", "org.kde.KWin", "setCurrentDesktop", f"int32:{number + 1}")
        self.wait_workspace(number)

    def workspace_of(self, title):
        ids = re.findall(r"[0-9a-f]{8}-[0-9a-f-]{27}", self.kwin(
            "/VirtualDesktopManager", "org.freedesktop.DBus.Properties", "Get",
            "string:org.kde.KWin.VirtualDesktopManager", "string:desktops"))
        return next(number for number, each in enumerate(ids) if each in self.about(title)["desktops"])

    def shows_desktop(self):
        return "true" in self.kwin("/KWin", "org.freedesktop.DBus.Properties", "Get", "string:org.kde.KWin",
                                   "string:showingDesktop")


if __name__ == "__main__":
    sys.exit(main(PlasmaCheck, PlasmaWaylandCheck))
