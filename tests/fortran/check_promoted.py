#!/usr/bin/env python3
"""Runs a program of examples/real8 as it is and with REAL*16 in the place of REAL*8, and holds what both print against
known values; and the edits that took against the page.

usage: check_promoted.py PROMOTE SOURCE REAL8_PROGRAM REAL16_PROGRAM VALUES PAGE
"""
import subprocess
import sys
import tempfile
from fractions import Fraction
from pathlib import Path

BOUNDS = {"REAL*8": Fraction(1, 10**13), "REAL*16": Fraction(1, 10**29)}


def main(promote, source, real8, real16, values, page):
    name = Path(source).stem
    rows = [line.split() for line in Path(values).read_text(encoding="utf-8").splitlines() if line.startswith(f"{name} ")]
    faults = [] if rows else [f"{values} has no row of {name}"]
    for kind, program in (("REAL*8", real8), ("REAL*16", real16)):
        printed = subprocess.run([program], capture_output=True, text=True, check=True).stdout.split("\n")
        found = {fields[0]: fields[1:] for fields in map(str.split, printed) if fields}
        for _, label, value in rows:
            value, got = Fraction(value), [Fraction(text) for text in found.get(label, [])]
            if len(got) != 2 or abs(got[0] - value) > BOUNDS[kind] * max(1, abs(value)) or abs(got[1]) > BOUNDS[kind]:
                faults.append(f"{kind} {label}: {' '.join(found.get(label, ['not printed']))}, not {float(value)}")
    with tempfile.TemporaryDirectory() as folder:
        said = subprocess.run([sys.executable, promote, source, Path(folder) / "out"], capture_output=True, text=True,
                              check=True).stdout.split()
    row = f"| `{said[0].rstrip(':')}` | {said[1]} | {said[3]} | 0 |"
    if row not in Path(page).read_text(encoding="utf-8"):
        faults.append(f"{page} has no row {row}")
    print("\n".join(faults) or f"{2 * len(rows)} values")
    return 1 if faults else 0


if __name__ == "__main__":
    if len(sys.argv) != 7:
        sys.exit("usage: check_promoted.py PROMOTE SOURCE REAL8_PROGRAM REAL16_PROGRAM VALUES PAGE")
    sys.exit(main(*sys.argv[1:]))
