#!/usr/bin/env python3
"""Lets other programs read the structure of an .xlsx book of ours: widths, outline, merges, page setup, names and more.

usage: xlsx_sheet_judge.py JUDGE SAMPLE_WRITER [strict]
JUDGE is openpyxl, libreoffice or gnumeric. The two applications convert the book, and openpyxl reads what they made of
it; with "strict" the book is of the strict dialect, which of the three LibreOffice alone reads. Skipped, with a word,
where the judge or openpyxl is missing. The anchors of pictures are read from the package itself, since openpyxl takes
pictures only where an imaging library is installed.
"""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import warnings
import xml.etree.ElementTree as ElementTree
import zipfile

import libreoffice

try:
    import openpyxl
except ImportError:
    print("skipped: openpyxl is not on this machine")
    sys.exit(77)

DRAWING = "{http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing}"
UNITS = 9525  # of a drawing in a pixel

# What a judge writes otherwise than the file says, by the name of the fact: what it makes of the book, not what it read.
LIBREOFFICE_WAYS = {
    "collapsed mark behind them": (False, False),  # it keeps the hiding of a group in the group alone
    "panes": None, "zoom": 100, "gridlines of the view": True,  # a conversion has no view; xlsx_views_judge.py asks a document that is open
    "tab": None,  # it takes no tab colour of a protected sheet
    "links": {("https://example.org/figures?a=1&b=2", None), ("../other.xlsx", "Data!B2"), (None, "'My pictures'!B2")},
    "sort": ("A2:B9", ("A2:A9", True)),  # it names the first column, whichever is sorted
    "pictures": [("twoCell", (1, 0, 2, 0), (2, 36, 4, 10)), ("twoCell", (1, 0, 8, 0), (4, 8, 12, 20)),
                 ("oneCell", (4, 30, 2, 10), (5, 26, 5, 10)), ("absolute", (1, 0, 20, 0), (4, 8, 21, 10))],
}
GNUMERIC_WAYS = {
    "no settings for the inserted column": True,  # it writes every column
    "collapsed mark behind them": (False, False),
    "panes": None,  # it knows panes of the state "frozen" alone
    "fit": (True, None, 4),  # 1 is the default
    "centred": None, "gridlines": None,  # it passes over the options of the print
    "titles": (None, None),  # rows or columns, not both
    "validations": [("decimal", "A3:A10", "1.5", None, None), ("list", "B3:B10", '"low,high"', "warning", "Level")],
    "states": ["visible"] * 4,  # read, and not written
    "sort": None,
    "pictures": [(None, (1, 0, 2, 0), (2, 36, 4, 10)), (None, (1, 0, 8, 0), (4, 8, 13, 0)),
                 (None, (4, 30, 2, 10), (5, 26, 5, 10)), (None, (1, 0, 20, 0), (4, 8, 21, 10))],
}
# It leaves sheets of strict books unprotected, with a password or without, and so it takes their tab colour.
STRICT_WAYS = {**LIBREOFFICE_WAYS, "tab": "FFFA0301", "protection": (False, True, True)}
OWN_WAYS = {"libreoffice": LIBREOFFICE_WAYS, "libreoffice strict": STRICT_WAYS, "gnumeric": GNUMERIC_WAYS}


def structure(sheet):
    dims, rows = sheet.column_dimensions, sheet.row_dimensions
    widths = {letter: (round(d.width, 2), d.hidden, d.outlineLevel) for letter, d in dims.items()}
    return [
        # An insertion into a merge makes it wider.
        ("merges", [str(m) for m in sheet.merged_cells.ranges], ["A1:E1"]),
        ("width that was set", widths["B"][0], 20.71),
        ("hidden column moved", widths["D"], (10.71, True, 0)),
        ("no settings for the inserted column", "C" in widths, False),
        ("outline of columns moved", [widths[c][2] for c in "F"], [1]),
        ("height", rows[3].height, 30),
        ("hidden row", (rows[4].hidden, rows[4].height), (True, 15)),
        ("outline of rows", [rows[r].outlineLevel for r in range(6, 11)], [1] * 5),
        ("collapsed rows moved", [(rows[r].outlineLevel, rows[r].hidden) for r in (15, 16, 17)], [(1, True)] * 3),
        ("collapsed mark behind them", (rows[18].collapsed, rows[18].hidden), (True, False)),
        ("row breaks", [b.id for b in sheet.row_breaks.brk], [22, 32]),
        ("column breaks", [b.id for b in sheet.col_breaks.brk], [5]),
        ("panes", sheet.freeze_panes, "B3"),
        ("zoom", sheet.sheet_view.zoomScale, 150),
        ("value above", sheet["A10"].value, 900),
        ("value below", sheet["A13"].value, 1000),
        ("value right", sheet["D13"].value, 1002),
        ("value behind the removed rows", sheet["A36"].value, 3500),
        ("used range", sheet.dimensions, "A1:H40"),
        ("tab", sheet.sheet_properties.tabColor and sheet.sheet_properties.tabColor.rgb, "FFFA0301"),
    ]


