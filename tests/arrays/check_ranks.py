#!/usr/bin/env python3
"""Runs programs on 1, 2 and 4 ranks: the output is the same, and holds a line that matches.

usage: check_ranks.py MPIRUN PATTERN PROGRAM
"""
import os
import re
import subprocess
import sys


def main(mpirun, pattern, program):
    outputs = {}
    for ranks in (1, 2, 4):
        environment = dict(os.environ, OMPI_MCA_btl_vader_single_copy_mechanism="none")
        result = subprocess.run([mpirun, "--allow-run-as-root", "--oversubscribe", "-n", str(ranks), program],
                                env=environment, capture_output=True, text=True, timeout=120)
        if result.returncode != 0:
            sys.exit(f"{program} on {ranks} ranks ended with {result.returncode}:\n{result.stdout}{result.stderr}")
        outputs[ranks] = result.stdout
        if result.stdout != outputs[1]:
            sys.exit(f"{ranks} ranks give\n{result.stdout}\none gives\n{outputs[1]}")
    if not re.search(pattern, outputs[1]):
        sys.exit(f"no line matches {pattern}:\n{outputs[1]}")


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit("usage: check_ranks.py MPIRUN PATTERN PROGRAM")
    main(*sys.argv[1:])
