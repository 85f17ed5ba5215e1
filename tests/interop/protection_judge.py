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

import libreoffice_desktop

VALUES = 1  # com.sun.star.sheet.CellFlags


def takes_edit(sheet):
    """Whether the numbers of a row can be deleted: calls that set one cell pass by the protection, this one doesn't."""
    row = sheet.getCellRangeByPosition(0, 9, 5, 9)
    before = row.getDataArray()
    row.clearContents(VALUES)
    return row.getDataArray() != before


def judge(desktop, path):
    book = libreoffice_desktop.open_hidden(desktop, path)
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
    writer, extension = sys.argv[1:3]
    with tempfile.TemporaryDirectory() as work:
        path = pathlib.Path(work) / f"protected.{extension}"
        subprocess.run([writer, str(path)], check=True, timeout=60)
        with libreoffice_desktop.desktop(work) as desktop:
            facts = judge(desktop, path)
    return libreoffice_desktop.report("a protected sheet", facts)


if __name__ == "__main__":
    sys.exit(main())
