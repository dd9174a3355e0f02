#!/usr/bin/env python3
"""Checks that docs/commands.md says of every command where it was seen working, by tests that there are.

usage: check_commands.py SOURCE_DIR BUILD_DIR
"""
import pathlib
import re
import sys

from check_coverage import built_sources, cells_of, reference_problems, source_reader

COLUMNS = 5
SCRIPTS_BY_HAND = "tests/desktops/*_check.py"  # need desktops that not everybody has; docs/desktops.md says how they are run
SEEN = re.compile(r"^(?P<where>[^:`]+): (?P<tests>`[^`]+`)$")
# A script that is too large for every run: it names the codes of the commands that it looks at.
BY_HAND = re.compile(r"^[^:`]+, by hand: `(?P<script>[^:`]+): (?P<code>\d+)`$")
CHECK = re.compile(r"^    (\d+): Check\(", re.MULTILINE)


def codes_in(text):
    return set(CHECK.findall(text))


def codes_reader(tests_folder):
    """Reads the codes of a script below the folder; there are none in one that is not there."""
    return lambda name: codes_in((tests_folder / name).read_text(encoding="utf-8")) if (tests_folder / name).is_file() else set()


def problems(text, tests_of, codes_of=lambda script: set()):
    commands = 0
    for number, line in enumerate(text.splitlines(), 1):
        cells = cells_of(line)
        if not line.startswith("|") or not cells[0].isdigit():
            continue
        commands += 1
        if len(cells) != COLUMNS:
            yield f"line {number}: command {cells[0]} has {len(cells)} cells"
            continue
        for part in cells[-1].split("; "):
            by_hand = BY_HAND.match(part)
            if by_hand:
                if by_hand["code"] != cells[0] or by_hand["code"] not in codes_of(by_hand["script"]):
                    yield f"line {number}: command {cells[0]}: tests/{by_hand['script']} does not look at it"
                continue
            match = SEEN.match(part)
            if not match:
                yield f"line {number}: command {cells[0]}: “{part}” is no place with a test"
                continue
            for problem in reference_problems(match["tests"], tests_of):
                yield f"line {number}: command {cells[0]}: {problem}"
    if commands == 0:
        yield "there is no command"


def main(source, build):
    source, build = pathlib.Path(source), pathlib.Path(build)
    built = built_sources(build) | {str(check) for check in source.glob(SCRIPTS_BY_HAND)}
    tests_of = source_reader(source / "tests", built)
    found = list(problems((source / "docs/commands.md").read_text(encoding="utf-8"), tests_of,
                          codes_reader(source / "tests")))
    print("\n".join(found))
    return min(len(found), 1)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
