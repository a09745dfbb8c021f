#!/usr/bin/env python3
"""Holds what gfortran makes of an intrinsic or operator against the entry of the same operation.

usage: check_operations.py OPERATIONS EXPORTS COMPILER TARGET [--tuples N] [--plain]
       check_operations.py OPERATIONS EXPORTS COMPILER TARGET --page PAGE

OPERATIONS has a row 'entry result operands expression [| target verdict ...]' for each operation. A program
with one subroutine a row is compiled by COMPILER (zorvikrt-gfortran and its options); both results are
compared bit for bit over random operands and special values. TARGET is i386 or x86_64: a row that
differs there says so behind the bar, with the reason, and a row that says so and does not differ
fails as well. --plain counts how many rows agree and judges none, for a compiler without the runtime.
--page writes the table of all operations, with what COMPILER, a plain gfortran, calls for each.
"""
import argparse
import math
import random
import re
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools"))
from exports_list import AT_ADDRESS, parse  # noqa: E402

FORTRAN = {"f": "real(4)", "d": "real(8)", "c": "complex(4)", "z": "complex(8)", "b": "integer(1)",
           "w": "integer(2)", "i": "integer(4)", "k": "integer(8)", "l": "integer(4)",
           "a": "character(6)", "s": "character(12)"}
SIZES = {"f": 4, "d": 8, "c": 8, "z": 16, "b": 1, "w": 2, "i": 4, "k": 8, "l": 4, "a": 6, "s": 12}
BITS = {"b": 8, "w": 16, "i": 32, "k": 64}
PACK = {"b": "b", "w": "h", "i": "i", "k": "q", "f": "f", "d": "d"}
SPECIAL = [0.0, -0.0, 1.0, -1.0, 0.5, -0.5, 2.0, math.inf, -math.inf, math.nan, 1e-310, 1e-40, 1e-30, -1e-30,
           1e300, 1e38, 0.49999999999999994, 1.5, 2.5, -2.5, 4503599627370497.5, math.pi / 2, 88.0, 709.0]
# Second and third operands of the bit intrinsics stay where the language defines them.
POSITION = re.compile(r"btest|ibset|ibclr|ibits|ishft")


class Row:
    def __init__(self, text, line, where):
        head, _, rest = text.partition("|")
        words = head.split(None, 3)
        if len(words) != 4:
            sys.exit(f"{where}:{line}: a row is 'entry result operands expression'")
        self.entry, self.result, self.operands, self.expression = words
        self.expression = self.expression.strip()
        self.differs = dict(re.findall(r"(i386|x86_64): ([^;]*)", rest))


def read(path):
    return [Row(text, line, path) for line, text in enumerate(Path(path).read_text().splitlines(), 1)
            if text.strip() and not text.startswith("#")]


def names(row):
    letters = iter("xyz")
    return ["n" if code == "i" and row.expression == "x**n" else next(letters) for code in row.operands]


def call(row, entry):
    """The entry's arguments, with their types where they are not those of the row, and whether its result
    is an argument."""
    operands = iter(zip(names(row), row.operands))
    arguments, types, lengths = [], {}, []
    written = entry.result in AT_ADDRESS
    if written:
        arguments.append("answer")
    for name, code in entry.operands:
        if code == "A":
            written = True
            arguments.append("answer")
            lengths.append(SIZES[row.result])
        elif code == "a":
            arguments.append(next(operands)[0])
            lengths.append(SIZES["a"])
        elif code == "n":
            arguments.append(f"length_{name}")
            types[arguments[-1]] = ("integer(4), value", lengths.pop(0))
        elif code == "L":
            arguments.append("back")
            types["back"] = ("integer(4)", 1)
        else:
            arguments.append(next(operands)[0])
    return arguments, types, written


