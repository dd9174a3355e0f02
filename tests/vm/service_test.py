"""The driver as the service that is shipped, installed as people install it, under the system's own manager."""
import os
import pathlib
import pwd
import re
import signal
import subprocess
import unittest

import evdev
import link
import seat
import uhid
from case import PRODUCT, PRODUCT_VERSION
from evdev import BTN_MOUSE, EV_KEY
from waiting import wait_until

NEEDS_SYSTEMD = True

SOURCE = pathlib.Path(__file__).resolve().parents[2]
SERVICE, SOCKET = "veltrix-driver.service", "veltrix-driver.socket"
MOST_EXPOSURE = 1.5


def run(*command):
    done = subprocess.run(command, capture_output=True, text=True)
    if done.returncode != 0:
        raise AssertionError(f"{command} ended with {done.returncode}: {done.stdout}{done.stderr}")
    return done.stdout


def is_active(unit):
    return subprocess.run(["systemctl", "is-active", "--quiet", unit]).returncode == 0


def installed_files():
    """All files where an installation puts any; looking through the whole of the prefix would take a minute."""
    folders = [pathlib.Path("/usr/local", part) for part in ("bin", "lib/modules-load.d", "lib/systemd", "lib/sysusers.d",
                                                             "lib/udev", "lib/veltrix", "share/applications", "share/icons")]
    tops = [pathlib.Path("/usr/local"), pathlib.Path("/usr/local/lib"), pathlib.Path("/usr/local/share")]
    return sorted({str(path) for folder in (*folders, pathlib.Path("/etc/systemd/system")) for path in folder.rglob("*")} |
                  {str(path) for folder in tops if folder.exists() for path in folder.iterdir()})


def properties_of(node):
    return run("udevadm", "info", "--query=property", f"--name={node}").split()


class ServiceTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # The harness puts the rules of the sources in place; here they are to come from the installation.
        for rule in pathlib.Path("/run/udev/rules.d").glob("*veltrix*"):
            rule.unlink()
        cls.before = installed_files()
        seat.set_active_user(0)
        print(run(SOURCE / "packaging/install.sh", "install", os.environ["VELTRIX_BUILD"]), flush=True)

    def take(self):
        connection = self.enterContext(link.Link())
        connection.expect_status(link.ACCEPTED)
        connection.apply(link.record())
        connection.expect_condition(link.TAKEN)
        return connection

    def main_process(self):
        return int(run("systemctl", "show", "--property=MainPID", "--value", SERVICE))

    def assert_clicks(self, ball):
        node = wait_until(lambda: evdev.nodes("Veltrix Trackball"), "the virtual pointer")[0]
        with evdev.Reader(node) as pointer:
            ball.press(0)
            self.assertEqual(pointer.read(1), [(EV_KEY, BTN_MOUSE, 1)])
            ball.release(0)
            self.assertEqual(pointer.read(1), [(EV_KEY, BTN_MOUSE, 0)])

    def test_1_helper_starts_the_driver(self):
        self.assertTrue(is_active(SOCKET))
        self.assertFalse(is_active(SERVICE))
        ball = self.enterContext(uhid.Trackball(PRODUCT, PRODUCT_VERSION))
        self.take()
        self.assertTrue(is_active(SERVICE))
        self.assert_clicks(ball)

    def test_2_trackball_that_comes_later_works(self):
        connection = self.enterContext(link.Link())
        connection.expect_status(link.ACCEPTED)
        connection.apply(link.record())
        for _ in range(3):
            with uhid.Trackball(PRODUCT, PRODUCT_VERSION) as ball:
                connection.expect_condition(link.TAKEN)
                self.assert_clicks(ball)
            connection.expect_condition(link.DETACHED)

    def test_3_killed_driver_comes_back(self):
        ball = self.enterContext(uhid.Trackball(PRODUCT, PRODUCT_VERSION))
        for _ in range(3):
            connection = self.take()
            process = self.main_process()
            ball.press(0)
            os.kill(process, signal.SIGKILL)
            connection.expect_end()
            ball.release(0)
            wait_until(lambda: self.main_process() not in (0, process), "another driver")
        self.take()
        self.assert_clicks(ball)

    def test_4_driver_has_no_rights_that_it_does_not_need(self):
        self.enterContext(uhid.Trackball(PRODUCT, PRODUCT_VERSION))
        self.take()
        status = dict(line.split(":", 1) for line in
                      pathlib.Path(f"/proc/{self.main_process()}/status").read_text().splitlines())
        user = pwd.getpwnam("veltrix-driver")
        self.assertEqual(status["Uid"].split(), [str(user.pw_uid)] * 4)
        self.assertEqual({int(status[name], 16) for name in ("CapPrm", "CapEff", "CapBnd", "CapAmb")}, {0})
        self.assertEqual((status["NoNewPrivs"].strip(), status["Seccomp"].strip()), ("1", "2"))
        node = os.stat("/dev/uinput")
        self.assertEqual((node.st_gid, node.st_mode & 0o777), (user.pw_gid, 0o660))
        report = run("systemd-analyze", "security", "--no-pager", SERVICE)
        exposure = float(re.search(r"Overall exposure level for \S+: ([\d.]+)", report)[1])
        print(f"exposure {exposure}", end=" ... ", flush=True)
        self.assertLessEqual(exposure, MOST_EXPOSURE)

    def test_5_desktops_see_trackballs(self):
        ball = self.enterContext(uhid.Trackball(PRODUCT, PRODUCT_VERSION))
        self.take()
        self.assertIn("ID_INPUT_TRACKBALL=1", properties_of(ball.node))
        virtual = wait_until(lambda: evdev.settled_node("Veltrix Trackball"), "the virtual pointer")
        self.assertIn("ID_INPUT_TRACKBALL=1", properties_of(virtual))
        keyboard = wait_until(lambda: evdev.settled_node("Veltrix Keyboard"), "the virtual keyboard")
        self.assertIn("ID_INPUT_KEYBOARD=1", properties_of(keyboard))
        self.assertNotIn("ID_INPUT_TRACKBALL=1", properties_of(keyboard))

    def test_6_uninstalling_leaves_nothing(self):
        print(run(SOURCE / "packaging/install.sh", "uninstall"), flush=True)
        self.assertEqual(installed_files(), self.before)
        self.assertFalse(is_active(SOCKET) or is_active(SERVICE))
        self.assertFalse(pathlib.Path("/run/veltrix").exists())
        self.assertRaises(KeyError, pwd.getpwnam, "veltrix-driver")
