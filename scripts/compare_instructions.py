#!/usr/bin/env python3
"""Compares two builds by the instructions that ten pinned small jobs take: a slow-down shows without a quiet machine.

usage: compare_instructions.py OLD_BUILD NEW_BUILD [--limit PERCENT]
Each build has bench/growth. Prints a line a job; exits with 1 when one takes more than PERCENT (default 5) more.
"""
import argparse
import pathlib
import re
import shutil
import subprocess
import sys

PINNED = [("xls", "rows", 500), ("xls", "strings", 2000), ("xls", "styles", 300), ("xls", "names", 300),
          ("xls", "formula-length", 4), ("xlsx", "rows", 500), ("xlsx", "strings", 2000), ("xlsx", "styles", 300),
          ("xlsx", "merges", 500), ("xlsx", "sheets", 20)]


def instructions(build, job):
    """What one process executes; None when the job fails."""
    done = subprocess.run(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", str(build / "bench/growth"),
                           *map(str, job)], capture_output=True, text=True)
    found = re.search(r"Collected : (\d+)", done.stderr)
    return int(found.group(1)) if done.returncode == 0 and found else None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("old", type=pathlib.Path)
    parser.add_argument("new", type=pathlib.Path)
    parser.add_argument("--limit", type=float, default=5.0)
    options = parser.parse_args()
    if shutil.which("valgrind") is None:
        print("compare_instructions: valgrind is not on this machine", file=sys.stderr)
        return 2
    slower = 0
    for job in PINNED:
        old, new = instructions(options.old, job), instructions(options.new, job)
        name = " ".join(map(str, job))
        if old is None or new is None:
            print(f"{name:28} {'fails in the ' + ('old' if old is None else 'new') + ' build':>40}")
            slower += new is None
            continue
        change = 100.0 * (new - old) / old
        over = change > options.limit
        slower += over
        print(f"{name:28} {old:14,} {new:14,} {change:+7.2f} %{'  SLOWER' if over else ''}")
    return 1 if slower else 0


if __name__ == "__main__":
    sys.exit(main())
