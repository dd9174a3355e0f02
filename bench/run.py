#!/usr/bin/env python3
"""Prints every figure of the project in one run.

usage: run.py BUILD_DIR [desktop | driver] [--rounds N] [--vm-rounds N]

The build must be the release build. Whole programs are measured in turns, ours and the yardstick one after the other,
so that whatever else the machine does weighs on both alike. Every figure is a median. `driver` measures what needs a
kernel of its own, `desktop` the rest.
"""
import argparse
import json
import os
import pathlib
import platform
import statistics
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests/support"))
import driver_figures  # noqa: E402
import processes  # noqa: E402
from desktop import Desktop, isolate, wait_until  # noqa: E402

SIMULATED = "A1D0:2041:0107,A1D0:1020:0100,A1D0:8002:0203"


class Table:
    def __init__(self):
        self.rows = []

    def add(self, what, figure, aim=""):
        self.rows.append((what, figure, aim))

    def show(self):
        widths = [max(len(row[i]) for row in self.rows) for i in range(3)]
        print(f"| {'what'.ljust(widths[0])} | {'median'.ljust(widths[1])} | {'aim'.ljust(widths[2])} |")
        print("|" + "|".join("-" * (width + 2) for width in widths) + "|")
        for row in self.rows:
            print("| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |")


def output_of(desktop, program, *arguments, **options):
    """What a program has measured."""
    done = desktop.run([program, *arguments], **options)
    if done.returncode != 0:
        sys.exit(f"bench: {pathlib.Path(program).name}: {done.stderr}")
    return done.stdout


def micro_entries(desktop, name):
    """Medians of a Google Benchmark program with their counters, by benchmark; times in nanoseconds."""
    output = output_of(
        desktop, desktop.build / "bench" / name, "--benchmark_format=json", "--benchmark_repetitions=9",
        "--benchmark_report_aggregates_only=true", "--benchmark_min_time=0.1", cwd=desktop.build)
    unit = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
    medians = {}
    for entry in json.loads(output)["benchmarks"]:
        if entry.get("error_occurred"):
            sys.exit(f"bench: {entry['name']}: {entry['error_message']}")
        if entry["aggregate_name"] == "median":
            entry["real_time"] *= unit[entry["time_unit"]]
            medians[entry["run_name"].split("/")[0]] = entry
    return medians


def micro(desktop, name):
    """The times alone."""
    return {run: entry["real_time"] for run, entry in micro_entries(desktop, name).items()}


def settings_figures(table, desktop):
    figures = micro(desktop, "settings_bench")
    save, bare = figures["BM_Save"], figures["BM_BareWriteSyncRename"]
    table.add("load and merge the factory document", f"{figures['BM_LoadAndMergeFactoryDocument'] / 1e3:.0f} µs")
    table.add("load and merge 10,000 entries into 10,000", f"{figures['BM_LoadAndMerge10000Into10000'] / 1e6:.0f} ms")
    table.add("entry to driver record", f"{figures['BM_RecordConversion']:.0f} ns", "< 1000 ns")
    table.add("save the document", f"{save / 1e3:.0f} µs")
    table.add("bare write, fdatasync and rename of the same bytes", f"{bare / 1e3:.0f} µs")
    table.add("save ÷ bare write", f"{save / bare:.2f}", "≤ 1.2")


def keyboard_figures(table, desktop):
    figures = micro(desktop, "keyboard_bench")
    table.add("key tables of a layout", f"{figures['BM_KeyTables'] / 1e3:.0f} µs")
    table.add("characters of all keys, for names", f"{figures['BM_KeyNames'] / 1e3:.0f} µs")
    table.add("read a layout by name", f"{figures['BM_ReadLayout'] / 1e6:.1f} ms")
    table.add("keys of a keymap, after a change of the layout", f"{figures['BM_MakeKeyboardModel'] / 1e3:.0f} µs")
    table.add("the same with the characters of its dead keys", f"{figures['BM_FirstCharacter'] / 1e6:.1f} ms")
    table.add("keys of a shortcut", f"{figures['BM_KeysOfAShortcut'] / 1e3:.1f} µs")
    table.add("plan to type 1000 characters", f"{figures['BM_PlanThousandCharacters'] / 1e3:.0f} µs")


def engine_figures(table, desktop):
    figures = micro_entries(desktop, "engine_bench")
    for run, what in (("BM_Motion", "motion"), ("BM_Mixture", "motion, buttons and wheel")):
        table.add(f"driver's engine, {what}", f"{figures[run]['events'] / 1e6:.0f} million events/s", "≥ 20 million/s")
    frame = figures["BM_Mixture"]["real_time"]
    table.add("driver's engine, one report", f"{frame:.0f} ns")
    table.add("driver's engine at 8000 reports a second", f"{frame * 8000 / 1e9:.3%} of a core")
    allocations = max(entry["allocations"] for entry in figures.values())
    table.add("driver's engine, allocations for all reports", f"{allocations:.0f}", "0")


