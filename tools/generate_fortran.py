#!/usr/bin/env python3
"""Makes the Fortran module, the interfaces of all entries with the operators and generic functions of REAL*16 and
COMPLEX*32 on top of them; and the page that tells of every generic name what it calls.

usage: generate_fortran.py LIST TEMPLATE MODULE PAGE

A line '!@ interfaces', '!@ generics' or '!@ procedures' of the template is replaced by what it names, as are
'!@ generics as_double' and '!@ procedures as_double' for the second module, and '!@ file NAME' by a file beside the
template. Lines between '!@ both' and '!@ end' stand for both types: @t@ is the type, @k@ its letter, @conjugate@ what
conjugates it. In a file the line

    !@ GENERIC | OPERANDS | RESULT | HOW

gives the procedure that follows a generic name; HOW goes to the page. Only the Python standard library is needed.
"""
import re
import sys
from pathlib import Path

from fortran_arrays import add_arrays
from fortran_generics import (COMPLEX_NAMES_77, NAMES_77, TYPES, Module, add_as_double, add_assignments,
                              add_functions, add_names_77, add_operators)
from exports_list import ListError, parse
from generate_exports import NOTE, fortran, write

PROCEDURE = re.compile(r"^ *(?!end )(?:\w+ )*(?:function|subroutine) (\w+)")
HEAD = """\
# The generic names of the Fortran module

<!-- {note} -->

What `use zorvikrt` gives a name for the types `real16` and `complex32`, and which entry of the library computes it
([entries.md](entries.md) tells what each entry does). The names keep what they mean for the language's own types.

Operands and results by letter: q `real16`, x `complex32`, d f REAL\\*8 and REAL\\*4, z c COMPLEX\\*16 and COMPLEX\\*8,
k i w b INTEGER\\*8 to INTEGER\\*1, l LOGICAL. An operand of another kind is converted first, exactly, where the entry
does not take it as it is. All functions but those of arrays are elemental. The error, gamma and Bessel functions are those
of the module `zorvikrt_special` ([special.md](special.md)).

| name | operands | result | computed by |
|---|---|---|---|
"""
HEAD_77 = """
## Names of FORTRAN 77

| name | as |
|---|---|
"""
HEAD_AS_DOUBLE = """
## In the module zorvikrt\\_as\\_double

These instead of, or beside, the above.

| name | operands | result | computed by |
|---|---|---|---|
"""


class Fault(Exception):
    pass


def for_both_types(path):
    """The numbered lines of a file, those that stand for both types once for each."""
    lines, block = [], None
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        if line == "!@ both" and block is None:
            block = []
        elif line == "!@ end" and block is not None:
            for kind, conjugate in (("q", ""), ("x", "conjg")):
                words = {"@t@": TYPES[kind], "@k@": kind, "@conjugate@": conjugate}
                lines += [(at, re.sub("@[a-z]+@", lambda word: words[word[0]], text)) for at, text in block]
            block = None
        else:
            (lines if block is None else block).append((number, line))
    if block is not None:
        raise Fault(f"{path}: '!@ both' without its '!@ end'")
    return lines


def hand_written(module, path):
    """The text of a file; what its marks tell goes to the module."""
    lines, mark = [], None
    for number, line in for_both_types(path):
        if line.strip().startswith("!@"):
            mark = [part.strip() for part in line.strip()[2:].split("|")]
            if len(mark) != 4:
                raise Fault(f"{path}:{number}: a mark is 'generic | operands | result | how'")
            continue
        lines.append(line)
        if name := PROCEDURE.match(line):
            if mark:
                module.name(mark[0], name[1], *mark[1:])
                mark = None
            else:
                module.helpers.add(name[1])
    return lines


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
    for generic, forms in module.generics.items():
        out.append(f"  interface {generic}")
        out += procedure_list("    procedure", [form[0] for form in forms])
        out.append(f"  end interface {generic}")
    private = sorted(module.helpers | {form[0] for forms in module.generics.values() for form in forms})
    for start in range(0, len(private), 100):
        out += procedure_list("  private ::", private[start:start + 100])
    return out


def shortened(operands):
    """The kinds of two operands by the first: 'q q/d/f, d/f q'; of three and more how many of which."""
    firsts, out = {}, []
    for kinds in operands:
        if kinds.isalpha() and len(kinds) == 2:
            firsts.setdefault(kinds[0], []).append(kinds[1])
        elif kinds.isalpha() and kinds != "text" and len(kinds) > 2:
            among = {kind for other in operands if len(other) == len(kinds) for kind in other}
            out.append(f"{len(kinds)} of {'/'.join(kind for kind in TYPES if kind in among)}")
        else:
            out.append(kinds)
    seconds = {}
    for first, of_first in firsts.items():
        seconds.setdefault("/".join(of_first), []).append(first)
    return list(dict.fromkeys([f"{'/'.join(first)} {second}" for second, first in seconds.items()] + out))


def rows_of(module):
    rows = []
    for generic, forms in module.generics.items():
        if generic in NAMES_77 or generic in COMPLEX_NAMES_77:
            continue
        grouped = {}
        for _, operands, result, how in forms:
            grouped.setdefault((result or "", how), []).append(operands)
        for (result, how), operands in grouped.items():
            rows.append(f"| `{generic}` | {', '.join(shortened(operands))} | {result} | {how} |")
    return "\n".join(rows)


def page(module, as_double):
    names = [f"| `{name}` | `{generic}` |" for name, generic in {**NAMES_77, **COMPLEX_NAMES_77}.items()]
    note = NOTE.replace("generate_exports.py", "generate_fortran.py")
    return (HEAD.format(note=note) + rows_of(module) + "\n" + HEAD_77 + "\n".join(names) + "\n"
            + HEAD_AS_DOUBLE + rows_of(as_double)).split("\n")


def make(list_path, template, output, page_output):
    entries, _ = parse(list_path)
    module = Module()
    add_operators(module)
    add_assignments(module)
    add_functions(module)
    add_arrays(module)
    as_double = Module()
    add_as_double(as_double)
    text = [line for _, line in for_both_types(template)]
    files = {line[8:].strip(): hand_written(module, template.parent / line[8:].strip())
             for line in text if line.startswith("!@ file ")}
    add_names_77(module)

    stems = {e.stem.lower() for e in entries}
    called = set(re.findall(r"zorvik_(\w+)\(", "\n".join(module.procedures)))
    if called - stems:
        raise Fault(f"{list_path} has no entry {', '.join(sorted(called - stems))}")
    parts = {"interfaces": fortran(entries), "generics": generics(module), "procedures": module.procedures,
             "generics as_double": generics(as_double), "procedures as_double": as_double.procedures}
    parts.update({f"file {name}": lines for name, lines in files.items()})
    lines = [f"! {NOTE.replace('generate_exports.py', 'generate_fortran.py')}"]
    for line in text:
        if not line.startswith("!@"):
            lines.append(line)
        elif line[2:].strip() in parts:
            lines += parts[line[2:].strip()]
        else:
            raise Fault(f"{template}: unknown part '{line[2:].strip()}'")
    write(page_output, page(module, as_double))
    write(output, lines)


def main(arguments):
    if len(arguments) != 4:
        sys.exit("usage: generate_fortran.py LIST TEMPLATE MODULE PAGE")
    list_path, *paths = arguments
    try:
        make(list_path, *map(Path, paths))
    except (Fault, ListError, OSError, UnicodeDecodeError) as error:
        sys.exit(f"generate_fortran: {error}")


if __name__ == "__main__":
    main(sys.argv[1:])
