"""Waiting for a condition, with a limit."""
import time


def wait_until(condition, what, seconds=10, pause=0.005):
    """Calls `condition` until it yields something true, and returns that; fails with `what` after `seconds`. Between two
    calls it pauses for so many seconds."""
    end = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise AssertionError(f"waited {seconds} s in vain for {what}")
        time.sleep(pause)
