"""Input devices that the kernel believes to be real, made through /dev/uhid."""
import itertools
import os
import select
import struct
import threading

import evdev
from waiting import wait_until

VENDOR = 0xA1D0

UHID_DESTROY, UHID_GET_REPORT, UHID_GET_REPORT_REPLY, UHID_CREATE2, UHID_INPUT2 = 1, 9, 10, 11, 12
UHID_SET_REPORT, UHID_SET_REPORT_REPLY = 13, 14
BUS_USB = 3
MOST_EVENT_BYTES = 4 + 4376
EIO = 5

_numbers = itertools.count(1)


class Device:
    """A device with a report descriptor."""

    def __init__(self, name, descriptor, vendor, product, version):
        self.unique = f"VM-{next(_numbers):05}"
        self._file = os.open("/dev/uhid", os.O_RDWR | os.O_CLOEXEC)
        head = struct.pack("=I128s64s64sHHIIII", UHID_CREATE2, name.encode(), b"vm/input0", self.unique.encode(),
                           len(descriptor), BUS_USB, vendor, product, version, 0)
        os.write(self._file, head + descriptor)
        # A question that nobody answers holds the kernel up for seconds.
        self._ended = os.eventfd(0)
        self._answering = threading.Thread(target=self._answer, daemon=True)
        self._answering.start()
        self._node = None

    @property
    def node(self):
        """Its event node, once udev has finished with it."""
        if self._node is None:
            self._node = wait_until(lambda: evdev.settled_node(unique=self.unique), f"the node of {self.unique}")
        return self._node

    def _answer(self):
        poller = select.poll()
        poller.register(self._file, select.POLLIN)
        poller.register(self._ended, select.POLLIN)
        while self._ended not in [ready for ready, _ in poller.poll()]:
            event = os.read(self._file, MOST_EVENT_BYTES)
            kind = struct.unpack_from("=I", event)[0]
            number = struct.unpack_from("=I", event, 4)[0]
            if kind == UHID_GET_REPORT:
                os.write(self._file, struct.pack("=IIHH", UHID_GET_REPORT_REPLY, number, EIO, 0))
            elif kind == UHID_SET_REPORT:
                os.write(self._file, struct.pack("=IIH", UHID_SET_REPORT_REPLY, number, 0))

    def fileno(self):
        """For somebody else who sends reports."""
        return self._file

    def send(self, report):
        os.write(self._file, struct.pack("=IH", UHID_INPUT2, len(report)) + report)

    def unplug(self):
        if self._file is not None:
            os.eventfd_write(self._ended, 1)
            self._answering.join()
            os.write(self._file, struct.pack("=I", UHID_DESTROY))
            os.close(self._file)
            os.close(self._ended)
            self._file = None

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.unplug()


def trackball_descriptor(buttons, hi_res):
    """Reports: 16 bits of buttons, X and Y of 16 bits, wheel and tilt of 8 bits."""
    wheel = bytes.fromhex("0938 1581 257F 3500 4500 7508 9501 8106")
    if hi_res:  # eight reported steps for a detent
        multiplier = bytes.fromhex("0948 1500 2501 3501 4508 7502 9501 B102 7506 B103")
        wheel = bytes.fromhex("A102") + multiplier + wheel + bytes.fromhex("C0")
    return (bytes.fromhex("0501 0902 A101 0901 A100 0509 1901 29") + bytes([buttons]) +
            bytes.fromhex("1500 2501 7501 95") + bytes([buttons]) + bytes.fromhex("8102") +
            (bytes.fromhex("7501 95") + bytes([16 - buttons]) + bytes.fromhex("8103") if buttons < 16 else b"") +
            bytes.fromhex("0501 0930 0931 160180 26FF7F 7510 9502 8106") + wheel +
            bytes.fromhex("050C 0A3802 1581 257F 7508 9501 8106 C0 C0"))


class Hand:
    """What a hand does with a trackball, as the reports of trackball_descriptor(); a class beside it sends them."""

    _held = 0

    def report(self, x=0, y=0, wheel=0, tilt=0):
        self.send(struct.pack("=Hhhbb", self._held, x, y, wheel, tilt))

    def press(self, *buttons):
        for button in buttons:
            self._held |= 1 << button
        self.report()

    def release(self, *buttons):
        for button in buttons:
            self._held &= ~(1 << button)
        self.report()


class Trackball(Hand, Device):
    def __init__(self, product=0x2041, version=0x0107, buttons=8, hi_res=False, vendor=VENDOR, name="Test Trackball"):
        super().__init__(name, trackball_descriptor(buttons, hi_res), vendor, product, version)


KEYBOARD = bytes.fromhex("0501 0906 A101 0507 19E0 29E7 1500 2501 7501 9508 8102 7508 9501 8103"
                         "0507 1900 29DD 1500 26DD00 7508 9506 8100 C0")


class Keyboard(Device):
    """Keys by HID usage; modifiers are usages from 0xE0 on."""

    def __init__(self, name="Test Keyboard"):
        self._held = []
        super().__init__(name, KEYBOARD, VENDOR + 1, 1, 1)

    def _report(self):
        modifiers = sum(1 << usage - 0xE0 for usage in self._held if usage >= 0xE0)
        keys = [usage for usage in self._held if usage < 0xE0]
        self.send(bytes([modifiers, 0, *(keys + [0] * 6)[:6]]))

    def press(self, usage):
        self._held.append(usage)
        self._report()

    def release(self, usage):
        self._held.remove(usage)
        self._report()
