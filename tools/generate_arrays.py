#!/usr/bin/env python3
"""Makes the array forms of the entries: every numeric value entry, element by element.

usage: generate_arrays.py LIST REAL_KERNELS FORTRAN_TEMPLATE OUTPUT_DIRECTORY

Reads src/frame/exports.list, src/arrays/real_kernels.inc and fortran/zorvikrt_arrays.f90.in and writes:
  zorvikrt/array_entries.h   the C declarations
  array_entries.cpp          the routines
  array_entry_table.inc      one row for each, for the tests
  zorvikrt_arrays.f90        the Fortran module: lines between '!@ both' and '!@ end' stand for both types, and
                             '!@ generic', '!@ interface' and '!@ routine' for what follows from names
Only the Python standard library is needed. Bad input gives one line with file and line number.
"""
import re
import sys
from pathlib import Path

import generate_exports as exports

# Codes of numbers, and the type of an array element of each in C.
ELEMENTS = {
    "b": "int8_t", "w": "int16_t", "i": "int32_t", "k": "int64_t", "u": "uint64_t",
    "f": "float", "d": "double", "c": "zorvikrt_complex8", "z": "zorvikrt_complex16",
    "q": "zorvikrt_quad", "x": "zorvikrt_cquad",
}
# Entries that have kernels on lanes: of REAL*16, and as the list of those of REAL*8 and REAL*4 names them.
QUAD_KERNELS = {"qadd", "qsub", "qmul", "qdiv", "sqrtl", "expl", "logl", "sinl", "cosl", "tanl", "atanl", "cqmul", "cqdiv"}
REAL_KERNEL = re.compile(r"ZRT_REAL_\w+\(\w+, (\w+),")
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


def loop(entry, kernels):
    result = ELEMENTS[entry.result]
    types = ", ".join([result] + [ELEMENTS[code] for _, code in entry.operands])
    if entry.stem in kernels:
        return f"by_kernel<{types}>{{&kernels::{entry.stem}}}"
    if entry.result in exports.AT_ADDRESS:
        return f"by_address_of<{types}>(__zorvik_{entry.stem})"
    return f"by_value_of<{types}>(__zorvik_{entry.stem})"


def routines(entries, kernels):
    out = [f"// {NOTE}", "", '#include "arrays/each.hpp"', "", "using namespace zrt::arrays;", ""]
    for entry in entries:
        operands = [f"given<{ELEMENTS[code]}>{{{exports.c_name(name)}, inc{name}}}" for name, code in entry.operands]
        out += [f"ZRT_API {head(entry)} {{",
                f"  return each(elements, {loop(entry, kernels)}, result, incresult, {', '.join(operands)});", "}"]
    return out


def table(entries):
    """ZRT_ARRAY_ENTRY(stem, result code, operand codes), for the tests."""
    return [f"// {NOTE}"] + [
        f"ZRT_ARRAY_ENTRY({e.stem}, '{e.result}', \"{''.join(code for _, code in e.operands)}\")" for e in entries]


# How Fortran declares an argument of a routine, in the interface of the C function and in the routine itself:
# c an option, t a scalar, r w arrays read and written, i o row numbers read and written, else a size.
DECLARATIONS = {
    "c": ("character(kind=c_char), value", "character, intent(in)", ""),
    "t": ("@t@, value", "@t@, intent(in)", ""),
    "r": ("@t@, intent(in)", "@t@, intent(in)", "(*)"),
    "w": ("@t@, intent(inout)", "@t@, intent(inout)", "(*)"),
    "i": ("integer(c_int32_t), intent(in)", "integer(c_int32_t), intent(in)", "(*)"),
    "o": ("integer(c_int32_t), intent(out)", "integer(c_int32_t), intent(out)", "(*)"),
    "": ("integer(size_kind), value", "integer, intent(in)", ""),
}


def fortran_arguments(words):
    return [(word.split(":") + [""])[:2] for word in words]


def fortran_interface(routine, words):
    arguments = fortran_arguments(words)
    names = ", ".join(name for name, _ in arguments)
    return [f"    function c_@p@{routine}({names}) &", f"        bind(c, name='zorvikrt_@p@{routine}') result(info)",
            "      import", *(f"      {DECLARATIONS[code][0]} :: {name}{DECLARATIONS[code][2]}" for name, code in arguments),
            "      integer(c_int) :: info", "    end function"]


def fortran_routine(routine, words):
    arguments = fortran_arguments(words)
    names = ", ".join(name for name, _ in arguments)
    matrices = {name[2:] for name, _ in arguments if name.startswith("ld")}

    def shape(name, code):
        return f"(ld{name}, *)" if name in matrices else DECLARATIONS[code][2]

    passed = ", ".join(name if code else f"int({name}, size_kind)" for name, code in arguments)
    return [f"  subroutine @p@_{routine}({names}, info)",
            *(f"    {DECLARATIONS[code][1]} :: {name}" for name, code in arguments if not code),
            *(f"    {DECLARATIONS[code][1]} :: {name}{shape(name, code)}" for name, code in arguments if code),
            "    integer, intent(out), optional :: info",
            *exports.fortran_lines(f"    call check('zorvik_{routine}', int(c_@p@{routine}({passed})), info)"),
            "  end subroutine"]


def fortran_module(path):
    """The template with its marked lines replaced."""
    makers = {"interface": fortran_interface, "routine": fortran_routine}
    out, block = [f"! {NOTE}"], None
    for number, line in enumerate(Path(path).read_text(encoding="utf-8").splitlines(), 1):
        mark = line.split()[1:] if line.startswith("!@") else None
        made = [line]
        if mark and mark[0] in makers and block is not None:
            made = makers[mark[0]](mark[1], mark[2:])
        elif mark and mark[0] == "generic" and block is None:
            made = [text for name in mark[1:] for text in
                    (f"  interface zorvik_{name}", f"    procedure q_{name}, x_{name}", "  end interface")]
        elif mark == ["both"] and block is None:
            block, made = [], []
        elif mark == ["end"] and block is not None:
            made = [text.replace("@t@", t).replace("@p@", p).replace("@u@", u)
                    for t, p, u in (("type(real16)", "q", ""), ("type(complex32)", "x", "u")) for text in block]
            block = None
        elif mark:
            raise exports.ListError(f"{path}:{number}: '{line}' has no place here")
        (out if block is None else block).extend(made)
    if block is not None:
        raise exports.ListError(f"{path}: '!@ both' without its '!@ end'")
    return out


def main(arguments):
    if len(arguments) != 4:
        sys.exit("usage: generate_arrays.py LIST REAL_KERNELS FORTRAN_TEMPLATE OUTPUT_DIRECTORY")
    try:
        entries, _ = exports.parse(arguments[0])
        kernels = QUAD_KERNELS | set(REAL_KERNEL.findall(Path(arguments[1]).read_text(encoding="utf-8")))
        module = fortran_module(arguments[2])
    except (exports.ListError, OSError, UnicodeDecodeError) as error:
        sys.exit(f"generate_arrays: {error}")
    chosen = [entry for entry in entries if numeric(entry)]
    output = Path(arguments[3])
    exports.write(output / "zorvikrt" / "array_entries.h", c_header(chosen))
    exports.write(output / "array_entries.cpp", routines(chosen, kernels))
    exports.write(output / "array_entry_table.inc", table(chosen))
    exports.write(output / "zorvikrt_arrays.f90", module)


if __name__ == "__main__":
    main(sys.argv[1:])
