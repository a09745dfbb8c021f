"""The benchmark program has a row for each entry of the list and its peers beside them, refuses bad
arguments in one line, and the tables of the page are those of the files beside it.

usage: check_benchmarks.py SOURCE_DIR COMMAND ..."""

import json
import pathlib
import subprocess
import sys
import tempfile

source, command = pathlib.Path(sys.argv[1]), sys.argv[2:]
tables = [sys.executable, str(source / "tools/benchmarks.py")]
faults = []


def run(words):
    return subprocess.run(words, capture_output=True, text=True)


def refused(words, text):
    done = run(words)
    if done.returncode == 0 or text not in done.stderr or done.stderr.strip().count("\n") > 0:
        faults.append(f"{words[1:]} gave {done.returncode}: {done.stderr}")


listed = run(command + ["--list"])
rows = {tuple(line.split("\t")) for line in listed.stdout.splitlines()}
names = set()
for line in (source / "src/frame/exports.list").read_text().splitlines():
    words = line.split()
    if words and not line[0].isspace() and line[0] not in "#[" and words[0] != "data":
        stem, references = (words[1], "-") if words[0] == "plain" else (words[0], words[-1])
        names |= {stem} | ({references} - {"-"})
missing = sorted(name for name in names if (name, "zorvikrt") not in rows)
if missing or listed.returncode != 0:
    faults.append(f"no row for {' '.join(missing)} {listed.stderr}")
for entry, peer in (("dsin", "libm"), ("dsin", "own chain"), ("cdexp", "libm"), ("cpowl", "libquadmath")):
    if (entry, peer) not in rows:
        faults.append(f"{peer} is not beside {entry}")

with tempfile.TemporaryDirectory() as folder:
    kept = pathlib.Path(folder, "kept.json")
    for rate in (2.0, 3.0):
        kept.rename(kept.with_name("old.json")) if kept.exists() else None
        done = run(command + ["--filter", "_mvbits_", "--json", str(kept)])
        if done.returncode != 0 or "_mvbits_" not in done.stdout:
            faults.append(f"a measurement gave {done.returncode}: {done.stderr}")
            break
        result = json.loads(kept.read_text())
        result["rows"][0]["nanoseconds"] = rate
        kept.write_text(json.dumps(result))
    else:
        done = run(tables + ["compare", str(kept.with_name("old.json")), str(kept)])
        if "1.50" not in done.stdout:
            faults.append(f"compare gave {done.stdout}{done.stderr}")
    broken = pathlib.Path(folder, "broken.json")
    broken.write_text("{}")
    refused(tables + ["compare", str(broken), str(kept)], "no result of zorvikrt_bench")
    refused(tables + ["page", str(kept)], "no table")
    refused(command + ["--json", folder], "cannot write")
refused(command + ["--filter", "no such row"], "no row contains")
refused(command + ["--fast"], "unknown argument")
refused(command + ["--against", "nowhere.so"], "nowhere.so")

current = run(tables + ["page", "--check", str(source / "docs/benchmarks.md"), str(source / "README.md")])
if current.returncode != 0:
    faults.append(current.stderr)

sys.exit("\n".join(faults) or 0)
