#!/usr/bin/env python3
"""Makes the data of the examples: data/elements.csv, data/easter.csv, data/logo.png, data/almanac.xls,
data/almanac.xlsx and data/timesheet.xls.

The elements are typed in below (standard atomic weights: IUPAC 2021, abridged to five digits). The dates of Easter are
computed twice, by two methods that share nothing, and have to agree. The workbooks are written by LibreOffice from flat
OpenDocument files that this script makes, so that the examples read what another program wrote.
usage: make_data.py [--csv-only]
"""
import csv
import datetime
import math
import pathlib
import struct
import subprocess
import sys
import tempfile
import zlib
from xml.sax.saxutils import escape

DATA = pathlib.Path(__file__).resolve().parent / "data"
YEARS = range(1900, 2200)

# symbol, name, standard atomic weight or "-" for an element that has none
ELEMENTS = """
H Hydrogen 1.008|He Helium 4.0026|Li Lithium 6.94|Be Beryllium 9.0122|B Boron 10.81|C Carbon 12.011|N Nitrogen 14.007
O Oxygen 15.999|F Fluorine 18.998|Ne Neon 20.180|Na Sodium 22.990|Mg Magnesium 24.305|Al Aluminium 26.982
Si Silicon 28.085|P Phosphorus 30.974|S Sulfur 32.06|Cl Chlorine 35.45|Ar Argon 39.95|K Potassium 39.098
Ca Calcium 40.078|Sc Scandium 44.956|Ti Titanium 47.867|V Vanadium 50.942|Cr Chromium 51.996|Mn Manganese 54.938
Fe Iron 55.845|Co Cobalt 58.933|Ni Nickel 58.693|Cu Copper 63.546|Zn Zinc 65.38|Ga Gallium 69.723|Ge Germanium 72.630
As Arsenic 74.922|Se Selenium 78.971|Br Bromine 79.904|Kr Krypton 83.798|Rb Rubidium 85.468|Sr Strontium 87.62
Y Yttrium 88.906|Zr Zirconium 91.224|Nb Niobium 92.906|Mo Molybdenum 95.95|Tc Technetium -|Ru Ruthenium 101.07
Rh Rhodium 102.91|Pd Palladium 106.42|Ag Silver 107.87|Cd Cadmium 112.41|In Indium 114.82|Sn Tin 118.71
Sb Antimony 121.76|Te Tellurium 127.60|I Iodine 126.90|Xe Xenon 131.29|Cs Caesium 132.91|Ba Barium 137.33
La Lanthanum 138.91|Ce Cerium 140.12|Pr Praseodymium 140.91|Nd Neodymium 144.24|Pm Promethium -|Sm Samarium 150.36
Eu Europium 151.96|Gd Gadolinium 157.25|Tb Terbium 158.93|Dy Dysprosium 162.50|Ho Holmium 164.93|Er Erbium 167.26
Tm Thulium 168.93|Yb Ytterbium 173.05|Lu Lutetium 174.97|Hf Hafnium 178.49|Ta Tantalum 180.95|W Tungsten 183.84
Re Rhenium 186.21|Os Osmium 190.23|Ir Iridium 192.22|Pt Platinum 195.08|Au Gold 196.97|Hg Mercury 200.59
Tl Thallium 204.38|Pb Lead 207.2|Bi Bismuth 208.98|Po Polonium -|At Astatine -|Rn Radon -|Fr Francium -|Ra Radium -
Ac Actinium -|Th Thorium 232.04|Pa Protactinium 231.04|U Uranium 238.03|Np Neptunium -|Pu Plutonium -|Am Americium -
Cm Curium -|Bk Berkelium -|Cf Californium -|Es Einsteinium -|Fm Fermium -|Md Mendelevium -|No Nobelium -
Lr Lawrencium -|Rf Rutherfordium -|Db Dubnium -|Sg Seaborgium -|Bh Bohrium -|Hs Hassium -|Mt Meitnerium -
Ds Darmstadtium -|Rg Roentgenium -|Cn Copernicium -|Nh Nihonium -|Fl Flerovium -|Mc Moscovium -|Lv Livermorium -
Ts Tennessine -|Og Oganesson -
"""

# The noble gas that ends each period; what lies between two of them is a period.
PERIOD_ENDS = [2, 10, 18, 36, 54, 86, 118]


def period_of(number):
    return next(i + 1 for i, end in enumerate(PERIOD_ENDS) if number <= end)


