#!/usr/bin/env python3
"""Runs every example of the reference pages, as a reader of the pages would type it, and compares what it prints.

usage: reference_test.py OMNIS_RUN COMPONENT SOURCE_DIR
"""
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

PROGRAM, COMPONENT, SOURCE = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
# Methods of each page, as the component's own tables have them.
METHODS = {"workbook": 19, "worksheet": 25, "cell": 6, "format": 3, "font": 1, "tabulix": 1}


def small_png():
    """A red picture of four by four pixels."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    rows = (b"\0" + b"\xff\0\0" * 4) * 4
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", 4, 4, 8, 2, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


class Reference(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        sources = sorted((SOURCE / "host/resources").glob("*.toml"))
        subprocess.run([sys.executable, SOURCE / "scripts/generate_resources.py", "reference", cls.folder.name, *sources],
                       check=True)
        cls.pages = {page: (pathlib.Path(cls.folder.name) / f"{page}.md").read_text(encoding="utf-8")
                     for page in METHODS}

    def run_script(self, text):
        with tempfile.TemporaryDirectory() as folder:
            (pathlib.Path(folder) / "logo.png").write_bytes(small_png())
            script = pathlib.Path(folder) / "example.omn"
            script.write_text(text, encoding="utf-8")
            return subprocess.run([PROGRAM, "--component", COMPONENT, script], capture_output=True, encoding="utf-8",
                                  cwd=folder, timeout=120)

    def sections(self, page):
        return re.findall(r"### (\$\w+)\n(.*?)(?=\n### |\n## |\Z)", self.pages[page], re.S)

    def test_every_method_has_an_example(self):
        for page, count in METHODS.items():
            self.assertEqual(len(self.sections(page)), count, page)

    def test_every_example_prints_what_its_page_says(self):
        ran = 0
        for page in METHODS:
            setup = re.search(r"begins with these lines:\n\n```omnis\n(.*?)```", self.pages[page], re.S)
            for name, section in self.sections(page):
                example = re.search(r"```omnis\n(.*?)```\n\nprints\n\n```text\n(.*?)```", section, re.S)
                self.assertIsNotNone(example, f"{page} {name}")
                result = self.run_script((setup.group(1) if setup else "") + example.group(1))
                ran += 1
                with self.subTest(page=page, method=name):
                    self.assertEqual((result.returncode, result.stderr), (0, ""))
                    self.assertEqual(result.stdout, example.group(2))
        self.assertEqual(ran, sum(METHODS.values()))

    def test_pages_name_every_property_and_constant_group(self):
        for page, count in (("workbook", 8), ("worksheet", 24), ("cell", 9), ("format", 23), ("font", 8)):
            table = self.pages[page].split("## Properties")[1]
            self.assertEqual(len(re.findall(r"^\| `\$", table, re.M)), count, page)
        constants = (pathlib.Path(self.folder.name) / "constants.md").read_text(encoding="utf-8")
        self.assertEqual(constants.count("\n## "), 16)
        self.assertEqual(constants.count("| `kXL"), 229)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
