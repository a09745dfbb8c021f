#!/usr/bin/env python3
"""Runs zorvikrt-eval as its users do.

usage: check_eval.py LIST PROGRAM...

LIST is the list of exports; PROGRAM... the program, behind what it runs under, if anything.
"""
import csv
import io
import os
import random
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from xml.etree import ElementTree

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tools"))
from exports_list import parse  # noqa: E402
from generate_exports import symbols  # noqa: E402

PROGRAM, LIST = [], ""


def run(*words, given=None):
    return subprocess.run([*PROGRAM, *words], input=given, capture_output=True, text=True)


def lines(*words, given=None):
    done = run(*words, given=given)
    if done.returncode != 0 or done.stderr:
        raise AssertionError(f"{words}: {done.returncode} {done.stderr}")
    return done.stdout.splitlines()


def line(*words):
    found = lines(*words)
    if len(found) != 1:
        raise AssertionError(f"{words}: {found}")
    return found[0]


def has_registers():
    return run("dabs", "1", "--show", "register").returncode == 0


def bits(value, code="d"):
    size = {"d": "Q", "f": "I"}[code]
    return "0x%0*X" % (struct.calcsize(size) * 2, struct.unpack("<" + size, struct.pack("<" + code, value))[0])


class Calls(unittest.TestCase):
    def test_results_show_decimal_and_bits(self):
        self.assertEqual(line("dabs", "-2.5"), "dabs(-2.5) = 2.5  0x4004000000000000")
        self.assertEqual(line("abs", "-2.5"), "abs(-2.5) = 2.5  0x40200000")
        self.assertEqual(line("I_dmod", "5.5", "3"), "I_dmod(5.5; 3) = 2.5  0x4004000000000000")
        self.assertEqual(line("__zorvik_iabs", "-7"), "iabs(-7) = 7  0x00000007")
        self.assertEqual(line("iidnnt", "32768"), "iidnnt(32768) = -32768  0xFFFF8000")
        self.assertEqual(line("kiabs", "-9223372036854775808"),
                         "kiabs(-9223372036854775808) = -9223372036854775808  0x8000000000000000")
        self.assertEqual(line("uldiv", "18446744073709551615", "2", "--show", "decimal"),
                         "uldiv(18446744073709551615; 2) = 9223372036854775807")
        self.assertEqual(line("qneg", "0.1"), "qneg(0.1) = -0.1  0xBFB999999999999A,0x3C5999999999999A")
        self.assertEqual(line("qmul", "0x3FF0000000000000,0x0000000000000000", "3", "--show", "bits"),
                         "qmul(0x3FF0000000000000,0x0000000000000000; 3) = 0x4008000000000000,0x0000000000000000")

    def test_columns(self):
        self.assertEqual(line("dprod", "3", "4", "--show", "flags"), "dprod(3; 4)  flags none")
        self.assertEqual(line("dabs", "0x7FF4000000000001", "--show", "bits,flags"),
                         "dabs(0x7FF4000000000001) = 0x7FFC000000000001  flags invalid")
        if has_registers():
            self.assertEqual(line("dabs", "-1.5", "--show", "register"), "dabs(-1.5)  register 0x3FFFC000000000000000")
            self.assertEqual(line("iabs", "-1", "--show", "decimal,register"), "iabs(-1) = 1  register -")
            # Twice 1.5e308: beyond the range of REAL*8, but not of the register.
            significand = (int(bits(1.5e308), 16) & (1 << 52) - 1 | 1 << 52) << 11
            self.assertEqual(line("ddim", "1.5e308", "-1.5e308", "--show", "decimal,register"),
                             "ddim(1.5e308; -1.5e308) = inf  register 0x43FF%016X" % significand)

    def test_reals_read_and_write_exactly(self):
        source = random.Random(5)
        texts = ["0", "-0", "5e-324", "2.2250738585072011e-308", "1.7976931348623157e308", "1e23", "0.1"]
        texts += [repr(struct.unpack("<d", struct.pack("<Q", source.getrandbits(63)))[0]) for _ in range(200)]
        texts = [text for text in texts if "n" not in text]
        found = lines("dabs", "--file", "-", "--show", "decimal,bits", given="\n".join(texts))
        self.assertEqual(len(found), len(texts))
        for text, row in zip(texts, found):
            decimal, image = row.split(" = ")[1].split()
            self.assertEqual(image, bits(abs(float(text))), text)
            self.assertEqual(float(decimal), abs(float(text)), text)
        # A decimal just above the middle of two singles: a way by REAL*8 would round it to even.
        self.assertIn("0x3F800001", line("abs", "1.00000005960464477539062500000001"))
        self.assertIn("0x3F800000", line("abs", "1.000000059604644775390625"))
        self.assertEqual(line("abs", "1e-45"), "abs(1e-45) = 1e-45  0x00000001")
        self.assertIn("0x4028000000000000", line("dabs", "0x1.8p3"))
        self.assertIn("0x4028000000000000", line("dabs", "-0x1.8p+3"))

    def test_special_values(self):
        self.assertEqual(line("dabs", "-inf"), "dabs(-inf) = inf  0x7FF0000000000000")
        self.assertEqual(line("qneg", "inf", "--show", "decimal"), "qneg(inf) = [-inf-0]")
        self.assertIn("= nan  0x7FF8000000000000", line("dabs", "nan"))
        self.assertIn("= -nan(0x8000000001234)", line("dsign", "0xFFF8000000001234", "-1"))
        self.assertIn("0x7FF8000000001234", line("dabs", "nan(0x8000000001234)"))

    def test_complex(self):
        self.assertEqual(line("cqmul", "2", "(1,-1)", "--show", "decimal"), "cqmul(2; (1,-1)) = (2,-2)")
        self.assertEqual(line("cqmul", "1,0,0,0", "0.5,3", "--show", "decimal"), "cqmul(1,0,0,0; 0.5,3) = (0.5,3)")

    def test_characters(self):
        self.assertEqual(line("index", "hello", "lo"), "index(hello; lo) = 4  0x00000004")
        self.assertEqual(line("f90_index", "hello", "l", "-", "--show", "decimal"), "f90_index(hello; l; -) = 3")
        self.assertEqual(line("f90_index", "hello", "l", "1", "--show", "decimal"), "f90_index(hello; l; 1) = 4")
        self.assertEqual(line("casgn", "6", "ab\\x01\\\\", "--show", "decimal"),
                         'casgn(6; ab\\x01\\\\)  dst = "ab\\x01\\\\  "')
        self.assertEqual(line("strcasgn", "5", "abc", "--show", "decimal"), 'strcasgn(5; abc)  dst = 3:"abc  "')
        self.assertEqual(line("adjustr", "ab  ", "--show", "decimal"), 'adjustr(ab  )  result = 4  dst = "  ab"')
        self.assertEqual(line("con", "ab", "cd", "3"), 'con(ab; cd; 3)  result = 3  0x00000003  dst = "abc"  0x616263')
        self.assertEqual(line("char", "65", "--show", "decimal"), 'char(65)  result = 1  dst = "A"')

    def test_addresses(self):
        self.assertEqual(line("word", "0xFFFE"), "word(0xFFFE) = -257  0xFFFFFEFF")
        self.assertEqual(line("wword", "0x11223344", "-2", "--show", "bits"),
                         "wword(0x11223344; -2)  memory = 0xFEFF3344")
        self.assertEqual(line("_mvbits", "255", "2", "3", "0", "5", "--show", "decimal"),
                         "_mvbits(255; 2; 3; 0; 5)  new_to = 224")
        self.assertEqual(line("polyN", "3", "1;0;-1", "2", "--show", "decimal"), "polyN(3; 1;0;-1; 2) = 8")
        self.assertEqual(line("qmodr", "-7", "2", "--show", "decimal"), "qmodr(-7; 2)  quotient = -4  remainder = 1")
        self.assertEqual(line("frexpl", "100", "--show", "decimal"), "frexpl(100)  result = 0.78125  e = 7")


