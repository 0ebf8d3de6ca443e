#!/usr/bin/env python3
"""Links a host as each row of the table in docs/embedding.md says, and looks which of the compiler's DLLs it needs
then; the library itself needs none.

    runtime_files.py --compiler PROGRAM --built FOLDER --work FOLDER
"""
import argparse
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PAGE = "docs/embedding.md"
HEADING = "| the host is linked with |"


def output(*command):
    return subprocess.run([str(word) for word in command], check=True, stdout=subprocess.PIPE, text=True).stdout


def rows(page, bits):
    """(options, DLLs) of each row; words without code are no option and no DLL. Some DLLs are for one width alone."""
    lines = page[page.index(HEADING):].split("\n\n")[0].split("\n")
    for line in lines[2:]:
        options, needed = line.strip("|").split("|")
        needed = re.findall(r"`([\w+-]+\.dll)`(?: \((\d+) bits\))?", needed)
        yield re.findall(r"-static[\w+-]*", options), {name for name, width in needed if width in ("", bits)}


def needed_by(compiler, program):
    """The compiler's DLLs that the program loads, and those that these load; not the system's, nor the library's."""
    objdump = compiler.replace("g++-posix", "objdump")
    found, waiting = set(), [program]
    while waiting:
        for name in re.findall(r"DLL Name: (\S+)", output(objdump, "-p", waiting.pop())):
            path = Path(output(compiler, f"-print-file-name={name}").strip())
            if path.is_absolute() and name not in found:
                found.add(name)
                waiting.append(path)
    return found


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    arguments.add_argument("--compiler", required=True)
    arguments.add_argument("--built", type=Path, required=True)
    arguments.add_argument("--work", type=Path, required=True)
    arguments = arguments.parse_args()
    arguments.work.mkdir(parents=True, exist_ok=True)
    program = arguments.work / "host.exe"
    libraries = [arguments.built / f"lib/lib{name}.dll.a" for name in ("pvWapi", "pvtrace")]
    wrong = 0
    for name in ("pvWapi", "pvtrace"):
        found = needed_by(arguments.compiler, arguments.built / f"bin/{name}.dll")
        wrong += len(found)
        print(f"{name}.dll: needs {sorted(found)}")
    bits = "64" if Path(arguments.compiler).name.startswith("x86_64") else "32"
    table = list(rows((ROOT / PAGE).read_text(encoding="utf-8"), bits))
    wrong += not table
    for options, told in table:
        source = ROOT / "tests/package/host/main.cpp"
        output(arguments.compiler, "-std=c++20", f"-I{ROOT}", "-DPACKAGE_VERSION=PVWAPI_VERSION", source,
               "-o", program, *options, *libraries)
        found = needed_by(arguments.compiler, program)
        wrong += found != told
        print(f"{' '.join(options) or 'neither'}: needs {sorted(found)}, {PAGE} names {sorted(told)}")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
