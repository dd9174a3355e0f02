"""The window as a person meets it: found by what it shows, moved by real keys and clicks."""
import json
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from desktop import WAIT_SECONDS, wait_until  # noqa: E402

ACCESSIBLE = pathlib.Path(__file__).resolve().parent / "accessible.py"
APPLICATION = "veltrix-settings"


class Window:
    def __init__(self, desktop, *options, scale=1.0):
        """`scale` is how many pixels of the screen the toolkit takes for one of its own."""
        self.desktop = desktop
        self.scale = scale
        self._reader = desktop.start(["/usr/bin/python3", "-B", ACCESSIBLE, APPLICATION],
                                     stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.process = desktop.start_window(*options, stderr=subprocess.PIPE, text=True)
        wait_until(lambda: self.shown(role="page tab"), "the window")

    def everything(self):
        """All that is showing; nothing while it changes too fast to be looked at."""
        return self._ask("everything")

    def _ask(self, what, role=None, name=None):
        self._reader.stdin.write(json.dumps({"what": what, "role": role, "name": name}) + "\n")
        self._reader.stdin.flush()
        line = self._reader.stdout.readline()
        if not line:
            raise AssertionError("the reader of accessible objects has ended")
        return json.loads(line) or []

    def shown(self, role=None, name=None, label=None):
        """`label` is the text that stands beside it. Pop-up menus have one, because their name is what they show."""
        return [one for one in self._ask("everything", role, name) if label is None or label in one["labels"]]

    def find(self, role, name=None, label=None):
        return wait_until(lambda: self.shown(role, name, label), f"a {role} named {name!r}, labelled {label!r}")[-1]

    def text_shown(self, text):
        return any(text in one["name"] or text in one["text"] for one in self.everything())

    def wait_for_window(self, name):
        """Waits until that window is the one that keys go to."""
        wait_until(lambda: any(one["active"] and one["window"] == name for one in self._ask("windows")),
                   f"the window {name!r}")

    def wait_for_end_of_window(self, name):
        wait_until(lambda: not any(one["window"] == name for one in self._ask("windows")),
                   f"the window {name!r} to go")

    def controls(self):
        """What can be worked with in the active window."""
        return self._ask("controls")

    def focused(self):
        """The control of the active window that has the focus; None without one."""
        return next(iter(self._ask("focused")), None)

    def wait_for_focus(self, what, accepts):
        """Waits until the focus is on a control that `accepts` takes, and returns that."""
        def there():
            control = self.focused()
            return control if control is not None and accepts(control) else None
        return wait_until(there, what, seconds=WAIT_SECONDS / 2)

    def click(self, role, name=None, at=0.5, label=None, times=1):
        """Clicks with the mouse, `at` of the way from the left edge to the right one."""
        x, y, width, height = self.find(role, name, label)["box"]
        self.xdotool("mousemove", int((x + width * at) * self.scale), int((y + height / 2) * self.scale),
                     "click", "--repeat", times, "--delay", 10, 1)

    def click_row(self, name, list_name):
        """Clicks a row of a list, which is turned with the wheel until the row is inside."""
        def inside():
            x, y, width, height = self.find("list", list_name)["box"]
            row = self.find("list item", name)["box"]
            if y <= row[1] and row[1] + row[3] <= y + height:
                return True
            wheel = 4 if row[1] < y else 5
            self.xdotool("mousemove", int((x + width / 2) * self.scale), int((y + height / 2) * self.scale), "click", wheel)
            return False
        wait_until(inside, f"the row {name!r}")
        self.click("list item", name)

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

    def type(self, text):
        self.xdotool("type", text)

    def xdotool(self, *words):
        done = self.desktop.run(["xdotool", *words])
        if done.returncode != 0:
            raise AssertionError(done.stderr)

    def close(self):
        """Closes the window as the window manager's own key does, and waits for the program to end."""
        def ended():
            # On a busy machine the key may come while the window manager has the keyboard for itself.
            self.key("alt+F4")
            try:
                self.process.wait(timeout=5)
            except subprocess.TimeoutExpired:
                return False
            return True
        wait_until(ended, "the window to close")
        with self.process.stderr:
            return self.process.wait()