class Tables(unittest.TestCase):
    def test_both_ends_and_equal_steps(self):
        self.assertEqual(lines("dabs", "--from", "-1", "--to", "1", "--steps", "4", "--show", "decimal"),
                         ["dabs(-1) = 1", "dabs(-0.5) = 0.5", "dabs(0) = 0", "dabs(0.5) = 0.5", "dabs(1) = 1"])
        self.assertEqual(lines("mod", "_", "3", "--from", "2147483647", "--to", "-2147483648", "--steps", "1",
                               "--show", "decimal"), ["mod(2147483647; 3) = 1", "mod(-2147483648; 3) = -2"])
        self.assertEqual(lines("ulmod", "_", "10", "--from", "0", "--to", "18446744073709551615", "--steps", "3",
                               "--show", "decimal")[2], "ulmod(12297829382473034410; 10) = 0")
        self.assertEqual([row.split(" = ")[1] for row in
                          lines("fabsl", "--from", "0", "--to", "-0.3", "--steps", "3", "--show", "decimal")],
                         ["0", "0.1", "0.2", "0.3"])

    def test_csv(self):
        text = "\n".join(lines("dmod", "7.5", "_", "--from", "1", "--to", "3", "--steps", "2", "--csv"))
        rows = list(csv.DictReader(io.StringIO(text)))
        self.assertEqual([row["p"] for row in rows], ["1", "2", "3"])
        self.assertEqual([float(row["result"]) for row in rows], [0.5, 1.5, 1.5])
        self.assertEqual(rows[0]["result_bits"], bits(0.5))
        text = "\n".join(lines("con", 'a,"b', "c", "4", "--csv", "--show", "decimal,flags"))
        self.assertEqual(list(csv.DictReader(io.StringIO(text))),
                         [{"a": 'a,"b', "b": "c", "dst_length": "4", "result": "4", "dst": '"a,\\x22b"',
                           "flags": "none"}])


