"""The driver as a process, as the service manager runs it: with a socket that outlives it."""
import os
import pathlib
import signal
import socket
import subprocess

import evdev
import link
from waiting import wait_until

LOG = pathlib.Path("/tmp/driver.log")
POINTER = "Veltrix Trackball"
KEYBOARD = "Veltrix Keyboard"


def program():
    return pathlib.Path(os.environ["VELTRIX_BUILD"]) / "bin/veltrix-driver"


class Driver:
    """Runs the driver from its construction to stop(); what it says goes to LOG."""

    def __init__(self):
        folder = pathlib.Path(link.SOCKET).parent
        folder.mkdir(exist_ok=True)
        pathlib.Path(link.SOCKET).unlink(missing_ok=True)
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self._socket.bind(link.SOCKET)
        os.chmod(link.SOCKET, 0o666)
        self._socket.listen()
        self._readers = {}
        self.process = None
        self.start()

    def start(self):
        started = ["sh", "-c", 'exec 3<&"$0"; export LISTEN_FDS=1 LISTEN_PID=$$; exec "$@"', str(self._socket.fileno()),
                   str(program())]
        with LOG.open("a") as log:
            self.process = subprocess.Popen(started, pass_fds=[self._socket.fileno()], stderr=log)

    @property
    def pointer(self):
        """Reads the pointer that the driver gives out; there once a trackball has been taken over."""
        return self._reader(POINTER)

    @property
    def keyboard(self):
        return self._reader(KEYBOARD)

    def _reader(self, name):
        def found():
            if self.process.poll() is not None:
                raise AssertionError(f"the driver ended with {self.process.returncode}")
            return evdev.nodes(name)
        if name not in self._readers:
            self._readers[name] = evdev.Reader(wait_until(found, f"the device {name}")[0])
        return self._readers[name]

    def descriptors(self):
        return len(os.listdir(f"/proc/{self.process.pid}/fd"))

    def open_files(self):
        folder = f"/proc/{self.process.pid}/fd"
        found = []
        for descriptor in os.listdir(folder):
            try:
                found.append(os.readlink(f"{folder}/{descriptor}"))
            except FileNotFoundError:  # closed in between
                pass
        return found

    def kill(self):
        """Ends it without a chance to tidy up; restart() is next."""
        self.process.kill()

    def restart(self):
        self.process.wait(timeout=10)
        self._forget_readers()
        self.start()

    def pause(self):
        self.process.send_signal(signal.SIGSTOP)

    def go_on(self):
        self.process.send_signal(signal.SIGCONT)

    def _forget_readers(self):
        for reader in self._readers.values():
            reader.close()
        self._readers.clear()
        wait_until(lambda: not evdev.nodes(POINTER) and not evdev.nodes(KEYBOARD), "the end of its devices")

    def stop(self):
        if self.process.poll() is None:
            self.process.terminate()
            self.process.wait(timeout=10)
        self._forget_readers()
        self._socket.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()
