#!/usr/bin/env python3
"""Checks what cmake --install and cpack give, from the side of a user who has nothing else.

usage: package_test.py install    BUILD PREFIX          installs the build into an empty PREFIX and checks its files
       package_test.py symbols    PREFIX                what the libraries show
       package_test.py tools      PREFIX                the installed tools and component work together
       package_test.py consumer   PREFIX cmake|pkgconfig shared|static
       package_test.py debian     BUILD                 makes the packages, unpacks them, uses what is in them
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
HEADERS = {"address.h", "auto_filter.h", "book.h", "book_ptr.h", "date_serial.h", "enums.h", "export.h", "font.h",
           "format.h", "sheet.h", "xlerror.h"}
TOOLS = {"omnis-run", "rubrica-bench", "rubrica-check", "rubrica-convert", "rubrica-diff", "rubrica-dump"}
REFERENCE = {"cell.md", "constants.md", "font.md", "format.md", "tabulix.md", "workbook.md",
             "worksheet.md"}
SYMBOLS = {"rubrica::createBiffBook()", "rubrica::createXmlBook()", "rubrica::columnLetters", "rubrica::addressText",
           "rubrica::parseAddress", "rubrica::datePack", "rubrica::dateUnpack", "typeinfo for rubrica::xlerror",
           "typeinfo name for rubrica::xlerror", "vtable for rubrica::xlerror"}
EXPECTED = """version 3080500
tea 2.5, total 5 by a formula of 12 characters
date 2026-11-20 as a date
caught: invalid cell address
"""


def run(*words, **options):
    result = subprocess.run([str(w) for w in words], capture_output=True, encoding="utf-8", timeout=900, **options)
    if result.returncode != 0:
        raise SystemExit(f"{' '.join(map(str, words))}\nended with {result.returncode}\n{result.stdout}{result.stderr}")
    return result.stdout


def expect(is_true, text):
    if not is_true:
        raise SystemExit(text)


def names(folder):
    return {path.name for path in folder.iterdir()}


def only(paths, what):
    found = list(paths)
    expect(len(found) == 1, f"{what}: found {found}")
    return found[0]


def libdir(prefix):
    return only(prefix.rglob("librubrica.a"), "the static library").parent


def check_files(prefix):
    lib = libdir(prefix)
    expect(names(prefix / "include/rubrica/engine") == HEADERS, "other headers than the public ones are installed")
    expect(TOOLS <= names(prefix / "bin"), f"tools: {names(prefix / 'bin')}")
    man = only(prefix.rglob("man1"), "manual pages")
    expect({page.split(".")[0] for page in names(man)} == TOOLS, f"manual pages: {names(man)}")
    expect((lib / "librubrica.so").resolve().name == "librubrica.so.3.85", "the links of the shared library")
    expect((lib / "librubrica.so.3").exists(), "the link that programs load")
    expect({"rubrica.pc", "rubrica-static.pc"} == names(lib / "pkgconfig"), "modules of pkg-config")
    expect((lib / "tabulix/TabulixU.so").exists(), "the component")
    expect(REFERENCE == names(lib / "tabulix/TabulixU-reference"), "the component's reference")
    documents(only(prefix.rglob("tutorial_cpp.md"), "the documents").parent.parent)
    # Nothing of the machine that built it.
    for path in list((lib / "cmake").rglob("*.cmake")) + list((lib / "pkgconfig").iterdir()):
        for place in (str(HERE.parent.parent), str(prefix)):
            expect(place not in path.read_text(), f"{path.name} names {place}")


def documents(folder):
    """Every link between the installed documents leads to one of them."""
    pages = list(folder.rglob("*.md"))
    expect(len(pages) > 40, f"documents: {pages}")
    for page in pages:
        prose = re.sub(r"^```.*?^```$", "", page.read_text(encoding="utf-8"), flags=re.M | re.S)
        for link in re.findall(r"\]\(([^)#\s]+)", prose):
            expect(":" in link or (page.parent / link).exists(), f"{page.relative_to(folder)} links to {link}")


def install(build, prefix):
    shutil.rmtree(prefix, ignore_errors=True)
    run("cmake", "--install", build, "--prefix", prefix)
    check_files(prefix)


def symbols(prefix):
    lib = libdir(prefix)
    shown = set()
    for line in run("nm", "-DC", "--defined-only", lib / "librubrica.so").splitlines():
        name = line.split(" ", 2)[2]
        shown.add(name.split("[abi")[0] if "[abi" in name else name.split("(")[0] + ("()" if "()" in name else ""))
    expect(shown == SYMBOLS, f"shown: {shown ^ SYMBOLS}")
    expect("rubrica::createBiffBook()" in run("nm", "-C", lib / "librubrica.a"), "the archive has no factory")
    needed = run("readelf", "-d", lib / "librubrica.so")
    expect("librubrica.so.3]" in needed, f"the library's own name\n{needed}")
    component = [line.split()[-1] for line in
                 run("nm", "-D", "--defined-only", lib / "tabulix/TabulixU.so").splitlines()]
    expect(component == ["NVObjWndProc"], f"the component shows {component}")


def tools(prefix):
    with tempfile.TemporaryDirectory() as folder:
        script = pathlib.Path(folder) / "hello.omn"
        script.write_text("Var oBook Object Tabulix.Workbook\nVar oSheet Object Tabulix.Worksheet\n"
                          "Do oBook.$addSheet('Hello') Returns oSheet\nDo oSheet.$cell(1,1).$setValue('world')\n"
                          f"Do oBook.$save('{folder}/hello.xls')\n")
        # Finds the installed component by itself.
        plain = {name: value for name, value in os.environ.items() if name != "OMNIS_RUN_COMPONENT"}
        run(prefix / "bin/omnis-run", script, env=plain)
        dumped = run(prefix / "bin/rubrica-dump", f"{folder}/hello.xls")
        expect('"v": "world"' in dumped, dumped)
        run(prefix / "bin/rubrica-check", f"{folder}/hello.xls")
        run(prefix / "bin/rubrica-convert", f"{folder}/hello.xls", f"{folder}/copy.xls")
        run(prefix / "bin/rubrica-diff", f"{folder}/hello.xls", f"{folder}/copy.xls")
    manual_pages(only(prefix.rglob("man1"), "manual pages"))


def manual_pages(folder):
    """Each page as a reader's terminal shows it; whatever the typesetter says is a failure."""
    if shutil.which("groff") is None:
        print("manual pages were not set: groff is not on this machine")
        return
    for page in folder.iterdir():
        result = subprocess.run(["groff", "-man", "-Tutf8", "-P-cbu", "-ww", page], capture_output=True, encoding="utf-8")
        expect(result.returncode == 0 and result.stderr == "", f"{page.name}: {result.stderr}")
        expect("EXIT STATUS" in result.stdout, f"{page.name} shows nothing")


