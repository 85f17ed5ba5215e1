#!/usr/bin/env python3
"""Puts the figures of tests/interop/fidelity.py into docs/fidelity.md, between its two marks.

usage: write_fidelity.py docs/fidelity.md FIGURES_MD
"""
import pathlib
import re
import sys

BEGIN, END = "<!-- figures -->\n", "<!-- end of figures -->"


def main():
    page, figures = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]).read_text(encoding="utf-8")
    head, rest = page.read_text(encoding="utf-8").split(BEGIN)
    tail = rest.split(END)[1]
    # The headings stand one level below the page's own.
    page.write_text(head + BEGIN + "\n" + re.sub(r"\n{3,}", "\n\n", figures.strip()) + "\n\n" + END + tail,
                    encoding="utf-8")


if __name__ == "__main__":
    main()
