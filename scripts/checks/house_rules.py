#!/usr/bin/env python3
"""The rules of this house that no compiler knows. Prints file:line: what is wrong, and fails if anything is.

    house_rules.py [--root FOLDER]
"""
import argparse
import re
import sys
from pathlib import Path

SOURCE_FOLDERS = ["pvutil", "pvtrace", "records", "client", "spaces", "access", "account", "capi", "bindings", "host",
                  "log", "service", "tests", "bench", "fuzz", "examples"]
SCRIPT_FOLDERS = ["cmake", "scripts", ".ci"]
SCRIPT_SUFFIXES = {"", ".sh", ".py", ".cmake", ".txt"}

LONGEST_LINE = 120
LONGEST_SOURCE = 400
LONGEST_HEADER = 200
# One interface, one header: it reads as the manual.
LONG_HEADERS = {"client/WapiClient.h", "capi/pvwapi_c.h", "capi/pvwapi.hpp"}

# Where the two systems are told apart.
CONDITIONAL_PLACES = ("pvutil/win32/", "pvutil/posix/", "pvtrace/", "pvutil/Platform.h", "capi/pvwapi_c.h")

BANNED = [
    (r"\bnew\b", "new: let a container or std::make_unique own it"),
    (r"(?<!=)(?<!= )\bdelete\b", "delete: let an owner free it"),
    (r"\b(?:malloc|calloc|realloc|free)\s*\(", "the C heap: let a container own it"),
    (r"\bv?sprintf\b", "sprintf knows no end of its buffer: use std::to_chars, or append to a string"),
    (r"\bunordered_\w+<", "a hash table: whoever chooses its keys can make them collide; sort, or use std::map"),
]

# Folder: (what its quoted includes may begin with, what else than the standard library it may include in brackets).
# None stands for anything; the first entry that a file's path begins with counts.
PUBLIC = "the public headers"
BELOW_CLIENT = ["pvutil/", "pvtrace/", "records/", "client/"]
INCLUDES = [
    ("pvutil/win32/", ["pvutil/"], None),
    ("pvutil/posix/", ["pvutil/"], None),
    ("pvutil/", ["pvutil/"], ["expat.h"]),
    ("pvtrace/", ["pvtrace/"], ["windows.h"]),
    ("records/", ["records/", "pvutil/StringEx.h", "pvutil/Platform.h"], []),
    ("client/", BELOW_CLIENT, []),
    ("spaces/", BELOW_CLIENT + ["spaces/", "access/"], []),
    ("access/", BELOW_CLIENT + ["access/", "spaces/"], []),
    ("account/", BELOW_CLIENT + ["account/"], []),
    ("capi/", ["capi/", PUBLIC], ["stddef.h", "stdint.h", "pvwapi_c.h"]),
    ("host/win32/", ["host/", PUBLIC], None),
    ("host/posix/", ["host/", PUBLIC], None),
    ("host/", ["host/", PUBLIC], ["CLI/", "nlohmann/", "utf8proc.h"]),
    ("log/win32/", ["log/"], None),
    ("log/posix/", ["log/"], None),
    ("log/", ["log/"], ["CLI/", "nlohmann/"]),
    ("service/control/", ["service/", "log/"], None),
    ("service/journal/", ["service/", "log/"], None),
    ("service/tape/", ["service/", "log/"], None),
    ("service/http/RequestLog", ["service/", "log/"], None),
    ("service/", ["service/"], None),
    ("examples/", ["examples/", PUBLIC], None),
]

# Each is a header of the standard library, or the C library's under its C++ name.
STANDARD_HEADER = re.compile(r"^[a-z_]+$")


def code_only(text):
    """The text with comments and the insides of literals blanked, every line where it was."""
    token = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'', re.DOTALL)

    def blank(match):
        found = match.group(0)
        if found[0] == "'" and match.start() and text[match.start() - 1].isalnum():
            return found  # a digit separator
        return re.sub(r"[^\n]", " ", found)

    return token.sub(blank, text)


