#!/usr/bin/env python3
"""Holds the text library against exact rational arithmetic.

usage: check_text.py CONVERT...

CONVERT... is the program of convert.cpp, behind what it runs under, if anything. What it reads and
writes is computed here a second time with fractions: 10000 random pairs and all special ones there
and back, the shortest form for being the shortest and the nearest, parts in brackets against repr,
decimal strings of 40 digits and ties between neighbours as they must be read.
"""
import math
import random
import re
import struct
import subprocess
import sys
from decimal import ROUND_HALF_EVEN, Context, Decimal
from fractions import Fraction

SHORTEST, FIXED, SCIENTIFIC, GENERAL = range(4)
EXACT = Context(prec=5000, Emin=-10**6, Emax=10**6)
LARGEST = 0x7FEFFFFFFFFFFFFF
NOT_FINITE = 0x7FF


def double(bits):
    return struct.unpack("<d", struct.pack("<Q", bits))[0]


def bits_of(value):
    return struct.unpack("<Q", struct.pack("<d", value))[0]


def finite(bits):
    return bits >> 52 & 0x7FF != NOT_FINITE


def nearest(value):
    """The double nearest to a fraction: an exact quotient of integers rounds once."""
    try:
        return float(value)
    except OverflowError:
        return math.inf if value > 0 else -math.inf


def pair_of(value, negative_zero=False):
    """What reading this number must give."""
    if value == 0:
        return bits_of(-0.0 if negative_zero else 0.0), 0
    hi = nearest(value)
    if math.isinf(hi) or hi == 0:
        return bits_of(hi), 0
    return bits_of(hi), bits_of(nearest(value - Fraction(hi)))


def value_of(text):
    return Fraction(Decimal(text))


def significant(text):
    """The significant digits and the exponent of the last one."""
    _, digits, exponent = Decimal(text).as_tuple()
    digits = list(digits)
    while len(digits) > 1 and digits[-1] == 0:
        digits.pop()
        exponent += 1
    return len(digits), exponent


def random_pair(rng):
    hi = rng.getrandbits(64)
    kind = rng.randrange(10)
    if kind < 3:                                    # ordinary sizes
        hi = hi & 0x800FFFFFFFFFFFFF | rng.randrange(1000, 1047) << 52
    if not finite(hi):
        hi ^= 1 << 62
    if kind == 9:                                   # whatever
        return hi, rng.getrandbits(64)
    exponent = hi >> 52 & 0x7FF
    gap = 53 + min(int(rng.expovariate(0.7)), 200 if kind == 8 else 1000)
    lo_exponent = exponent - gap
    fraction = rng.getrandbits(52) if rng.random() < 0.9 else rng.choice([0, 1, (1 << 52) - 1])
    if lo_exponent <= 0:
        fraction >>= min(52, 1 - lo_exponent)
        lo_exponent = 0
    return hi, rng.getrandbits(1) << 63 | lo_exponent << 52 | fraction


SPECIAL = [0, 1, 2, 0xFFFFFFFFFFFFF, 0x10000000000000, 0x10000000000001, bits_of(1.0), bits_of(2.0**-53),
           bits_of(2.0**-54), bits_of(0.1), bits_of(1e22), bits_of(1e23), bits_of(2.0**53), bits_of(9.0),
           LARGEST, bits_of(2.0**970), bits_of(2.0**970) - 1, bits_of(5e-324), NOT_FINITE << 52,
           (NOT_FINITE << 52) + 1, 0x7FF8000000000000, 0x7FF8000000000123, 0x7FFFFFFFFFFFFFFF]
SPECIAL += [bits | 1 << 63 for bits in SPECIAL]


