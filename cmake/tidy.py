#!/usr/bin/env python3
"""Runs clang-tidy over every source of a configured build and remembers the clean ones.

usage: tidy.py BUILD_DIR JOBS

A source counts as known when the same configuration, command and preprocessed text came out clean before; the memory
lies in BUILD_DIR/tidy. Exits with 1 when a source has findings.
"""
import concurrent.futures
import hashlib
import json
import pathlib
import subprocess
import sys

TIDY = "clang-tidy-14"


def own_sources(build_dir, root):
    """One entry for each source: clang-tidy itself looks at every command that compiles it."""
    entries = {entry["file"]: entry for entry in json.loads((build_dir / "compile_commands.json").read_text())}
    for file, entry in entries.items():
        path = pathlib.Path(file)
        if path.is_relative_to(root) and not path.is_relative_to(build_dir.parent):
            yield entry


def fingerprint(entry, configuration):
    """A digest of all that clang-tidy would see, None when the source cannot be preprocessed."""
    words = entry["command"].split()
    words = [word for word in words if not word.endswith("ccache")]
    if "-o" in words:
        at = words.index("-o")
        del words[at:at + 2]
    words.remove("-c")
    # Comments stay in, because they can switch a check off for a line.
    done = subprocess.run(words + ["-E", "-C", "-o", "-"], cwd=entry["directory"], capture_output=True)
    if done.returncode != 0:
        return None
    return hashlib.sha256(configuration + entry["command"].encode() + done.stdout).hexdigest()


def check(entry, build_dir, memory, configuration):
    digest = fingerprint(entry, configuration)
    if digest and (memory / digest).exists():
        return ""
    done = subprocess.run([TIDY, "-p", str(build_dir), "--quiet", entry["file"]], capture_output=True, text=True)
    if done.returncode == 0:
        if digest:
            (memory / digest).touch()
        return ""
    return done.stdout + done.stderr


def main():
    build_dir, jobs = pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2])
    root = pathlib.Path(__file__).resolve().parent.parent
    memory = build_dir / "tidy"
    memory.mkdir(exist_ok=True)
    configuration = b"".join((root / folder / ".clang-tidy").read_bytes() for folder in (".", "tests"))
    entries = list(own_sources(build_dir, root))
    bad = 0
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for report in pool.map(lambda entry: check(entry, build_dir, memory, configuration), entries):
            if report:
                bad += 1
                print(report, flush=True)
    print(f"clang-tidy: {len(entries)} sources, {bad} with findings")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
