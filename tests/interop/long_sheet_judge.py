#!/usr/bin/env python3
"""Lets Python's zipfile read a sheet that was compressed in many pieces: long_sheet_judge.py RUBRICA_BENCH"""
import pathlib
import re
import subprocess
import sys
import tempfile
import zipfile

ROWS, COLUMNS = 100_000, 10
PIECE = 1 << 20


def main():
    with tempfile.TemporaryDirectory() as directory:
        path = pathlib.Path(directory) / "long.xlsx"
        subprocess.run([sys.argv[1], "write", "xlsx", "N", path], check=True, stdout=subprocess.DEVNULL, timeout=600)
        with zipfile.ZipFile(path) as package:
            damaged = package.testzip()
            text = package.read("xl/worksheets/sheet1.xml")
    cells = re.findall(rb'<c r="([A-Z]+)(\d+)"><v>([^<]*)</v></c>', text)
    columns = [chr(ord("A") + c).encode() for c in range(COLUMNS)]
    expected = [(columns[c], b"%d" % (r + 1), (r * 10 + c) * 1.1 + 0.5) for r in range(ROWS) for c in range(COLUMNS)]
    same = [(column, row, float(value)) for column, row, value in cells] == expected
    print(f"{len(text)} bytes, {len(cells)} cells, damaged: {damaged}, values {'as' if same else 'not as'} written")
    return 0 if damaged is None and len(text) > 8 * PIECE and same and text.endswith(b"</worksheet>") else 1


if __name__ == "__main__":
    sys.exit(main())
