"""A desktop of our own for programs of a build tree: home folder, session bus, X server, helper and window.

Everything that is started ends with the context that started it, and nothing outside of it is touched.
"""
import contextlib
import json
import os
import pathlib
import plistlib
import signal
import subprocess
import sys
import tempfile

import waiting

WAIT_SECONDS = float(os.environ.get("VELTRIX_WAIT_SECONDS", "20"))  # more on a slow machine
SETTINGS_FILE = "Library/Preferences/com.aldmoor.veltrix.settings.plist"


def wait_until(condition, what, seconds=WAIT_SECONDS):
    """As waiting.wait_until, at the pace of what windows do."""
    return waiting.wait_until(condition, what, seconds, pause=0.02)


def isolate():
    """Starts this script again where it sees no process but its own, when the kernel allows that.

    Programs find a helper by its name among all processes of the user, so one that runs outside would be found too.
    """
    if os.environ.get("VELTRIX_ISOLATED"):
        return
    unshare = ["unshare", "--pid", "--fork", "--kill-child", "--mount-proc"]
    if os.getuid() != 0:
        unshare[1:1] = ["--user", "--map-current-user"]
    if subprocess.run([*unshare, "true"], capture_output=True).returncode == 0:
        os.environ["VELTRIX_ISOLATED"] = "1"
        os.execvp(unshare[0], [*unshare, sys.executable, "-B", *sys.argv])


@contextlib.contextmanager
def background(command, **options):
    process = subprocess.Popen([str(word) for word in command], **options)
    try:
        yield process
    finally:
        stop(process)
        for stream in (process.stdin, process.stdout, process.stderr):
            if stream is not None:
                stream.close()


def stop(process):
    if process.poll() is None:
        process.send_signal(signal.SIGTERM)
        try:
            process.wait(timeout=WAIT_SECONDS)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


# Settings without any key that a test does not ask for.
OPENBOX_SETTINGS = """<openbox_config xmlns="http://openbox.org/3.4/rc">
<focus><focusNew>yes</focusNew></focus>
<keyboard>{keys}</keyboard>
<mouse><context name="Client">
<mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
</context></mouse>
</openbox_config>
"""


