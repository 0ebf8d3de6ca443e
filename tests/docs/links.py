#!/usr/bin/env python3
"""Follows every link of the documents to a file of the repository, and to a heading in it.

    links.py
"""
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
DOCUMENTS = ["*.md", "*/README.md", "tests/wire/README.md", "docs/**/*.md"]
LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")


def anchors_of(text):
    """The names by which the headings of a document are reached."""
    titles = re.findall(r"^#+ (.*)$", text, re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", title.lower()).replace(" ", "-") for title in titles}


def faults(root):
    for document in sorted({path for pattern in DOCUMENTS for path in root.glob(pattern)}):
        for link in LINK.findall(document.read_text(encoding="utf-8")):
            if "://" in link:
                continue
            name, _, anchor = link.partition("#")
            target = (document.parent / name).resolve() if name else document
            if not target.exists():
                yield f"{document.relative_to(root)}: {link} leads nowhere"
            elif anchor and anchor not in anchors_of(target.read_text(encoding="utf-8")):
                yield f"{document.relative_to(root)}: {link} leads to no heading"


def main():
    found = list(faults(ROOT))
    print("\n".join(found), end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
