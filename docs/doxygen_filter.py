#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Doxygen's input filter: prints a public header with its comments in Doxygen's notation, or a page.

In both, the names of entry points and classes become links to their reference. The comments are written to be read in
the header. What differs for Doxygen, line for line:
  - the comment at the top becomes the page of the file;
  - "@param name [in] ..." has the direction behind the name, "@param a [in] ... @param d [in]" means a series a to d;
  - lines indented by two blanks or more are formulas or tables and are set as they stand;
  - "Label: text" at the start of a line, the label a known one, begins a paragraph of that name;
  - the hidden lengths of option letters get their line.
"""
import re
import sys
from pathlib import Path

INCLUDE = Path(__file__).parent.parent / "ZORTavrinOpenSoftware/ZORTAVMathKernel.m/include"
LABELS = (
    "Accuracy|Alignment|Aliasing|Bad arguments|Elements|Failure|Memory|Method|Order|Refusal|Reproducibility|Source|Stack|"
    "Threads|Units|Zeros and NaN"
)
PARAM = re.compile(r"@param\s+(?P<names>\w+(?:, ?\w+)*)(?P<gap>\s+)(?:\[(?P<way>[^\]]*)\])?\s*(?P<text>.*)")
SERIES = re.compile(r"@param\s+([a-z_]+)1\s+\[([^\]]*)\] \.\.\. @param \1(\d+)\s+\[[^\]]*\]\s*(.*)")
WAYS = {"in": "[in]", "out": "[out]", "work": "[out]"}


def parameter(line):
    series = SERIES.match(line)
    if series:
        stem, way, last, text = series.groups()
        names = ",".join(f"{stem}{i}" for i in range(1, int(last) + 1))
        return f"@param{WAYS.get(way, '[in,out]')} {names} {text}"
    found = PARAM.match(line)
    if not found:
        return line
    names = found["names"].replace(" ", "")
    way, text = found["way"], found["text"]
    if way is None:
        return f"@param {names} {text}"
    remark = "(work array) " if way == "work" else "(destroyed) " if "destroyed" in way else ""
    return f"@param{WAYS.get(way, '[in,out]')} {names} {remark}{text}"


def sentences(line):
    """A line, divided where a label begins in its middle."""
    if line.startswith("  "):
        return [line]
    return re.sub(rf"(?<=\.) +(?=(?:{LABELS}): )", "\n", line).split("\n")


def comment(lines):
    """The lines of one comment, without its marks."""
    result, verbatim, in_command = [], False, False  # a list's entry counts as a command
    for line in (part for line in lines for part in sentences(line)):
        indented = re.match(r"  +\S", line) is not None
        if not verbatim and indented and not in_command:
            result.append("@verbatim")
            verbatim = True
        elif verbatim and line and not indented:
            result.append("@endverbatim")
            verbatim = False
        if verbatim:
            result.append(line)
            continue
        label = re.match(rf"((?:{LABELS})(?: (?:in|of) [^:]*)?) *: +(.*)", line)
        if line.startswith("@"):
            in_command = True
            line = parameter(line)
        elif label:
            in_command = True
            line = f"@par {label[1]}\n{label[2]}"
        elif re.match(r"- |\d+\. ", line):
            in_command = True
        elif not line:
            in_command = False
        result.append(ENTRY.sub(r'@ref \1 "\1"', line.lstrip()))
    if verbatim:
        result.append("@endverbatim")
    return result


def translated(text):
    top = True

    def replace(match):
        nonlocal top
        body, doxygen = match["body"], match["mark"] == "/**"
        if not doxygen and not (top and "SPDX" not in body):
            return match[0]
        if "\n" not in body and doxygen:
            return match[0]
        lines = [re.sub(r"^\s*\* ?", "", line).rstrip() for line in body.split("\n")]
        lines[0] = lines[0].strip()
        if not doxygen:
            top = False
            lines = ["@file"] + lines
        return "/**\n" + "\n".join(comment(lines)) + "\n*/"

    text = re.sub(r"(?P<mark>/\*\*(?!<)|/\*(?!\*))(?P<body>.*?)\*/", replace, text, flags=re.S)
    entry = r"/\*\*(?P<comment>(?:(?!\*/).)*)\*/(?P<declaration>\nZORTAV_ENTRY[^;]*HIDDEN_LENGTH[^;]*;)"
    return re.sub(entry, hidden_lengths, text, flags=re.S)


def hidden_lengths(match):
    """An entry whose hidden lengths are documented, behind the other arguments."""
    text, names = match["comment"], re.findall(r"HIDDEN_LENGTH\((\w+)\)", match["declaration"])
    names = [name for name in names if not re.search(rf"@param\S* {name}\b", text)]
    at = min((text.find(mark) for mark in ("@par ", "@return") if mark in text), default=len(text))
    line = f"@param[in] {','.join(names)} hidden length; not read.\n\n" if names else ""
    return f"/**{text[:at]}{line}{text[at:]}*/{match['declaration']}"


def known_names():
    """The entry points and the classes of the public headers."""
    texts = [path.read_text(encoding="utf-8") for path in INCLUDE.glob("*.h")]
    entries = [name for text in texts for name in re.findall(r"^ZORTAV_ENTRY\b[^;(]*?(\w+)\(", text, re.M)]
    return entries, [name for text in texts for name in re.findall(r"^class ZOR_EXPORT (\w+)", text, re.M)]


def page(text):
    """A page, with links where code names something that the reference has."""
    blocks = re.split(r"(^```.*?^```)", text, flags=re.M | re.S)
    blocks[::2] = (re.sub(r"^(?!#).+", lambda line: NAME.sub(r"[\1](@ref \1)", line[0]), block, flags=re.M)
                   for block in blocks[::2])
    return "".join(blocks)


ENTRIES, CLASSES = known_names()
ENTRY = re.compile(rf"(?<![\w.@\"])({'|'.join(ENTRIES)})(?![\w.])")
NAME = re.compile(rf"`({'|'.join(ENTRIES + CLASSES)})`")

if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as source:
        sys.stdout.write((page if sys.argv[1].endswith(".md") else translated)(source.read()))
