#!/usr/bin/env python3
"""Lets another program read the pictures and comments of a book of ours.

usage: drawing_judge.py xlrd|libreoffice SAMPLE_WRITER [DIRECTORY]
xlrd reads the comments with their authors. LibreOffice makes the pictures (JPEG, BMP, WMF and EMF from a PNG), shows
each of them in the cell, at the size and with the offset that it was given, and shows the comments; its pages are left
as PDF in DIRECTORY, where one is named. Skipped, with a word, where the program is missing.
"""
import os
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
import zlib

import libreoffice

PIXELS_PER_INCH, CM_PER_INCH = 96, 2.54
TABLE = "{urn:oasis:names:tc:opendocument:xmlns:table:1.0}"
DRAW = "{urn:oasis:names:tc:opendocument:xmlns:drawing:1.0}"
SVG = "{urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0}"
OFFICE = "{urn:oasis:names:tc:opendocument:xmlns:office:1.0}"
TEXT = "{urn:oasis:names:tc:opendocument:xmlns:text:1.0}"
KINDS = ["png", "jpg", "bmp", "wmf", "emf"]
COLORS = [(200, 30, 30), (30, 140, 30), (30, 30, 200), (200, 140, 0), (140, 0, 160)]


def png(color, width=80, height=60):
    """A picture of one colour with a white cross, so that its edges and its orientation can be seen."""
    rows = b""
    for y in range(height):
        row = b"".join(bytes((255, 255, 255) if abs(x - y) < 3 else color) for x in range(width))
        rows += b"\0" + row
    chunk = lambda kind, body: struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))
    head = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


def make_pictures(work, kinds):
    paths = []
    for kind, color in zip(kinds, COLORS):
        source = work / f"{kind}_source" / "picture.png"
        source.parent.mkdir()
        source.write_bytes(png(color))
        path = str(source)
        if kind != "png":
            path = libreoffice.convert(str(source), str(work / f"{kind}_source"), kind)
            if path is None:
                sys.exit(f"LibreOffice made no {kind}")
        paths.append(path)
    return paths


def write_sample(writer, work, pictures):
    path = work / "drawing.xls"
    run = subprocess.run([writer, str(path), *pictures], check=True, timeout=60, stdout=subprocess.PIPE, text=True)
    placed, comments = [], {}
    for line in run.stdout.splitlines():
        what, *words = line.split(" ")
        if what == "picture":
            placed.append(tuple(map(int, words)))
        else:
            comments[tuple(map(int, words[:3]))] = (words[3], " ".join(words[4:]))
    return path, placed, comments


def compare(what, found, expected):
    if found != expected:
        lost = [item for item in expected if item not in found][:3]
        more = [item for item in found if item not in expected][:3]
        sys.exit(f"{what}: {len(found)} for {len(expected)}; missing {lost}, not expected {more}")
    print(f"{what}: {len(expected)} as written")


def judge_xlrd(writer, work):
    try:
        import xlrd
    except ImportError:
        print("skipped: xlrd is not on this machine")
        sys.exit(libreoffice.SKIPPED)
    picture = work / "picture.png"
    picture.write_bytes(png(COLORS[0]))
    path, _, comments = write_sample(writer, work, [str(picture)])
    book = xlrd.open_workbook(str(path), formatting_info=True)
    found = {(at, row, col): (note.author, note.text)
             for at in range(3) for (row, col), note in book.sheet_by_index(at).cell_note_map.items()}
    compare("comments", sorted(found.items()), sorted(comments.items()))


def pixels(length):
    number, unit = re.fullmatch(r"(-?[\d.]+)(cm|in|mm|pt)", length).groups()
    inches = float(number) / {"cm": CM_PER_INCH, "mm": CM_PER_INCH * 10, "in": 1, "pt": 72}[unit]
    return inches * PIXELS_PER_INCH


def cells_of(table):
    """(row, column, element) of every cell that says something."""
    row = 0
    for line in table.iter(TABLE + "table-row"):
        col = 0
        for cell in line:
            if cell.tag in (TABLE + "table-cell", TABLE + "covered-table-cell"):
                yield row, col, cell
                col += int(cell.get(TABLE + "number-columns-repeated", "1"))
        row += int(line.get(TABLE + "number-rows-repeated", "1"))


def judge_libreoffice(writer, work, shown):
    if libreoffice.program() is None:
        print("skipped: LibreOffice is not on this machine")
        sys.exit(libreoffice.SKIPPED)
    path, placed, comments = write_sample(writer, work, make_pictures(work, KINDS))
    document = libreoffice.convert(str(path), str(work), "fods")
    if document is None:
        sys.exit("LibreOffice did not open the book")
    frames, notes = [], {}
    tables = list(ElementTree.parse(document).getroot().iter(TABLE + "table"))
    for at, table in enumerate(tables[:3]):
        for row, col, cell in cells_of(table):
            for frame in cell.iter(DRAW + "frame"):
                image = frame.find(DRAW + "image")
                if image is None:
                    continue
                data = image.find(OFFICE + "binary-data")
                if data is None or not (data.text or "").strip():
                    sys.exit(f"a picture without bytes in sheet {at}, row {row}, column {col}")
                size = (pixels(frame.get(SVG + "width")), pixels(frame.get(SVG + "height")))
                place = (pixels(frame.get(SVG + "x")), pixels(frame.get(SVG + "y")))
                frames.append(((at, row, col), size, place))
            note = cell.find(OFFICE + "annotation")
            if note is not None:
                notes[(at, row, col)] = "".join("".join(p.itertext()) for p in note.iter(TEXT + "p"))
    compare("comments", sorted(notes.items()), sorted((place, text) for place, (_, text) in comments.items()))
    compare("cells of pictures", sorted(place for place, _, _ in frames), sorted(p[:3] for p in placed))
    # An anchor is in 1/1024 of a column and 1/256 of a row, and a program rounds to its own units: 2 pixels at most.
    by_place = {place: (size, offset) for place, size, offset in frames}
    for at, row, col, width, height, _, _, kind in placed:
        (found_width, found_height), _ = by_place[(at, row, col)]
        if abs(found_width - width) > 2 or abs(found_height - height) > 2:
            sys.exit(f"{KINDS[kind]} in sheet {at}, row {row}, column {col}: {found_width:.1f} by {found_height:.1f} "
                     f"pixels for {width} by {height}")
    print(f"sizes of pictures: {len(placed)} as written")
    if shown:
        libreoffice.convert(str(path), shown, "pdf")


def main():
    judge, writer = sys.argv[1:3]
    shown = sys.argv[3] if len(sys.argv) > 3 else None
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        if judge == "xlrd":
            judge_xlrd(writer, work)
        else:
            judge_libreoffice(writer, work, os.path.abspath(shown) if shown else None)


if __name__ == "__main__":
    main()
