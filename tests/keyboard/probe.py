"""The window of keystroke_probe.cpp, started and watched."""
import queue
import subprocess
import threading

WAIT_SECONDS = 20


class Probe:
    """Keeps the lines that the window prints until a test asks for them."""

    def __init__(self, desktop, **environment):
        program = desktop.build / "tests/keyboard/keystroke_probe"
        self.process = desktop.start(
            ["env", *(f"{name}={value}" for name, value in environment.items()), program],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self._lines = queue.Queue()
        self.seen = []
        threading.Thread(target=self._read, args=(self.process.stdout,), daemon=True).start()

    def _read(self, stream):
        with stream:
            for line in stream:
                self._lines.put(line.rstrip("\n"))
        self._lines.put(None)

    def kill(self):
        """Ends the window without a chance to clean up, as a crash does."""
        self.process.kill()
        self.process.wait()

    def wait_for(self, *lines):
        """Reads on until each of the lines has come, in this order; others may stand between them. What has been read
        is gone, and is returned."""
        read = []
        for wanted in lines:
            while True:
                try:
                    line = self._lines.get(timeout=WAIT_SECONDS)
                except queue.Empty:
                    raise AssertionError(f"waited in vain for {wanted!r} after {self.seen}") from None
                if line is None:
                    raise AssertionError(f"the window ended before {wanted!r}; it said {read}")
                read.append(line)
                self.seen.append(line)
                if line == wanted:
                    break
        return read

    def tell(self, word):
        self.process.stdin.write(word + "\n")
        self.process.stdin.flush()
        return self.wait_for(f"done {word}")

    def focus_field(self):
        self.tell("field")
        self.wait_for("grab held")

    def focus_plain(self):
        self.tell("plain")
        self.wait_for("grab none")
