#!/usr/bin/env python3
"""What the helper's commands do under i3 with the configuration that comes with it.

usage: i3_check.py BUILD_DIR [CODE...]
"""
import json
import sys

from desktop_check import main, sees, wait_until
from x11_windows import HALF, QUIET, X11Check

SCRATCHPAD = "__i3_scratch"


class I3Check(X11Check):
    name = "i3"
    environment = {"XDG_CURRENT_DESKTOP": "i3"}

    def start(self, desktop):
        # What its wizard writes for the modifier key that it proposes; there is no i3 yet that it could tell.
        (desktop.home / ".config").mkdir()
        desktop.run(["i3-config-wizard", "--modifier", "win"])
        assert (desktop.home / ".config/i3/config").exists(), "the wizard wrote nothing"
        desktop.start(["i3"], **QUIET)
        wait_until(lambda: desktop.run(["i3-msg", "-t", "get_version"]).returncode == 0, "i3")
        # Programs that it starts know its socket, and so does a helper that was started with the session.
        environment = desktop.home / "environment"
        desktop.run(["i3-msg", f"exec env --null > {environment}.new && mv {environment}.new {environment}"])
        wait_until(environment.exists, "a program of the session")
        variables = dict(each.partition("=")[::2] for each in environment.read_text().split("\0"))
        desktop.environment["I3SOCK"] = variables["I3SOCK"]

    def set_up(self):
        super().set_up()
        self.tell("workspace number 1")

    def tell(self, words):
        return self.run_tool("i3-msg", words)

    def find(self, title, node=None, path=()):
        """The window of a title and what it is in, outermost first."""
        node = node or json.loads(self.run_tool("i3-msg", "-t", "get_tree"))
        if node["name"] == title and node["window"]:
            return [*path, node]
        below = (self.find(title, child, (*path, node)) for child in [*node["nodes"], *node["floating_nodes"]])
        return next((found for found in below if found), None)

    def workspace_of(self, title):
        return next(node["name"] for node in self.find(title) if node["type"] == "workspace")

    def left_of(self, title):
        return self.find(title)[-1]["rect"]["x"]

    def workspace(self):
        return next(each["name"] for each in json.loads(self.run_tool("i3-msg", "-t", "get_workspaces")) if each["focused"])

    @sees(74)
    def test_close_window(self):
        self.open("one", "A")
        self.open("other", "B")
        self.do(74)
        wait_until(lambda: not self.find("B"), "B to be gone")
        assert self.find("A"), "A is gone too"

    @sees(75)
    def test_minimize_window(self):
        self.open("one", "A", "B")
        self.do(75)
        wait_until(lambda: self.workspace_of("B") == SCRATCHPAD, "B on the scratchpad")
        self.wait_active("A")
        self.tell("scratchpad show")
        self.wait_active("B")

    @sees(76, 77)
    def test_maximize_window_and_full_screen(self):
        self.open("one", "A", "B")
        for command in (76, 77):
            self.do(command)
            wait_until(lambda: self.find("B")[-1]["fullscreen_mode"] == 1, "B to fill the screen")
            self.do(command)
            wait_until(lambda: self.find("B")[-1]["fullscreen_mode"] == 0, "B to be a tile again")

    @sees(78, 79)
    def test_next_and_previous_window(self):
        self.open("one", "A", "B", "C")
        for command, title in ((78, "A"), (79, "C"), (79, "B"), (78, "C")):
            self.do(command)
            self.wait_active(title)

    @sees(81, 82)
    def test_window_to_the_halves(self):
        self.open("one", "A", "B")
        self.do(81)
        wait_until(lambda: self.left_of("B") == 0 and self.left_of("A") == HALF, "B on the left")
        self.do(82)
        wait_until(lambda: self.left_of("A") == 0 and self.left_of("B") == HALF, "B on the right")

    @sees(86)
    def test_keep_window_on_top(self):
        self.open("one", "A", "B")
        self.do(86)
        wait_until(lambda: self.find("B")[-1]["floating"] == "user_on", "B to float")
        self.do(86)
        wait_until(lambda: self.find("B")[-1]["floating"] == "user_off", "B to be a tile again")

    @sees(90, 91)
    def test_neighbouring_workspaces(self):
        self.open("one", "A")
        self.tell("workspace number 2")
        self.do(90)
        self.wait_workspace("1")
        self.tell("workspace number 2")
        self.open("one", "B")
        self.do(90)
        self.wait_workspace("1")
        self.do(91)
        self.wait_workspace("2")

    @sees(92, 93)
    def test_window_to_neighbouring_workspaces(self):
        self.open("one", "A", "B")
        self.tell("workspace number 2")
        self.open("one", "C")
        self.tell("workspace number 1")
        self.wait_active("B")
        for command, workspace in ((93, "2"), (92, "1")):
            self.do(command)
            self.wait_workspace(workspace)
            wait_until(lambda: self.workspace_of("B") == workspace, "B to come along")
            self.wait_active("B")

    @sees(94, 95, 96, 97)
    def test_workspaces_by_number(self):
        for command, workspace in ((97, "4"), (96, "3"), (95, "2"), (94, "1")):
            self.do(command)
            self.wait_workspace(workspace)

    @sees(100, needs=["dmenu"])
    def test_show_applications(self):
        folder = self.desk.desktop.home / ".local/share/applications"
        folder.mkdir(parents=True)
        (folder / "some.desktop").write_text("[Desktop Entry]\nType=Application\nName=Some\nExec=true\n")
        self.do(100)
        wait_until(lambda: self.popup_of("dmenu"), "the menu of applications")
        self.close_popup("dmenu")

    @sees(101, needs=["dmenu_run"])
    def test_run_a_command(self):
        self.do(101)
        wait_until(lambda: self.popup_of("dmenu"), "the menu of commands")
        self.close_popup("dmenu")

    def pictures(self):
        return set(self.desk.desktop.home.glob("*.png"))

    @sees(155, 156, needs=["scrot"])
    def test_screenshots(self):
        self.open("one", "A")
        for command in (155, 156):
            before = self.pictures()
            self.do(command)
            wait_until(lambda: self.pictures() - before, "a picture")

    @sees(163)
    def test_question_before_leaving(self):
        self.do(163)
        wait_until(lambda: self.find_kind("dockarea", "topdock")["nodes"], "the question above the windows")

    def find_kind(self, kind, name, node=None):
        node = node or json.loads(self.run_tool("i3-msg", "-t", "get_tree"))
        if node["type"] == kind and node["name"] == name:
            return node
        return next((found for found in (self.find_kind(kind, name, child) for child in node["nodes"]) if found), None)

    @sees(160, needs=["i3lock"])
    def test_lock_screen(self):
        self.do(160)
        wait_until(lambda: self.popup_of("i3lock"), "the screen to be locked")


if __name__ == "__main__":
    sys.exit(main(I3Check))
