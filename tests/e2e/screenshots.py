#!/usr/bin/python3
"""Takes pictures of every page of the window, on a desktop of its own.

usage: screenshots.py BUILD_DIR OUT_DIR [SCENE...]

Writes OUT_DIR/SCENE/PAGE.png and prints each name.
"""
import dataclasses
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from desktop import Desktop, isolate, wait_until  # noqa: E402
from window import Window  # noqa: E402

PAGES = ("buttons", "pointer", "scrolling", "help")
JUMP_BOX = "Jump to the default button of a dialog that opens"
WARNING = "Jumping is not possible yet"
THREE = "A1D0:2041:0107,A1D0:1020:0100,A1D0:8002:0203"


@dataclasses.dataclass
class Scene:
    """Who is simulated, how the window looks, the tabs there are then, and the pages worth a picture (all, if none)."""
    simulated: str
    tabs: tuple = PAGES
    pages: tuple = ()
    colors: str = "light"
    environment: dict = dataclasses.field(default_factory=dict)
    warning: bool = False
    scale: float = 1.0


KINDS = {
    "none": Scene("", tabs=("buttons", "help")),
    "three": Scene(THREE),
    "1020": Scene("A1D0:1020:0100"),
    "1022": Scene("A1D0:1022:0100", tabs=("buttons", "pointer", "help"), pages=("buttons", "pointer")),
    "2041-new": Scene("A1D0:2041:0107", pages=("buttons", "scrolling")),
    "2041-old": Scene("A1D0:2041:0106", pages=("buttons", "scrolling")),
    "2048": Scene("A1D0:2048:0100", pages=("buttons", "scrolling")),
    "8002": Scene("A1D0:8002:0203", pages=("buttons", "scrolling")),
    "warning": Scene("A1D0:2041:0107", pages=("pointer",), warning=True),
}
SCENES = {f"{colors}-{name}": dataclasses.replace(scene, colors=colors)
          for colors in ("light", "dark") for name, scene in KINDS.items()}
SCENES["german"] = Scene(THREE, environment={"LANG": "C.UTF-8", "LANGUAGE": "de"})
SCENES["large"] = Scene(THREE, environment={"QT_FONT_DPI": "144"}, scale=1.5)


def take(desktop, path, title="Veltrix"):
    """Saves what a window shows once two pictures in a row are the same."""
    window = wait_until(
        lambda: desktop.run(["xdotool", "search", "--onlyvisible", "--name", f"^{title}"]).stdout.split(),
        f"the window {title!r}")[-1]
    path.parent.mkdir(parents=True, exist_ok=True)
    before = [b""]

    def settled():
        # The pixels alone are compared, for a file carries its time.
        pixels = desktop.run(["import", "-window", window, "-strip", path]).returncode == 0 and \
            desktop.run(["identify", "-format", "%#", path]).stdout
        same = pixels == before[0]
        before[0] = pixels
        return same and pixels

    wait_until(settled, f"{path} to come to rest")
    # Few colors are in them; a small file shows the same.
    desktop.run(["convert", path, "-strip", "+dither", "-colors", "255", "-define", "png:compression-level=9", f"PNG8:{path}"])
    print(path, flush=True)


def take_scene(build, folder, scene):
    with Desktop(build, window_manager=True, accessibility=True) as desktop:
        desktop.environment.update(scene.environment)
        desktop.start_helper(scene.simulated)
        if scene.warning:
            desktop.simulation("SetAccessibility", False)
        window = Window(desktop, "--colors", scene.colors, scale=scene.scale)
        wait_until(lambda: len(window.shown("page tab")) == len(scene.tabs), "the tabs")
        # By place, for their names depend on the language.
        names = {tab: one["name"] for tab, one in zip(scene.tabs, window.shown("page tab"))}
        for page in scene.pages or scene.tabs:
            window.open_page(names[page])
            # A pointer over a control would show in the picture.
            window.xdotool("mousemove", 0, 0)
            take(desktop, folder / f"{page}.png")
        if scene.warning:
            window.click("check box", JUMP_BOX)
            take(desktop, folder / "warning.png", WARNING)


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    build, folder = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()
    for name in sys.argv[3:] or SCENES:
        take_scene(build, folder / name, SCENES[name])


if __name__ == "__main__":
    isolate()
    main()
