#!/usr/bin/env python3
"""Runs omnis-run as a user does: exit codes, messages, the demo, and every script in docs/omnis-run.md.

usage: omnis_run_test.py OMNIS_RUN COMPONENT SOURCE_DIR
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

PROGRAM, COMPONENT, SOURCE = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])


class OmnisRun(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def run_program(self, *words, env=None):
        return subprocess.run([PROGRAM, *map(str, words)], capture_output=True, encoding="utf-8", cwd=self.folder.name,
                              env={**os.environ, **(env or {})}, timeout=120)

    def run_script(self, text, *words):
        path = pathlib.Path(self.folder.name) / "script.omn"
        path.write_text(text, encoding="utf-8")
        return self.run_program("--component", COMPONENT, path, *words)

    def test_a_script_that_ends_well_exits_0(self):
        result = self.run_script("Parameter p Character\nPrint 'got',p", "grüße")
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "got grüße\n", ""))

    def test_an_unknown_word_is_told_with_file_and_line_and_exits_1(self):
        result = self.run_script("Print 'never printed'\n\nPrint lMissing\n")
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertRegex(result.stderr, r"script\.omn:3: Unknown word 'lMissing'\n$")

    def test_a_failure_while_running_exits_1_after_what_was_printed(self):
        result = self.run_script("Print 'first'\nPrint 1/0\n")
        self.assertEqual((result.returncode, result.stdout), (1, "first\n"))
        self.assertRegex(result.stderr, r"script\.omn:2: Division by zero\n$")

    def test_an_error_of_an_object_without_override_is_shown_and_the_script_goes_on(self):
        result = self.run_script("Var oBook Object Tabulix.Workbook\nDo oBook.$getSheet(0)\nPrint 'on'\n")
        self.assertEqual((result.returncode, result.stdout), (0, "on\n"))
        self.assertRegex(result.stderr, r"script\.omn:2: Workbook\.\$getSheet: error -102, Invalid parameters ")

    def test_wrong_command_lines_exit_2(self):
        for words in ([], ["--component"], ["--frob", "x.omn"], ["--component", "/nonexistent.so", "x.omn"],
                      ["--component", COMPONENT, "/nonexistent.omn"], ["--component", PROGRAM, "x.omn"]):
            result = self.run_program(*words)
            self.assertEqual((result.returncode, result.stdout), (2, ""), words)
            self.assertTrue(result.stderr.startswith("omnis-run: "), words)

    def test_help_tells_the_language(self):
        result = self.run_program("--help")
        self.assertEqual(result.returncode, 0)
        for word in ("--component", "Do oBook.$load", "Left out:", "Exit code"):
            self.assertIn(word, result.stdout)

    def test_help_names_what_the_manual_says_is_left_out(self):
        manual = (SOURCE / "docs/omnis-run.md").read_text(encoding="utf-8")
        told = manual.split("## What is left out")[1].split("All of it stops")[0].replace("`", "")
        shown = self.run_program("--help").stdout.split("Left out:")[1].split("All of it stops")[0].replace("`", "")
        self.assertEqual(" ".join(told.lower().split()), " ".join(shown.lower().split()))

    def test_what_is_left_out_stops_the_script_with_its_line(self):
        for line in ("Set current list lList", "Add line to list", "Calculate #F as 1", "Begin reversible block",
                     "Load error handler h", "Print totc(lList,lA)", "Do lList.$makelist($ref.lA)",
                     "Do lList.$sendall($ref.lA)", "Calculate lList.$smartlist as kTrue", "Begin text block",
                     "Do $cwind.$redraw()", "Do lList.$first(kTrue)", "Start timer 1", "Do $cinst.$x()"):
            result = self.run_script(f"Var lList List\nVar lA Integer\nDo lList.$define(lA)\n{line}\n")
            self.assertEqual((result.returncode, result.stdout), (1, ""), line)
            self.assertRegex(result.stderr, r"script\.omn:4: ", line)

    def test_the_component_may_come_from_the_environment(self):
        path = pathlib.Path(self.folder.name) / "script.omn"
        path.write_text("Print Tabulix.$rubricaVersion()")
        result = self.run_program(path, env={"OMNIS_RUN_COMPONENT": COMPONENT})
        self.assertEqual((result.returncode, result.stdout), (0, "3.8.2.0\n"))
        result = self.run_program(path, env={"OMNIS_RUN_COMPONENT": "/nonexistent.so"})
        self.assertEqual(result.returncode, 2)

    def test_check_runs_nothing(self):
        path = pathlib.Path(self.folder.name) / "script.omn"
        path.write_text("Print 'x'")
        result = self.run_program("--component", COMPONENT, "--check", path)
        self.assertEqual((result.returncode, result.stdout), (0, ""))

    def test_the_demo_does_the_main_job_in_both_file_forms(self):
        for form, signature in (("xls", "D0CF11E0A1B11AE1"), ("xlsx", "504B0304")):
            with self.subTest(form):
                result = self.run_program("--component", COMPONENT, SOURCE / "examples/demo.omn", self.folder.name,
                                          SOURCE / f"examples/data/almanac.{form}")
                self.assertEqual(result.returncode, 0, result.stderr)
                self.assertEqual(result.stderr, "")
                for line in ("  heading:  standard atomic weight", "  changed:  Al Aluminum",
                             "       6        32        4,789.70 Bismuth      NO        ",
                             "earliest  Sunday, 23rd March 1913", "  latest  Sunday, 25th April 1943",
                             "All figures and 300 dates agree."):
                    self.assertIn(line + "\n", result.stdout)
                saved = pathlib.Path(self.folder.name) / f"demo-report.{form}"
                self.assertTrue(saved.read_bytes().startswith(bytes.fromhex(signature)))

    def test_the_demo_says_when_its_input_is_missing(self):
        result = self.run_program("--component", COMPONENT, SOURCE / "examples/demo.omn", ".", "/nonexistent.xls")
        self.assertEqual(result.returncode, 1)
        self.assertIn("/nonexistent.xls can't be loaded", result.stderr)

    def run_example(self, name, *words):
        result = self.run_program("--component", COMPONENT, SOURCE / "examples" / name, *words)
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stdout)
        return result.stdout

    def written(self, name):
        path = pathlib.Path(self.folder.name) / name
        self.assertTrue(path.read_bytes().startswith(bytes.fromhex("D0CF11E0A1B11AE1")), name)
        return path

    def assert_lines(self, printed, *lines):
        for line in lines:
            self.assertIn(line + "\n", printed)

    def test_example_a_report_from_a_list(self):
        printed = self.run_example("list_report.omn", self.folder.name)
        self.assert_lines(printed, "118 elements, the heaviest weighs 238.03", "Period 1                      ",
                          "He        Helium        4.0026", "Row 7 sums by SUM(C5:C6)", "Row 101 sums by SUM(C98:C100)")
        self.assertIn("list-report.xls with 7 groups, the last row is 101\n", printed)
        self.written("list-report.xls")

    def test_example_an_uploaded_sheet_becomes_a_list(self):
        printed = self.run_example("read_upload.omn")
        self.assert_lines(printed, "The sheet gave 118 lines of 4 columns", "The first line: 1 Hydrogen 1.008 '0'",
                          "  line 44 (Technetium): there is no weight", "Kept 84 lines, rejected 34",
                          "   92 Uranium          238.03", "Weights from 1.008 to 238.03")
        self.assertRegex(printed, r"A text file as upload: refused \(.+\)\n$")
        result = self.run_program("--component", COMPONENT, SOURCE / "examples/read_upload.omn", "/nonexistent.xls")
        self.assertEqual(result.returncode, 1)
        self.assertIn("/nonexistent.xls can't be read", result.stderr)

    def test_example_a_template_is_filled_and_keeps_what_it_has(self):
        printed = self.run_example("fill_template.omn", self.folder.name)
        self.assert_lines(printed, "The template: Timesheet with 5 lines, sum SUM(C7:C11)", "Inserted 2 lines",
                          "Name: Inger Dahl, Week from: 2026-11-16",
                          "Mon 16th November Harbour map      8.0   61.50 C7*D7",
                          "Sat 21st November Proofs           4.0   55.00 C13*D13", "Hours:    SUM(C7:C13)",
                          "Amount:   SUM(E7:E13)", "Overtime: MAX(C14-40,0)")
        self.written("timesheet-week-47.xls")

    def test_example_two_books_are_compared(self):
        printed = self.run_example("compare_books.omn", self.folder.name)
        self.assert_lines(printed, "2225 cells compared, 6 differences", "sheet 1  F2     gone      '1' -> ''",
                          "sheet 1  C14    changed   'Aluminium' -> 'Aluminum'",
                          "sheet 1  C120   added     '' -> 'Ununennium'",
                          "sheet 2  B5     changed   '1903-04-12' -> '1903-04-13'",
                          "sheet 3         added     '' -> '1 rows'",
                          "differences.xls holds 6 lines of 5 columns, the last one: added")
        old, new = SOURCE / "examples/data/almanac.xls", self.written("almanac-changed.xls")
        back = self.run_example("compare_books.omn", self.folder.name, new, old)
        self.assert_lines(back, "sheet 1  C14    changed   'Aluminum' -> 'Aluminium'",
                          "sheet 3         gone      '1 rows' -> ''")
        same = self.run_example("compare_books.omn", self.folder.name, old, old)
        self.assert_lines(same, "2219 cells compared, 0 differences", "The books are the same.")
        self.written("compared-marked.xls")

    def test_example_an_invoice_with_a_picture_and_print_setup(self):
        printed = self.run_example("invoice.omn", self.folder.name)
        self.assert_lines(printed, "Picture 1 of the book stands at cell C1",
                          "  2 Tide table, northern harbours, 2027   18.50 A10*C10",
                          "Sum:        SUM(D10:D13) which is 390.70", "To be paid: D14+D15", "Due on 20th December 2026",
                          "Paper A4: YES margins 0.75 and 1 printed at 95 %")
        saved = self.written("invoice-2026-118.xls").read_bytes()
        texts = [text.encode("utf-16-le") for text in ("Thirty days, as agreed in May.", "Inger Dahl")]
        for part in ((SOURCE / "examples/data/logo.png").read_bytes(), *texts):
            self.assertEqual(saved.count(part), 1)
        result = self.run_program("--component", COMPONENT, SOURCE / "examples/invoice.omn", ".", "/nonexistent.png")
        self.assertEqual(result.returncode, 1)
        self.assertIn("/nonexistent.png can't be added: can't open file", result.stderr)

    def test_the_scripts_of_the_manual_print_what_the_manual_says(self):
        manual = (SOURCE / "docs/omnis-run.md").read_text(encoding="utf-8")
        samples = re.findall(r"```omnis\n(.*?)```\n(?:\nprints\n\n```text\n(.*?)```\n)?", manual, re.S)
        self.assertEqual(len(samples), manual.count("```omnis"))
        for script, printed in samples:
            result = self.run_script(script)
            self.assertEqual((result.returncode, result.stderr), (0, ""), script)
            self.assertEqual(result.stdout, printed, script)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
