#!/usr/bin/env python3
"""Runs test files of this folder in emulated machines, a fresh one for each file.

usage: run.py BUILD_DIR [--list] [TEST...]

A TEST is the name of a file without `_test.py`, or such a name, a dot and a part of the names of its tests; without one
all files run: those that look at the clock one after the other, and beside them the others, which mostly wait. Exits with
1 when a test fails.
"""
import pathlib
import shlex
import subprocess
import sys
import time

import kernel
import machine

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parent.parent
MOST_SECONDS = 580


def test_files():
    return {path.name.removesuffix("_test.py"): path for path in sorted(HERE.glob("*_test.py"))}


def run_file(build, path, part):
    # A file says by this line that it needs the whole system and not only a kernel.
    systemd = "\nNEEDS_SYSTEMD = True\n" in path.read_text(encoding="utf-8")
    command = ["/usr/bin/python3", "-B", HERE / "guest/main.py", build, path, *part]
    began = time.monotonic()
    print(f"vm: {path.name} begins", flush=True)
    status = machine.run(shlex.join(map(str, command)), SOURCE / "out/vm", SOURCE, systemd, seconds=MOST_SECONDS)
    print(f"vm: {path.name} ended with {status} after {time.monotonic() - began:.0f} s", flush=True)
    return status


def looks_at_the_clock(path):
    """A file says so by this line."""
    return "\nLOOKS_AT_THE_CLOCK = True\n" in path.read_text(encoding="utf-8")


def run_all(build, files):
    """The names of the files that failed."""
    alone = [name for name, path in files.items() if looks_at_the_clock(path)]
    beside = [name for name in files if name not in alone]
    command = ["setpriv", "--pdeathsig", "KILL", sys.executable, "-B", __file__, build, *beside]
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace") as others:
        failed = run_some(build, files, alone)
        said = others.communicate()[0]
    print(said, end="", flush=True)
    return failed if others.returncode == 0 else [*failed, *beside]


def run_some(build, files, wanted):
    failed = []
    for test in wanted:
        name, _, part = test.partition(".")
        if run_file(pathlib.Path(build).resolve(), files[name], [part] if part else []) != 0:
            failed.append(test)
    return failed


def main(arguments):
    if not arguments:
        print(__doc__, file=sys.stderr)
        return 2
    build, *wanted = arguments
    files = test_files()
    if wanted == ["--list"]:
        print("\n".join(files))
        return 0
    wanted = [pathlib.Path(test).name.removesuffix("_test.py") for test in wanted]
    for name in (test.partition(".")[0] for test in wanted):
        if name not in files:
            print(f"vm: there is no test {name}; there are {', '.join(files)}", file=sys.stderr)
            return 2
    try:
        failed = run_some(build, files, wanted) if wanted else run_all(build, files)
    except kernel.Preparation as problem:
        print(f"vm: the machine cannot be made: {problem}", file=sys.stderr)
        return 1
    if failed:
        print(f"vm: failed: {', '.join(failed)}", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
