"""How the checks of real desktops are run: a command is given to a button, the helper carries it out, and what the
desktop made of it is looked at.

A check is a subclass of DesktopCheck whose methods test_... are marked with the codes of the commands that they see.
Each has windows of its own; up to eleven commands share a session. main() prints a line for each command, "seen" or
"not seen" with the reason, and gives the exit code of the script.
"""
import contextlib
import pathlib
import re
import shutil
import subprocess
import sys

TESTS = pathlib.Path(__file__).resolve().parent.parent
sys.path[1:1] = [str(TESTS / "e2e/commands"), str(TESTS / "support")]
from trackball_desk import Desk, Lines, isolate, wait_until  # noqa: E402
from typed_keys import FREE_SLOTS  # noqa: E402

ROW = re.compile(r"^\| (\d+) \| ([^|]*) \|", re.MULTILINE)


def sees(*codes, needs=()):
    """Marks a method that sees these commands working; `needs` are programs without which it cannot be tried."""
    def mark(method):
        method.codes, method.needs = codes, needs
        return method
    return mark


class DesktopCheck:
    """`name` is what is printed; `environment` is that of the session. start() is called with the Desktop."""

    name = ""
    environment = {}

    def __init__(self, build):
        self._build = build
        self._titles = dict(ROW.findall((TESTS.parent / "docs/commands.md").read_text(encoding="utf-8")))
        self._failed = 0

    def start(self, desktop):
        raise NotImplementedError

    def set_up(self):
        """Before each method."""

    def finish(self):
        """Before the session ends."""

    # The following are for the methods.

    def press(self, code):
        self.desk.press(self._slots[code])

    def release(self, code):
        self.desk.release(self._slots[code])

    def do(self, code):
        """Clicks the button that has the command."""
        self.desk.click(self._slots[code])

    def run_tool(self, *command):
        return self.desk.desktop.run(command).stdout

    def open_windows(self, program, *titles):
        """Ends with the method."""
        process = self.desk.desktop.start(["/usr/bin/python3", "-B", TESTS / "desktops/two_windows.py", program, *titles],
                                          stdout=subprocess.PIPE, text=True)
        self._ending.callback(process.wait)
        self._ending.callback(process.kill)
        return Lines(process.stdout)

    # How it runs.

    def run(self, wanted):
        methods = [method for name in dir(type(self)) if name.startswith("test_")
                   for method in [getattr(self, name)] if method and (not wanted or set(wanted) & set(method.codes))]
        methods.sort(key=lambda method: method.__func__.__code__.co_firstlineno)
        while methods:
            batch = [methods.pop(0)]
            while methods and sum(len(set(method.codes)) for method in [*batch, methods[0]]) <= len(FREE_SLOTS):
                batch.append(methods.pop(0))
            self._run_batch(batch)
        return 1 if self._failed else 0

    def _run_batch(self, methods):
        codes = list(dict.fromkeys(code for method in methods for code in method.codes))
        self._slots = dict(zip(codes, FREE_SLOTS))
        with Desk(self._build, {slot: code for code, slot in self._slots.items()}, environment=self.environment,
                  prepare=self.start, window_manager=False) as self.desk:
            for method in methods:
                missing = [program for program in method.needs if not shutil.which(program)]
                if missing:
                    self._tell(method, f"not seen: {', '.join(missing)} is not installed")
                    continue
                with contextlib.ExitStack() as self._ending:
                    try:
                        self.set_up()
                        method()
                        self._tell(method, None)
                    except Exception as error:
                        self._tell(method, f"not seen: {error} {self.desk.problems() or ''}".rstrip())
            self.finish()

    def _tell(self, method, problem):
        self._failed += problem is not None
        for code in method.codes:
            print(f"{self.name}: {code} {self._titles[str(code)]}: {problem or 'seen'}", flush=True)


def main(*checks):
    """Arguments: the folder of the build, and codes of commands when not all are wanted."""
    isolate()
    codes = [int(code) for code in sys.argv[2:]]
    return max([check(sys.argv[1]).run(codes) for check in checks])
