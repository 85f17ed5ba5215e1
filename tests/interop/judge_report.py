#!/usr/bin/env python3
"""Lets one other program open the workbook that the demo writes, and compares every value with our own reading.

usage: judge_report.py JUDGE FORM DUMP OMNIS_RUN COMPONENT EXAMPLES_DIR
JUDGE is xlrd, openpyxl, libreoffice or gnumeric; where it is missing the check is skipped and says so. FORM is xls or
xlsx.
"""
import pathlib
import subprocess
import sys
import tempfile

import workbook_views as views

JUDGES = {"xlrd": views.xlrd_view, "openpyxl": views.openpyxl_view, "libreoffice": views.libreoffice_view, "gnumeric": views.gnumeric_view}


def main():
    judge, form, dump, omnis_run, component, examples = sys.argv[1:7]
    examples = pathlib.Path(examples)
    with tempfile.TemporaryDirectory() as work:
        report = pathlib.Path(work) / f"demo-report.{form}"
        subprocess.run([omnis_run, "--component", component, str(examples / "demo.omn"), work,
                        str(examples / "data" / f"almanac.{form}")], check=True, timeout=120, stdout=subprocess.DEVNULL)
        ours = views.ours(dump, report)
        theirs = JUDGES[judge](report)
    if theirs is None:
        views.skip(f"{judge} is not on this machine")
    cells = sum(len(sheet) for sheet in ours.values())
    problems = views.differences(ours, theirs)
    for line in problems[:20]:
        print(line)
    print(f"{judge}, .{form}: {len(ours)} sheets, {cells} values, {len(problems)} differences")
    return 1 if problems or cells == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
