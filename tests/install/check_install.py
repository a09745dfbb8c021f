#!/usr/bin/env python3
"""Installs the build into an empty folder, makes and unpacks its packages, and does what docs/use.md says
with both, in a plain shell.

usage: check_install.py SOURCE BUILD CONFIGURATION LIBRARIES i386|amd64

LIBRARIES is the folder of the libraries below the prefix. In docs/use.md a file name in backquotes on a line
of its own names the fenced block that follows. The blocks of sh are run in their order in one shell, those
under "32-bit programs" for i386 and the others for amd64; the text block behind one is what it must print.
Only prefix, build folder and library folder are put in for those of the page.
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
    """(section, language, text, name of the file or None), in order."""
    found, section, name, language, lines = [], None, None, None, []
    for line in page.read_text(encoding="utf-8").splitlines():
        if language is not None:
            if line == "```":
                found.append((section, language, "\n".join(lines) + "\n", name))
                name, language = None, None
            else:
                lines.append(line)
        elif line.startswith("```"):
            language, lines = line[3:], []
        elif line.startswith("## "):
            section = line[3:]
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

    def in_place(self, text, root):
        """A block of the page with the folders of this run."""
        preset, installed = {"i386": "linux-i386", "amd64": "linux-x86_64"}[self.architecture], "/opt/zorvikrt"
        for shown, meant in ((f"{installed}/lib/{TRIPLET[self.architecture]}", f"{root}/{self.library}"),
                             (installed, str(root)),
                             (f"--install build/{preset}", f"--install {self.build} --config {self.configuration}")):
            text = text.replace(shown, meant)
        return text

    def installed(self):
        root = self.folder / "installed"
        found = [text for section, language, text, _ in self.blocks
                 if language == "sh" and "cmake --install" in text and self.is_meant(section)]
        if len(found) != 1:
            raise Fault("docs/use.md does not say how to install")
        run(["sh", "-e", "-c", self.in_place(found[0], root)])
        return root

    def unpacked(self):
        packages, root = self.folder / "packages", self.folder / "unpacked"
        mask = os.umask(0o077)
        run(["cpack", "--config", self.build / "CPackConfig.cmake", "-C", self.configuration, "-B", packages])
        os.umask(mask)
        if shutil.which("lintian"):
            run(["lintian", "--allow-root", "--fail-on", "error,warning", *packages.glob("*.deb")])
        for name, wanted in (("zorvikrt-tools", ["usr/bin/zorvikrt-eval",
                                                "usr/share/bash-completion/completions/zorvikrt-eval"]),
                             ("libzorvikrt1", [f"usr/{self.library}/libzorvikrt.so.1"]),
                             ("libzorvikrt-dev", [f"usr/{self.library}/libzorvikrt.so",
                                                  "usr/include/zorvikrt/zorvikrt.hpp",
                                                  "usr/share/zorvikrt/zorvikrt.f90"])):
            found = list(packages.glob(f"{name}_*_{self.architecture}.deb"))
            if len(found) != 1:
                raise Fault(f"packages of {name}: {found}")
            fields = run(["dpkg-deb", "-f", found[0]])
            needed = [f"Package: {name}", f"Architecture: {self.architecture}"]
            if name.startswith("lib") and TRIPLET[self.architecture] in self.library.parts:
                needed.append("Multi-Arch: same")
            if not set(needed) <= set(fields.splitlines()):
                raise Fault(f"{found[0].name} says\n{fields}")
            run(["dpkg-deb", "-x", found[0], root])
            for file in wanted:
                if not (root / file).exists() and not (root / file).is_symlink():
                    raise Fault(f"{found[0].name} has no {file}")
        library = (root / "usr" / self.library / "libzorvikrt.so").resolve()
        if machine_of(library) != MACHINE[self.architecture]:
            raise Fault(f"{library} is of machine {machine_of(library)}")
        return root / "usr"

    def run_tools(self, root):
        """zorvikrt-eval finds the library beside it by itself; every command starts and has its page."""
        printed = run([root / "bin" / "zorvikrt-eval", "dsin", "0.5"], {"LC_ALL": "C"})
        if "0x3FDEAEE8744B05F0" not in printed:
            raise Fault(f"zorvikrt-eval dsin 0.5 prints {printed}")
        for command in (root / "bin").iterdir():
            if not (root / "share" / "man" / "man1" / f"{command.name}.1.gz").exists():
                raise Fault(f"{command.name} has no manual page")
            run([command, "--help"])

    def is_meant(self, section):
        return (section == "32-bit programs") == (self.architecture == "i386")

    def write_files(self, name):
        place = self.folder / name
        place.mkdir()
        for _, _, text, file in self.blocks:
            if file:
                (place / file).write_text(text, encoding="utf-8")
        return place

    def run_page(self, root, name):
        """The commands of the page, all in one shell that knows nothing of this test."""
        place = self.write_files(name)
        script, wanted = "", []
        for block, following in zip(self.blocks, self.blocks[1:] + [(None, "", "", None)]):
            section, language, text, _ = block
            if language != "sh" or not self.is_meant(section) or "cmake --install" in text:
                continue
            script += f"{self.in_place(text, root)}echo '@@@'\n"
            wanted.append((text, following[2] if following[1] == "text" else None))
        plain = {"PATH": os.environ["PATH"], "LC_ALL": "C", "HOME": str(self.folder)}
        printed = run(["sh", "-e", "-c", script], plain, place).split("@@@\n")
        for (text, expected), seen in zip(wanted, printed):
            # What CMake and the compiler tell comes before what the programs print.
            if expected is not None and not ("\n" + seen).endswith("\n" + expected):
                raise Fault(f"{text}printed\n{seen}not\n{expected}")
        for program in [path for path in place.glob("**/series_*") if path.is_file() and machine_of(path)]:
            if machine_of(program) != MACHINE[self.architecture]:
                raise Fault(f"{program} is of machine {machine_of(program)}")
        return len(wanted)

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
            check.run_tools(root)
            commands = check.run_page(root, "page_installed")
            if check.architecture == "amd64":
                check.run_parent()
            root = check.unpacked()
            check.run_tools(root)
            commands += check.run_page(root, "page_unpacked")
        except Fault as fault:
            sys.exit(f"check_install: {fault}")
    print(f"{commands} blocks of docs/use.md did what the page says")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
