#!/usr/bin/env python3
"""Makes everything that follows from the list of exports.

usage: generate_exports.py LIST OUTPUT_DIRECTORY

Reads src/frame/exports.list (its head tells the format) and writes:
  entries.hpp               C++ declarations of the value entries, for the library itself
  references.cpp            the reference entries
  zorvikrt/entries.h        the public C declarations
  zorvikrt.map              ELF version script
  zorvikrt.def              Windows module definition
  type_codes.inc            one row for each type code, for whatever works on operands at run time
  entry_table.inc           one row for each export, for tests and benchmarks
  entry_descriptions.inc    signature and documentation of the same rows, for programs that show them
  entry_bounds.inc          the error bounds, for the test that holds them
  entries.md                the reference of every entry
Only the Python standard library is needed. Bad input gives one line with file and line number.
"""
import re
import sys
import textwrap
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


NOTE = "Made from src/frame/exports.list by tools/generate_exports.py; do not edit."


def c_join(type_name, name):
    return type_name + name if type_name.endswith("*") else f"{type_name} {name}"


# Operand names that are words of C or C++ keep a trailing underscore in C.
def c_name(name):
    return name + "_" if name in ("long", "char", "register") else name


def entries_hpp(entries):
    """Value entries as the library defines them: a definition with another signature does not compile."""
    out = [f"// {NOTE}", "#pragma once", "", '#include "frame/entry.hpp"', ""]
    for e in entries:
        if e.kind == "data":
            continue
        operands = [f"{OPERANDS[code].cpp} {name}" for name, code in e.operands]
        result = RESULTS[e.result][0]
        if e.result in AT_ADDRESS:
            operands.insert(0, f"{result}* result")
            result = f"{result}*"
        out.append(f'extern "C" ZRT_EXPORTED {result} {e.symbol}({", ".join(operands)});')
    return out


def references_cpp(entries):
    out = [f"// {NOTE}", "", '#include "frame/entry.hpp"', "", "using namespace zrt;", ""]
    for e in entries:
        if not e.references:
            continue
        kinds = [OPERANDS[code].operand for _, code in e.operands]
        passed = [f"{kind}::passed" for kind in kinds]
        given = [f"{kind}::given {name}" for kind, (name, _) in zip(kinds, e.operands)]
        names = [name for name, _ in e.operands]
        cpp = RESULTS[e.result][0]
        address = e.result in AT_ADDRESS
        result = "void*" if address else cpp
        parameters = (["void*"] if address else []) + passed
        direct = "direct_" + e.stem
        out.append(f'extern "C" {result} {direct}({", ".join(parameters)}) ZRT_DIRECT({e.stem});')
        for reference in e.references:
            head = (["void* result"] if address else []) + given
            out.append(f'ZRT_REFERENCE({result}, {reference})({", ".join(head)}) {{')
            if address:
                out.append(f'  return forward_to<{", ".join([cpp, direct] + kinds)}>({", ".join(["result"] + names)});')
            else:
                out.append(f'  return forward<{", ".join([cpp, direct] + kinds)}>({", ".join(names)});')
            out.append("}")
        out.append("")
    return out


def c_value(e):
    operands = [c_join(OPERANDS[code].c, c_name(name)) for name, code in e.operands]
    result = RESULTS[e.result][1]
    if e.result in AT_ADDRESS:
        operands.insert(0, c_join(result + " *", "result"))
        result += " *"
    return c_join(result, e.symbol) + f'({", ".join(operands)});'


def c_reference(e, name):
    operands = [c_join(OPERANDS[code].c_reference, c_name(operand)) for operand, code in e.operands]
    result = RESULTS[e.result][1]
    if e.result in AT_ADDRESS:
        operands.insert(0, c_join(result + " *", "result"))
        result += " *"
    return c_join(result, "__zorvik_I_" + name) + f'({", ".join(operands)});'


def c_header(entries, titles):
    out = [f"/* {NOTE} */", "#ifndef ZORVIKRT_ENTRIES_H", "#define ZORVIKRT_ENTRIES_H", ""]
    family = None
    for e in entries:
        if e.family != family:
            family = e.family
            out += [f"/* --- {family}: {' '.join(titles[family])} --- */", ""]
        out += ["/** " + "\n *  ".join(e.doc) + " */"]
        if e.kind == "data":
            out.append(f'ZORVIKRT_DATA const {OPERANDS[e.result].c} {e.symbol};')
        else:
            out.append(c_value(e))
        for reference in e.references:
            out += [f"/** {e.symbol}, operands by address. */", c_reference(e, reference)]
        out.append("")
    out += ["#endif"]
    return out


