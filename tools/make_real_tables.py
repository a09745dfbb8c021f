#!/usr/bin/env python3
"""Makes the tables of the REAL*4 and REAL*8 logarithms and of the REAL*4 power.

usage: make_real_tables.py OUTPUT_DIRECTORY

Writes, for inclusion by the families that use them:
  log_rows_real8.inc, log_rows_real4.inc
      129 rows, j from 0 to 128: ln(1 + j/128) in two pieces, then 1 / (1 + j/128). The first piece is
      the nearest multiple of 2**-39 (REAL*4: 2**-16), so that its sum with a multiple of the leading
      piece of ln 2 is exact; the second is the rest, the third the reciprocal, each rounded to the
      format, to nearest.
  power_rows.inc
      2**(-k/16), k from 0 to 16, rounded to the nearest REAL*4, then what the odd rows lose by it.
All arithmetic is exact: integers, fractions, and decimals of 60 digits where a value is irrational.
Only the Python standard library is needed.
"""
import sys
from decimal import Decimal, getcontext
from fractions import Fraction
from pathlib import Path

getcontext().prec = 60

ROWS = 128

# Three rows whose second piece is not the rounded rest. They belong to the results of the function.
KEPT_REAL8_REST = {
    72: "0x1.a21ac25db1ef3p-42",  # 3.713514192058464e-13
    78: "0x1.e1f8bf68dbcf3p-44",  # 1.070192092009253e-13
    81: "0x1.45639a2b61e5bp-41",  # 5.780071020732237e-13
}


def rounded(value, bits):
    """The nearest value with a significand of that many bits, ties to even."""
    if value == 0:
        return Fraction(0)
    exponent = abs(value.numerator).bit_length() - value.denominator.bit_length()
    if abs(value) < Fraction(2) ** exponent:
        exponent -= 1
    unit = Fraction(2) ** (exponent - bits + 1)
    return round(value / unit) * unit


def literal(value):
    """A hexadecimal floating literal of exactly this value, which has at most 53 bits."""
    number = float(value)
    if Fraction(number) != value:
        raise ArithmeticError(f"{value} is no REAL*8")
    if number == 0:
        return "0x0p+0"
    sign = "-" if number < 0 else ""
    significand, exponent = abs(number).hex().split("p")
    digits = significand.removeprefix("0x1.").rstrip("0")
    return f"{sign}0x1{'.' + digits if digits else ''}p{exponent}"


def log_rows(bits, unit, kept, suffix):
    lines = []
    for j in range(ROWS + 1):
        node = 1 + Fraction(j, ROWS)
        exact = Fraction((Decimal(ROWS + j) / ROWS).ln())
        leading = round(exact / unit) * unit
        rest = Fraction(float.fromhex(kept[j])) if j in kept else rounded(exact - leading, bits)
        row = (leading, rest, rounded(1 / node, bits))
        lines.append("{" + ", ".join(literal(value) + suffix for value in row) + "},")
    return lines


def power_rows():
    def exact(sixteenths):
        return Fraction((Decimal(2).ln() * -sixteenths / 16).exp()) if sixteenths else Fraction(1)

    leading = [rounded(exact(k), 24) for k in range(17)]
    rest = [rounded(exact(k) - leading[k], 24) for k in range(1, 17, 2)]
    return (["constexpr float power_leading[17] = {"]
            + [f"    {literal(value)}f," for value in leading]
            + ["};", "constexpr float power_rest[8] = {"]
            + [f"    {literal(value)}f," for value in rest]
            + ["};"])


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__.strip().splitlines()[2])
    directory = Path(sys.argv[1])
    if not directory.is_dir():
        sys.exit(f"make_real_tables.py: {directory} is no directory")
    tables = {
        "log_rows_real8.inc": log_rows(53, Fraction(1, 2**39), KEPT_REAL8_REST, ""),
        "log_rows_real4.inc": log_rows(24, Fraction(1, 2**16), {}, "f"),
        "power_rows.inc": power_rows(),
    }
    for name, lines in tables.items():
        head = "// Made by tools/make_real_tables.py, which tells the rule of the rows."
        (directory / name).write_text("\n".join([head, *lines]) + "\n")


if __name__ == "__main__":
    main()
