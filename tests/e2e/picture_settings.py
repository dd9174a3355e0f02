"""The home folder of somebody who has given every kind of assignment to a button, for pictures of the window."""
import pathlib
import plistlib

RESOURCES = pathlib.Path(__file__).resolve().parent.parent.parent / "resources"
COMMAND, SHIFT, OPTION, CONTROL = 256, 512, 2048, 4096

TEXT = "Dear reader,\n\nthank you for your message. I shall look into it and answer you before the week is over.\n"
SCRIPT = "set -e\ncd ~/photos\nfor picture in *.jpg; do\n  convert \"$picture\" -resize 50% \"small/$picture\"\ndone\n"

# For each model the buttons whose editor is worth a picture, by their place in the page; the model's first one stays a
# click. All of them need an item of their own in their menu.
ACTIONS = {
    "1020": {"01": ("none", {"cmd": 33}),
             "02": ("keystroke-named", {"cmd": 10, "key": 123, "mod": OPTION + SHIFT}),
             "03": ("keystroke", {"cmd": 10, "key": 0, "mod": CONTROL + COMMAND}),
             "08": ("snippet", {"cmd": 180}),
             "09": ("scroll", {"cmd": 21, "cnt": 3})},
    "2041-new": {"01": ("application", {"cmd": 71, "str": "Text Editor", "bndl": "org.example.Editor"}),
                 "02": ("item", {"cmd": 70, "str": "~/Documents/Minutes of the last meeting.txt"}),
                 "03": ("url", {"cmd": 72, "str": "https://www.example.org/a/rather/long/address/of/a/page"}),
                 "08": ("script", {"cmd": 73, "str": SCRIPT}),
                 "09": ("click", {"cmd": 1, "mod": CONTROL + COMMAND})},
    "8002": {"01": ("click", {"cmd": 2, "mod": SHIFT}),
             "08": ("keystroke-empty", {"cmd": 10, "key": 255, "mod": 0})},
}
MODELS = {"1020": (0x1020, 0), "2041-new": (0x2041, 0x107), "8002": (0x8002, 0)}
PLACES = ("00", "01", "02", "03", "08", "09")

EDITED = {model: {(PLACES if model != "8002" else ("00", "01", "08")).index(button): name
                  for button, (name, _) in actions.items()} for model, actions in ACTIONS.items()}

APPLICATIONS = {
    "org.example.Calculator": ("Calculator", "Taschenrechner", "Sums, percentages and units"),
    "org.example.Editor": ("Text Editor", "Texteditor", "Write and change plain texts"),
    "org.example.Mail": ("Mail", "Mail", "Read and write letters"),
    "org.example.Music": ("Music Player", "Musikspieler", "Listen to your collection"),
    "org.example.Photos": ("Photo Album", "Fotoalbum", "Look through pictures and put them in order"),
    "org.example.Terminal": ("Terminal", "Terminal", "Type commands"),
    "org.example.Web": ("Web Browser", "Webbrowser", "Visit pages"),
}


def document():
    """The factory settings with the actions."""
    settings = plistlib.loads((RESOURCES / "DefaultSettings.plist").read_bytes())
    settings["paramUI"] = True
    settings["snippets"][0] = {"name": "Thanks", "text": TEXT}
    for entry in settings["devices"]:
        model = (entry["device product id"], entry["device version min"])
        for name, wanted in MODELS.items():
            if model == wanted:
                entry["buttons"].update({button: action for button, (_, action) in ACTIONS[name].items()})
    return settings


def prepare_home(home, settings_file):
    """Puts settings, applications and files into `home`; returns what the environment needs to show only these."""
    settings_file.parent.mkdir(parents=True, exist_ok=True)
    settings_file.write_bytes(plistlib.dumps(document()))
    applications = home / ".local/share/applications"
    applications.mkdir(parents=True)
    for identifier, (name, german, comment) in APPLICATIONS.items():
        (applications / f"{identifier}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName={name}\nName[de]={german}\nComment={comment}\nExec=true\n"
            f"Icon={RESOURCES / 'pictures/icon.svg'}\n")
    for folder in ("Desktop", "Documents", "Downloads", "Music", "Pictures"):
        (home / folder).mkdir()
    for name in ("Minutes of the last meeting.txt", "Plan for the garden.odt", "To do.md"):
        (home / "Documents" / name).write_text("\n")
        (home / name).write_text("\n")
    return {"XDG_DATA_DIRS": str(home / "none")}
