"""Checks property lists against plistlib, and lets plistlib write them again.

usage: property_list_oracle.py FOLDER

For every NAME.txt in FOLDER, NAME.xml and NAME.bin must hold what it describes, one value a line. What plistlib makes
of them is written to NAME.oracle.xml and NAME.oracle.bin.
"""

import datetime
import pathlib
import plistlib
import struct
import sys

EPOCH = datetime.datetime(2001, 1, 1)


def described(value, lines):
    if isinstance(value, bool):
        lines.append("b1" if value else "b0")
    elif isinstance(value, int):
        lines.append(f"i{value}")
    elif isinstance(value, float):
        lines.append("rnan" if value != value else "r" + struct.pack(">d", value).hex())
    elif isinstance(value, str):
        lines.append("s" + value.encode("utf-8").hex())
    elif isinstance(value, bytes):
        lines.append("d" + value.hex())
    elif isinstance(value, datetime.datetime):
        lines.append(f"t{(value - EPOCH) // datetime.timedelta(seconds=1)}")
    elif isinstance(value, list):
        lines.append(f"a{len(value)}")
        for item in value:
            described(item, lines)
    else:
        lines.append(f"m{len(value)}")
        for key, item in value.items():
            described(key, lines)
            described(item, lines)
    return lines


def main():
    folder = pathlib.Path(sys.argv[1])
    checked = 0
    for text in sorted(folder.glob("*.txt")):
        expected = text.read_text().split("\n")
        for suffix, form in ((".xml", plistlib.FMT_XML), (".bin", plistlib.FMT_BINARY)):
            path = text.with_suffix(suffix)
            value = plistlib.loads(path.read_bytes(), fmt=form)
            found = described(value, [])
            for number, (left, right) in enumerate(zip(expected, found)):
                if left != right:
                    sys.exit(f"{path.name}: value {number} is {right}, not {left}")
            if len(expected) != len(found):
                sys.exit(f"{path.name}: {len(found)} values, not {len(expected)}")
            text.with_suffix(".oracle" + suffix).write_bytes(plistlib.dumps(value, fmt=form, sort_keys=False))
        checked += 1
    print(f"checked {checked}")


main()
