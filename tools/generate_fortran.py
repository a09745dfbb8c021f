#!/usr/bin/env python3
"""Makes the Fortran module: the interfaces of all entries, and the operators and generic functions of
REAL*16 and COMPLEX*32 with the procedures behind them.

usage: generate_fortran.py LIST TEMPLATE OUTPUT

A line '!@ interfaces', '!@ generics' or '!@ procedures' of the template is replaced by what it names,
'!@ file NAME' by a file beside the template.
The tables below say for every operator and function which entry computes it. Only the Python standard
library is needed.
"""
import re
import sys
from pathlib import Path

from generate_exports import ListError, NOTE, fortran, fortran_lines, parse, write

# Kinds of operands: a letter as in the list of exports.
TYPES = {
    "i": "integer(c_int32_t)", "k": "integer(c_int64_t)", "w": "integer(c_int16_t)",
    "f": "real(c_float)", "d": "real(c_double)", "c": "complex(c_float_complex)",
    "z": "complex(c_double_complex)", "q": "type(real16)", "x": "type(complex32)", "l": "logical",
}

# Structure constructors: the parts are a component of each type, see the template.
def exact(form):
    return f"real16(real16_parts({form}, 0.0_c_double))"


def joined(re_part, im_part):
    return f"complex32(complex32_parts({re_part}, {im_part}))"


# How a kind becomes REAL*16 or COMPLEX*32: by an exact conversion.
ZERO = exact("0.0_c_double")
TO_REAL16 = {"q": "{0}", "d": exact("{0}"), "f": exact("real({0}, c_double)"), "i": exact("real({0}, c_double)"),
             "k": "whole({0})"}
TO_COMPLEX32 = {"x": "{0}", "z": joined(exact("real({0})"), exact("aimag({0})")),
                "c": joined(exact("real({0}, c_double)"), exact("real(aimag({0}), c_double)"))}
TO_COMPLEX32.update({code: joined(form, ZERO) for code, form in TO_REAL16.items()})
TO_REAL8 = {"d": "{0}", "f": "real({0}, c_double)", "i": "real({0}, c_double)"}

# Entries that take an operand of another kind as it is: operator, kinds -> entry, its kinds, exchanged.
MIXED = {}
for code, real8 in (("d", "d"), ("f", "d"), ("i", "d")):
    MIXED.update({
        ("+", "q" + code): ("qaddd", "qd", False), ("+", code + "q"): ("qaddd", "qd", True),
        ("-", "q" + code): ("qsubd", "qd", False), ("-", code + "q"): ("dsubq", "dq", False),
        ("*", "q" + code): ("qmuld", "qd", False), ("*", code + "q"): ("qmuld", "qd", True),
        ("/", "q" + code): ("qdivd", "qd", False), ("/", code + "q"): ("ddivq", "dq", False)})
MIXED.update({
    ("*", "qi"): ("qmuli", "qi", False), ("*", "iq"): ("qmuli", "qi", True),
    ("+", "qk"): ("qaddk", "qk", False), ("+", "kq"): ("qaddk", "qk", True),
    ("-", "qk"): ("qsubk", "qk", False), ("-", "kq"): ("ksubq", "kq", False),
    ("*", "qk"): ("qmulk", "qk", False), ("*", "kq"): ("qmulk", "qk", True),
    ("/", "qk"): ("qdivk", "qk", False), ("/", "kq"): ("kdivq", "kq", False),
    ("**", "qi"): ("powli", "qi", False), ("**", "qk"): ("powlk", "qk", False),
    ("**", "qd"): ("powld", "qd", False), ("**", "qf"): ("powld", "qd", False),
    ("**", "xi"): ("cqtoi", "xi", False)})
OPERATORS = {"+": "add", "-": "subtract", "*": "multiply", "/": "divide", "**": "power"}
REAL16 = {"+": "qadd", "-": "qsub", "*": "qmul", "/": "qdiv", "**": "powl"}
COMPLEX32 = {"*": "cqmul", "/": "cqdiv", "**": "cpowl"}
RELATIONS = {
    "==": ("eq", "{0} == equal"), "/=": ("ne", "{0} /= equal"),
    "<": ("lt", "{0} == less"), "<=": ("le", "({0} == less .or. {0} == equal)"),
    ">": ("gt", "{0} == greater"), ">=": ("ge", "({0} == greater .or. {0} == equal)"),
}

