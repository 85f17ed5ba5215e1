#!/usr/bin/env python3
"""Loads every .xlsx workbook of some folders, saves it, and validates each part that was written anew by the published
schemas, with xmllint: what was valid before has to be valid afterwards.

usage: validity_xlsx.py BENCH SCHEMAS FOLDER...
Exits with 1 when a part that was valid isn't any more, or a part is invalid after the save for a reason that it didn't
have before.
"""
import collections
import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

import workbook_views as views
from fidelity_package import CONTENT_TYPES_PART, STRICT, TRANSITIONAL, Package

OPC = "http://schemas.openxmlformats.org/package/2006/"
# The schema of a root element. xmllint honours one import of a namespace only, so that the published schema of
# transitional drawings has to be read through a helper that folds its imports into one.
SCHEMAS = {
    (TRANSITIONAL, "workbook"): "transitional-1st-edition/sml-workbook.xsd",
    (TRANSITIONAL, "worksheet"): "transitional-1st-edition/sml-sheet.xsd",
    (TRANSITIONAL, "styleSheet"): "transitional-1st-edition/sml-styles.xsd",
    (TRANSITIONAL, "sst"): "transitional-1st-edition/sml-sharedStringTable.xsd",
    (TRANSITIONAL, "table"): "transitional-1st-edition/sml-table.xsd",
    (TRANSITIONAL, "comments"): "transitional-1st-edition/sml-comments.xsd",
    ("http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing", "wsDr"): "aids-libxml2/dml-spreadsheetDrawing.xsd",
    ("http://purl.oclc.org/ooxml/drawingml/spreadsheetDrawing", "wsDr"): "strict/dml-spreadsheetDrawing.xsd",
    **{(STRICT, root): "strict/sml.xsd" for root in ("workbook", "worksheet", "styleSheet", "sst", "table")},
    (OPC + "content-types", "Types"): "opc/opc-contentTypes.xsd",
    (OPC + "relationships", "Relationships"): "opc/opc-relationships.xsd",
}
# The drawing schemas here know no charts and diagrams, of which a drawing holds but the reference.
UNKNOWN_GRAPHIC = "demanded by the strict wildcard"
FORMS = (".xlsx", ".xlsm", ".xltx", ".xltm")
LARGEST_PART = 16 << 20  # bytes; xmllint holds a part as a tree of many times its size
FILES_A_RUN = 400


def root_of(data):
    """(namespace, name) of the root element; UTF-16 is left to the other tests."""
    for tag in re.finditer(rb"<([A-Za-z_][\w.-]*:)?([A-Za-z_][\w.-]*)([^>]*)>", data[:20000]):
        attribute = b"xmlns" + (b":" + tag[1][:-1] if tag[1] else b"")
        uri = re.search(rb"\s" + attribute + rb"\s*=\s*[\"']([^\"']*)", tag[3])
        return (uri[1].decode() if uri else "", tag[2].decode())
    return ("", "")


def unpack(path, folder, side, number):
    """Writes the parts that have a schema; {part name: (file, schema)}."""
    package = Package(path)
    found = {}
    written = [(name, data) for name, data in package.parts.items() if package.is_bound(name)]
    for index, (name, data) in enumerate([(CONTENT_TYPES_PART, package.content_types), *written]):
        schema = SCHEMAS.get(root_of(data))
        if schema is None or len(data) > LARGEST_PART:
            continue
        file = folder / f"{number}-{index}-{side}.xml"
        # The first-edition schemas lack the attribute that everyone writes on text with blanks at its ends.
        file.write_bytes(re.sub(rb' xml:space="(preserve|default)"', b"", data))
        found[name] = (file, schema)
    return found


def messages(schemas, schema, files):
    """{file: the kinds of faults in it}, empty sets for valid files."""
    faults = {str(file): set() for file in files}
    done = subprocess.run(["xmllint", "--nonet", "--noout", "--huge", "--schema", str(schemas / schema), *map(str, files)],
                          capture_output=True, text=True, errors="replace", timeout=600)
    for line in done.stderr.splitlines():
        fault = re.match(r"(.+?\.xml):\d+: (.*)", line)
        if fault and fault[1] in faults and UNKNOWN_GRAPHIC not in fault[2]:
            faults[fault[1]].add(fault[2])
    seen = len(re.findall(r"\.xml (?:validates|fails to validate)$", done.stderr, re.MULTILINE))
    if seen < len(faults):
        raise RuntimeError(f"xmllint saw {seen} of {len(faults)} files with {schema}: {done.stderr[-500:]}")
    return faults


def resaved(bench, path, folder, number):
    saved = folder / f"{number}-{path.name}"
    done = subprocess.run([bench, "resave", str(path), str(saved)], capture_output=True, text=True, timeout=600)
    if done.returncode != 0:
        return None
    parts = unpack(path, folder, "before", number), unpack(saved, folder, "after", number)
    saved.unlink()
    return parts


def main():
    bench, schemas, *folders = sys.argv[1:]
    schemas = pathlib.Path(schemas)
    files = sorted(p for folder in folders for p in pathlib.Path(folder).glob("*") if p.suffix.lower() in FORMS)
    if not files:
        views.skip(f"no workbooks in {', '.join(folders)}")
    if not schemas.is_dir():
        views.skip(f"no schemas at {schemas}")
    if shutil.which("xmllint") is None:
        views.skip("xmllint is not on this machine")
    with tempfile.TemporaryDirectory() as work, concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        folder = pathlib.Path(work)
        books = list(pool.map(lambda job: resaved(bench, job[1], folder, job[0]), enumerate(files)))
        by_schema = collections.defaultdict(list)
        for book in filter(None, books):
            for side in book:
                for file, schema in side.values():
                    by_schema[schema].append(file)
        runs = [(schemas, schema, found[at:at + FILES_A_RUN]) for schema, found in by_schema.items()
                for at in range(0, len(found), FILES_A_RUN)]
        faults = {}
        for result in pool.map(lambda run: messages(*run), runs):
            faults.update(result)
    return report(files, books, faults)


def report(files, books, faults):
    counts = collections.defaultdict(collections.Counter)
    problems = []
    for path, book in zip(files, books):
        if book is None:
            continue
        before, after = book
        for name, (file, schema) in after.items():
            new = faults[str(file)]
            old = faults[str(before[name][0])] if name in before else None
            if not new:
                counts[schema]["valid after" if old == set() else "valid after, not before"] += 1
            elif old == set() or not old or new - old:
                problems.append(f"{path.name} {name}: {'; '.join(sorted(new - (old or set()))[:2])[:400]}")
                counts[schema]["with new faults"] += 1
            else:
                counts[schema]["with faults of its own"] += 1
    for schema, count in sorted(counts.items()):
        print(f"{schema}: " + ", ".join(f"{number} {what}" for what, number in sorted(count.items())))
    for problem in problems:
        print(problem)
    if not counts:
        print("nothing was validated")
    return 1 if problems or not counts else 0


if __name__ == "__main__":
    sys.exit(main())
