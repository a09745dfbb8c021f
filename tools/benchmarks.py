#!/usr/bin/env python3
"""Results of zorvikrt_bench as tables.

    benchmarks.py page [--check] PAGE...        renews the tables of the pages, or tells whether they are current
    benchmarks.py compare [--beyond PERCENT] OLD NEW
                                                every row that changed by more than PERCENT (3), worst first

A table stands in the page between '<!-- rows GROUP of MACHINE -->' and '<!-- end -->', where GROUP is a
room of the list of exports, or several joined by '+', and MACHINE the stem of its files: MACHINE-BUILD.json
in the folder that has the page's name, or in docs/benchmarks. Between '<!-- means of MACHINE -->' and the
end stand the geometric means over all of a type.
"""

import argparse
import json
import math
import pathlib
import re
import sys

OWN, PUSHED, CHAIN = "zorvikrt", ", words pushed", "own chain"


def fail(message):
    sys.exit(f"benchmarks: {message}")


def read(path):
    """The run in a file, its rows as a dictionary of (entry, subject)."""
    try:
        run = json.loads(pathlib.Path(path).read_text())
        run["rows"] = {(row["entry"], row["subject"]): float(row["nanoseconds"]) for row in run["rows"]}
        for key in ("processor", "maker", "family", "model", "build", "version"):
            run[key]
    except OSError as error:
        fail(f"cannot read {path}: {error.strerror}")
    except (ValueError, KeyError, TypeError):
        fail(f"{path} is no result of zorvikrt_bench --json")
    return run


def rooms_of_entries(exports):
    """The room of each value entry, in the order of the list."""
    rooms, room = {}, None
    for line in exports.read_text().splitlines():
        if match := re.match(r"\[(\w+)/", line):
            room = match[1]
        elif room and (words := line.split()) and not line[0].isspace() and line[0] != "#":
            rooms[words[1] if words[0] in ("plain", "data") else words[0]] = room
    return rooms


def number(value):
    return f"{value:.0f}" if value >= 1000 else f"{value:.1f}"


def geometric_mean(values):
    return math.exp(sum(map(math.log, values)) / len(values))


def columns_of(run, entries):
    """(heading, {entry: text}, mean or None) for each column of one build."""
    rows, build = run["rows"], run["build"].split("-", 1)[1]
    subjects = list(dict.fromkeys(subject for _, subject in rows))
    peers = [s for s in subjects if not s.startswith(OWN) and not s.endswith(PUSHED) and s != CHAIN]

    def times(subject):
        return {e: number(rows[e, subject]) for e in entries if (e, subject) in rows}

    def ratios(subject):
        return {e: rows[e, subject] / rows[e, OWN] for e in entries if (e, subject) in rows and (e, OWN) in rows}

    columns = [(f"{build} ns", times(OWN), None)]
    for peer in peers:
        found = ratios(peer)
        if found:
            columns.append((peer, {e: f"{r:.2f}" for e, r in found.items()}, geometric_mean(found.values())))
    for subject, heading in ((OWN + PUSHED, "words pushed ns"), (CHAIN, "own chain ns")):
        if found := times(subject):
            columns.append((heading, found, None))
    return columns


def runs_of(machine, folder):
    files = sorted(folder.glob(f"{machine}-linux-*.json"))
    if not files:
        fail(f"there is no {folder}/{machine}-linux-*.json")
    return [read(path) for path in files]


def entries_of(group, runs, rooms):
    """The entries of the rooms that have a peer, in the order of the list."""
    wanted = set(group.split("+"))
    if unknown := wanted - set(rooms.values()):
        fail(f"no room {', '.join(sorted(unknown))} in the list of exports")
    order = list(rooms)

    def place(entry):
        stem = entry.split(" ")[0]
        return (order.index(stem) if stem in rooms else -1, entry.count(" "), entry)

    entries = {entry for run in runs for entry, subject in run["rows"]
               if not subject.startswith(OWN) and subject != CHAIN and rooms.get(entry.split(" ")[0]) in wanted}
    return sorted(entries, key=place)


def means(machine, folder, rooms):
    runs = runs_of(machine, folder)
    lines = [f"| times as fast, on {runs[0]['processor']} | " + " | ".join(r["build"].split("-", 1)[1] for r in runs) + " |",
             "|---|" + "---|" * len(runs)]
    for group, peer, title in (("quad+cquad", "libquadmath", "REAL\\*16 and COMPLEX\\*32"),
                               ("real+complex", "libm", "REAL\\*4, REAL\\*8 and COMPLEX")):
        entries = entries_of(group, runs, rooms)
        found = [{heading: mean for heading, _, mean in columns_of(run, entries)}.get(peer) for run in runs]
        lines.append(f"| {title}, as {peer} | " + " | ".join(f"{mean:.1f}" for mean in found) + " |")
    return "\n".join(lines)


