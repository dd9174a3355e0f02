"""The driver's figures, measured on a kernel of its own in an emulated machine beside programs of others.

What is measured is in vm/guest.py; here it is put into tables.
"""
import json
import pathlib
import shlex
import statistics
import subprocess
import sys
import tempfile

SOURCE = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(SOURCE / "tests/vm"))
import kernel  # noqa: E402
import machine  # noqa: E402

OURS, YARDSTICK = "veltrix-driver", "bare loop"
MOST_SECONDS = 1800
# Other people's programs, unpacked in the machine only.
QUICK = ("interception-tools", "libyaml-cpp0.7")
SLOW = ("input-remapper-daemon", "python3-inputremapper", "python3-evdev", "python3-gi", "gir1.2-glib-2.0",
        "libgirepository-1.0-1", "python3-pkg-resources", "python3-pydantic", "python3-pydbus",
        "python3-typing-extensions")


class Failure(Exception):
    """Why there are no figures, in words for a person."""


def files_of(packages):
    """Nothing when they cannot be had."""
    folder = SOURCE / "out/bench/packages"
    folder.mkdir(parents=True, exist_ok=True)
    missing = [name for name in packages if not list(folder.glob(f"{name}_*.deb"))]
    if missing:
        done = subprocess.run(["apt-get", "-o", "APT::Sandbox::User=", "-q", "download", *missing], cwd=folder,
                              capture_output=True, text=True)
        if done.returncode != 0:
            print(f"bench: other programs are left out: {done.stderr.strip()}", file=sys.stderr)
            return []
    return [next(folder.glob(f"{name}_*.deb")) for name in packages]


def measured(build, rounds, packages, instructions=False):
    with tempfile.TemporaryDirectory() as folder:
        results = pathlib.Path(folder) / "results"
        command = ["/usr/bin/python3", "-B", SOURCE / "bench/vm/guest.py", build.resolve(), rounds, *files_of(packages)]
        try:
            status = machine.run(shlex.join(map(str, command)), SOURCE / "out/vm", SOURCE, seconds=MOST_SECONDS,
                                 outcome=results, instructions=instructions)
        except kernel.Preparation as problem:
            raise Failure(f"the machine cannot be made: {problem}") from problem
        if status != 0:
            raise Failure(f"the machine ended with {status}")
        return json.loads(results.read_text())


class Figures:
    """`subjects` maps a program to its rounds, each of which maps a pace to (rate, median, 99th percentile, time)."""

    RATE, MEDIAN, LATE, PROCESSOR = range(4)

    def __init__(self, data):
        self.paces = [str(pace) for pace in data["paces"]]
        self.subjects = data["subjects"]
        self.driver = data["driver"]

    def median(self, subject, pace, which):
        return statistics.median(each[pace][which] for each in self.subjects[subject])

    def ratio(self, subject, pace, which):
        """Against the yardstick in the same round."""
        return statistics.median(each[pace][which] / bare[pace][which]
                                 for each, bare in zip(self.subjects[subject], self.subjects[YARDSTICK]))


def row(cells):
    return f"| {' | '.join(cells)} |"


def pace_name(pace):
    return "one after the other" if pace == "0" else f"{int(pace):,} Hz"


def tables(figures):
    """The lines of a page."""
    yield from table(figures, "Microseconds from a report to the event: median (99th percentile), times the bare loop",
                     lambda subject, pace: f"{figures.median(subject, pace, Figures.MEDIAN):.1f} "
                                           f"({figures.median(subject, pace, Figures.LATE):.0f}), "
                                           f"{figures.ratio(subject, pace, Figures.MEDIAN):.2f}")
    yield from table(figures, "Milliseconds of processor time for 1000 reports, times the bare loop",
                     lambda subject, pace: f"{figures.median(subject, pace, Figures.PROCESSOR):.1f}, "
                                           f"{figures.ratio(subject, pace, Figures.PROCESSOR):.2f}")
    yield from table(figures, "Reports that came a second",
                     lambda subject, pace: f"{figures.median(subject, pace, Figures.RATE):.0f}")


def table(figures, title, cell):
    yield from (f"{title}:", "", row(["Program", *map(pace_name, figures.paces)]),
                "|---" * (len(figures.paces) + 1) + "|")
    for subject in figures.subjects:
        yield row([subject, *(cell(subject, pace) for pace in figures.paces)])
    yield ""


def ratios(figures, clock):
    """What, figure and aim, at the worst of the paces that the bare loop itself keeps up with."""
    kept = [pace for pace in figures.paces
            if figures.median(YARDSTICK, pace, Figures.RATE) >= 0.9 * int(pace)]
    for what, which, aim in (("latency", Figures.MEDIAN, "≤ 1.15"), ("processor time", Figures.PROCESSOR, "≤ 1.5")):
        worst = max(kept, key=lambda pace: figures.ratio(OURS, pace, which))
        yield (f"driver, {what} ÷ bare loop, {clock}, most at {pace_name(worst)}",
               f"{figures.ratio(OURS, worst, which):.2f}", aim)


def at_rest(figures):
    driver = figures.driver
    yield "driver, memory (PSS)", f"{driver['memory'] / 1024:.2f} MiB", "< 3 MiB"
    yield "driver, wake-ups a second at rest", f"{driver['wakeups'] / driver['seconds']:.1f}", "0"


def report(build, rounds):
    """Figures with aims, and the lines of a page."""
    clock = Figures(measured(build, rounds, QUICK + SLOW))
    # Hardly any two rounds differ, so a few do.
    counted = Figures(measured(build, 2, QUICK, instructions=True))
    summary = [*ratios(clock, "by the clock"), *ratios(counted, "by instructions"), *at_rest(clock)]
    page = ["By the clock of the host:", "", *tables(clock),
            "By instructions, as if the processor executed one each nanosecond:", "", *tables(counted)]
    return summary, page
