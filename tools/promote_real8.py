#!/usr/bin/env python3
"""Turns a Fortran source in REAL*8 into one in REAL*16 by its declarations and constants alone.

usage: zorvikrt-promote SOURCE OUTPUT

Fixed form by the suffix .f or .for, else free form. What changes:

    declarations   double precision, real*8, real(8), real(dp) become type(real16), where dp is a parameter for the
                   kind of 1.0d0; complex*16, double complex, complex(8), complex(dp) become type(complex32); each
                   program unit uses the module zorvikrt_as_double
    constants      1.0d0 and 1.0_dp become real16(1.0d0); where a REAL*8 is not exact, the pair of doubles nearest to
                   the digits; in data, parameters and initial values as structure constructors

Everything else stays as it is. Prints how many of each were changed. Compile the output with
-ffixed-line-length-none or -ffree-line-length-none: pairs are long.
"""
import re
import sys
from fractions import Fraction
from pathlib import Path

NUMBER = r"(?<!\w)(?<!\d\.)((?:\d+\.\d*|\.\d+|\d+)(?:d[+-]?\d+{0}))"
HEAD = re.compile(r"(?:(?:pure|elemental|impure|recursive|module)\s+|(?:type|class)\(\w+\)\s*|integer\s*(?:\(\w+\)|\*\d)?\s*"
                  r"|logical\s+|real\s+|character\s*\S*\s+)*(?:function|subroutine)\s+\w+|program\s+\w+|module\s+(?!procedure)\w+"
                  r"|block\s*data", re.I)
END = re.compile(r"end\s*(?:(?:program|module|function|subroutine|block\s*data)\b.*)?$", re.I)
COMPUTED = re.compile(r"_parts\([^)]*\)\)\s*[-+*/]|[-+*/]\s*real16\(")
CONSTANT_STATEMENT = re.compile(r"data\b|parameter\s*\(|.*\bparameter\b.*::|type\(\w+\)[^!]*::.*=", re.I)


class Fault(Exception):
    pass


class Source:
    def __init__(self, text, fixed):
        self.lines, self.fixed = text.splitlines(), fixed
        kinds = re.findall(r"(\w+)\s*=\s*(?:kind\s*\(\s*1\.?0?d0\s*\)|selected_real_kind\s*\(\s*(?:p\s*=\s*)?15|real64\b)",
                           text, re.I)
        kind = "|".join(["8", "real64"] + kinds)
        self.number = re.compile(NUMBER.format(rf"|(?:e[+-]?\d+)?_(?:{kind})"), re.I)
        self.signed = re.compile(r"(?:([=/,(*\[]\s*)-\s*)?" + self.number.pattern, re.I)
        self.rules = [
            (re.compile(r"\bdouble\s+precision\b|\breal\s*\*\s*8\b|"
                        rf"\breal\s*\(\s*(?:kind\s*=\s*)?(?:{kind})\s*\)(?=\s*(?:::|,|function\b|\w+\s*[,(]|\w+\s*$))", re.I),
             "type(real16)"),
            (re.compile(r"\bdouble\s+complex\b|\bcomplex\s*\*\s*16\b|"
                        rf"\bcomplex\s*\(\s*(?:kind\s*=\s*)?(?:{kind})\s*\)(?=\s*(?:::|,|function\b|\w+\s*[,(]|\w+\s*$))", re.I),
             "type(complex32)")]
        self.declarations = self.constants = 0

    def is_comment(self, line):
        return not line.strip() or line.lstrip().startswith("!") or (self.fixed and line[0] in "cC*")

    def continues(self, line, before):
        return (line.startswith("     ") and len(line) > 5 and line[5] not in " 0") if self.fixed else before

    def constant(self, digits, in_declaration):
        mantissa = re.sub(r"_\w+$", "", digits.lower()).replace("d", "e").replace(" ", "")
        value = Fraction(mantissa)
        leading = float(value)
        trailing = float(value - Fraction(leading))
        self.constants += 1
        written = mantissa.replace("e", "d") if "e" in mantissa else mantissa + "d0"
        if trailing:
            written = repr(leading).replace("e", "d")
            written += "" if "d" in written else "d0"
        pair = f"{written}, {repr(trailing).replace('e', 'd') if 'e' in repr(trailing) else repr(trailing) + 'd0'}"
        if in_declaration:
            return f"real16(real16_parts({pair}))"
        return f"real16({pair})" if trailing else f"real16({written})"

    def code(self, text, in_declaration):
        for pattern, new in self.rules:
            text, count = pattern.subn(new, text)
            self.declarations += count
        parts = re.split(r"(\bkind\s*\([^)]*\))", text, flags=re.I)
        for index in range(0, len(parts), 2):
            if in_declaration:
                # A sign belongs to the constant where no operation is allowed.
                parts[index] = self.signed.sub(
                    lambda match: (match[1] or "") + self.constant("-" * (match[1] is not None) + match[2], True), parts[index])
            else:
                parts[index] = self.number.sub(lambda match: self.constant(match[1], False), parts[index])
            if in_declaration == "parameter" and COMPUTED.search(parts[index]):
                raise Fault("a constant is computed here, which REAL*16 can only be in a statement")
        return "".join(parts)

    def promoted(self):
        out, depth, to_insert, going_on, in_declaration = [], 0, False, False, ""
        for number, line in enumerate(self.lines, 1):
            if self.is_comment(line):
                out.append(line)
                continue
            continued = self.continues(line, going_on)
            if to_insert and not continued:
                out.append("      use zorvikrt_as_double" if self.fixed else "  use zorvikrt_as_double")
                self.declarations += 1
                to_insert = False
            # Strings and comments stay.
            pieces = re.split(r"('[^']*'|\"[^\"]*\"|!.*)", line)
            statement = pieces[0][6:].strip() if self.fixed else pieces[0].strip()
            for pattern, new in self.rules:
                statement = pattern.sub(new, statement)
            if not continued:
                in_declaration = ""
                if CONSTANT_STATEMENT.match(statement):
                    in_declaration = "data" if statement.lower().startswith("data") else "parameter"
                if HEAD.match(statement):
                    to_insert = depth == 0
                    depth += 1
                elif END.match(statement):
                    depth -= 1
            try:
                new = "".join(piece if index % 2 else self.code(piece, in_declaration) for index, piece in enumerate(pieces))
            except Fault as fault:
                raise Fault(f"line {number}: {fault}") from None
            going_on = re.sub(r"!.*", "", line).rstrip().endswith("&")
            out.append(new)
        return "\n".join(out) + "\n"


def main(arguments):
    if arguments in (["--help"], ["-h"]):
        print(__doc__.strip())
        return
    if len(arguments) != 2:
        print("zorvikrt-promote: SOURCE and OUTPUT are wanted; --help tells the rest", file=sys.stderr)
        sys.exit(2)
    path = Path(arguments[0])
    try:
        source = Source(path.read_text(encoding="utf-8"), path.suffix.lower() in (".f", ".for"))
        text = source.promoted()
        Path(arguments[1]).write_text(text, encoding="utf-8")
    except (Fault, OSError, UnicodeDecodeError) as error:
        sys.exit(f"zorvikrt-promote: {error}")
    print(f"{path.name}: {source.declarations} declarations, {source.constants} constants")


if __name__ == "__main__":
    main(sys.argv[1:])
