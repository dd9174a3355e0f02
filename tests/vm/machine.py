"""Runs a command in an emulated machine on top of the host's own files."""
import os
import pathlib
import shutil
import subprocess
import tempfile

import kernel

NOT_REPORTED = 98
TOO_LONG = 124


def run(command, folder, source, systemd=False, memory=640, seconds=300, outcome=None,
        instructions=False):
    """The exit status of the shell text `command`, run as root in the machine.

    The host's files are there under their own names; what the command writes is gone afterwards. `folder` keeps the
    kernel; `source` is a folder of the host that stays visible even below /tmp. NOT_REPORTED when the machine ended
    by itself, TOO_LONG after `seconds`. What the command leaves in /run/vm/job/outcome is put into the file `outcome`.
    With `instructions` the machine's time is the number of instructions that it has executed, each a nanosecond.
    """
    image, initial = kernel.prepare(folder)
    if shutil.which("qemu-system-x86_64") is None:
        raise kernel.Preparation("qemu-system-x86_64 is missing")
    with tempfile.TemporaryDirectory(prefix="veltrix-vm-") as job:
        (pathlib.Path(job) / "command.sh").write_text(command)
        words = ["console=ttyS0", "quiet", "panic=-1", "mitigations=off", f"vm.keep={os.path.realpath(source)}"]
        if systemd:
            # What systemd itself says would stand between the lines of the tests.
            words += ["vm.systemd", "systemd.show_status=false", "systemd.log_level=err", "systemd.log_target=null"]
        accelerator = "tcg,thread=single" if instructions else "tcg,thread=multi"
        # One processor: wake-ups between emulated ones cost milliseconds.
        machine = [
            "setpriv", "--pdeathsig", "KILL",  # ends with this script, however that ends
            "qemu-system-x86_64", "-machine", "pc", "-accel", accelerator, "-cpu", "max", "-smp", "1",
            "-m", str(memory), "-kernel", str(image), "-initrd", str(initial), "-append", " ".join(words),
            "-nodefaults", "-no-user-config", "-display", "none", "-vga", "none", "-net", "none", "-no-reboot",
            "-serial", "stdio", "-device", "isa-debug-exit,iobase=0xf4,iosize=0x04",
            "-virtfs", "local,path=/,mount_tag=root,security_model=none,readonly=on,multidevs=remap",
            "-virtfs", f"local,path={job},mount_tag=job,security_model=none"]
        if instructions:
            machine += ["-icount", "shift=0"]
        try:
            status = subprocess.run(machine, stdin=subprocess.DEVNULL, timeout=seconds).returncode
        except subprocess.TimeoutExpired:
            print(f"vm: ended after {seconds} s", flush=True)
            return TOO_LONG
        left = pathlib.Path(job) / "outcome"
        if outcome is not None and left.exists():
            shutil.copy(left, outcome)
    if status < 3 or status % 2 == 0:
        print(f"vm: the machine ended without a report (qemu said {status})", flush=True)
        return NOT_REPORTED
    return (status - 3) // 2
