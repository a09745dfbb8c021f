#!/usr/bin/env python3
"""Builds and runs Fortran programs through zorvikrt-gfortran as a user would.

usage: check_legacy.py SOURCE_DIRECTORY BUILD_DIRECTORY CMAKE TARGET

Installs the build to a folder of its own first. Each check is a method; all are run, and every fault
is named.
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import check_operations  # noqa: E402

# The sines and powers of a program against the entries; 1 where they are called, else some hundred.
PROBE = """
program probe
  use iso_c_binding
  interface
    real(c_double) function entry(x) bind(c, name='__zorvik_dsin')
      import; real(c_double), value :: x
    end function
  end interface
  intrinsic :: dsin, dexp
  real(8) :: x(1000), y(1000), z(1000)
  integer :: i
  x = [(0.37d0 * i, i = 1, 1000)]
  do i = 1, 1000
    y(i) = sin(x(i))
  end do
  do i = 1, 1000
    z(i) = entry(x(i))
  end do
  print '(a, i0)', 'loop ', count(y /= z)
  call apply(dsin, x, y)
  print '(a, i0)', 'argument ', count(y /= z)
contains
  subroutine apply(f, a, b)
    real(8), external :: f
    real(8) :: a(:), b(:)
    integer :: j
    do j = 1, size(a)
      b(j) = f(a(j))
    end do
  end subroutine
end program
"""

SUBNORMAL = """
program subnormal
  real(8) :: tiny_number, read_back, product
  character(40) :: text
  integer :: word_ok(8), i
  tiny_number = exp(-700d0) * 1d-10
  write(text, '(es24.16e3)') tiny_number
  read(text, *) read_back
  print *, merge('read back ', 'lost      ', read_back == tiny_number .and. tiny_number > 0)
  word_ok = 0
  !$omp parallel do private(product)
  do i = 1, 8
    product = sin(1d-310 * i)
    if (product == 1d-310 * i) word_ok(i) = 1
  end do
  print *, 'threads', sum(word_ok)
end program
"""

# An overflow stays one, also where the register that brings the result could hold more, and an exponent beyond
# INTEGER*4 is taken whole. Negative powers are the entries' for both kinds of exponents.
OVERFLOW = """
program overflow
  real(4), volatile :: x = 1e30, a = 100, u = -0.88
  real(8), volatile :: y = 1d300, b = 800, v = -0d0
  complex(4), volatile :: z = 2, zero4 = 0
  complex(8), volatile :: w = 2, zero8 = 0
  integer(8), volatile :: n = 2, m = 2_8**32 + 2, l = -17
  print '(*(l1))', [x**n * 1e-30, x**int(n) * 1e-30, x**real(n) * 1e-30, cosh(a) * 1e-30] > huge(x), &
                   [y**n * 1d-300, y**int(n) * 1d-300, y**dble(n) * 1d-300, cosh(b) * 1d-300] > huge(y), &
                   a**m > huge(a), b**m > huge(b), .not. abs(z**m) < 10, .not. abs(w**m) < 10, &
                   zero4**(-n) == 0, zero4**int(-n) == 0, zero8**(-n) == 0, zero8**int(-n) == 0, &
                   u**l == u**int(l), v**l == v**int(l)