def symbols(entries):
    names = []
    for e in entries:
        names.append(e.symbol)
        names += ["__zorvik_I_" + reference for reference in e.references]
    return names


SYMBOL_VERSION = "ZORVIKRT_1.0"    # of every name of the first release; a later name gets a node of its own


def version_script(entries):
    return [SYMBOL_VERSION + " {", "  global:"] + [f"    {name};" for name in symbols(entries)] + ["  local: *;", "};"]


def module_definition(entries):
    """With the number of each name, which is its place in the list: names are added at its end only."""
    out = [f"; {NOTE}", "LIBRARY zorvikrt.dll", "EXPORTS"]
    data = {e.symbol for e in entries if e.kind == "data"}
    out += [f"    {name} @{number}" + (" DATA" if name in data else "")
            for number, name in enumerate(symbols(entries), 1)]
    return out


def fortran_lines(text):
    """Breaks a statement at 100 columns."""
    lines = []
    while len(text) > 100:
        cut = text.rfind(",", 0, 97) + 1
        lines.append(text[:cut] + " &")
        text = "      " + text[cut:].lstrip()
    return lines + [text]


def fortran_interface(e, reference):
    name = "zorvik_i_" + reference if reference else "zorvik_" + e.stem.strip("_").lower()
    symbol = "__zorvik_I_" + reference if reference else e.symbol
    address = e.result in AT_ADDRESS
    # A Fortran name may not repeat the name of the procedure or of its result.
    names = [operand for operand, _ in e.operands]
    arguments = (["answer"] if address else []) + names
    function = e.result != "v" and not address
    # What only computes may be called from elemental procedures. A function that also writes an
    # operand, and raw memory access, are not pure.
    codes = [code for _, code in e.operands]
    pure = "m" not in codes and not (function and any(code in "AIQ" for code in codes))
    out = [] if reference else [f"  ! {line}" for line in e.doc]
    out += fortran_lines(f'  {"pure " if pure else ""}{"function" if function else "subroutine"} {name}'
                         f'({", ".join(arguments)})'
                         f' bind(c, name="{symbol}")' + (" result(answer)" if function else ""))
    out.append("    import")
    if function:
        out.append(f"    {RESULTS[e.result][2]} :: answer")
    elif address:
        out.append(f"    {RESULTS[e.result][2]}, intent(out) :: answer")
    for operand, code in e.operands:
        kind = OPERANDS[code]
        shape = "(*)" if code in ARRAYS else ""
        if code in FORTRAN_BY_VALUE or (kind.by_reference and not reference):
            out.append(f"    {kind.fortran}, value :: {operand}")
        elif kind.by_reference:
            out.append(f"    {kind.fortran}, intent(in) :: {operand}")
        else:
            out.append(f"    {kind.fortran} :: {operand}{shape}")
    out.append(f'  end {"function" if function else "subroutine"} {name}')
    return out


def fortran(entries):
    out = [f"! {NOTE}", "interface"]
    for e in entries:
        if e.kind == "data" or (e.kind == "plain" and e.stem != "_mvbits"):
            continue
        for reference in [None] + e.references:
            out += fortran_interface(e, reference)
    out.append("end interface")
    return out


def type_codes():
    """ZRT_TYPE(code, name, bytes, code of a part, parts, nature, whether it is the same in both entry forms)."""
    out = [f"// {NOTE}"]
    for code, kind in OPERANDS.items():
        width = WIDTHS[kind.part] * kind.parts if kind.parts else WIDTHS.get(code, "sizeof(void*)")
        out.append(f"ZRT_TYPE('{code}', \"{kind.type_name}\", {width}, '{kind.part or code}', {kind.parts}, "
                   f"{kind.nature}, {'false' if kind.by_reference else 'true'})")
    return out


