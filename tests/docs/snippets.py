"""The fenced blocks of the documents, and how each kind is run. Used by the test of the documents and by the script that
makes the pictures.

A fence's first word is the language, a second one the file that a reader saves the block as. A block that is followed
by "prints" and a text block says what it prints.
"""
import os
import pathlib
import re
import signal
import subprocess

FENCE = re.compile(r"^```([^\n`]*)\n(.*?)^```$", re.M | re.S)
PRINTS = re.compile(r"\s*prints\s+```text\n(.*?)^```$", re.M | re.S)
# What fragments of C++ may use without making it; a fragment runs with a new book.
FRAGMENT = """#include <cstdio>
#include "engine/book.h"
#include "engine/address.h"
#include "engine/date_serial.h"
#include "engine/xlerror.h"
{includes}
static void fragment(rubrica::Book* book, rubrica::Sheet* sheet, rubrica::Format* format,
                     rubrica::Format* dateFormat) {{
  (void)book, (void)sheet, (void)format, (void)dateFormat;
  {{
{body}
  }}
}}
int main() {{
  rubrica::Book* book = rubrica::createBiffBook();
  rubrica::Format* dateFormat = book->addFormat();
  dateFormat->setNumFormat(rubrica::numformat::date);
  fragment(book, book->addSheet(u"Sheet"), book->addFormat(), dateFormat);
  book->release();
}}
"""


class Block:
    def __init__(self, page, line, info, text, expected):
        words = info.split()
        self.page, self.line, self.text, self.expected = page, line, text, expected
        self.language = words[0] if words else ""
        self.file = words[1] if len(words) > 1 else ""

    def __str__(self):
        return f"{self.page}:{self.line}"


def blocks_of(page, text):
    found = []
    for match in FENCE.finditer(text):
        following = PRINTS.match(text, match.end())
        found.append(Block(page, text.count("\n", 0, match.start()) + 1, match.group(1), match.group(2),
                           following.group(1) if following else None))
    return found


def book_of(recipe, block):
    """The workbook that a recipe of the cookbook makes: named after the page, of either form."""
    return f"{recipe}.xlsx" if f"{recipe}.xlsx" in block.text else f"{recipe}.xls"


class Runner:
    """Runs blocks with what is installed below a prefix, as a user would who has nothing else."""

    def __init__(self, prefix, compiler="c++"):
        self.prefix = pathlib.Path(prefix).resolve()
        self.compiler = compiler
        library = next(self.prefix.rglob("librubrica.so")).parent
        self.environment = {name: value for name, value in os.environ.items() if name != "OMNIS_RUN_COMPONENT"}
        self.environment |= {
            "PATH": f"{self.prefix / 'bin'}:{os.environ['PATH']}", "LD_LIBRARY_PATH": str(library),
            "PKG_CONFIG_PATH": str(library / "pkgconfig"), "CMAKE_PREFIX_PATH": str(self.prefix), "CXX": compiler,
            "LC_ALL": "C.UTF-8"}
        flags = subprocess.run(["pkg-config", "--cflags", "--libs", "rubrica"], env=self.environment, check=True,
                               capture_output=True, encoding="utf-8")
        self.flags = flags.stdout.split()

    def start(self, words, folder):
        return subprocess.run([str(word) for word in words], cwd=folder, env=self.environment, capture_output=True,
                              encoding="utf-8", timeout=300)

    def run(self, block, folder):
        """The finished process of a block. Its files stay in `folder`."""
        return {"omnis": self.run_omnis, "cpp": self.run_cpp, "sh": self.run_sh}[block.language](block, folder)

    def run_omnis(self, block, folder):
        script = folder / (block.file or "script.omn")
        script.write_text(block.text, encoding="utf-8")
        return self.start(["omnis-run", script.name], folder)

    def run_cpp(self, block, folder):
        source, program = folder / (block.file or "program.cpp"), folder / "program.bin"
        text = block.text
        if "int main(" not in text:
            includes = "".join(line + "\n" for line in text.splitlines() if line.startswith("#include"))
            body = "".join(line + "\n" for line in text.splitlines() if not line.startswith("#include"))
            text = FRAGMENT.format(includes=includes, body=body)
        source.write_text(text, encoding="utf-8")
        built = self.start([self.compiler, "-std=c++20", "-O0", "-Wall", "-Wextra", "-Werror", source.name, "-o", program,
                            *self.flags], folder)
        return self.start([program], folder) if built.returncode == 0 else built

    def run_sh(self, block, folder):
        result = self.start(["bash", "-euo", "pipefail", "-c", block.text], folder)
        if result.returncode == 128 + signal.SIGPIPE:  # of `head`, which had read enough; what it printed is compared
            result.returncode = 0
        return result
