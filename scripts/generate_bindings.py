#!/usr/bin/env python3
"""Writes the C++ binding classes of one module from its descriptions; the build runs it.

    generate_bindings.py [--plain NAME] [--folder FOLDER] OUTPUT DESCRIPTION...

Into OUTPUT/FOLDER (source/ooxml) go <stem>.h and .cpp for each description, <module>.h and .cpp with the roots, and
<module>_types.h. A file whose text would not change is left alone, so that only what a change touches is compiled
again. --plain makes the module under another name with no class laid out by hand, for tests to compare with.
"""

import argparse
import os

from bindings import emit_header, emit_source, model
from bindings.plan import Planner


def write(path, text):
    if os.path.exists(path):
        with open(path, encoding="utf-8") as file:
            if file.read() == text:
                return
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def stem_of(path):
    return os.path.splitext(os.path.basename(path))[0]


def read_module(descriptions):
    module = model.Module()
    for path in descriptions:
        with open(path, encoding="utf-8") as file:
            model.parse(file.read(), stem_of(path), module)
    return module


def held_by_value(own, plans, sources):
    """The description files of the classes that these plans hold by value."""
    files = {p.packed.name: sources[p.described] for p in plans if p.packed}
    return {files[m.cpp] for p in own for m in p.members if m.kind == "block"}


def generate(output, descriptions, plain, folder):
    module = read_module(descriptions)
    module.name, module.folder = plain or module.name, folder
    plans = Planner(module, plain).run()
    declared = {p.name for p in plans} | {p.packed.name for p in plans if p.packed}
    stems = [stem_of(path) for path in descriptions]
    target = os.path.join(output, folder)
    os.makedirs(target, exist_ok=True)
    for stem in stems:
        own = [p for p in plans if module.sources[p.described] == stem]
        used = set().union(*(p.used_classes for p in own)) & declared
        used.update(name for p in own if p.packed for name in p.packed.arguments)
        complete = held_by_value(own, plans, module.sources) - {stem}
        write(os.path.join(target, stem + ".h"),
              emit_header.class_header(module, stem, own, used, sorted(complete)))
        write(os.path.join(target, stem + ".cpp"), emit_source.class_source(module, stem, own))
    stem = stems[0]
    write(os.path.join(target, module.name + "_types.h"), emit_header.types_header(module, stem))
    write(os.path.join(target, module.name + ".h"), emit_header.root_header(module, stem, stems))
    write(os.path.join(target, module.name + ".cpp"), emit_source.root_source(module, stem, plans))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--plain")
    parser.add_argument("--folder", default="source/ooxml")
    parser.add_argument("output")
    parser.add_argument("descriptions", nargs="+")
    given = parser.parse_args()
    generate(given.output, given.descriptions, given.plain, given.folder)


if __name__ == "__main__":
    main()
