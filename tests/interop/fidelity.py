#!/usr/bin/env python3
"""Loads every workbook of some folders, saves it, and tells subject by subject what came through unchanged.

usage: fidelity.py DUMP BENCH FOLDER... [--markdown FILE] [--details]
Prints a table a file form: files, how many loaded, why others did not, and for each subject how many files show the same
before and after. Exits with 1 when a file that loads shows a difference that no known rule explains.
"""
import argparse
import collections
import concurrent.futures
import dataclasses
import os
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
READABLE = "sheet order and states"  # where a file counts that can't be read any more


@dataclasses.dataclass
class Seen:
    """What was seen of one file; `changed` and `explained` by subject."""
    name: str
    form: str
    refused: str = ""
    unjudged: str = ""
    same: list = dataclasses.field(default_factory=list)
    changed: dict = dataclasses.field(default_factory=dict)
    explained: dict = dataclasses.field(default_factory=dict)


class Tally:
    """What was seen of one file form."""

    def __init__(self, judge):
        self.judge = judge
        self.subjects = (OUR_READING, *judge.SUBJECTS, *judge.PACKAGE_SUBJECTS)
        self.files = self.loaded = self.judged = 0
        self.refused = collections.Counter()
        self.unjudged = collections.Counter()
        self.same = collections.Counter()
        self.differing = collections.defaultdict(list)
        self.explained = collections.Counter()
        self.rules = collections.Counter()

    def add(self, seen):
        self.files += 1
        if seen.refused:
            self.refused[seen.refused] += 1
            return
        self.loaded += 1
        if seen.unjudged:
            self.unjudged[seen.unjudged] += 1
        else:
            self.judged += 1
        self.same.update(seen.same)
        for subject, what in seen.changed.items():
            self.differing[subject].append(seen.name + what)
        self.explained.update(seen.explained.keys())
        self.rules.update({rule for rules in seen.explained.values() for rule in rules})

    def lines(self, form):
        yield f"### .{form}"
        yield ""
        yield f"{self.files} files, {self.loaded} loaded and saved, {self.judged} compared by another reader."
        yield ""
        for title, counter in (("not loaded", self.refused), ("not compared", self.unjudged)):
            for reason, count in counter.most_common():
                yield f"- {title}: {count} x {reason}"
        for rule in self.judge.RULES:
            if self.rules[rule.name]:
                yield f"- rule \"{rule.name}\" in {self.rules[rule.name]} files: {rule.reason}"
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


def compare(seen, subjects, before, after, rules, details):
    """Enters each subject that is the same, that the rules explain, or that changed."""
    for subject in subjects:
        old, new = before[subject], after[subject]
        if old == new:
            # What a package doesn't have, such as macros, isn't counted as kept.
            if old or subject not in FORMS["." + seen.form][1].PACKAGE_SUBJECTS:
                seen.same.append(subject)
            continue
        reasons = [rule for rule in rules if subject in rule.subjects]
        sufficient = [rule for rule in reasons if rule.alike is None or rule.alike(subject, old) == rule.alike(subject, new)]
        if sufficient:
            seen.explained[subject] = [sufficient[0].name]
            continue
        for rule in reasons:
            old, new = rule.alike(subject, old), rule.alike(subject, new)
        if old == new:
            seen.explained[subject] = [rule.name for rule in reasons]
        else:
            seen.changed[subject] = f" ({first_difference(old, new)})" if details else ""


def first_difference(old, new):
    if isinstance(old, dict):
        for key in [*old, *new]:
            if old.get(key) != new.get(key):
                return f"{key}: {str(old.get(key))[:300]} became {str(new.get(key))[:300]}"
    return f"{[x for x in old if x not in new][:3]} became {[x for x in new if x not in old][:3]}"


def check(dump, bench, path, work, details):
    form, judge = FORMS[path.suffix.lower()]
    seen = Seen(path.name, form)
    saved = pathlib.Path(work) / path.name
    try:
        sheets = [item["sheet"] for item in views.dump(dump, path) if "sheet" in item]
    except RuntimeError as error:
        seen.refused = short(error)
        return seen
    done = subprocess.run([bench, "resave", str(path), str(saved)], capture_output=True, text=True, timeout=600)
    if done.returncode != 0:
        seen.changed[READABLE] = f" (not saved: {short(done.stderr)})"
        return seen
    charted = {sheet["name"] for sheet in sheets if sheet["type"] != "sheet"} if form == "xls" else set()
    ours = [{name: cells for name, cells in views.ours(dump, book).items() if name not in charted} for book in (path, saved)]
    changes = views.differences(*ours)
    if changes:
        seen.changed[OUR_READING] = f" ({changes[0]})" if details else ""
    else:
        seen.same.append(OUR_READING)
    if judge.PACKAGE_SUBJECTS:  # seen without a reader, so also of books that the reader can't open
        rules = judge.rules_of(path, charted)
        compare(seen, judge.PACKAGE_SUBJECTS, judge.look_into(path), judge.look_into(saved), rules, details)
    try:
        before = judge.look(dump, path)
    except Exception as error:  # a reader raises whatever its parser meets
        seen.unjudged = f"the reader can't open the original: {short(error)}"
        return seen
    try:
        after = judge.look(dump, saved)
    except Exception as error:
        seen.changed[READABLE] = f" (unreadable afterwards: {short(error)})"
        return seen
    if charted:
        before, after = without_charted(before, charted), without_charted(after, charted)
    compare(seen, judge.SUBJECTS, before, after, judge.rules_of(path, charted), details)
    saved.unlink()
    return seen


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("dump")
    parser.add_argument("bench")
    parser.add_argument("folders", nargs="+")
    parser.add_argument("--markdown", help="write the tables to this file too")
    parser.add_argument("--details", action="store_true", help="say what the first difference is")
    options = parser.parse_args()
    files = sorted(p for folder in options.folders for p in pathlib.Path(folder).glob("*") if p.suffix.lower() in FORMS)
    if not files:
        views.skip(f"no workbooks in {', '.join(options.folders)}")
    tallies = {}
    with tempfile.TemporaryDirectory() as work, concurrent.futures.ProcessPoolExecutor(os.cpu_count()) as pool:
        jobs = [pool.submit(check, options.dump, options.bench, path, work, options.details) for path in files]
        for job in jobs:
            seen = job.result()
            tallies.setdefault(seen.form, Tally(fidelity_xls if seen.form == "xls" else fidelity_xlsx)).add(seen)
    text = "\n".join(line for form, tally in tallies.items() for line in tally.lines(form))
    print(text)
    if options.markdown:
        pathlib.Path(options.markdown).write_text(text + "\n", encoding="utf-8")
    return 1 if any(names for tally in tallies.values() for names in tally.differing.values()) else 0


if __name__ == "__main__":
    sys.exit(main())