class Desktop:
    """Use as a context manager. `window_manager` starts openbox, which gives windows focus and closes them politely.

    `key_bindings` are keys in openbox's spelling and the actions in its settings that it then has instead of its own;
    `with_helper` is false for programs that neither are a helper nor look for one.
    """

    def __init__(self, build, window_manager=False, accessibility=False, screen="1280x1024x24", key_bindings=None,
                 with_helper=True):
        self.build = pathlib.Path(build).resolve()
        self._key_bindings = key_bindings
        self._with_helper = with_helper
        self._window_manager = window_manager
        self._accessibility = accessibility
        self._screen = screen
        self._stack = contextlib.ExitStack()

    def __enter__(self):
        # See isolate: it may have been refused. One that has ended, but that nobody has waited for, harms nobody.
        running = ["pgrep", "-u", str(os.getuid()), "-r", "DRSTt", "-x", "VeltrixHelper"]
        if self._with_helper and subprocess.run(running, capture_output=True).returncode == 0:
            raise AssertionError("another VeltrixHelper of this user is running; end it first")
        with contextlib.ExitStack() as stack:
            self.home = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory(prefix="veltrix-desktop-")))
            self.environment = self._plain_environment()
            self._start_bus(stack)
            self._start_display(stack)
            if self._accessibility:
                self._start_accessibility()
            if self._window_manager:
                self._bind_keys()
                stack.enter_context(background(["openbox", "--sm-disable"], env=self.environment,
                                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
                wait_until(self._managed, "the window manager")
            self._stack = stack.pop_all()
        return self

    def __exit__(self, *_):
        self._stack.close()

    def _plain_environment(self):
        kept = {name: os.environ[name] for name in ("PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LANG") if name in os.environ}
        kept.update(
            HOME=str(self.home), XDG_RUNTIME_DIR=str(self.home / "run"), XDG_CONFIG_HOME=str(self.home / ".config"),
            XDG_CACHE_HOME=str(self.home / ".cache"), XDG_DATA_HOME=str(self.home / ".local/share"),
            VELTRIX_RESOURCES=str(self.build / "lib/veltrix"), QT_QPA_PLATFORM="xcb", NO_AT_BRIDGE="1")
        if self._accessibility:
            kept.update(QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_ACCESSIBILITY="1")
            del kept["NO_AT_BRIDGE"]
        (self.home / "run").mkdir(mode=0o700)
        return kept

    def _start_bus(self, stack):
        bus = stack.enter_context(background(
            ["dbus-daemon", "--session", "--nofork", "--print-address=1"], stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, text=True, env=self.environment))
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def _start_display(self, stack):
        reader, writer = os.pipe()
        stack.enter_context(background(
            ["Xvfb", "-displayfd", writer, "-screen", "0", self._screen, "-fbdir", self.home / "run", "-noreset",
             "-nolisten", "tcp"],
            pass_fds=(writer,), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        os.close(writer)
        with os.fdopen(reader) as display:
            self.environment["DISPLAY"] = ":" + display.readline().strip()

    def _start_accessibility(self):
        # Programs look for the accessibility bus once, when they start, and do not start it themselves.
        done = self.run(["dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
                         "org.a11y.Bus.GetAddress"])
        if done.returncode != 0:
            raise AssertionError(done.stderr)

    def _bind_keys(self):
        if self._key_bindings is None:
            return
        folder = self.home / ".config/openbox"
        folder.mkdir(parents=True)
        keys = "".join(f'<keybind key="{key}">{action}</keybind>' for key, action in self._key_bindings.items())
        (folder / "rc.xml").write_text(OPENBOX_SETTINGS.format(keys=keys))

    def _managed(self):
        done = self.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"])
        return "window id" in done.stdout

    def run(self, command, **options):
        """Runs a program to its end and captures what it prints."""
        return subprocess.run([str(word) for word in command], env=self.environment, capture_output=True, text=True,
                              timeout=WAIT_SECONDS * 3, **options)

    def start(self, command, **options):
        """Starts a program that ends with the desktop at the latest."""
        return self._stack.enter_context(background(command, env=self.environment, **options))

    def program(self, name):
        return self.build / "bin" / name

    @property
    def helper_program(self):
        return self.build / "lib/veltrix/VeltrixHelper.app/VeltrixHelper"

    @property
    def frame_buffer(self):
        """The file in which the X server keeps what is on its screen."""
        return self.home / "run/Xvfb_screen0"

    @property
    def settings_file(self):
        return self.home / SETTINGS_FILE

    def start_helper(self, simulated=None):
        """Starts the helper, with simulated trackballs unless `simulated` is None, and waits until it answers. Nobody
        starts it anew when a test kills it."""
        options = ["--no-keeper"] if simulated is None else ["--no-keeper", "--simulate", simulated]
        process = self.start([self.helper_program, *options])
        wait_until(lambda: self.ctl("devices").returncode == 0, "the helper to answer")
        return process

    def set_jump(self, jump):
        """Writes the factory settings with jumping turned on or off for every trackball."""
        document = plistlib.loads((self.build / "lib/veltrix/DefaultSettings.plist").read_bytes())
        for entry in document["devices"]:
            entry["options"]["jump"] = jump
        self.settings_file.parent.mkdir(parents=True, exist_ok=True)
        self.settings_file.write_bytes(plistlib.dumps(document))

    def start_window(self, *options, **arguments):
        return self.start([self.program("veltrix-settings"), *options], **arguments)

    def ctl(self, *words):
        return self.run([self.program("veltrixctl"), *words])

    def status(self):
        """What `veltrixctl status --json` prints, read."""
        done = self.ctl("status", "--json")
        return json.loads(done.stdout) if done.returncode == 0 else None

    def simulation(self, method, *arguments):
        """Calls a method of the helper's simulation control; arguments are texts and truth values."""
        def typed(argument):
            return f"boolean:{str(argument).lower()}" if isinstance(argument, bool) else f"string:{argument}"
        done = self.run(["dbus-send", "--session", "--print-reply", "--dest=com.aldmoor.VeltrixHelper",
                         "/com/aldmoor/VeltrixHelper", f"com.aldmoor.VeltrixHelper1.Simulation.{method}",
                         *map(typed, arguments)])
        if done.returncode != 0:
            raise AssertionError(done.stderr)

    def owner_of(self, bus_name):
        """The process id, as text, that owns a name of the session bus; None when nobody does."""
        done = self.run(["dbus-send", "--session", "--print-reply=literal", "--dest=org.freedesktop.DBus",
                         "/org/freedesktop/DBus", "org.freedesktop.DBus.GetConnectionUnixProcessID",
                         f"string:{bus_name}"])
        return done.stdout.split()[-1] if done.returncode == 0 else None

    def send_settings_changed(self):
        """Tells the helper that the file has changed, as the window does after a save."""
        code = int.from_bytes(b"VXUp", "big").to_bytes(4, sys.byteorder)
        words = [f"uint32:{int.from_bytes(word, 'big')}" for word in (b"AVLX", b"VXHm", b"----", b"magn")]
        done = self.run(["dbus-send", "--session", "--print-reply", "--dest=com.aldmoor.VeltrixHelper",
                         "/com/aldmoor/Events", "com.aldmoor.Events1.Send", *words,
                         "array:byte:" + ",".join(str(byte) for byte in code)])
        if done.returncode != 0:
            raise AssertionError(done.stderr)
