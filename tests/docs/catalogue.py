#!/usr/bin/env python3
"""Holds docs/a-call-fails.md complete: every kind of network error, every reason of the library's own and every
exception identifier of the stand-in service stands in its table, and nothing that does not exist.

    catalogue.py
"""
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PAGE = "docs/a-call-fails.md"
LIBRARY = ["pvutil", "client", "spaces", "access", "account"]

GIVEN = re.compile(r"\b(?:refuse|keepFailure|told|XmlLimitPassed)\(|\bappendAscii\(lastMessage\.reason,")
LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')


def kinds_of(header):
    """{name: number} of the enumeration of network errors."""
    body = re.search(r"enum NETWORK_ERROR : int \{(.*?)\};", header, re.DOTALL).group(1)
    return {name: int(number) for name, number in re.findall(r"(NETWORK_\w+) = (\d+)", body)}


def exceptions_of(header):
    return set(re.findall(r'"(KZN:\w+)"', header))


def arguments_of(text, start):
    """From behind an opening bracket to the one that closes it."""
    depth, end = 1, start
    while depth > 0 and end < len(text):
        depth += {"(": 1, ")": -1}.get(text[end], 0)
        end += 1
    return text[start:end - 1]


def reasons_of(source):
    """What a source gives as a reason: to refuse or keepFailure, to who is told it, as a limit passed, by itself or
    by a constant's name, as the short one, and within XML; and the pinned texts of the network's errors."""
    constants = dict(re.findall(r'\b(k\w+)\s*=\s*"((?:[^"\\]|\\.)*)"', source))
    found = set()
    for call in GIVEN.finditer(source):
        arguments = arguments_of(source, call.end())
        found.update(LITERAL.findall(arguments))
        found.update(constants[name] for name in re.findall(r"\bk\w+", arguments) if name in constants)
    found.update(re.findall(r"<reason>([^<]+)</reason>", source))
    found.update(text for text in LITERAL.findall(source) if text.startswith("Network error"))
    return {text.strip() for text in found}


def section(page, title):
    found = re.search(rf"^## {re.escape(title)}\n(.*?)(?=^## |\Z)", page, re.MULTILINE | re.DOTALL)
    return found.group(1) if found else ""


def rows(text):
    """The cells of each row of a section's one table, without its heading."""
    lines = [line for line in text.split("\n") if line.startswith("|")]
    return [[cell.strip() for cell in line.strip("|").split("|")] for line in lines[2:]]


def code(cell):
    found = re.match(r"`([^`]+)`$", cell)
    return found.group(1).strip() if found else None


def compare(what, there, told):
    for name in sorted(there - told):
        yield f"{PAGE}: {what} {name!r} is missing"
    for name in sorted(told - there):
        yield f"{PAGE}: {what} {name!r} does not exist"


def faults(page, kinds, reasons, exceptions, header):
    told = {code(row[1]): int(row[0]) for row in rows(section(page, "No reply"))}
    yield from compare("the kind", set(kinds.items()), set(told.items()))
    yield from compare("the kind", set(kinds), set(re.findall(r"NETWORK_\w+", page)))
    told = {code(row[0]) for row in rows(section(page, "The library's own reasons"))}
    yield from compare("the reason", reasons, told)
    told = {code(row[0]) for row in rows(section(page, "The service said no"))}
    yield from compare("the exception identifier", exceptions, told)
    yield from compare("the exception identifier", exceptions, set(re.findall(r"KZN:\w+", page)))
    for name in re.findall(r"`(\w+)\(\)`", page):
        if not re.search(rf"\b{name}\(", header):
            yield f"{PAGE}: the class has no {name}()"


def main():
    header = (ROOT / "client/WapiClient.h").read_text(encoding="utf-8")
    reasons = set()
    for path in (path for folder in LIBRARY for path in sorted((ROOT / folder).glob("*"))):
        if path.suffix in (".cpp", ".h"):
            reasons |= reasons_of(path.read_text(encoding="utf-8"))
    exceptions = exceptions_of((ROOT / "service/base/Refusal.h").read_text(encoding="utf-8"))
    page = (ROOT / PAGE).read_text(encoding="utf-8")
    found = list(faults(page, kinds_of(header), reasons, exceptions, header))
    print("\n".join(found), end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
