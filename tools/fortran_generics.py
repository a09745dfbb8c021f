"""The operators, assignments and generic functions of REAL*16 and COMPLEX*32, as tables: which entry of the
library computes each of them, for operands of which kinds.
"""
from itertools import product

from generate_exports import fortran_lines

# Kinds of operands: a letter as in the list of exports.
TYPES = {
    "b": "integer(c_int8_t)", "w": "integer(c_int16_t)", "i": "integer(c_int32_t)", "k": "integer(c_int64_t)",
    "f": "real(c_float)", "d": "real(c_double)", "c": "complex(c_float_complex)",
    "z": "complex(c_double_complex)", "q": "type(real16)", "x": "type(complex32)", "l": "logical",
}
REAL_KINDS = "dfikwb"  # that stand beside a REAL*16
COMPLEX_KINDS = "qzc" + REAL_KINDS  # that stand beside a COMPLEX*32


# Structure constructors: the parts are a component of each type, see the template.
def exact(form):
    return f"real16(real16_parts({form}, 0.0_c_double))"


def joined(re_part, im_part):
    return f"complex32(complex32_parts({re_part}, {im_part}))"


# How a kind becomes REAL*16 or COMPLEX*32, exactly, or another default kind.
ZERO = exact("0.0_c_double")
TO_REAL16 = {"q": "{0}", "d": exact("{0}"), "k": "whole({0})"}
TO_REAL16.update({code: exact("real({0}, c_double)") for code in "fiwb"})
TO_COMPLEX32 = {"x": "{0}", "z": joined(exact("real({0})"), exact("aimag({0})")),
                "c": joined(exact("real({0}, c_double)"), exact("real(aimag({0}), c_double)"))}
TO_COMPLEX32.update({code: joined(form, ZERO) for code, form in TO_REAL16.items()})
TO_REAL8 = {"d": "{0}", **{code: "real({0}, c_double)" for code in "fiwb"}}
TO_INTEGER4 = {"i": "{0}", "w": "int({0}, c_int32_t)", "b": "int({0}, c_int32_t)"}
CONVERSIONS = {"q": TO_REAL16, "x": TO_COMPLEX32, "d": TO_REAL8, "i": TO_INTEGER4}

OPERATORS = {"+": "add", "-": "subtract", "*": "multiply", "/": "divide", "**": "power"}
REAL16 = {"+": "qadd", "-": "qsub", "*": "qmul", "/": "qdiv", "**": "powl"}
COMPLEX32 = {"*": "cqmul", "/": "cqdiv", "**": "cpowl"}

# Entries that take an operand of another kind: operator, kinds -> entry, its kinds, exchanged.
MIXED = {}
for _code in "dfiwb":
    MIXED.update({
        ("+", "q" + _code): ("qaddd", "qd", False), ("+", _code + "q"): ("qaddd", "qd", True),
        ("-", "q" + _code): ("qsubd", "qd", False), ("-", _code + "q"): ("dsubq", "dq", False),
        ("*", "q" + _code): ("qmuld", "qd", False), ("*", _code + "q"): ("qmuld", "qd", True),
        ("/", "q" + _code): ("qdivd", "qd", False), ("/", _code + "q"): ("ddivq", "dq", False)})
for _code in "iwb":
    MIXED.update({
        ("*", "q" + _code): ("qmuli", "qi", False), ("*", _code + "q"): ("qmuli", "qi", True),
        ("**", "q" + _code): ("powli", "qi", False), ("**", "x" + _code): ("cqtoi", "xi", False)})
MIXED.update({
    ("+", "qk"): ("qaddk", "qk", False), ("+", "kq"): ("qaddk", "qk", True),
    ("-", "qk"): ("qsubk", "qk", False), ("-", "kq"): ("ksubq", "kq", False),
    ("*", "qk"): ("qmulk", "qk", False), ("*", "kq"): ("qmulk", "qk", True),
    ("/", "qk"): ("qdivk", "qk", False), ("/", "kq"): ("kdivq", "kq", False),
    ("**", "qk"): ("powlk", "qk", False), ("**", "qd"): ("powld", "qd", False), ("**", "qf"): ("powld", "qd", False)})
RELATIONS = {
    "==": ("eq", "{0} == equal"), "/=": ("ne", "{0} /= equal"),
    "<": ("lt", "{0} == less"), "<=": ("le", "({0} == less .or. {0} == equal)"),
    ">": ("gt", "{0} == greater"), ">=": ("ge", "({0} == greater .or. {0} == equal)"),
}

