#!/usr/bin/env python3
"""Judges what calls cost as their input grows, in instructions: ten times the input, at most twelve times the work.

growth.py PROGRAM FOLDER    runs PROGRAM under callgrind, whose files go to FOLDER
"""
import pathlib
import re
import shutil
import subprocess
import sys

MOST = 12.0
LEAST = 2.0  # less, and the input was not what the call worked on
SQUARES = "squares"  # grows faster on purpose


def counted(folder):
    """The instructions of each case, by its name and the size of its input."""
    work = {}
    for file in folder.glob("callgrind.*"):
        text = file.read_text(errors="replace")
        name = re.search(r"^desc: Trigger: Client Request: (.+) (\d+)$", text, re.M)
        total = re.search(r"^(?:summary|totals): (\d+)", text, re.M)
        if name and total:
            work.setdefault(name[1], {})[int(name[2])] = int(total[1])
    return work


def is_good(name, factor):
    if name == SQUARES:
        return factor > MOST
    return LEAST <= factor <= MOST


def judge(work):
    bad = 0
    for name, sizes in sorted(work.items()):
        if len(sizes) != 2:
            print(f"{name}: {len(sizes)} of 2 sizes were counted")
            bad += 1
            continue
        (small, less), (large, more) = sorted(sizes.items())
        good = is_good(name, more / less)
        bad += not good
        print(f"{name:32} {small:7} {less:12,} {large:8} {more:13,} {more / less:6.2f} {'' if good else 'BAD'}")
    return bad


def main():
    program, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    command = ["valgrind", "--tool=callgrind", "--collect-atstart=no", "--quiet", "--fair-sched=yes",
               f"--callgrind-out-file={folder}/callgrind.%p", program]
    subprocess.run(command, check=True)
    work = counted(folder)
    bad = judge(work)
    print(f"{len(work)} cases, {bad} bad")
    return 1 if bad or SQUARES not in work else 0


if __name__ == "__main__":
    sys.exit(main())
