#!/usr/bin/env python3
"""Loads every workbook of some folders, saves it, and tells subject by subject what came through unchanged.

usage: fidelity.py DUMP BENCH FOLDER... [--markdown FILE]
Prints a table a file form: files, how many loaded, why others did not, and for each subject how many files show the same
before and after. Exits with 1 when a file that loads shows a difference that no known rule explains.
"""
import argparse
import collections
import pathlib
import subprocess
import sys
import tempfile

import fidelity_xls
import fidelity_xlsx
import workbook_views as views

FORMS = {".xls": ("xls", fidelity_xls), ".xlsx": ("xlsx", fidelity_xlsx), ".xlsm": ("xlsx", fidelity_xlsx),
         ".xltx": ("xlsx", fidelity_xlsx), ".xltm": ("xlsx", fidelity_xlsx)}


OUR_READING = "values, by our own reading of both files"

# What a load and a save changes knowingly: (name, reason, the subjects that it touches).
BIFF5 = ("BIFF5", "a BIFF5 book becomes BIFF8: formula tokens of names take their other form, the colour of a bottom border "
                  "keeps one bit, drawings and comments go", {"names", "borders", "comments", "pictures and drawings"})
CHART = ("chart", "a sheet with an embedded chart keeps its records from the chart on and becomes a chart sheet",
         {"names", "pictures and drawings"})
RULES = (BIFF5, CHART)


class Tally:
    """What was seen of one file form."""

    def __init__(self, subjects):
        self.subjects = (OUR_READING, *subjects)
        self.files = self.loaded = self.judged = 0
        self.refused = collections.Counter()
        self.unjudged = collections.Counter()
        self.same = collections.Counter()
        self.differing = collections.defaultdict(list)
        self.explained = collections.Counter()
        self.rules = collections.Counter()

    def lines(self, form):
        yield f"### .{form}"
        yield ""
        yield f"{self.files} files, {self.loaded} loaded and saved, {self.judged} compared by another reader."
        yield ""
        for title, counter in (("not loaded", self.refused), ("not compared", self.unjudged)):
            for reason, count in counter.most_common():
                yield f"- {title}: {count} x {reason}"
        for name, reason, _ in RULES:
            if self.rules[name]:
                yield f"- rule \"{name}\" in {self.rules[name]} files: {reason}"
        yield ""
        yield "| subject | unchanged | changed by a rule above | changed otherwise |"
        yield "|---|---|---|---|"
        for subject in self.subjects:
            changed = self.differing[subject]
            names = ": " + ", ".join(changed[:8]) + (" ..." if len(changed) > 8 else "") if changed else ""
            yield f"| {subject} | {self.same[subject]} | {self.explained[subject]} | {len(changed)}{names} |"
        yield ""


def short(error):
    return str(error).strip().splitlines()[-1][:90] if str(error).strip() else type(error).__name__


def without_charted(seen, sheets):
    """The same without what stands in the sheets that a save keeps as records alone."""
    kept = {}
    for subject, value in seen.items():
        if isinstance(value, dict):
            value = {key: item for key, item in value.items() if (key[0] if isinstance(key, tuple) else key) not in sheets}
        elif subject == "sheet order and states":
            value = [item for item in value if item[0] not in sheets]
        kept[subject] = value
    return kept


def check(dump, bench, path, form, judge, tally, work):
    tally.files += 1
    saved = pathlib.Path(work) / path.name
    try:
        sheets = [item["sheet"] for item in views.dump(dump, path) if "sheet" in item]
    except RuntimeError as error:
        tally.refused[short(error)] += 1
        return
    done = subprocess.run([bench, "resave", str(path), str(saved)], capture_output=True, text=True, timeout=600)
    if done.returncode != 0:
        tally.differing["sheet order and states"].append(f"{path.name} (not saved: {short(done.stderr)})")
        return
    tally.loaded += 1
    charted = {sheet["name"] for sheet in sheets if sheet["type"] != "sheet"} if form == "xls" else set()
    ours = [{name: cells for name, cells in views.ours(dump, book).items() if name not in charted} for book in (path, saved)]
    if views.differences(*ours):
        tally.differing[OUR_READING].append(path.name)
    else:
        tally.same[OUR_READING] += 1
    try:
        before = judge.look(dump, path)
    except Exception as error:  # a reader raises whatever its parser meets
        tally.unjudged[f"the reader can't open the original: {short(error)}"] += 1
        return
    try:
        after = judge.look(dump, saved)
    except Exception as error:
        tally.differing["sheet order and states"].append(f"{path.name} (unreadable afterwards: {short(error)})")
        return
    tally.judged += 1
    rules = []
    if charted:
        before, after = without_charted(before, charted), without_charted(after, charted)
        rules.append(CHART)
    if form == "xls" and judge.is_biff5(path):
        rules.append(BIFF5)
    for rule in rules:
        tally.rules[rule[0]] += 1
    for subject in judge.SUBJECTS:
        if before[subject] == after[subject]:
            tally.same[subject] += 1
        elif any(subject in rule[2] for rule in rules):
            tally.explained[subject] += 1
        else:
            tally.differing[subject].append(path.name)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("dump")
    parser.add_argument("bench")
    parser.add_argument("folders", nargs="+")
    parser.add_argument("--markdown", help="write the tables to this file too")
    options = parser.parse_args()
    files = sorted(p for folder in options.folders for p in pathlib.Path(folder).glob("*") if p.suffix.lower() in FORMS)
    if not files:
        views.skip(f"no workbooks in {', '.join(options.folders)}")
    tallies = {}
    with tempfile.TemporaryDirectory() as work:
        for path in files:
            form, judge = FORMS[path.suffix.lower()]
            tally = tallies.setdefault(form, Tally(judge.SUBJECTS))
            check(options.dump, options.bench, path, form, judge, tally, work)
    text = "\n".join(line for form, tally in tallies.items() for line in tally.lines(form))
    print(text)
    if options.markdown:
        pathlib.Path(options.markdown).write_text(text + "\n", encoding="utf-8")
    return 1 if any(names for tally in tallies.values() for names in tally.differing.values()) else 0


if __name__ == "__main__":
    sys.exit(main())