# Generic functions of one and of two REAL*16: name -> entry.
UNARY = {
    "abs": "fabsl", "aint": "qint", "anint": "qnint", "sqrt": "sqrtl", "exp": "expl", "log": "logl",
    "log10": "log10l", "sin": "sinl", "cos": "cosl", "tan": "tanl", "cotan": "cotl", "asin": "asinl",
    "acos": "acosl", "atan": "atanl", "sinh": "sinhl", "cosh": "coshl", "tanh": "tanhl", "sind": "sindl",
    "cosd": "cosdl", "tand": "tandl", "asind": "asindl", "acosd": "acosdl", "atand": "atandl",
}
BINARY = {"sign": "copysignl", "dim": "fdiml", "mod": "fmodl", "atan2": "atan2l", "atan": "atan2l",
          "atan2d": "atan2dl"}
BINARY_WRITTEN = {"modulo": "modulo_q", "hypot": "hypot_q"}  # in functions.f90
BINARY_KINDS = ["qq"] + ["q" + code for code in "dfi"] + [code + "q" for code in "dfi"]
WHOLE = {"nint": ("i", "iqnint"), "jnint": ("i", "jiqnnt"), "inint": ("w", "iiqnnt"), "knint": ("k", "kiqnnt"),
         "floor": ("i", "ifloorl"), "ceiling": ("i", "iceill")}
COMPLEX_UNARY = {"sqrt": "csqrtl", "exp": "cexpl", "log": "clogl", "sin": "csinl", "cos": "ccosl"}
# max and min: kinds of two, three and four operands, at least one of them REAL*16; from five on all are.
MANY_KINDS = (["qq"] + ["q" + code for code in REAL_KINDS] + [code + "q" for code in REAL_KINDS]
              + ["".join(kinds) for kinds in product("qdfi", repeat=3) if "q" in kinds]
              + ["".join(kinds) for kinds in product("qd", repeat=4) if "q" in kinds])
MOST = 16

# Functions written out: name -> [(kinds, result, statements)]. The second operand of these is a kind.
TO_KIND = ("real", "int", "nint", "floor", "ceiling")
WRITTEN = {
    "real16": [(code, "q", f"r = {TO_REAL16[code].format('a')}") for code in REAL_KINDS]
    + [("dd", "q", "r = real16(real16_parts(a, b))")],
    "complex32": [(code, "x", f"r = {TO_COMPLEX32[code].format('a')}") for code in COMPLEX_KINDS]
    + [(kinds, "x", f"r = {joined(TO_REAL16[kinds[0]].format('a'), TO_REAL16[kinds[1]].format('b'))}")
       for kinds in ("qq", "qd", "dq", "dd")],
    "cmplx": [("q", "x", f"r = {joined('a', ZERO)}")]
    + [(kinds, "x", f"r = {joined(TO_REAL16[kinds[0]].format('a'), TO_REAL16[kinds[1]].format('b'))}")
       for kinds in BINARY_KINDS],
    "real": [("q", "f", "r = real(a%parts%hi, c_float)"), ("x", "q", "r = a%parts%re"),
             ("qi", "d", "r = a%parts%hi; if (kind == c_float) r = real(r, c_float)"),
             ("xi", "d", "r = a%parts%re%parts%hi; if (kind == c_float) r = real(r, c_float)")],
    "sngl": [("q", "f", "r = real(a%parts%hi, c_float)")],
    "dble": [("q", "d", "r = a%parts%hi"), ("x", "d", "r = a%parts%re%parts%hi")],
    "int": [("q", "i", "r = transfer(zorvik_q2ll(a), 0_c_int32_t)"),
            ("qi", "k", "r = zorvik_q2ll(a); if (kind < c_int64_t) r = transfer(r, 0_c_int32_t)")],
    "nint": [("qi", "k", "r = zorvik_kiqnnt(a); if (kind < c_int64_t) r = zorvik_iqnint(a)")],
    "floor": [("qi", "k", "type(real16) :: whole_part; call zorvik_floorl(whole_part, a); "
               "r = zorvik_q2ll(whole_part); if (kind < c_int64_t) r = zorvik_ifloorl(a)")],
    "ceiling": [("qi", "k", "type(real16) :: whole_part; call zorvik_ceill(whole_part, a); "
                 "r = zorvik_q2ll(whole_part); if (kind < c_int64_t) r = zorvik_iceill(a)")],
    "aimag": [("x", "q", "r = a%parts%im")],
    "conjg": [("x", "x", "r%parts%re = a%parts%re; call zorvik_qneg(r%parts%im, a%parts%im)")],
    "scale": [("qi", "q", "call zorvik_ldexpl(r, a, b)"), ("qk", "q", "call zorvik_ldexpl(r, a, int(b, c_int32_t))")],
    "fraction": [("q", "q", "integer(c_int32_t) :: e; call zorvik_frexpl(r, a, e)")],
    "exponent": [("q", "i", "type(real16) :: m; call zorvik_frexpl(m, a, r)")],
    "set_exponent": [("qi", "q", "type(real16) :: m; integer(c_int32_t) :: e; call zorvik_frexpl(m, a, e); "
                      "call zorvik_ldexpl(r, m, b)")],
    "qprod": [("dd", "q", "call zorvik_qprod(r, a, b)")],
    "isnan": [("q", "l", "r = isnan(a%parts%hi)")],
    "ieee_is_nan": [("q", "l", "r = isnan(a%parts%hi)")],
    "ieee_is_finite": [("q", "l", "r = abs(a%parts%hi) <= huge(a%parts%hi)")],
}

