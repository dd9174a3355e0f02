#!/usr/bin/env python3
"""Prints how long commands take on the way from the trackball's button to a program, and what the helper needs for it.

usage: measure_commands.py BUILD_DIR [ROUNDS]

The driver's own part is in it, the kernel's way to the X server is not: keys reach the server through its test
extension. The virtual machine's tests measure the driver with the kernel.
"""
import pathlib
import statistics
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from trackball_desk import Desk, Reader, isolate  # noqa: E402

COPY, LONG = 2, 3
TEXT = ("".join(chr(ord("a") + i % 26) for i in range(49)).title() + "\n") * 20


def stamp(lines, word):
    return int(lines.wait_for(lambda line: line.startswith(word + " "), word).split()[1])


def figures(values):
    values = sorted(values)
    return f"median {statistics.median(values):.2f} ms, 99th of 100 {values[len(values) * 99 // 100]:.2f} ms"


def main(build, rounds):
    with Desk(build, {COPY: 35, LONG: 180}, [TEXT]) as desk:
        reader = Reader(desk)
        typed, read = [], []
        for _ in range(rounds):
            desk.press(COPY)
            began = stamp(desk.driver_lines, "press")
            typed.append((stamp(desk.driver_lines, "key") - began) / 1e6)
            read.append((stamp(reader.lines, "key") - began) / 1e6)
            desk.release(COPY)
            reader.lines.wait_for(lambda line: line == "copy", "copy")
            time.sleep(0.02)  # as no person presses faster
        print(f"button to first key, at the driver: {figures(typed)}")
        print(f"button to first key, at the editor: {figures(read)}")
        desk.click(LONG)
        began = stamp(desk.driver_lines, "press")
        reader.wait_for_text(TEXT)
        seconds = (time.monotonic_ns() - began) / 1e9
        print(f"{len(TEXT)} characters: {seconds:.2f} s, {len(TEXT) / seconds:.0f} a second, none lost")
        rollup = pathlib.Path(f"/proc/{desk.helper.pid}/smaps_rollup").read_text()
        pss = next(int(line.split()[1]) for line in rollup.splitlines() if line.startswith("Pss:"))
        print(f"helper afterwards: {pss / 1024:.1f} MiB PSS")


if __name__ == "__main__":
    isolate()
    main(sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 200)
