#!/usr/bin/env python3
"""Runs the digest program of one build and compares its lines with those of the other builds.

usage: check_digests.py SOURCE_DIRECTORY OUTPUT [OTHER_OUTPUT ...] -- PROGRAM [ARGUMENT ...]

The first line of each output tells from which sources it was made: an output of other sources is
named and left aside. A difference names the entry; `zorvikrt_digest --trace ENTRY` shows its calls.
"""
import hashlib
import subprocess
import sys
from pathlib import Path


SHOWN = 40


def fingerprint(source):
    """Everything that decides the results and the operands."""
    digest = hashlib.sha256()
    files = [path for folder in ("src", "include", "explorer", "tests/digest", "tools")
             for path in (source / folder).rglob("*") if path.suffix in (".cpp", ".hpp", ".h", ".inc", ".list", ".py")]
    for path in sorted(files):
        digest.update(str(path.relative_to(source)).encode() + b"\0" + path.read_bytes())
    return "sources " + digest.hexdigest()


def differences(mine, theirs):
    """By name; a second digest, of register images, counts where both have one."""
    here, there = ({name: digests for name, *digests in map(str.split, lines)} for lines in (mine, theirs))
    faults = []
    for name in sorted(here.keys() | there.keys()):
        pairs = list(zip(here.get(name, ["missing"]), there.get(name, ["missing"])))
        faults += [f"{name}: {one} here, {other} there" for one, other in pairs if one != other][:1]
    return faults


def main(arguments):
    if "--" not in arguments or arguments.index("--") < 2:
        sys.exit("usage: check_digests.py SOURCE_DIRECTORY OUTPUT [OTHER_OUTPUT ...] -- PROGRAM [ARGUMENT ...]")
    source, output, *others = arguments[:arguments.index("--")]
    output = Path(output)
    run = subprocess.run(arguments[arguments.index("--") + 1:], capture_output=True, text=True)
    if run.returncode != 0:
        sys.exit(f"check_digests: the program ended with {run.returncode}: {run.stderr.strip()}")
    mine = run.stdout.splitlines()
    sources = fingerprint(Path(source))
    output.write_text("\n".join([sources] + mine) + "\n", encoding="utf-8")
    print(f"{len(mine)} digests in {output}")

    failed = False
    for other in map(Path, others):
        if other.resolve() == output.resolve() or not other.exists():
            continue
        head, *lines = other.read_text(encoding="utf-8").splitlines()
        if head != sources:
            print(f"not compared, made from other sources: {other}")
            continue
        faults = differences(mine, lines)
        failed = failed or bool(faults)
        print(f"{len(faults)} differences from {other}")
        for fault in faults[:SHOWN]:
            print("  " + fault)
        if len(faults) > SHOWN:
            print(f"  and {len(faults) - SHOWN} more")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
