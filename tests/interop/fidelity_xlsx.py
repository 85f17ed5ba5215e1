"""What openpyxl and the package itself show of an .xlsx workbook, subject by subject, in shapes that can be compared."""
import re
import warnings

import openpyxl
from openpyxl.worksheet import _reader
from openpyxl.worksheet.cell_range import MultiCellRange
from openpyxl.worksheet.merge import MergedCellRange

import fidelity_package
from fidelity_package import PACKAGE_SUBJECTS, look_into
from fidelity_rule import Rule

KNOWN_NAMESPACES = {fidelity_package.TRANSITIONAL, fidelity_package.STRICT}

# ---- Rules


def deep(change, value):
    """The value with each text and number in it changed."""
    if isinstance(value, dict):
        return {key: deep(change, item) for key, item in value.items()}
    if isinstance(value, (tuple, list)):
        return type(value)(deep(change, item) for item in value)
    return change(value)


def with_14_digits(_subject, value):
    def change(item):
        if isinstance(item, float):
            return float(f"{item:.14g}")
        if isinstance(item, str):
            return re.sub(r"-?\d+\.\d{12,}(?:e-?\d+)?", lambda number: f"{float(number[0]):.14g}", item)
        return item
    return deep(change, value)


def without_opacity(_subject, value):
    return deep(lambda item: re.sub(r"rgb='(00|FF)(?=[0-9A-Fa-f]{6}')", "rgb='", item) if isinstance(item, str) else item, value)


def with_transitional_sides(_subject, value):
    names = {"start": "left", "end": "right"}

    def of_cell(look):
        return tuple(look[:3]) + tuple(sorted((names.get(line[0], line[0]), *line[1:]) for line in look[3:]))
    return {place: of_cell(look) for place, look in value.items()}


LOOKS = frozenset({"fonts", "fills", "borders"})
DIGITS = Rule("14 digits", "numbers outside of cells, such as tints, widths and margins, are written with 14 significant digits",
              LOOKS | {"widths", "heights", "page setup", "conditional formats"}, with_14_digits)
OPACITY = Rule("colours of six digits", "a colour of six digits is written with the opacity that it leaves out", LOOKS,
               without_opacity)
BORDER_SIDES = Rule("sides of borders", "sides of a border that bear the names of the other flavour get those of their own",
                    frozenset({"borders"}), with_transitional_sides)
LAYOUT = Rule("layout", "white space between the elements of an extension goes", frozenset({fidelity_package.EXTENSIONS}),
              lambda _subject, value: deep(lambda text: re.sub(r">\s+<", "><", text), value))
OTHER_FLAVOUR = Rule("extensions of the other flavour", "an extension whose element stands in the namespace of the other "
                     "flavour is none and goes", frozenset({fidelity_package.EXTENSIONS}),
                     lambda _subject, value: fidelity_package.without_extensions_of(fidelity_package.TRANSITIONAL, value))
RULES = (DIGITS, OPACITY, BORDER_SIDES, LAYOUT, OTHER_FLAVOUR)


def rules_of(path, _charted):
    styles = fidelity_package.texts_of(path, "styles+xml")
    return [rule for rule, applies in (
        (DIGITS, True),
        (OPACITY, re.search(rb'rgb="[0-9A-Fa-f]{6}"', styles)),
        (LAYOUT, True),
        (OTHER_FLAVOUR, fidelity_package.main_namespace(path) == fidelity_package.STRICT),
        (BORDER_SIDES, re.search(rb"<(\w+:)?(start|end)[ />]", styles)),
    ) if applies]


def keep_merged_cells(self):
    """Notes the merges alone: openpyxl would also make each of their cells and draw the borders around them, which takes
    minutes where whole columns are merged and hides what the file says of the cells."""
    if self.parser.merged_cells:
        self.ws.merged_cells = MultiCellRange([MergedCellRange(self.ws, merge.ref) for merge in self.parser.merged_cells.mergeCell])


_reader.WorksheetReader.bind_merged_cells = keep_merged_cells

STYLE_SUBJECTS = ("number formats", "fonts", "fills", "borders", "alignment and protection")
SUBJECTS = ("sheet order and states", "values", "types", "formulas", *STYLE_SUBJECTS, "widths", "heights", "merges", "names",
            "hyperlinks", "comments", "pictures", "validations", "conditional formats", "page setup")