end program
"""

LEFT_ALONE = re.compile(
    r"_gfortran_(st_|transfer_|set_|runtime|string_|compare_string|concat_string|adjust|os_error|select_)|mem(cpy|move|set|cmp)"
    r"|malloc|free|realloc|abort|_GLOBAL_|__x86|__stack|main|hypotf?$|c(sinh|cosh|tanh|tan|asin|acos|atan)f?$|a(sin|cos|tan)hf?$"
    r"|(floor|ceil|rint|copysign)f?$|__mul[dst]c3|__div[dst]c3|__zorvik_")


class Legacy:
    def __init__(self, source, build, cmake, target):
        self.source, self.target = Path(source).resolve(), target
        self.folder = Path(tempfile.mkdtemp())
        self.faults = []
        self.cmake = cmake
        prefix = self.folder / "prefix"
        subprocess.run([cmake, "--install", build, "--prefix", prefix], check=True, stdout=subprocess.DEVNULL)
        self.command = str(prefix / "bin" / "zorvikrt-gfortran")
        self.bits = ["-m32"] if target == "i386" else []

    def expect(self, what, holds, seen=""):
        if not holds:
            self.faults.append(f"{what}: {seen}".rstrip(": \n"))

    def run(self, arguments, **options):
        environment = {**os.environ, **options.pop("env", {})}
        if arguments[0].startswith("./") and not (self.folder / arguments[0]).exists():
            return 127, "", f"there is no {arguments[0]}"
        done = subprocess.run(arguments, cwd=self.folder, capture_output=True, text=True, env=environment, **options)
        return done.returncode, done.stdout, done.stderr

    def ours(self, *arguments, **options):
        own = arguments[:1] if arguments[0].startswith("--") else ()
        return self.run([self.command, *own, *self.bits, *arguments[len(own):]], **options)

    def write(self, name, text):
        (self.folder / name).write_text(text)

    def check_operations(self):
        """Every operation has the bits of its entry, or differs where and as the list says."""
        rows = check_operations.read(self.source / "tests/legacy/operations.txt")
        entries = {e.stem: e for e in check_operations.parse(self.source / "src/frame/exports.list")[0]}
        found = check_operations.differences([self.command, *self.bits, "-O2"], rows, entries, 2000)
        for row, number in zip(rows, found):
            said = self.target in row.differs
            self.expect(f"{row.expression} of {row.operands}", (number != 0) == said, f"{number} differ")
        print(f"{sum(n == 0 for n in found)} of {len(rows)} operations agree in all bits")
        self.probe = "\n".join(check_operations.program(rows, entries, 1)) + "\n"

    def check_page(self):
        """The table of all operations is what the installed compiler makes of them."""
        rows = check_operations.read(self.source / "tests/legacy/operations.txt")
        entries = {e.stem: e for e in check_operations.parse(self.source / "src/frame/exports.list")[0]}
        self.expect("docs/legacy-intrinsics.md is out of date: check_operations.py --page makes it",
                    (self.source / "docs/legacy-intrinsics.md").read_text() == check_operations.page(["gfortran"], rows, entries))

    def check_loading(self):
        """A shared library made by the command brings its results into a process, and leaves subnormal numbers be."""
        if self.bits:
            return  # the interpreter is a program of 64 bits
        self.write("shared.f90", "real(8) function sine(x) bind(c, name='sine')\n  real(8), value :: x\n  sine = sin(x)\nend\n")
        self.ours("-O2", "-shared", "-fPIC", "shared.f90", "-o", "libshared.so")
        self.write("load.py", "import ctypes\nlibrary = ctypes.CDLL('./libshared.so')\n"
                   "entry = ctypes.CDLL('libzorvikrt.so.1').__getattr__('__zorvik_dsin')\n"
                   "for f in (library.sine, entry):\n    f.restype, f.argtypes = ctypes.c_double, [ctypes.c_double]\n"
                   "print(all(library.sine(0.37 * i) == entry(0.37 * i) for i in range(1000)), float('5e-324') > 0)\n")
        library = next(self.folder.glob("prefix/lib/**/libzorvikrt.so")).parent
        code, output, errors = self.run([sys.executable, "load.py"], env={"LD_LIBRARY_PATH": str(library)})
        self.expect("a shared library, loaded", output == "True True\n", output + errors)

    def check_symbols(self):
        """What the installed compiler calls for an intrinsic stands in the table or among the names that are
        left alone, at every optimisation."""
        table = {line.split()[0] for line in next(self.folder.glob("prefix/lib/**/renames")).read_text().splitlines()}
        self.write("symbols.f90", self.probe)
        for level in ("-O0", "-Ofast"):
            code, _, errors = self.run(["gfortran", *self.bits, "-w", "-fdec-math", level, "-c", "symbols.f90"])
            self.expect("plain gfortran " + level, code == 0, errors)
            called = self.run(["nm", "-u", "symbols.o"])[1].split()[1::2]
            vector = [name for name in called if name.startswith("_ZGV")]
            self.expect(f"names at {level} that nobody looked through", not
                        [n for n in called if n not in table and n not in vector and not LEFT_ALONE.match(n)],
                        [n for n in called if n not in table and not LEFT_ALONE.match(n)])
            code, _, errors = self.ours("-w", "-fdec-math", level, "-c", "symbols.f90")
            called = set(self.run(["nm", "-u", "symbols.o"])[1].split()[1::2])
            self.expect(f"still called at {level}", not called & table and not any("_ZGV" in n for n in called),
                        sorted(called & table))

    def check_ways_to_build(self):
        """Renamed whatever the options and steps; with the plain compiler the same program differs, so that this
        check can fail."""
        self.write("probe.f90", PROBE)
        same = "loop 0\nargument 0\n"
        for options in (["-O0"], ["-O2"], ["-O3"], ["-Ofast"], ["-O2", "-pipe"], ["-O2", "-flto"], ["-O2", "-g", "-fPIC", "-v"],
                        ["-O2", "-static-libgfortran"], ["-O2", "-fopenmp"], ["-O2", "-no-pie"], ["-save-temps"]):
            code, _, errors = self.ours(*options, "probe.f90", "-o", "probe")
            self.expect(f"{options} compiles", code == 0, errors)
            self.expect(f"{options}", self.run(["./probe"])[1] == same, self.run(["./probe"])[1])
        code, _, errors = self.ours("-O2", "-flto", "-ffat-lto-objects", "-c", "probe.f90")
        self.expect("-ffat-lto-objects is refused", code != 0 and "is not supported" in errors, errors)
        for step in (["-O2", "-c", "probe.f90"], ["probe.o", "-o", "probe"]):
            self.ours(*step)
        self.expect("in two steps", self.run(["./probe"])[1] == same)
        flags = {what: self.ours("--print-flags", what)[1].split() for what in ("compile", "link")}
        code, _, errors = self.run(["gfortran", *self.bits, *flags["compile"], "-O2", "probe.f90", "-o", "probe", *flags["link"]])
        self.expect("by --print-flags", self.run(["./probe"])[1] == same, errors)
        found = {"PKG_CONFIG_PATH": str(next(self.folder.glob("prefix/lib/**/pkgconfig")))}
        by_pkg = [self.run(["pkg-config", what, "zorvikrt-gfortran"], env=found)[1].split() for what in ("--cflags", "--libs")]
        path = {"LD_LIBRARY_PATH": str(next(self.folder.glob("prefix/lib/**/libzorvikrt.so")).parent)}
        code, _, errors = self.run(["gfortran", *self.bits, *by_pkg[0], "-O2", "probe.f90", "-o", "probe", *by_pkg[1]])
        self.expect("by pkg-config", self.run(["./probe"], env=path)[1] == same, errors)
        self.write("CMakeLists.txt", "cmake_minimum_required(VERSION 3.22)\nproject(probe LANGUAGES C Fortran)\n"
                   "find_package(zorvikrt REQUIRED COMPONENTS gfortran)\nadd_executable(built probe.f90)\n"
                   "target_link_libraries(built zorvikrt::gfortran)\n")
        package = next(self.folder.glob("prefix/lib/**/cmake/zorvikrt"))
        code, output, errors = self.run([self.cmake, "-S", ".", "-B", "cm", f"-Dzorvikrt_DIR={package}"],
                                        env={"FFLAGS": " ".join(self.bits), "CFLAGS": " ".join(self.bits)})
        code, output, errors = self.run([self.cmake, "--build", "cm"])
        self.expect("by the CMake target", self.run(["./cm/built"])[1] == same, output + errors)
        self.run(["gfortran", *self.bits, "-O2", "probe.f90", "-o", "probe", *flags["link"]])
        loop = re.match(r"loop (\d+)", self.run(["./probe"])[1])
        self.expect("the plain compiler's sines differ", loop and int(loop[1]) > 0)

    def check_blanks(self):
        """From a folder with blanks in its name: gfortran itself would split it."""
        shutil.copytree(self.folder / "prefix", self.folder / "with a blank", symlinks=True)
        moved = str(self.folder / "with a blank/bin/zorvikrt-gfortran")
        self.write("probe.f90", PROBE)
        code, _, errors = self.run([moved, *self.bits, "-O2", "probe.f90", "-o", "my probe"])
        self.expect("a prefix with blanks", self.run(["./my probe"])[1] == "loop 0\nargument 0\n", errors)
        code, output, errors = self.run([moved, "--compare", *self.bits, "-O2", "my probe.f90"])
        self.expect("--compare of no file", code != 0 and "my probe.f90" in errors, errors)
        code, _, errors = self.run([moved, "--print-flags", *self.bits, "link"])
        self.expect("--print-flags with blanks", code == 2 and "has a blank" in errors, errors)

    def check_state(self):
        """Subnormal numbers are computed, written and read, in threads too; a program without intrinsics does not
        load the library; a result has its format."""
        self.write("subnormal.f90", SUBNORMAL)
        code, _, errors = self.ours("-O2", "-fopenmp", "subnormal.f90", "-o", "subnormal")
        output = self.run(["./subnormal"])[1]
        self.expect("subnormal numbers", "read back" in output and "threads           8" in output, output + errors)
        self.write("plain.f90", "print *, 1.0\nend\n")
        self.ours("plain.f90", "-o", "plain")
        self.write("overflow.f90", OVERFLOW)
        self.ours("-O2", "overflow.f90", "-o", "overflow")
        self.expect("overflows", self.run(["./overflow"])[1] == "T" * 18 + "\n", self.run(["./overflow"])[1])
        self.expect("no intrinsic, no library", "zorvikrt" not in self.run(["readelf", "-d", "plain"])[1])

    def check_names_of_the_program(self):
        """A procedure of the program named like an intrinsic stays its own; a C name that gfortran calls is refused."""
        self.write("own.f90", "program own\n  real(8), external :: sin\n  print '(f4.1)', sin(1d0)\nend\n"
                   "real(8) function sin(x)\n  real(8) :: x\n  sin = x + 41\nend\n")
        self.ours("own.f90", "-o", "own")
        self.expect("the program's own sin", self.run(["./own"])[1] == "42.0\n")
        self.write("bound.f90", "real(8) function mine(x) bind(c, name='sin')\n  real(8), value :: x\n  mine = x\nend\n")
        code, _, errors = self.ours("-c", "bound.f90")
        self.expect("bind(c, name='sin')", code != 0 and "the program defines 'sin'" in errors, errors)
        self.expect("no object is left", not (self.folder / "bound.o").exists())

    def check_bad_calls(self):
        """One line for what cannot be done."""
        self.write("plain.f90", "print *, 1.0\nend\n")
        for arguments, options, text in (
                (["--print-flags"], {}, "takes compile or link"),
                (["--print-flags", "both"], {}, "not 'both'"),
                (["--compare"], {}, "--compare takes"),
                (["-static", "plain.f90"], {}, "is a shared library"),
                (["plain.f90"], {"env": {"ZORVIKRT_GFORTRAN": "no-such-compiler"}}, "there is no compiler"),
                (["-mx32", "plain.f90"], {}, "no build for -mx32"),
                (["-m64" if self.bits else "-m32", "plain.f90"], {}, "is not installed")):
            code, _, errors = self.ours(*arguments, **options)
            self.expect(f"{arguments}", code != 0 and text in errors and errors.count("\n") == 1, errors)
        self.write("gfortran-99", "#!/bin/sh\n[ \"$1\" = -dumpversion ] && { echo 99.1; exit; }\nexec gfortran \"$@\"\n")
        (self.folder / "gfortran-99").chmod(0o755)
        code, _, errors = self.ours("plain.f90", "-o", "plain", env={"ZORVIKRT_GFORTRAN": "./gfortran-99"})
        self.expect("a version nobody knows", code == 0 and errors.count("was not checked") == 1, errors)

    def check_example(self):
        """The old program gives one answer on both targets, and not the C library's; --compare shows the lines."""
        example = str(self.source / "examples" / "stdmap.f")
        self.ours("-O2", example, "-o", "stdmap")
        output = self.run(["./stdmap"])[1]
        expected = re.search(r"```text\n( ORBIT.*?)```", (self.source / "docs/legacy.md").read_text(), re.S)[1]
        self.expect("the example", output == expected, output)
        code, output, errors = self.ours("--compare", "-O2", example)
        self.expect("--compare", code == 0 and re.search(r"^- ORBIT A.*\n(?:- .*\n)*\+ ORBIT A", output, re.M | re.S),
                    output + errors)
        self.write("echo.f90", "character(20) :: a, b\ncall get_command_argument(1, a)\nread *, b\nprint *, trim(a), b\nend\n")
        code, output, _ = self.ours("--compare", "echo.f90", "--", "one", input="two\n")
        self.expect("--compare without a difference", output == "no line of the output differs\n", output)


def main():
    if len(sys.argv) != 5:
        sys.exit("usage: check_legacy.py SOURCE_DIRECTORY BUILD_DIRECTORY CMAKE TARGET")
    legacy = Legacy(*sys.argv[1:])
    for name in [name for name in dir(legacy) if name.startswith("check_")]:
        getattr(legacy, name)()
    subprocess.run(["rm", "-rf", legacy.folder], check=True)
    for fault in legacy.faults:
        print("legacy: " + fault)
    return 1 if legacy.faults else 0


if __name__ == "__main__":
    sys.exit(main())
