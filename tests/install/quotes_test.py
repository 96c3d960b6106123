#!/usr/bin/env python3
"""Holds that the documents quote the examples and the measurements as they are.

docs/embedding.md quotes every example as a whole. README.md quotes a piece of each, and rows of the
tables of docs/performance.md.

Usage: quotes_test.py SOURCE
"""
import pathlib
import re
import sys

source = pathlib.Path(sys.argv[1])
readme = (source / "README.md").read_text(encoding="utf-8")
embedding = (source / "docs/embedding.md").read_text(encoding="utf-8")
performance = (source / "docs/performance.md").read_text(encoding="utf-8").splitlines()
files = {path.name: path.read_text(encoding="utf-8")
         for path in (source / "examples/embedding").iterdir()}
# A link to an example, the rest of its paragraph, and the block below.
QUOTE = re.compile(r"\]\((?:\.\./)?examples/embedding/([\w.]+)\)[^\n]*:\n\n```\w+\n(.*?)```\n", re.S)
wrong = []

whole = dict(QUOTE.findall(embedding))
wrong += [f"docs/embedding.md does not quote {name} as it is"
          for name in sorted(files.keys() | whole.keys()) if files.get(name) != whole.get(name)]

pieces = QUOTE.findall(readme)
wrong += [f"README.md quotes what {name} does not say:\n{piece}" for name, piece in pieces
          if piece not in files.get(name, "")]
wrong += [f"README.md does not quote {name}"
          for name in sorted(files.keys() - {"CMakeLists.txt"} - {name for name, _ in pieces})]

speed = readme.split("\n## Speed\n")[1].split("\n## ")[0]
rows = re.findall(r"^\|.*\|$", speed, re.M)
wrong += [f"docs/performance.md has no such row: {row}" for row in rows if row not in performance]
if len(rows) < 8:
    wrong.append("README.md has no tables of its speed")

print("\n".join(wrong) or "The documents quote what is there.")
sys.exit(1 if wrong else 0)
