#!/usr/bin/env python3
"""The generator meets bad lists with one line that names the place, and leaves nothing behind.

usage: check_generator.py GENERATOR LIST
"""
import re
import subprocess
import sys
import tempfile
from pathlib import Path

# What is done to the list, and a piece of the answer.
FAULTS = [
    (lambda text: text.replace("\ndmod ", "\ndint ", 1), "dint stands already in line"),
    (lambda text: text.replace("\ndmod           d  a:d", "\ndmod           d  a:?", 1), "unknown operand code '?'"),
    (lambda text: text.replace("\ndmod           d ", "\ndmod           ! ", 1), "unknown result code '!'"),
    (lambda text: text.replace("I_dmod", "J_dmod", 1), "neither an operand nor a reference"),
    (lambda text: text.replace("\n[real/rounding] ready", "\n[real/rounding] done", 1), "'[room/family] ready'"),
    (lambda text: re.sub(r"\ndmod .*(\n    .*)*", "", text), "not {'value': 306"),
    (lambda text: text.replace("sample: x -1e6 1e6", "sample: y -1e6 1e6", 1), "over the entry's operands"),
    (lambda text: text.replace("sample: x -1e6 1e6", "sample: x 2 1", 1), "the sample of x is empty"),
]


def main(generator, list_path):
    text = Path(list_path).read_text(encoding="utf-8")
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        for number, (spoil, expected) in enumerate(FAULTS):
            spoilt = Path(folder) / f"{number}.list"
            spoilt.write_text(spoil(text), encoding="utf-8")
            output = Path(folder) / f"out{number}"
            run = subprocess.run([sys.executable, generator, spoilt, output], capture_output=True, text=True)
            lines = run.stderr.strip().split("\n")
            if run.returncode == 0 or len(lines) != 1 or expected not in lines[0] or output.exists():
                print(f"fault {number}: status {run.returncode}, said {run.stderr!r}, expected {expected!r}")
                failures += 1
        missing = subprocess.run([sys.executable, generator, Path(folder) / "none", folder], capture_output=True, text=True)
        if missing.returncode == 0 or len(missing.stderr.strip().split("\n")) != 1:
            print(f"missing list: {missing.stderr!r}")
            failures += 1
    print(f"{len(FAULTS) + 1 - failures} of {len(FAULTS) + 1} bad lists refused with one clear line")
    return 1 if failures else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit("usage: check_generator.py GENERATOR LIST")
    sys.exit(main(*sys.argv[1:]))
