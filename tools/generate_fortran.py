#!/usr/bin/env python3
"""Makes the Fortran module from its template: interface blocks, generic names and their wrappers.

usage: generate_fortran.py TEMPLATE INTERFACES OUTPUT

INTERFACES is what generate_exports.py has made from the list of exports. The tables below map each operator and
each generic name to the one entry that computes it for its operand types.
"""
import sys
from pathlib import Path

# One letter for each type of an operand or result.
TYPES = {
    "q": "type(real16)", "x": "type(complex32)", "d": "real(c_double)", "s": "real(c_float)",
    "i": "integer(c_int32_t)", "k": "integer(c_int64_t)", "z": "complex(c_double_complex)",
    "c": "complex(c_float_complex)", "l": "logical",
}
ZERO = "0.0_c_double"


def double(name):
    return f"real({name}, c_double)"


# An operand of each type as a REAL*16 and as a COMPLEX*32. INTEGER*8 needs an entry of its own.
AS_Q = {"q": "{0}", "d": "real16({0}, " + ZERO + ")", "s": "real16(" + double("{0}") + ", " + ZERO + ")",
        "i": "real16(" + double("{0}") + ", " + ZERO + ")"}
AS_X = {"x": "{0}", **{t: "complex32(" + form + ", real16_zero)" for t, form in AS_Q.items()},
        "z": "complex32(real16({0}%re, " + ZERO + "), real16({0}%im, " + ZERO + "))",
        "c": "complex32(real16(" + double("{0}%re") + ", " + ZERO + "), real16(" + double("{0}%im") + ", " + ZERO + "))"}

procedures = []   # (generic, name, operand types, result type, statements)


def define(generic, name, operands, result, *statements):
    procedures.append((generic, name, operands, result, statements))


def call(entry, *arguments):
    return f"call zorvik_{entry}({', '.join(('answer',) + arguments)})"


# --- Arithmetic of REAL*16 ---
# operator, name, entry of two REAL*16, entry and operand order for a REAL*8 and for an INTEGER*8 on either side
for sign, name, qq, qd, dq, qk, kq in [
        ("+", "add", "qadd", ("qaddd", "a", "b"), ("qaddd", "b", "a"), ("qaddk", "a", "b"), ("qaddk", "b", "a")),
        ("-", "sub", "qsub", ("qsubd", "a", "b"), ("dsubq", "a", "b"), ("qsubk", "a", "b"), ("ksubq", "a", "b")),
        ("*", "mul", "qmul", ("qmuld", "a", "b"), ("qmuld", "b", "a"), ("qmulk", "a", "b"), ("qmulk", "b", "a")),
        ("/", "div", "qdiv", ("qdivd", "a", "b"), ("ddivq", "a", "b"), ("qdivk", "a", "b"), ("kdivq", "a", "b"))]:
    generic = f"operator({sign})"
    define(generic, name, "qq", "q", call(qq, "a", "b"))
    for other in "dsi":
        widened = (lambda names, which: [double(n) if n == which and other != "d" else n for n in names])
        if other == "i" and sign == "*":
            define(generic, name, "qi", "q", call("qmuli", "a", "b"))
            define(generic, name, "iq", "q", call("qmuli", "b", "a"))
        else:
            define(generic, name, "q" + other, "q", call(qd[0], *widened(qd[1:], "b")))
            define(generic, name, other + "q", "q", call(dq[0], *widened(dq[1:], "a")))
    define(generic, name, "qk", "q", call(*qk))
    define(generic, name, "kq", "q", call(*kq))
define("operator(-)", "negated", "q", "q", call("qneg", "a"))
define("operator(+)", "itself", "q", "q", "answer = a")
define("operator(**)", "power", "qi", "q", call("powli", "a", "b"))
define("operator(**)", "power", "qk", "q", call("powlk", "a", "b"))
define("operator(**)", "power", "qq", "q", call("powl", "a", "b"))
define("operator(**)", "power", "qd", "q", call("powld", "a", "b"))
define("operator(**)", "power", "qs", "q", call("powld", "a", double("b")))
define("operator(**)", "power", "dq", "q", call("powl", AS_Q["d"].format("a"), "b"))
define("operator(**)", "power", "iq", "q", call("powl", AS_Q["i"].format("a"), "b"))

