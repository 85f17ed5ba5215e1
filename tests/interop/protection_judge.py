#!/usr/bin/env python3
"""LibreOffice opens a sheet that we protected: it takes no edit, keeps its protection against a wrong password, and gives
it up for ours.

usage: protection_judge.py SAMPLE_WRITER EXTENSION
SAMPLE_WRITER writes a book whose first sheet is protected with the password "secret". Skipped, with a word, where
LibreOffice or its Python bridge is missing.
"""
import pathlib
import subprocess
import sys
import tempfile

import libreoffice

try:
    import office_bridge
    from com.sun.star.beans import PropertyValue
except ImportError:
    print("skipped: LibreOffice's Python bridge is not on this machine")
    sys.exit(libreoffice.SKIPPED)


VALUES = 1  # com.sun.star.sheet.CellFlags


def takes_edit(sheet):
    """Whether the numbers of a row can be deleted: calls that set one cell pass by the protection, this one doesn't."""
    row = sheet.getCellRangeByPosition(0, 9, 5, 9)
    before = row.getDataArray()
    row.clearContents(VALUES)
    return row.getDataArray() != before


def judge(desktop, path):
    hidden = PropertyValue()
    hidden.Name, hidden.Value = "Hidden", True
    book = desktop.loadComponentFromURL(path.as_uri(), "_blank", 0, (hidden,))
    sheet = book.Sheets.getByIndex(0)
    facts = [("protected", sheet.isProtected(), True), ("takes an edit", takes_edit(sheet), False)]
    try:
        sheet.unprotect("wrong")
    except Exception:  # refused aloud
        pass
    facts.append(("protected after a wrong password", sheet.isProtected(), True))
    sheet.unprotect("secret")
    facts += [("protected after the right password", sheet.isProtected(), False),
              ("takes an edit then", takes_edit(sheet), True)]
    book.close(True)
    return facts


def main():
    program = libreoffice.program()
    if program is None:
        print("skipped: LibreOffice is not on this machine")
        return libreoffice.SKIPPED
    writer, extension = sys.argv[1:3]
    with tempfile.TemporaryDirectory() as work:
        path = pathlib.Path(work) / f"protected.{extension}"
        subprocess.run([writer, str(path)], check=True, timeout=60)
        with office_bridge.running(program) as desktop:
            facts = judge(desktop, path)
    wrong = [fact for fact in facts if fact[1] != fact[2]]
    for what, found, expected in wrong:
        print(f"{what}: {found}, expected {expected}")
    print(f"libreoffice: {len(facts)} facts of a protected sheet, {len(wrong)} wrong")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