# Generic functions: name -> (kinds, result, entry).
UNARY = {
    "abs": "fabsl", "aint": "qint", "anint": "qnint", "sqrt": "sqrtl", "exp": "expl", "log": "logl",
    "log10": "log10l", "sin": "sinl", "cos": "cosl", "tan": "tanl", "cotan": "cotl", "asin": "asinl",
    "acos": "acosl", "atan": "atanl", "sinh": "sinhl", "cosh": "coshl", "tanh": "tanhl", "sind": "sindl",
    "cosd": "cosdl", "tand": "tandl", "asind": "asindl", "acosd": "acosdl", "atand": "atandl",
}
BINARY = {"sign": "copysignl", "dim": "fdiml", "mod": "fmodl", "atan2": "atan2l", "atan": "atan2l",
          "atan2d": "atan2dl"}
WHOLE = {"nint": ("i", "iqnint"), "jnint": ("i", "jiqnnt"), "inint": ("w", "iiqnnt"), "knint": ("k", "kiqnnt"),
         "floor": ("i", "ifloorl"), "ceiling": ("i", "iceill")}
COMPLEX_UNARY = {"sqrt": "csqrtl", "exp": "cexpl", "log": "clogl", "sin": "csinl", "cos": "ccosl"}

# Functions written out: name -> [(kinds, result, statements)].
WRITTEN = {
    "real16": [(code, "q", f"r = {TO_REAL16[code].format('a')}") for code in "dfik"]
    + [("dd", "q", "r = real16(real16_parts(a, b))")],
    "complex32": [(code, "x", f"r = {TO_COMPLEX32[code].format('a')}") for code in "qzcdfik"]
    + [(kinds, "x", f"r = {joined(TO_REAL16[kinds[0]].format('a'), TO_REAL16[kinds[1]].format('b'))}")
       for kinds in ("qq", "qd", "dq", "dd")],
    "cmplx": [("q", "x", f"r = {joined('a', ZERO)}"), ("qq", "x", f"r = {joined('a', 'b')}"),
              ("qd", "x", f"r = {joined('a', exact('b'))}"), ("dq", "x", f"r = {joined(exact('a'), 'b')}")],
    "dcmplx": [("q", "x", f"r = {joined('a', ZERO)}"), ("qq", "x", f"r = {joined('a', 'b')}")],
    "real": [("q", "f", "r = real(a%parts%hi, c_float)"), ("x", "q", "r = a%parts%re")],
    "dble": [("q", "d", "r = a%parts%hi"), ("x", "d", "r = a%parts%re%parts%hi")],
    "int": [("q", "i", "r = transfer(zorvik_q2ll(a), 0_c_int32_t)")],
    "aimag": [("x", "q", "r = a%parts%im")],
    "conjg": [("x", "x", "r%parts%re = a%parts%re; call zorvik_qneg(r%parts%im, a%parts%im)")],
    "scale": [("qi", "q", "call zorvik_ldexpl(r, a, b)")],
    "fraction": [("q", "q", "integer(c_int32_t) :: e; call zorvik_frexpl(r, a, e)")],
    "exponent": [("q", "i", "type(real16) :: m; call zorvik_frexpl(m, a, r)")],
    "qprod": [("dd", "q", "call zorvik_qprod(r, a, b)")],
    "epsilon": [("q", "q", f"r = {exact('epsilon(0.0_c_double)**2 / 2')}")],
    "tiny": [("q", "q", f"r = {exact('tiny(0.0_c_double)')}")],
    "huge": [("q", "q", "r = real16(real16_parts(huge(0.0_c_double), huge(0.0_c_double) * 2.0_c_double**(-54)))")],
}


class Module:
    def __init__(self):
        self.generics = {}     # generic -> specific names
        self.procedures = []

    def add(self, generic, name, arguments, result, statements, assignment=False):
        """One elemental procedure. Arguments are (name, kind); statements end with ';' or a new line."""
        self.generics.setdefault(generic, []).append(name)
        names = ", ".join(argument for argument, _ in arguments)
        if assignment:
            lines = [f"  elemental subroutine {name}({names})"]
            intents = ["out", "in"]
        else:
            lines = [f"  elemental function {name}({names}) result(r)"]
            intents = ["in"] * len(arguments)
        for (argument, kind), intent in zip(arguments, intents):
            lines.append(f"    {TYPES[kind]}, intent({intent}) :: {argument}")
        if not assignment:
            lines.append(f"    {TYPES[result]} :: r")
        for statement in statements.split(";"):
            lines += fortran_lines("    " + statement.strip())
        lines += [f"  end {'subroutine' if assignment else 'function'} {name}", ""]
        self.procedures += lines


