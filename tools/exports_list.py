"""Reads src/frame/exports.list, whose head tells the format: the type codes and what parse() makes of the
lines, for the generators and the tests. Bad input raises ListError with file and line number.
"""
import re
from dataclasses import dataclass, field
from pathlib import Path

TOTAL = {"value": 306, "reference": 198, "plain": 4, "data": 7}


@dataclass(frozen=True)
class Kind:
    """What one type code is in memory, and how it looks in each language."""

    name: str            # Fortran or plain name, for documents
    type_name: str       # the short form that programs show
    nature: str          # how an operand is read, drawn and shown: `nature` of type_codes.hpp
    part: str            # code of the INTEGER or REAL that it is made of; its own where of one part
    parts: int           # how many of them; 0 for an address
    cpp: str             # parameter of a value entry inside the library
    operand: str         # operand kind of entry.hpp
    c: str               # by value in C
    c_reference: str     # in a reference entry in C
    fortran: str         # declaration in Fortran, by value
    by_reference: bool   # replaced by an address in a reference entry


def number(name, part, parts, cpp, operand, c, fortran):
    nature = "integer" if part in "bwiku" else "pair" if name in ("REAL*16", "COMPLEX*32") else "real"
    return Kind(name, name, nature, part, parts, cpp, "operand::" + operand, c, f"const {c} *", fortran, True)


def as_given(name, type_name, nature, cpp, c, fortran):
    """An operand that is the same in both entry forms."""
    return Kind(name, type_name, nature, "", 0, cpp, f"operand::as_given<{cpp}>", c, c, fortran, False)


OPERANDS = {
    "b": number("INTEGER*1", "b", 1, "std::int32_t", "integer1", "int8_t", "integer(c_int8_t)"),
    "w": number("INTEGER*2", "w", 1, "std::int32_t", "integer2", "int16_t", "integer(c_int16_t)"),
    "i": number("INTEGER*4", "i", 1, "std::int32_t", "integer4", "int32_t", "integer(c_int32_t)"),
    "k": number("INTEGER*8", "k", 1, "zrt::integer8", "integer8", "int64_t", "integer(c_int64_t)"),
    "u": number("unsigned INTEGER*8", "u", 1, "zrt::unsigned8", "unsigned8", "uint64_t", "integer(c_int64_t)"),
    "f": number("REAL*4", "f", 1, "zrt::real4", "real4", "float", "real(c_float)"),
    "d": number("REAL*8", "d", 1, "zrt::real8", "real8", "double", "real(c_double)"),
    "c": number("COMPLEX*8", "f", 2, "zrt::fcomplex", "complex8", "zorvikrt_complex8", "complex(c_float_complex)"),
    "z": number("COMPLEX*16", "d", 2, "zrt::dcomplex", "complex16", "zorvikrt_complex16", "complex(c_double_complex)"),
    "q": number("REAL*16", "d", 2, "zrt::quad", "real16", "zorvikrt_quad", "type(real16)"),
    "x": number("COMPLEX*32", "d", 4, "zrt::cquad", "complex32", "zorvikrt_cquad", "type(complex32)"),
    "a": as_given("CHARACTER, read", "CHARACTER", "text", "const char*", "const char *", "character(kind=c_char), intent(in)"),
    "A": as_given("CHARACTER, written", "CHARACTER", "target", "char*", "char *", "character(kind=c_char), intent(inout)"),
    "n": as_given("length", "INTEGER*4", "length", "std::int32_t", "int32_t", "integer(c_int32_t)"),
    "m": as_given("memory address", "memory", "memory", "std::uintptr_t", "uintptr_t", "integer(c_intptr_t)"),
    "L": as_given("address of a LOGICAL or null", "LOGICAL", "optional_integer", "const std::int32_t*", "const int32_t *", "integer(c_int32_t), intent(in), optional"),
    "P": as_given("address of an INTEGER*4, read", "INTEGER*4", "read_integer", "const std::int32_t*", "const int32_t *", "integer(c_int32_t), intent(in)"),
    "I": as_given("address of an INTEGER*4, written", "INTEGER*4", "written_integer", "std::int32_t*", "int32_t *", "integer(c_int32_t), intent(inout)"),
    "T": as_given("REAL*16 table", "REAL*16 table", "table", "const zrt::quad*", "const zorvikrt_quad *", "type(real16), intent(in)"),
    "Q": as_given("address of a REAL*16, written", "REAL*16", "written_pair", "zrt::quad*", "zorvikrt_quad *", "type(real16), intent(inout)"),
}
WIDTHS = {"b": 1, "w": 2, "i": 4, "k": 8, "u": 8, "f": 4, "d": 8, "n": 4}
ARRAYS = "aAT"                # Fortran assumed-size operands
FORTRAN_BY_VALUE = "nm"       # operands that are values in both forms

