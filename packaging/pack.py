#!/usr/bin/env python3
"""Packs a folder so that the same files give the same bytes.

    pack.py FOLDER ZIP

Writes SHA256SUMS of all files into the folder, the zip, and the zip's own checksum beside it. Every date is
SOURCE_DATE_EPOCH.
"""
import hashlib
import os
import sys
import time
import zipfile
from pathlib import Path


def sha256(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def entry(folder, path):
    """A file of the zip, whose date and rights are not those that it has here."""
    moment = time.gmtime(int(os.environ["SOURCE_DATE_EPOCH"]))
    info = zipfile.ZipInfo(str(Path(folder.name) / path.relative_to(folder)), moment[:6])
    info.create_system = 3
    info.external_attr = (0o100755 if path.suffix in {".exe", ".dll"} else 0o100644) << 16
    info.compress_type = zipfile.ZIP_DEFLATED
    return info


def main(folder, archive):
    sums = folder / "SHA256SUMS"
    sums.unlink(missing_ok=True)
    files = sorted(path for path in folder.rglob("*") if path.is_file())
    sums.write_text("".join(f"{sha256(path)}  {path.relative_to(folder)}\n" for path in files), encoding="utf-8")
    with zipfile.ZipFile(archive, "w") as packed:
        for path in sorted([*files, sums]):
            packed.writestr(entry(folder, path), path.read_bytes(), compresslevel=9)
    Path(f"{archive}.sha256").write_text(f"{sha256(archive)}  {archive.name}\n", encoding="utf-8")


if __name__ == "__main__":
    main(Path(sys.argv[1]), Path(sys.argv[2]))