def subroutine(number, row, entry):
    """Both results of every operand tuple; an exponent is a variable like the rest."""
    operands = list(zip(names(row), row.operands))
    arguments, types, written = call(row, entry)
    given = ", ".join(str(types[name][1]) if name in types else "second(i)" if name == "answer" else name
                      for name in arguments)
    head = f"entry({', '.join(arguments)}) bind(c, name='{entry.symbol}')"
    out = [f"subroutine operation_{number}(count, first, second)", "  implicit none", "  interface",
           f"    subroutine {head}" if written else f"    {FORTRAN[row.result]} function {head}"]
    out += ["      character(1) :: answer(*)" if row.result in "as" else f"      {FORTRAN[row.result]} :: answer"] * written
    out += [f"      character(1) :: {name}(*)" if code == "a" else f"      {FORTRAN[code]}, value :: {name}"
            for name, code in operands]
    out += [f"      {kind} :: {name}" for name, (kind, _) in types.items()]
    out += [f"    end {'subroutine' if written else 'function'}", "  end interface", "  integer :: count, i",
            f"  {FORTRAN[row.result]} :: first(count), second(count)"]
    out += [f"  {FORTRAN[code]} :: {name}_(count), {name}" for name, code in operands]
    out += [f"  read(10) {', '.join(name + '_' for name, _ in operands)}", "  do i = 1, count"]
    out += [f"    {name} = {name}_(i)" for name, _ in operands]
    value = f"merge(1, 0, {row.expression})" if row.result == "l" else row.expression
    out += [f"    first(i) = {value}", f"    {'call ' if written else 'second(i) = '}entry({given})"]
    return out + ["  end do", "end subroutine", ""]


def program(rows, entries, count):
    out = []
    for number, row in enumerate(rows):
        out += subroutine(number, row, entries[row.entry])
    out += ["program operations", "  implicit none", f"  integer, parameter :: count = {count}"]
    out += [f"  {FORTRAN[code]} :: {side}_{code}(count)" for code in FORTRAN for side in ("first", "second")]
    out += ["  open(10, file='operands', access='stream', form='unformatted')",
            "  open(11, file='results', access='stream', form='unformatted', status='replace')"]
    for number, row in enumerate(rows):
        sides = f"first_{row.result}, second_{row.result}"
        out += [f"  call operation_{number}(count, {sides})", f"  write(11) {sides}"]
    return out + ["end program"]


