#!/usr/bin/env python3
"""Loads every .xls of a folder, saves it, and compares what is read before and after: by our own dump and by xlrd.

usage: corpus_roundtrip.py DUMP BENCH FOLDER
Prints a line for each file that doesn't load or differs, then the counts. Exits with 1 when a file differs otherwise
than by the one loss that is known: from an embedded chart on, a sheet is kept as a list of records, its cells are not
written back.
"""
import pathlib
import subprocess
import sys
import tempfile

import workbook_views as views


def charted_sheets(tool, path):
    """Names of the sheets that a save keeps as records alone."""
    return {item["sheet"]["name"] for item in views.dump(tool, path) if "sheet" in item and item["sheet"]["type"] != "sheet"}


def without(view, names):
    return {name: cells for name, cells in view.items() if name not in names}


def xlrd_pair(original, saved):
    try:
        before = views.xlrd_view(original)
    except Exception as error:  # xlrd raises whatever its parser meets
        return None, f"xlrd can't read the original: {error}"
    try:
        return (before, views.xlrd_view(saved)), None
    except Exception as error:
        return None, f"xlrd can't read what was saved: {error}"


def check(dump, bench, path, work):
    """(loaded, xlrd compared, lost sheets, problems) of one file."""
    try:
        before = views.ours(dump, path)
    except RuntimeError as error:
        print(f"  not loaded  {path.name}: {error}")
        return False, False, 0, []
    saved = pathlib.Path(work) / path.name
    done = subprocess.run([bench, "resave", str(path), str(saved)], capture_output=True, text=True, timeout=600)
    if done.returncode != 0:
        return True, False, 0, [f"not saved: {done.stderr.strip()}"]
    lost = charted_sheets(dump, path)
    problems = views.differences(without(before, lost), without(views.ours(dump, saved), lost))
    pair, reason = xlrd_pair(path, saved)
    if pair is None:
        if "what was saved" in reason:
            problems.append(reason)
        return True, False, len(lost), problems
    problems += ["xlrd: " + line for line in views.differences(without(pair[0], lost), without(pair[1], lost))]
    return True, True, len(lost), problems


def main():
    dump, bench, folder = sys.argv[1:4]
    files = sorted(p for p in pathlib.Path(folder).glob("*") if p.suffix.lower() == ".xls")
    if not files:
        views.skip(f"no .xls files in {folder}")
    loaded = judged = lost_sheets = 0
    failed = []
    with tempfile.TemporaryDirectory() as work:
        for path in files:
            ok, by_xlrd, lost, problems = check(dump, bench, path, work)
            loaded += ok
            judged += by_xlrd
            lost_sheets += lost
            if problems:
                failed.append(path.name)
                print(f"  differs     {path.name}: {len(problems)} places")
                for line in problems[:5]:
                    print(f"                {line[:200]}")
    print(f"{len(files)} files: {loaded} loaded and saved, {judged} of them also judged by xlrd, "
          f"{lost_sheets} sheets kept as records alone, {len(failed)} files differ")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
