"""Several sources as one file, so that clang-tidy reads and walks the headers that they share once.

Only sources of one shape can be joined: includes that do not depend on where the source lies, then a named namespace with at
most one unnamed in it. Where all is in the unnamed one, it gets a name of its own in the batch; others are joined when they
do not declare the same names there. Where they clash all the same, or where something is found, they are to be looked at one
by one.
"""
import collections
import itertools
import pathlib
import re
import shlex

BATCH = 8
SHAPE = re.compile(r"(?P<includes>(?:#include [^\n]*\n|\n|//[^\n]*\n)*)"
                   r"(?P<body>(?P<opening>namespace (?!\{)[\w:]+ \{\n).*\n\}  // namespace [\w:]+\n)", re.DOTALL)
UNNAMED = "\nnamespace {\n"
UNNAMED_END = "\n}  // namespace\n"
# A name that is declared at the start of a line: a type, an alias, a function or a constant.
DECLARED = re.compile(r"^(?:(?:class|struct|enum class|enum|union)\s+(\w+)|using (\w+) =|"
                      r"(?!using|namespace|template|class|struct|enum)[A-Za-z][^\n(={;]*?\b(\w+)(?:\(| =|;|\{|\[))", re.MULTILINE)

Parts = collections.namedtuple("Parts", "includes body is_all_unnamed names")


def parts_of(text):
    """What a batch needs of a source, or nothing when the source has another shape."""
    match = SHAPE.fullmatch(text)
    if not match or re.search(r"^\s*#", match["body"], re.MULTILINE) or match["body"].count(UNNAMED) > 1:
        return None
    includes = re.findall(r"^#include .*", match["includes"], re.MULTILINE)
    if any(line.startswith('#include "') and "/" not in line for line in includes):
        return None
    before, unnamed, after = match["body"].partition(UNNAMED)
    inside, _, after = after.partition(UNNAMED_END)
    is_all_unnamed = bool(unnamed) and "\n" not in before and after.count("\n") <= 1
    names = set() if is_all_unnamed else {(match["opening"], next(filter(None, found))) for found in DECLARED.findall(inside)}
    return Parts(includes, match["body"], is_all_unnamed, names)


def joined(sources):
    """The text of a batch."""
    includes, bodies = {}, []
    for number, source in enumerate(sources):
        parts = parts_of(source.read_text(encoding="utf-8"))
        includes.update(dict.fromkeys(parts.includes))
        bodies.append(parts.body.replace(UNNAMED, f"\nnamespace source_{number} {{\n") if parts.is_all_unnamed else parts.body)
    return "\n".join([*includes, "", *bodies])


def flags_of(entry):
    """What the compiler is told, but for the names of files."""
    words, flags = iter(shlex.split(entry["command"])), []
    for word in words:
        if word in ("-o", "-MT", "-MF"):
            next(words)
        elif word.startswith("-") and word not in ("-c", "-MD"):
            flags.append(word)
            if word == "-isystem":
                flags.append(next(words))
    return tuple(flags)


def in_batches(entries):
    """Lists of entries that may be looked at together; alone those that may not."""
    alone, by_flags = [], collections.defaultdict(list)
    for entry in sorted(entries, key=lambda entry: entry["file"]):
        parts = parts_of(pathlib.Path(entry["file"]).read_text(encoding="utf-8"))
        if not parts:
            alone.append([entry])
            continue
        open_batches = by_flags[flags_of(entry)]
        for batch, names in open_batches:
            if len(batch) < BATCH and not names & parts.names:
                batch.append(entry)
                names |= parts.names
                break
        else:
            open_batches.append(([entry], set(parts.names)))
    return alone + [batch for batch, _ in itertools.chain(*by_flags.values())]
