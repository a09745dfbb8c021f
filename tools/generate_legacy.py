#!/usr/bin/env python3
"""Makes what follows from the list of symbols that gfortran calls.

usage: generate_legacy.py SYMBOLS EXPORTS OUTPUT_DIRECTORY

Reads src/legacy/symbols.list (its head tells the format) and src/frame/exports.list, and writes
  renames.i386, renames.x86_64   'symbol replacement', a line each, for objcopy --redefine-syms
  stored_entries.inc             the entries whose results need no rounding
  forms.cpp                      the forms that stand between gfortran's calling rules and an entry's
Only the Python standard library is needed. Bad input gives one line with file and line number.
"""
import re
import sys
from dataclasses import dataclass
from pathlib import Path

from exports_list import AT_ADDRESS, OPERANDS, RESULTS, ListError, parse

TARGETS = ("i386", "x86_64")
PREFIX = "zorvikrt_gfortran_"


@dataclass(frozen=True)
class Symbol:
    name: str
    entry: object        # None where the form is written by hand
    by_reference: bool
    targets: tuple
    stored: bool         # the result is a value of its format
    repeats: bool        # the entry answers an earlier symbol, and a replacement may stand but once

    @property
    def form(self):
        return PREFIX + self.name.lstrip("_")

    def needs_form(self, target):
        """A COMPLEX*16 result goes to an address that gfortran does not pass so; on i386 a REAL result comes
        unrounded. All else is called by the name of the entry."""
        return self.entry is None or self.repeats or self.entry.result in AT_ADDRESS or (target == "i386" and self.entry.result in "fd" and not self.stored) \
            or (not self.by_reference and any(code in AT_ADDRESS for _, code in self.entry.operands))

    @property
    def entry_symbol(self):
        return f"__zorvik_I_{self.entry.references[0]}" if self.by_reference else self.entry.symbol


def read(path, entries):
    known = {entry.stem: entry for entry in entries}
    symbols, seen, answered = [], set(), []
    for line, text in enumerate(Path(path).read_text(encoding="utf-8").splitlines(), 1):
        if not text.strip() or text[0] in "#[":
            continue
        match = re.fullmatch(r"(\w+) +(=|&?\w+)(?: +@(i386|x86_64))?( +stored)?", text.rstrip())
        if not match:
            raise ListError(f"{path}:{line}: a line is 'symbol entry', 'symbol &entry' or 'symbol =' and marks")
        name, entry, target, stored = match.groups()
        stem = entry.lstrip("&")
        if entry != "=" and stem not in known:
            raise ListError(f"{path}:{line}: there is no entry '{stem}'")
        if entry.startswith("&") and not known[stem].references:
            raise ListError(f"{path}:{line}: '{stem}' has no reference entry")
        targets = (target,) if target else TARGETS
        repeats = any(entry == old and set(targets) & set(where) for old, where in answered)
        answered.append((entry, targets))
        for one in targets:
            if (name, one) in seen:
                raise ListError(f"{path}:{line}: {name} stands twice for {one}")
            seen.add((name, one))
        symbols.append(Symbol(name, None if entry == "=" else known[stem], entry.startswith("&"), targets,
                              stored is not None, entry != "=" and repeats))
    return symbols


def renames(symbols, target):
    return [f"{s.name} {s.form if s.needs_form(target) else s.entry_symbol}" for s in symbols if target in s.targets]


def form(symbol):
    """One function with gfortran's C signature."""
    e = symbol.entry
    names = [name for name, _ in e.operands]
    kinds = [OPERANDS[code] for _, code in e.operands]
    types = [kind.c_reference if symbol.by_reference else kind.c for kind in kinds]
    head = ", ".join(t + n if t.endswith("*") else f"{t} {n}" for t, n in zip(types, names))
    result = RESULTS[e.result][1]
    call = f"{symbol.entry_symbol}({', '.join(names)})"
    if e.result in AT_ADDRESS:
        body = [f"  {result} result;", f"  {symbol.entry_symbol}({', '.join(['&result'] + names)});", "  return result;"]
    elif e.result in "fd":
        body = [f"  return rounded({call});"]
    else:
        body = [f"  return {call};"]
    return [f'extern "C" {result} {symbol.form}({head}) {{', *body, "}"]


def forms(symbols):
    note = "Made from src/legacy/symbols.list by tools/generate_legacy.py; do not edit."
    out = [f"// {note}", "", '#include "legacy/legacy.hpp"', "", "using namespace zorvikrt_gfortran;", ""]
    written = [s for s in symbols if s.entry is not None]
    needing = {target: [s for s in written if target in s.targets and s.needs_form(target)] for target in TARGETS}
    for symbol in needing["x86_64"]:
        out += form(symbol)
    out += ["", "#ifdef __i386__"]
    for symbol in needing["i386"]:
        out += [] if symbol in needing["x86_64"] else form(symbol)
    return out + ["#endif"]


def main(arguments):
    if len(arguments) != 3:
        sys.exit("usage: generate_legacy.py SYMBOLS EXPORTS OUTPUT_DIRECTORY")
    try:
        symbols = read(arguments[0], parse(arguments[1])[0])
        output = Path(arguments[2])
        output.mkdir(parents=True, exist_ok=True)
        for name, lines in [*((f"renames.{t}", renames(symbols, t)) for t in TARGETS), ("forms.cpp", forms(symbols)),
                            ("stored_entries.inc", sorted({f'"{s.entry.stem}",' for s in symbols if s.stored}))]:
            (output / name).write_text("\n".join(lines) + "\n", encoding="utf-8")
    except (OSError, ListError) as error:
        sys.exit(f"generate_legacy: {error}")


if __name__ == "__main__":
    main(sys.argv[1:])
