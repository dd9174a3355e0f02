"""What an X11 window manager says of its windows and workspaces; for subclasses of DesktopCheck."""
import re
import subprocess

from desktop_check import DesktopCheck, wait_until

QUIET = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
WIDTH, HEIGHT = 1280, 1024
HALF = WIDTH // 2
FRAME = 40  # at most


def is_about(place, left, right):
    """Whether a window of this place takes the screen's height between two sides, but for its frame."""
    x, y, width, height = place
    return (0 <= x - left < FRAME and 0 <= right - x - width < FRAME and 0 <= y < FRAME
            and 0 <= HEIGHT - y - height < FRAME)


class X11Check(DesktopCheck):
    """The windows that a method opens are in `windows`, their numbers by title."""

    def set_up(self):
        self.windows = {}
        self.run_tool("xdotool", "mousemove", "640", "980")

    def open(self, program, *titles):
        """Opens windows one after the other, so that the last one is active; waits for each."""
        for title in titles:
            self.open_windows(program, title)
            self.windows[title] = wait_until(lambda: self.shown(title), f"window {title}")[0]
            self.activate(title)

    def shown(self, title):
        """The numbers of a visible window of that title, which may be there twice while it comes up."""
        return self.run_tool("xdotool", "search", "--onlyvisible", "--name", f"^{title}$").split()

    def root(self, name):
        """The numbers of a property of the root window."""
        text = self.run_tool("xprop", "-root", "-notype", name)
        return [int(number, 0) for number in re.findall(r"\b0x[0-9a-f]+\b|\b\d+\b", text.removeprefix(name))]

    def workspace(self):
        return next(iter(self.root("_NET_CURRENT_DESKTOP")), None)

    def workspace_of(self, title):
        return int(self.run_tool("xprop", "-id", self.windows[title], "-notype", "_NET_WM_DESKTOP").split()[-1])

    def go_to_workspace(self, number):
        self.run_tool("xdotool", "set_desktop", str(number))
        wait_until(lambda: self.workspace() == number, f"workspace {number}")

    def active(self):
        numbers = self.root("_NET_ACTIVE_WINDOW")
        return next((title for title, window in self.windows.items() if int(window) in numbers), None)

    def wait_active(self, title):
        wait_until(lambda: self.active() == title, f"window {title} to be active")

    def states(self, title):
        return set(re.findall(r"_NET_WM_STATE_(\w+)", self.run_tool(
            "xprop", "-id", self.windows[title], "-notype", "_NET_WM_STATE").partition("=")[2]))

    def wait_state(self, title, state, there=True):
        wait_until(lambda: (state in self.states(title)) == there, f"{title} {'' if there else 'not '}to be {state}",
                   seconds=5)

    def visible(self, title):
        return "IsViewable" in self.run_tool("xwininfo", "-id", self.windows[title])

    def exists(self, title):
        return self.run_tool("xwininfo", "-id", self.windows[title]) != ""

    def place(self, title):
        """x, y, width and height of a window without its frame."""
        text = self.run_tool("xwininfo", "-id", self.windows[title])
        return tuple(int(re.search(rf"{name}: +(-?\d+)", text)[1])
                     for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))

    def wait_place(self, title, fits, what):
        try:
            wait_until(lambda: fits(self.place(title)), f"{title} {what}")
        except AssertionError as error:
            raise AssertionError(f"{error}; it is at {self.place(title)}") from None

    def popup_of(self, program):
        """The number of a window of a class that can be seen, or nothing; toolkits keep tiny ones out of sight."""
        return next((number for number in self.run_tool("xdotool", "search", "--onlyvisible", "--class", program).split()
                     if self.size_of(number) > 10), None)

    def size_of(self, number):
        return min(map(int, re.findall(r"(?:Width|Height): (\d+)", self.run_tool("xwininfo", "-id", number))), default=0)

    def open_together(self, program, *titles):
        """The windows of one process; the last one is active."""
        self.open_windows(program, *titles)
        for title in titles:
            self.windows[title] = wait_until(lambda: self.shown(title), f"window {title}")[0]
        self.activate(titles[-1])

    def activate(self, title):
        self.run_tool("xdotool", "windowactivate", self.windows[title])
        self.wait_active(title)

    def wait_workspace(self, number):
        wait_until(lambda: self.workspace() == number, f"workspace {number}")

    def move_ball(self):
        self.run_tool("xdotool", "mousemove_relative", "--", "20", "10")

    def move_ball_until(self, title, fits, what):
        def moves():
            self.move_ball()
            return fits(self.place(title))
        wait_until(moves, f"{title} {what}")

    def click_ball(self):
        self.run_tool("xdotool", "click", "1")

    def close_popup(self, program):
        def closes():
            self.run_tool("xdotool", "key", "Escape")  # of which a window that has just come up may not hear
            return not self.popup_of(program)
        wait_until(closes, f"{program} to be gone")

    def has_num_lock(self):
        return re.search(r"Num Lock: +on", self.run_tool("xset", "q")) is not None

    def set_num_lock(self, on):
        if self.has_num_lock() != on:
            self.run_tool("xdotool", "key", "Num_Lock")
        wait_until(lambda: self.has_num_lock() == on, "Num Lock")
