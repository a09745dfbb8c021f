#!/usr/bin/env python3
"""The comparison of digests names the entry that differs, whatever it is held against.

usage: check_digests_names.py CHECK_DIGESTS
"""
import subprocess
import sys
import tempfile
from pathlib import Path


def main(checker):
    sys.dont_write_bytecode = True
    sys.path.insert(0, str(Path(checker).parent))
    from check_digests import section_of
    for here, section in (("A 6 20", "A 6 20"), ("A 26 2", "A 26"), ("A 6 7", "A 6 7")):
        assert section_of(["arithmetic", "A 6 2", "A 6 20", "A 26"], here) == section, here

    with tempfile.TemporaryDirectory() as folder:
        source = Path(folder)
        (source / "src").mkdir()
        kernel = source / "src" / "kernel.cpp"
        kernel.write_text("one\n")
        reference = source / "reference.txt"
        reference.write_text("# head\n\n[arithmetic]\nfive 5\ndint 01 11 21\ndabs 02 12 22\n\n[Nobody 1]\ndtod 07 17 27\n")

        def run(said, name="a", code=0, words=()):
            files = words or (reference, source / name, source, source / "a", source / "b")
            done = subprocess.run([sys.executable, checker, *files, "--", sys.executable, "-c",
                                   f"print({said!r}); raise SystemExit({code})"], capture_output=True, text=True)
            return done.returncode, done.stdout + done.stderr

        def expect(outcome, status, *pieces):
            assert outcome[0] == status and all(piece in outcome[1] for piece in pieces), outcome

        expect(run("five 5\ndint 01\ndabs 02\ndtod 08"), 0, "0 differences", "1 entries have no reference")
        expect(run("five 5\ndint 01 11 21\ndabs 02 12 23\ndtod 08 1 2"), 1, "dabs: flags 23, not 22")
        expect(run("five 5\ndint 01\ndtod 08"), 1, "dabs: results missing, not 02")
        expect(run("five 5\ndint 01\ndabs 02\ndtod 08", "a"), 0)
        expect(run("five 5\ndint 01\ndabs 02\ndtod 09", "b"), 1, "dtod: results 09, not 08")
        kernel.write_text("two\n")
        expect(run("five 5\ndint 01\ndabs 02\ndtod 09", "b"), 0, "other sources")
        expect(run("dint 01", code=3), 1, "ended with 3")
        expect(run("dint 01", words=("--renew",)), 1, "usage")
        expect(run("dint 01", words=("--renew", reference)), 1, "only a 32-bit program")
        expect(run("five 5\ndint 01 11 21\ndabs 02 12 22\ndtod 32 1 2", words=("--renew", reference)), 0)
        assert "[Nobody 1]\ndtod 07" in reference.read_text(), reference.read_text()
        expect(run("five 5\ndint 31 1 2\ndtod 32 1 2\nnew 33 1 2", words=("--renew", reference)), 0)
        text = reference.read_text()
        assert text.startswith("# head\n") and text.index("new 33") < text.index("dtod 32"), text
        assert "Nobody" not in text, text
    return 0


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("usage: check_digests_names.py CHECK_DIGESTS")
    sys.exit(main(sys.argv[1]))