def entry_table(entries):
    """ZRT_ENTRY(symbol, stem, family, result, operand codes, samples) and its siblings."""
    out = [f"// {NOTE}"]
    for e in entries:
        if e.kind == "data":
            out.append(f'ZRT_DATA({e.symbol}, {len(e.bits) * 4}, 0x{e.bits}u)')
            continue
        codes = "".join(code for _, code in e.operands)
        samples = ", ".join(
            "{%r, %r}" % e.sample[name] if name in e.sample else "{0, 0}" for name, _ in e.operands)
        tail = f'"{e.family}", \'{e.result}\', "{codes}", ({{{samples}}})'
        macro = "ZRT_VALUE_ENTRY" if e.kind == "value" else "ZRT_PLAIN_ENTRY"
        out.append(f'{macro}({e.symbol}, "{e.stem}", {tail})')
        for reference in e.references:
            out.append(f'ZRT_REFERENCE_ENTRY(__zorvik_I_{reference}, "I_{reference}", {tail})')
    return out


def entry_descriptions(entries):
    """ZRT_DESCRIPTION(operand names, documentation), row by row as entry_table has the entries."""
    out = [f"// {NOTE}"]
    for e in entries:
        if e.kind == "data":
            continue
        names = " ".join(name for name, _ in e.operands)
        text = "\\n".join(line.replace("\\", "\\\\").replace('"', '\\"') for line in e.doc)
        out += [f'ZRT_DESCRIPTION("{names}", "{text}")'] * (1 + len(e.references))
    return out


def entry_bounds(entries):
    """ZRT_BOUND(stem, units, least unit's value, ranges of the operands)."""
    return [f"// {NOTE}"] + [
        f'ZRT_BOUND("{e.stem}", {units!r}, {least!r}, '
        f'({{{", ".join("{%r, %r}" % ranges[name] for name, _ in e.operands)}}}))'
        for e in entries for units, least, ranges in e.bounds]


def bound_sentence(e):
    unit = "units of 2\\*\\*-106" if e.result in "qx" else "units in the last place"
    parts = []
    for units, least, ranges in e.bounds:
        where = ", ".join(f"{name} in [{low:g}, {high:g}]" for name, (low, high) in ranges.items())
        parts.append(f"{units:g} {unit}" + (f" of {least:g}, or of the result if that is larger," if least else "")
                     + f" for {where}")
        unit = "units"
    larger = ", of the larger part" if e.result in "czx" else ""
    return textwrap.wrap(f"Error{larger}: at most " + "; ".join(parts) + ".", 110) if parts else []


def markdown(entries, titles):
    def escaped(text):
        return re.sub(r"([*_])", r"\\\1", text)

    out = ["# Entries", "", f"<!-- {NOTE} -->", "",
           "Value entries carry the prefix `__zorvik_`, reference entries `__zorvik_I_`.", ""]
    family = None
    for e in entries:
        if e.family != family:
            family = e.family
            out += ["", f"## {family}", "", escaped(" ".join(titles[family])), ""]
        doc = [escaped(line) for line in e.doc]
        if e.kind == "data":
            out += [f"- `{e.stem}`: {' '.join(doc)}"]
            continue
        operands = "; ".join(f"{name}: {OPERANDS[code].name}" for name, code in e.operands)
        result = "" if e.result == "v" else f"; result: {OPERANDS[e.result].name}"
        references = "".join(f"; reference entry `{r}`" for r in ("I_" + name for name in e.references))
        out += [f"### `{e.stem}({', '.join(name for name, _ in e.operands)})`", "",
                escaped(operands + result) + references + ".", "", *doc, *bound_sentence(e), ""]
    return out


def write(path, lines):
    text = "\n".join(lines) + "\n"
    path.parent.mkdir(parents=True, exist_ok=True)
    if not path.exists() or path.read_text(encoding="utf-8") != text:
        path.write_text(text, encoding="utf-8")


def main(arguments):
    if len(arguments) != 2:
        sys.exit("usage: generate_exports.py LIST OUTPUT_DIRECTORY")
    try:
        entries, titles = parse(arguments[0])
    except (ListError, OSError, UnicodeDecodeError) as error:
        sys.exit(f"generate_exports: {error}")
    output = Path(arguments[1])
    write(output / "entries.hpp", entries_hpp(entries))
    write(output / "references.cpp", references_cpp(entries))
    write(output / "zorvikrt" / "entries.h", c_header(entries, titles))
    write(output / "zorvikrt.map", version_script(entries))
    write(output / "zorvikrt.def", module_definition(entries))
    write(output / "type_codes.inc", type_codes())
    write(output / "entry_table.inc", entry_table(entries))
    write(output / "entry_descriptions.inc", entry_descriptions(entries))
    write(output / "entry_bounds.inc", entry_bounds(entries))
    write(output / "entries.md", markdown(entries, titles))


if __name__ == "__main__":
    main(sys.argv[1:])
