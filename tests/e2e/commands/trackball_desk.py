"""A desktop with a helper, the driver of driver_on_display.cpp, and programs that read what is typed."""
import json
import pathlib
import plistlib
import queue
import re
import subprocess
import sys
import threading

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent.parent / "support"))
from desktop import WAIT_SECONDS, Desktop, isolate, wait_until  # noqa: E402

SKIFFLINE = "A1D0:2041:0107"
VENDOR, PRODUCT = 0xA1D0, 0x2041


class Lines:
    """What a program prints, line by line, kept until a test asks for it."""

    def __init__(self, stream):
        self._lines = queue.Queue()
        threading.Thread(target=self._read, args=(stream,), daemon=True).start()

    def _read(self, stream):
        for line in stream:
            self._lines.put(line.rstrip("\n"))

    def wait_for(self, wanted, what, seconds=WAIT_SECONDS):
        """The first line that `wanted` is true of; those before it are gone."""
        seen = []
        while True:
            try:
                line = self._lines.get(timeout=seconds)
            except queue.Empty:
                raise AssertionError(f"waited in vain for {what} after {[each[:200] for each in seen[-20:]]}") from None
            if wanted(line):
                return line
            seen.append(line)

    def drain(self):
        found = []
        while not self._lines.empty():
            found.append(self._lines.get())
        return found


class Reader:
    """The editor of text_reader.cpp."""

    def __init__(self, desk, **environment):
        self.process = desk.desktop.start(
            ["env", *(f"{name}={value}" for name, value in environment.items()),
             desk.desktop.build / "tests/e2e/commands/text_reader"], stdout=subprocess.PIPE, text=True)
        self.lines = Lines(self.process.stdout)
        self.lines.wait_for(lambda line: line == "focus", "the editor to have the keys")

    def wait_for_text(self, text):
        """The text is there; fails with what there is instead when nothing more comes."""
        latest = None
        def take(line):
            nonlocal latest
            if line.startswith("text "):
                latest = json.loads(line[5:])[0]
            return latest == text
        try:
            self.lines.wait_for(take, "the text")
        except AssertionError:
            raise AssertionError(f"asked for {text!r}\ncame {latest!r}") from None


class Desk:
    """A context manager. `actions` are those of the trackball's buttons by slot, `snippets` the texts of its settings;
    `prepare` is called with the desktop before the helper starts."""

    def __init__(self, build, actions, snippets=(), environment=None, prepare=None, key_bindings=None,
                 window_manager=True):
        self.desktop = Desktop(build, window_manager=window_manager, key_bindings=key_bindings)
        self._settings = {"version": 2, "devices": [entry(actions)],
                          "snippets": [{"name": f"Text {number}", "text": text}
                                       for number, text in enumerate(snippets, 1)]}
        self._environment = environment or {}
        self._prepare = prepare
        self.lamps = 0  # that are lit, as far as the driver has told

    def __enter__(self):
        self.desktop.__enter__()
        try:
            self._start()
        except BaseException:
            self.desktop.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self.desktop.__exit__()

    def _start(self):
        desktop = self.desktop
        desktop.environment["LANG"] = "C.UTF-8"
        desktop.environment.update(self._environment)
        if self._prepare is not None:
            self._prepare(desktop)
        desktop.settings_file.parent.mkdir(parents=True)
        desktop.settings_file.write_bytes(plistlib.dumps(self._settings))
        socket = desktop.home / "driver.sock"
        driver = desktop.start([desktop.build / "tests/e2e/commands/driver_on_display", socket],
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self._driver = driver
        self.driver_lines = Lines(driver.stdout)
        wait_until(socket.exists, "the driver")
        self.helper = desktop.start([desktop.helper_program, "--no-keeper", "--simulate", SKIFFLINE,
                                     "--driver-socket", socket])
        wait_until(self._is_taken, "the trackball to work by its record")

    def _is_taken(self):
        status = self.desktop.status()
        return status and any(device["condition"] == "taken" for device in status["DriverDevices"])

    def set_layout(self, layout, *options):
        name, _, variant = layout.partition(":")
        done = self.desktop.run(["setxkbmap", "-layout", name, "-variant", variant, *options])
        assert done.returncode == 0, done.stderr

    def lock(self, *keys):
        """Presses each of the keys; the driver has seen the lamps then."""
        for key in keys:
            done = self.desktop.run(["xdotool", "key", key])
            assert done.returncode == 0, done.stderr
            self._take_lamps(self.driver_lines.wait_for(lambda line: line.startswith("lamps"), "the lamps"))
        return self.lamps

    def wait_for_lamps(self, lamps):
        def are_lit():
            for line in self.driver_lines.drain():
                self._take_lamps(line)
            return self.lamps == lamps
        wait_until(are_lit, "the lamps to be as before")

    def _take_lamps(self, line):
        if line.startswith("lamps"):
            self.lamps = int(line.split()[1])

    def say(self, words):
        self._driver.stdin.write(words + "\n")
        self._driver.stdin.flush()

    def press(self, slot):
        self.say(f"press {slot}")

    def release(self, slot):
        self.say(f"release {slot}")

    def click(self, slot):
        self.press(slot)
        self.release(slot)

    def problems(self):
        return [(problem["command"], problem["reason"]) for problem in self.desktop.status()["CommandProblems"]]


def entry(actions):
    buttons = {f"{slot:02}": action if isinstance(action, dict) else {"cmd": action}
               for slot, action in {0: 1, **actions}.items()}
    return {"dict version": 1, "driver enabled": True, "device vendor id": VENDOR, "device product id": PRODUCT,
            "device version min": 0, "device version max": 0, "options": {}, "buttons": buttons}


def focused_window(desktop):
    done = desktop.run(["xprop", "-root", "_NET_ACTIVE_WINDOW"])
    found = re.search(r"0x[1-9a-f][0-9a-f]*", done.stdout)
    return found[0] if found else None