def draw(code, position, row, entry, count, generator):
    """Special values first, then the sample of the list, or the whole kind."""
    if code == "a":
        return ["".join(generator.choices("ab ", (3, 2, 4), k=6)) for _ in range(count)]
    if code in "cz":
        part = {"c": "f", "z": "d"}[code]
        parts = [draw(part, position, row, entry, count, generator) for _ in "ri"]
        generator.shuffle(parts[1])
        return [value for pair in zip(*parts) for value in pair]
    low, high = entry.sample.get(entry.operands[position][0], (-1000.0, 1000.0))
    if code in "fd":
        # All pairs of special values.
        values = [SPECIAL[i // len(SPECIAL) if position else i % len(SPECIAL)] for i in range(len(SPECIAL) ** 2)]
        values += [generator.uniform(low, high) for _ in range(count - len(values))]
        if row.result in "ik":  # a whole number beyond the kind is nobody's result
            values = [v if abs(v) < 2.0 ** (BITS[row.result] - 1) * 0.99 else 1.0 for v in values]
        return values if code == "d" else [struct.unpack("f", struct.pack("f", v))[0] if abs(v) < 1e38 or not
                                           math.isfinite(v) else math.copysign(1e38, v) for v in values]
    width = BITS[code]
    top = 2 ** (width - 1) - 1
    if POSITION.search(row.expression) and position > 0:
        if "ibits" in row.expression:
            ends = (0, width // 2 - 1)
        elif "ishftc" in row.expression:
            ends = (-width // 2, width // 2) if position == 1 else (width // 2, width)
        else:
            ends = (-width, width) if "ishft" in row.expression else (0, width - 1)
        return [generator.randint(*ends) for _ in range(count)]
    if "**" in row.expression:
        return [generator.randint(int(max(low, -top)), int(min(high, top))) for _ in range(count)]
    if "dim" in row.expression:  # a difference beyond the kind is nobody's result
        top //= 2
    division = position == 1 and ("mod(" in row.expression or "/" in row.expression)
    drawn = [generator.choice([generator.randint(-9, 9), generator.randint(-top, top)]) for _ in range(count)]
    return [value or 1 for value in drawn] if division else drawn


def packed(code, values):
    if code == "a":
        return "".join(values).encode()
    return struct.pack(f"{len(values)}{PACK[{'c': 'f', 'z': 'd'}.get(code, code)]}", *values)


def same(code, a, b):
    """Bit for bit, save that a NaN is a NaN: gfortran swaps operands, and with them a NaN's sign."""
    if a == b or code not in "fdcz":
        return a == b
    part = {"f": "f", "c": "2f", "d": "d", "z": "2d"}[code]
    return all(struct.pack("d", x) == struct.pack("d", y) or (x != x and y != y)
               for x, y in zip(struct.unpack(part, a), struct.unpack(part, b)))


def differences(arguments, rows, entries, count):
    """How many of the tuples differ, a number a row."""
    generator = random.Random(20260101)
    with tempfile.TemporaryDirectory() as folder:
        folder = Path(folder)
        (folder / "operations.f90").write_text("\n".join(program(rows, entries, count)) + "\n")
        with open(folder / "operands", "wb") as file:
            for row in rows:
                for position, code in enumerate(row.operands):
                    file.write(packed(code, draw(code, position, row, entries[row.entry], count, generator)))
        subprocess.run([*arguments, "-w", "-fdec-math", "operations.f90", "-o", "operations"], cwd=folder, check=True)
        subprocess.run(["./operations"], cwd=folder, check=True)
        data = (folder / "results").read_bytes()
    result, at = [], 0
    for row in rows:
        size = SIZES[row.result]
        first, second = data[at:at + size * count], data[at + size * count:at + 2 * size * count]
        at += 2 * size * count
        result.append(sum(not same(row.result, first[i:i + size], second[i:i + size])
                          for i in range(0, size * count, size)))
    if at != len(data):
        sys.exit(f"check_operations: {len(data)} bytes of results, not {at}")
    return result


TYPES = {"f": "REAL*4", "d": "REAL*8", "c": "COMPLEX*8", "z": "COMPLEX*16", "b": "INTEGER*1", "w": "INTEGER*2",
         "i": "INTEGER*4", "k": "INTEGER*8", "a": "CHARACTER"}
HELPERS = re.compile(r"__x86|mem(cpy|move|set)|_gfortran_(st_|transfer|runtime)|malloc|free|__zorvik_|entry")


def page(arguments, rows, entries):
    """A row for each operation: what stands for it at -O2 on both targets, and where its bits are the entry's."""
    called = []
    with tempfile.TemporaryDirectory() as folder:
        parts = [subroutine(number, row, entries[row.entry]) for number, row in enumerate(rows)]
        (Path(folder) / "operations.f90").write_text("\n".join(sum(parts, [])) + "\n")
        for options in ([], ["-m32", "-march=i486", "-mno-fancy-math-387"]):
            done = subprocess.run([*arguments, *options, "-O2", "-w", "-fdec-math", "-S", "operations.f90", "-o", "-"],
                                  cwd=folder, check=True, capture_output=True, text=True)
            parts = re.split(r"^operation_(\d+)_:$", done.stdout, flags=re.M)
            called.append({int(number): sorted(name for name in set(re.findall(r"\t(?:call|jmp)\t(\w+)", code))
                                               if not name.startswith(".") and not HELPERS.match(name))
                           for number, code in zip(parts[1::2], parts[2::2])})
    out = ["# Every intrinsic and operator", "",
           "Made by `tests/legacy/check_operations.py --page`; a test holds it. What gfortran 12 makes of an operation at -O2,",
           "and whether `zorvikrt-gfortran` gives the bits of the entry. [legacy.md](legacy.md) tells why some differ.", "",
           "| operation | operands | entry | x86-64 calls | same bits | i386 calls | same bits |", "|---|---|---|---|---|---|---|"]
    for number, row in enumerate(rows):
        cells = []
        for target, calls in zip(("x86_64", "i386"), called):
            cells += [", ".join(f"`{name}`" for name in calls[number]) or "in line",
                      "no: " + row.differs[target].strip() if target in row.differs else "yes"]
        operands = ", ".join(TYPES[code] for code in row.operands).replace("*", "\\*")
        out.append(f"| `{row.expression}` | {operands} | `{row.entry}` | {' | '.join(cells)} |")
    return "\n".join(out) + "\n"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("operations")
    parser.add_argument("exports")
    parser.add_argument("compiler")
    parser.add_argument("target", choices=("i386", "x86_64"))
    parser.add_argument("--tuples", type=int, default=4000)
    parser.add_argument("--plain", action="store_true")
    parser.add_argument("--page")
    options = parser.parse_args()
    rows = read(options.operations)
    entries = {entry.stem: entry for entry in parse(options.exports)[0]}
    if options.page:
        Path(options.page).write_text(page(options.compiler.split(), rows, entries))
        return 0
    found = differences(options.compiler.split(), rows, entries, options.tuples)
    print(f"{sum(n == 0 for n in found)} of {len(rows)} operations agree in all bits over {options.tuples} operands")
    faults = 0
    for row, number in zip(rows, found):
        said = options.target in row.differs
        if options.plain or (number != 0) != said:
            if number or said:
                print(f"  {row.expression} of {row.operands}, {row.entry}: {number} differ" + (", but is said to" if said else ""))
            faults += 1
    return 0 if options.plain else min(faults, 1)


if __name__ == "__main__":
    sys.exit(main())
