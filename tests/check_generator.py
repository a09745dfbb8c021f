#!/usr/bin/env python3
"""The generators meet bad input with one line that names the fault, and leave nothing behind.

usage: check_generator.py GENERATOR LIST FORTRAN_GENERATOR TEMPLATE
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
    (lambda text: text.replace("\n[real/rounding]", "\n[real rounding]", 1), "a family is '[room/family]'"),
    (lambda text: re.sub(r"\ndmod .*(\n    .*)*", "", text), "not {'value': 306"),
    (lambda text: text.replace("sample: x -1e6 1e6", "sample: y -1e6 1e6", 1), "over the entry's operands"),
    (lambda text: text.replace("sample: x -1e6 1e6", "sample: x 2 1", 1), "the range of x is empty"),
    (lambda text: text.replace("\n    bound: ", "\n    bound: about ", 1), "a bound is 'bound: units"),
    (lambda text: re.sub(r"(\n    bound: \S+ over \w+ )(\S+) [^;\s]+", r"\1\2 \2", text, count=1), "is empty"),
]


def refuses(command, output, expected):
    """Whether a command ends with one line that says what is expected, and writes nothing."""
    run = subprocess.run([sys.executable, *command], capture_output=True, text=True)
    lines = run.stderr.strip().split("\n")
    if run.returncode != 0 and len(lines) == 1 and expected in lines[0] and not output.exists():
        return True
    print(f"{command}: status {run.returncode}, said {run.stderr!r}, expected {expected!r}")
    return False


def check_fortran(generator, list_path, template, folder):
    """The number of faults that the generator of the Fortran module does not meet."""
    output = folder / "module.f90"
    page = folder / "module.md"
    without = folder / "without.list"
    text = Path(list_path).read_text(encoding="utf-8")
    without.write_text(text.replace("\nsqrtl ", "\nroot "), encoding="utf-8")
    strange = folder / "strange.f90.in"
    strange.write_text("!@ nothing\n", encoding="utf-8")
    return 3 - sum([
        refuses([generator, without, template, output, page], output, "has no entry sqrtl"),
        refuses([generator, list_path, strange, output, page], output, "unknown part 'nothing'"),
        refuses([generator, list_path, folder / "none", output, page], output, "No such file")])


def main(generator, list_path, fortran_generator, template):
    text = Path(list_path).read_text(encoding="utf-8")
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        for number, (spoil, expected) in enumerate(FAULTS):
            spoilt = Path(folder) / f"{number}.list"
            spoilt.write_text(spoil(text), encoding="utf-8")
            output = Path(folder) / f"out{number}"
            failures += not refuses([generator, spoilt, output], output, expected)
        failures += not refuses([generator, Path(folder) / "none", Path(folder) / "out"], Path(folder) / "out", "No such file")
        failures += check_fortran(fortran_generator, list_path, template, Path(folder))
    checks = len(FAULTS) + 4
    print(f"{checks - failures} of {checks} bad inputs refused with one clear line")
    return 1 if failures else 0


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit("usage: check_generator.py GENERATOR LIST FORTRAN_GENERATOR TEMPLATE")
    sys.exit(main(*sys.argv[1:]))
