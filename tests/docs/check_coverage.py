#!/usr/bin/env python3
"""Checks the table of rules and tests in docs/coverage.md against the sources of the tests.

usage: check_coverage.py SOURCE_DIR BUILD_DIR

A row is `| rule | tests |`; the tests stand in backticks as `folder/file_test.cpp: Suite.Name, Suite.Other` or
`folder/file_test.py: test_name`, below tests/. Prints every row that lacks a rule or a test, that gives a rule twice,
or that names a test which nobody wrote or nothing builds, and exits with 1 when there is one.
"""
import functools
import json
import pathlib
import re
import sys

HEADER = ("Rule", "Test")
REFERENCE = re.compile(r"^(?P<file>[\w/]+\.(?:cpp|py)): (?P<names>[\w.]+(?:, [\w.]+)*)$")
CPP_TEST = re.compile(r"\b(?:TEST(?:_[FP])?|RC_GTEST_(?:FIXTURE_)?PROP)\(\s*(\w+)\s*,\s*(\w+)")
PY_TEST = re.compile(r"^[ ]*def (test_\w+)\(", re.MULTILINE)
CPP_COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)
PY_COMMENT = re.compile(r"^[ ]*#[^\n]*", re.MULTILINE)


def tests_in(name, text):
    """The names of the tests in a source, as the table writes them."""
    if name.endswith(".py"):
        return set(PY_TEST.findall(PY_COMMENT.sub("", text)))
    return {f"{suite}.{test}" for suite, test in CPP_TEST.findall(CPP_COMMENT.sub("", text))}


def cells_of(line):
    return [cell.strip() for cell in line.strip().removeprefix("|").removesuffix("|").split("|")]


def reference_problems(cell, tests_of):
    """What is wrong with a cell that names tests; tests_of gives the tests of a file, None when it is not built."""
    references = re.findall(r"`([^`]*)`", cell)
    if not references or re.sub(r"`[^`]*`|[,\s]|<br>", "", cell):
        yield "names its tests otherwise than in backticks"
    for reference in references:
        match = REFERENCE.match(reference)
        if not match:
            yield f"`{reference}` is no `file: test`"
            continue
        tests = tests_of(match["file"])
        if tests is None:
            yield f"nothing builds or runs tests/{match['file']}"
            continue
        for name in match["names"].split(", "):
            if name not in tests:
                yield f"tests/{match['file']} has no test {name}"


def table_problems(text, tests_of):
    """Every problem of the document, with its line."""
    subject, rows, rules, previous = None, 0, {}, ""
    if not re.search(r"^## ", text, re.MULTILINE):
        yield "there is no subject"
    for number, line in enumerate(text.splitlines(), 1):
        if line.startswith("#"):
            if subject and rows == 0:
                yield f"line {number}: the subject “{subject}” has no rule"
            subject, rows = line.lstrip("# ") if line.startswith("## ") else None, 0
        elif line.startswith("|"):
            cells = cells_of(line)
            is_head = not previous.startswith("|") or re.fullmatch(r"\|[|\s:-]*---[|\s:-]*", line)
            if not previous.startswith("|") and tuple(cells) != HEADER:
                yield f"line {number}: a table begins with the row “{' | '.join(HEADER)}”"
            if not is_head:
                rows += 1
                for problem in row_problems(cells, subject, rules, tests_of):
                    yield f"line {number}: {problem}"
        previous = line
    if subject and rows == 0:
        yield f"the subject “{subject}” has no rule"


def row_problems(cells, subject, rules, tests_of):
    if len(cells) != len(HEADER):
        yield f"a row has {len(HEADER)} cells, this one has {len(cells)}"
        return
    rule, tests = cells
    if subject is None:
        yield "the row stands under no subject"
    if not rule:
        yield "the rule is missing"
    elif rules.setdefault((subject, rule), cells) is not cells:
        yield f"the rule “{rule}” is given twice"
    if not tests:
        yield f"no test holds “{rule}”"
    else:
        yield from reference_problems(tests, tests_of)


def built_sources(build_folder):
    """The sources that programs are built from and the scripts that tests run, as absolute paths."""
    commands = json.loads((build_folder / "compile_commands.json").read_text(encoding="utf-8"))
    built = {str(pathlib.Path(command["directory"], command["file"])) for command in commands}
    for listing in (build_folder / "tests").rglob("CTestTestfile.cmake"):
        built.update(re.findall(r'"([^"]*\.py)"', listing.read_text(encoding="utf-8")))
    return built


def source_reader(tests_folder, built):
    """Reads sources below the folder; one that nothing builds or runs is as good as none."""

    @functools.cache
    def tests_of(name):
        source = tests_folder / name
        if not source.is_file() or str(source) not in built:
            return None
        return tests_in(name, source.read_text(encoding="utf-8"))

    return tests_of


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    root, build = map(pathlib.Path, arguments)
    text = (root / "docs/coverage.md").read_text(encoding="utf-8")
    problems = list(table_problems(text, source_reader(root / "tests", built_sources(build))))
    for problem in problems:
        print(f"docs/coverage.md: {problem}")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
