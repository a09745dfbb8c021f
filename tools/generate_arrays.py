#!/usr/bin/env python3
"""Makes the array forms of the entries: every numeric value entry, element by element.

usage: generate_arrays.py LIST OUTPUT_DIRECTORY

Reads src/frame/exports.list and writes:
  zorvikrt/array_entries.h   the C declarations
  array_entries.cpp          the routines
  array_entry_table.inc      one row for each, for the tests
Only the Python standard library is needed. Bad input gives one line with file and line number.
"""
import sys
from pathlib import Path

import generate_exports as exports

# Codes of numbers, and the type of an array element of each in C.
ELEMENTS = {
    "b": "int8_t", "w": "int16_t", "i": "int32_t", "k": "int64_t", "u": "uint64_t",
    "f": "float", "d": "double", "c": "zorvikrt_complex8", "z": "zorvikrt_complex16",
    "q": "zorvikrt_quad", "x": "zorvikrt_cquad",
}
# Entries that have kernels on lanes.
KERNELS = {"qadd", "qsub", "qmul", "qdiv", "sqrtl"}
NOTE = "Made from src/frame/exports.list by tools/generate_arrays.py; do not edit."


def numeric(entry):
    codes = entry.result + "".join(code for _, code in entry.operands)
    return entry.kind == "value" and entry.operands and all(code in ELEMENTS for code in codes)


def parameters(entry):
    out = ["ptrdiff_t elements"]
    for name, code in entry.operands:
        out += [f"const {ELEMENTS[code]}* {exports.c_name(name)}", f"ptrdiff_t inc{name}"]
    return out + [f"{ELEMENTS[entry.result]}* result", "ptrdiff_t incresult"]


def head(entry):
    return f"int zorvikrt_array_{entry.stem}({', '.join(parameters(entry))})"


def c_header(entries):
    out = [f"/* {NOTE}", " *", " * zorvikrt_array_<stem> puts what the value entry <stem> gives for element i of its operands into",
           " * element i of result, for i = 0 to elements - 1. A stride of 0 makes an operand a scalar. The result may",
           " * be an operand, element upon element. */",
           "#ifndef ZORVIKRT_ARRAY_ENTRIES_H", "#define ZORVIKRT_ARRAY_ENTRIES_H", ""]
    for entry in entries:
        out += ["/** " + "\n *  ".join(entry.doc) + " */", head(entry) + ";", ""]
    return out + ["#endif"]


def loop(entry):
    result = ELEMENTS[entry.result]
    types = ", ".join([result] + [ELEMENTS[code] for _, code in entry.operands])
    if entry.stem in KERNELS:
        return f"by_kernel<{types}>{{&kernels::{entry.stem}}}"
    if entry.result in exports.AT_ADDRESS:
        return f"by_address_of<{types}>(__zorvik_{entry.stem})"
    return f"by_value_of<{types}>(__zorvik_{entry.stem})"


def routines(entries):
    out = [f"// {NOTE}", "", '#include "arrays/each.hpp"', "", "using namespace zrt::arrays;", ""]
    for entry in entries:
        operands = [f"given<{ELEMENTS[code]}>{{{exports.c_name(name)}, inc{name}}}" for name, code in entry.operands]
        out += [f"ZRT_API {head(entry)} {{",
                f"  return each(elements, {loop(entry)}, result, incresult, {', '.join(operands)});", "}"]
    return out


def table(entries):
    """ZRT_ARRAY_ENTRY(stem, result code, operand codes), for the tests."""
    return [f"// {NOTE}"] + [
        f"ZRT_ARRAY_ENTRY({e.stem}, '{e.result}', \"{''.join(code for _, code in e.operands)}\")" for e in entries]


def main(arguments):
    if len(arguments) != 2:
        sys.exit("usage: generate_arrays.py LIST OUTPUT_DIRECTORY")
    try:
        entries, _ = exports.parse(arguments[0])
    except (exports.ListError, OSError, UnicodeDecodeError) as error:
        sys.exit(f"generate_arrays: {error}")
    chosen = [entry for entry in entries if numeric(entry)]
    output = Path(arguments[1])
    exports.write(output / "zorvikrt" / "array_entries.h", c_header(chosen))
    exports.write(output / "array_entries.cpp", routines(chosen))
    exports.write(output / "array_entry_table.inc", table(chosen))


if __name__ == "__main__":
    main(sys.argv[1:])
