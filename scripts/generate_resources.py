#!/usr/bin/env python3
"""Makes everything that tells about the component from the one readable source in host/resources/.

usage: generate_resources.py KIND OUTPUT SOURCE.toml...
KIND: strings    C++ source with the string table as the section .tabulix_strings (docs/formats/resources.md)
      tables     C++ source with the tables of methods, parameters and properties
      rc         Windows resource script with the same strings as a STRINGTABLE
      reference  Markdown pages, one a class, one for the library and one for the constants; OUTPUT is a directory
"""
import pathlib
import struct
import sys
import tomllib

MAX_TEXT = 1000  # characters; a host shows the first 255 of them
KINDS = {"none": 20, "character": 21, "boolean": 22, "date": 23, "number": 25, "integer": 26, "binary": 28,
         "list": 29, "constant": 35, "row": 36, "object": 37}
OPTIONAL, BY_REFERENCE, IS_CONSTANT = 0x4000, 0x200000, 0x40000


class Source:
    """All source files together; checks what can be checked before anything is written."""

    def __init__(self, paths):
        self.strings, self.classes, self.groups, self.static_methods = {}, [], [], []
        for path in sorted(paths):
            data = tomllib.loads(pathlib.Path(path).read_text(encoding="utf-8"))
            for number, text in data.get("strings", {}).items():
                self.add(int(number), text)
            for group in data.get("group", []):
                self.add_group(group)
            for method in data.get("static_method", []):
                self.static_methods.append(method)
                self.add_method(method, None)
            if "class" in data:
                self.add_class(data)
        self.classes.sort(key=lambda c: c["class"]["id"])
        self.ranges = {g["name"]: (g["first"], g["first"] + len(g["rows"]) - 1) for g in self.groups}

    def add(self, number, text):
        if number in self.strings:
            raise SystemExit(f"string {number} stands twice: {text!r}")
        if not text or len(text) > MAX_TEXT:
            raise SystemExit(f"string {number} has {len(text)} characters, 1 to {MAX_TEXT} are allowed: {text!r}")
        self.strings[number] = text

    def add_group(self, group):
        rows = group["rows"]
        group["values"] = group.get("values", [group.get("start", 0) + i for i in range(len(rows))])
        self.groups.append(group)
        for i, ((name, description), value) in enumerate(zip(rows, group["values"], strict=True)):
            prefix = group["name"] + "~" if i == 0 else ""
            self.add(group["first"] + i, f"{prefix}{name}:{value}:{name}:{description}")

    def add_class(self, data):
        self.classes.append(data)
        head = data["class"]
        self.add(head["id"], head["text"])
        first, last = head["parameters"]
        ids = iter(range(first, last + 1))
        for method in data.get("method", []):
            self.add_method(method, ids)
        if next(ids, None) is not None:
            raise SystemExit(f"{head['name']}: fewer parameters than the ids {first} to {last}")
        for prop in data.get("property", []):
            self.add(prop["id"], f"{prop['name']}:{prop['help']}")
        for text in data.get("text", []):
            self.add(text["id"], text["text"])

    def add_method(self, method, ids):
        if not method.get("example") or not method.get("prints"):
            raise SystemExit(f"{method['name']}: an example, or what it prints, is missing")
        self.add(method["id"], f"{method['name']}:{signature(method)} {method['help']}")
        for parameter in method.get("parameters", []):
            parameter["id"] = next(ids, None)
            if parameter["id"] is None:
                raise SystemExit(f"{method['name']}: no parameter id is left")
            self.add(parameter["id"], parameter["name"])


def signature(method):
    shown = []
    for p in method.get("parameters", []):
        kind = p.get("shown", p["type"].capitalize())
        default = f"[{p['default']}]" if "default" in p else ""
        shown.append(f"{kind} {'&' if p.get('byref') else ''}{p['name']}{default}")
    return f"{method['name']}({', '.join(shown)})"


def string_table(source):
    """The bytes of the section, as docs/formats/resources.md describes them."""
    entries, text = b"", b""
    for number in sorted(source.strings):
        data = source.strings[number].encode("utf-8")
        entries += struct.pack("<III", number, len(text), len(data))
        text += data
    return b"TBXSTR01" + struct.pack("<II", len(source.strings), len(text)) + entries + text


def write_strings(source, out):
    table = string_table(source)
    lines = [", ".join(str(b) for b in table[i:i + 32]) + "," for i in range(0, len(table), 32)]
    out.write_text("// Made by scripts/generate_resources.py from host/resources/.\n"
                   f"extern const unsigned char tabulixStrings[{len(table)}];\n"
                   'alignas(4)\n#if defined(__ELF__)\n__attribute__((section(".tabulix_strings"), used))\n#endif\n'
                   f"const unsigned char tabulixStrings[{len(table)}] = {{\n" + "\n".join(lines) + "\n};\n")


def write_rc(source, out):
    def quoted(text):
        return '"' + text.replace('"', '""') + '"'
    rows = [f"  {number} {quoted(source.strings[number])}" for number in sorted(source.strings)]
    out.write_text("// Made by scripts/generate_resources.py from host/resources/.\n#pragma code_page(65001)\n"
                   "STRINGTABLE\nBEGIN\n" + "\n".join(rows) + "\nEND\n", encoding="utf-8")


