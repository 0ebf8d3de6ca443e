#!/usr/bin/env python3
"""Holds all that names the version to the one of pvutil/Platform.h: the changes, the documents, and what was built.

    version.py [--text FILE]... [PROGRAM... -- PROGRAM... -- ...]

A text has to name the version and no other, and so has each file of a folder of man pages; a program is a command, and
names it where it gets --version.
"""
import argparse
import re
import subprocess
import sys
from datetime import date
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
VERSION = re.compile(r"(?<![\d.])\d+\.\d+\.\d+(?![\d.]*\d)")


def version_of(root):
    header = (root / "pvutil/Platform.h").read_text(encoding="utf-8")
    return re.search(r'^#define PVWAPI_VERSION "([\d.]+)"$', header, re.MULTILINE).group(1)


def faults_of_changes(text, version):
    """The newest version stands on top, but for what is not released, and each has its day."""
    headings = [line for line in re.findall(r"^## (.*)$", text, re.MULTILINE) if line != "Unreleased"]
    found = [re.fullmatch(r"(\d+\.\d+\.\d+) - (\d{4}-\d\d-\d\d)", heading) for heading in headings]
    for heading in (heading for heading, match in zip(headings, found) if not match):
        yield f"CHANGELOG.md: \"{heading}\" is no version with its day"
        return
    numbers = [tuple(map(int, match.group(1).split("."))) for match in found]
    days = [date.fromisoformat(match.group(2)) for match in found]
    if numbers != sorted(set(numbers), reverse=True) or days != sorted(days, reverse=True):
        yield "CHANGELOG.md: the versions are not in their order"
    if not found or found[0].group(1) != version:
        yield f"CHANGELOG.md: the newest version is not {version}"


def faults_of_text(name, text, version):
    named = set(VERSION.findall(text))
    if named != {version}:
        yield f"{name}: names {', '.join(sorted(named)) or 'no version'}, and not {version}"


def faults_of_documents(root, version):
    """What a document shows of an answer."""
    for path in sorted([*root.glob("docs/*.md"), *root.glob("*/README.md")]):
        for named in re.findall(r'"version": ?"([^"]*)"', path.read_text(encoding="utf-8")):
            if named != version:
                yield f"{path.relative_to(root)}: names {named}, and not {version}"


def commands(words):
    """The programs, which are parted by "--"."""
    found = [[]]
    for word in words:
        if word == "--":
            found.append([])
        else:
            found[-1].append(word)
    return [command for command in found if command]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--text", action="append", default=[], type=Path)
    parser.add_argument("programs", nargs=argparse.REMAINDER)
    arguments = parser.parse_args()
    version = version_of(ROOT)
    found = list(faults_of_changes((ROOT / "CHANGELOG.md").read_text(encoding="utf-8"), version))
    found += faults_of_documents(ROOT, version)
    for path in (file for text in arguments.text for file in (text.rglob("*.1") if text.is_dir() else [text])):
        found += faults_of_text(path.name, path.read_text(encoding="utf-8"), version)
    for command in commands(arguments.programs):
        said = subprocess.run([*command, "--version"], check=True, stdout=subprocess.PIPE, text=True).stdout
        found += faults_of_text(Path(command[-1]).name, said, version)
    print("\n".join(found), end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
