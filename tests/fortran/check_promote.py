#!/usr/bin/env python3
"""Holds what promote_real8.py makes of single lines against the rows of a file.

usage: check_promote.py PROMOTE ROWS
"""
import subprocess
import sys
import tempfile
from pathlib import Path


def main(promote, rows_path):
    rows = [line.split(" | ", 1) for line in Path(rows_path).read_text(encoding="utf-8").splitlines() if line[:1] not in "#"]
    rows = [(form, *(half.removeprefix(" ") for half in f" {rest}".split(" |", 1))) for form, rest in rows]
    faults = []

    def run(before, suffix):
        with tempfile.TemporaryDirectory() as folder:
            source, output = Path(folder) / f"source{suffix}", Path(folder) / "output"
            source.write_text("\n".join(before) + "\n", encoding="utf-8")
            said = subprocess.run([sys.executable, promote, source, output], capture_output=True, text=True)
            return output.read_text(encoding="utf-8").splitlines() if output.exists() else said.stderr.strip()

    for form, suffix in (("free", ".f90"), ("fixed", ".f")):
        made = run([before for kind, before, _ in rows if kind == form and before], suffix)
        wanted = [after for kind, _, after in rows if kind == form]
        if made != wanted:
            faults.append(f"{form} form gives\n" + "\n".join(made) + "\nnot\n" + "\n".join(wanted))
    for kind, before, after in rows:
        if kind == "error" and (said := run([before], ".f90")) != f"zorvikrt-promote: {after}, which REAL*16 can only be in a statement":
            faults.append(f"{before} gives {said}")
    print("\n".join(faults) or f"{len(rows)} rows")
    return 1 if faults else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit("usage: check_promote.py PROMOTE ROWS")
    sys.exit(main(*sys.argv[1:]))