def write_tables(source, out):
    lines = ["// Made by scripts/generate_resources.py from host/resources/.", '#include "host/method_table.h"', "",
             "namespace rubrica::host {", "namespace {"]

    def methods_of(name, methods):
        parameters = [(m, p) for m in methods for p in m.get("parameters", [])]
        if parameters:
            lines.append(f"constexpr ParameterRow k{name}Parameters[] = {{")
            for _, p in parameters:
                flags = (OPTIONAL if p.get("optional") else 0) | (BY_REFERENCE if p.get("byref") else 0)
                lines.append(f"    {{{p['id']}, {KINDS[p['type']]}, {flags:#x}, 0}},  // {p['name']}")
            lines.append("};")
        lines.append(f"constexpr MethodRow k{name}Methods[] = {{")
        at = 0
        for m in methods:
            count = len(m.get("parameters", []))
            where = f"k{name}Parameters + {at}" if count else "nullptr"
            lines.append(f"    {{{m['id']}, {m['id']}, {KINDS[m['returns']]}, {count}, {where}, 0, 0}},  // {m['name']}")
            at += count
        lines.append("};")

    def properties_of(name, properties):
        lines.append(f"constexpr PropertyRow k{name}Properties[] = {{")
        for p in properties:
            first, last = source.ranges[p["group"]] if "group" in p else (0, 0)
            flags = IS_CONSTANT if "group" in p else 0
            lines.append(f"    {{{p['id']}, {p['id']}, {KINDS[p['type']]}, {flags:#x}, 0, {first}, {last}}},"
                         f"  // {p['name']}")
        lines.append("};")

    for data in source.classes:
        methods_of(data["class"]["name"], data.get("method", []))
        properties_of(data["class"]["name"], data.get("property", []))
    methods_of("Static", source.static_methods)
    lines.append("}  // namespace\n")
    for name in [d["class"]["name"] for d in source.classes] + ["Static"]:
        lines.append(f"std::span<const MethodRow> {name[0].lower() + name[1:]}Methods() {{ return k{name}Methods; }}")
        if name != "Static":
            lines.append(f"std::span<const PropertyRow> {name.lower()}Properties() {{ return k{name}Properties; }}")
    lines.append("}  // namespace rubrica::host\n")
    out.write_text("\n".join(lines))


def method_section(method, about):
    lines = [f"### {method['name']}", "", f"`{signature(method)}`", "", method["help"], ""]
    if method.get("parameters"):
        lines += ["| Parameter | Kind | | |", "|---|---|---|---|"]
        for p in method["parameters"]:
            state = "by reference" if p.get("byref") else f"default {p['default']}" if "default" in p else "required"
            lines.append(f"| `{p['name']}` | {p['type']} | {state} | {about[p['name']]} |")
        lines.append("")
    lines += [f"Returns: {method['returns'] if method['returns'] != 'none' else 'nothing'}.", ""]
    return lines + ["```omnis", method["example"].rstrip("\n"), "```", "", "prints", "", "```text",
                    method["prints"].rstrip("\n"), "```", ""]


def write_reference(source, out):
    out.mkdir(parents=True, exist_ok=True)
    for data in source.classes:
        head = data["class"]
        page = [f"# {head['name']}", "", head["text"].split(": ", 1)[1] + ".", "", "## Methods", "",
                "Every example begins with these lines:", "", "```omnis", head["setup"].rstrip("\n"), "```", ""]
        for m in data.get("method", []):
            page += method_section(m, data["about"])
        page += ["## Properties", "", "| Property | Kind | |", "|---|---|---|"]
        for p in data.get("property", []):
            kind = f"constant, group {p['group']}" if "group" in p else p["type"]
            page.append(f"| `{p['name']}` | {kind} | {p['help']} |")
        (out / f"{head['name'].lower()}.md").write_text("\n".join(page) + "\n", encoding="utf-8")
    page = [f"# {source.strings[1000]}", "", "Methods of the library itself, called on its name.", ""]
    for m in source.static_methods:
        page += method_section(m, {})
    (out / f"{source.strings[1000].lower()}.md").write_text("\n".join(page), encoding="utf-8")
    page = ["# Constants", ""]
    for group in source.groups:
        page += [f"## {group['name']}", "", "| Constant | Value | |", "|---|---|---|"]
        page += [f"| `{source.strings[23000]}{name}` | {value} | {' '.join(text.split())} |"
                 for (name, text), value in zip(group["rows"], group["values"])]
        page.append("")
    (out / "constants.md").write_text("\n".join(page), encoding="utf-8")


def main():
    if len(sys.argv) < 4:
        raise SystemExit(__doc__)
    writers = {"strings": write_strings, "tables": write_tables, "rc": write_rc, "reference": write_reference}
    kind, out = sys.argv[1], pathlib.Path(sys.argv[2])
    if kind not in writers:
        raise SystemExit(__doc__)
    writers[kind](Source(sys.argv[3:]), out)


if __name__ == "__main__":
    main()
