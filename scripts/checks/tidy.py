#!/usr/bin/env python3
"""Runs clang-tidy over the sources of a compile database, each file only when something that it reads has changed.

    tidy.py --database build/linux --cache FOLDER [--jobs 2]

A clean file is remembered by a hash of itself, of every header of this repository that it includes, of the command that
compiles it, of .clang-tidy and of clang-tidy's version. So clones may share the folder.
"""
import argparse
import concurrent.futures
import functools
import hashlib
import json
import re
import shlex
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
NOT_SHIPPED = {"build", "tests", "bench", "fuzz"}
FORGOTTEN_AFTER = 30 * 24 * 3600  # seconds
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)
SEVERAL = re.compile(r"/Unity/unity_\d+_cxx\.cxx$")  # sources that are compiled at a time


@functools.cache
def read(path):
    return path.read_bytes()


def inputs(source):
    """The file and all of this repository's headers that it reaches; includes are rooted at the repository."""
    found, waiting = set(), [source]
    while waiting:
        path = waiting.pop()
        if path in found or not path.is_file():
            continue
        found.add(path)
        names = INCLUDE.findall(read(path).decode("utf-8", "replace"))
        waiting += [ROOT / name for name in names]
    return sorted(found)


def fingerprint(entry, settings):
    digest = hashlib.sha256(settings)
    digest.update(entry["command"].replace(str(ROOT), ".").encode())
    for path in inputs(Path(entry["file"])):
        digest.update(str(path.relative_to(ROOT)).encode() + b"\0")
        digest.update(hashlib.sha256(read(path)).digest())
    return digest.hexdigest()


def each_alone(entries):
    """Sources that are compiled several at a time are looked at one by one, so that a missing include is found."""
    for entry in entries:
        if SEVERAL.search(entry["file"]) and Path(entry["file"]).is_file():
            sources = INCLUDE.findall(Path(entry["file"]).read_text())
            yield from ({**entry, "file": source, "command": entry["command"].replace(entry["file"], source)}
                        for source in sources)
        else:
            yield entry


def own_entries(database):
    """What ships, each source once. Tests, benchmarks and fuzzers are held by the compilers, the format and the house
    rules; linting them as well would take most of the time and find what breaks nobody's host."""
    entries = {}
    for entry in each_alone(json.loads((database / "compile_commands.json").read_text())):
        path = Path(entry["file"])
        if path.is_relative_to(ROOT) and path.relative_to(ROOT).parts[0] not in NOT_SHIPPED:
            entries.setdefault(path, entry)
    return [entries[path] for path in sorted(entries)]


def clang_words(command):
    """The compiler's command as clang takes it: without flags that clang does not know, without warnings, which are the
    compiler's business, and without headers that the compiler has read before, so that a missing include is found."""
    words = [word for word in shlex.split(command)[1:]
             if not word.startswith(("-W", "-fno-gnu-unique", "-fpch-preprocess"))]
    while any(word.endswith("/cmake_pch.hxx") for word in words):
        at = next(at for at, word in enumerate(words) if word.endswith("/cmake_pch.hxx"))
        del words[at - 1:at + 1]
    return words


def lint(entry):
    """What clang-tidy says of the file; nothing when it is clean."""
    words = clang_words(entry["command"])
    command = ["clang-tidy", "--quiet", entry["file"], "--", *words, "-Wno-everything"]
    run = subprocess.run(command, cwd=entry["directory"], capture_output=True, text=True, check=False)
    if run.returncode == 0:
        return ""
    return run.stdout if run.stdout.strip() else run.stderr or f"clang-tidy ended with {run.returncode}"


def forget_old(cache):
    for mark in cache.iterdir():
        if time.time() - mark.stat().st_mtime > FORGOTTEN_AFTER:
            mark.unlink(missing_ok=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--database", type=Path, required=True)
    parser.add_argument("--cache", type=Path, required=True)
    parser.add_argument("--jobs", type=int, default=2)
    arguments = parser.parse_args()

    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, check=True).stdout
    settings = version + read(ROOT / ".clang-tidy") + read(Path(__file__))
    arguments.cache.mkdir(parents=True, exist_ok=True)

    entries = own_entries(arguments.database)
    if not entries:
        sys.exit("tidy.py: the compile database names no source of this repository")
    marks = {entry["file"]: arguments.cache / fingerprint(entry, settings) for entry in entries}
    waiting = []
    for entry in entries:
        if marks[entry["file"]].exists():
            marks[entry["file"]].touch()
        else:
            waiting.append(entry)

    faulty = 0
    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        for entry, words in zip(waiting, pool.map(lint, waiting)):
            if words:
                faulty += 1
                print(words, end="" if words.endswith("\n") else "\n", flush=True)
            else:
                marks[entry["file"]].touch()
    forget_old(arguments.cache)
    print(f"clang-tidy: {len(entries)} files, {len(waiting)} of them new or changed, {faulty} with faults")
    return 1 if faulty else 0


if __name__ == "__main__":
    sys.exit(main())
