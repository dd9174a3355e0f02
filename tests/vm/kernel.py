"""Debian's kernel and the initial file system for the emulated machine, made below a folder and kept there.

The kernel's package is fetched once and only unpacked. After that nothing asks the network again.
"""
import fcntl
import gzip
import lzma
import pathlib
import shutil
import struct
import subprocess
import tempfile

HERE = pathlib.Path(__file__).resolve().parent

# What is loaded before the host's files are there, and what a test loads when it wants a USB bus.
BOOT_MODULES = ("evdev", "uinput", "uhid", "hid-generic", "usbhid", "virtio_pci", "9pnet_virtio", "9p", "overlay")
USB_MODULES = ("dummy_hcd", "usb_f_hid")
UNPACKED = ("drivers/hid", "drivers/input", "drivers/usb/core", "drivers/usb/common", "drivers/usb/gadget",
            "drivers/virtio", "net/9p", "fs/9p", "fs/netfs", "fs/fscache", "fs/overlayfs", "fs/configfs")


class Preparation(Exception):
    """What could not be made, in words for a person."""


def run(command, **options):
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        raise Preparation(f"{' '.join(map(str, command))}: {done.stderr.strip() or done.stdout.strip()}")
    return done.stdout


def prepare(folder):
    """The kernel image and the initial file system below `folder`, made when they are missing or older."""
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    with open(folder / "lock", "w") as lock:  # tests start side by side
        fcntl.flock(lock, fcntl.LOCK_EX)
        image = folder / "vmlinux"
        if not image.exists():
            fetch(folder)
        initial = folder / "initial.cpio.gz"
        sources = [image, HERE / "init.sh", pathlib.Path(__file__)]
        if not initial.exists() or any(source.stat().st_mtime > initial.stat().st_mtime for source in sources):
            pack(folder / "modules", initial)
    return image, initial


def fetch(folder):
    with tempfile.TemporaryDirectory(dir=folder) as scratch:
        scratch = pathlib.Path(scratch)
        package = download(scratch)
        name = package.name.split("_")[0]
        version = name.removeprefix("linux-image-")
        kernel = f"./lib/modules/{version}/kernel"
        unpacking = subprocess.Popen(["dpkg-deb", "--fsys-tarfile", str(package)], stdout=subprocess.PIPE)
        run(["tar", "-x", "-C", scratch, "--wildcards", "./boot/vmlinuz-*", f"./lib/modules/{version}/modules.*",
             *[f"{kernel}/{part}/*" for part in UNPACKED]], stdin=unpacking.stdout)
        unpacking.wait()
        run(["busybox", "depmod", "-b", scratch, version])
        shutil.rmtree(folder / "modules", ignore_errors=True)
        (scratch / "lib/modules" / version).rename(folder / "modules")
        image = scratch / "vmlinux"
        image.write_bytes(bare_kernel((scratch / f"boot/vmlinuz-{version}").read_bytes()))
        image.rename(folder / "vmlinux")  # last, as it says that everything is there


def download(scratch):
    """The package file. Lists of packages of our own serve where the system has none, as in a container."""
    own = []
    for option in ("State", "Cache"):
        (scratch / option / "lists/partial").mkdir(parents=True)
        (scratch / option / "archives/partial").mkdir(parents=True)
        own += ["-o", f"Dir::{option}={scratch / option}"]
    own += ["-o", "Dir::State::status=/var/lib/dpkg/status", "-o", "APT::Sandbox::User="]
    package, options = kernel_package([]), []
    if package is None:
        options = own
        run(["apt-get", *options, "-q", "update"])
        package = kernel_package(options)
    if package is None:
        raise Preparation("apt knows no linux-image-amd64")
    run(["apt-get", "-o", "APT::Sandbox::User=", *options, "-q", "download", package], cwd=scratch)
    return next(scratch.glob(f"{package}_*.deb"))


def kernel_package(options):
    """The package that linux-image-amd64 stands for; the cloud kernels lack uinput, uhid and 9p."""
    listing = subprocess.run(["apt-cache", *options, "depends", "linux-image-amd64"], capture_output=True, text=True)
    return next((line.split()[-1] for line in listing.stdout.splitlines() if "Depends: linux-image-" in line), None)


def bare_kernel(compressed):
    """The program inside a bzImage: its own unpacking takes seconds under emulation."""
    setup_sectors = compressed[0x1F1] or 4
    offset, length = struct.unpack_from("<II", compressed, 0x248)
    start = (setup_sectors + 1) * 512 + offset
    payload = compressed[start:start + length]
    program = lzma.LZMADecompressor().decompress(payload)
    if program[:4] != b"\x7fELF":
        raise Preparation("the kernel holds no program")
    return program


def pack(modules, initial):
    with tempfile.TemporaryDirectory(dir=initial.parent) as scratch:
        root = pathlib.Path(scratch)
        for part in ("bin", "dev", "proc", "sys", "run", "host", "writable", "root", "modules"):
            (root / part).mkdir()
        busybox = shutil.which("busybox")
        if busybox is None:
            raise Preparation("busybox is missing")
        shutil.copy(busybox, root / "bin/busybox")
        shutil.copy(HERE / "init.sh", root / "init")
        (root / "init").chmod(0o755)
        for name, wanted in (("boot", BOOT_MODULES), ("usb", USB_MODULES)):
            order = load_order(modules, wanted)
            for module in order:
                shutil.copy(modules / module, root / "modules")
            (root / "modules" / name).write_text("".join(f"{pathlib.Path(module).name}\n" for module in order))
        names = "\n".join(["."] + [str(path.relative_to(root)) for path in sorted(root.rglob("*"))]) + "\n"
        archive = subprocess.run(["cpio", "-o", "-H", "newc", "--quiet", "-R", "0:0"], input=names.encode(), cwd=root,
                                 capture_output=True, check=True).stdout
        packed = root / "packed"
        packed.write_bytes(gzip.compress(archive, 1))
        packed.rename(initial)


def load_order(modules, wanted):
    """Files of modules, what each needs before it."""
    needs = {}
    for line in (modules / "modules.dep").read_text().splitlines():
        file, _, others = line.partition(":")
        needs[pathlib.Path(file).name.removesuffix(".ko").replace("-", "_")] = (file, others.split())
    order = []
    for name in wanted:
        if name.replace("-", "_") not in needs:
            raise Preparation(f"the kernel has no module {name}")
        file, others = needs[name.replace("-", "_")]
        order += [other for other in [*reversed(others), file] if other not in order]
    return order
