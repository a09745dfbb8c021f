#!/usr/bin/env python3
"""Holds the built library against the list of exports, both ways, and looks at how it is linked.

usage: check_symbols.py LIST LIBRARY
"""
import re
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tools"))
from exports_list import parse  # noqa: E402
from generate_exports import SYMBOL_VERSION, symbols  # noqa: E402


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


# Entries that hold a core on doubles in line, beside the registers' way for the other operands.
IN_LINE = ("cddiv", "cabs", "cdabs", "csqrt", "cdsqrt")


def computing_in_both_units(library):
    """Functions with x87 and SSE arithmetic: there the compiler has narrowed an operation. The kernels
    on doubles, in namespaces of their own, call instructions of the x87 by name."""
    x87 = re.compile(r"\tf(i?(add|sub|mul|div)|sqrt|sin|cos|patan|ptan|yl2x|2xm1|scale|rndint)")
    sse = re.compile(r"\tv?(add|sub|mul|div|sqrt|min|max|cvt\w+2)[sp][sd] ")
    code = run("objdump", "-d", "--no-show-raw-insn", library)
    return [function.split(":", 1)[0] for function in code.split("\n\n")
            if x87.search(function) and sse.search(function)
            and not re.search(r"<_ZN3zrt\w*3(sse|fma)\d", function)
            and not re.search(rf"<__zorvik_({'|'.join(IN_LINE)})>:", function)]


def main(list_path, library):
    entries, _ = parse(list_path)
    listed = set(symbols(entries))
    exported, functions, versionless = {}, [], []
    for line in run("nm", "-D", "--defined-only", library).splitlines():
        address, kind, name = line.split()
        name, _, version = name.partition("@@")
        if name == SYMBOL_VERSION:
            continue
        if version != SYMBOL_VERSION:
            versionless.append(name)
        exported[name] = kind
        if kind == "T":
            functions.append((int(address, 16), name))
    faults = [f"not exported: {name}" for name in sorted(listed - exported.keys())]
    faults += [f"exported, but not in the list: {name}" for name in sorted(exported.keys() - listed)]
    faults += [f"{name} is not of version {SYMBOL_VERSION}" for name in versionless]
    for entry in entries:
        kinds = "RBD" if entry.kind == "data" else "T"
        for name in symbols([entry]):
            if name in exported and exported[name] not in kinds:
                faults.append(f"{name} is of kind {exported[name]}, not {kinds}")

    dynamic = run("readelf", "-d", library)
    soname = re.findall(r"SONAME.*\[(.*)\]", dynamic)
    if soname != ["libzorvikrt.so.1"]:
        faults.append(f"SONAME is {soname}")
    needed = re.findall(r"NEEDED.*\[(.*)\]", dynamic)
    if needed not in ([], ["libc.so.6"]):
        faults.append(f"depends on {needed}, not on the C library alone")
    if "TEXTREL" in dynamic:
        faults.append("has text relocations")
    if not re.search(r"GNU_STACK.* RW ", run("readelf", "-lW", library)):
        faults.append("asks for an executable stack")
    faults += [f"computes in both units: {name}" for name in computing_in_both_units(library)]

    # A debugger and a profiler come out of every kernel.
    unwound = [tuple(int(end, 16) for end in ends)
               for ends in re.findall(r"FDE .*pc=([0-9a-f]+)\.\.([0-9a-f]+)", run("readelf", "-wf", library))]
    faults += [f"{name} has no unwind table" for address, name in functions
               if not any(start <= address < end for start, end in unwound)]

    for fault in faults:
        print(fault)
    print(f"{len(exported)} of {len(listed)} names exported")
    return 1 if faults else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit("usage: check_symbols.py LIST LIBRARY")
    sys.exit(main(*sys.argv[1:]))
