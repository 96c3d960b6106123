#!/usr/bin/env python3
"""Holds that docs/embedding.md quotes the examples as they are, and all of them.

Usage: quotes_test.py SOURCE
"""
import pathlib
import re
import sys

source = pathlib.Path(sys.argv[1])
text = (source / "docs/embedding.md").read_text()
quotes = dict(re.findall(r"\[examples/embedding/([\w.]+)\]\([^)]*\):\n\n```\w*\n(.*?)```\n", text, re.S))
files = {path.name: path.read_text() for path in (source / "examples/embedding").iterdir()}
wrong = [name for name in sorted(files.keys() | quotes.keys()) if files.get(name) != quotes.get(name)]
for name in wrong:
    print(f"docs/embedding.md does not quote examples/embedding/{name} as it is")
sys.exit(1 if wrong else 0)
