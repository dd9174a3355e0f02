"""A trackball on a USB bus that exists in software only: a true bcdDevice, a true plug and unplug."""
import os
import pathlib
import subprocess

import evdev
import uhid
from waiting import wait_until

GADGET = pathlib.Path("/sys/kernel/config/usb_gadget/trackball")
PORT = pathlib.Path("/sys/bus/usb/devices/1-1")
NAME = "Test Maker Test Gadget"  # what usbhid calls it


def load_modules():
    loaded = pathlib.Path("/proc/modules").read_text()
    for file in pathlib.Path("/run/vm/modules/usb").read_text().split():
        if file.removesuffix(".ko").replace("-", "_") not in [line.split()[0] for line in loaded.splitlines()]:
            subprocess.run(["/run/vm/busybox", "insmod", f"/run/vm/modules/{file}"], check=True)
    if not GADGET.parent.exists():
        subprocess.run(["mount", "-t", "configfs", "none", "/sys/kernel/config"], check=True)


class GadgetTrackball(uhid.Hand):
    """There can be one in a machine, which stays; plug() and unplug() are of its cable."""

    def __init__(self, product, bcd_device, buttons=8):
        load_modules()
        function = GADGET / "functions/hid.0"
        for folder in (GADGET, GADGET / "strings/0x409", GADGET / "configs/c.1", function):
            folder.mkdir()
        descriptor = uhid.trackball_descriptor(buttons, False)
        values = {"idVendor": hex(uhid.VENDOR), "idProduct": hex(product), "bcdDevice": hex(bcd_device),
                  "strings/0x409/manufacturer": "Test Maker", "strings/0x409/product": "Test Gadget",
                  "strings/0x409/serialnumber": "VM-0001", "functions/hid.0/protocol": "0",
                  "functions/hid.0/subclass": "0", "functions/hid.0/report_length": "8"}
        for name, value in values.items():
            (GADGET / name).write_text(value)
        (function / "report_desc").write_bytes(descriptor)
        os.symlink(function, GADGET / "configs/c.1/hid.0")
        (GADGET / "UDC").write_text("dummy_udc.0")
        self.node = self._wait()
        self._reports = os.open("/dev/hidg0", os.O_RDWR)

    def _wait(self):
        return wait_until(lambda: evdev.settled_node(NAME), "the trackball on the USB bus")

    def send(self, report):
        os.write(self._reports, report)

    # Taking the gadget off its controller corrupts lists of the simulated bus; this is the way that does not.
    def unplug(self):
        (PORT / "authorized").write_text("0")
        wait_until(lambda: not evdev.nodes(NAME), "the end of the trackball on the USB bus")

    def plug(self):
        self._held = 0
        (PORT / "authorized").write_text("1")
        self.node = self._wait()
