#!/usr/bin/env python3
"""LibreOffice opens an .xlsx book of ours: panes, zoom, tab colours, hidden rows and sheets, and the places of
the pictures in its own document, which a conversion leaves out in part.

usage: xlsx_views_judge.py SAMPLE_WRITER
Skipped, with a word, where LibreOffice or its Python bridge is missing.
"""
import pathlib
import subprocess
import sys
import tempfile

import libreoffice_desktop

HUNDREDTHS_OF_MM = 2540 / 96  # in a pixel


def views(book):
    controller, sheets = book.CurrentController, book.Sheets
    controller.setActiveSheet(sheets.getByName("Operations"))
    facts = [("frozen panes", controller.hasFrozenPanes(), True),
             ("split", (controller.SplitRow, controller.SplitColumn), (2, 1)),
             ("zoom", controller.ZoomValue, 150)]
    controller.setActiveSheet(sheets.getByName("Filtered"))
    facts += [("first cell shown", (controller.FirstVisibleRow, controller.FirstVisibleColumn), (3, 1)),
              ("tab", sheets.getByName("Filtered").TabColor, 0x0AC81E),
              ("states", [sheets.getByIndex(i).IsVisible for i in range(sheets.Count)], [True, True, True, False])]
    return facts


def filtered(book):
    sheet = book.Sheets.getByName("Filtered")
    ranges = book.getPropertyValue("UnnamedDatabaseRanges")
    area = ranges.getByTable(sheet.RangeAddress.Sheet).DataArea if ranges.hasByTable(sheet.RangeAddress.Sheet) else None
    rows = [sheet.Rows.getByIndex(i).IsVisible for i in range(9)]
    return [("filtered area", area and (area.StartRow, area.EndRow, area.StartColumn, area.EndColumn), (0, 8, 0, 1)),
            ("rows shown", [i for i, shown in enumerate(rows) if shown], [0, 3, 5, 6, 7])]


def pictures(book):
    page = book.Sheets.getByName("My pictures").DrawPage
    found = []
    for shape in (page.getByIndex(i) for i in range(page.Count)):
        start = shape.Anchor.getCellAddress() if hasattr(shape.Anchor, "getCellAddress") else None
        size = tuple(round(length / HUNDREDTHS_OF_MM) for length in (shape.Size.Width, shape.Size.Height))
        found.append(((start.Row, start.Column) if start else None, size))
    wanted = [((2, 1), (100, 50)), ((8, 1), (200, 100)), ((2, 4), (60, 60)), (None, (200, 30))]
    # The corners of columns are rounded to hundredths of a millimetre: a pixel more or less.
    alike = len(found) == len(wanted) and all(
        cell == other and all(abs(a - b) <= 1 for a, b in zip(size, pixels))
        for (cell, size), (other, pixels) in zip(found, wanted))
    return [("pictures with their pixels", wanted if alike else found, wanted)]


def main():
    with tempfile.TemporaryDirectory() as work:
        path = pathlib.Path(work) / "views.xlsx"
        subprocess.run([sys.argv[1], str(path)], check=True, timeout=60)
        with libreoffice_desktop.desktop(work) as desktop:
            book = libreoffice_desktop.open_hidden(desktop, path)
            facts = views(book) + filtered(book) + pictures(book)
            book.close(True)
    return libreoffice_desktop.report("views, filters and pictures", facts)


if __name__ == "__main__":
    sys.exit(main())
