#!/usr/bin/env python3
"""Fails when simhost/ includes anything of the project but itself and the interface that it shares with the component.

The layer check allows a whole folder; this is stricter, since the substitute host may reach the component through its
one exported function only.
usage: includes_test.py SOURCE_DIR
"""
import pathlib
import re
import sys

ALLOWED = re.compile(r"simhost/[a-z_0-9]+\.h|host/omnis_abi\.h")

files = sorted(p for p in (pathlib.Path(sys.argv[1]) / "simhost").iterdir() if p.suffix in (".h", ".cpp"))
errors = [f"{path}: {name}" for path in files
          for name in re.findall(r'^\s*#\s*include\s+"([^"]+)"', path.read_text(encoding="utf-8"), re.M)
          if not ALLOWED.fullmatch(name)]
print("\n".join(errors) or f"{len(files)} files include nothing else")
sys.exit(1 if errors or not files else 0)