def table(group, machine, folder, rooms):
    runs = runs_of(machine, folder)
    entries = entries_of(group, runs, rooms)
    columns = [column for run in runs for column in columns_of(run, entries)]
    versions = ", ".join(dict.fromkeys(f"version {run['version']}" for run in runs))
    processor = f"{runs[0]['processor']} ({runs[0]['maker']}, family {runs[0]['family']}, model {runs[0]['model']})"
    lines = [f"{processor}, {versions}, {runs[0]['compiler']}, {runs[0]['c_library']}.", "",
             "| entry | " + " | ".join(heading for heading, _, _ in columns) + " |",
             "|" + "---|" * (len(columns) + 1)]
    for entry in entries:
        stem, _, rest = entry.partition(" ")
        cells = " | ".join(texts.get(entry, "") for _, texts, _ in columns)
        lines.append(f"| `{stem}`{' ' + rest if rest else ''} | {cells} |")
    last = " | ".join("" if mean is None else f"{mean:.2f}" for _, _, mean in columns)
    if last.strip(" |"):
        lines.append(f"| geometric mean | {last} |")
    return "\n".join(lines)


def page(path, check):
    path = pathlib.Path(path)
    try:
        text = path.read_text()
    except OSError as error:
        fail(f"cannot read {path}: {error.strerror}")
    root = pathlib.Path(__file__).resolve().parent.parent
    rooms, folder = rooms_of_entries(root / "src/frame/exports.list"), path.with_suffix("")
    if not folder.is_dir():
        folder = root / "docs/benchmarks"
    pattern = re.compile(r"(<!-- (?:rows (\S+)|means) of (\S+) -->\n).*?(<!-- end -->)", re.S)
    if not pattern.search(text):
        fail(f"{path} has no table to renew")

    def made(match):
        return table(match[2], match[3], folder, rooms) if match[2] else means(match[3], folder, rooms)

    renewed = pattern.sub(lambda m: f"{m[1]}{made(m)}\n{m[4]}", text)
    if not check:
        path.write_text(renewed)
    elif renewed != text:
        fail(f"the tables of {path} are out of date: renew them by {sys.argv[0]} page {path}")


def compare(old_path, new_path, beyond):
    old, new = read(old_path), read(new_path)
    for key in ("processor", "build"):
        if old[key] != new[key]:
            print(f"note: {key} {old[key]} against {new[key]}")
    common = [key for key in old["rows"] if key in new["rows"]]
    if not common:
        fail(f"{old_path} and {new_path} have no row in common")
    changes = sorted(((new["rows"][key] / old["rows"][key], key) for key in common), reverse=True)
    for ratio, (entry, subject) in changes:
        if abs(ratio - 1) > beyond / 100:
            key = (entry, subject)
            print(f"{entry:26} {subject:26} {old['rows'][key]:10.2f} {new['rows'][key]:10.2f} {ratio:8.2f}")
    for name, here, there in ((old_path, old, new), (new_path, new, old)):
        if missing := sum(key not in there["rows"] for key in here["rows"]):
            print(f"{missing} rows stand in {name} only")
    for kind, chosen in (("of the library", [r for r, k in changes if k[1].startswith(OWN)]),
                         ("of the peers", [r for r, k in changes if not k[1].startswith(OWN)])):
        if chosen:
            print(f"geometric mean of the rows {kind}: {geometric_mean(chosen):.3f} over {len(chosen)}")


def main():
    parser = argparse.ArgumentParser(description="Results of zorvikrt_bench as tables.")
    commands = parser.add_subparsers(dest="command", required=True)
    making = commands.add_parser("page", help="renew the tables of pages")
    making.add_argument("--check", action="store_true")
    making.add_argument("pages", nargs="+")
    comparing = commands.add_parser("compare", help="two results of one machine")
    comparing.add_argument("--beyond", type=float, default=3.0, metavar="PERCENT")
    comparing.add_argument("old")
    comparing.add_argument("new")
    chosen = parser.parse_args()
    if chosen.command == "page":
        for path in chosen.pages:
            page(path, chosen.check)
    else:
        compare(chosen.old, chosen.new, chosen.beyond)


main()
