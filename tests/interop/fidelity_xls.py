"""What xlrd and the record stream show of an .xls workbook, subject by subject, in shapes that can be compared."""
import io

import workbook_views as views
from fidelity_rule import Rule

BIFF5 = Rule("BIFF5", "a BIFF5 book becomes BIFF8: formula tokens of names take their other form, the colour of a bottom "
                      "border keeps one bit, drawings and comments go",
             frozenset({"names", "borders", "comments", "pictures and drawings"}))
CHART = Rule("chart", "a sheet with an embedded chart keeps its records from the chart on and becomes a chart sheet",
             frozenset({"names", "pictures and drawings"}))
RULES = (BIFF5, CHART)
PACKAGE_SUBJECTS = ()


def rules_of(path, charted):
    return [rule for rule, applies in ((CHART, bool(charted)), (BIFF5, is_biff5(path))) if applies]

# Records that drawings, text boxes and their pictures stand in, with the CONTINUE records behind them.
DRAWING_RECORDS = {0x00EB, 0x00EC, 0x005D, 0x01B6}
CONTINUE = 0x003C


def fields(thing, names):
    return tuple(getattr(thing, name) for name in names)


FONT = ("name", "height", "bold", "weight", "italic", "underline_type", "struck_out", "escapement", "colour_index")
BORDER = ("top_line_style", "bottom_line_style", "left_line_style", "right_line_style", "diag_line_style",
          "top_colour_index", "bottom_colour_index", "left_colour_index", "right_colour_index", "diag_down", "diag_up")
FILL = ("fill_pattern", "pattern_colour_index", "background_colour_index")
ALIGNMENT = ("hor_align", "vert_align", "rotation", "text_wrapped", "indent_level", "shrink_to_fit")


class Styles:
    """The look of an extended format, each part once a format."""

    def __init__(self, book):
        self._book = book
        self._known = {}

    def of(self, index):
        if index not in self._known:
            self._known[index] = self._resolve(self._book.xf_list[index])
        return self._known[index]

    def _resolve(self, xf):
        book = self._book
        number_format = book.format_map.get(xf.format_key)
        return {
            "number formats": number_format.format_str if number_format else None,
            "fonts": fields(book.font_list[xf.font_index], FONT),
            "fills": fields(xf.background, FILL),
            "borders": fields(xf.border, BORDER),
            "alignment and protection": fields(xf.alignment, ALIGNMENT) + fields(xf.protection, ("cell_locked", "formula_hidden")),
        }


STYLE_SUBJECTS = ("number formats", "fonts", "fills", "borders", "alignment and protection")


def main_stream(path):
    import xlrd.compdoc
    data = path.read_bytes()
    if data[:8] != xlrd.compdoc.SIGNATURE:
        return data
    document = xlrd.compdoc.CompDoc(data, logfile=io.StringIO())
    for name in ("Workbook", "Book"):
        stream = document.get_named_stream(name)
        if stream:
            return stream
    return b""


def is_biff5(path):
    """Whether the BOF of the globals is older than BIFF8's."""
    return int.from_bytes(main_stream(path)[4:6], "little") <= 0x0500


def drawing_records(path):
    stream, at, kept, found = main_stream(path), 0, False, []
    while at + 4 <= len(stream):
        kind, size = int.from_bytes(stream[at:at + 2], "little"), int.from_bytes(stream[at + 2:at + 4], "little")
        if kind == 0 and size == 0:
            break
        kept = kind in DRAWING_RECORDS or (kept and kind == CONTINUE)
        if kept:
            found.append((kind, stream[at + 4:at + 4 + size]))
        at += 4 + size
    return found


def sheet_subjects(book, sheet, styles, found):
    name = sheet.name
    for row in range(sheet.nrows):
        for col in range(sheet.row_len(row)):
            cell = sheet.cell(row, col)
            place = (name, row, col)
            if cell.ctype not in (0, 6):
                found["values"][place] = views.xlrd_value(cell)
                found["types"][place] = cell.ctype
            if cell.xf_index is not None:
                look = styles.of(cell.xf_index)
                for subject in STYLE_SUBJECTS:
                    found[subject][place] = look[subject]
    found["widths"][name] = {col: (info.width, info.hidden, info.outline_level) for col, info in sheet.colinfo_map.items()}
    found["heights"][name] = {row: (info.height, info.hidden, info.outline_level)
                              for row, info in sheet.rowinfo_map.items() if info.height != 255 or info.hidden or info.outline_level}
    found["merges"][name] = sorted(sheet.merged_cells)
    found["hyperlinks"][name] = [(link.frowx, link.lrowx, link.fcolx, link.lcolx, link.url_or_path, link.textmark)
                                 for link in sheet.hyperlink_list]
    found["comments"][name] = {place: (note.author, note.text) for place, note in sheet.cell_note_map.items()
                               if hasattr(note, "text")}


SUBJECTS = ("sheet order and states", "values", "types", "formulas", *STYLE_SUBJECTS, "widths", "heights", "merges", "names",
            "hyperlinks", "comments", "pictures and drawings")


def look(dump, path):
    """{subject: what is seen}, or an exception of the reader. Sheets that are not worksheets are not looked into."""
    book = views.xlrd_book(path)
    found = {subject: {} for subject in SUBJECTS}
    found["sheet order and states"] = [(sheet.name, sheet.visibility) for sheet in book.sheets()]
    styles = Styles(book)
    for sheet in book.sheets():
        sheet_subjects(book, sheet, styles, found)
    found["names"] = sorted((name.name, name.scope, name.hidden, name.raw_formula) for name in book.name_obj_list)
    # xlrd shows no formulas; these are our own reading of both files.
    sheet_name = None
    for item in views.dump(dump, path):
        if "sheet" in item:
            sheet_name = item["sheet"]["name"]
        elif "cell" in item and "f" in item["cell"]:
            found["formulas"][(sheet_name, item["cell"]["r"], item["cell"]["c"])] = item["cell"]["f"]
    found["pictures and drawings"] = drawing_records(path)
    return found