class Files(unittest.TestCase):
    def test_lines_quotations_and_comments(self):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "operands")
            Path(path).write_text('# two texts\n"a b" b\n\n  abc   c  # found\n"" x\n')
            self.assertEqual(lines("index", "--file", path, "--show", "decimal"),
                             ["index(a b; b) = 3", "index(abc; c) = 3", "index(; x) = 0"])

    def test_a_bad_line_is_named(self):
        for text, fault in (("1\n2 x\n", "-:2: "), ("1\nx\n", "-:2: 'x' is not a value of type REAL*8"),
                            ('"1\n', "-:1: a quotation does not end")):
            done = run("dabs", "--file", "-", given=text)
            self.assertEqual(done.returncode, 2)
            self.assertTrue(done.stderr.startswith("zorvikrt-eval: " + fault), done.stderr)


    def test_a_zero_byte_is_no_blank(self):
        done = run("dmod", "--file", "-", given="5\0 3\n")
        self.assertEqual(done.returncode, 2, done.stdout)

    @unittest.skipUnless(os.path.exists("/dev/full") and len(sys.argv) == 3, "no full device here")
    def test_a_full_device_is_told(self):
        for words in (["dabs", "1"], ["--list"], ["--help"]):
            with open("/dev/full", "w") as full:
                done = subprocess.run([*PROGRAM, *words], stdout=full, stderr=subprocess.PIPE, text=True)
            self.assertEqual((done.returncode, done.stderr), (2, "zorvikrt-eval: cannot write the output\n"), words)


