#!/usr/bin/env python3
"""Runs clang-tidy over every source of a configured build and remembers the clean ones.

usage: tidy.py BUILD_DIR JOBS

A source counts as known when it came out clean before with the same configuration, command and text of all files that
the build has read for it; the memory lies in BUILD_DIR/tidy. What is not built yet is looked at each time. Exits with 1 when a source has findings.
"""
import concurrent.futures
import functools
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


def inputs_of_objects(build_dir):
    """What each object was made from, by the object's name, as the compiler told the build of it."""
    listing = subprocess.run(["ninja", "-C", str(build_dir), "-t", "deps"], capture_output=True, text=True, check=True)
    inputs = {}
    for block in listing.stdout.split("\n\n"):
        if block.strip():
            head, *files = block.strip().splitlines()
            inputs[head.split(": #deps")[0]] = [file.strip() for file in files]
    return inputs


@functools.lru_cache(maxsize=None)
def look_at_file(path):
    """When it was changed, and a digest of what is in it."""
    return path.stat().st_mtime_ns, hashlib.sha256(path.read_bytes()).digest()


def fingerprint(entry, inputs, configuration):
    """A digest of all that clang-tidy would see; None when the build is behind the source, and so what it says of it."""
    words = entry["command"].split()
    name = words[words.index("-o") + 1]
    folder = pathlib.Path(entry["directory"])
    try:
        made = (folder / name).stat().st_mtime_ns
        seen = [look_at_file(folder / file) for file in inputs[name]]
    except (KeyError, OSError):
        return None
    if any(changed > made for changed, _ in seen):
        return None
    command = " ".join(word for word in words if not word.endswith("ccache"))
    return hashlib.sha256(b"".join([configuration, command.encode(), *(digest for _, digest in seen)])).hexdigest()


def check(entry, build_dir, digest):
    memory = build_dir / "tidy"
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
    (build_dir / "tidy").mkdir(exist_ok=True)
    configuration = b"".join((root / folder / ".clang-tidy").read_bytes() for folder in (".", "tests"))
    inputs = inputs_of_objects(build_dir)
    entries = list(own_sources(build_dir, root))
    bad = 0
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for report in pool.map(lambda entry: check(entry, build_dir, fingerprint(entry, inputs, configuration)), entries):
            if report:
                bad += 1
                print(report, flush=True)
    print(f"clang-tidy: {len(entries)} sources, {bad} with findings")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
