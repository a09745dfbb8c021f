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
from pathlib import Path

from exports_list import ARRAYS, AT_ADDRESS, FORTRAN_BY_VALUE, OPERANDS, RESULTS, WIDTHS, ListError, parse

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
