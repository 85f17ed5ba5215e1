"""LibreOffice without a window, with a profile and a time limit of its own, and what it writes into .xlsx files."""
import os
import re
import shutil
import subprocess
import tempfile
import xml.etree.ElementTree as ElementTree
import zipfile

SKIPPED = 77  # the exit code that ctest reads as "skipped"
MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
RELATIONS = "{http://schemas.openxmlformats.org/officeDocument/2006/relationships}"
PACKAGE = "{http://schemas.openxmlformats.org/package/2006/relationships}"


def program():
    """The path of soffice, or None."""
    return shutil.which("soffice") or shutil.which("libreoffice")


def convert(source, directory, form="xlsx", seconds=90):
    """Converts one file into `directory`. The path of the result, or None when LibreOffice fails or takes too long."""
    profile = os.path.join(tempfile.gettempdir(), f"soffice-profile-{os.getuid()}-{os.getpid()}")
    command = [program(), f"-env:UserInstallation=file://{profile}", "--headless", "--convert-to", form,
               "--outdir", directory, source]
    try:
        subprocess.run(command, timeout=seconds, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
    except subprocess.TimeoutExpired:
        return None
    name = os.path.splitext(os.path.basename(source))[0] + "." + form.split(":")[0]
    result = os.path.join(directory, name)
    return result if os.path.exists(result) else None


def row_and_column(address):
    letters, digits = re.fullmatch(r"([A-Z]+)(\d+)", address).groups()
    column = 0
    for letter in letters:
        column = column * 26 + ord(letter) - 64
    return int(digits) - 1, column - 1


class Workbook:
    """The cells of an .xlsx file: `cells[sheet name][(row, column)]` is (type, value text, formula text or None)."""

    def __init__(self, path):
        with zipfile.ZipFile(path) as package:
            self._strings = self._shared_strings(package)
            relations = self._relations(package, "xl/_rels/workbook.xml.rels")
            book = ElementTree.fromstring(package.read("xl/workbook.xml"))
            self.external_books = self._external_books(package, book, relations)
            self.cells = {}
            for sheet in book.find(MAIN + "sheets"):
                part = "xl/" + relations[sheet.get(RELATIONS + "id")][0]
                if part in package.namelist():
                    self.cells[sheet.get("name")] = self._sheet(package, part)

    @staticmethod
    def _relations(package, part):
        if part not in package.namelist():
            return {}
        root = ElementTree.fromstring(package.read(part))
        return {r.get("Id"): (r.get("Target"), r.get("TargetMode")) for r in root.iter(PACKAGE + "Relationship")}

    @staticmethod
    def _shared_strings(package):
        if "xl/sharedStrings.xml" not in package.namelist():
            return []
        root = ElementTree.fromstring(package.read("xl/sharedStrings.xml"))
        return ["".join(t.text or "" for t in item.iter(MAIN + "t")) for item in root.iter(MAIN + "si")]

    def _external_books(self, package, book, relations):
        paths = []
        for reference in book.iter(MAIN + "externalReference"):
            target = relations[reference.get(RELATIONS + "id")][0]
            name = target.rsplit("/", 1)[-1]
            links = self._relations(package, f"xl/externalLinks/_rels/{name}.rels")
            paths.append(next((path for path, mode in links.values() if mode == "External"), ""))
        return paths

    def _sheet(self, package, part):
        cells, arrays = {}, []
        for cell in ElementTree.fromstring(package.read(part)).iter(MAIN + "c"):
            kind = cell.get("t", "n")
            value = cell.find(MAIN + "v")
            text = value.text if value is not None else None
            if kind == "s" and text is not None:
                kind, text = "str", self._strings[int(text)]
            formula = cell.find(MAIN + "f")
            cells[row_and_column(cell.get("r"))] = (kind, text, formula.text if formula is not None else None)
            if formula is not None and ":" in (formula.get("ref") or ""):
                arrays.append((formula.get("ref"), formula.text))
        for reference, text in arrays:  # written at the first cell of an array alone
            (top, left), (bottom, right) = map(row_and_column, reference.split(":"))
            for place in [(row, col) for row in range(top, bottom + 1) for col in range(left, right + 1)]:
                kind, value, _ = cells.get(place, ("n", None, None))
                cells[place] = (kind, value, text)
        return cells