class Comparisons(unittest.TestCase):
    def test_every_bounded_entry_is_as_near_to_other_libraries_as_it_promises(self):
        """The C library, libquadmath and MPFR agree with one another, which no wrong counterpart would."""
        source = random.Random(3)
        entries = [e for e in parse(LIST)[0] if e.kind == "value" and e.result in "fdqczx"]
        seen = set()
        if len(PROGRAM) > 1:  # under an emulator each start takes its time
            entries = [e for e in entries if e.bounds][::9]
        for e in entries:
            bound, least, ranges = e.bounds[0] if e.bounds else (None, 0, e.sample)

            def word(name, code):
                low, high = ranges.get(name, (-10, 10))
                values = [repr(source.uniform(low, high)) for _ in range(2 if code in "czx" else 1)]
                return str(int(float(values[0]))) if code in "ik" else ",".join(values)
            rows = "\n".join(" ".join(word(*o) for o in e.operands) for _ in range(4))
            done = run(e.stem, "--compare", "--csv", "--file", "-", given=rows)
            if "stands beside" in done.stderr:
                self.assertIsNone(bound, f"{e.stem}: {done.stderr}")
                continue
            self.assertEqual(done.returncode, 0, f"{e.stem} {rows}: {done.stderr}")
            for row in csv.DictReader(io.StringIO(done.stdout)):
                distances = {name: float(value) for name, value in row.items() if name.endswith("_distance") and value}
                seen |= set(distances)
                exact = distances.get("mpfr_distance", distances.get("mpc_distance"))
                if exact is not None and bound is not None and not least:
                    self.assertLessEqual(exact, 1 + 1.5 * bound, f"{e.stem} {row}")
                other = bound if exact is None else exact
                for distance in distances.values() if other is not None else ():
                    self.assertLessEqual(abs(distance - other), other + 100, f"{e.stem} {row}")
                if exact is not None and "libquadmath_distance" in distances:
                    self.assertAlmostEqual(exact, distances["libquadmath_distance"], None, e.stem,
                                           0.3 + 0.02 * exact)
        if len(PROGRAM) == 1:
            wanted = {"c_library_distance", "libquadmath_distance"}
            if not has_registers():
                wanted |= {"mpfr_distance", "mpc_distance"}
            self.assertLessEqual(wanted, seen)

    def test_answers_stand_below_ours(self):
        found = lines("I_log", "7", "--compare")
        self.assertEqual(found[0], "I_log(7) = 1.9459101  0x3FF91395")
        self.assertEqual(found[1], "  C library    1.9459101  distance 0")
        self.assertEqual(found[1:], lines("alog", "7", "--compare")[1:])
        self.assertIn("distance 2", lines("dexp", "-744", "--compare")[1])  # in least subnormals
        if len(PROGRAM) == 1:
            self.assertIn("e+347  distance -", lines("dexp", "800", "--compare")[2])

    @unittest.skipUnless(os.name == "posix" and len(sys.argv) == 3, "needs the loader's search path")
    def test_missing_libraries_are_told(self):
        with tempfile.TemporaryDirectory() as folder:
            for file in ("libquadmath.so.0", "libmpfr.so.6", "libmpc.so.3"):
                Path(folder, file).write_text("no library")
            done = subprocess.run([*PROGRAM, "cdexp", "1,2", "--compare"], capture_output=True, text=True,
                                  env=dict(os.environ, LD_LIBRARY_PATH=folder))
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(done.stdout.splitlines()[2:], ["  libquadmath  libquadmath.so.0 is not installed",
                                                        "  MPC          libmpfr.so.6 is not installed"])


class Plots(unittest.TestCase):
    def drawn(self, *words):
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "plot.svg")
            self.assertEqual(lines(*words, "--plot", file), [])
            return ElementTree.parse(file).getroot()

    def texts(self, picture):
        return [element.text for element in picture.iter("{http://www.w3.org/2000/svg}text")]

    def points(self, picture):
        """Of each line, in pixels."""
        return [[tuple(map(float, point)) for point in re.findall(r"([-0-9.]+) ([-0-9.]+)", path.get("d"))]
                for path in picture.iter("{http://www.w3.org/2000/svg}path") if path.get("fill") == "none"]

    def test_points_lie_where_the_axes_say(self):
        picture = self.drawn("dabs", "--from", "-4", "--to", "4", "--steps", "8")
        (line,) = self.points(picture)
        self.assertEqual(len(line), 9)
        self.assertEqual([x for x, _ in line], [round(line[0][0] + (line[8][0] - line[0][0]) * i / 8, 1) for i in range(9)])
        self.assertEqual(line[0][1], line[8][1])
        self.assertEqual(max(y for _, y in line), line[4][1])  # downward
        texts = self.texts(picture)
        for text in ("dabs(x), REAL*8", "x REAL*8", "-4", "0", "4"):
            self.assertIn(text, texts)

    def test_parts_scales_and_gaps(self):
        picture = self.drawn("cqtoi", "0.9,0.5", "_", "--from", "0", "--to", "9", "--steps", "9")
        self.assertEqual([len(line) for line in self.points(picture)], [10, 10])
        self.assertLessEqual({"real part", "imaginary part"}, set(self.texts(picture)))
        (line,) = self.points(self.drawn("dexp", "--from", "0", "--to", "700", "--steps", "70"))
        self.assertAlmostEqual(line[0][1] - line[35][1], line[35][1] - line[70][1], delta=0.2)  # by the logarithm
        (line,) = self.points(self.drawn("dsqrt", "--from", "-1", "--to", "1", "--steps", "10"))
        self.assertEqual(len(line), 6)
        tangent = ElementTree.tostring(self.drawn("dtan", "--from", "-4", "--to", "4", "--steps", "400"), "unicode")
        self.assertIn(tangent.count("h0"), (3, 4, 5))  # around two poles


