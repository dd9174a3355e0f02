"""The window as a person meets it: found by what it shows, moved by real keys and clicks."""
import json
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from desktop import wait_until  # noqa: E402

ACCESSIBLE = pathlib.Path(__file__).resolve().parent / "accessible.py"
APPLICATION = "veltrix-settings"


class Window:
    def __init__(self, desktop, *options, scale=1.0):
        """`scale` is how many pixels of the screen the toolkit takes for one of its own."""
        self.desktop = desktop
        self.scale = scale
        self.process = desktop.start_window(*options, stderr=subprocess.PIPE, text=True)
        wait_until(lambda: self.shown(role="page tab"), "the window")

    def everything(self):
        done = self.desktop.run(["/usr/bin/python3", "-B", ACCESSIBLE, APPLICATION])
        if done.returncode != 0:
            raise AssertionError(done.stderr)
        return json.loads(done.stdout)

    def shown(self, role=None, name=None):
        return [one for one in self.everything()
                if (role is None or one["role"] == role) and (name is None or one["name"] == name)]

    def find(self, role, name):
        return wait_until(lambda: self.shown(role, name), f"a {role} named {name!r}")[0]

    def text_shown(self, text):
        return any(text in one["name"] or text in one["text"] for one in self.everything())

    def click(self, role, name, at=0.5):
        """Clicks with the mouse, `at` of the way from the left edge to the right one."""
        x, y, width, height = self.find(role, name)["box"]
        self.xdotool("mousemove", int((x + width * at) * self.scale), int((y + height / 2) * self.scale), "click", 1)

    def open_page(self, name):
        """Clicks a tab until its page is in front: tabs move while trackballs come and go."""
        def opened():
            if self.shown("page tab list", name):
                return True
            self.click("page tab", name)
            return False
        wait_until(opened, f"the page {name!r}")

    def key(self, *names):
        self.xdotool("key", *names)

    def xdotool(self, *words):
        done = self.desktop.run(["xdotool", *words])
        if done.returncode != 0:
            raise AssertionError(done.stderr)

    def close(self):
        """Closes the window as the window manager's own key does, and waits for the program to end."""
        self.key("alt+F4")
        with self.process.stderr:
            return self.process.wait(timeout=20)
