#!/usr/bin/env python3
"""Lets another program read the pictures and comments of a book of ours.

usage: drawing_judge.py xlrd|gnumeric|libreoffice SAMPLE_WRITER [DIRECTORY]
       drawing_judge.py kept SAMPLE_WRITER CORPUS_DIRECTORY
xlrd reads the comments with their authors. Gnumeric lists the pictures by their cells, and the comments with their
authors. LibreOffice shows each picture in the cell and at the size that it was given, and the texts of the comments
(it drops the authors of any .xls book); the pages are left as PDF in DIRECTORY, where one is named.
"kept" has a picture and a comment added to each worksheet of books that other programs wrote, and Gnumeric list all
objects before and after. Skipped, with a word, where the program or the books are missing.
"""
import gzip
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
import zipfile

import libreoffice
import sample_pictures

ADDED_AT = [(4000, 100), (4004, 100)]  # as the sample writer has it
PIXELS_PER_INCH, CM_PER_INCH = 96, 2.54
TABLE = "{urn:oasis:names:tc:opendocument:xmlns:table:1.0}"
DRAW = "{urn:oasis:names:tc:opendocument:xmlns:drawing:1.0}"
SVG = "{urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0}"
OFFICE = "{urn:oasis:names:tc:opendocument:xmlns:office:1.0}"
XLINK = "{http://www.w3.org/1999/xlink}"
GNUMERIC = "{http://www.gnumeric.org/v10.dtd}"
STYLE = "{urn:oasis:names:tc:opendocument:xmlns:style:1.0}"
TEXT = "{urn:oasis:names:tc:opendocument:xmlns:text:1.0}"


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
    path, _, comments = write_sample(writer, work, sample_pictures.write_all(work))
    book = xlrd.open_workbook(str(path), formatting_info=True)
    found = {(at, row, col): (note.author, note.text)
             for at in range(3) for (row, col), note in book.sheet_by_index(at).cell_note_map.items()}
    compare("comments", sorted(found.items()), sorted(comments.items()))


def gnumeric_sheets(path, work):
    """The sheets as Gnumeric's own form has them; None where it doesn't open the book."""
    target = work / "read.gnumeric"
    target.unlink(missing_ok=True)
    subprocess.run(["ssconvert", str(path), str(target)], timeout=120, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL, check=False)
    if not target.exists():
        return None
    return list(ElementTree.fromstring(gzip.decompress(target.read_bytes())).iter(GNUMERIC + "Sheet"))


def need_gnumeric():
    if shutil.which("ssconvert") is None:
        print("skipped: Gnumeric is not on this machine")
        sys.exit(libreoffice.SKIPPED)


def place_of(thing):
    return libreoffice.row_and_column(thing.get("ObjectBound").split(":")[0])


def judge_gnumeric(writer, work):
    need_gnumeric()
    path, placed, comments = write_sample(writer, work, sample_pictures.write_all(work))
    images, notes = [], {}
    for at, sheet in enumerate(gnumeric_sheets(path, work)):
        images += [(at, *place_of(image)) for image in sheet.iter(GNUMERIC + "SheetObjectImage")]
        notes.update({(at, *place_of(note)): (note.get("Author"), note.get("Text"))
                      for note in sheet.iter(GNUMERIC + "CellComment")})
    compare("comments", sorted(notes.items()), sorted(comments.items()))
    compare("cells of pictures", sorted(images), sorted(p[:3] for p in placed))


def objects_of(sheet):
    """Kind, cells, and what a comment says, of every object on a sheet."""
    return sorted((thing.tag.removeprefix(GNUMERIC), thing.get("ObjectBound") or "A1", thing.get("Author") or "",
                   thing.get("Text") or "") for group in sheet.iter(GNUMERIC + "Objects") for thing in group)


def is_biff5(book):
    """Its stream is "Book"; what is drawn there has a form of its own, of which a save keeps the comments alone."""
    names = book.read_bytes()
    return "Book".encode("utf-16-le") in names and "Workbook".encode("utf-16-le") not in names


