#!/usr/bin/env python3
"""Lets xlrd read widths, heights, hiding, outline, merges, breaks, panes, page setup and links of a book of ours.

usage: sheet_ops_judge.py SAMPLE_WRITER
Skipped, with a word, where xlrd is missing.
"""
import pathlib
import subprocess
import sys
import tempfile

try:
    import xlrd
except ImportError:
    print("skipped: xlrd is not on this machine")
    sys.exit(77)

DIGIT = 7  # pixels of a digit of Arial 10 and of the metric-compatible Liberation Sans


def stored(chars):
    return int(chars * DIGIT + 5 + 0.5) * 256 // DIGIT


def facts(sheet):
    """What xlrd says, beside what it should say."""
    cols, rows = sheet.colinfo_map, sheet.rowinfo_map
    links = [(l.frowx, l.lrowx, l.fcolx, l.lcolx, l.url_or_path, l.textmark) for l in sheet.hyperlink_list]
    links = [tuple(p.rstrip("\0") if isinstance(p, str) else p for p in link) for link in links]
    return [
        ("a merge before the insertion", sheet.merged_cells, [(0, 1, 0, 2), (0, 1, 3, 5)]),
        ("width that was set", cols[1].width, stored(20)),
        ("width of the inserted column", cols[2].width, stored(8.43)),
        ("hidden column moved", (cols[3].hidden, cols[3].width), (1, stored(10))),
        ("the column after it is shown", cols[4].hidden if 4 in cols else 0, 0),
        ("outline of columns stays", [cols[c].outline_level for c in (4, 5)], [1, 1]),
        ("height", rows[2].height, 600),
        ("hidden row", (rows[3].hidden, rows[3].height), (1, 300)),
        ("outline of rows", [rows[r].outline_level for r in range(5, 10)], [1] * 5),
        ("collapsed rows moved", [(rows[r].outline_level, rows[r].hidden) for r in (14, 15, 16)], [(1, 1)] * 3),
        ("collapsed mark behind them", (rows[17].outline_group_starts_ends, rows[17].hidden), (1, 0)),
        ("row breaks", [b[0] for b in sheet.horizontal_page_breaks], [22, 32]),
        ("column breaks", [b[0] for b in sheet.vertical_page_breaks], [5]),
        ("panes", (sheet.panes_are_frozen, sheet.horz_split_pos, sheet.vert_split_pos), (1, 2, 1)),
        ("zoom", sheet.scl_mag_factor, 150),
        ("value above", sheet.cell_value(9, 0), 900),
        ("value below", sheet.cell_value(12, 0), 1000),
        ("value right", sheet.cell_value(12, 3), 1002),
        ("value behind the removed rows", sheet.cell_value(35, 0), 3500),
        ("last row", sheet.nrows, 40),
        ("links", links, [(2, 2, 0, 0, "https://example.org/figures", None), (3, 4, 0, 1, "other.xls", "Data!B2"),
                          (5, 5, 0, 0, None, "Operations!G3")]),
    ]


def main():
    with tempfile.TemporaryDirectory() as work:
        path = pathlib.Path(work) / "operations.xls"
        subprocess.run([sys.argv[1], str(path)], check=True, timeout=60)
        sheet = xlrd.open_workbook(str(path), formatting_info=True).sheet_by_index(0)
    checked = facts(sheet)
    wrong = [(name, theirs, wanted) for name, theirs, wanted in checked if theirs != wanted]
    for name, theirs, wanted in wrong:
        print(f"{name}: xlrd says {theirs}, should be {wanted}")
    print(f"xlrd: {len(checked)} facts, {len(wrong)} wrong")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
