#!/usr/bin/env python3
"""The comparison of digests names the entry that differs, and leaves outputs of other sources aside.

usage: check_digests_names.py CHECK_DIGESTS
"""
import subprocess
import sys
import tempfile
from pathlib import Path


def main(checker):
    with tempfile.TemporaryDirectory() as folder:
        source = Path(folder)
        (source / "src").mkdir()
        kernel = source / "src" / "kernel.cpp"
        kernel.write_text("one\n")

        def run(name, text, code=0):
            return subprocess.run(
                [sys.executable, checker, folder, source / name, source / "a", source / "b", "--",
                 sys.executable, "-c", f"print({text!r}); raise SystemExit({code})"],
                capture_output=True, text=True)

        first = run("a", "dint 01\ndabs 02")
        assert first.returncode == 0, first.stdout
        same = run("b", "dint 01\ndabs 02")
        assert same.returncode == 0 and "0 differences" in same.stdout, same.stdout
        other = run("b", "dint 01\ndabs 03\nsqrt 04")
        assert other.returncode == 1, other.stdout
        assert "dabs: 03 here, 02 there" in other.stdout, other.stdout
        assert "sqrt: 04 here, missing there" in other.stdout, other.stdout
        assert "dint" not in other.stdout, other.stdout
        wider = run("b", "dint 01 11\ndabs 02 12")
        assert wider.returncode == 0, wider.stdout
        register = run("a", "dint 01 10\ndabs 02 12")
        assert register.returncode == 1 and "dint: 10 here, 11 there" in register.stdout, register.stdout
        assert "dabs" not in register.stdout, register.stdout
        failed = run("b", "dint 01", 3)
        assert failed.returncode == 1 and "ended with 3" in failed.stderr, failed.stderr
        kernel.write_text("two\n")
        stale = run("b", "dint 05\ndabs 02")
        assert stale.returncode == 0 and "other sources" in stale.stdout, stale.stdout
    return 0


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("usage: check_digests_names.py CHECK_DIGESTS")
    sys.exit(main(sys.argv[1]))
