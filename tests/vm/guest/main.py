"""Prepares the emulated machine and runs one file of tests in it.

usage: main.py BUILD_DIR TEST_FILE [PART_OF_A_TEST'S_NAME]
"""
import importlib.util
import os
import pathlib
import subprocess
import sys
import time
import unittest

NEEDED_RULES = ("50-udev-default.rules", "60-input-id.rules")
DRIVER_LOG = pathlib.Path("/tmp/driver.log")
SOURCE = pathlib.Path(__file__).resolve().parents[3]
sys.path[:0] = [str(SOURCE / "tests/vm/guest"), str(SOURCE / "tests/support")]


def prepare():
    os.environ.update(PATH="/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin", HOME="/tmp", LANG="C.UTF-8")
    rules = pathlib.Path("/run/udev/rules.d")
    rules.mkdir(parents=True, exist_ok=True)
    for rule in (SOURCE / "packaging").glob("*.rules"):
        (rules / rule.name).write_bytes(rule.read_bytes())
    if "VM_SYSTEMD" in os.environ:
        subprocess.run(["udevadm", "control", "--reload"], check=True)
    else:
        # All others take most of a second for each new device, and say nothing that the driver asks for.
        for rule in pathlib.Path("/lib/udev/rules.d").iterdir():
            if rule.name not in NEEDED_RULES and not (rules / rule.name).exists():
                (rules / rule.name).symlink_to("/dev/null")
        subprocess.run(["/lib/systemd/systemd-udevd", "--daemon"], check=True, stderr=subprocess.DEVNULL)
    subprocess.run(["udevadm", "trigger", "--action=add", "--subsystem-match=input", "--subsystem-match=misc"], check=True)
    subprocess.run(["udevadm", "settle", "-t", "30"], check=True)


class Result(unittest.TextTestResult):
    """Says how long each test took, and after a failure what the driver said last."""

    def startTest(self, test):
        self._began = time.monotonic()
        self._before = len(self.failures + self.errors)
        DRIVER_LOG.unlink(missing_ok=True)
        super().startTest(test)

    def stopTest(self, test):
        for _, problem in (self.failures + self.errors)[self._before:]:
            print(problem, *self._last_lines(), sep="\n", flush=True)
        super().stopTest(test)

    @staticmethod
    def _last_lines():
        try:
            return DRIVER_LOG.read_text().splitlines()[-20:]
        except FileNotFoundError:
            return []

    def getDescription(self, test):
        return test.id()

    def addSuccess(self, test):
        unittest.TestResult.addSuccess(self, test)
        self.stream.writeln(f"ok, {time.monotonic() - self._began:.1f} s")


def chosen(suite, part):
    for test in suite:
        if isinstance(test, unittest.TestSuite):
            yield from chosen(test, part)
        elif part in test.id():
            yield test


def main(build, file, part=""):
    prepare()
    os.environ["VELTRIX_BUILD"] = build
    origin = importlib.util.spec_from_file_location(pathlib.Path(file).stem, file)
    module = importlib.util.module_from_spec(origin)
    origin.loader.exec_module(module)
    tests = list(chosen(unittest.defaultTestLoader.loadTestsFromModule(module), part))
    if not tests:
        print(f"no test is called {part}", file=sys.stderr)
        return 2
    uptime = pathlib.Path("/proc/uptime").read_text().split()[0]
    print(f"tests begin {uptime} s after the kernel", flush=True)
    result = unittest.TextTestRunner(stream=sys.stdout, verbosity=2, resultclass=Result).run(unittest.TestSuite(tests))
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
