"""What different programs see in a workbook, in one common shape: {sheet name: {(row, col): value}}.

Values are floats, strings, bools, ("error", text) tuples; blank cells are left out. Each reader answers None where its
program is missing on this machine.
"""
import csv
import io
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ERRORS = {0: "#NULL!", 7: "#DIV/0!", 15: "#VALUE!", 23: "#REF!", 29: "#NAME?", 36: "#NUM!", 42: "#N/A"}
SKIPPED = 77  # the exit code that ctest shows as "skipped"


def skip(reason):
    print(f"skipped: {reason}")
    sys.exit(SKIPPED)


def dump(tool, path, *options):
    """The JSON objects that rubrica-dump prints, or its message as an exception."""
    done = subprocess.run([tool, *options, str(path)], capture_output=True, text=True, timeout=600)
    if done.returncode != 0:
        raise RuntimeError(done.stderr.strip().rsplit(": ", 1)[-1])
    return [json.loads(line) for line in done.stdout.splitlines()]


def ours(tool, path):
    names, cells = [], {}
    for item in dump(tool, path):
        if "sheet" in item:
            names.append(item["sheet"]["name"])
            cells[names[-1]] = {}
        elif "cell" in item:
            cell = item["cell"]
            if cell["t"] == "blank":
                continue
            value = cell["v"]
            if cell["t"] == "number":
                value = float(value) if value is not None else float("nan")
            elif cell["t"] == "error":
                value = ("error", value)
            sheet = list(cells)[-1]
            cells[sheet][(cell["r"], cell["c"])] = value
    return cells


def xlrd_book(path):
    try:
        import xlrd
    except ImportError:
        return None
    return xlrd.open_workbook(str(path), formatting_info=True, logfile=io.StringIO())


def xlrd_value(cell):
    kind, value = cell.ctype, cell.value
    if kind in (2, 3):
        return float(value)
    if kind == 4:
        return bool(value)
    if kind == 5:
        return ("error", ERRORS.get(value, str(value)))
    return value


def xlrd_view(path):
    book = xlrd_book(path)
    if book is None:
        return None
    view = {}
    for sheet in book.sheets():
        view[sheet.name] = {
            (row, col): xlrd_value(sheet.cell(row, col))
            for row in range(sheet.nrows)
            for col in range(sheet.row_len(row))
            if sheet.cell_type(row, col) not in (0, 6)
        }
    return view


def converted(path, target, work):
    """The workbook converted by headless LibreOffice; None where that is missing."""
    program = shutil.which("soffice") or shutil.which("libreoffice")
    if program is None:
        return None
    work = pathlib.Path(work)
    subprocess.run([program, f"-env:UserInstallation=file://{work}/profile", "--headless", "--convert-to", target,
                    "--outdir", str(work), str(path)], check=True, capture_output=True, timeout=180)
    return work / (pathlib.Path(path).stem + "." + target.split(":")[0])


def openpyxl_view(path):
    try:
        import openpyxl
    except ImportError:
        return None
    view = {}
    for sheet in openpyxl.load_workbook(path, data_only=True).worksheets:
        cells = view.setdefault(sheet.title, {})
        for row in sheet.iter_rows():
            for cell in row:
                if cell.value is None:
                    continue
                value = cell.value
                if cell.data_type == "e":
                    value = ("error", value)
                elif isinstance(value, (int, float)) and not isinstance(value, bool):
                    value = float(value)
                elif cell.is_date:
                    value = float(openpyxl.utils.datetime.to_excel(value))
                cells[(cell.row - 1, cell.column - 1)] = value
    return view


def libreoffice_view(path):
    with tempfile.TemporaryDirectory() as work:
        result = converted(path, "xlsx", work)
        return None if result is None else openpyxl_view(result)


def gnumeric_view(path):
    program = shutil.which("ssconvert")
    if program is None:
        return None
    with tempfile.TemporaryDirectory() as work:
        target = pathlib.Path(work) / "converted.xlsx"
        subprocess.run([program, "-T", "Gnumeric_Excel:xlsx", str(path), str(target)], check=True, capture_output=True,
                       timeout=180)
        return openpyxl_view(target)


def same(a, b):
    if isinstance(a, float) and isinstance(b, float):
        return a == b or (a != a and b != b) or abs(a - b) <= 1e-12 * max(abs(a), abs(b))
    if isinstance(a, str) and isinstance(b, str):
        return re.sub(r"\r\n?", "\n", a) == re.sub(r"\r\n?", "\n", b)
    return a == b


def differences(expected, found):
    """Lines that tell where two views differ."""
    lines = []
    if list(expected) != list(found):
        lines.append(f"sheets {list(expected)} became {list(found)}")
    for name in expected:
        if name not in found:
            continue
        for place in sorted(set(expected[name]) | set(found[name])):
            a, b = expected[name].get(place), found[name].get(place)
            if (a is None and b == "") or (b is None and a == ""):
                continue
            if not same(a, b):
                lines.append(f"{name} {place}: {a!r} became {b!r}")
    return lines
