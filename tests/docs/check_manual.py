#!/usr/bin/env python3
"""Checks that the manual pages name the same options and commands as the programs do.

usage: check_manual.py SOURCE_DIR BUILD_DIR
"""
import pathlib
import re
import subprocess
import sys

OPTION = re.compile(r"--[a-z]+(?:-[a-z]+)*")
# A page's own option or command: bold at the head of a paragraph with a term.
TERM = re.compile(r"^\.TP\n\.BI? (\S+)", re.MULTILINE)
COMMANDS = re.compile(r"^  ([a-z]+)  ", re.MULTILINE)


def terms_of_page(page):
    return {term.replace("\\", "") for term in TERM.findall(page.read_text())}


def terms_of_program(program, commands):
    text = subprocess.run([program, "--help"], capture_output=True, text=True, check=True).stdout
    found = set(OPTION.findall(text))
    if commands:
        found |= set(COMMANDS.findall(text[text.index("Subcommands:"):]))
    return found


def main(source, build):
    folder = pathlib.Path(source) / "packaging/man"
    problems = 0
    for page, program, commands in (("veltrix-driver.8", "veltrix-driver", False), ("veltrixctl.1", "veltrixctl", True)):
        page_terms = terms_of_page(folder / page)
        program_terms = terms_of_program(pathlib.Path(build) / "bin" / program, commands)
        for term in sorted(page_terms ^ program_terms):
            print(f"{page}: {term} is {'not in the program' if term in page_terms else 'missing'}")
            problems += 1
    return min(problems, 1)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
