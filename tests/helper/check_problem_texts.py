#!/usr/bin/env python3
"""Whether every reason for which a command fails can be told in each language.

usage: check_problem_texts.py SOURCE_DIR

Reads the errors that the parts of the helper which carry out commands make. Prints each text that has no translation,
each translation that nothing says, and each error whose text is put together so that nobody could look it up; exits with
1 when there is one.
"""
import pathlib
import re
import sys

FOLDERS = ("helper/commands", "helper/desktop", "helper/typing")
ALSO = ("platform/program_start.cpp",)
# Without errors that a command could meet.
LEFT_OUT = ("helper/typing/keyboard_model.cpp", "helper/desktop/compositor_inputs.cpp",
            "helper/desktop/mime_applications.cpp")
LITERAL = r'"((?:[^"\\]|\\.)*)"'
MADE = [re.compile(r"(?:\bError|\breturn|\bfailAll\(|\bError \w+)\s*\{[^;{}\"]*?,\s*" + LITERAL + r"(?=\s*[,+:])(\s*\+)?"),
        re.compile(r"\bphrasedError\([^;{}]*\{\s*" + LITERAL),
        re.compile(r"\b(?:strange|refused|failure|unanswered)\((?:[^;\"()]|\([^()]*\))*" + LITERAL),
        re.compile(r"\bPhrase\{\s*" + LITERAL),
        re.compile(r"\bprogram\.title = " + LITERAL),
        re.compile(r"\breturn \"([^\"]* is installed)\";")]
SYSTEM = re.compile(r"\bsystemError\([^;\"]*?" + LITERAL)
# What the system says of errors that commands meet, for where its own translations are not installed.
ERRNO = {"No such file or directory", "Permission denied", "Not a directory", "Exec format error", "Invalid argument",
         "Connection refused", "No space left on device", "Cannot allocate memory", "Too many open files",
         "File name too long", "Too many levels of symbolic links", "Input/output error", "Text file busy"}
# Of the notice itself.
TITLES = {"A button's command did not work"}


def said(source):
    """Texts that are said in a source, and those that are put together."""
    texts, joined = set(), set()
    for pattern in MADE:
        for found in pattern.finditer(source):
            (joined if pattern.groups > 1 and found[2] else texts).add(found[1])
    texts |= {found[1] + " %1: %2" for found in SYSTEM.finditer(source)}
    return {text for text in texts if re.search("[a-z]", re.sub("%[0-9]", "", text))}, joined


def translated(path):
    return {text.encode().decode("unicode_escape").encode("latin-1").decode()
            for text in re.findall(r'^msgid "(.+)"$', path.read_text(), re.MULTILINE)}


def main(folder):
    sources = [path for each in FOLDERS for path in (folder / each).glob("*.cpp")] + [folder / each for each in ALSO]
    texts, joined = set(ERRNO | TITLES), {}
    for path in sources:
        if str(path.relative_to(folder)) in LEFT_OUT:
            continue
        found, put_together = said(path.read_text())
        texts |= found
        joined.update({text: path.name for text in put_together})
    there = translated(folder / "resources/locale/de/notices.po")
    for text in sorted(texts - there):
        print(f"no translation: {text}")
    for text in sorted(there - texts):
        print(f"nothing says: {text}")
    for text, name in sorted(joined.items()):
        print(f"{name} puts together: {text}")
    return 1 if texts != there or joined else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
