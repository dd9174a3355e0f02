"""A helper that is killed is followed by another by itself; one that is asked to end is not."""
import os
import pathlib
import signal
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from desktop import Desktop, isolate, wait_until  # noqa: E402

NAME = "com.aldmoor.VeltrixHelper"
SKIFFLINE = "A1D0:2041:0107"


class KeeperTest(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Desktop(BUILD))
        self.helper = self.desktop.start([self.desktop.helper_program, "--simulate", SKIFFLINE])
        wait_until(self.answers, "the helper to answer")

    def tearDown(self):
        if self.answers():
            os.kill(self.owner(), signal.SIGTERM)
        wait_until(lambda: not self.keepers(), "the keeper to end")

    def answers(self):
        done = self.desktop.ctl("devices")
        return done.returncode == 0 and SKIFFLINE.split(":")[1].lower() in done.stdout.lower()

    def owner(self):
        owner = self.desktop.owner_of(NAME)
        return int(owner) if owner else None

    def keepers(self):
        found = subprocess.run(["pgrep", "-u", str(os.getuid()), "-r", "DRSTt", "-x", "veltrix-keeper"],
                               capture_output=True, text=True)
        return [int(pid) for pid in found.stdout.split()]

    def kill(self):
        pid = self.owner()
        os.kill(pid, signal.SIGKILL)
        if pid == self.helper.pid:
            self.helper.wait()
        return pid

    def test_killed_helper_is_followed_by_one_with_the_same_devices(self):
        for _ in range(3):
            killed = self.kill()
            wait_until(lambda: self.owner() not in (None, killed) and self.answers(), "the successor")

    def test_helper_that_is_asked_to_end_has_no_successor(self):
        self.helper.terminate()
        self.assertEqual(self.helper.wait(), 0)
        wait_until(lambda: not self.keepers(), "the keeper to end")
        self.assertFalse(self.answers())

    def test_successor_that_is_asked_to_end_has_none_either(self):
        killed = self.kill()
        wait_until(lambda: self.owner() not in (None, killed) and self.answers(), "the successor")
        os.kill(self.owner(), signal.SIGTERM)
        wait_until(lambda: not self.answers() and not self.keepers(), "helper and keeper to end")

    def test_helper_goes_on_without_its_keeper(self):
        for keeper in self.keepers():
            os.kill(keeper, signal.SIGKILL)
        wait_until(lambda: not self.keepers(), "the keeper to end")
        self.assertTrue(self.answers())
        self.helper.terminate()
        self.assertEqual(self.helper.wait(), 0)

    def test_second_helper_that_leaves_keeps_no_keeper(self):
        before = self.keepers()
        second = self.desktop.run([self.desktop.helper_program, "--simulate", ""])
        self.assertEqual(second.returncode, 0)
        wait_until(lambda: self.keepers() == before, "the keeper of the second to end")


if __name__ == "__main__":
    isolate()
    BUILD = sys.argv.pop(1)
    unittest.main(verbosity=2)