def judge_kept(writer, work, corpus):
    need_gnumeric()
    books = [book for book in sorted(pathlib.Path(corpus).glob("*.xls")) if not is_biff5(book)]
    if not books:
        print("skipped: no workbooks in", corpus)
        sys.exit(libreoffice.SKIPPED)
    picture, = sample_pictures.write_all(work, ["png"])
    extended = work / "extended.xls"
    judged = kept = 0
    problems = []
    for book in books:
        run = subprocess.run([writer, "--add", str(book), str(extended), picture], timeout=120, text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
        before = gnumeric_sheets(book, work)
        if run.returncode != 0 or not before:
            continue  # a damaged or encrypted book
        after = gnumeric_sheets(extended, work)
        if after is None or len(after) != len(before):
            problems.append(f"{book.name}: {len(after or [])} sheets for {len(before)}")
            continue
        for at in map(int, run.stdout.split()):
            objects = objects_of(before[at])
            if any(kind == "SheetObjectGraph" for kind, *_ in objects):
                continue  # a worksheet with an embedded chart is kept as the chart alone
            found = objects_of(after[at])
            added = [thing for thing in found if place_of({"ObjectBound": thing[1]}) in ADDED_AT]
            if [thing[0] for thing in added] != ["CellComment", "SheetObjectImage"] or added[0][2:] != ("Ann", "Added"):
                problems.append(f"{book.name} sheet {at}: added {added}")
            if [thing for thing in found if thing not in added] != objects:
                problems.append(f"{book.name} sheet {at}: {len(found) - len(added)} objects for {len(objects)}")
            judged += 1
            kept += len(objects)
    for problem in problems:
        print(problem)
    print(f"{judged} sheets of {len(books)} books, {kept} objects kept, {len(problems)} problems")
    sys.exit(1 if problems or kept == 0 else 0)


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


def column_widths(content, table):
    """Of the first 40 columns, in pixels; a hidden one has none."""
    styles = {style.get(STYLE + "name"): pixels(style.find(STYLE + "table-column-properties").get(STYLE + "column-width"))
              for style in content.iter(STYLE + "style") if style.get(STYLE + "family") == "table-column"}
    widths = []
    for column in table.iter(TABLE + "table-column"):
        is_shown = column.get(TABLE + "visibility", "visible") == "visible"
        count = min(int(column.get(TABLE + "number-columns-repeated", "1")), 40)
        widths += [styles[column.get(TABLE + "style-name")] if is_shown else 0] * count
    return widths


def across(widths, column, part):
    """Where a corner is that stands so many 1024ths into a column."""
    return sum(widths[:column]) + widths[column] * part / 1024


def sorted_anchors(path, placed):
    """The anchors of pictures in the file (their flags are 0, a comment's are 3), in the order of `placed`."""
    record = re.compile(rb"\0\0\x10\xf0\x12\0\0\0\0\0(.{16})", re.S)
    in_file = [(0, *struct.unpack("<8H", match[1])) for match in record.finditer(path.read_bytes())]
    by_sheet = sorted(range(len(placed)), key=lambda i: placed[i][0])  # the file has sheet after sheet
    return [anchor for _, anchor in sorted(zip(by_sheet, in_file, strict=True))]


def judge_libreoffice(writer, work, shown):
    if libreoffice.program() is None:
        print("skipped: LibreOffice is not on this machine")
        sys.exit(libreoffice.SKIPPED)
    path, placed, comments = write_sample(writer, work, sample_pictures.write_all(work))
    document = libreoffice.convert(str(path), str(work), "ods")
    if document is None:
        sys.exit("LibreOffice did not open the book")
    frames, notes = [], {}
    with zipfile.ZipFile(document) as package:
        content = ElementTree.fromstring(package.read("content.xml"))
        images = {entry.filename for entry in package.infolist() if entry.file_size > 0}
    tables = list(content.iter(TABLE + "table"))
    for at, table in enumerate(tables[:3]):
        for row, col, cell in cells_of(table):
            for frame in cell.iter(DRAW + "frame"):
                image = frame.find(DRAW + "image")
                if image is None:
                    continue
                if image.get(XLINK + "href") not in images:
                    sys.exit(f"a picture without bytes in sheet {at}, row {row}, column {col}")
                size = (pixels(frame.get(SVG + "width")), pixels(frame.get(SVG + "height")))
                place = (pixels(frame.get(SVG + "x")), pixels(frame.get(SVG + "y")))
                frames.append(((at, row, col), size, place))
            note = cell.find(OFFICE + "annotation")
            if note is not None:
                notes[(at, row, col)] = "".join("".join(p.itertext()) for p in note.iter(TEXT + "p"))
    compare("comments", sorted(notes.items()), sorted((place, text) for place, (_, text) in comments.items()))
    compare("cells of pictures", sorted(place for place, _, _ in frames), sorted(p[:3] for p in placed))
    widths = [column_widths(content, table) for table in tables[:3]]
    by_place = {place: size for place, size, _ in frames}
    for (at, row, col, width, height, *_, kind), anchor in zip(placed, sorted_anchors(path, placed), strict=True):
        found_width, found_height = by_place[(at, row, col)]
        shown_width = across(widths[at], anchor[5], anchor[6]) - across(widths[at], anchor[1], anchor[2])
        # The program measures column widths by a digit of its own font: up to a tenth wider than ours.
        fits = (abs(found_width - shown_width) <= 2 and abs(found_height - height) <= 2 and
                0.95 * width <= found_width + 2 and found_width - 2 <= 1.15 * width)
        if not fits:
            sys.exit(f"picture of kind {kind} in sheet {at}, row {row}, column {col}: {found_width:.1f} by "
                     f"{found_height:.1f} pixels for {width} by {height}, in these columns {shown_width:.1f}")
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
        elif judge == "gnumeric":
            judge_gnumeric(writer, work)
        elif judge == "kept":
            judge_kept(writer, work, shown)
        else:
            judge_libreoffice(writer, work, os.path.abspath(shown) if shown else None)


if __name__ == "__main__":
    main()
