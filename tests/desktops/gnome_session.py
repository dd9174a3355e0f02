"""GNOME Shell with a session of its own, and the keys of the tests' driver in it."""
import ast
import contextlib
import json
import os
import pathlib
import plistlib
import subprocess
import sys
import threading

from gi.repository import Gio, GLib

TESTS = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(TESTS / "support"), str(TESTS / "e2e/commands")]
from desktop import WAIT_SECONDS, Desktop, background, wait_until  # noqa: E402
from trackball_desk import SKIFFLINE, Lines, entry  # noqa: E402

SCREEN = "1280x800"

# What there is to see, as the shell's own scripts see it.
STATE = """(() => {
  const Main = imports.ui.main;
  const focus = global.display.focus_window;
  const windows = global.get_window_actors().map(actor => actor.meta_window).filter(w => w.get_window_type() == 0);
  const area = global.workspace_manager.get_active_workspace().get_work_area_for_monitor(0);
  return {
    workspace: global.workspace_manager.get_active_workspace_index(),
    showing_desktop: windows.length > 0 && windows.every(w => !w.showing_on_its_workspace()),
    focus: focus ? focus.title : null,
    overview: Main.overview.visible && Main.overview._shown,
    applications: Main.overview.visible && Main.overview.dash.showAppsButton.checked,
    run_dialog: Main.runDialog != null && Main.runDialog.state <= 1,
    notifications: Main.panel.statusArea.dateMenu.menu.isOpen,
    area_chooser: Main.screenshotUI.visible,
    window_menu: Main.wm._windowMenuManager._manager.activeMenu != null,
    grab: global.display.get_grab_op(),
    magnifier: Main.magnifier.isActive(),
    magnification: Main.magnifier.isActive() ? Main.magnifier._zoomRegions[0].getMagFactor()[0] : null,
    question: Main.layoutManager.modalDialogGroup.get_children().filter(c => c.visible).map(c => c._type)[0] ?? null,
    keyboard: Main.keyboard._keyboard != null,
    area: [area.x, area.y, area.width, area.height],
    windows: Object.fromEntries(windows.map(w => { const r = w.get_frame_rect(); return [w.title, {
      workspace: w.get_workspace().index(), minimized: w.minimized, maximized: w.get_maximized() == 3,
      above: w.is_above(), frame: [r.x, r.y, r.width, r.height]}]; })),
  };
})()"""


