#!/usr/bin/env python3
"""Makes Markdown pages of the public headers: the words of each header's head, and each declaration with the comment
above it. The headers are written to be read, so this only sets them as pages.

usage: generate_cpp_reference.py OUTPUT_DIR HEADER...
"""
import pathlib
import re
import sys

SECTION = re.compile(r"^\s*// ---- (.*)$")
NAMESPACE = re.compile(r"^(?:namespace (\w+) \{|\}  // namespace.*)$")
OPENS = re.compile(r"^(?:template <class C>\n)?(?:class|enum class|struct) (?:RUBRICA_API )?(\w+)([^{;]*)\{$")


def plain(comment):
    """The text of comment lines. Lines that stand in by two more spaces are code."""
    text, code = [], []

    def end_code():
        if code:
            text.extend(["```cpp", *code, "```", ""])
            code.clear()

    for line in comment:
        body = re.sub(r"^\s*// ?", "", line)
        if body.startswith("  ") and (code or not text or not text[-1]):
            code.append(body[2:])
        else:
            end_code()
            text.append(body)
    end_code()
    return "\n".join(text).strip()


def declarations(lines):
    """Yields ("section", text), ("open", name, line), and ("item", comment, code) for the lines of a header."""
    comment, code = [], []
    for line in lines:
        section, stripped = SECTION.match(line), line.strip()
        if not code and section:
            yield "section", section.group(1).rstrip("."), ""
            comment = []
        elif not code and stripped.startswith("//"):
            comment.append(line)
        elif not stripped or stripped.startswith("#"):
            if not code:
                comment = []
        elif not code and stripped in ("public:", "protected:", "private:", "};"):
            comment = []
        else:
            code.append(line)
            text = "\n".join(code)
            opened = OPENS.match(text)
            if opened and not text.startswith("enum"):
                yield "open", opened.group(1), plain(comment)
                comment, code = [], []
            elif len(code) == 1 and NAMESPACE.match(stripped):
                name = NAMESPACE.match(stripped).group(1)
                if name and name != "rubrica":
                    yield "open", f"namespace {name}", plain(comment)
                comment, code = [], []
            elif re.sub(r"\s*//.*", "", stripped).endswith((";", "{}")) and text.count("{") == text.count("}"):
                yield "item", plain(comment), dedented(code)
                comment, code = [], []


def dedented(code):
    """A declaration as its users see it: that it is virtual, or in the library's table of symbols, is nothing to them."""
    indent = len(code[0]) - len(code[0].lstrip())
    text = "\n".join(line[indent:] for line in code)
    word = re.match(r"(virtual |RUBRICA_API )*", text).group(0)
    return text.removeprefix(word).replace("\n" + " " * len(word), "\n").replace(" = 0;", ";")


def page_of(header):
    lines = header.read_text(encoding="utf-8").splitlines()
    head = lines[:lines.index("#pragma once")]
    out = [f"# engine/{header.name}", "", plain(head), ""]
    run = []  # declarations without a comment stand together

    def flush():
        if run:
            out.extend(["```text", *run, "```", ""])
            run.clear()

    for kind, first, second in declarations(lines[len(head):]):
        if kind == "section":
            flush()
            out.extend([f"### {first}", ""])
        elif kind == "open":
            flush()
            out.extend([f"## {first}", ""] + ([second, ""] if second else []))
        elif not re.search(r"= default;|^friend |^namespace ", second):
            if first:
                flush()
                out.extend([first, ""])
            run.append(second)
    flush()
    return "\n".join(out)


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for name in sys.argv[2:]:
        header = pathlib.Path(name)
        (folder / f"cpp_{header.stem}.md").write_text(page_of(header), encoding="utf-8")


if __name__ == "__main__":
    main()
