#!/usr/bin/env python3
"""Installs the build into an empty folder, makes and unpacks its packages, and builds and runs every
program of docs/use.md from both, through pkg-config and through find_package.

usage: check_install.py SOURCE BUILD CONFIGURATION LIBRARIES i386|amd64

LIBRARIES is the folder of the libraries below the prefix.

In docs/use.md a file name in backquotes on a line of its own names the fenced block that follows; a block
of sh is run among these files, and the text block behind it is what it must print.
"""
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

TRIPLET = {"i386": "i386-linux-gnu", "amd64": "x86_64-linux-gnu"}
MACHINE = {"i386": 3, "amd64": 62}


class Fault(Exception):
    pass


def run(command, environment=None, folder=None):
    result = subprocess.run(command, env=environment, cwd=folder, capture_output=True, text=True)
    if result.returncode != 0:
        shown = command if isinstance(command, str) else " ".join(map(str, command))
        raise Fault(f"{shown}\nended with {result.returncode}:\n{result.stdout}{result.stderr}")
    return result.stdout


def blocks(page):
    """(language, text, name of the file or None), in order."""
    found, name, language, lines = [], None, None, []
    for line in page.read_text(encoding="utf-8").splitlines():
        if language is not None:
            if line == "```":
                found.append((language, "\n".join(lines) + "\n", name))
                name, language = None, None
            else:
                lines.append(line)
        elif line.startswith("```"):
            language, lines = line[3:], []
        elif match := re.fullmatch(r"`([\w.]+)`", line):
            name = match[1]
    if language is not None:
        raise Fault(f"{page}: a block is not closed")
    return found


def machine_of(path):
    head = path.read_bytes()[:20]
    return struct.unpack("<H", head[18:20])[0] if head[:4] == b"\x7fELF" else None