def converted(kind, to, name):
    """The operand as the entry takes it."""
    if to == kind:
        return name
    return {"q": TO_REAL16, "x": TO_COMPLEX32, "d": TO_REAL8}[to][kind].format(name)


def call(entry, kinds, entry_kinds, exchanged=False):
    names = ["a", "b"][:len(kinds)]
    operands = list(zip(names, kinds))
    if exchanged:
        operands.reverse()
    arguments = [converted(kind, to, name) for (name, kind), to in zip(operands, entry_kinds)]
    return f"call zorvik_{entry}({', '.join(['r'] + arguments)})"


def add_operators(module):
    reals = ["qq"] + ["q" + code for code in "dfik"] + [code + "q" for code in "dfik"]
    complexes = ["xx"] + ["x" + code for code in "qzcdfik"] + [code + "x" for code in "qzcdfik"]
    complexes += ["qz", "zq", "qc", "cq"]
    for symbol, word in OPERATORS.items():
        generic = f"operator({symbol})"
        for kinds in reals:
            entry, entry_kinds, exchanged = MIXED.get((symbol, kinds), (REAL16[symbol], "qq", False))
            module.add(generic, f"{word}_{kinds}", list(zip("ab", kinds)), "q",
                       call(entry, kinds, entry_kinds, exchanged))
        for kinds in complexes:
            if (symbol, kinds) in MIXED:
                entry, entry_kinds, _ = MIXED[symbol, kinds]
                statements = call(entry, kinds, entry_kinds)
            elif symbol in COMPLEX32:
                statements = call(COMPLEX32[symbol], kinds, "xx")
            else:
                # No entry adds COMPLEX*32: part by part.
                x, y = (converted(kind, "x", name) for name, kind in zip("ab", kinds))
                statements = (f"type(complex32) :: x, y; x = {x}; y = {y}; "
                              f"call zorvik_{REAL16[symbol]}(r%parts%re, x%parts%re, y%parts%re); "
                              f"call zorvik_{REAL16[symbol]}(r%parts%im, x%parts%im, y%parts%im)")
            module.add(generic, f"{word}_{kinds}", list(zip("ab", kinds)), "x", statements)
    module.add("operator(-)", "negate_q", [("a", "q")], "q", "call zorvik_qneg(r, a)")
    module.add("operator(-)", "negate_x", [("a", "x")], "x",
               "call zorvik_qneg(r%parts%re, a%parts%re); call zorvik_qneg(r%parts%im, a%parts%im)")
    module.add("operator(+)", "plus_q", [("a", "q")], "q", "r = a")
    module.add("operator(+)", "plus_x", [("a", "x")], "x", "r = a")

    for symbol, (word, test) in RELATIONS.items():
        for kinds in reals:
            a, b = (converted(kind, "q", name) for name, kind in zip("ab", kinds))
            module.add(f"operator({symbol})", f"{word}_{kinds}", list(zip("ab", kinds)), "l",
                       f"integer(c_int32_t) :: order; order = zorvik_qcmp({a}, {b}); r = {test.format('order')}")
    for kinds in complexes:
        x, y = (converted(kind, "x", name) for name, kind in zip("ab", kinds))
        both = (f"type(complex32) :: x, y; x = {x}; y = {y}; "
                "r = zorvik_qcmp(x%parts%re, y%parts%re) == equal .and. zorvik_qcmp(x%parts%im, y%parts%im) == equal")
        module.add("operator(==)", f"eq_{kinds}", list(zip("ab", kinds)), "l", both)
        module.add("operator(/=)", f"ne_{kinds}", list(zip("ab", kinds)), "l", both + "; r = .not. r")


def add_assignments(module):
    forms = [("q" + code, f"a = {TO_REAL16[code].format('b')}") for code in "dfik"]
    forms += [("x" + code, f"a = {TO_COMPLEX32[code].format('b')}") for code in "qzcdfik"]
    forms += [("qx", "a = b%parts%re"), ("dq", "a = b%parts%hi"), ("fq", "a = real(b%parts%hi, c_float)"),
              ("iq", "a = transfer(zorvik_q2ll(b), 0_c_int32_t)"), ("kq", "a = zorvik_q2ll(b)"),
              ("zx", "a = cmplx(b%parts%re%parts%hi, b%parts%im%parts%hi, c_double_complex)"),
              ("cx", "a = cmplx(b%parts%re%parts%hi, b%parts%im%parts%hi, c_float_complex)")]
    for kinds, statements in forms:
        module.add("assignment(=)", f"assign_{kinds}", list(zip("ab", kinds)), None, statements, True)


