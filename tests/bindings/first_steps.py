#!/usr/bin/env python3
"""Runs the first steps of a host in each language, and compares what each prints with examples/FirstSteps.txt.

    with-service.sh SERVICE first_steps.py WORD... [-- WORD...]...      a command each
"""
import itertools
import os
import subprocess
import sys
from pathlib import Path

EXPECTED = Path(__file__).resolve().parents[2] / "examples/FirstSteps.txt"


def commands(words):
    for is_end, group in itertools.groupby(words, lambda word: word == "--"):
        if not is_end:
            yield list(group)


def main(words):
    environment = dict(os.environ, PVWAPI_BASE_URL=os.environ["TEST_SERVICE_URL"], PVWAPI_USER="dmitri",
                       PVWAPI_PASSWORD="dmitri-demo-1")
    expected = EXPECTED.read_bytes()
    wrong = 0
    for command in commands(words):
        ended = subprocess.run(command, env=environment, stdout=subprocess.PIPE, timeout=60, check=False)
        shown = ended.stdout.replace(b"\r", b"")
        is_good = ended.returncode == 0 and shown == expected
        print(f"{' '.join(command)}: {'good' if is_good else f'ends with {ended.returncode} and prints {shown!r}'}")
        wrong += not is_good
    return 1 if wrong or not words else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
