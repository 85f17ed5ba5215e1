"""What a package holds beside what a reader of workbooks shows: parts that are carried, kind by kind, and extension lists."""
import re
import xml.etree.ElementTree as tree
import zipfile

CONTENT_TYPES = "{http://schemas.openxmlformats.org/package/2006/content-types}"
TRANSITIONAL = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
STRICT = "http://purl.oclc.org/ooxml/spreadsheetml/main"
CONTENT_TYPES_PART = "/[content_types].xml"
COMPATIBILITY = "{http://schemas.openxmlformats.org/markup-compatibility/2006}"

# Types of parts that are bound to trees and written anew.
BOUND = re.compile(r"relationships\+xml$|spreadsheetml\.(styles|worksheet|sharedStrings|table|comments)\+xml$"
                   r"|officedocument\.drawing\+xml$|(sheet|template)(\.macroEnabled)?\.main\+xml$")
# Left out knowingly: it is made anew by the program that opens the book.
DROPPED = re.compile(r"spreadsheetml\.calcChain\+xml$")
KINDS = (("macros", re.compile(r"vbaProject")), ("themes", re.compile(r"theme(Override)?\+xml$")),
         ("charts", re.compile(r"chart", re.IGNORECASE)), ("printer settings", re.compile(r"printerSettings")),
         ("document properties", re.compile(r"-properties\+xml$")), ("media", re.compile(r"^image/")),
         ("pivot tables", re.compile(r"pivot")))
OTHERS = "other parts"
EXTENSIONS = "extension lists"
PACKAGE_SUBJECTS = (*(f"{kind}, byte for byte" for kind, _ in KINDS), f"{OTHERS}, byte for byte", EXTENSIONS)


class Package:
    """The parts by name in small letters, without those that have no content type and so aren't of the package."""

    def __init__(self, path):
        with zipfile.ZipFile(path) as archive:
            entries = {"/" + info.filename.replace("\\", "/").lstrip("/").lower(): archive.read(info)
                       for info in archive.infolist() if not info.is_dir()}
        self.content_types = entries.pop(CONTENT_TYPES_PART)
        types = tree.fromstring(self.content_types)
        self._overrides = {item.get("PartName").lower(): item.get("ContentType") for item in types.iter(CONTENT_TYPES + "Override")}
        self._defaults = {item.get("Extension").lower(): item.get("ContentType") for item in types.iter(CONTENT_TYPES + "Default")}
        self.parts = {name: data for name, data in entries.items() if self.type_of(name)}

    def type_of(self, name):
        return self._overrides.get(name) or self._defaults.get(name.rsplit(".", 1)[-1], "")

    def is_bound(self, name):
        kind = self.type_of(name)
        return bool(BOUND.search(kind)) or (kind == "application/xml" and b"<worksheet xmlns=" in self.parts[name][:100])


def main_namespace(path):
    package = Package(path)
    for name, data in package.parts.items():
        if package.type_of(name).endswith(".main+xml"):
            root = tree.fromstring(data)
            if root.tag.endswith("}workbook"):
                return root.tag[1:].split("}")[0]
    return ""


def texts_of(path, type_end):
    package = Package(path)
    return b"".join(data for name, data in package.parts.items() if package.type_of(name).endswith(type_end))


def extensions_in(element):
    """The extensions below an element. Of alternatives the fallback stands: the choices are for programs that know more."""
    for child in element:
        name = child.tag.split("}")[-1]
        if name == "extLst":
            yield from (tree.canonicalize(tree.tostring(item, encoding="unicode"), rewrite_prefixes=True) for item in child)
        elif child.tag != COMPATIBILITY + "Choice":
            yield from extensions_in(child)


def without_extensions_of(namespace, found):
    kept = {name: [text for text in texts if f'="{namespace}" uri=' not in text] for name, texts in found.items()}
    return {name: texts for name, texts in kept.items() if texts}


def look_into(path):
    package = Package(path)
    found = {subject: {} for subject in PACKAGE_SUBJECTS}
    for name, data in package.parts.items():
        kind = package.type_of(name)
        if package.is_bound(name):
            extensions = [] if kind.endswith("relationships+xml") else list(extensions_in(tree.fromstring(data)))
            if extensions:
                found[EXTENSIONS][name] = extensions
        elif not DROPPED.search(kind):
            subject = next((subject for subject, pattern in KINDS if pattern.search(kind)), OTHERS)
            found[f"{subject}, byte for byte"][name] = data
    return found