def add_functions(module):
    for name, entry in UNARY.items():
        module.add(name, f"{name}_q", [("a", "q")], "q", call(entry, "q", "q"))
    for name, entry in BINARY.items():
        for kinds in ("qq", "qd", "dq"):
            module.add(name, f"{name}_{kinds}", list(zip("ab", kinds)), "q", call(entry, kinds, "qq"))
    for name, (result, entry) in WHOLE.items():
        value = f"zorvik_{entry}(a)"
        module.add(name, f"{name}_q", [("a", "q")], result,
                   f"r = int({value}, c_int16_t)" if result == "w" else f"r = {value}")
    module.add("abs", "abs_x", [("a", "x")], "q", call("cabsl", "x", "x"))
    for name, entry in COMPLEX_UNARY.items():
        module.add(name, f"{name}_x", [("a", "x")], "x", call(entry, "x", "x"))
    for name, order in (("max", "greater"), ("min", "less")):
        for kinds in ("qq", "qd", "dq"):
            a, b = (converted(kind, "q", n) for n, kind in zip("ab", kinds))
            module.add(name, f"{name}_{kinds}", list(zip("ab", kinds)), "q",
                       f"r = {a}; if (zorvik_qcmp({b}, r) == {order}) r = {b}")
        module.add(name, f"{name}_qqq", list(zip("abc", "qqq")), "q", f"r = {name}_qq({name}_qq(a, b), c)")
    for name, forms in WRITTEN.items():
        for kinds, result, statements in forms:
            module.add(name, f"{name}_of_{kinds}", list(zip("ab", kinds)), result, statements)
    # Written in the template.
    for name in ("sum_q", "product_q", "dot_product_q"):
        module.generics[name[:-2]] = [name]
    module.generics["real16"].append("real16_of_text")
    module.generics["complex32"].append("complex32_of_text")


def procedure_list(head, names):
    """Breaks a list of names at 100 columns."""
    lines, line = [], head
    for index, name in enumerate(names):
        part = name + ("," if index + 1 < len(names) else "")
        if len(line) + len(part) + 3 > 100:
            lines.append(line + " &")
            line = "       "
        line += " " + part
    return lines + [line]


def generics(module):
    out = []
    for generic, names in module.generics.items():
        out.append(f"  interface {generic}")
        out += procedure_list("    procedure", names)
        out.append(f"  end interface {generic}")
    return out + procedure_list("  private ::", sorted({n for names in module.generics.values() for n in names}))


def main(arguments):
    if len(arguments) != 3:
        sys.exit("usage: generate_fortran.py LIST TEMPLATE OUTPUT")
    list_path, template, output = arguments
    try:
        entries, _ = parse(list_path)
        text = Path(template).read_text(encoding="utf-8")
    except (ListError, OSError, UnicodeDecodeError) as error:
        sys.exit(f"generate_fortran: {error}")
    module = Module()
    add_operators(module)
    add_assignments(module)
    add_functions(module)
    stems = {e.stem for e in entries}
    called = set(re.findall(r"zorvik_(\w+)\(", "\n".join(module.procedures)))
    if called - stems:
        sys.exit(f"generate_fortran: {list_path} has no entry {', '.join(sorted(called - stems))}")
    parts = {"interfaces": fortran(entries), "generics": generics(module),
             "procedures": module.procedures}
    lines = [f"! {NOTE.replace('generate_exports.py', 'generate_fortran.py')}"]
    for line in text.splitlines():
        if line.startswith("!@"):
            name = line[2:].strip()
            if name.startswith("file "):
                try:
                    lines += (Path(template).parent / name[5:]).read_text(encoding="utf-8").splitlines()
                except OSError as error:
                    sys.exit(f"generate_fortran: {error}")
                continue
            if name not in parts:
                sys.exit(f"generate_fortran: {template}: unknown part '{name}'")
            lines += parts[name]
        else:
            lines.append(line)
    write(Path(output), lines)


if __name__ == "__main__":
    main(sys.argv[1:])
