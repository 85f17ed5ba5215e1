#!/usr/bin/env python3
"""Runs what the documents show: scripts, programs and shell commands, each as a reader would who has the installed
package and nothing else. Checks links, and that the pictures show what the cookbook makes today.

usage: documents_test.py SOURCE_DIR PREFIX COMPILER
"""
import concurrent.futures
import hashlib
import json
import pathlib
import re
import shutil
import sys
import tempfile
import unittest

import snippets

SOURCE, PREFIX, COMPILER = pathlib.Path(sys.argv[1]).resolve(), sys.argv[2], sys.argv[3]
COOKBOOK = SOURCE / "docs/cookbook"
PAGES = sorted([*SOURCE.glob("*.md"), *(SOURCE / "docs").rglob("*.md")])
RUN = {"omnis", "cpp", "sh"}
SHOWN = {"text", "json", "cmake"}
# Commands that build the whole project or install packages; ./dev's own tests are the proof of these.
CHANGES_THE_MACHINE = "changes-the-machine"
LINK = re.compile(r"(?<!!)\[[^\]]*\]\(([^)\s]+)\)|!\[[^\]]*\]\(([^)\s]+)\)")


def text_of(page):
    return page.read_text(encoding="utf-8")


def blocks_of(page):
    return snippets.blocks_of(page.relative_to(SOURCE), text_of(page))


def anchors(text):
    """The anchors of a page's headings, as sites for Markdown make them."""
    found = set()
    for heading in re.findall(r"^#+ (.*)$", re.sub(snippets.FENCE, "", text), re.M):
        plain = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading).replace("`", "")
        found.add(re.sub(r"[^\w\- ]", "", plain.lower()).replace(" ", "-"))
    return found


