#!/usr/bin/python3
"""Takes pictures of everything that the window shows, on desktops of its own.

usage: screenshots.py BUILD_DIR OUT_DIR [LOOK...]

A look is a color scheme, a scale and a language: light-100, dark-100, light-200, dark-200, german-100, german-200.
Writes OUT_DIR/LOOK/PICTURE.png and prints each name. Ends with 1 when a window was larger than its screen.
"""
import dataclasses
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from camera import Camera  # noqa: E402
from desktop import Desktop, isolate, wait_until  # noqa: E402
from picture_settings import EDITED, prepare_home  # noqa: E402
from window import Window  # noqa: E402

TABS = ("buttons", "pointer", "scrolling", "help")
TABLES = pathlib.Path(__file__).resolve().parent.parent.parent / "resources/locale"


@dataclasses.dataclass
class Look:
    """`screen` is the smallest one that people with this scale are likely to have."""
    colors: str = "light"
    scale: float = 1.0
    language: str = "en"

    @property
    def screen(self):
        return (1366, 768) if self.scale == 1 else (1920, 1080)

    def text(self, key):
        """What the window calls `key`, as a screen reader hears it: without the marks of mnemonics."""
        for table in (TABLES / self.language).glob("*.po"):
            for english, local in re.findall(r'^msgid "(.+)"\nmsgstr "(.+)"', table.read_text(), re.M):
                if english.replace("&", "") == key:
                    return local.replace("&", "")
        return key


LOOKS = {
    "light-100": Look(),
    "dark-100": Look(colors="dark"),
    "light-200": Look(scale=2.0),
    "dark-200": Look(colors="dark", scale=2.0),
    "german-100": Look(language="de"),
    "german-200": Look(language="de", scale=2.0),
}

# The models with the tabs that the window has for each.
MODELS = {
    "1020": ("A1D0:1020:0100", TABS),
    "1022": ("A1D0:1022:0100", ("buttons", "pointer", "help")),
    "2041-new": ("A1D0:2041:0107", TABS),
    "2041-old": ("A1D0:2041:0106", TABS),
    "2048": ("A1D0:2048:0100", TABS),
    "8002": ("A1D0:8002:0203", TABS),
}

CHOOSERS = {"application": "Choose an application", "item": "Choose a file or folder"}