@unittest.skipUnless(os.name == "posix" and len(sys.argv) == 3 and shutil.which("bash"), "needs bash")
class Completion(unittest.TestCase):
    def completed(self, *words):
        script = Path(__file__).resolve().parent.parent / "explorer" / "zorvikrt-eval.bash"
        done = subprocess.run(["bash", "-c", 'source "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _zorvikrt_eval\n'
                               'printf "%s\\n" "${COMPREPLY[@]}"', script, *PROGRAM, *words],
                              capture_output=True, text=True)
        self.assertEqual(done.stderr, "")
        return set(done.stdout.split())

    def test_names_options_and_values(self):
        self.assertEqual(self.completed("dsin"), {"dsin", "dsind", "dsinh"})
        self.assertEqual(self.completed("--describe", "cqd"), {"cqdiv"})
        self.assertEqual(self.completed("FLOAT_"), {"FLOAT_NAN", "FLOAT_INF", "FLOAT_MAX"})
        self.assertEqual(self.completed("dsin", "0.5", "--c"), {"--compare", "--csv"})
        self.assertEqual(self.completed("--show", "bits", "I_dmo"), {"I_dmod"})
        self.assertEqual(self.completed("dsin", "--show", "decimal,f"), {"decimal,flags"})
        self.assertEqual(self.completed("dsin", "d"), set())
        self.assertEqual(len(self.completed("")), sum(1 for _ in lines("--list")))
        with tempfile.TemporaryDirectory() as folder:
            Path(folder, "table.svg").touch()
            self.assertEqual(self.completed("dsin", "--plot", folder + "/ta"), {folder + "/table.svg"})


class Lists(unittest.TestCase):
    def test_every_entry_is_listed_and_can_be_called(self):
        entries, _ = parse(LIST)
        exported = {name.removeprefix("__zorvik_") for name in symbols([e for e in entries if e.kind != "data"])}
        listed = [row for row in lines("--list") if " = 0x" not in row]
        self.assertEqual({row.split("(")[0] for row in listed}, exported)
        word = {"CHARACTER": "abcd", "CHARACTER, written": "4", "memory": "0x01020304", "LOGICAL": "1",
                "REAL*16 table": "1;2;3", "COMPLEX*8": "1,2", "COMPLEX*16": "1,2", "COMPLEX*32": "1,2"}
        # Each start takes its time, and more of it under an emulator.
        for row in listed[::7 if len(PROGRAM) == 1 else 40]:
            name, operands = re.match(r"(\w+)\((.*)\)", row).groups()
            words = []
            for operand in operands.split("; "):
                kind = operand.split(" ", 1)[1]
                stem = name.removeprefix("I_")
                if kind.endswith(", written"):
                    if kind.startswith("CHARACTER") and stem not in ("adjustl", "adjustr", "char"):
                        words.append("4")
                    elif kind.startswith("memory"):
                        words.append("0x01020304")
                    elif kind.startswith("INTEGER") and stem.lower().startswith("_mvbits"):
                        words.append("3")
                else:
                    words.append(word.get(kind, "2"))
            self.assertIn("flags", line(name, *words, "--show", "bits,flags"))

    def test_words_and_descriptions(self):
        self.assertEqual(lines("--list", "dmod"), ["dmod(a REAL*8; p REAL*8) -> REAL*8",
                                                   "I_dmod(a REAL*8; p REAL*8) -> REAL*8"])
        self.assertEqual(lines("--list", "FLOAT_MAX"), ["__zorvik_FLOAT_MAX = 0x7EFFFFFF"])
        self.assertEqual(lines("FLOAT_MAX"), ["__zorvik_FLOAT_MAX = 1.7014117e+38  0x7EFFFFFF"])
        self.assertRegex(lines("--version")[0], r"^zorvikrt-eval \d+\.\d+\.\d+$")
        described = lines("--describe", "dmod")
        self.assertEqual(described[0], "dmod(a REAL*8; p REAL*8) -> REAL*8")
        self.assertIn("trunc(a / p)", described[1])
        self.assertTrue(lines("--help")[0].startswith("usage: zorvikrt-eval"))


