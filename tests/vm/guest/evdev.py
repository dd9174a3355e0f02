"""Event nodes: finding them, reading them, and asking the kernel about them."""
import errno
import fcntl
import os
import pathlib
import select
import struct
import time

EV_SYN, EV_KEY, EV_REL, EV_MSC, EV_LED = 0, 1, 2, 4, 0x11
SYN_REPORT, SYN_DROPPED = 0, 3
REL_X, REL_Y, REL_HWHEEL, REL_WHEEL, REL_WHEEL_HI_RES, REL_HWHEEL_HI_RES = 0, 1, 6, 8, 11, 12
BTN_MOUSE = 0x110
LED_NUML, LED_CAPSL = 0, 1
REPEATED = 2

EVENT = struct.Struct("@qqHHi")


def _ioctl(direction, number, size):
    return direction << 30 | size << 16 | ord("E") << 8 | number


def _attribute(folder, name):
    try:
        return (folder / name).read_text().strip()
    except OSError:
        return None


def nodes(name=None, unique=None):
    """Event nodes by the name or the unique text of their device, in the order of their numbers."""
    found = []
    for folder in pathlib.Path("/sys/class/input").glob("event*"):
        device = folder / "device"
        if (name is None or _attribute(device, "name") == name) and \
           (unique is None or _attribute(device, "uniq") == unique) and os.path.exists(f"/dev/input/{folder.name}"):
            found.append(int(folder.name.removeprefix("event")))
    return [f"/dev/input/event{number}" for number in sorted(found)]


def settled_node(name=None, unique=None):
    """The one node that there is, when udev has finished with it; else None."""
    found = nodes(name, unique)
    if len(found) != 1:
        return None
    try:
        number = os.stat(found[0]).st_rdev
    except FileNotFoundError:
        return None
    database = f"/run/udev/data/c{os.major(number)}:{os.minor(number)}"
    return found[0] if os.path.exists(database) else None


def light(node, lamp, lit):
    """Lights a keyboard's lamp, or puts it out, as desktops do."""
    file = os.open(node, os.O_WRONLY | os.O_CLOEXEC)
    try:
        os.write(file, EVENT.pack(0, 0, EV_LED, lamp, lit) + EVENT.pack(0, 0, EV_SYN, SYN_REPORT, 0))
    finally:
        os.close(file)


class Reader:
    """Reads an event node. Events are (type, code, value), without ends of groups, scan codes, lamps and repetitions."""

    def __init__(self, node):
        self.file = os.open(node, os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC)
        fcntl.ioctl(self.file, _ioctl(1, 0xA0, 4), struct.pack("@i", time.CLOCK_MONOTONIC))
        self.gone = False

    def events(self):
        """What is there, as (time in seconds, type, code, value)."""
        result = []
        while True:
            try:
                data = os.read(self.file, EVENT.size * 64)
            except BlockingIOError:
                return result
            except OSError as problem:
                if problem.errno != errno.ENODEV:
                    raise
                self.gone = True
                return result
            for seconds, micro, kind, code, value in EVENT.iter_unpack(data):
                result.append((seconds + micro / 1e6, kind, code, value))

    def read(self, count, seconds=5):
        """At least `count` events, fewer when they do not come in `seconds`."""
        result, end = [], time.monotonic() + seconds
        while len(result) < count and not self.gone and time.monotonic() < end:
            select.select([self.file], [], [], max(0, end - time.monotonic()))
            result += [event[1:] for event in self.events() if event[1:3] != (EV_SYN, SYN_REPORT)
                       and event[1] not in (EV_MSC, EV_LED)
                       and (event[1] != EV_KEY or event[3] != REPEATED)]
        return result

    def grab(self):
        """Takes the device exclusively; False when somebody else has."""
        try:
            fcntl.ioctl(self.file, _ioctl(1, 0x90, 4), 1)
        except OSError as problem:
            if problem.errno != errno.EBUSY:
                raise
            return False
        return True

    def ungrab(self):
        fcntl.ioctl(self.file, _ioctl(1, 0x90, 4), 0)

    def pressed(self):
        """Codes of the keys and buttons that are down. Asking drops what waits to be read of them."""
        size = 0x300 // 8
        bits = fcntl.ioctl(self.file, _ioctl(2, 0x18, size), bytes(size))
        return [code for code in range(size * 8) if bits[code // 8] >> code % 8 & 1]

    def identity(self):
        """Bus, vendor, product and version."""
        return struct.unpack("@4H", fcntl.ioctl(self.file, _ioctl(2, 0x02, 8), bytes(8)))

    def close(self):
        os.close(self.file)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()
