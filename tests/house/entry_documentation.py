#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Every plain entry point is documented in the house's order: entry_documentation.py INCLUDE_FOLDER CLASSES_PAGE.

A comment names its topics by the labels below, in this order, after the formula and the arguments. What several entries
share stands once, in the comment at the top of their header, or with the entry that the comment refers to ("as for
NAME"). Numerical entries have every topic, the others "Threads". The class of reproducibility is the page's.
"""
import re
import sys
from pathlib import Path

TOPICS = ["Elements", "Aliasing", "Zeros and NaN", "Bad arguments", "Threads", "Reproducibility", "Source"]
CLASSES = ["exact", "fixed order", "eight lanes", "fused"]
NUMERICAL = re.compile(r"(e_|ea|eb|d|prdgemm)")
SHARED = {"ZORTAVVectorKernels.h": ["ZORTAVDenseVectorKernels.h", "ZORTAVSparseVectorKernels.h"]}
LABEL = re.compile(rf"^ \*[- ]*({'|'.join(TOPICS)})(?::| {{2,}})", re.M)
ENTRY = re.compile(r"/\*\*((?:(?!\*/).)*)\*/\s*ZORTAV_ENTRY\b[^;(]*?(\w+)\(([^;]*)\);", re.S)


def paragraphs(comment):
    """The topics of a comment, in order, with their texts."""
    found = list(LABEL.finditer(comment))
    ends = [after.start() for after in found[1:]] + [len(comment)]
    return [(label[1], re.sub(r"\s*\n \*\s*", " ", comment[label.end():end])) for label, end in zip(found, ends)]


def classes_of_page(page):
    """The class that the page gives each entry, the first of those in a row."""
    result = {}
    for names, text in re.findall(r"^\| (`.*?) \| (.*?) \|$", page, re.M):
        for name in re.findall(r"`(\w+)`", names):
            result[name] = min((text.find(c), c) for c in CLASSES if c in text)[1] if "that of" not in text else None
    return result


def main(include, page):
    headers = {path.name: path.read_text(encoding="utf-8") for path in sorted(include.glob("*.h"))}
    tops = {name: dict(paragraphs(re.findall(r"/\*(.*?)\*/", text, re.S)[1])) for name, text in headers.items()}
    for whole, parts in SHARED.items():
        for part in parts:
            tops[part] = {**tops[whole], **tops[part]}
    entries = {name: (header, comment, arguments) for header, text in headers.items()
               for comment, name, arguments in ENTRY.findall(text)}
    declared = sum(len(re.findall(r"^ZORTAV_ENTRY\b", text, re.M)) for text in headers.values())
    faults = [] if entries and declared == len(entries) else [f"{declared} declarations, {len(entries)} with a comment"]
    page_classes = classes_of_page(page)

    for name, (header, comment, arguments) in entries.items():
        own = paragraphs(comment)
        topics = {**tops[header], **dict(own)}
        for other in re.findall(r"as for (\w+)", comment):
            if other in entries:
                topics = {**dict(paragraphs(entries[other][1])), **topics, **dict(own)}
        order = [TOPICS.index(label) for label, _ in own]
        if order != sorted(set(order)):
            faults.append(f"{name}: the order is {[label for label, _ in own]}")
        missing = [topic for topic in (TOPICS if NUMERICAL.match(name) else ["Threads"]) if topic not in topics]
        if missing:
            faults.append(f"{name}: nothing about {missing}")
        last = max((comment.rfind("@param"), comment.rfind("@return")))
        if own and last > comment.find(own[0][0] + ":") >= 0:
            faults.append(f"{name}: arguments behind the topic {own[0][0]}")
        documented = " ".join(re.findall(r"@param([^\[]*?)(?:\[| as |\.)", comment))
        for argument in re.findall(r"(\w+)\)?(?:,|$)", arguments):
            if argument not in ("void",) and not re.search(rf"\b{argument}\b", documented):
                if not argument.endswith("_length"):
                    faults.append(f"{name}: nothing about the argument {argument}")
        promised = page_classes.get(name)
        told = [text.lower() for text in (topics.get("Reproducibility", ""), tops[header].get("Reproducibility", ""))]
        named = next((text for text in told if any(c in text for c in CLASSES)), "")
        if promised and promised not in named:
            faults.append(f"{name}: the class \"{promised}\" is not named")
    print("\n".join(faults), file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]), Path(sys.argv[2]).read_text(encoding="utf-8")))
