"""Measures, in the emulated machine, the way from a trackball to the desktop through the driver and through others.

usage: guest.py BUILD_DIR ROUNDS [PACKAGE_FILE...]

The outcome is what driver_figures.py reads. Programs whose packages are not given are left out.
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

SOURCE = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(SOURCE / folder) for folder in ("tests/vm/guest", "tests/support", "bench")]
import driver  # noqa: E402
import entries  # noqa: E402
import evdev  # noqa: E402
import link  # noqa: E402
import main as machine  # noqa: E402
import processes  # noqa: E402
import seat  # noqa: E402
import uhid  # noqa: E402
from waiting import wait_until  # noqa: E402

# Reports a second, 0 for one after the other, and how many are measured.
PACES = {125: 250, 500: 750, 1000: 1500, 8000: 4000, 0: 3000}
PRODUCT, PRODUCT_VERSION, TRACKBALL = 0x2041, 0x0107, "Bench Trackball"
IDLE_SECONDS = 10
OUTCOME = pathlib.Path("/run/vm/job/outcome")


def bench_program(name):
    return pathlib.Path(os.environ["VELTRIX_BUILD"]) / "bench" / name


def device_of(node):
    """Unlike the number of a node, that of its device is not used again."""
    return (pathlib.Path("/sys/class/input") / pathlib.Path(node).name / "device").resolve().name


def devices():
    return {device_of(node) for node in evdev.nodes()}


def new_pointer(known):
    """The event node of a device that was not there before."""
    def found():
        new = [node for node in evdev.nodes() if device_of(node) not in known and moves(node)]
        return new[0] if new else None
    return wait_until(found, "a virtual pointer", 30)


def moves(node):
    bits = (pathlib.Path("/sys/class/input") / pathlib.Path(node).name / "device/capabilities/rel").read_text()
    return int(bits.split()[-1], 16) & 1 << evdev.REL_X != 0


def start(command, **options):
    return subprocess.Popen([str(word) for word in command], **options)


def stop(process):
    process.terminate()
    process.wait()


class Bare:
    name = "bare loop"

    def __init__(self, ball):
        known = devices()
        self._process = start([bench_program("bare_loop"), ball.node, "Bare Pointer"])
        self.pids = [self._process.pid]
        self.pointer = new_pointer(known)

    def close(self):
        stop(self._process)


class Driver:
    name = "veltrix-driver"

    def __init__(self, _ball):
        self._driver = driver.Driver()
        self._link = link.Link()
        self._link.expect_status(link.ACCEPTED)
        self._link.apply(*factory_settings())
        self._link.expect_condition(link.TAKEN)
        self.pids = [self._driver.process.pid]
        self.pointer = wait_until(lambda: evdev.nodes(driver.POINTER), "the driver's pointer")[0]

    def close(self):
        self._link.close()
        self._driver.stop()


class Interception:
    """Two programs with a pipe between them."""
    name = "interception-tools"
    needs = "/usr/bin/interception"

    def __init__(self, ball):
        known = devices()
        self._reader = start(["interception", "-g", ball.node], stdout=subprocess.PIPE)
        self._writer = start(["uinput", "-d", ball.node], stdin=self._reader.stdout)
        self._reader.stdout.close()
        self.pids = [self._reader.pid, self._writer.pid]
        self.pointer = new_pointer(known)

    def close(self):
        stop(self._reader)
        stop(self._writer)


class InputRemapper:
    """A service that is told over the bus what to take."""
    name = "input-remapper"
    needs = "/usr/bin/input-remapper-service"
    folder = pathlib.Path("/tmp/input-remapper")
    bus = "inputremapper.Control"

    def __init__(self, ball):
        self._prepare()
        known = devices()
        self._service = start(["input-remapper-service"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_until(lambda: self._call("set_config_dir", "s", self.folder), "input-remapper", 60)
        self._call("start_injecting", "ss", TRACKBALL, "bench")
        self.pointer = new_pointer(known)
        service = str(self._service.pid)
        workers = subprocess.run(["pgrep", "-P", service], capture_output=True, text=True, check=True).stdout
        self.pids = [service, *workers.split()]

    def _prepare(self):
        if not self.folder.exists():
            presets = self.folder / "presets" / TRACKBALL
            presets.mkdir(parents=True)
            (self.folder / "config.json").write_text('{"version": "1.5.0", "autoload": {}}')
            # A device of which nothing is wanted is left alone.
            (presets / "bench.json").write_text('{"mapping": {"1,275,1": ["KEY_A", "keyboard"]}}')
            pathlib.Path("/run/dbus").mkdir(exist_ok=True)
            subprocess.run(["dbus-daemon", "--system", "--fork"], check=True)

    def _call(self, method, *arguments):
        path = f"/{self.bus.replace('.', '/')}"
        command = ["busctl", "call", self.bus, path, self.bus, method, *map(str, arguments)]
        return subprocess.run(command, capture_output=True).returncode == 0

    def close(self):
        self._call("stop_all")
        stop(self._service)


def factory_settings():
    """Record and scroll parameters of the trackball's factory entry."""
    for entry in entries.factory_entries():
        if entry["device product id"] == PRODUCT:
            with tempfile.TemporaryDirectory() as folder:
                record = entries.records_of([entry], folder)[0]
            return record, PRODUCT, PRODUCT_VERSION, entries.scroll_parameters(entry)
    raise AssertionError("the factory settings do not know the trackball")