RESULTS = {
    "b": ("std::int32_t", "int32_t", "integer(c_int32_t)"),
    "w": ("std::int32_t", "int32_t", "integer(c_int32_t)"),
    "i": ("std::int32_t", "int32_t", "integer(c_int32_t)"),
    "k": ("std::int64_t", "int64_t", "integer(c_int64_t)"),
    "u": ("std::uint64_t", "uint64_t", "integer(c_int64_t)"),
    "f": ("zrt::real4_result", "float", "real(c_float)"),
    "d": ("zrt::real8_result", "double", "real(c_double)"),
    "c": ("zrt::complex8_result", "zorvikrt_complex8", "complex(c_float_complex)"),
    "v": ("void", "void", None),
    # Through the result address:
    "z": ("zrt::dcomplex", "zorvikrt_complex16", "complex(c_double_complex)"),
    "q": ("zrt::quad", "zorvikrt_quad", "type(real16)"),
    "x": ("zrt::cquad", "zorvikrt_cquad", "type(complex32)"),
}
AT_ADDRESS = "zqx"


@dataclass
class Entry:
    kind: str                     # value, plain, data
    stem: str
    result: str
    operands: list = field(default_factory=list)    # (name, code)
    references: list = field(default_factory=list)
    bits: str = ""
    doc: list = field(default_factory=list)
    sample: dict = field(default_factory=dict)      # operand name -> (low, high)
    bounds: list = field(default_factory=list)      # (bound, least unit's value, {operand name: (low, high)})
    family: str = ""
    line: int = 0

    @property
    def symbol(self):
        return "__zorvik_" + self.stem if self.kind == "value" else self.stem


class ListError(Exception):
    pass


def parse(path):
    entries, titles, seen = [], {}, {}
    family = None

    def fail(line, text):
        raise ListError(f"{path}:{line}: {text}")

    def new_name(line, name):
        if name in seen:
            fail(line, f"{name} stands already in line {seen[name]}")
        seen[name] = line

    def number_of(line, word):
        try:
            return float(word)
        except ValueError:
            fail(line, f"'{word}' is not a number")

    def read_range(line, text):
        """{operand name: (low, high)} of 'operand low high'."""
        match = re.fullmatch(r"\s*(\w+) (\S+) (\S+)\s*", text)
        if not match or match[1] not in [name for name, _ in entries[-1].operands]:
            fail(line, "a range is 'operand low high' over the entry's operands")
        low, high = number_of(line, match[2]), number_of(line, match[3])
        if not low < high:
            fail(line, f"the range of {match[1]} is empty")
        return {match[1]: (low, high)}

    for line, text in enumerate(Path(path).read_text(encoding="utf-8").splitlines(), 1):
        if not text.strip() or text.startswith("#"):
            continue
        if text.startswith("["):
            match = re.fullmatch(r"\[([a-z0-9_]+/[a-z0-9_]+)\]", text.rstrip())
            if not match:
                fail(line, "a family is '[room/family]'")
            family = match[1]
            titles[family] = []
            continue
        if family is None:
            fail(line, "an entry stands before the first family")
        if text[0].isspace():
            words = text.split()
            if not entries or entries[-1].family != family:
                titles[family].append(text.strip())
            elif words[0] == "sample:":
                for part in text.split(":", 1)[1].split(";"):
                    entries[-1].sample.update(read_range(line, part))
            elif words[0] == "bound:":
                for part in text.split(":", 1)[1].split(";"):
                    match = re.fullmatch(r"\s*(\S+)(?: at (\S+))? over (.*)", part)
                    if not match:
                        fail(line, "a bound is 'bound: units [at VALUE] over operand low high, ...; ...'")
                    ranges = {}
                    for one in match[3].split(","):
                        ranges.update(read_range(line, one))
                    if ranges.keys() != {name for name, _ in entries[-1].operands}:
                        fail(line, "a bound gives a range to each operand")
                    entries[-1].bounds.append((number_of(line, match[1]), number_of(line, match[2] or "0"), ranges))
            else:
                entries[-1].doc.append(text.strip())
            continue
        words = text.split()
        kind = words[0] if words[0] in ("plain", "data") else "value"
        if kind == "data":
            if len(words) != 4 or words[2] not in "fdi" or not re.fullmatch(r"[0-9A-F]{8}|[0-9A-F]{16}", words[3]):
                fail(line, "a constant is 'data NAME f|d|i BITS'")
            new_name(line, words[1])
            entries.append(Entry(kind, words[1], words[2], bits=words[3], family=family, line=line))
            continue
        rest = words[1:] if kind == "plain" else words
        if len(rest) < 3:
            fail(line, "an entry is 'stem result operand:code ... references'")
        stem, result = rest[0], rest[1]
        if result not in RESULTS:
            fail(line, f"unknown result code '{result}'")
        operands, references = [], []
        for word in rest[2:]:
            if ":" in word:
                name, code = word.split(":", 1)
                if code not in OPERANDS:
                    fail(line, f"unknown operand code '{code}'")
                operands.append((name, code))
            elif word.startswith("I_"):
                references.append(word[2:])
            elif word != "-":
                fail(line, f"'{word}' is neither an operand nor a reference entry")
        new_name(line, stem)
        for reference in references:
            new_name(line, "I_" + reference)
        entries.append(Entry(kind, stem, result, operands, references, family=family, line=line))

    for entry in entries:
        if not entry.doc:
            fail(entry.line, f"{entry.stem} has no documentation line below it")
    counts = {
        "value": sum(e.kind == "value" for e in entries),
        "reference": sum(len(e.references) for e in entries),
        "plain": sum(e.kind == "plain" for e in entries),
        "data": sum(e.kind == "data" for e in entries),
    }
    if counts != TOTAL:
        raise ListError(f"{path}: the list has {counts}, not {TOTAL}")
    return entries, titles