# Relations read the status word of the comparison: 256 less, 16384 equal, 0 greater, 17664 unordered.
for sign, name, test in [("==", "equal", "== 16384"), ("/=", "unequal", "/= 16384"), ("<", "less", "== 256"),
                         (">", "greater", "== 0")]:
    for left, right in ["qq", "qd", "dq", "qs", "sq", "qi", "iq"]:
        define(f"operator({sign})", name, left + right, "l",
               f"answer = zorvik_qcmp({AS_Q[left].format('a')}, {AS_Q[right].format('b')}) {test}")
for sign, name, strict in [("<=", "less_equal", 256), (">=", "greater_equal", 0)]:
    for left, right in ["qq", "qd", "dq", "qs", "sq", "qi", "iq"]:
        define(f"operator({sign})", name, left + right, "l",
               f"answer = any(zorvik_qcmp({AS_Q[left].format('a')}, {AS_Q[right].format('b')}) == [{strict}, 16384])")

# --- Functions of REAL*16 ---
for generic, entry in [("abs", "fabsl"), ("aint", "qint"), ("anint", "qnint"), ("sqrt", "sqrtl"), ("exp", "expl"),
                       ("log", "logl"), ("log10", "log10l"), ("sin", "sinl"), ("cos", "cosl"), ("tan", "tanl"),
                       ("cotan", "cotl"), ("asin", "asinl"), ("acos", "acosl"), ("atan", "atanl"),
                       ("sinh", "sinhl"), ("cosh", "coshl"), ("tanh", "tanhl"), ("sind", "sindl"),
                       ("cosd", "cosdl"), ("tand", "tandl"), ("asind", "asindl"), ("acosd", "acosdl"),
                       ("atand", "atandl")]:
    define(generic, generic, "q", "q", call(entry, "a"))
for generic, entry in [("sign", "copysignl"), ("dim", "fdiml"), ("mod", "fmodl"), ("atan2", "atan2l"),
                       ("atan2d", "atan2dl")]:
    define(generic, generic, "qq", "q", call(entry, "a", "b"))
for generic, entry in [("nint", "iqnint"), ("ceiling", "iceill"), ("floor", "ifloorl")]:
    define(generic, generic, "q", "i", f"answer = zorvik_{entry}(a)")
define("int", "int", "q", "i", "answer = int(zorvik_q2ll(a), c_int32_t)")
define("dble", "dble", "q", "d", "answer = a%hi")
define("real", "real", "q", "s", "answer = real(a%hi, c_float)")
define("max", "max", "qq", "q", "answer = a", "if (zorvik_qcompare(a, b) < 0) answer = b")
define("min", "min", "qq", "q", "answer = a", "if (zorvik_qcompare(a, b) > 0) answer = b")
define("epsilon", "epsilon", "q", "q", "answer = real16(2.0_c_double**(-105), 0.0_c_double)")
define("tiny", "tiny", "q", "q", "answer = real16(tiny(a%hi), 0.0_c_double)")
define("huge", "huge", "q", "q", "answer = real16(huge(a%hi), huge(a%hi) * 2.0_c_double**(-54))")

# --- Arithmetic and functions of COMPLEX*32 ---
for sign, name, entry in [("+", "add", "qadd"), ("-", "sub", "qsub"), ("*", "mul", "cqmul"), ("/", "div", "cqdiv")]:
    for left, right in ["xx", "xq", "qx", "xd", "dx", "xi", "ix", "xz", "zx"]:
        a, b = AS_X[left].format("a"), AS_X[right].format("b")
        if entry.startswith("c"):
            define(f"operator({sign})", name, left + right, "x", call(entry, a, b))
        else:
            statements = [f"call zorvik_{entry}(answer%re, left%re, right%re)",
                          f"call zorvik_{entry}(answer%im, left%im, right%im)"]
            define(f"operator({sign})", name, left + right, "x", "type(complex32) :: left, right",
                   f"left = {a}", f"right = {b}", *statements)
define("operator(-)", "negated", "x", "x", "call zorvik_qneg(answer%re, a%re)", "call zorvik_qneg(answer%im, a%im)")
define("operator(**)", "power", "xi", "x", call("cqtoi", "a", "b"))
for other in "xqd":
    define("operator(**)", "power", "x" + other, "x", call("cpowl", "a", AS_X[other].format("b")))