class Errors(unittest.TestCase):
    def test_one_clear_line(self):
        table = ["--from", "1", "--to", "2", "--steps", "2"]
        cases = [
            ([], "which entry?"),
            (["sine", "1"], "there is no entry 'sine'"),
            (["SIN", "1"], "there is 'sin'"),
            (["FLOAT_MAX", "1"], "is a constant"),
            (["dabs"], "takes 1 operand, not 0"),
            (["dmod", "1"], "takes 2 operands, not 1"),
            (["dabs", "one"], "'one' is not a value of type REAL*8"),
            (["dabs", ""], "'' is not a value"),
            (["dabs", "--", "--1"], "'--1' is not a value"),
            (["dabs", "1x"], "'1x' is not a value"),
            (["dabs", "0x3FF"], "its image has 16 hexadecimal digits"),
            (["abs", "0x3FF00000000000000"], "its image has 8 hexadecimal digits"),
            (["dabs", "1e400"], "beyond the range"),
            (["qneg", "1e400"], "beyond the range"),
            (["qneg", ""], "'' is not a value of type REAL*16"),
            (["qneg", "1,2,3"], "3 parts"),
            (["polyN", "1", "1;;2", "0"], "'' is not a value of type REAL*16"),
            (["iabs", "2147483648"], "beyond the range"),
            (["iabs", "1.5"], "'1.5' is not a value of type INTEGER*4"),
            (["iabs", "0x123456789"], "up to 8 hexadecimal digits"),
            (["uldiv", "-1", "1"], "beyond the range"),
            (["cqmul", "1,2,3", "1"], "3 parts"),
            (["index", "a\\q", "a"], "behind \\"),
            (["casgn", "-1", "a"], "not a length"),
            (["byte", "0x123"], "pairs of hexadecimal digits"),
            (["polyN", "1", "1;2", "2"], "needs a table of 3 rows, not 2"),
            (["dabs", "1", "--show", "colour"], "--show has no 'colour'"),
            (["dabs", "1", "--color"], "unknown option '--color'"),
            (["dabs", "--from", "1", "--to", "2"], "needs all of"),
            (["dabs", "--from", "1", "--to"], "--to needs a value"),
            (["dabs", "--from", "1", "--to", "2", "--steps", "0"], "not a whole number"),
            (["dabs", "--from", "1", "--to", "inf", "--steps", "2"], "finite"),
            (["dmod", "1", "2", "--from", "1", "--to", "2", "--steps", "2"], "written as _"),
            (["ichar", "--from", "1", "--to", "2", "--steps", "2"], "only an INTEGER or REAL"),
            (["dabs", "--file", "/there/is/none"], "cannot open"),
            (["dabs", "1", "--file", "-"], "from the file or from the command line"),
            (["index", "a", "a", "--compare"], "stands beside index"),
            (["FLOAT_MAX", "--compare"], "is a constant"),
            (["dabs", "1", "--plot", "x.svg"], "--plot draws a table"),
            (["dabs", *table, "--plot", "x.svg", "--csv"], "neither --csv nor --compare"),
            (["dabs", *table, "--plot", "/there/is/none.svg"], "cannot write '/there/is/none.svg'"),
            (["adjustl", *table, "--plot", "x.svg"], "only an INTEGER or REAL"),
            (["_mvbits", "_", "0", "4", "1", "0", *table, "--plot", "x.svg"], "only an INTEGER or REAL"),
            (["dlog", "--from", "-2", "--to", "-1", "--steps", "2", "--plot", "x.svg"], "nothing to draw"),
            (["--list", "nothing like it"], "no entry has"),
            (["--describe"], "takes one entry"),
        ]
        if not has_registers():
            cases.append((["dabs", "1", "--show", "register"], "32-bit builds"))
        for words, fault in cases:
            done = run(*words)
            self.assertEqual(done.returncode, 2, words)
            self.assertEqual(done.stdout, "", words)
            self.assertEqual(len(done.stderr.splitlines()), 1, done.stderr)
            self.assertTrue(done.stderr.startswith("zorvikrt-eval: "), done.stderr)
            self.assertIn(fault, done.stderr, words)


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit("usage: check_eval.py LIST PROGRAM...")
    LIST, PROGRAM = sys.argv[1], sys.argv[2:]
    unittest.main(argv=sys.argv[:1])
