#!/usr/bin/env python3
"""Runs what a page of the documentation shows.

usage: check_docs.py SOURCE_DIRECTORY PAGE [--without WORD]... [NAME=COMMAND ...]

In a folder of its own where `include`, `src` and `build` are those of the source directory:
  - a fenced block behind a line that ends with `NAME`: becomes the file NAME,
  - an indented line that starts with $ runs in the shell, and must print the indented lines behind it.
A command that has WORD in it is left out. NAME=COMMAND gives the page's programs: a word NAME runs
COMMAND.
"""
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path


def steps(page):
    """(kind, name or command, text) in the order of the page."""
    lines = page.read_text(encoding="utf-8").splitlines()
    at, name = 0, None
    while at < len(lines):
        text = lines[at]
        at += 1
        named = re.search(r"`([\w.]+)`:$", text)
        if named:
            name = named[1]
        elif text.startswith("```") and len(text) > 3:
            end = lines.index("```", at)
            if name:
                yield "file", name, "\n".join(lines[at:end]) + "\n"
            at, name = end + 1, None
        elif text.startswith("    $ "):
            shown = []
            while at < len(lines) and lines[at].startswith("    ") and not lines[at].startswith("    $ "):
                shown.append(lines[at][4:])
                at += 1
            yield "command", text[6:], "\n".join(shown)


def main(arguments):
    source, page, *rest = arguments
    source, page, without = Path(source).resolve(), Path(page), []
    while rest[:1] == ["--without"]:
        without, rest = without + [rest[1]], rest[2:]
    done = faults = 0
    with tempfile.TemporaryDirectory() as folder:
        for shared in ("include", "src", "build"):
            os.symlink(source / shared, Path(folder) / shared)
        programs = Path(folder) / "programs"
        programs.mkdir()
        for definition in rest:
            name, _, command = definition.partition("=")
            (programs / name).write_text(f'#!/bin/sh\nexec {command} "$@"\n')
            (programs / name).chmod(0o755)
        environment = dict(os.environ, PATH=f"{programs}:{os.environ['PATH']}")
        for kind, name, text in steps(page):
            if kind == "file":
                (Path(folder) / name).write_text(text)
                continue
            if any(word in name for word in without):
                continue
            run = subprocess.run(name, shell=True, cwd=folder, env=environment, stdout=subprocess.PIPE,
                                 stderr=subprocess.STDOUT, text=True)
            done += 1
            if run.stdout.rstrip("\n") != text.rstrip("\n"):
                faults += 1
                print(f"{page}: $ {name}\nshows:\n{text}\nprints:\n{run.stdout}")
    if done == 0:
        sys.exit(f"check_docs: there is no command in {page}")
    print(f"{done} commands, {faults} differ")
    return 1 if faults else 0


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit("usage: check_docs.py SOURCE_DIRECTORY PAGE [--without WORD]... [NAME=COMMAND ...]")
    sys.exit(main(sys.argv[1:]))