def public_headers(root):
    """The installed headers, as the package names them."""
    package = root / "cmake/Package.cmake"
    if not package.exists():
        return set()
    return set(re.findall(r"\b[a-z]+/\w+\.h\b", package.read_text(encoding="utf-8")))


def check_size(name, lines):
    header = name.endswith((".h", ".hpp"))
    longest = LONGEST_HEADER if header else LONGEST_SOURCE
    if len(lines) > longest and name not in LONG_HEADERS:
        yield longest + 1, f"{len(lines)} lines; {longest} are enough: split it by meaning"


def check_layout(lines):
    for number, line in enumerate(lines, 1):
        if len(line) > LONGEST_LINE:
            yield number, f"{len(line)} columns; {LONGEST_LINE} are enough"
        if line != line.rstrip():
            yield number, "blanks at the end of the line"
        if "\t" in line:
            yield number, "a tab"


def check_words(name, code):
    conditional_place = name.startswith(CONDITIONAL_PLACES)
    for number, line in enumerate(code.split("\n"), 1):
        if not conditional_place and re.match(r"\s*#\s*(?:if|ifdef|ifndef|elif|else)\b|.*\b_WIN32\b", line):
            yield number, "a conditional: what differs between the systems goes behind pvutil's headers"
        if line.lstrip().startswith("#"):
            continue
        for pattern, why in BANNED:
            if re.search(pattern, line):
                yield number, why


def allowed_quoted(target, begins, public):
    return any(target in public if begin == PUBLIC else target.startswith(begin) for begin in begins)


def check_includes(name, text, public):
    begins, brackets = next(((b, a) for folder, b, a in INCLUDES if name.startswith(folder)), (None, None))
    if name in public:
        begins, brackets = [PUBLIC], []
    for number, line in enumerate(text.split("\n"), 1):
        found = re.match(r'\s*#\s*include\s*([<"])([^>"]+)[>"]', line)
        if not found:
            continue
        quoted, target = found.group(1) == '"', found.group(2)
        if quoted and begins is not None and not allowed_quoted(target, begins, public):
            yield number, f'{name.split("/")[0]}/ may not include "{target}"'
        if quoted and "/" not in target:
            yield number, f'"{target}" is not rooted at the repository'
        if not quoted and brackets is not None and not STANDARD_HEADER.match(target) \
                and not target.startswith(tuple(brackets)):
            where = "a public header" if name in public else name.split("/")[0] + "/"
            yield number, f"{where} may not include <{target}>"


def check_source(root, path, public):
    name = path.relative_to(root).as_posix()
    text = path.read_text(encoding="utf-8")
    lines = text.removesuffix("\n").split("\n")
    yield from check_size(name, lines)
    yield from check_layout(lines)
    yield from check_words(name, code_only(text))
    yield from check_includes(name, text, public)
    if name.endswith((".h", ".hpp")) and "#pragma once" not in lines:
        yield 1, "#pragma once is missing"
    if "\r" in text or not text.endswith("\n"):
        yield len(lines), "lines end with one line feed, the last one too"


def files(root, folders, suffixes):
    for folder in folders:
        for path in sorted((root / folder).rglob("*")):
            if path.is_file() and (path.suffix in suffixes):
                yield path


def check(root):
    public = public_headers(root)
    for path in files(root, SOURCE_FOLDERS, {".c", ".cpp", ".h", ".hpp"}):
        for number, why in check_source(root, path, public):
            yield f"{path.relative_to(root).as_posix()}:{number}: {why}"
    for path in [root / "CMakeLists.txt", *files(root, [*SCRIPT_FOLDERS, *SOURCE_FOLDERS], SCRIPT_SUFFIXES)]:
        if path.suffix != ".txt" or path.name == "CMakeLists.txt":
            for number, why in check_layout(path.read_text(encoding="utf-8").split("\n")):
                yield f"{path.relative_to(root).as_posix()}:{number}: {why}"


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("--root", type=Path, default=Path(__file__).resolve().parents[2])
    root = arguments.parse_args().root.resolve()
    faults = list(check(root))
    print("\n".join(faults), end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