def measure(ball, subject):
    """For each pace: reports that came a second, median and 99th percentile of their time, processor time of each."""
    result = {}
    for rate, count in PACES.items():
        command = [bench_program("path_meter"), ball.fileno(), subject.pointer, rate, count, *subject.pids]
        done = subprocess.run([str(word) for word in command], pass_fds=[ball.fileno()], capture_output=True, text=True)
        if done.returncode != 0:
            raise AssertionError(f"{subject.name}, {rate} a second: {done.stderr}")
        result[rate] = [float(word) for word in done.stdout.split()]
    return result


def idle_figures(subject):
    """Memory in KiB, and how often it woke up."""
    pid = subject.pids[0]
    before = processes.wakeups(pid)
    time.sleep(IDLE_SECONDS)
    return {"memory": processes.memory(pid), "wakeups": processes.wakeups(pid) - before, "seconds": IDLE_SECONDS}


def main(build, rounds, *packages):
    os.environ["VELTRIX_BUILD"] = build
    for package in packages:
        unpack(package)
    machine.prepare()
    seat.set_active_user(0)
    subjects = [Bare, Driver] + [other for other in (Interception, InputRemapper) if os.path.exists(other.needs)]
    figures = {subject.name: [] for subject in subjects}
    for number in range(int(rounds)):
        for kind in subjects:
            with uhid.Trackball(PRODUCT, PRODUCT_VERSION, name=TRACKBALL) as ball:
                assert ball.node in evdev.nodes()  # or it would be taken for the pointer that is to come
                subject = kind(ball)
                subprocess.run(["udevadm", "settle", "-t", "30"], check=True)
                figures[kind.name].append(measure(ball, subject))
                if kind is Driver and number == 0:
                    idle = idle_figures(subject)
                subject.close()
        print(f"round {number + 1} of {rounds}", flush=True)
    OUTCOME.write_text(json.dumps({"paces": list(PACES), "subjects": figures, "driver": idle}))
    return 0


def unpack(package):
    """Lays a package's files over the machine's, which end with it; without what it has udev start."""
    contents = subprocess.Popen(["dpkg-deb", "--fsys-tarfile", package], stdout=subprocess.PIPE)
    subprocess.run(["tar", "-x", "-C", "/", "--keep-directory-symlink", "--exclude=*/udev/rules.d/*"],
                   stdin=contents.stdout, check=True)
    contents.wait()


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
