#!/usr/bin/env python3
"""Checks that what docs/guarantees.md names as holding a guarantee exists.

Usage: guarantees_test.py TESTS ROOT

TESTS is the test program, ROOT the folder of the project. A guarantee whose test has another name
by now, or is gone, would be held by nothing.
"""
import fnmatch
import pathlib
import re
import subprocess
import sys

program, root = sys.argv[1], pathlib.Path(sys.argv[2])
document = root / "docs" / "guarantees.md"


def tests():
    """The names of all tests of the program."""
    listed = subprocess.run([program, "--gtest_list_tests"], check=True, capture_output=True, text=True)
    suite = ""
    for line in listed.stdout.splitlines():
        name = line.split()[0]
        if not line.startswith(" "):
            suite = name
        else:
            yield suite + name


def guarantees(text):
    """Number and last column of each row."""
    for line in text.splitlines():
        row = re.fullmatch(r"\| (\d+) \|.*\| ([^|]+) \|", line)
        if row:
            yield int(row[1]), row[2]


known = list(tests())
missing = []
numbers = []
for number, held_by in guarantees(document.read_text(encoding="utf-8")):
    numbers.append(number)
    holders = re.findall(r"`([^`]+)`", held_by)
    if not holders:
        missing.append(f"guarantee {number} names no test")
    for holder in holders:
        if re.match(r"(tests|fuzz|scripts)/", holder):
            there = (root / holder).exists() or (root / (holder + ".cpp")).is_file()
        elif "." in holder:
            there = bool(fnmatch.filter(known, holder))
        else:
            continue  # a test of ctest's own
        if not there:
            missing.append(f"guarantee {number} is said to be held by {holder}, which does not exist")
if not numbers or numbers != list(range(1, len(numbers) + 1)):
    missing.append(f"the guarantees are not numbered one by one: {numbers}")
print("\n".join(missing) or f"The tests that hold the {len(numbers)} guarantees exist.")
sys.exit(bool(missing))