def build_with_cmake(prefix, link, folder):
    run("cmake", "-S", HERE / "consumer", "-B", folder, "-DCMAKE_BUILD_TYPE=Release", f"-DLINK={link}",
        f"-DCMAKE_PREFIX_PATH={prefix}")
    run("cmake", "--build", folder)
    return folder / "consumer"


def build_with_pkgconfig(prefix, link, folder):
    module = {"shared": "rubrica", "static": "rubrica-static"}[link]
    environment = {**os.environ, "PKG_CONFIG_PATH": str(libdir(prefix) / "pkgconfig")}
    flags = run("pkg-config", "--cflags", "--libs", module, env=environment).split()
    program = folder / "consumer"
    run(os.environ.get("CXX", "c++"), "-std=c++20", "-O1", HERE / "consumer/main.cpp", "-o", program, *flags)
    return program


def consumer(prefix, way, link):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        program = {"cmake": build_with_cmake, "pkgconfig": build_with_pkgconfig}[way](prefix, link, folder)
        uses_shared = "librubrica.so" in run("readelf", "-d", program)
        expect(uses_shared == (link == "shared"), f"linked the wrong library for {link}")
        environment = {**os.environ, "LD_LIBRARY_PATH": str(libdir(prefix))} if link == "shared" else None
        output = run(program, folder / "prices.xls", env=environment)
        expect(output == EXPECTED, f"the program printed\n{output}")


def debian(build):
    dist = build / "package/dist"
    shutil.rmtree(dist, ignore_errors=True)
    run("cpack", "-G", "DEB", cwd=build)
    packages = {path.name.split("_")[0]: path for path in dist.glob("*.deb")}
    expect(set(packages) == {"librubrica3", "librubrica-dev", "rubrica-tools", "tabulix"}, f"packages: {packages}")
    depends = {name: run("dpkg-deb", "-f", path, "Depends") for name, path in packages.items()}
    for name in ("librubrica3", "rubrica-tools", "tabulix"):
        expect("libc6" in depends[name] and "libfreetype6" in depends[name], f"{name} depends on {depends[name]}")
    expect("librubrica3 (= 3.85)" in depends["librubrica-dev"], depends["librubrica-dev"])
    expect("libfreetype-dev" in depends["librubrica-dev"], depends["librubrica-dev"])
    with tempfile.TemporaryDirectory() as root:
        for path in packages.values():
            run("dpkg-deb", "-x", path, root)
        prefix = pathlib.Path(root) / "usr"
        check_files(prefix)
        tools(prefix)
        consumer(prefix, "cmake", "shared")


def main():
    if len(sys.argv) < 3:
        raise SystemExit(__doc__)
    kind, place, rest = sys.argv[1], pathlib.Path(sys.argv[2]).resolve(), sys.argv[3:]
    {"install": lambda: install(place, pathlib.Path(rest[0]).resolve()), "symbols": lambda: symbols(place),
     "tools": lambda: tools(place), "consumer": lambda: consumer(place, *rest), "debian": lambda: debian(place)}[kind]()


if __name__ == "__main__":
    main()
