"""The engine itself, asked what it gives out."""
import os
import pathlib
import subprocess

import evdev


class Predictor:
    """Times are in microseconds; events are (type, code, value)."""

    def __init__(self):
        program = pathlib.Path(os.environ["VELTRIX_BUILD"]) / "tests/vm/engine_predict"
        self._process = subprocess.Popen([program], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def _ask(self, *words):
        """The events, and the next deadline or None."""
        self._process.stdin.write(" ".join(map(str, words)) + "\n")
        self._process.stdin.flush()
        events = []
        while True:
            answer = self._process.stdout.readline().split()
            if not answer or answer[0] == "wrong":
                raise AssertionError(f"the engine does not understand {words}")
            if answer[0] == "deadline":
                return events, None if answer[1] == "never" else int(answer[1])
            events.append(tuple(map(int, answer)))

    def model(self, product, time):
        self._ask("model", f"{product:x}")
        self._ask("until", time)

    def apply(self, time, record, scroll):
        return self._ask("apply", time, record.hex(), *scroll)

    def frame(self, time, x=0, y=0, wheel=0, tilt=0, pressed=(), released=(), held=0):
        changes = sorted([(button, "+") for button in pressed] + [(button, "-") for button in released])
        return self._ask("frame", time, x, y, wheel * 120, tilt * 120, held, *[f"{button}{way}" for button, way in changes])

    def until(self, time):
        return self._ask("until", time)

    def close(self):
        self._process.stdin.close()
        self._process.wait()
        self._process.stdout.close()


def of_keyboard(event):
    return event[0] == evdev.EV_KEY and not evdev.BTN_MOUSE <= event[1] < evdev.BTN_MOUSE + 16


def of_pointer(event):
    return not of_keyboard(event)