class Session:
    """One window with one look, and the pictures of it."""

    def __init__(self, desktop, look, camera):
        self.desktop = desktop
        self.look = look
        self.camera = camera
        desktop.start_helper("")
        self.window = Window(desktop, "--colors", look.colors, scale=look.scale)
        self.main = camera.wait_for_active()

    def rest_pointer(self):
        # A pointer over a control would show in the picture.
        self.window.xdotool("mousemove", 0, 0)

    def open_tab(self, tabs, tab):
        self.window.open_page(self.window.shown("page tab")[tabs.index(tab)]["name"])
        self.rest_pointer()

    def wait_for_tabs(self, tabs):
        wait_until(lambda: len(self.window.shown("page tab")) == len(tabs), "the tabs")

    def take_page(self, name, tabs, tab):
        self.open_tab(tabs, tab)
        self.camera.take_front(name)

    def press(self, key):
        """Clicks a button, and waits for the window that it opens."""
        before = self.camera.active()
        self.window.click("push button", self.look.text(key))
        self.camera.wait_for_active(before)

    def take_dialog(self, name):
        self.rest_pointer()
        self.camera.wait_for_active(self.main)
        self.camera.take_front(name)

    def close_dialog(self):
        dialog = self.camera.active()
        self.window.key("Escape")
        return self.camera.wait_for_active(dialog)

    def open_menu(self, place):
        """Opens the menu of the button that comes at `place` in the page, counted from 0."""
        self.at_menu(place, "click", 1)

    def at_menu(self, place, *then):
        """Moves the pointer to a menu of the page, and waits for the window that appears."""
        wait_until(lambda: len(self.camera.windows()) == 1, "what was shown before to go")
        x, y, width, height = self.menus()[place]["box"]
        scale = self.look.scale
        self.window.xdotool("mousemove", int((x + width / 2) * scale), int((y + height / 2) * scale), *then)
        wait_until(lambda: len(self.camera.windows()) > 1, "the menu or its tool tip")

    def menus(self):
        return wait_until(lambda: [one for one in self.window.shown("combo box") if one["box"][1] > self.pages_top()],
                          "the menus of the buttons")

    def pages_top(self):
        tab = self.window.shown("page tab")[0]["box"]
        return tab[1] + tab[3]

    def open_editor(self, place):
        """By the last item but one: the last shows an assignment that has no item of its own."""
        self.open_menu(place)
        self.rest_pointer()
        self.window.key("End", "Up", "Return")
        return self.camera.wait_for_active(self.main)

    def take_menus(self):
        """Of a model whose first button alone is a click and whose third one has no item of its own."""
        for place, name in ((2, "menu-extra"), (4, "menu-chord")):
            self.open_menu(place)
            self.camera.take_screen(name)
            self.window.key("Escape")
        self.at_menu(0)
        self.camera.take_screen("menu-disabled")
        self.rest_pointer()

    def take_editors(self, model):
        for place, name in EDITED.get(model, {}).items():
            self.open_editor(place)
            self.take_dialog(f"editor-{model}-{name}")
            if name in CHOOSERS:
                self.press(CHOOSERS[name])
                self.take_dialog(f"chooser-{name}")
                self.close_dialog()
            self.close_dialog()

    def take_model(self, model):
        device, tabs = MODELS[model]
        self.desktop.simulation("Plug", device)
        self.wait_for_tabs(tabs)
        self.take_page(f"buttons-{model}", tabs, "buttons")
        if model == "1020":
            self.take_menus()
        self.take_editors(model)
        if "scrolling" in tabs:
            self.take_page(f"scrolling-{model}", tabs, "scrolling")
        if model == "2041-new":
            self.press("Advanced…")
            self.take_dialog("scroll-parameters")
            self.close_dialog()
        self.desktop.simulation("Unplug", device)
        self.wait_for_tabs(("buttons", "help"))

    def take_all(self):
        self.take_page("buttons-none", ("buttons", "help"), "buttons")
        self.take_page("help-none", ("buttons", "help"), "help")
        for model in MODELS:
            self.take_model(model)
        for model in ("1020", "2041-new", "8002"):
            self.desktop.simulation("Plug", MODELS[model][0])
        self.wait_for_tabs(TABS)
        for tab in TABS:
            self.take_page(f"{tab}-three", TABS, tab)
        self.press("Details…")
        self.take_dialog("driver")
        self.close_dialog()
        self.desktop.simulation("SetAccessibility", False)
        self.open_tab(TABS, "pointer")
        # At its box, for the rest of it may be longer than its text and takes no click there.
        self.window.click("check box", self.look.text("Jump to the default button of a dialog that opens"), at=0.02)
        self.take_dialog("warning")


def take_uninstaller(desktop, camera):
    front = camera.active()
    desktop.start([desktop.build / "lib/veltrix/Veltrix Uninstaller.app/Veltrix Uninstaller"])
    camera.wait_for_active(front)
    camera.take_front("uninstaller")


def take_look(build, folder, look):
    with Desktop(build, window_manager=True, accessibility=True, screen="{}x{}x24".format(*look.screen)) as desktop:
        desktop.environment.update(prepare_home(desktop.home, desktop.settings_file))
        desktop.environment.update(LANG="C.UTF-8", LANGUAGE=look.language, QT_FONT_DPI=str(int(96 * look.scale)))
        camera = Camera(desktop, folder, look.scale)
        Session(desktop, look, camera).take_all()
        if look.colors == "light":
            take_uninstaller(desktop, camera)
        return camera.too_large


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    build, folder = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()
    too_large = [f"{name}/{one}" for name in sys.argv[3:] or LOOKS for one in take_look(build, folder / name, LOOKS[name])]
    if too_large:
        sys.exit("larger than the screen:\n  " + "\n  ".join(too_large))


if __name__ == "__main__":
    isolate()
    main()
