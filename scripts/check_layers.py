#!/usr/bin/env python3
"""Fails when a folder includes a header of a folder that its CMake target does not name.

Reads the layers.txt that the configure step writes ("folder: used folders") and the #include lines of each folder.
What a used folder uses itself may be included too, since the targets pass it on.
usage: check_layers.py SOURCE_DIR LAYERS_FILE
"""
import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')


def reachable(folder, uses):
    seen, todo = set(), [folder]
    while todo:
        for used in uses.get(todo.pop(), []):
            if used not in seen:
                seen.add(used)
                todo.append(used)
    return seen


def main():
    root, layers_file = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    uses = {}
    for line in layers_file.read_text().splitlines():
        folder, _, names = line.partition(":")
        uses[folder.strip()] = [n for n in re.split(r"[;\s]+", names.strip()) if n]
    errors, files = [], 0
    for folder in uses:
        allowed = reachable(folder, uses) | {folder}
        for path in sorted((root / folder).rglob("*")):
            if path.suffix not in (".h", ".cpp", ".inc"):
                continue
            files += 1
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                match = INCLUDE.match(line)
                if match is None:
                    continue
                target = match.group(1).rsplit("/", 1)[0] if "/" in match.group(1) else ""
                owner = next((f for f in sorted(uses, key=len, reverse=True)
                              if target == f or target.startswith(f + "/")), None)
                if owner is None:
                    errors.append(f"{path}:{number}: \"{match.group(1)}\" is in no known folder")
                elif owner not in allowed:
                    errors.append(f"{path}:{number}: {folder}/ may not include from {owner}/")
    for error in errors:
        print(error)
    if files == 0:
        print("no source files were found: wrong SOURCE_DIR or LAYERS_FILE?")
        return 1
    print(f"{files} files in {len(uses)} folders, {len(errors)} violations")
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