for sign, name, joint in [("==", "equal", ".and."), ("/=", "unequal", ".or.")]:
    define(f"operator({sign})", name, "xx", "l", f"answer = (a%re {sign} b%re) {joint} (a%im {sign} b%im)")
define("abs", "abs", "x", "q", call("cabsl", "a"))
for generic, entry in [("sqrt", "csqrtl"), ("exp", "cexpl"), ("log", "clogl"), ("sin", "csinl"), ("cos", "ccosl")]:
    define(generic, generic, "x", "x", call(entry, "a"))
define("real", "real", "x", "q", "answer = a%re")
define("aimag", "aimag", "x", "q", "answer = a%im")
define("conjg", "conjg", "x", "x", "answer%re = a%re", "call zorvik_qneg(answer%im, a%im)")
define("cmplx", "cmplx", "qq", "x", "answer = complex32(a, b)")
define("cmplx", "cmplx", "q", "x", "answer = complex32(a, real16_zero)")

# --- Conversions: constructors and assignment ---
for other in "dsi":
    if other != "d":
        define("real16", "real16_of", other, "q", "answer = " + AS_Q[other].format("a"))
define("real16", "real16_of", "d", "q", "answer = " + AS_Q["d"].format("a"))
define("real16", "real16_of", "k", "q", call("ll2q", "a"))
for left, right, statement in (
        [("q", t, "a = " + AS_Q[t].format("b")) for t in "dsi"] + [("q", "k", "call zorvik_ll2q(a, b)")]
        + [("d", "q", "a = b%hi"), ("s", "q", "a = real(b%hi, c_float)"), ("k", "q", "a = zorvik_q2ll(b)"),
           ("i", "q", "a = int(zorvik_q2ll(b), c_int32_t)")]
        + [("x", t, "a = " + AS_X[t].format("b")) for t in "qdsizc"]
        + [("z", "x", "a = cmplx(b%re%hi, b%im%hi, c_double)"), ("c", "x", "a = cmplx(b%re%hi, b%im%hi, c_float)")]):
    define("assignment(=)", "assign", left + right, "", statement)


def wrapper(generic, name, operands, result, statements):
    full = f"{name}_{operands}"
    names = "ab"[:len(operands)]
    kind = "function" if result else "subroutine"
    out = [f"  elemental {kind} {full}({', '.join(names)})" + (" result(answer)" if result else "")]
    for position, (operand, code) in enumerate(zip(names, operands)):
        intent = "inout" if not result and position == 0 else "in"
        out.append(f"    {TYPES[code]}, intent({intent}) :: {operand}")
    if result:
        out.append(f"    {TYPES[result]} :: answer")
    out += [f"    {statement}" for statement in statements]
    out.append(f"  end {kind} {full}")
    return out


def main(arguments):
    if len(arguments) != 3:
        sys.exit("usage: generate_fortran.py TEMPLATE INTERFACES OUTPUT")
    try:
        template = Path(arguments[0]).read_text(encoding="utf-8")
        interfaces = Path(arguments[1]).read_text(encoding="utf-8")
    except OSError as error:
        sys.exit(f"generate_fortran: {error}")
    generics = {}
    for generic, name, operands, _, _ in procedures:
        generics.setdefault(generic, []).append(f"{name}_{operands}")
    blocks = []
    for generic, names in generics.items():
        blocks.append(f"  interface {generic}")
        for at in range(0, len(names), 6):
            blocks.append(f"    procedure {', '.join(names[at:at + 6])}")
        blocks.append("  end interface")
    wrappers = []
    for procedure in procedures:
        wrappers += wrapper(*procedure) + [""]
    for mark, text in [("@INTERFACES@", interfaces), ("@GENERICS@", "\n".join(blocks)), ("@WRAPPERS@", "\n".join(wrappers))]:
        if template.count(mark) != 1:
            sys.exit(f"generate_fortran: {arguments[0]} has {template.count(mark)} lines {mark}, not one")
        template = template.replace(mark, text)
    Path(arguments[2]).write_text(template, encoding="utf-8")


if __name__ == "__main__":
    main(sys.argv[1:])
