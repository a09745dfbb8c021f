#!/usr/bin/env python3
"""Holds the digests of a build against the committed reference, and the rest against other builds.

usage: check_digests.py REFERENCE OUTPUT SOURCE_DIRECTORY [OTHER_OUTPUT ...] -- PROGRAM [ARGUMENT ...]
       check_digests.py --renew REFERENCE -- PROGRAM [ARGUMENT ...]

A reference has sections. Entries under [arithmetic] give the same on every processor; those under
[MAKER FAMILY] or [MAKER FAMILY MODEL] use its fsin, fcos, fptan, fpatan, fyl2x or f2xm1, whose last bits are the
maker's. On another processor these are held against OTHER_OUTPUT alone, what other builds wrote from the same sources.
`zorvikrt_digest --trace ENTRY` shows the calls behind a digest.
"""
import hashlib
import re
import subprocess
import sys
from pathlib import Path

SHOWN = 40
COLUMNS = ("results", "registers", "flags")
USAGE = __doc__.split("\n\n")[1]


def processor():
    """Maker, family and model, as /proc/cpuinfo names them."""
    text = Path("/proc/cpuinfo").read_text(encoding="ascii", errors="replace")
    found = [re.search(rf"^{key}\s*: (\S+)", text, re.M) for key in ("vendor_id", "cpu family", "model")]
    return " ".join(match[1] if match else "unknown" for match in found)


def fingerprint(source):
    """Everything that decides the results and the operands."""
    digest = hashlib.sha256()
    files = [path for folder in ("src", "include", "explorer", "tests/digest", "tests/support", "tools")
             for path in (source / folder).rglob("*") if path.suffix in (".cpp", ".hpp", ".h", ".inc", ".list", ".py")]
    for path in sorted(files):
        digest.update(str(path.relative_to(source)).encode() + b"\0" + path.read_bytes())
    return "sources " + digest.hexdigest()


def read(lines):
    """Digests by section and name; what stands before a section is arithmetic."""
    sections, section = {"arithmetic": {}}, "arithmetic"
    for line in lines:
        if line.startswith("["):
            section = line.strip("[]")
            sections[section] = {}
        elif line and not line.startswith("#"):
            name, *digests = line.split()
            sections[section][name] = digests
    return sections


def section_of(sections, here):
    """The name of the processor's section, or `here` where there is none."""
    return next((name for name in sections if f"{here} ".startswith(name + " ")), here)


def differences(mine, theirs):
    """One line for each name, with the first column that differs; the columns that both have count."""
    faults = []
    for name in sorted(mine.keys() | theirs.keys()):
        pairs = zip(mine.get(name, ["missing"]), theirs.get(name, ["missing"]), COLUMNS)
        faults += [f"{name}: {what} {one}, not {other}" for one, other, what in pairs if one != other][:1]
    return faults


def report(faults, against):
    print(f"{len(faults)} differences from {against}")
    for fault in faults[:SHOWN]:
        print("  " + fault)
    if len(faults) > SHOWN:
        print(f"  and {len(faults) - SHOWN} more")
    return bool(faults)


def check(reference, output, source, others, lines):
    mine = read(lines)["arithmetic"]
    sources, here = fingerprint(source), processor()
    output.write_text("\n".join([sources] + lines) + "\n", encoding="utf-8")
    sections = read(reference.read_text(encoding="utf-8").splitlines())
    expected = {**sections.pop("arithmetic"), **sections.get(section_of(sections, here), {})}
    elsewhere = {name for section in sections.values() for name in section} - expected.keys()
    failed = report(differences({name: mine[name] for name in mine if name not in elsewhere}, expected), reference)
    if elsewhere:
        print(f"{len(elsewhere)} entries have no reference for {here}; other builds on this machine alone hold them")
    for other in others:
        if other.resolve() == output.resolve() or not other.exists():
            continue
        head, *theirs = other.read_text(encoding="utf-8").splitlines()
        if head != sources:
            print(f"not compared, made from other sources: {other}")
        else:
            failed = report(differences(mine, read(theirs)["arithmetic"]), other) or failed
    return failed


def renew(reference, lines):
    """Writes the digests anew; each entry stays in its section, a new one comes under [arithmetic]. Sections of
    other processors stay where no arithmetic entry has changed."""
    if not all(len(line.split()) in (2, 4) for line in lines) or len(lines[-1].split()) != 4:
        sys.exit("check_digests: only a 32-bit program has all columns")
    text = reference.read_text(encoding="utf-8")
    head = [line for line in text.splitlines() if line.startswith("#")]
    sections = read(text.splitlines())
    here = section_of(sections, processor())
    mine = read(lines)["arithmetic"]
    apart = {name for section in sections if section != "arithmetic" for name in sections[section]}
    arithmetic = {name: mine[name] for name in mine if name not in apart}
    sections = (sections if arithmetic == sections["arithmetic"] else {}) | {"arithmetic": arithmetic}
    sections[here] = {name: mine[name] for name in mine if name in apart}
    out = head + [line for section, digests in sections.items()
                  for line in ["", f"[{section}]", *(" ".join([name] + digests[name]) for name in digests)]]
    reference.write_text("\n".join(out) + "\n", encoding="utf-8")


def main(arguments):
    if "--" not in arguments:
        sys.exit(USAGE)
    files, program = arguments[:arguments.index("--")], arguments[arguments.index("--") + 1:]
    renewing = files[:1] == ["--renew"]
    if not program or (len(files) != 2 if renewing else len(files) < 3):
        sys.exit(USAGE)
    run = subprocess.run(program, capture_output=True, text=True)
    if run.returncode != 0:
        sys.exit(f"check_digests: the program ended with {run.returncode}: {run.stderr.strip()}")
    lines = run.stdout.splitlines()
    if renewing:
        renew(Path(files[1]), lines)
        return 0
    return 1 if check(*map(Path, files[:3]), [Path(other) for other in files[3:]], lines) else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
