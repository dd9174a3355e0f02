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


class Typing:
    """For a test case with a desktop and a probe: types into it."""

    def xdotool(self, *words):
        done = self.desktop.run(["xdotool", *words])
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def key(self, *keys):
        self.xdotool("key", "--delay", "0", *keys)

    def expect_caps_lock_alone_and_with_shift(self):
        self.key("Caps_Lock", "w")
        self.addCleanup(self.key, "Caps_Lock")
        self.probe.wait_for("key 13 0x0400 87")
        self.key("shift+w")
        self.probe.wait_for("key 13 0x0600 119")