def page(sheet):
    setup = sheet.page_setup
    return [
        ("orientation", setup.orientation, "landscape"),
        ("paper", str(setup.paperSize), "9"),
        ("fit", (sheet.sheet_properties.pageSetUpPr.fitToPage, setup.fitToWidth, setup.fitToHeight), (True, 1, 4)),
        ("header", sheet.oddHeader.center.text, "Figures"),
        # Versions of openpyxl spell the page number in two ways.
        ("footer", sheet.oddFooter.right.text.replace("&[Page]", "&P"), "Page &P"),
        ("margins", (sheet.page_margins.left, sheet.page_margins.right, sheet.page_margins.header,
                     sheet.page_margins.footer), (0.25, 0.7, 0.25, 0.5)),
        ("centred", sheet.print_options.horizontalCentered, True),
        ("gridlines", sheet.print_options.gridLines, True),
        ("print area", re.findall(r"[$A-Z0-9]+:[$A-Z0-9]+", str(sheet.print_area)), ["$A$1:$H$40"]),
        ("titles", (sheet.print_title_rows, sheet.print_title_cols), ("$1:$2", "$A:$A")),
        ("protection", (sheet.protection.sheet, sheet.protection.formatCells, sheet.protection.formatColumns),
         (True, False, True)),
    ]


def marks(book, sheet):
    shown = {(c.hyperlink.target, c.hyperlink.location) for row in sheet.iter_rows(max_row=8, max_col=3) for c in row
             if c.hyperlink}
    validations = sorted((v.type, str(v.sqref), v.formula1, v.errorStyle, v.promptTitle)
                         for v in sheet.data_validations.dataValidation)
    names = book.defined_names
    value = names["Figures"].value if hasattr(names, "keys") else names.get("Figures").value
    return [
        ("links", shown, {("https://example.org/figures?a=1&b=2", None), ("other.xlsx", "Data!B2"),
                          (None, "'My pictures'!B2")}),
        ("validations", validations, [("decimal", "A3:A10", "1.5", "stop", None),
                                      ("list", "B3:B10", '"low,high"', "warning", "Level")]),
        ("name", value, "Operations!$A$3:$B$10"),
        ("states", [s.sheet_state for s in book.worksheets], ["visible"] * 3 + ["hidden"]),
    ]


def filtered(sheet):
    filters = sheet.auto_filter
    custom = filters.filterColumn[0].customFilters.customFilter[0]
    return [
        ("right to left", bool(sheet.sheet_view.rightToLeft), True),
        ("gridlines of the view", sheet.sheet_view.showGridLines, False),
        ("filter", filters.ref, "A1:B9"),
        ("custom", (custom.operator, custom.val), ("equal", "p*")),
        ("top", filters.filterColumn[1].top10.val, 6),
        ("sort", filters.sortState and (filters.sortState.ref, *[(c.ref, c.descending)
                                                                 for c in filters.sortState.sortCondition]),
         ("A2:B9", ("B2:B9", True))),
        ("rows held back", [r for r in range(1, 10) if sheet.row_dimensions[r].hidden], [2, 3, 5, 9]),
    ]


def anchors(path):
    with zipfile.ZipFile(path) as package:
        root = ElementTree.fromstring(package.read("xl/drawings/drawing1.xml"))
    found = []
    for anchor in root:
        corners = [[int(anchor.find(DRAWING + end).find(DRAWING + part).text) for part in ("col", "colOff", "row", "rowOff")]
                   for end in ("from", "to")]
        found.append((anchor.get("editAs"), *[(c[0], round(c[1] / UNITS), c[2], round(c[3] / UNITS)) for c in corners]))
    return [("pictures", found, [("twoCell", (1, 0, 2, 0), (2, 36, 4, 10)), ("twoCell", (1, 0, 8, 0), (4, 8, 13, 0)),
                                 ("oneCell", (4, 30, 2, 10), (5, 26, 5, 10)), ("absolute", (1, 0, 20, 0), (4, 8, 21, 10))])]


def facts(path):
    book = openpyxl.load_workbook(str(path))
    sheet = book["Operations"]
    return structure(sheet) + page(sheet) + marks(book, sheet) + filtered(book["Filtered"]) + anchors(path)


def as_seen_by(judge, path, work):
    """The file that the judge makes of ours: what it understood is what it writes."""
    if judge == "openpyxl":
        return path
    if judge == "libreoffice":
        return libreoffice.convert(str(path), str(work)) if libreoffice.program() else None
    made = work / path.name
    if shutil.which("ssconvert") is None:
        return None
    subprocess.run(["ssconvert", str(path), str(made)], timeout=120, check=True, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL)
    return made


def main():
    warnings.simplefilter("ignore")
    judge, writer, *dialect = sys.argv[1:]
    with tempfile.TemporaryDirectory() as work:
        path, out = pathlib.Path(work) / "structure.xlsx", pathlib.Path(work) / "seen"
        out.mkdir()
        subprocess.run([writer, str(path), *dialect], check=True, timeout=60)
        seen = as_seen_by(judge, path, out)
        if seen is None:
            print(f"skipped: {judge} is not on this machine")
            return libreoffice.SKIPPED
        checked = facts(seen)
    own = OWN_WAYS.get(" ".join([judge, *dialect]), {})
    unknown = set(own) - {name for name, _, _ in checked}
    wrong = [(name, theirs, wanted) for name, theirs, wanted in checked if theirs != own.get(name, wanted)]
    for name, theirs, wanted in wrong:
        print(f"{name}: {judge} says {theirs}, should be {own.get(name, wanted)}")
    print(f"{judge}: {len(checked)} facts, {len(wrong)} wrong, {len(own)} in its own way")
    return 1 if wrong or unknown else 0


if __name__ == "__main__":
    sys.exit(main())