class Documents(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.runner = snippets.Runner(PREFIX, COMPILER)

    def folder_with_data(self, folder):
        for path in (SOURCE / "examples/data").iterdir():
            shutil.copy(path, folder)
        return pathlib.Path(folder)

    def failures_of(self, page):
        """Runs a page from top to bottom in one folder, so that a command finds the file shown before it."""
        failures, ran = [], 0
        with tempfile.TemporaryDirectory() as name:
            folder = self.folder_with_data(name)
            for block in blocks_of(page):
                if block.language not in RUN | SHOWN:
                    failures.append(f"{block}: a block in the language '{block.language}'")
                if block.language == "json":
                    for line in block.text.splitlines():
                        json.loads(line)
                if block.language in SHOWN and block.file:
                    (folder / block.file).write_text(block.text, encoding="utf-8")
                if block.language not in RUN or block.file == CHANGES_THE_MACHINE:
                    continue
                ran += 1
                result = self.runner.run(block, folder)
                if result.returncode != 0 or (block.expected is None and result.stderr):
                    failures.append(f"{block}: ended with {result.returncode}\n{result.stdout}{result.stderr}")
                elif block.expected is not None and result.stdout != block.expected:
                    failures.append(f"{block}: printed\n{result.stdout}instead of\n{block.expected}")
        return failures, ran

    def test_every_block_of_every_page_works(self):
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            results = list(pool.map(self.failures_of, PAGES))
        failures = [failure for found, _ in results for failure in found]
        print(f"{sum(ran for _, ran in results)} blocks of {len(PAGES)} pages ran")
        self.assertFalse(failures, "\n" + "\n".join(failures))
        self.assertGreater(sum(ran for _, ran in results), 50)

    def test_commands_that_are_not_run_name_verbs_that_exist(self):
        verbs = set(re.findall(r"^  ([a-z]+) ", text_of(SOURCE / "dev").split("TEXT")[1], re.M))
        named = set()
        for page in PAGES:
            for block in blocks_of(page):
                if block.file != CHANGES_THE_MACHINE:
                    continue
                named |= set(re.findall(r"^\./dev (\w+)", block.text, re.M))
                self.assertEqual(self.runner.start(["bash", "-n", "-c", block.text], SOURCE).returncode, 0, str(block))
        self.assertLessEqual({"demo", "test"}, named)
        self.assertLessEqual(named, verbs)

    def test_links_lead_somewhere(self):
        broken = []
        for page in PAGES:
            for match in LINK.finditer(re.sub(snippets.FENCE, "", text_of(page))):
                path, _, anchor = (match.group(1) or match.group(2)).partition("#")
                if re.match(r"[a-z]+:", path):
                    continue
                target = (page.parent / path).resolve() if path else page
                if not target.exists() and "reference/" not in path:
                    broken.append(f"{page.relative_to(SOURCE)}: {path}")
                elif anchor and target.suffix == ".md" and target.exists() and anchor not in anchors(text_of(target)):
                    broken.append(f"{page.relative_to(SOURCE)}: {path}#{anchor}")
        self.assertEqual(broken, [])

    def test_both_languages_of_a_recipe_make_the_same_workbook(self):
        compared = 0
        for page in sorted(COOKBOOK.glob("*.md")):
            book = f"{page.stem}.xls"
            programs = [block for block in blocks_of(page) if f"{book}'" in block.text or f'{book}"' in block.text]
            if len(programs) < 2:
                continue
            with tempfile.TemporaryDirectory() as name:
                folder = pathlib.Path(name)
                for program in programs[:2]:
                    (folder / program.language).mkdir()
                    self.runner.run(program, self.folder_with_data(folder / program.language))
                result = self.runner.start(["rubrica-diff", f"omnis/{book}", f"cpp/{book}"], folder)
            self.assertEqual((result.returncode, result.stdout + result.stderr), (0, ""), page.stem)
            compared += 1
        self.assertGreaterEqual(compared, 10)

    def test_pictures_show_what_the_recipes_make(self):
        """scripts/make_pictures.py notes the content of each book that it pictures."""
        noted = dict(line.split() for line in text_of(COOKBOOK / "pictures/content.txt").splitlines())
        pictured = set()
        for page in sorted(COOKBOOK.glob("*.md")):
            if f"](pictures/{page.stem}.png)" not in text_of(page):
                continue
            pictured.add(page.stem)
            with tempfile.TemporaryDirectory() as name:
                folder = self.folder_with_data(name)
                block = blocks_of(page)[0]
                self.runner.run(block, folder)
                dump = self.runner.start(["rubrica-dump", "--styles", snippets.book_of(page.stem, block)], folder)
            digest = hashlib.sha256(dump.stdout.encode()).hexdigest()
            self.assertEqual(digest, noted.get(page.stem), f"{page.stem}: ./dev pictures makes the picture anew")
            self.assertTrue((COOKBOOK / f"pictures/{page.stem}.png").exists(), page.stem)
        self.assertEqual(pictured, {path.stem for path in (COOKBOOK / "pictures").glob("*.png")} - {"start"})

    def test_what_is_said_to_be_kept_names_tests_that_exist(self):
        sources = "".join(text_of(path) for path in (SOURCE / "tests").rglob("*_test.cpp"))
        lists = "".join(text_of(path) for path in (SOURCE / "tests").rglob("CMakeLists.txt"))
        rows = re.findall(r"^\|.*\| `([\w./]+)` \|$", text_of(SOURCE / "docs/fidelity.md"), re.M)
        self.assertGreater(len(rows), 15)
        for name in rows:
            if "/" in name:
                self.assertIn(f"{name.split('/')[0]}_test({name.split('/')[1]} ", lists)
            else:
                self.assertRegex(sources, r"TEST(_F|_P)?\(" + name.replace(".", r",\s*") + r"\)")

    def test_the_cookbook_lists_its_pages(self):
        listed = set(re.findall(r"\]\((\w+)\.md\)", text_of(COOKBOOK / "README.md")))
        self.assertEqual(listed, {page.stem for page in COOKBOOK.glob("*.md")} - {"README"})


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
