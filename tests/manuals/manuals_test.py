#!/usr/bin/env python3
"""Checks that the manual pages say what the command and the headers say.

Usage: manuals_test.py KVT ROOT

KVT is the command, ROOT the folder of the project. The C compiler is $CC, or cc.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

kvt, root = sys.argv[1], pathlib.Path(sys.argv[2])
pages = root / "docs" / "man"
failures = []


def expect(holds, what):
    if not holds:
        failures.append(what)


def same(what, there, page):
    for name in sorted(there - page):
        failures.append(f"{what}: {name} is missing")
    for name in sorted(page - there):
        failures.append(f"{what}: there is no {name}")


def output(*words):
    return subprocess.run([kvt, *words], check=True, capture_output=True, text=True).stdout


def page_text(name):
    file = pages / (name + ".md")
    if not file.is_file():
        failures.append(f"{file.name} is missing")
        return ""
    return file.read_text(encoding="utf-8")


def section(text, heading):
    found = re.search(rf"^# {heading}\n(.*?)(?=^# |\Z)", text, re.MULTILINE | re.DOTALL)
    return found[1] if found else ""


def names(text):
    """The names that stand before the dash of the first section."""
    return set(section(text, "NAME").strip().split(" - ")[0].split(", "))


def options_of_help(text):
    found = set()
    for line in text.split("\nOptions:\n", 1)[1].splitlines():
        if not line.startswith("  "):
            break
        if re.match(r"  -", line):
            words = re.match(r"  ([^ ]+)", line)[1]
            found.update(words.split(":")[0].split(","))
    return found


def options_of_page(text):
    terms = re.findall(r"^(\*\*-.*)\n:  ", section(text, "OPTIONS"), re.MULTILINE)
    return {option for term in terms for option in re.findall(r"\*\*(-[-\w]+)\*\*", term)}


def terms_of(text, heading):
    return set(re.findall(r"^\*\*([^*]+)\*\*\n:  ", section(text, heading), re.MULTILINE))


# --- The command -----------------------------------------------------------------------------------

help_of_all = output("--help")
commands = re.findall(r"^  ([a-z-]+)  ", help_of_all.split("\nSubcommands:\n", 1)[1], re.MULTILINE)
expect(len(commands) >= 12, "--help names its commands")
all_text = page_text("kvt.1")
same("options in kvt.1", options_of_help(help_of_all), options_of_page(all_text))
for command in commands:
    text = page_text(f"kvt-{command}.1")
    same(f"options in kvt-{command}.1", options_of_help(output(command, "--help")),
         options_of_page(text))
    expect(f"**kvt-{command}**(1)" in all_text, f"kvt.1 names kvt-{command}")
    for heading in ("NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "EXIT STATUS", "EXAMPLE", "SEE ALSO"):
        expect(section(text, heading).strip(), f"kvt-{command}.1 has a section {heading}")
pages_of_commands = {file.name[4:-5] for file in pages.glob("kvt-*.1.md")}
same("pages of commands", set(commands), pages_of_commands)

findings = set(re.findall(r"^([a-z-]+) ", output("check", "--list"), re.MULTILINE))
same("findings in kvt-check.1", findings, terms_of(page_text("kvt-check.1"), "FINDINGS"))
for name, severity, meaning in re.findall(r"^([a-z-]+) +(\w+) +(.*)$", output("check", "--list"),
                                          re.MULTILINE):
    expect(f"**{name}**\n:   *{severity}*: {meaning}\n" in page_text("kvt-check.1"),
           f"kvt-check.1 says of {name}: *{severity}*: {meaning}")

# --- The libraries ---------------------------------------------------------------------------------

exported = set()
for header in sorted((root / "include" / "kvt").glob("*.h")):
    text = re.sub(r"/\*.*?\*/", "", header.read_text(encoding="utf-8"), flags=re.DOTALL)
    for declaration in re.findall(r"^KVT_EXPORT\s+(.*?);", text, re.MULTILINE | re.DOTALL):
        found = re.search(r"\(\*(\w+)\)\(", declaration) or re.search(r"(\w+)\s*(?:\(|$)", declaration)
        exported.add(found[1])
expect(len(exported) >= 13, "the headers export names")
documented = set()
for file in sorted(pages.glob("*.3.md")):
    text = file.read_text(encoding="utf-8")
    documented |= names(text)
    for heading in ("NAME", "SYNOPSIS", "DESCRIPTION", "RETURN VALUE", "ERRORS", "OWNERSHIP", "THREADS",
                    "EXAMPLE", "SEE ALSO"):
        expect(section(text, heading).strip(), f"{file.name} has a section {heading}")
    for name in names(text):
        expect(name in section(text, "SYNOPSIS"), f"{file.name} declares {name}")
    examples = re.findall(r"^```c\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)
    expect(examples, f"{file.name} has an example")
    compiler = os.environ.get("CC") or shutil.which("cc")
    for example in examples:
        with tempfile.TemporaryDirectory() as folder:
            program = pathlib.Path(folder) / "example.c"
            program.write_text(example, encoding="utf-8")
            compiled = subprocess.run([*compiler.split(), "-std=c99", "-Wall", "-Wextra", "-Werror",
                                       "-fsyntax-only", "-I", str(root / "include"), str(program)],
                                      capture_output=True, text=True)
            expect(compiled.returncode == 0, f"{file.name}: {compiled.stderr}")
same("names in section 3", exported, documented)

# --- All -------------------------------------------------------------------------------------------

known = {f"{name}({file.name.split('.')[1]})" for file in pages.glob("*.md")
         for name in names(file.read_text(encoding="utf-8"))}
elsewhere = {"calloc(3)", "dot(1)", "free(3)", "jq(1)", "malloc(3)", "printf(3)", "realloc(3)"}
for file in sorted(pages.glob("*.md")):
    text = file.read_text(encoding="utf-8")
    title, number, _ = file.name.split(".")
    expect(text.startswith(f"---\ntitle: {title.upper()}\nsection: {number}\n---\n"),
           f"{file.name} begins with its title and section")
    expect(title in names(text), f"{file.name} has its own name in its first section")
    for name, number in re.findall(r"\*\*([\w-]+)\*\*\((\d)\)", text):
        reference = f"{name}({number})"
        expect(reference in known | elsewhere, f"{file.name}: there is no page {reference}")

print("\n".join(failures) or f"The {len(list(pages.glob('*.md')))} manual pages are right.")
sys.exit(1 if failures else 0)
