"""Which schema files, roots and namespaces make which module, and what a module takes otherwise than its schema.

A module is a C++ namespace. Its namespace rows are both what its reader knows and what its roots declare, in that
order. A module too long for one description file goes on in numbered ones, which are also its units of rebuild.
"""

from dataclasses import dataclass, field

_TRANSITIONAL = "transitional-1st-edition/"
_SML = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
_RELATIONSHIPS = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
_STRICT_RELATIONSHIPS = "http://purl.oclc.org/ooxml/officeDocument/relationships"


@dataclass
class ModuleSource:
    namespace: str
    schema: str
    description: str  # file stem in source/ooxml
    roots: list
    namespaces: list
    files: int = 1
    # Elements named t keep their white space and may say xml:space, which the first-edition schemas left out.
    space_strings: bool = False


MODULES = [
    ModuleSource("workbook", _TRANSITIONAL + "sml-workbook.xsd", "sml-workbook", ["workbook"],
                 [(1000, "r", _RELATIONSHIPS), (1001, "", _SML)]),
    ModuleSource("sheet", _TRANSITIONAL + "sml-sheet.xsd", "sml-sheet", ["worksheet"],
                 [(1000, "", _SML), (1001, "r", _RELATIONSHIPS)], files=3, space_strings=True),
    ModuleSource("styles", _TRANSITIONAL + "sml-styles.xsd", "sml-styles", ["styleSheet"], [(1000, "", _SML)]),
    ModuleSource("sharedStringTable", _TRANSITIONAL + "sml-sharedStringTable.xsd", "sml-sharedStringTable", ["sst"],
                 [(1000, "", _SML)], space_strings=True),
    ModuleSource("comments", _TRANSITIONAL + "sml-comments.xsd", "sml-comments", ["comments"],
                 [(1000, "", _SML)], space_strings=True),
    ModuleSource("table", _TRANSITIONAL + "sml-table.xsd", "sml-table", ["table"], [(1000, "", _SML)]),
    ModuleSource("contentypes", "opc/opc-contentTypes.xsd", "opc-contentTypes", ["Types"],
                 [(1000, "", "http://schemas.openxmlformats.org/package/2006/content-types")]),
    ModuleSource("relationships", "opc/opc-relationships.xsd", "opc-relationships", ["Relationships"],
                 [(1000, "", "http://schemas.openxmlformats.org/package/2006/relationships")]),
    ModuleSource("drawing", _TRANSITIONAL + "dml-spreadsheetDrawing.xsd", "dml-spreadsheetDrawing", ["wsDr"],
                 [(1000, "a", "http://schemas.openxmlformats.org/drawingml/2006/main"),
                  (1001, "xdr", "http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing"),
                  (1002, "r", _RELATIONSHIPS)], files=3),
    ModuleSource("strict", "strict/sml.xsd", "sml", ["workbook", "worksheet", "styleSheet", "sst", "table"],
                 [(1000, "", "http://purl.oclc.org/ooxml/spreadsheetml/main"), (1001, "r", _STRICT_RELATIONSHIPS),
                  (1002, "xdr", "http://purl.oclc.org/ooxml/drawingml/spreadsheetDrawing")], files=5),
    ModuleSource("strictdrawing", "strict/dml-spreadsheetDrawing.xsd", "strictDrawing", ["wsDr"],
                 [(1000, "a", "http://purl.oclc.org/ooxml/drawingml/main"),
                  (1001, "", "http://purl.oclc.org/ooxml/drawingml/spreadsheetDrawing"),
                  (1002, "r", _STRICT_RELATIONSHIPS)], files=3),
]

_MEASURE = r"[0-9]+(\.[0-9]+)?(mm|cm|in|pt|pc|pi)"

# The patterns that are checked. The others (media types, percentages) say less than they cost: whoever uses such a
# value parses it anyway. A measure with a unit is a length, so the signed form is checked like the unsigned one.
PATTERNS = {
    r"\{[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\}": None,
    r"([!$&'\(\)\*\+,:=]|(%[0-9a-fA-F][0-9a-fA-F])|[:@]|[a-zA-Z0-9\-_~])+": None,
    _MEASURE: None,
    "-?" + _MEASURE: _MEASURE,
}


def file_stems(source: ModuleSource) -> list:
    return [source.description + (str(i + 1) if i else "") for i in range(source.files)]
