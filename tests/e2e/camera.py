"""Takes pictures of what is on a desktop, as files that change only when what they show does."""
import hashlib
import mmap
import pathlib
import re
import struct
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from desktop import wait_until  # noqa: E402

# What a window cannot have of a screen: the title bar, in pixels at 100 percent.
TITLE_BAR = 28
# Nothing moves for so long when a window has come to rest, in seconds.
REST = 0.3


class FrameBuffer:
    """What is on a screen, read from the file in which Xvfb keeps it (the format of xwd)."""

    def __init__(self, path):
        self._file = open(path, "rb")
        self._map = mmap.mmap(self._file.fileno(), 0, access=mmap.ACCESS_READ)
        header = struct.unpack(">25I", self._map[:100])
        self.width, self.height, self._line = header[4], header[5], header[12]
        self._start = header[0] + header[19] * 12

    def pixels(self, left, top, width, height):
        """The rectangle, 4 bytes for each pixel: blue, green, red and one without meaning."""
        at = self._start + left * 4
        return b"".join(self._map[at + y * self._line:at + y * self._line + width * 4] for y in range(top, top + height))


class Camera:
    """Takes pictures of the windows of `desktop` into `folder`; `scale` is that of the desktop."""

    def __init__(self, desktop, folder, scale):
        self.desktop = desktop
        self.folder = folder
        self.title_bar = int(TITLE_BAR * scale)
        self.screen = FrameBuffer(desktop.frame_buffer)
        self.too_large = []

    def _lines(self, *command):
        return self.desktop.run(command).stdout.split()

    def windows(self):
        return self._lines("xdotool", "search", "--onlyvisible", "--class", ".")

    def active(self):
        return "".join(self._lines("xdotool", "getactivewindow"))

    def wait_for_active(self, but=""):
        """Waits until another window than `but` is in front, and returns it."""
        return wait_until(lambda: (front := self.active()) not in ("", but) and front, "a window in front")

    def take_front(self, name):
        told = self.desktop.run(["xwininfo", "-id", self.active()]).stdout
        left, top, width, height = (int(re.search(f"{key}: +(-?[0-9]+)", told)[1])
                                    for key in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        if width > self.screen.width or height + self.title_bar > self.screen.height:
            self.too_large.append(f"{name}: {width} x {height}")
        right, bottom = min(left + width, self.screen.width), min(top + height, self.screen.height)
        left, top = max(left, 0), max(top, 0)
        self._take(name, (left, top, right - left, bottom - top))

    def take_screen(self, name):
        """All of it but the empty rim, for menus and what else is not one window."""
        self._take(name, (0, 0, self.screen.width, self.screen.height), "-trim", "+repage")

    def _take(self, name, place, *changes):
        path = self.folder / f"{name}.png"
        path.parent.mkdir(parents=True, exist_ok=True)
        last, since = b"", time.monotonic()

        def rested():
            nonlocal last, since
            now = hashlib.sha256(self.screen.pixels(*place)).digest()
            if now != last:
                last, since = now, time.monotonic()
            return time.monotonic() - since > REST

        wait_until(rested, f"{path} to come to rest")
        # Few colors are in them; a small file shows the same.
        subprocess.run(["convert", "-size", f"{place[2]}x{place[3]}", "-depth", "8", "bgra:-", "-alpha", "off", *changes,
                        "-strip", "+dither", "-colors", "255", "-define", "png:compression-level=9", f"PNG8:{path}"],
                       input=self.screen.pixels(*place), check=True)
        print(path, flush=True)
