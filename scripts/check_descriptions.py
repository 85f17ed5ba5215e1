#!/usr/bin/env python3
"""Fails when the descriptions in source/ooxml are not what the published schemas give.

    check_descriptions.py SCHEMAS DESCRIPTIONS

Without the schemas it says so and answers 77, which ctest shows as a skipped test.
"""

import difflib
import os
import sys

from bindings import model
from bindings.modules import MODULES, file_stems
from import_schemas import import_all

SKIPPED = 77

# Classes of complex types and groups, roots, and classes laid out by hand beside the described ones.
CLASS_COUNTS = {"workbook": 32, "sheet": 104, "styles": 41, "sharedStringTable": 19, "comments": 22, "table": 23,
                "contentypes": 4, "relationships": 3, "drawing": 177, "strict": 176, "strictdrawing": 179}
HAND_LAID = {"sheet": 1, "strict": 1}


def read(folder, name):
    path = os.path.join(folder, name)
    if not os.path.exists(path):
        return ""
    with open(path, encoding="utf-8") as file:
        return file.read()


def check_texts(expected, folder):
    errors = []
    for name, text in expected.items():
        diff = list(difflib.unified_diff(read(folder, name).splitlines(), text.splitlines(), name, "schemas", n=0,
                                         lineterm=""))
        errors += diff[:20]
    present = {name for name in os.listdir(folder) if name.endswith(".desc")}
    errors += ["%s comes from no schema" % name for name in sorted(present - set(expected))]
    return errors


def check_counts(folder):
    errors = []
    for source in MODULES:
        module = model.Module()
        for stem in file_stems(source):
            model.parse(read(folder, stem + ".desc"), stem, module)
        count = len(module.classes) + len(module.roots) + HAND_LAID.get(module.name, 0)
        if count != CLASS_COUNTS[source.namespace]:
            errors.append("%s has %d classes instead of %d" % (source.namespace, count,
                                                               CLASS_COUNTS[source.namespace]))
    return errors


def main():
    schemas, folder = sys.argv[1:3]
    errors = check_counts(folder)
    compared = os.path.isdir(schemas)
    if compared:
        errors += check_texts(import_all(schemas), folder)
    for error in errors:
        print(error)
    if errors:
        return 1
    if not compared:
        print("SKIPPED: no schema files in '%s'; only the class counts were checked" % schemas)
        return SKIPPED
    print("the descriptions are what the schemas give")
    return 0


if __name__ == "__main__":
    sys.exit(main())