# Inquiries, of arrays too: name -> [(kind, result, statement)].
INQUIRIES = {
    "epsilon": [("q", "q", f"r = {exact('2.0_c_double**(-105)')}")],
    "tiny": [("q", "q", f"r = {exact('2.0_c_double**(-969)')}")],
    "huge": [("q", "q", "r = real16(real16_parts(huge(0.0_c_double), huge(0.0_c_double) * 2.0_c_double**(-54)))")],
    "radix": [("q", "i", "r = 2")], "digits": [("q", "i", "r = 106")],
    "minexponent": [("q", "i", "r = -968")], "maxexponent": [("q", "i", "r = 1024")],
    "precision": [(code, "i", "r = 31") for code in "qx"], "range": [(code, "i", "r = 291") for code in "qx"],
}

# The names that FORTRAN 77 has for one type: of REAL*16 where the generic has it, else of COMPLEX*32.
NAMES_77 = {name: generic for generic, names in {
    "abs": "dabs", "aint": "dint", "anint": "dnint", "sqrt": "dsqrt", "exp": "dexp", "log": "dlog alog",
    "log10": "dlog10 alog10", "sin": "dsin", "cos": "dcos", "tan": "dtan", "asin": "dasin", "acos": "dacos",
    "atan": "datan", "sinh": "dsinh", "cosh": "dcosh", "tanh": "dtanh", "sign": "dsign", "dim": "ddim",
    "mod": "dmod amod", "atan2": "datan2", "max": "dmax1 amax1", "min": "dmin1 amin1", "int": "idint ifix",
    "nint": "idnint", "cmplx": "dcmplx",
}.items() for name in names.split()}
COMPLEX_NAMES_77 = {name: generic for generic, names in {
    "abs": "cabs cdabs", "sqrt": "csqrt cdsqrt", "exp": "cexp cdexp", "log": "clog cdlog", "sin": "csin cdsin",
    "cos": "ccos cdcos", "conjg": "dconjg", "aimag": "dimag", "real": "dreal",
}.items() for name in names.split()}


def converted(kind, to, name):
    """The operand as the entry takes it."""
    return name if to == kind else CONVERSIONS[to][kind].format(name)


def call(entry, kinds, entry_kinds, exchanged=False):
    operands = list(zip("ab", kinds))
    if exchanged:
        operands.reverse()
    arguments = [converted(kind, to, name) for (name, kind), to in zip(operands, entry_kinds)]
    return f"call zorvik_{entry}({', '.join(['r'] + arguments)})"


