"""Entries of the settings, and the records that they become."""
import os
import pathlib
import plistlib
import random
import subprocess

CLICKS = (1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 14, 15, 16, 17, 18)
SCROLLS = (20, 21, 22, 23)
MODES = (24, 25, 26, 27, 28, 29)
OF_HELPER = (32, 70, 110, 200)
MODIFIERS = (256, 512, 2048, 4096)  # without Caps Lock, whose state stays
LETTERS = (0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 12, 13, 14, 15, 16, 17)  # none that the kernel itself obeys


def factory_settings():
    return pathlib.Path(os.environ["VELTRIX_BUILD"]) / "lib/veltrix/DefaultSettings.plist"


def factory_entries():
    return plistlib.loads(factory_settings().read_bytes())["devices"]


def some_modifiers(chance):
    return sum(modifier for modifier in MODIFIERS if chance.random() < 0.25)


def some_action(chance):
    kind = chance.randrange(10)
    if kind < 4:
        return {"cmd": chance.choice(CLICKS), "mod": some_modifiers(chance)}
    if kind < 6:
        return {"cmd": 10, "mod": some_modifiers(chance), "key": chance.choice(LETTERS)}
    if kind < 7:
        return {"cmd": chance.choice(SCROLLS), "cnt": chance.randint(1, 20)}
    if kind < 8:
        return {"cmd": chance.choice(MODES)}
    return {"cmd": chance.choice((0, *OF_HELPER)), "str": ""}


def some_entry(factory, chance):
    """An entry for the same trackballs with other buttons and options."""
    entry = {**factory, "options": dict(factory["options"]), "buttons": {}}
    entry["options"].update({name: chance.random() < 0.5 for name in
                             ("accelerate", "invert wheel", "invert x", "invert y", "invert z", "swap xy", "inertial scroll")})
    entry["options"].update(speed=chance.choice((80, 200, 400, 1000, 2400, 5000)), acceleration=chance.choice((0.5, 1.0, 2.0, 4.0)))
    slots = list(range(8)) + [chord for chord in (8, 9) if chance.random() < 0.5]
    for slot in slots:
        entry["buttons"][f"{slot:02}"] = some_action(chance)
    entry["buttons"]["12"] = {"cmd": 20, "cnt": chance.randint(1, 20)}
    return entry


def entries_of(factory, count):
    """The factory entry and `count` others, always the same ones for the same trackballs."""
    chance = random.Random(f"{factory['device product id']}-{factory['device version min']}")
    return [factory] + [some_entry(factory, chance) for _ in range(count)]


def records_of(entries, folder):
    """The record of each entry, as veltrixctl makes them."""
    file = pathlib.Path(folder) / "settings.plist"
    file.write_bytes(plistlib.dumps({"version": 2, "devices": entries, "snippets": []}))
    program = pathlib.Path(os.environ["VELTRIX_BUILD"]) / "bin/veltrixctl"
    records = []
    for index in range(len(entries)):
        done = subprocess.run([program, "record", file, str(index)], capture_output=True, text=True)
        words = done.stdout.split()
        if words[:1] != ["true"]:
            raise AssertionError(f"entry {index} makes no record: {done.stdout}{done.stderr}")
        records.append(bytes.fromhex("".join(words[1:])))
    return records


def scroll_parameters(entry):
    return tuple(entry["param"][name] for name in ("triggerTime", "timeDecay", "timeStop", "countDecay", "countStop"))
