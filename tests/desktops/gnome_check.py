#!/usr/bin/env python3
"""Prints for each command that goes its own way under GNOME whether the shell then does what the command says.

usage: gnome_check.py BUILD_DIR [x11|wayland] [CODE...]

Needs gnome-shell, gnome-settings-daemon, gnome-session-bin, gsettings (libglib2.0-bin), python3-gi, GTK 3 with its typelib,
pulseaudio with its utilities, and Xvfb. The shell, its buses, home folder and display are the check's own.
"""
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))
from gnome_session import GnomeSession, Trackball, wait_until  # noqa: E402
from desktop import isolate  # noqa: E402

SLOTS = (2, 3, 4, 5, 6, 7, 10, 11, 13, 14, 15)
SECONDS = 8  # in which it is to be seen
KEYBINDINGS = "org.gnome.desktop.wm.keybindings"


def of_focus(name, value):
    return lambda before, after: after["windows"][before["focus"]][name] == value


def now(name, value=True):
    return lambda before, after: after[name] == value


def at_half(right):
    def seen(before, after):
        x, y, width, height = after["windows"][before["focus"]]["frame"]
        left, top, whole, high = after["area"]
        return (x, y, width, height) == (left + right * whole // 2, top, whole // 2, high)
    return seen


def picture_of(width):
    """A new picture; of the whole screen when `width` is true."""
    def seen(before, after):
        new = after["pictures"].keys() - before["pictures"].keys()
        return any((after["pictures"][name] == (1280, 800)) == width for name in new)
    return seen


class Check:
    """What is to be `seen`, of the states before and after; `prepare` and `undo` are scripts in the shell, `focus` is the
    window that is in front."""

    def __init__(self, seen, prepare="", undo="", focus="one"):
        self.seen, self.prepare, self.undo, self.focus = seen, prepare, undo, focus


def workspace(number):
    return f"global.workspace_manager.get_workspace_by_index({number}).activate(global.get_current_time())"


def on_workspace(number):
    """With the window of that name taken along."""
    return (f"global.get_window_actors().map(a => a.meta_window).filter(w => w.title == 'one').forEach(w => "
            f"{{ w.change_workspace_by_index({number}, false); "
            f"global.workspace_manager.get_workspace_by_index({number}).activate_with_focus(w, global.get_current_time()) }})")


HOME = on_workspace(0)
NO_OVERVIEW = "imports.ui.main.overview.hide()"
REFUSE = "imports.ui.main.layoutManager.modalDialogGroup.get_children().forEach(c => c.cancel?.())"
END_GRAB = "global.display.end_grab_op(global.get_current_time())"

CHECKS = {
    74: Check(lambda before, after: before["focus"] not in after["windows"], focus="doomed"),
    75: Check(of_focus("minimized", True)),
    76: Check(of_focus("maximized", True)),
    78: Check(lambda before, after: after["focus"] not in (None, before["focus"])),
    79: Check(lambda before, after: after["focus"] not in (None, before["focus"])),
    80: Check(now("focus", "two")),
    81: Check(at_half(0)),
    82: Check(at_half(1)),
    83: Check(lambda before, after: after["grab"] not in (0, before["grab"]), undo=END_GRAB),
    84: Check(lambda before, after: after["grab"] not in (0, before["grab"]), undo=END_GRAB),
    85: Check(now("window_menu"), undo="imports.ui.main.wm._windowMenuManager._manager.activeMenu?.close()"),
    86: Check(of_focus("above", True)),
    90: Check(now("workspace", 1), workspace(2), HOME),
    91: Check(now("workspace", 3), workspace(2), HOME),
    92: Check(lambda before, after: (after["workspace"], after["windows"]["one"]["workspace"]) == (1, 1), on_workspace(2), HOME),
    93: Check(lambda before, after: (after["workspace"], after["windows"]["one"]["workspace"]) == (3, 3), on_workspace(2), HOME),
    94: Check(now("workspace", 0), workspace(2), HOME),
    95: Check(now("workspace", 1), workspace(3), HOME),
    96: Check(now("workspace", 2), workspace(0), HOME),
    97: Check(now("workspace", 3), workspace(1), HOME),
    100: Check(now("applications"), undo=NO_OVERVIEW),
    101: Check(now("run_dialog"), undo="imports.ui.main.runDialog.close()"),
    102: Check(now("showing_desktop")),
    103: Check(now("notifications"), undo="imports.ui.main.panel.statusArea.dateMenu.menu.close()"),
    107: Check(now("overview"), undo=NO_OVERVIEW),
    136: Check(now("overview"), undo=NO_OVERVIEW),
    146: Check(lambda before, after: after["volume"] > before["volume"]),
    147: Check(lambda before, after: after["volume"] < before["volume"]),
    148: Check(lambda before, after: after["muted"] != before["muted"]),
    149: Check(lambda before, after: after["deaf"] != before["deaf"]),
    155: Check(picture_of(True)),
    156: Check(picture_of(False)),
    157: Check(now("area_chooser"), undo="imports.ui.main.screenshotUI.close()"),
    163: Check(now("question", 0), undo=REFUSE),
    166: Check(now("question", 2), undo=REFUSE),
    167: Check(now("question", 1), undo=REFUSE),
    201: Check(now("keyboard")),
    205: Check(now("magnifier")),
    203: Check(lambda before, after: after["magnification"] and after["magnification"] > before["magnification"]),
    204: Check(lambda before, after: after["magnification"] and after["magnification"] < before["magnification"]),
}
# GNOME does these, but has keys for them only where somebody has given it some.
WITH_KEYS = {86: ("always-on-top", "<Control><Super>t"), 102: ("show-desktop", "<Control><Super>d")}


class Sound:
    """A sound server of the session's own, with a speaker and a microphone of nothing."""

    MODULES = ("module-native-protocol-unix", "module-null-sink sink_name=speaker", "module-null-source source_name=microphone")

    def __init__(self, session):
        self._session = session
        session.start("pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm",
                      *(word for module in self.MODULES for word in ("-L", module)))
        wait_until(lambda: session.run("pactl", "info").returncode == 0, "the sound server")
        session.run("pactl", "set-sink-volume", "speaker", "50%")
        session.run("pactl", "set-default-source", "microphone")

    def state(self):
        volume, muted, deaf = (self._session.run("pactl", *words).stdout for words in (
            ("get-sink-volume", "speaker"), ("get-sink-mute", "speaker"), ("get-source-mute", "microphone")))
        return {"volume": int(re.search(r"(\d+)%", volume)[1]), "muted": muted, "deaf": deaf}


class Desktop:
    def __init__(self, session):
        self.session = session
        session.settings("org.gnome.mutter", "dynamic-workspaces", "false")
        session.settings("org.gnome.desktop.wm.preferences", "num-workspaces", "4")
        wait_until(lambda: session.script("global.workspace_manager.n_workspaces") == 4, "the workspaces")
        self.sound = Sound(session)
        session.start("/usr/libexec/gsd-media-keys")
        wait_until(lambda: session.desktop.owner_of("org.gnome.SettingsDaemon.MediaKeys"), "the media keys")
        self._start_manager()
        self.open("first", "two", "one")
        self.open("second", "three")

    # Of a session with nothing in it, not even what every session starts.
    def _start_manager(self):
        sessions = self.session.desktop.home / ".config/gnome-session/sessions"
        sessions.mkdir(parents=True)
        (sessions / "check.session").write_text("[GNOME Session]\nName=Check\nRequiredComponents=\n")
        self.session.start("env", "XDG_CONFIG_DIRS=/nonexistent", "/usr/libexec/gnome-session-binary", "--builtin",
                           "--session=check")
        wait_until(lambda: self.session.desktop.owner_of("org.gnome.SessionManager"), "the session manager")

    def open(self, application, *titles):
        self.session.start(sys.executable, HERE / "two_windows.py", application, *titles)
        wait_until(lambda: set(titles) <= self.session.state()["windows"].keys(), "the windows")

    def state(self):
        state = self.session.state() | self.sound.state()
        pictures = (self.session.desktop.home / "Screenshots").glob("*.png")  # there are no folders for pictures
        state["pictures"] = {picture.name: size_of(picture) for picture in pictures}
        return state

    def focus(self, title):
        """Has that window in front, with its usual size, and no other minimized."""
        self.session.script(
            "global.get_window_actors().map(a => a.meta_window).filter(w => w.get_window_type() == 0).forEach(w => {"
            " w.unminimize(); w.unmaximize(3); w.unmake_above(); })")
        self.session.script(
            f"global.get_window_actors().map(a => a.meta_window).filter(w => w.title == '{title}')"
            ".forEach(w => imports.ui.main.activateWindow(w))")
        wait_until(lambda: self.session.state()["focus"] == title, f"the window {title} to have the focus")

    def try_command(self, check, act, seconds):
        """Whether it was seen after `act`."""
        if check.focus == "doomed":
            self.open("third", "doomed")
        self.focus(check.focus)
        if check.prepare:
            self.session.script(check.prepare)
        before = self.state()
        act()
        try:
            wait_until(lambda: check.seen(before, self.state()), "it", seconds)
            return True
        except AssertionError:
            return False
        finally:
            if check.undo:
                self.session.script(check.undo)


def size_of(picture):
    head = picture.read_bytes()[:24]
    return int.from_bytes(head[16:20], "big"), int.from_bytes(head[20:24], "big")


def check_session(build, kind, codes):
    with GnomeSession(build, kind) as session:
        desktop = Desktop(session)
        for first in range(0, len(codes), len(SLOTS)):
            slots = dict(zip(SLOTS, codes[first:first + len(SLOTS)]))
            with Trackball(session, slots) as trackball:
                for slot, code in slots.items():
                    tell(desktop, trackball, kind, slot, code)


def tell(desktop, trackball, kind, slot, code):
    told = len(trackball.problems())
    seen = desktop.try_command(CHECKS[code], lambda: trackball.click(slot), SECONDS)
    line = f"{kind} {code}: {'seen' if seen else 'not seen'}"
    reasons = [reason for _, reason in trackball.problems()[told:]]
    print(line + (f" ({'; '.join(reasons)})" if reasons else ""), flush=True)
    if not seen and code in WITH_KEYS:
        desktop.session.settings(KEYBINDINGS, WITH_KEYS[code][0], f"['{WITH_KEYS[code][1]}']")
        seen = desktop.try_command(CHECKS[code], lambda: trackball.click(slot), SECONDS)
        print(f"{kind} {code} with keys of the user's: {'seen' if seen else 'not seen'}", flush=True)


def main(build, *words):
    kinds = [word for word in words if not word.isdigit()] or ["x11", "wayland"]
    codes = [int(word) for word in words if word.isdigit()] or list(CHECKS)
    for kind in kinds:
        check_session(build, kind, codes)


if __name__ == "__main__":
    isolate()
    main(*sys.argv[1:])