class Module:
    """What the module consists of: the specific procedures of every generic name, and their text."""

    def __init__(self):
        self.generics = {}     # generic -> [(specific name, operands, result, how)]
        self.procedures = []
        self.helpers = set()   # procedures without a generic name

    def name(self, generic, specific, operands, result, how):
        self.generics.setdefault(generic, []).append((specific, operands, result, how))

    def add(self, generic, name, kinds, result, statements, assignment=False, how=None):
        """One elemental procedure of operands a, b, ... Statements end with ';'."""
        if how is None:
            calls = [part.split("(")[0] for part in statements.split("zorvik_")[1:]]
            how = " ".join(f"`{part}`" for part in dict.fromkeys(calls) if part != "ll2q") or "—"
        self.name(generic, name, kinds, result, how)
        arguments = list("abcdefghijklmnop"[:len(kinds)])
        if (generic in TO_KIND and len(kinds) == 2) or (generic == "cmplx" and len(kinds) == 3):
            arguments[-1] = "kind"
        if assignment:
            lines = [f"  elemental subroutine {name}({', '.join(arguments)})"]
            intents = ["out", "in"]
        else:
            lines = [f"  elemental function {name}({', '.join(arguments)}) result(r)"]
            intents = ["in"] * len(kinds)
        for argument, kind, intent in zip(arguments, kinds, intents):
            lines.append(f"    {TYPES[kind]}, intent({intent}) :: {argument}")
        if not assignment:
            lines.append(f"    {TYPES[result]} :: r")
        for statement in statements.split(";"):
            lines += fortran_lines("    " + statement.strip())
        lines += [f"  end {'subroutine' if assignment else 'function'} {name}", ""]
        self.procedures += lines

    def add_inquiry(self, generic, kind, result, statement):
        name = f"{generic}_of_{kind}"
        self.name(generic, name, f"{kind}(..)", result, "—")
        self.procedures += [f"  pure function {name}(a) result(r)", f"    {TYPES[kind]}, intent(in) :: a(..)",
                            f"    {TYPES[result]} :: r", f"    {statement}", f"  end function {name}", ""]


def add_operators(module):
    reals = ["qq"] + ["q" + code for code in REAL_KINDS] + [code + "q" for code in REAL_KINDS]
    complexes = ["xx"] + ["x" + code for code in COMPLEX_KINDS] + [code + "x" for code in COMPLEX_KINDS]
    complexes += ["qz", "zq", "qc", "cq"]
    for symbol, word in OPERATORS.items():
        generic = f"operator({symbol})"
        for kinds in reals:
            entry, entry_kinds, exchanged = MIXED.get((symbol, kinds), (REAL16[symbol], "qq", False))
            module.add(generic, f"{word}_{kinds}", kinds, "q", call(entry, kinds, entry_kinds, exchanged))
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
            module.add(generic, f"{word}_{kinds}", kinds, "x", statements)
    module.add("operator(-)", "negate_q", "q", "q", "call zorvik_qneg(r, a)")
    module.add("operator(-)", "negate_x", "x", "x",
               "call zorvik_qneg(r%parts%re, a%parts%re); call zorvik_qneg(r%parts%im, a%parts%im)")
    module.add("operator(+)", "plus_q", "q", "q", "r = a")
    module.add("operator(+)", "plus_x", "x", "x", "r = a")

    for symbol, (word, test) in RELATIONS.items():
        for kinds in reals:
            a, b = (converted(kind, "q", name) for name, kind in zip("ab", kinds))
            module.add(f"operator({symbol})", f"{word}_{kinds}", kinds, "l",
                       f"integer(c_int32_t) :: order; order = zorvik_qcmp({a}, {b}); r = {test.format('order')}")
    for kinds in complexes:
        x, y = (converted(kind, "x", name) for name, kind in zip("ab", kinds))
        both = (f"type(complex32) :: x, y; x = {x}; y = {y}; "
                "r = zorvik_qcmp(x%parts%re, y%parts%re) == equal .and. "
                "zorvik_qcmp(x%parts%im, y%parts%im) == equal")
        module.add("operator(==)", f"eq_{kinds}", kinds, "l", both)
        module.add("operator(/=)", f"ne_{kinds}", kinds, "l", both + "; r = .not. r")


def add_assignments(module):
    forms = [("q" + code, f"a = {TO_REAL16[code].format('b')}") for code in REAL_KINDS]
    forms += [("x" + code, f"a = {TO_COMPLEX32[code].format('b')}") for code in COMPLEX_KINDS]
    forms += [("qx", "a = b%parts%re"), ("dq", "a = b%parts%hi"), ("fq", "a = real(b%parts%hi, c_float)"),
              ("iq", "a = transfer(zorvik_q2ll(b), 0_c_int32_t)"), ("kq", "a = zorvik_q2ll(b)"),
              ("wq", "a = transfer(zorvik_q2ll(b), 0_c_int16_t)"), ("bq", "a = transfer(zorvik_q2ll(b), 0_c_int8_t)"),
              ("zx", "a = cmplx(b%parts%re%parts%hi, b%parts%im%parts%hi, c_double_complex)"),
              ("cx", "a = cmplx(b%parts%re%parts%hi, b%parts%im%parts%hi, c_float_complex)")]
    for kinds, statements in forms:
        module.add("assignment(=)", f"assign_{kinds}", kinds, None, statements, True)


