#!/usr/bin/env python3
"""Holds the exports of the Windows DLL against the list, both ways, and looks at how it is linked.

usage: check_dll.py LIST DLL OBJDUMP
"""
import re
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tools"))
from exports_list import parse  # noqa: E402
from generate_exports import symbols  # noqa: E402

NO_SEH = 0x400          # would forbid the handler of the probe
DYNAMIC_BASE_AND_NX = 0x140
SYSTEM_DLLS = {"KERNEL32.dll", "msvcrt.dll"}


def main(list_path, dll, objdump):
    entries, _ = parse(list_path)
    listed = set(symbols(entries))
    dump = subprocess.run([objdump, "-p", dll], check=True, capture_output=True, text=True).stdout

    table = dump.partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
    numbered = re.findall(r"^\s*\[\s*(\d+)\]\s+(?:\+base\[\s*(\d+)\]\s+)?(?:[0-9a-f]{4,8} )?(\S+)$", table, re.M)
    exported = [name for _, _, name in numbered]
    faults = [f"not exported: {name}" for name in sorted(listed - set(exported))]
    faults += [f"exported, but not in the list: {name}" for name in sorted(set(exported) - listed)]
    addresses = re.search(r"Export Address Table \t*\s*([0-9a-f]{8})", dump)
    if addresses is None or int(addresses[1], 16) != len(exported):
        faults.append("there are exports without a name")

    places = {name: place for place, name in enumerate(symbols(entries), 1)}
    base = int(re.search(r"Ordinal Base\s+(\d+)", dump)[1])
    faults += [f"{name} has the number {number}, not its place in the list" for index, with_base, name in numbered
               if (number := int(with_base or int(index) + base)) != places.get(name, number)]
    if not re.search(r"Time/Date\s.*1970", dump):
        faults.append("carries the time at which it was linked")
    if ".rsrc" not in dump:
        faults.append("has no version resource")

    imported = set(re.findall(r"DLL Name: (\S+)", dump))
    if not imported <= SYSTEM_DLLS:
        faults.append(f"depends on {sorted(imported - SYSTEM_DLLS)}")
    flags = int(re.search(r"DllCharacteristics\s+([0-9a-f]+)", dump)[1], 16)
    if flags & NO_SEH:
        faults.append("says that it has no exception handlers")
    if flags & DYNAMIC_BASE_AND_NX != DYNAMIC_BASE_AND_NX:
        faults.append(f"DllCharacteristics are {flags:#x}, without dynamic base or NX")
    if int(re.search(r"AddressOfEntryPoint\s+([0-9a-f]+)", dump)[1], 16) == 0:
        faults.append("has no entry for the loader")

    table = subprocess.run([objdump, "-t", dll], check=True, capture_output=True, text=True).stdout
    if "load_entry" not in table:
        faults.append("has no symbols to look at")
    if "_GLOBAL__sub_I" in table:
        faults.append("has variables with a C++ initialiser, which no start code runs")

    for fault in faults:
        print(fault)
    print(f"{len(exported)} of {len(listed)} names exported; imports: {', '.join(sorted(imported)) or 'none'}")
    return 1 if faults else 0


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit("usage: check_dll.py LIST DLL OBJDUMP")
    sys.exit(main(*sys.argv[1:]))