def menu_figures(table, desktop):
    figures = micro(desktop, "menu_bench")
    table.add("fill all 25 menus", f"{figures['BM_FillMenus'] / 1e6:.2f} ms", "< 2 ms")
    table.add("show the assignments of a trackball", f"{figures['BM_ShowAssignments'] / 1e3:.0f} µs")


def first_paint(desktop, program):
    milliseconds, pss = output_of(desktop, desktop.build / "bench/first_paint", program).split()
    return float(milliseconds), int(pss) / 1024


def window_figures(table, desktop, rounds):
    ours, yardstick = [], []
    for _ in range(rounds):
        yardstick.append(first_paint(desktop, desktop.build / "bench/minimal_window"))
        ours.append(first_paint(desktop, desktop.program("veltrix-settings")))
    (time_a, pss_a), (time_b, pss_b) = ([statistics.median(column) for column in zip(*runs)]
                                        for runs in (ours, yardstick))
    table.add("veltrix-settings, exec to first paint", f"{time_a:.1f} ms")
    table.add("minimal Qt window, exec to first paint", f"{time_b:.1f} ms")
    table.add("first paint ÷ minimal window", f"{time_a / time_b:.2f}", "≤ 1.5")
    table.add("veltrix-settings, memory (PSS)", f"{pss_a:.1f} MiB")
    table.add("minimal Qt window, memory (PSS)", f"{pss_b:.1f} MiB")
    table.add("memory ÷ minimal window", f"{pss_a / pss_b:.2f}", "≤ 1.5")


def editor_figures(table, desktop):
    first, again = output_of(desktop, desktop.build / "bench/editor_bench").split()
    table.add("action editor, first opening to first paint", f"{float(first):.1f} ms", "< 50 ms")
    table.add("action editor, later openings", f"{float(again):.1f} ms", "< 50 ms")


def wakeups_a_second(pid, seconds=5):
    before = processes.wakeups(pid)
    time.sleep(seconds)
    return (processes.wakeups(pid) - before) / seconds


def helper_figures(table, process):
    wakeups = wakeups_a_second(process.pid)
    table.add("helper, memory (PSS)", f"{processes.memory(process.pid) / 1024:.2f} MiB", "< 6 MiB")
    table.add("helper, wake-ups a second with no pane open", f"{wakeups:.1f}", "0")


def jump_figures(table, build):
    """The program that is there only for those who let the pointer jump."""
    with Desktop(build, accessibility=True) as desktop:
        desktop.set_jump(True)
        helper = desktop.start_helper(SIMULATED)
        wait_until(lambda: desktop.status()["JumpState"] == "listening", "jumping to be ready")
        (pid,) = pathlib.Path(f"/proc/{helper.pid}/task/{helper.pid}/children").read_text().split()
        wakeups = wakeups_a_second(pid)
        table.add("veltrix-jump, memory (PSS)", f"{processes.memory(pid) / 1024:.2f} MiB")
        table.add("helper beside it, memory (PSS)", f"{processes.memory(helper.pid) / 1024:.2f} MiB", "< 6 MiB")
        table.add("veltrix-jump, wake-ups a second with no dialog", f"{wakeups:.1f}", "0")


def desktop_figures(table, build, rounds):
    with Desktop(build) as desktop:
        settings_figures(table, desktop)
        keyboard_figures(table, desktop)
        menu_figures(table, desktop)
        engine_figures(table, desktop)
        process = desktop.start_helper(SIMULATED)
        helper_figures(table, process)
        poll = micro(desktop, "poll_bench")["BM_Poll"]
        table.add("poll: find the helper, ask, be answered", f"{poll / 1e3:.0f} µs", "< 200 µs")
        window_figures(table, desktop, rounds)
        editor_figures(table, desktop)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("part", nargs="?", choices=("desktop", "driver"))
    parser.add_argument("--rounds", type=int, default=21)
    parser.add_argument("--vm-rounds", type=int, default=7)
    arguments = parser.parse_args()
    table, pages = Table(), []
    if arguments.part != "driver":
        desktop_figures(table, arguments.build, arguments.rounds)
        jump_figures(table, arguments.build)
    if arguments.part != "desktop":
        try:
            summary, pages = driver_figures.report(arguments.build, arguments.vm_rounds)
        except driver_figures.Failure as problem:
            sys.exit(f"bench: {problem}")
        for figure in summary:
            table.add(*figure)
    cpu = next((line.split(":")[1].strip() for line in open("/proc/cpuinfo") if line.startswith("model name")), "?")
    print(f"\n{cpu}, {os.cpu_count()} cores, Linux {platform.release()}, {arguments.rounds} rounds of each program, "
          f"{arguments.vm_rounds} in the emulated machine\n")
    table.show()
    print()
    print("\n".join(pages))


if __name__ == "__main__":
    isolate()
    main()
