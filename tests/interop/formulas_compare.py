#!/usr/bin/env python3
"""Compares the text of every formula cell of .xls files with what LibreOffice gives for it.

  formulas_compare.py FORMULA_PROBE FOLDER [--converted DIRECTORY] [--show N]

Each file is converted to .xlsx by LibreOffice (results in DIRECTORY are used again), and both texts are brought into one
form: blanks, "$" of addresses, quotes of sheet names, spellings of numbers and of functions with two names. Prints, for
each reason that could be told, how many cells differ, and N examples of it. Answers 1 when a difference has no known
reason, 77 where LibreOffice isn't installed.
"""
import argparse
import collections
import glob
import json
import os
import re
import subprocess
import sys
import tempfile
import urllib.parse

import libreoffice

TOKEN = re.compile(r'\d\w*(?=!)|"(?:[^"]|"")*"|\'(?:[^\']|\'\')*\'|[A-Za-z_\\][\w.\\]*|\d+\.?\d*(?:[eE][+-]?\d+)?|\.\d+|#[A-Z0-9/!?]+|.',
                   re.S)
# Functions that LibreOffice writes under the name of its own file form.
RENAMED = {"ERROR.TYPE": "ERRORTYPE", "USDOLLAR": "DOLLAR", "DBCS": "JIS"}
# Functions that it replaces by others, with arguments of their own.
REPLACED = re.compile(r"HYPGEOM|PERCENTRANK")


def plain_number(text):
    try:
        return f"{float(text):.15g}"
    except ValueError:
        return text


def external_name(path):
    """The file name within a link's target, which may be a URL."""
    return urllib.parse.unquote(re.split(r"[/\\]", path)[-1])


def normal(text, external_books=()):
    """The tokens of a formula in a form that doesn't depend on who printed it."""
    if external_books:
        text = re.sub(r"\[(\d+)\]",
                      lambda m: "[" + external_name(external_books[int(m.group(1)) - 1]) + "]"
                      if 0 < int(m.group(1)) <= len(external_books) else m.group(0), text)
    result = []
    for token in TOKEN.findall(text.lstrip("=")):
        if token.isspace() or token == "$":
            continue
        if token[0] == "'":
            token = re.sub(r"^.*\[", "[", token[1:-1].replace("''", "'"))
        elif re.match(r"\d[\d.]*(?:[eE][+-]?\d+)?$", token) or (token[0] == "." and len(token) > 1):
            token = plain_number(token)
        elif token[0] != '"':
            token = re.sub("^_XLFN\\.", "", token.upper())
            token = RENAMED.get(token, token)
        result.append(token.upper() if token[0] != '"' else token)
    text = re.sub(r"\b(TRUE|FALSE)\(\)", r"\1", "".join(result))
    return re.sub(r"\b([A-Z]{1,2})1:([A-Z]{1,2})65536\b", r"\1:\2", text)


def reason(ours, theirs):
    """Why two normalised texts differ, or None when that can't be told from them."""
    if theirs is None:
        return "LibreOffice has no formula there"
    if "MISS" in ours:
        return "a missing argument prints as MISS"
    if "?" in ours:
        return "holds ?, an item that has no text"
    if re.search(r"\bERR\b|#REF!", ours):
        return "a reference error"
    if "#" in ours or "#" in theirs:
        return "an error that LibreOffice adds or leaves out"
    if REPLACED.search(ours):
        return "a function that LibreOffice replaces"
    return None


def dumped(probe, path):
    run = subprocess.run([probe, "dump", path], capture_output=True, check=False)
    lines = run.stdout.decode("utf-8", "replace").splitlines()
    return [json.loads(line) for line in lines], run.stderr.decode("utf-8", "replace").strip()


def compare_file(probe, path, directory, tally, examples):
    name = os.path.basename(path)
    cells, message = dumped(probe, path)
    if message:
        tally["files that don't load: " + message] += 1
        return
    if not cells:
        tally["files without formulas"] += 1
        return
    converted = os.path.join(directory, os.path.splitext(name)[0] + ".xlsx")
    if not os.path.exists(converted):
        converted = libreoffice.convert(path, directory)
    if converted is None:
        tally["files that LibreOffice doesn't convert"] += 1
        return
    book = libreoffice.Workbook(converted)
    tally["files with formulas"] += 1
    for cell in cells:
        place = (cell["row"], cell["col"])
        found = book.cells.get(cell["sheet"], {}).get(place)
        their_text = found[2] if found else None
        ours = normal(cell["formula"]) if "formula" in cell else None
        theirs = normal(their_text, book.external_books) if their_text is not None else None
        tally["cells"] += 1
        if ours is not None and ours == theirs:
            tally["cells that agree"] += 1
            continue
        why = "not printed: " + cell["error"] if ours is None else reason(ours, theirs)
        why = why or "no known reason"
        tally["differ: " + why] += 1
        examples[why].append(f"{name} {cell['sheet']}!R{place[0] + 1}C{place[1] + 1}\n"
                             f"      ours   {cell.get('formula', cell.get('error'))}\n      theirs {their_text}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("probe")
    parser.add_argument("folder")
    parser.add_argument("--converted")
    parser.add_argument("--show", type=int, default=3)
    options = parser.parse_args()
    if libreoffice.program() is None:
        print("skipped: soffice isn't installed")
        return libreoffice.SKIPPED
    if not os.path.isdir(options.folder):
        print(f"skipped: no folder {options.folder}")
        return libreoffice.SKIPPED
    directory = options.converted or tempfile.mkdtemp(prefix="formulas-")
    os.makedirs(directory, exist_ok=True)
    tally, examples = collections.Counter(), collections.defaultdict(list)
    for path in sorted(glob.glob(os.path.join(options.folder, "*"))):
        if path.lower().endswith((".xls", ".xlt")):
            compare_file(options.probe, path, directory, tally, examples)
    for what, count in sorted(tally.items()):
        print(f"{count:8} {what}")
    for why, texts in sorted(examples.items()):
        print(f"\n{why}:")
        for text in texts[:options.show]:
            print("   ", text)
    return 1 if tally["differ: no known reason"] else 0


if __name__ == "__main__":
    sys.exit(main())
