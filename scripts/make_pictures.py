#!/usr/bin/env python3
"""Makes the pictures of the cookbook: runs each recipe, lets LibreOffice set the workbook with row and column headings,
and cuts the page down to what is on it. Notes the content of each book, so that a test can tell an outdated picture.

usage: make_pictures.py SOURCE_DIR PREFIX [RECIPE...]
Needs LibreOffice with its Python bridge, and pdftoppm.
"""
import hashlib
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import zlib

import uno
from com.sun.star.beans import PropertyValue

SOURCE = pathlib.Path(sys.argv[1]).resolve()
sys.path[:0] = [str(SOURCE / "tests/docs"), str(SOURCE / "tests/interop")]
import libreoffice_desktop  # noqa: E402
import snippets  # noqa: E402

DOTS_PER_INCH = 90
MARGIN = 8  # dots around what is on the page
AS_PRINTED = {"print_setup"}  # shown as the page that it sets up
COLOUR_STEP = 16  # shades are rounded, which keeps the palette within 256 colours and the files small


def option(name, value):
    given = PropertyValue()
    given.Name, given.Value = name, value
    return given


def set_page(desktop, book_file, pdf, as_printed):
    book = desktop.loadComponentFromURL(book_file.as_uri(), "_blank", 0, (option("Hidden", True),))
    book.calculateAll()
    if not as_printed:
        for style in book.StyleFamilies.getByName("PageStyles"):
            style.PrintHeaders = style.PrintGrid = True
            style.HeaderIsOn = style.FooterIsOn = False
    book.storeToURL(pdf.as_uri(), (option("FilterName", "calc_pdf_Export"),))
    book.close(True)


def pixels_of(pdf):
    """Width, height and the rows of RGB bytes of the first page."""
    ppm = subprocess.run(["pdftoppm", "-r", str(DOTS_PER_INCH), "-singlefile", str(pdf)], check=True,
                         capture_output=True).stdout
    head = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", ppm)
    width, height = int(head.group(1)), int(head.group(2))
    data = ppm[head.end():]
    return width, height, [data[y * width * 3:(y + 1) * width * 3] for y in range(height)]


def cropped(width, height, rows):
    white = b"\xff" * (width * 3)
    used = [y for y in range(height) if rows[y] != white]
    left = min(next(x for x in range(width) if rows[y][x * 3:x * 3 + 3] != b"\xff\xff\xff") for y in used)
    right = max(next(x for x in range(width - 1, -1, -1) if rows[y][x * 3:x * 3 + 3] != b"\xff\xff\xff") for y in used)
    top, bottom = max(0, used[0] - MARGIN), min(height, used[-1] + MARGIN + 1)
    left, right = max(0, left - MARGIN), min(width, right + MARGIN + 1)
    return right - left, [rows[y][left * 3:right * 3] for y in range(top, bottom)]


def png(width, rows):
    """A PNG with a palette."""
    rounding = bytes(min(255, (value + COLOUR_STEP // 2) // COLOUR_STEP * COLOUR_STEP) for value in range(256))
    palette, lines = {}, []
    for row in rows:
        row = row.translate(rounding)
        line = bytes(palette.setdefault(row[x * 3:x * 3 + 3], len(palette)) for x in range(width))
        lines.append(b"\0" + line)

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, len(rows), 8, 3, 0, 0, 0)) +
            chunk(b"PLTE", b"".join(palette)) + chunk(b"IDAT", zlib.compress(b"".join(lines), 9)) + chunk(b"IEND", b""))


def recipes(wanted):
    """(name, its first block) of each page that shows a picture of its own."""
    for page in sorted((SOURCE / "docs/cookbook").glob("*.md")):
        text = page.read_text(encoding="utf-8")
        if f"](pictures/{page.stem}.png)" in text and (not wanted or page.stem in wanted):
            yield page.stem, snippets.blocks_of(page.name, text)[0]


def main():
    runner = snippets.Runner(sys.argv[2])
    pictures = SOURCE / "docs/cookbook/pictures"
    pictures.mkdir(exist_ok=True)
    notes = pictures / "content.txt"
    content = dict(line.split() for line in notes.read_text().splitlines()) if notes.exists() else {}
    with tempfile.TemporaryDirectory() as name, tempfile.TemporaryDirectory() as profile, \
            libreoffice_desktop.desktop(profile) as desktop:
        folder = pathlib.Path(name)
        for path in (SOURCE / "examples/data").iterdir():
            shutil.copy(path, folder)
        for recipe, block in recipes(sys.argv[3:]):
            result = runner.run(block, folder)
            if result.returncode != 0:
                raise SystemExit(f"{block}: {result.stdout}{result.stderr}")
            book = snippets.book_of(recipe, block)
            dump = runner.start(["rubrica-dump", "--styles", book], folder)
            content[recipe] = hashlib.sha256(dump.stdout.encode()).hexdigest()
            set_page(desktop, folder / book, folder / f"{recipe}.pdf", recipe in AS_PRINTED)
            width, height, rows = pixels_of(folder / f"{recipe}.pdf")
            picture = pictures / f"{recipe}.png"
            picture.write_bytes(png(width, rows) if recipe in AS_PRINTED else png(*cropped(width, height, rows)))
            print(f"{picture.name}: {picture.stat().st_size} bytes")
    notes.write_text("".join(f"{recipe} {digest}\n" for recipe, digest in sorted(content.items())))


if __name__ == "__main__":
    main()
