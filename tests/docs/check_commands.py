#!/usr/bin/env python3
"""Checks that docs/commands.md says of every command where it was seen working, by tests that there are.

usage: check_commands.py SOURCE_DIR BUILD_DIR
"""
import pathlib
import re
import sys

from check_coverage import built_sources, cells_of, reference_problems, source_reader

COLUMNS = 5
BY_HAND = "tests/desktops/*_check.py"  # need desktops that not everybody has; docs/desktops.md says how they are run
SEEN = re.compile(r"^(?P<where>[^:`]+): (?P<tests>`[^`]+`)$")


def problems(text, tests_of):
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
    built = built_sources(build) | {str(check) for check in source.glob(BY_HAND)}
    tests_of = source_reader(source / "tests", built)
    found = list(problems((source / "docs/commands.md").read_text(encoding="utf-8"), tests_of))
    print("\n".join(found))
    return min(len(found), 1)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
