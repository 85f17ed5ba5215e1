#!/usr/bin/env python3
"""What the debugger shows for packed values: views_test.py GDB VIEWS PROGRAM. Skipped where gdb is missing or may not trace."""
import shutil
import subprocess
import sys

EXPECTED = {
    "none": "no cell",
    "word": "number 7",
    "rk": "B3 xf 15 = 14.5",
    "text": '"café"',
    "brief": "AB5 t=str v=tea",
    "packed": "A1 s=3 t=n v=-0.1234567890123456",
    "formula": "C3 t=n v=28",
    "object": "D4 t=n v=29",
}


def main():
    gdb, views, program = sys.argv[1:4]
    if not shutil.which(gdb):
        print("skipped: gdb is not on this machine")
        return 77
    commands = [f"source {views}", "set host-charset UTF-8", "break look", "run"]
    for name in EXPECTED:
        commands += [f"echo {name}:", f"output {name}", "echo \\n"]
    arguments = [part for command in commands for part in ("-ex", command)]
    result = subprocess.run([gdb, "-nx", "-batch", *arguments, program], capture_output=True, text=True, timeout=120)
    if "Could not trace the inferior process" in result.stderr:
        print("skipped: programs may not be traced on this machine")
        return 77
    shown = dict(line.split(":", 1) for line in result.stdout.splitlines() if line.split(":", 1)[0] in EXPECTED)
    # References are shown with their address in front.
    wrong = {name: shown.get(name) for name, text in EXPECTED.items() if not shown.get(name, "").endswith(text)}
    if wrong:
        print(result.stdout, result.stderr, "not as expected:", wrong)
        return 1
    print(f"{len(EXPECTED)} values are shown as they are meant")
    return 0


if __name__ == "__main__":
    sys.exit(main())
