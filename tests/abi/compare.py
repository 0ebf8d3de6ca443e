#!/usr/bin/env python3
"""Compares what hosts have compiled in of a built library with the checked-in list: the names that it gives away, their
ordinals and versions, and what the compiler makes of the types of its headers.

    compare.py [--write] [--ordinals] --list FILE --library FILE --nm NM --objdump OBJDUMP LAYOUTS...

LAYOUTS is the command that prints the layouts. Ordinals are compared where a definition file fixes them.
"""
import argparse
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
# Whatever a list says, these never leave a library: its parser, its HTTP client and its runtime are its own.
FOREIGN = re.compile(r"^_?(XML_|curl_|_ZNK?St|_ZNK?9__gnu_cxx|_ZT[VIS]N?St|_Zn|_Zd)")


def output(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def of_elf(symbols, headers):
    """The file that a loader looks for, each name with its version, and what comes from the trace library."""
    yield "file " + re.search(r"^  SONAME +(\S+)$", headers, re.MULTILINE).group(1)
    for line in symbols.splitlines():
        kind, name = line.split()[-2:]
        if kind != "U" and kind != "w" and kind != "A":
            yield "export " + name.replace("@@", " ")
        elif name.startswith("PvTrace"):
            yield f"import {name}"


def exported_by_dll(headers):
    """(name, ordinal) of what a DLL gives away; a name may be missing. An ordinal counts from the base."""
    base = int(re.search(r"^Ordinal Base\s+(\d+)$", headers, re.MULTILINE).group(1))
    addresses, _, rest = headers.partition("[Ordinal/Name Pointer] Table")
    ordinals = [int(ordinal) for ordinal in re.findall(r"\+base\[ *(\d+)\] +[0-9a-f]+ Export RVA", addresses)]
    names = re.findall(r"^\t\[ *(\d+)\] (?:\+base\[ *(\d+)\] +[0-9a-f]+ )?(\S+)$", rest.split("\n\n")[0], re.MULTILINE)
    by_ordinal = {int(whole) if whole else int(at) + base: name for at, whole, name in names}
    return [(by_ordinal.get(ordinal, ""), ordinal) for ordinal in ordinals]


def of_dll(headers, with_ordinals):
    yield "file " + re.search(r"^Name\s+[0-9a-f]+ (\S+)$", headers, re.MULTILINE).group(1)
    for name, ordinal in exported_by_dll(headers):
        named = f"{name} @{ordinal}" if name else f"@{ordinal} without a name"
        yield f"export {named if with_ordinals else name}"
    traced = re.search(r"DLL Name: pvtrace\.dll\n.*?\n\n", headers, re.DOTALL)
    for line in traced.group(0).split("\n")[2:] if traced else []:
        row = line.split()
        if row:  # "address ordinal name"
            yield "import pvtrace.dll:" + (f"@{int(row[1])}" if row[2:] == ["<none>"] else row[2])


def lines_of(arguments):
    headers = output(arguments.objdump, "-p", arguments.library)
    if arguments.library.endswith(".dll"):
        found = list(of_dll(headers, arguments.ordinals))
    else:
        found = list(of_elf(output(arguments.nm, "-D", arguments.library), headers))
    return sorted(found + output(*arguments.layouts).splitlines())


def foreign(lines):
    return [line for line in lines if line.startswith("export ") and FOREIGN.match(line.split()[1])]


def key(line):
    """What a line is about; the rest is what may have changed."""
    return " ".join(line.split()[:2])


def differences(wanted, found):
    """Two texts: of what breaks hosts that are built, and of what is new."""
    gone, new = sorted(set(wanted) - set(found)), sorted(set(found) - set(wanted))
    now = {key(line): line for line in new}
    known = {key(line) for line in gone}
    broken = "".join(f"- {line}\n" + (f"+ {now[key(line)]}\n" if key(line) in now else "") for line in gone)
    return broken, "".join(f"+ {line}\n" for line in new if key(line) not in known)


def report(path, wanted, found):
    broken, new = differences(wanted, found)
    text = ""
    if broken:
        text += f"Gone or changed, so that hosts which are built do not run any more:\n{broken}"
    if new:
        text += f"New:\n{new}"
    name = path.relative_to(ROOT) if path.is_relative_to(ROOT) else path
    return text and (f"The library is not what {name} says.\n{text}"
                     "docs/versions.md says what may change when. Where it may, build the target abi_lists, which "
                     "writes the list anew.")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for option in ("--write", "--ordinals"):
        parser.add_argument(option, action="store_true")
    parser.add_argument("--list", type=Path)
    for option in ("--library", "--nm", "--objdump"):
        parser.add_argument(option)
    parser.add_argument("layouts", nargs="+")
    arguments = parser.parse_args()
    found = lines_of(arguments)
    if foreign(found):
        sys.exit("These names are not the library's own:\n" + "\n".join(foreign(found)))
    if arguments.write:
        arguments.list.parent.mkdir(parents=True, exist_ok=True)
        arguments.list.write_text("".join(f"{line}\n" for line in found), encoding="utf-8")
        return
    wanted = arguments.list.read_text(encoding="utf-8").splitlines() if arguments.list.exists() else []
    sys.exit(report(arguments.list, wanted, found) or 0)


if __name__ == "__main__":
    main()