SIDES = ("left", "right", "start", "end", "top", "bottom", "diagonal", "vertical", "horizontal")


def borders(known, cell):
    """The sides that have a line, by name, and the directions of the diagonal."""
    key = ("border", cell._style.borderId)
    if key not in known:
        border = cell.border
        lines = {name: getattr(border, name) for name in SIDES}
        known[key] = (border.diagonalUp, border.diagonalDown, border.outline,
                      *((name, line.style, repr(line.color)) for name, line in lines.items() if line and (line.style or line.color)))
    return known[key]


def style_of(cell, known):
    """What each subject shows of the cell's style; `known` has the long texts by the numbers that styles share."""
    style = cell._style

    def text(kind, number, attribute):
        if (kind, number) not in known:
            known[kind, number] = repr(getattr(cell, attribute))
        return known[kind, number]

    return {
        "number formats": cell.number_format,
        "fonts": text("font", style.fontId, "font"),
        "fills": text("fill", style.fillId, "fill"),
        "borders": borders(known, cell),
        "alignment and protection": text("alignment", style.alignmentId, "alignment")
        + text("protection", style.protectionId, "protection"),
    }


def sheet_subjects(sheet, found, known_styles):
    name = sheet.title
    # The cells that are there, and not iter_rows(), which makes all those between two far corners.
    for cell in sheet._cells.values():
        place = (name, cell.row, cell.column)
        if type(cell).__name__ == "MergedCell":
            continue
        if cell.value is not None:
            kind = "formulas" if cell.data_type == "f" else "values"
            value = cell.value
            found[kind][place] = repr(vars(value)) if hasattr(value, "ref") else value
            found["types"][place] = cell.data_type
        if cell.has_style:
            key = tuple(cell._style)
            look = known_styles.get(key) or known_styles.setdefault(key, style_of(cell, known_styles))
            for subject in STYLE_SUBJECTS:
                found[subject][place] = look[subject]
        if cell.hyperlink is not None:
            link = cell.hyperlink
            found["hyperlinks"][place] = (link.ref, link.target, link.location, link.tooltip, link.display)
        if cell.comment is not None:
            found["comments"][place] = (cell.comment.author, cell.comment.text)
    found["widths"][name] = {key: (d.width, d.hidden, d.outlineLevel, d.min, d.max) for key, d in sheet.column_dimensions.items()}
    found["heights"][name] = {key: (d.height, d.hidden, d.outlineLevel) for key, d in sheet.row_dimensions.items()
                              if d.height is not None or d.hidden or d.outlineLevel}
    found["merges"][name] = sorted(str(r) for r in sheet.merged_cells.ranges)
    found["pictures"][name] = len(sheet._images)
    found["validations"][name] = sorted((str(v.sqref), v.type, v.formula1, v.formula2) for v in sheet.data_validations.dataValidation)
    found["conditional formats"][name] = sorted(
        (str(area.sqref), [(rule.type, rule.operator, rule.formula, rule.priority) for rule in area.rules])
        for area in sheet.conditional_formatting)
    margins, setup = sheet.page_margins, sheet.page_setup
    found["page setup"][name] = (margins.left, margins.right, margins.top, margins.bottom, margins.header, margins.footer,
                                 setup.orientation, setup.paperSize, setup.scale, setup.fitToWidth, setup.fitToHeight,
                                 sheet.freeze_panes, sheet.sheet_view.zoomScale, sheet.print_area, sheet.auto_filter.ref)


def look(_dump, path):
    if fidelity_package.main_namespace(path) not in KNOWN_NAMESPACES:
        raise ValueError("its namespaces are those before the first edition, of which openpyxl reads a part")
    with warnings.catch_warnings():
        warnings.simplefilter("ignore")
        book = openpyxl.load_workbook(path)
    found = {subject: {} for subject in SUBJECTS}
    found["sheet order and states"] = [(sheet.title, sheet.sheet_state) for sheet in book._sheets]
    known_styles = {}
    for sheet in book.worksheets:
        sheet_subjects(sheet, found, known_styles)
    names = [(name, definition.attr_text, definition.localSheetId, definition.hidden) for name, definition in book.defined_names.items()] \
        if hasattr(book.defined_names, "items") else [(d.name, d.attr_text, d.localSheetId, d.hidden) for d in book.defined_names.definedName]
    found["names"] = sorted(names, key=repr)
    return found
