#!/usr/bin/env python3
"""Looks at each DLL and program of an unpacked package for Windows: its version, and what a debugger finds of it.

    windows_files.py PACKAGE VERSION OBJCOPY
"""
import re
import subprocess
import sys
import tempfile
import zlib
from pathlib import Path


def said_by(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True).stdout


def text(words):
    return words.encode("utf-16-le")


def faults_of_version(file, version):
    """A string of a resource is its name, a zero, one more where the value would not stand on a fourth byte, the value."""
    found = re.search(re.escape(text("FileVersion\0")) + rb"(?:\0\0)?((?:[0-9.]\0)+)", file.read_bytes())
    if not found or found.group(1) != text(version):
        yield f"its version is not {version}"


def faults_of_pdb(file, pdb):
    said = re.search(r"PDBGUID: \(([0-9A-F ]+)\)", said_by("llvm-readobj", "--coff-debug-directory", file))
    summary = said_by("llvm-pdbutil", "dump", "--summary", pdb)
    *first, fourth, fifth = re.search(r"GUID: {(\w+)-(\w+)-(\w+)-(\w+)-(\w+)}", summary).groups()
    # The first three numbers of an identifier stand in a file with their last byte first.
    expected = b"".join(bytes.fromhex(part)[::-1] for part in first) + bytes.fromhex(fourth + fifth)
    if not said or bytes.fromhex(said.group(1)) != expected:
        yield f"{pdb.name} is another file's"
    start = "mainCRTStartup" if file.suffix == ".exe" else "DllMainCRTStartup"
    if not re.search(rf"`_?{start}(@12)?`", said_by("llvm-pdbutil", "dump", "--publics", pdb)):
        yield f"{pdb.name} does not know {start}"


def faults_of_symbols(file, symbols, objcopy):
    with tempfile.TemporaryDirectory() as folder:
        link = Path(folder, "link")
        said_by(objcopy, "--dump-section", f".gnu_debuglink={link}", file, Path(folder, "copy"))
        data = link.read_bytes()
    name = data.split(b"\0", 1)[0].decode()
    checksum = int.from_bytes(data[len(name) // 4 * 4 + 4 :][:4], "little")
    if name != symbols.name or checksum != zlib.crc32(symbols.read_bytes()):
        yield f"{symbols.name} is not what it was split into"
    lines = said_by("llvm-dwarfdump", "--debug-line", symbols)
    if not re.search(r'"pvWapi', lines):
        yield f"{symbols.name} has no lines of the sources"


def main(package, version, objcopy):
    faults = []
    files = sorted(path for path in (package / "bin").iterdir() if path.suffix in {".dll", ".exe"})
    for file in files:
        debug = package / "debug"
        for fault in (*faults_of_version(file, version), *faults_of_pdb(file, debug / f"{file.stem}.pdb"),
                      *faults_of_symbols(file, debug / f"{file.name}.debug", objcopy)):
            faults.append(f"{file.name}: {fault}")
    if len(files) < 6:
        faults.append(f"only {len(files)} files")
    sys.exit("\n".join(faults) or 0)


if __name__ == "__main__":
    main(Path(sys.argv[1]), *sys.argv[2:])
