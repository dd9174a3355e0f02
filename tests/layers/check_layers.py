#!/usr/bin/env python3
"""Checks includes and links against the folder table of docs/architecture.md.

usage: check_layers.py SOURCE_DIR BUILD_DIR

Prints every edge that the table does not have and exits with 1 when there is one.
"""
import json
import pathlib
import re
import subprocess
import sys

EVERYTHING = "everything"
QT_FOLDERS = {"widgets", "editor", "pane", "host", "tests", "bench"}
QT_FILES = re.compile(r"^(keyboard/keystroke_|util/hyperlink_|fuzz/(fuzz_)?pane)")  # targets of their own
PROGRAMS_WITHOUT_QT = ("VeltrixHelper", "veltrixctl", "veltrix-driver")
ROW = re.compile(r"^\| `(?P<folder>[a-z]+)/` \|.*\| (?P<uses>[^|]*) \|$")
INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"(?P<own>[^"]+)"|<(?P<system>[^>]+)>)', re.MULTILINE)
QT_HEADER = re.compile(r"^(Q[A-Z]|Qt[A-Z]|q[a-z]+\.h$)")


def read_table(text):
    """The folders that each folder may use, by folder; EVERYTHING stands for no limit."""
    table = {}
    for line in text.splitlines():
        match = ROW.match(line)
        if match:
            uses = match["uses"]
            table[match["folder"]] = EVERYTHING if uses == EVERYTHING else set(re.findall(r"`([a-z]+)`", uses))
    return table


def may_use(table, folder, other):
    return folder == other or table[folder] == EVERYTHING or other in table[folder]


def may_know_qt(folder, name):
    return folder in QT_FOLDERS or QT_FILES.match(name) is not None


def include_problems(table, folder, name, text):
    for match in INCLUDE.finditer(text):
        if match["system"]:
            if QT_HEADER.match(match["system"]) and not may_know_qt(folder, name):
                yield f"{name}: includes <{match['system']}>, but it must not know Qt"
            continue
        other = match["own"].split("/")[0]
        if other in table and not may_use(table, folder, other):
            yield f"{name}: includes \"{match['own']}\", but {folder}/ may not use {other}/"


def folder_problems(table, folders_on_disk):
    for folder in sorted(folders_on_disk - set(table)):
        yield f"{folder}/: holds C++ sources and is not in the table of docs/architecture.md"
    for folder in sorted(set(table) - folders_on_disk):
        yield f"{folder}/: is in the table of docs/architecture.md and holds no C++ source"


def link_problems(table, targets):
    """`targets` maps a target's name to (folder, names of the targets it depends on)."""
    for name, (folder, dependencies) in sorted(targets.items()):
        if folder not in table:
            continue
        for dependency in dependencies:
            other = targets.get(dependency, (None, ()))[0]
            if other in table and not may_use(table, folder, other):
                yield f"target {name} of {folder}/ links {dependency} of {other}/"


def read_targets(build_dir):
    reply = build_dir / ".cmake/api/v1/reply"
    if not list(reply.glob("index-*.json")):
        subprocess.run(["cmake", str(build_dir)], check=True, stdout=subprocess.DEVNULL)
    index = json.loads(sorted(reply.glob("index-*.json"))[-1].read_text())
    model = json.loads((reply / index["reply"]["codemodel-v2"]["jsonFile"]).read_text())
    details = [json.loads((reply / target["jsonFile"]).read_text()) for target in model["configurations"][0]["targets"]]
    names = {detail["id"]: detail["name"] for detail in details}
    return {
        detail["name"]: (
            detail["paths"]["source"].split("/")[0],
            [names[dependency["id"]] for dependency in detail.get("dependencies", [])],
        )
        for detail in details
        if detail["type"] != "UTILITY"
    }


def qt_problems(build_dir):
    for name in PROGRAMS_WITHOUT_QT:
        programs = [path for path in build_dir.rglob(name) if path.is_file() and not path.is_symlink()]
        if not programs:
            yield f"{name}: not found below {build_dir}"
        for path in programs:
            needed = subprocess.run(["readelf", "-d", str(path)], check=True, capture_output=True, text=True).stdout
            if "[libQt" in needed:
                yield f"{path}: is linked with Qt"


def sources(source_dir):
    listing = subprocess.run(
        ["git", "-C", str(source_dir), "ls-files", "-co", "--exclude-standard", "--", "*.h", "*.cpp"],
        check=True, capture_output=True, text=True).stdout
    return [line for line in listing.splitlines() if (source_dir / line).exists()]


def main():
    source_dir, build_dir = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    table = read_table((source_dir / "docs/architecture.md").read_text())
    names = sources(source_dir)
    problems = list(folder_problems(table, {name.split("/")[0] for name in names}))
    for name in names:
        folder = name.split("/")[0]
        if folder in table:
            problems += include_problems(table, folder, name, (source_dir / name).read_text())
    problems += link_problems(table, read_targets(build_dir))
    problems += qt_problems(build_dir)
    print("\n".join(problems) if problems else f"{len(names)} sources keep to the table")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