class Check:
    def __init__(self, source, build, configuration, library, architecture, folder):
        self.source, self.build, self.architecture = source, build, architecture
        self.folder = folder
        self.configuration = configuration
        self.library = Path(library)
        self.blocks = blocks(source / "docs" / "use.md")
        # Compilers of the architecture, under the names that the page uses.
        tools = folder / "tools"
        tools.mkdir()
        for compiler in ("gcc", "g++", "gfortran"):
            found = shutil.which(compiler)
            if not found:
                raise Fault(f"no {compiler} to build a consumer with")
            option = " -m32" if architecture == "i386" else ""
            (tools / compiler).write_text(f'#!/bin/sh\nexec {found}{option} "$@"\n')
            (tools / compiler).chmod(0o755)
        self.path = f"{tools}:{os.environ['PATH']}"

    def environment(self, root):
        library = root / self.library
        return {"PATH": self.path, "LC_ALL": "C", "HOME": str(self.folder),
                "PKG_CONFIG_PATH": str(library / "pkgconfig"), "LD_LIBRARY_PATH": str(library),
                "PKG_CONFIG_ALLOW_SYSTEM_LIBS": "1"}

    def installed(self):
        root = self.folder / "installed"
        run(["cmake", "--install", self.build, "--config", self.configuration, "--prefix", root])
        return root

    def unpacked(self):
        packages, root = self.folder / "packages", self.folder / "unpacked"
        run(["cpack", "--config", self.build / "CPackConfig.cmake", "-C", self.configuration, "-B", packages])
        for name, wanted in (("zorvikrt-tools", ["usr/bin/zorvikrt-eval"]),
                             ("libzorvikrt1", [f"usr/{self.library}/libzorvikrt.so.1"]),
                             ("libzorvikrt-dev", [f"usr/{self.library}/libzorvikrt.so",
                                                  "usr/include/zorvikrt/zorvikrt.hpp",
                                                  "usr/share/zorvikrt/zorvikrt.f90"])):
            found = list(packages.glob(f"{name}_*_{self.architecture}.deb"))
            if len(found) != 1:
                raise Fault(f"packages of {name}: {found}")
            fields = run(["dpkg-deb", "-f", found[0], "Package", "Architecture", "Version"])
            if f"Package: {name}\n" not in fields or f"Architecture: {self.architecture}\n" not in fields:
                raise Fault(f"{found[0].name} says\n{fields}")
            run(["dpkg-deb", "-x", found[0], root])
            for file in wanted:
                if not (root / file).exists() and not (root / file).is_symlink():
                    raise Fault(f"{found[0].name} has no {file}")
        library = (root / "usr" / self.library / "libzorvikrt.so").resolve()
        if machine_of(library) != MACHINE[self.architecture]:
            raise Fault(f"{library} is of machine {machine_of(library)}")
        return root / "usr"

    def run_tool(self, root):
        """zorvikrt-eval finds the library beside it by itself."""
        printed = run([root / "bin" / "zorvikrt-eval", "dsin", "0.5"], {"LC_ALL": "C"})
        if "0x3FDEAEE8744B05F0" not in printed:
            raise Fault(f"zorvikrt-eval dsin 0.5 prints {printed}")

    def write_files(self, name):
        place = self.folder / name
        place.mkdir()
        for _, text, file in self.blocks:
            if file:
                (place / file).write_text(text, encoding="utf-8")
        return place

    def run_page(self, root, name):
        """The commands of the page, with pkg-config."""
        place = self.write_files(name)
        count = 0
        for (language, text, _), following in zip(self.blocks, self.blocks[1:] + [("", "", None)]):
            if language != "sh":
                continue
            printed = run(["sh", "-e", "-c", text], self.environment(root), place)
            if following[0] == "text" and printed != following[1]:
                raise Fault(f"{text}printed\n{printed}not\n{following[1]}")
            count += 1
        return count

    def run_project(self, root, name):
        """The CMake project of the page."""
        place = self.write_files(name)
        environment = self.environment(root)
        if self.architecture == "i386":
            environment.update(CFLAGS="-m32", CXXFLAGS="-m32", FFLAGS="-m32")
        run(["cmake", "-G", "Ninja", "-S", place, "-B", place / "build", f"-DCMAKE_PREFIX_PATH={root}",
             f"-DCMAKE_LIBRARY_ARCHITECTURE={TRIPLET[self.architecture]}", "-DCMAKE_BUILD_TYPE=Debug"], environment)
        run(["cmake", "--build", place / "build", "-j", "2"], environment)
        for program in ("series_c", "series_cpp", "series_f"):
            path = place / "build" / program
            if machine_of(path) != MACHINE[self.architecture]:
                raise Fault(f"{program} is of machine {machine_of(path)}")
            first = run([path], environment).splitlines()[0]
            if first != "2.71828182845904523536028747135266":
                raise Fault(f"{program} prints {first}")

    def run_parent(self):
        """The page's programs in a project that takes the library in as a part."""
        place, build = self.write_files("page_parent"), self.folder / "parent"
        run(["cmake", "-G", "Ninja Multi-Config", "-S", self.source / "tests" / "install" / "parent", "-B", build,
             f"-DZORVIKRT_SOURCE={self.source}", f"-DPAGE={place}"])
        run(["cmake", "--build", build, "--config", "Release", "-j", "2"])
        listed = run(["ctest", "-C", "Release"], folder=build)
        if "out of 3\n" not in listed:
            raise Fault(f"tests of zorvikrt have come among its parent's:\n{listed}")


def main(arguments):
    if len(arguments) != 5 or arguments[4] not in TRIPLET:
        sys.exit("usage: check_install.py SOURCE BUILD CONFIGURATION LIBRARIES i386|amd64")
    for tool in ("cpack", "dpkg-deb", "pkg-config"):
        if not shutil.which(tool):
            sys.exit(f"check_install: no {tool}; install the packages cmake, dpkg and pkg-config")
    with tempfile.TemporaryDirectory() as folder:
        try:
            check = Check(Path(arguments[0]), Path(arguments[1]), *arguments[2:], Path(folder))
            root = check.installed()
            check.run_tool(root)
            commands = check.run_page(root, "page_installed")
            check.run_project(root, "project_installed")
            if check.architecture == "amd64":
                check.run_parent()
            root = check.unpacked()
            check.run_tool(root)
            commands += check.run_page(root, "page_unpacked")
            check.run_project(root, "project_unpacked")
        except Fault as fault:
            sys.exit(f"check_install: {fault}")
    print(f"{commands} commands of docs/use.md and two CMake projects did what the page says")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