def elements():
    rows = []
    for number, entry in enumerate(ELEMENTS.strip().replace("\n", "|").split("|"), 1):
        symbol, name, weight = entry.split(" ")
        stable = weight != "-"
        rows.append([number, symbol, name, float(weight) if stable else None, period_of(number), stable])
    assert len(rows) == 118 and len({row[1] for row in rows}) == 118 and len({row[2] for row in rows}) == 118
    return rows


def easter_by_golden_number(year):
    """The tables of the Gregorian reform: golden number, century corrections, epact, then the following Sunday."""
    golden = year % 19 + 1
    century = year // 100 + 1
    skipped_leaps = 3 * century // 4 - 12
    moon_correction = (8 * century + 5) // 25 - 5
    epact = (11 * golden + 20 + moon_correction - skipped_leaps) % 30
    if epact == 24 or (epact == 25 and golden > 11):
        epact += 1
    full_moon = 44 - epact
    if full_moon < 21:
        full_moon += 30
    moon = datetime.date(year, 3, 1) + datetime.timedelta(days=full_moon - 1)
    return moon + datetime.timedelta(days=6 - moon.weekday() or 7)


def easter_by_remainders(year):
    """The chain of divisions published in Nature in 1876."""
    a, (b, c) = year % 19, divmod(year, 100)
    d, e = divmod(b, 4)
    g = (b - (b + 8) // 25 + 1) // 3
    h = (19 * a + b - d - g + 15) % 30
    i, k = divmod(c, 4)
    l = (32 + 2 * e + 2 * i - h - k) % 7
    m = (a + 11 * h + 22 * l) // 451
    month, day = divmod(h + l - 7 * m + 114, 31)
    return datetime.date(year, month, day + 1)


def easters():
    rows = []
    for year in YEARS:
        day = easter_by_golden_number(year)
        assert day == easter_by_remainders(year) and day.weekday() == 6, year
        leap = (datetime.date(year + 1, 1, 1) - datetime.date(year, 1, 1)).days == 366
        rows.append([year, day, day.timetuple().tm_yday, leap, day + datetime.timedelta(days=49)])
    return rows


SHEETS = {
    "Elements": (["number", "symbol", "name", "weight", "period", "hasWeight"], elements),
    "Easter": (["year", "easter", "dayOfYear", "leapYear", "whitSunday"], easters),
}


def csv_text(value):
    if value is None:
        return ""
    if isinstance(value, bool):
        return "YES" if value else "NO"
    return str(value)


def write_csv(path, header, rows):
    with open(path, "w", newline="", encoding="utf-8") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(header)
        writer.writerows([csv_text(value) for value in row] for row in rows)


def cell_xml(value):
    if value is None:
        return "<table:table-cell/>"
    if isinstance(value, bool):
        return f'<table:table-cell office:value-type="boolean" office:boolean-value="{str(value).lower()}"/>'
    if isinstance(value, datetime.date):
        return f'<table:table-cell table:style-name="date" office:value-type="date" office:date-value="{value}"/>'
    if isinstance(value, (int, float)):
        return f'<table:table-cell office:value-type="float" office:value="{value}"/>'
    return f'<table:table-cell office:value-type="string"><text:p>{escape(value)}</text:p></table:table-cell>'


def head_xml(name):
    return f'<table:table-cell table:style-name="head" office:value-type="string"><text:p>{name}</text:p></table:table-cell>'


def almanac():
    tables = ""
    for name, (header, make) in SHEETS.items():
        rows = ["".join(map(head_xml, header))] + ["".join(map(cell_xml, row)) for row in make()]
        tables += f'<table:table table:name="{name}">'
        tables += "".join(f"<table:table-row>{row}</table:table-row>" for row in rows) + "</table:table>"
    return flat_document(tables)


def timesheet():
    """A template as an office hands it out: a title, places for a name and a week, five lines for entries, sums."""
    def cell(style="", formula="", text=""):
        shown = f' office:value-type="string"><text:p>{text}</text:p></table:table-cell>' if text else "/>"
        formula = f' table:formula="of:{formula}" office:value-type="float" office:value="0"' if formula else ""
        style = f' table:style-name="{style}"' if style else ""
        return f"<table:table-cell{style}{formula}{shown}"

    rows = [cell("title", text="Timesheet"), "",
            cell("head", text="Name") + cell("filled"), cell("head", text="Week from") + cell("date"), "",
            "".join(cell("band", text=text) for text in ("Day", "Project", "Hours", "Rate", "Amount"))]
    for row in range(7, 12):
        rows.append(cell("date") + cell() + cell("hours") + cell("money") + cell("money", f"=[.C{row}]*[.D{row}]"))
    rows.append(cell("head", text="Sum") + cell() + cell("hours", "=SUM([.C7:.C11])") + cell() +
                cell("money", "=SUM([.E7:.E11])"))
    rows.append(cell("head", text="Overtime") + cell() + cell("hours", "=MAX([.C12]-40;0)"))
    tables = '<table:table table:name="Timesheet">'
    tables += "".join(f"<table:table-row>{row or cell()}</table:table-row>" for row in rows) + "</table:table>"
    return flat_document(tables)


def flat_document(tables):
    names = {"office": "office:1.0", "table": "table:1.0", "text": "text:1.0", "style": "style:1.0",
             "number": "datastyle:1.0", "fo": "xsl-fo-compatible:1.0"}
    spaces = " ".join(f'xmlns:{key}="urn:oasis:names:tc:opendocument:xmlns:{value}"' for key, value in names.items())
    spaces += ' xmlns:of="urn:oasis:names:tc:opendocument:xmlns:of:1.2"'
    return f"""<?xml version="1.0" encoding="UTF-8"?>
<office:document {spaces} office:version="1.2" office:mimetype="application/vnd.oasis.opendocument.spreadsheet">
<office:automatic-styles>
<number:date-style style:name="ymd"><number:year number:style="long"/><number:text>-</number:text>
<number:month number:style="long"/><number:text>-</number:text><number:day number:style="long"/></number:date-style>
<number:number-style style:name="two"><number:number number:decimal-places="2" number:min-integer-digits="1"
number:grouping="true"/></number:number-style>
<number:number-style style:name="one"><number:number number:decimal-places="1" number:min-integer-digits="1"/>
</number:number-style>
<style:style style:name="date" style:family="table-cell" style:data-style-name="ymd"/>
<style:style style:name="money" style:family="table-cell" style:data-style-name="two"/>
<style:style style:name="hours" style:family="table-cell" style:data-style-name="one"/>
<style:style style:name="head" style:family="table-cell"><style:text-properties fo:font-weight="bold"/></style:style>
<style:style style:name="title" style:family="table-cell"><style:text-properties fo:font-weight="bold"
fo:font-size="16pt"/></style:style>
<style:style style:name="filled" style:family="table-cell"><style:table-cell-properties
fo:background-color="#ffffcc"/></style:style>
<style:style style:name="band" style:family="table-cell"><style:table-cell-properties fo:background-color="#cccccc"
fo:border-bottom="0.06pt solid #000000"/><style:text-properties fo:font-weight="bold"/></style:style>
</office:automatic-styles>
<office:body><office:spreadsheet>{tables}</office:spreadsheet></office:body></office:document>
"""


def logo(width=150, height=48):
    """A compass rose on a band of waves: an indexed PNG, so that it stays small."""
    paper, ink, sea = range(3)
    palette = bytes((255, 255, 255, 16, 42, 92, 120, 170, 205))
    rows = b""
    for y in range(height):
        rows += b"\0"
        for x in range(width):
            dx, dy = x - width / 2 + 0.5, y - height / 2 + 0.5
            distance, angle = math.hypot(dx, dy), math.atan2(dy, dx)
            is_needle = distance < 20 * abs(math.cos(2 * angle)) ** 4
            is_ring = 20 <= distance < 22
            is_wave = abs(y - 36 - 3 * math.sin(x / 6)) < 2 and distance > 24
            rows += bytes([ink if is_needle or is_ring else sea if is_wave else paper])

    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 3, 0, 0, 0)) +
            chunk(b"PLTE", palette) + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def main():
    DATA.mkdir(exist_ok=True)
    (DATA / "logo.png").write_bytes(logo())
    write_csv(DATA / "elements.csv", SHEETS["Elements"][0], elements())
    write_csv(DATA / "easter.csv", SHEETS["Easter"][0], easters())
    if "--csv-only" in sys.argv[1:]:
        return
    with tempfile.TemporaryDirectory() as folder:
        for make, form in ((almanac, "xls:MS Excel 97"), (almanac, "xlsx:Calc MS Excel 2007 XML"),
                           (timesheet, "xls:MS Excel 97")):
            source = pathlib.Path(folder) / f"{make.__name__}.fods"
            source.write_text(make(), encoding="utf-8")
            subprocess.run(["soffice", f"-env:UserInstallation=file://{folder}/profile", "--headless", "--convert-to", form,
                            "--outdir", str(DATA), str(source)], check=True)


if __name__ == "__main__":
    main()
