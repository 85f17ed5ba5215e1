"""What openpyxl and the package itself show of an .xlsx workbook, subject by subject, in shapes that can be compared."""
import zipfile
import warnings

import openpyxl

STYLE_SUBJECTS = ("number formats", "fonts", "fills", "borders", "alignment and protection")
SUBJECTS = ("sheet order and states", "values", "types", "formulas", *STYLE_SUBJECTS, "widths", "heights", "merges", "names",
            "hyperlinks", "comments", "pictures", "validations", "conditional formats", "page setup", "carried parts")

# Parts that are bound to trees and written anew; all others have to come out byte for byte.
BOUND = ("/worksheets/sheet", "/workbook.xml", "/styles", "/sharedstrings", "/drawings/drawing", "/comments", "/tables/table",
         ".rels", "[content_types].xml", "calcchain.xml")


def carried_parts(path):
    with zipfile.ZipFile(path) as package:
        return {"/" + info.filename.replace("\\", "/").lstrip("/").lower(): package.read(info)
                for info in package.infolist() if not info.is_dir()}


def is_bound(name):
    return any(word in name for word in BOUND)


def style_of(cell):
    return {
        "number formats": cell.number_format,
        "fonts": repr(cell.font),
        "fills": repr(cell.fill),
        "borders": repr(cell.border),
        "alignment and protection": repr(cell.alignment) + repr(cell.protection),
    }


def sheet_subjects(sheet, found, known_styles):
    name = sheet.title
    for row in sheet.iter_rows():
        for cell in row:
            place = (name, cell.row, cell.column)
            if type(cell).__name__ == "MergedCell":
                continue
            if cell.value is not None:
                kind = "formulas" if cell.data_type == "f" else "values"
                value = cell.value
                found[kind][place] = repr(vars(value)) if hasattr(value, "ref") else value
                found["types"][place] = cell.data_type
            if cell.has_style:
                key = cell._style
                look = known_styles.get(repr(key)) or known_styles.setdefault(repr(key), style_of(cell))
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
    found["carried parts"] = {name: data for name, data in carried_parts(path).items() if not is_bound(name)}
    return found