class GnomeSession(contextlib.ExitStack):
    """Starts the shell: `kind` is "x11", on an X server in memory, or "wayland", on no screen at all."""

    def __init__(self, build, kind):
        super().__init__()
        self.kind = kind
        self.desktop = Desktop(build, screen=f"{SCREEN}x24")

    def __enter__(self):
        super().__enter__()
        try:
            self.enter_context(self.desktop)
            self._start()
        except BaseException:
            self.close()
            raise
        return self

    def _start(self):
        environment = self.desktop.environment
        environment.update(LANG="C.UTF-8", XDG_CURRENT_DESKTOP="GNOME", XDG_SESSION_TYPE=self.kind, XDG_SESSION_CLASS="user",
                           GNOME_SHELL_SESSION_MODE="user", LIBGL_ALWAYS_SOFTWARE="1", QT_QPA_PLATFORM="")
        del environment["NO_AT_BRIDGE"]
        self.log = self.enter_context(open(self.desktop.home / "shell.log", "wb"))
        self._start_system_bus()
        self.run("dbus-update-activation-environment", "--all")
        if self.kind == "wayland":
            self.x_display = environment.pop("DISPLAY")
            environment["WAYLAND_DISPLAY"] = "veltrix-0"
            options = ["--headless", "--virtual-monitor", SCREEN, "--wayland", "--wayland-display", "veltrix-0", "--no-x11"]
        else:
            options = ["--x11"]
        self.start("gnome-shell", "--unsafe-mode", *options)
        wait_until(lambda: self._evaluate("1").startswith("(true"), "the shell", WAIT_SECONDS * 3)
        wait_until(lambda: not self.script("imports.ui.main.layoutManager._startingUp"), "the shell to have come up")
        self.script("imports.ui.main.overview.hide()")
        wait_until(lambda: not self.state()["overview"], "the overview to go")
        self.bus = Gio.DBusConnection.new_for_address_sync(
            environment["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        if self.kind == "wayland":
            self._open_keyboard()

    # What would be on the real one is none of this session's.
    def _start_system_bus(self):
        config = self.desktop.home / "system.conf"
        config.write_text("""<busconfig><type>system</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>
            <policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
            <allow own="*"/></policy></busconfig>""")
        bus = self.enter_context(background(["dbus-daemon", f"--config-file={config}", "--nofork", "--print-address=1"],
                                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True))
        self.desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def _open_keyboard(self):
        """The compositor takes keys from whoever controls the screen from afar; the session lasts as the bus does."""
        path = self.call("org.gnome.Mutter.RemoteDesktop", "/org/gnome/Mutter/RemoteDesktop",
                         "org.gnome.Mutter.RemoteDesktop", "CreateSession")[0]
        self._keyboard = path
        self.call("org.gnome.Mutter.RemoteDesktop", path, "org.gnome.Mutter.RemoteDesktop.Session", "Start")

    def key(self, code, is_down):
        self.call("org.gnome.Mutter.RemoteDesktop", self._keyboard, "org.gnome.Mutter.RemoteDesktop.Session",
                  "NotifyKeyboardKeycode", GLib.Variant("(ub)", (code, is_down)))

    def call(self, service, path, interface, method, arguments=None):
        return self.bus.call_sync(service, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, 20000,
                                  None).unpack()

    def run(self, *words, **options):
        return self.desktop.run(words, **options)

    def start(self, *words, **options):
        return self.desktop.start(words, stdout=self.log, stderr=self.log, **options)

    def settings(self, schema, key, value=None):
        done = self.run("gsettings", "get" if value is None else "set", schema, key, *([] if value is None else [value]))
        if done.returncode != 0:
            raise AssertionError(done.stderr)
        return done.stdout.strip()

    def script(self, text):
        """What a script in the shell comes to."""
        answer = self._evaluate(text)
        if not answer.startswith("(true, "):
            raise AssertionError(answer)
        printed = ast.literal_eval(answer.replace("(true, ", "(True, ", 1))[1]
        return json.loads(printed) if printed else None

    def _evaluate(self, text):
        done = self.run("gdbus", "call", "--session", "-d", "org.gnome.Shell", "-o", "/org/gnome/Shell", "-m",
                        "org.gnome.Shell.Eval", text)
        return done.stdout.strip() or done.stderr

    def state(self):
        return self.script(STATE)


class Trackball(contextlib.ExitStack):
    """The helper and the tests' driver in such a session; `actions` are those of the buttons by slot."""

    def __init__(self, session, actions, snippets=()):
        super().__init__()
        self._session = session
        self._settings = {"version": 2, "devices": [entry(actions)],
                          "snippets": [{"name": f"Text {number}", "text": text}
                                       for number, text in enumerate(snippets, 1)]}

    def __enter__(self):
        super().__enter__()
        try:
            self._start()
        except BaseException:
            self.close()
            raise
        return self

    def _start(self):
        session, desktop = self._session, self._session.desktop
        desktop.settings_file.parent.mkdir(parents=True, exist_ok=True)
        desktop.settings_file.write_bytes(plistlib.dumps(self._settings))
        socket = desktop.home / "driver.sock"
        socket.unlink(missing_ok=True)
        prints = ["--print-keys"] if session.kind == "wayland" else []
        self._driver = self.enter_context(background(
            [desktop.build / "tests/e2e/commands/driver_on_display", socket, *prints], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, text=True, env=desktop.environment))
        if prints:
            threading.Thread(target=self._forward, daemon=True).start()
        wait_until(socket.exists, "the driver")
        self.enter_context(background(
            [desktop.helper_program, "--no-keeper", "--simulate", SKIFFLINE, "--driver-socket", socket],
            env=desktop.environment, stdout=session.log, stderr=session.log))
        wait_until(self._is_taken, "the trackball to work by its record")

    def _forward(self):
        with contextlib.suppress(ValueError):  # once the driver has ended
            for line in self._driver.stdout:
                words = line.split()
                if words[0] == "output":
                    self._session.key(int(words[1]), words[2] == "1")

    def _is_taken(self):
        status = self._session.desktop.status()
        return status and any(device["condition"] == "taken" for device in status["DriverDevices"])

    def click(self, slot):
        self._driver.stdin.write(f"press {slot}\nrelease {slot}\n")
        self._driver.stdin.flush()

    def problems(self):
        return [(problem["command"], problem["reason"])
                for problem in self._session.desktop.status()["CommandProblems"]]
