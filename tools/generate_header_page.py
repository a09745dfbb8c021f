#!/usr/bin/env python3
"""Makes docs/headers.md from the comments of the public headers.

usage: generate_header_page.py FOLDER [--check] OUTPUT     FOLDER is include/zorvikrt; --check only compares

A comment /** ... */ belongs to the declarations that follow it without a blank line. The first comment of a
header is its introduction; what stands in a namespace detail, or begins with #, is left out.
"""
import re
import sys
from pathlib import Path

ORDER = ("zorvikrt.h", "text.h", "special.h", "zorvikrt.hpp", "types.hpp", "arithmetic.hpp", "functions.hpp",
         "composed_functions.hpp", "complex_functions.hpp", "limits.hpp", "text.hpp", "special.hpp", "format.hpp",
         "fmt.hpp", "eigen.hpp", "boost.hpp")


def comment_text(lines):
    text = "\n".join(re.sub(r"^\s*(/\*\*|\*(?![*/]))? {0,2}", "", line.rstrip()) for line in lines)
    return re.sub(r"\s*\*/\s*$", "", text).strip("\n")


def markdown(text):
    """Lines of code stay as they are."""
    return [line if line.startswith("   ") else re.sub(r"([*_<])", r"\\\1", line) for line in text.splitlines()]


def declaration(lines):
    """One line without its body."""
    text = " ".join(line.strip() for line in lines)
    depth = 0
    for at, c in enumerate(text):
        depth += (c == "(") - (c == ")")
        if depth == 0 and (c == "{" and re.search(r"(\)|const|noexcept)\s*$", text[:at]) or c == ";"):
            text = text[:at]
            break
    text = re.sub(r"\s*{$", "", text)
    macro = re.match(r"ZORVIKRT_(UNARY|BINARY)\((\w+)(?:, (\w+))?\)", text)
    if macro:
        operands = "const real16& x" if macro[1] == "UNARY" else "const real16& a, const real16& b"
        return f"real16 {macro[2]}({operands})"
    text = re.sub(r"^template <[^()]*?(?:, int>)? = 0>\s*", "template <class T> ", text)
    text = re.sub(r"\) :.*$", ")", text)
    return re.sub(r"\b(inline|static|__inline__|constexpr|explicit|friend) ", "", text).strip()


def without_details(lines):
    """Drops the namespaces that users do not name."""
    kept, inside = [], False
    for line in lines:
        if re.match(r"namespace (\w+::)?detail\b", line):
            inside = True
        if not inside:
            kept.append(line)
        if inside and re.match(r"}  // namespace (\w+::)?detail", line):
            inside = False
        if inside and line == "}":
            inside = False
    return kept


def items(lines):
    """(comment, declarations)"""
    at = 0
    while at < len(lines):
        if not lines[at].strip().startswith("/**"):
            at += 1
            continue
        start = at
        while not lines[at].rstrip().endswith("*/"):
            at += 1
        at += 1
        comment = comment_text(lines[start:at])
        found = []
        while at < len(lines) and lines[at].strip() and not lines[at].strip().startswith(("/**", "#", "}")):
            first = at
            depth = 0
            while at < len(lines):
                depth += lines[at].count("(") + lines[at].count("{") - lines[at].count(")") - lines[at].count("}")
                at += 1
                if depth <= 0 and lines[at - 1].rstrip().endswith((";", "}", ")")):
                    break
                if depth == 1 and re.match(r"\s*(class|struct|typedef enum|typedef struct)\b[^;]*{$", lines[at - 1]):
                    break
            found.append(declaration(lines[first:at]))
            if re.match(r"\s*(class|struct|typedef (enum|struct))\b", lines[first]) and depth > 0:
                break
        yield comment, [d for d in found if d]


def page(folder):
    out = ["# The headers", "",
           "Made from the comments of the headers by `tools/generate_header_page.py`; `entries.md` has the entries.", ""]
    for name in ORDER:
        path = folder / name
        if not path.exists():
            continue
        lines = without_details(path.read_text(encoding="utf-8").splitlines())
        found = list(items(lines))
        if not found:
            sys.exit(f"{sys.argv[0]}: {path} has no comment at its head")
        out += [f"## zorvikrt/{name}", ""]
        out += [*markdown(found[0][0]), ""]
        for comment, declarations in found[1:]:
            if not declarations:
                continue
            out += ["```cpp", *declarations, "```", "", *markdown(comment), ""]
    return "\n".join(out).rstrip() + "\n"


def main():
    arguments = [word for word in sys.argv[1:] if word != "--check"]
    if len(arguments) != 2 or not Path(arguments[0]).is_dir():
        sys.exit(__doc__)
    made, output = page(Path(arguments[0])), Path(arguments[1])
    if "--check" not in sys.argv:
        output.write_text(made, encoding="utf-8")
    elif not output.exists() or output.read_text(encoding="utf-8") != made:
        sys.exit(f"{output} is out of date: run {sys.argv[0]} {' '.join(arguments)}")


main()
