#!/usr/bin/env python3
"""Makes a site of the documents: every page of docs/, those for developers, the reference pages of the component
and of the C++ headers, and the manual pages of the tools. Needs python3-markdown, and groff for the manual pages.

usage: build_site.py SOURCE_DIR OUTPUT_DIR
"""
import html
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

import markdown
from markdown.extensions.toc import slugify

NAVIGATION = (("Start", ("index", "tutorial_omnis", "tutorial_cpp", "cookbook/index")),
              ("Component", ("reference/workbook", "reference/worksheet", "reference/cell", "reference/format",
                             "reference/font", "reference/tabulix", "reference/constants", "omnis-run")),
              ("C++", ("reference/cpp_book", "reference/cpp_sheet", "reference/cpp_format", "reference/cpp_font",
                       "reference/cpp_auto_filter", "reference/cpp_enums", "reference/cpp_date_serial",
                       "reference/cpp_address", "reference/cpp_book_ptr", "reference/cpp_xlerror")),
              ("Trust", ("state", "fidelity", "limits", "security", "performance", "reliability")),
              ("Change", ("CONTRIBUTING", "HACKING", "CHANGELOG")))
STYLE = """
body { margin: 0; font: 16px/1.5 sans-serif; color: #222; display: flex; flex-wrap: wrap; }
nav { width: 14rem; padding: 1rem; background: #f3f5f5; min-height: 100vh; box-sizing: border-box; font-size: 14px; }
nav h2 { font-size: 14px; margin: 1rem 0 .2rem; } nav a { display: block; } nav a.here { font-weight: bold; }
main { flex: 1; min-width: 18rem; max-width: 56rem; padding: 1rem 2rem; box-sizing: border-box; }
a { color: #00696b; text-decoration: none; } a:hover { text-decoration: underline; }
pre { background: #f3f5f5; padding: .7rem 1rem; overflow-x: auto; font-size: 13.5px; line-height: 1.4; }
code { font-family: monospace; } table { border-collapse: collapse; margin: 1rem 0; }
td, th { border: 1px solid #ccd3d3; padding: .25rem .6rem; text-align: left; vertical-align: top; }
img { border: 1px solid #ccd3d3; max-width: 100%; } h1 { line-height: 1.2; } .file { font-size: 13px; color: #555; }
"""
PAGE = """<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><meta name="viewport" content="width=device-width, initial-scale=1">
<title>{title}</title><link rel="stylesheet" href="{root}style.css"></head>
<body><nav><strong>Tabulix and Rubrica</strong>{navigation}</nav><main>
{body}
</main></body></html>
"""
ROOT_PAGES = ("HACKING.md", "CONTRIBUTING.md", "CHANGELOG.md")
FENCE = re.compile(r"^```(\w+) (\S+)\n", re.M)


def gather(source, folder):
    """All pages as Markdown in one tree, as the site has them."""
    shutil.copytree(source / "docs", folder, dirs_exist_ok=True, ignore=shutil.ignore_patterns("man"))
    for name in ROOT_PAGES:
        shutil.copy(source / name, folder)
    subprocess.run([sys.executable, source / "scripts/generate_resources.py", "reference", folder / "reference",
                    *sorted((source / "host/resources").glob("*.toml"))], check=True)
    headers = [path for path in sorted((source / "engine").glob("*.h")) if is_public(source, path)]
    subprocess.run([sys.executable, source / "scripts/generate_cpp_reference.py", folder / "reference", *headers],
                   check=True)
    manual_pages(source, folder / "man")


def is_public(source, header):
    listed = re.search(r"set\(public_headers ([^)]*)\)", (source / "cmake/RubricaPackage.cmake").read_text()).group(1)
    return header.stem in listed.split() and header.stem != "export"


def manual_pages(source, folder):
    folder.mkdir()
    if shutil.which("groff") is None:
        print("without the manual pages: groff is not on this machine")
        return
    for page in sorted((source / "docs/man").glob("*.1")):
        text = subprocess.run(["groff", "-man", "-Tutf8", "-P-cbu", page], check=True, capture_output=True).stdout
        (folder / f"{page.stem}.md").write_text(f"# {page.stem}\n\n```text\n{text.decode()}```\n", encoding="utf-8")


def site_path(page):
    """cookbook/README.md is cookbook/index.html."""
    return page.with_name("index.html") if page.name == "README.md" else page.with_suffix(".html")


def with_site_links(body, page, folder):
    def changed(match):
        path, mark, anchor = match.group(1).partition("#")
        if re.match(r"[a-z]+:", path) or not path.endswith(".md"):
            return match.group(0)
        # ROOT_PAGES stand beside the documents here, above or below them in the repository.
        target = (page.parent / path).resolve()
        if not target.exists() and (folder / target.name).exists():
            target = folder / target.name
        return f'href="{os.path.relpath(site_path(target), page.parent)}{mark}{anchor}"'
    return re.sub(r'href="([^"]*)"', changed, body)


def navigation(page, folder, tools):
    parts = []
    for title, names in (*NAVIGATION[:3], ("Tools", tuple(f"man/{tool}" for tool in tools)), *NAVIGATION[3:]):
        parts.append(f"<h2>{title}</h2>")
        for name in names:
            source = folder / f"{name}.md" if not name.endswith("index") else (folder / name).with_name("README.md")
            if source.exists():
                here = ' class="here"' if source == page else ""
                link = os.path.relpath(site_path(source), page.parent)
                parts.append(f'<a href="{link}"{here}>{html.escape(title_of(source))}</a>')
    return "".join(parts)


def title_of(page):
    return re.search(r"^# (.*)$", page.read_text(encoding="utf-8"), re.M).group(1).replace("`", "")


def write_page(page, folder, out, tools):
    text = page.read_text(encoding="utf-8")
    # A fence's second word is the file that the block is saved as.
    text = FENCE.sub(lambda m: f"```{m.group(1)}\n" if m.group(2) == "changes-the-machine" else
                     f'<p class="file">{m.group(2)}</p>\n\n```{m.group(1)}\n', text)
    body = markdown.markdown(text, extensions=["fenced_code", "tables", "toc"],
                             extension_configs={"toc": {"slugify": slugify}})
    target = out / site_path(page).relative_to(folder)
    target.parent.mkdir(parents=True, exist_ok=True)
    root = os.path.relpath(folder, page.parent)
    target.write_text(PAGE.format(title=html.escape(title_of(page)), root="" if root == "." else root + "/",
                                  navigation=navigation(page, folder, tools),
                                  body=with_site_links(body, page, folder)), encoding="utf-8")


def main():
    source, out = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
    shutil.rmtree(out, ignore_errors=True)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name).resolve() / "pages"
        gather(source, folder)
        tools = [page.stem for page in sorted((folder / "man").glob("*.md"))]
        pages = sorted(folder.rglob("*.md"))
        for page in pages:
            write_page(page, folder, out, tools)
        for picture in [*folder.rglob("*.png"), *folder.rglob("*.svg")]:
            (out / picture.relative_to(folder)).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(picture, out / picture.relative_to(folder))
    (out / "style.css").write_text(STYLE.strip() + "\n")
    print(f"{len(pages)} pages in {out}")


if __name__ == "__main__":
    main()
