#!/usr/bin/env python3
"""Runs clang-tidy over every source of a configured build and remembers the clean ones.

usage: tidy.py BUILD_DIR JOBS

A source counts as known when it came out clean before with the same configuration, command and text of all files that
the build has read for it; the memory lies in BUILD_DIR/tidy. What is not built yet is looked at each time. Exits with 1 when
a source has findings.
"""
import collections
import concurrent.futures
import functools
import hashlib
import json
import pathlib
import re
import shutil
import subprocess
import sys

import tidy_batches

TIDY = "clang-tidy-14"
# In the folder of the build.
MEMORY = "tidy"
OTHERS = "tidy/joined"
TESTS = "tidy/joined/tests"  # with a copy of the tests' configuration, which inherits the other one

# Entries of the compile commands, what is added to the configured checks, and where their text is written when joined.
Job = collections.namedtuple("Job", "entries checks folder")


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


def command_of(job, build_dir, number):
    """What looks at these sources: at one as the build has it, at several as one file with what they share."""
    tidy = [TIDY, "--quiet", *([f"--checks={job.checks}"] if job.checks else [])]
    if job.folder == OTHERS:
        tidy.append("--extra-arg=-Wno-sign-conversion")  # as for the build by clang
    if len(job.entries) == 1:
        return [*tidy, "-p", str(build_dir), job.entries[0]["file"]]
    batch = build_dir / job.folder / f"batch_{number}.cpp"
    batch.write_text(tidy_batches.joined([pathlib.Path(entry["file"]) for entry in job.entries]), encoding="utf-8")
    return [*tidy, str(batch), "--", *tidy_batches.flags_of(job.entries[0])]


def run(job, build_dir, number=0):
    """What clang-tidy says of these sources: the file's name and a text for each that it finds something in."""
    done = subprocess.run(command_of(job, build_dir, number), capture_output=True, text=True, cwd=job.entries[0]["directory"])
    if done.returncode == 0:
        return []
    if len(job.entries) == 1:
        return [(job.entries[0]["file"], done.stdout + done.stderr)]
    return [report for entry in job.entries for report in run(job._replace(entries=[entry]), build_dir)]


def jobs_for(entries, root):
    """Joined, the analyzer would follow calls from one source into the next, so it goes through them one by one."""
    tests = [entry for entry in entries if pathlib.Path(entry["file"]).is_relative_to(root / "tests")]
    others = [entry for entry in entries if entry not in tests]
    configured = re.findall(r"-?clang-analyzer-[\w.*]+", (root / ".clang-tidy").read_text())
    return [*(Job([entry], ",".join(["-*", *configured]), OTHERS) for entry in others),
            *(Job(batch, "-clang-analyzer-*", OTHERS) for batch in tidy_batches.in_batches(others)),
            *(Job(batch, "", TESTS) for batch in tidy_batches.in_batches(tests))]


def main():
    build_dir, threads = pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2])
    root = pathlib.Path(__file__).resolve().parent.parent
    for folder in (TESTS, OTHERS):
        (build_dir / folder).mkdir(parents=True, exist_ok=True)
    shutil.copy(root / "tests/.clang-tidy", build_dir / TESTS)
    configuration = b"".join((root / folder / ".clang-tidy").read_bytes() for folder in (".", "tests"))
    inputs = inputs_of_objects(build_dir)
    digests = {entry["file"]: (fingerprint(entry, inputs, configuration), entry) for entry in own_sources(build_dir, root)}
    unknown = [entry for digest, entry in digests.values() if not digest or not (build_dir / MEMORY / digest).exists()]
    jobs = jobs_for(unknown, root)
    left = collections.Counter(entry["file"] for job in jobs for entry in job.entries)
    bad = set()
    with concurrent.futures.ThreadPoolExecutor(threads) as pool:
        for job, reports in zip(jobs, pool.map(lambda numbered: run(numbered[1], build_dir, numbered[0]), enumerate(jobs))):
            bad.update(file for file, _ in reports)
            print("".join(text for _, text in reports), end="", flush=True)
            left.subtract(entry["file"] for entry in job.entries)
            for file in (entry["file"] for entry in job.entries):
                if left[file] == 0 and file not in bad and digests[file][0]:
                    (build_dir / MEMORY / digests[file][0]).touch()
    print(f"clang-tidy: {len(digests)} sources, {len(unknown)} looked at, {len(bad)} with findings")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