def add_functions(module):
    for name, entry in UNARY.items():
        module.add(name, f"{name}_q", "q", "q", call(entry, "q", "q"))
    for name, entry in BINARY.items():
        for kinds in BINARY_KINDS:
            module.add(name, f"{name}_{kinds}", kinds, "q", call(entry, kinds, "qq"))
    for name, function in BINARY_WRITTEN.items():
        for kinds in BINARY_KINDS[1:]:
            a, b = (converted(kind, "q", operand) for operand, kind in zip("ab", kinds))
            module.add(name, f"{name}_{kinds}", kinds, "q", f"r = {function}({a}, {b})", how="as for two REAL\\*16")
    for name, (result, entry) in WHOLE.items():
        value = f"zorvik_{entry}(a)"
        module.add(name, f"{name}_q", "q", result, f"r = int({value}, c_int16_t)" if result == "w" else f"r = {value}")
    module.add("abs", "abs_x", "x", "q", call("cabsl", "x", "x"))
    for name, entry in COMPLEX_UNARY.items():
        module.add(name, f"{name}_x", "x", "x", call(entry, "x", "x"))
    for name, order in (("max", "greater"), ("min", "less")):
        add_many(module, name, order)
        # gfortran keeps no reduction but that of an operator in a module.
        module.name(f"operator(.{name}.)", f"{name}_qq", "qq", "q", "`qcmp`")
    for name, forms in WRITTEN.items():
        for kinds, result, statements in forms:
            module.add(name, f"{name}_of_{kinds}", kinds, result, statements)
    for name, forms in INQUIRIES.items():
        for form in forms:
            module.add_inquiry(name, *form)


def add_as_double(module):
    """What the module zorvikrt_as_double has instead of the module's own: conversions to REAL*16."""
    for code in REAL_KINDS + "qx":
        part = {"q": "a", "x": "real_of(a)"}.get(code, "real16(a)")
        module.add("dble", f"dble_{code}", code, "q", f"r = {part}")
        module.add("real", f"real_{code}i", code + "i", "q", f"r = {part}")
    for code in "iwkb":
        module.add("dfloat", f"dfloat_{code}", code, "q", "r = real16(a)")
    module.add("real", "real_q", "q", "f", "r = real_of(a)")
    module.add("real", "real_x", "x", "q", "r = real_of(a)")
    for kinds in BINARY_KINDS:
        module.add("cmplx", f"cmplx_{kinds}_kind", kinds + "i", "x", "r = cmplx(a, b)")


def add_many(module, name, order):
    """max or min: the operand that follows is taken where it stands in the order to the one so far."""
    def step(operand):
        return f"if (zorvik_qcmp({operand}, r) == {order}) r = {operand}"
    for kinds in MANY_KINDS:
        operands = [converted(kind, "q", operand) for operand, kind in zip("abcd", kinds)]
        module.add(name, f"{name}_{kinds}", kinds, "q", "; ".join([f"r = {operands[0]}"] + [step(o) for o in operands[1:]]))
    # From five operands on.
    letters = "abcdefghijklmnop"[:MOST]
    needed, optional = letters[:5], letters[5:]
    module.name(name, f"{name}_many", "q q q q q …", "q", "`qcmp`")
    lines = [f"  elemental function {name}_many({', '.join(letters)}) result(r)",
             f"    type(real16), intent(in) :: {', '.join(needed)}",
             f"    type(real16), intent(in), optional :: {', '.join(optional)}",
             "    type(real16) :: r", f"    r = {name}_qqqq(a, b, c, d)", "    " + step("e")]
    for letter in optional:
        lines += [f"    if (.not. present({letter})) return", "    " + step(letter)]
    module.procedures += lines + [f"  end function {name}_many", ""]


def add_names_77(module):
    for names, first in ((NAMES_77, "q"), (COMPLEX_NAMES_77, "x")):
        for name, generic in names.items():
            forms = module.generics[generic]
            # A kind is no operand of the old names.
            left_out = {"idint": "qi", "ifix": "qi", "idnint": "qi", "dreal": "xi"}.get(name)
            module.generics[name] = [form for form in forms if form[1] != left_out
                                     and (first != "x" or form[1][0] == "x") and (first != "q" or form[1] != "x")]
