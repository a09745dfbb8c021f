#!/usr/bin/env python3
"""Holds code for newer processors in a namespace of its own: the linker merges functions of one name, and may take
those of any translation unit for the others. Constants are the same in all.

usage: check_levels.py NAMESPACE OBJECT...
"""
import subprocess
import sys


def main(namespace, objects):
    listing = subprocess.run(["nm", "-C", "--defined-only", *objects], check=True, capture_output=True, text=True).stdout
    symbols = [line.split(" ", 2)[1:] for line in listing.splitlines() if line.count(" ") >= 2]
    own, faults = 0, []
    for kind, name in symbols:
        if f"::{namespace}::" in name:
            own += 1
        elif kind in "TWi" and not name.startswith("__x86.get_pc_thunk"):  # two instructions of the 80386
            faults.append(name)
    for name in faults:
        print(f"outside {namespace}: {name}")
    print(f"{own} symbols in {namespace}")
    return 1 if faults or own == 0 else 0


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit("usage: check_levels.py NAMESPACE OBJECT...")
    sys.exit(main(sys.argv[1], sys.argv[2:]))
