#!/usr/bin/env python3
"""Puts together docs/reliability.md from what the checks left behind.

usage: write_reliability.py OUT FIDELITY_MD FUZZ_BUILD COVERAGE_TXT
A check that was not run on this machine is said to be missing.
"""
import collections
import pathlib
import re
import sys
import time

HEAD = """# Reliability

Made by `./dev reliability` on {date}. What is promised: nothing that another program wrote is damaged by a load and a
save, apart from what a rule below names; and any bytes at all end in success or in a message.

## Fidelity

Every workbook of a folder is loaded, saved untouched, and looked at by another reader before and after.

{fidelity}
## Failing memory, failing disks, several threads

`tests/faults` makes each allocation of a book's filling, save and load fail once in turn, and lets the disk be full at
every point of a save: the operation answers with a failure and a message, the file that stood there is untouched, no
temporary file stays, and the same book can be saved again. `tests/threads` gives books to four threads under the thread
sanitizer (`./dev threads`). The whole suite runs under the address, undefined behaviour and leak sanitizers
(`./dev sanitize`), and the tests of the component, over the workbooks of other programs too, under valgrind
(`./dev memcheck`).

## Fuzzing

{fuzz}
## Line coverage by the tests

{coverage}"""


def former_rows(page):
    """The rows of the fuzz table that the page has, by target."""
    if not page.exists():
        return {}
    _, _, fuzzing = page.read_text(encoding="utf-8").partition("## Fuzzing")
    rows, _, _ = fuzzing.partition("\n## ")
    return {row.split(" ")[1]: row for row in rows.splitlines() if re.match(r"\| \w+ \| [\d,]+ \|", row)}


def fuzz_row(log):
    """What a target's log tells, in which several runs may follow each other."""
    text = log.read_text(errors="replace")
    runs = sum(int(count) for count in re.findall(r"stat::number_of_executed_units:\s+(\d+)", text))
    seconds = sum(int(count) for count in re.findall(r"Done \d+ runs in (\d+) second", text))
    last = re.findall(r"cov: (\d+) ft: \d+ corp: (\d+)", text)
    found = len(list(log.parent.glob(f"{log.stem}-*")))
    cov, corpus = last[-1] if last else ("", "")
    done = f"{runs:,} | {seconds:,}" if runs else "stopped early |"
    return f"| {log.stem} | {done} | {cov} | {corpus} | {found} |"


def fuzz_table(build, page):
    """A target without a log on this machine keeps the row of its last run."""
    rows = former_rows(page)
    rows.update({log.stem: fuzz_row(log) for log in pathlib.Path(build).glob("findings/*.log")})
    if not rows:
        return "Not run.\n"
    lines = ["| target | executions | seconds | edges covered | corpus | findings |", "|---|---|---|---|---|---|"]
    return "\n".join(lines + [rows[target] for target in sorted(rows)]) + "\n"


def coverage_table(path):
    path = pathlib.Path(path)
    if not path.exists():
        return "Not run.\n"
    folders = collections.defaultdict(lambda: [0, 0])
    for line in path.read_text().splitlines():
        found = re.match(r"(\S+)\s+(\d+)\s+(\d+)\s+\d+%", line)
        if found and found.group(1) != "TOTAL":
            folder = found.group(1).split("/")[0]
            folders[folder][0] += int(found.group(2))
            folders[folder][1] += int(found.group(3))
    lines = ["| folder | lines | reached |", "|---|---|---|"]
    lines += [f"| {folder}/ | {total} | {100 * hit / total:.1f} % |" for folder, (total, hit) in sorted(folders.items()) if total]
    return "\n".join(lines) + "\n"


def main():
    out, fidelity, fuzz, coverage = sys.argv[1:5]
    fidelity = pathlib.Path(fidelity)
    tables = fidelity.read_text(encoding="utf-8") if fidelity.exists() else "No workbooks at hand.\n"
    page = pathlib.Path(out)
    page.write_text(HEAD.format(date=time.strftime("%Y-%m-%d"), fidelity=tables, fuzz=fuzz_table(fuzz, page),
                                coverage=coverage_table(coverage)), encoding="utf-8")


if __name__ == "__main__":
    main()