def beside_round_ties(rng):
    """Pairs whose interval ends at a multiple of 10, which reads as this pair or as the neighbour."""
    pairs = []
    while len(pairs) < 200:
        tie = rng.randrange(2**108 // 20, 2**109 // 20) * 20 + 10
        _, lo = pair_of(Fraction(tie))
        if math.ulp(double(lo)) == 4:
            pairs += [pair_of(Fraction(tie - 2)), pair_of(Fraction(tie + 2)), pair_of(Fraction(-tie - 2))]
    return pairs


def with_a_half(rng):
    """Pairs too far apart for one number, whose leading part lies half way between two of its digits."""
    return [(bits_of(rng.randrange(2**46, 2**47) + rng.choice((.125, .375, .625, .875))),
             bits_of(rng.uniform(1e-22, 1e-21))) for _ in range(200)]


def ties():
    """Numbers half way between two of fewer digits: exact, odd and even ones."""
    return [(bits_of(float(value)), 0) for odd in range(1, 40, 2)
            for value in (odd / 2, odd * 5, odd * 50, odd * 5 * 10**11)]


class Checker:
    def __init__(self, program):
        self.program = program
        self.faults = 0

    def run(self, lines):
        run = subprocess.run(self.program, input="\n".join(lines) + "\n", capture_output=True, text=True)
        answers = run.stdout.splitlines()
        if run.returncode != 0 or len(answers) != len(lines):
            sys.exit(f"check_text: {self.program[-1]} ended with {run.returncode}: {run.stderr.strip()}")
        return answers

    def expect(self, condition, what):
        if not condition:
            self.faults += 1
            if self.faults <= 20:
                print(what)

    def write(self, pairs, style, precision=0):
        return self.run([f"w {style} {precision} {hi:x} {lo:x}" for hi, lo in pairs])

    def read(self, texts):
        answers = [answer.split() for answer in self.run([f"r {text}" for text in texts])]
        return [(int(a[0]), int(a[1]), int(a[2], 16), int(a[3], 16)) for a in answers]

    def check_round_trip(self, pairs):
        texts = self.write(pairs, SHORTEST)
        for (hi, lo), text, answer in zip(pairs, texts, self.read(texts)):
            self.expect(answer[1:] == (len(text), hi, lo), f"{hi:x} {lo:x} -> {text} -> {answer}")
            if not finite(hi) or not finite(lo):
                continue
            value = Fraction(double(hi)) + Fraction(double(lo))
            if "[" not in text:
                count, exponent = significant(text)
                self.expect(pair_of(value_of(text), text[0] == "-") == (hi, lo), f"{text} is not the pair")
                self.expect(count <= 40, f"{text} is too long")
                if count > 1:
                    # One digit less: neither neighbour of the value may read as the pair.
                    unit = Fraction(10) ** (exponent + 1)
                    below = value // unit * unit
                    for shorter in (below, below + unit):
                        self.expect(pair_of(shorter) != (hi, lo), f"{shorter} is shorter than {text}")
                unit = Fraction(10) ** exponent
                self.expect(abs(value_of(text) - value) <= unit, f"{text} is far from the value")
                nearest_same = round(value / unit) * unit
                if pair_of(nearest_same) == (hi, lo):
                    self.expect(value_of(text) == nearest_same, f"{text} is not the nearest")
                continue
            parts = re.fullmatch(r"\[(-?[0-9.]+(?:e[-+]?[0-9]+)?)([-+].*)\]", text).groups()
            self.expect([Decimal(part) for part in parts] == [Decimal(repr(double(part))) for part in (hi, lo)],
                        f"{text} has a part that is not its shortest form")
            if value != 0 and pair_of(value) == (hi, lo) and hi % (1 << 63) != 0:
                # A pair in brackets that is normalised needs more than 40 digits.
                place = math.floor(math.log10(abs(double(hi)))) - 39
                for unit in (Fraction(10) ** place, Fraction(10) ** (place + 1)):
                    below = value // unit * unit
                    for shorter in (below, below + unit):
                        self.expect(pair_of(shorter) != (hi, lo) or significant(to_text(shorter))[0] > 40,
                                    f"{text} has a short form {to_text(shorter)}")

    def check_precision(self, pairs, rng):
        for style in (FIXED, SCIENTIFIC):
            for precision in (0, 1, 5, 31, 33, 60, 400, 1100):
                chosen = rng.sample(pairs, 60)
                for (hi, lo), text in zip(chosen, self.write(chosen, style, precision)):
                    value = EXACT.add(Decimal(double(hi)), Decimal(double(lo)))
                    expected = expected_text(value, style, precision, hi)
                    self.expect(text == expected, f"{hi:x} {lo:x} style {style}.{precision}: {text}, not {expected}")

    def check_reading(self, texts):
        for text, answer in zip(texts, self.read(texts)):
            value = value_of(text)
            expected = pair_of(value, text[0] == "-")
            hi = double(expected[0])
            outcome = 2 if math.isinf(hi) or (hi == 0 and value != 0) else 0
            self.expect(answer == (outcome, len(text), *expected), f"{text} -> {answer}, not {expected}")


def to_text(value):
    return str(EXACT.divide(Decimal(value.numerator), Decimal(value.denominator)))


def expected_text(value, style, precision, hi):
    if value == 0:
        value = Decimal(0).copy_sign(Decimal(double(hi)) if hi % (1 << 63) == 0 else Decimal(1))
    if style == FIXED:
        return f"{value.quantize(Decimal(1).scaleb(-precision), ROUND_HALF_EVEN, EXACT):f}"
    if value == 0:
        digits, exponent = "0" * (precision + 1), 0
    else:
        rounded = Context(prec=precision + 1, rounding=ROUND_HALF_EVEN, Emin=-10**6, Emax=10**6).plus(value)
        _, digits, _ = rounded.as_tuple()
        exponent = rounded.adjusted()
        digits = "".join(map(str, digits)).ljust(precision + 1, "0")
    point = "." if precision else ""
    sign = "-" if value.is_signed() else ""
    return f"{sign}{digits[0]}{point}{digits[1:precision + 1]}e{'+' if exponent >= 0 else '-'}{abs(exponent):02d}"


def random_decimals(rng):
    texts = []
    for _ in range(10000):
        digits = "".join(rng.choice("0123456789") for _ in range(40))
        exponent = rng.choice([0, rng.randrange(-60, 30), rng.randrange(-380, 290)])
        sign = rng.choice(["", "-", "+"])
        texts.append(f"{sign}{digits[0]}.{digits[1:]}e{exponent}")
    # Half way between two neighbours, exactly and a little beside it: of hi, of lo, and of both.
    for hi, lo in [(bits_of(1.0), bits_of(2.0**-60)), (bits_of(1.0), LARGEST), (1, 0), (bits_of(3.5), 0),
                   (LARGEST, 0), (bits_of(2.0**-1000), bits_of(2.0**-1060)), (0x10000000000000, 0)]:
        step = Fraction(double(hi + 1 if hi != LARGEST else hi)) - Fraction(double(hi)) or Fraction(2) ** 971
        ties = [Fraction(double(hi)) + step / 2]
        if lo != LARGEST:
            lo_step = Fraction(double(lo + 1)) - Fraction(double(lo))
            ties += [Fraction(double(hi)) + Fraction(double(lo)) + lo_step / 2,
                     Fraction(double(hi)) - Fraction(double(lo)) - lo_step / 2]
        for tie in ties:
            if tie > 0:
                text = to_text(tie)
                mantissa, _, exponent = text.partition("E")
                mantissa += "." if "." not in mantissa else ""
                for tail in ("", "0" * 2000, "0" * 30 + "1", "0" * 1500 + "1"):
                    texts += [f"{mantissa}{tail}e{exponent or 0}", f"-{mantissa}{tail}e{exponent or 0}"]
    texts += ["0", "-0", ".5", "5.", "0." + "0" * 500 + "1", "1" + "0" * 400, "-1e-5000",
              "1e5000", "0e5000", "1.7976931348623158e308", "1.7976931348623159e308", "1" * 1500 + "e-1490",
              "2.4703282292062328e-324", "2.4703282292062327e-324", "00000000012.50"]
    return texts


def main(program):
    rng = random.Random(20240607)
    check = Checker(program)
    pairs = [random_pair(rng) for _ in range(10000)]
    special = [(hi, lo) for hi in SPECIAL for lo in SPECIAL]
    check.check_round_trip(pairs + special + beside_round_ties(rng) + with_a_half(rng))
    check.check_precision([p for p in pairs if finite(p[0]) and finite(p[1])], rng)
    check.check_precision(ties(), rng)
    finite_special = [p for p in special if finite(p[0]) and finite(p[1])]
    check.check_precision(finite_special, rng)
    check.check_reading(random_decimals(rng))
    for text, bits in {"1e99999999999999999999": NOT_FINITE << 52, "-1e-99999999999999999999": 1 << 63}.items():
        check.expect(check.read([text]) == [(2, len(text), bits, 0)], f"{text} is not out of range")
    print(f"{len(pairs)} random and {len(special)} special pairs, {check.faults} faults")
    return 1 if check.faults else 0


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit("usage: check_text.py CONVERT...")
    sys.exit(main(sys.argv[1:]))
