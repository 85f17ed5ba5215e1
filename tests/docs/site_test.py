#!/usr/bin/env python3
"""Builds the site and follows every link of every page, with its anchor; looks at what the C++ reference says.

usage: site_test.py SOURCE_DIR
"""
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
from html.parser import HTMLParser

SOURCE = pathlib.Path(sys.argv[1]).resolve()
SKIPPED = 77  # the exit code that ctest reads as "skipped"


class Page(HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.links, self.anchors, self.text = [], set(), ""
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        given = dict(attributes)
        self.links += [given[name] for name in ("href", "src") if name in given]
        if "id" in given:
            self.anchors.add(given["id"])

    def handle_data(self, data):
        self.text += data


class Site(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        subprocess.run([sys.executable, SOURCE / "scripts/build_site.py", SOURCE, cls.folder.name], check=True)
        cls.root = pathlib.Path(cls.folder.name).resolve()
        cls.pages = {path: Page(path.read_text(encoding="utf-8")) for path in cls.root.rglob("*.html")}

    def test_every_link_leads_to_a_page_and_place(self):
        broken = []
        for path, page in self.pages.items():
            for link in page.links:
                if re.match(r"[a-z]+:", link):
                    continue
                file, _, anchor = link.partition("#")
                target = (path.parent / file).resolve() if file else path
                if not target.exists() or (anchor and anchor not in self.pages[target].anchors):
                    broken.append(f"{path.relative_to(self.root)}: {link}")
        self.assertEqual(broken, [])

    def test_every_document_is_reached_from_the_start(self):
        seen, todo = set(), [self.root / "index.html"]
        while todo:
            path = todo.pop()
            if path in seen:
                continue
            seen.add(path)
            for link in self.pages[path].links:
                target = (path.parent / link.partition("#")[0]).resolve()
                if target in self.pages:
                    todo.append(target)
        self.assertEqual(set(self.pages) - seen, set())

    def test_no_fence_or_table_is_left_as_text(self):
        for path, page in self.pages.items():
            self.assertNotIn("```", page.text, path)
            self.assertNotRegex(page.text, r"\|---", path)

    def test_the_cpp_reference_has_every_operation(self):
        for header in ("book", "sheet", "format", "font", "auto_filter"):
            text = re.sub(r"//.*", "", (SOURCE / f"engine/{header}.h").read_text(encoding="utf-8"))
            operations = set(re.findall(r"virtual [^;~]*?(\w+)\(", text))
            shown = self.pages[self.root / f"reference/cpp_{header}.html"].text
            self.assertEqual({name for name in operations if f"{name}(" not in shown}, set(), header)
            self.assertNotIn("virtual", shown)


if __name__ == "__main__":
    try:
        import markdown  # noqa: F401
    except ImportError:
        print("skipped: python3-markdown is not on this machine")
        sys.exit(SKIPPED)
    unittest.main(argv=sys.argv[:1])
