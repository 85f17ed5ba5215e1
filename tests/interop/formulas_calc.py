#!/usr/bin/env python3
"""LibreOffice recalculates a book that this library wrote; every value has to be the one computed here.

  formulas_calc.py FORMULA_PROBE

The formulas stand without cached values. Answers 77 where LibreOffice isn't installed.
"""
import datetime
import math
import os
import statistics
import subprocess
import sys
import tempfile

import libreoffice

A = [3, 1.5, -4, 10, 7.25, 0, 2, 8, -1, 6]  # Data!A1:A10
B = ["apple", "Pear", "fig", "apple pie", ""]  # Data!B1:B4, B5 is empty
C = [True, False, True]  # Data!C1:C3
D = [1, 2, 3, 4, 5]  # Data!D1:D5, ascending
E = [10.5, 20.25, 30, 40.75, 50]  # Data!E1:E5
OTHER = [[1, 2], [3, 4], [5, 6]]  # 'Other sheet'!A1:B3


def serial(year, month, day):
    return (datetime.date(year, month, day) - datetime.date(1899, 12, 30)).days


def payment(rate, periods, present):
    return -present * rate / (1 - (1 + rate) ** -periods)


def net_present(rate, values):
    return sum(value / (1 + rate) ** (i + 1) for i, value in enumerate(values))


rate, periods, present = 0.05 / 12, 60, 20000
# (formula on the sheet "Calc", value): each is written to a row of its own.
CASES = [
    # operators and their order
    ("1+2*3", 7), ("(1+2)*3", 9), ("-2^2", 4), ("2^3^2", 64), ("10%", 0.1), ("50%*4", 2), ("7-3-2", 2),
    ("100/5/2", 10), ("2*-3", -6), ("--5", 5), ("+4", 4), ("1+-+2", -1), ("\"a\"&\"b\"", "ab"),
    ("1&2", "12"), ("1+2&3", "33"), ("2>1", True), ("2<1", False), ("2>=2", True), ("2<=1", False),
    ("1=1", True), ("1<>1", False), ("\"a\"=\"A\"", True), ("1+1=2", True), ("2*(3+4)-5", 9),
    ("((1+2)*(3+4))^2", 441), ("0.5", 0.5), ("65535", 65535), ("65536", 65536), ("123456.789", 123456.789),
    ("\"it says \"\"hi\"\"\"", 'it says "hi"'), ("\"\u00e4\u00f6\u20ac\"", "\u00e4\u00f6\u20ac"),
    ("3-1*2^2%", 3 - 2 ** 0.02), ("\"x\"&1+1", "x2"), ("10-4/2", 8), ("-(3)", -3),
    # references of every kind
    ("Data!A1", A[0]), ("Data!$A$2", A[1]), ("Data!A$3", A[2]), ("Data!$A4", A[3]), ("Data!A1+Data!A2", A[0] + A[1]),
    ("SUM(Data!A1:A10)", sum(A)), ("SUM(Data!$A$1:$A$10)", sum(A)), ("SUM(Data!A1,Data!A3:A4,5)", 3 - 4 + 10 + 5),
    ("'Other sheet'!B2", 4), ("SUM('Other sheet'!A1:B3)", 21), ("SUM('It''s'!A1:A2)", 5),
    ("SUM('First:Last'!A1)", 111), ("Rates", 0.19), ("Rates*100", 19), ("SUM(Block)", sum(D) + sum(E)),
    ("SUM(Block)*Rates", (sum(D) + sum(E)) * 0.19), ("ROWS(Block)", 5), ("COLUMNS(Block)", 2), ("H1", 42),
    ("SUM(H1:I2)", 42 + 1 + 2 + 3), ("$H$1+I$2", 45), ("SUM(H1:H2)+I1", 42 + 2 + 1),
    # sums and statistics
    ("AVERAGE(Data!A1:A10)", statistics.mean(A)), ("MIN(Data!A1:A10)", min(A)), ("MAX(Data!A1:A10)", max(A)),
    ("COUNT(Data!A1:B10)", 10), ("COUNTA(Data!B1:B5)", 4), ("COUNTBLANK(Data!B1:B5)", 1),
    ("COUNTIF(Data!A1:A10,\">2\")", sum(a > 2 for a in A)), ("SUMIF(Data!D1:D5,\">2\",Data!E1:E5)", 120.75),
    ("PRODUCT(Data!D1:D5)", 120), ("MEDIAN(Data!A1:A10)", statistics.median(A)),
    ("STDEV(Data!A1:A10)", statistics.stdev(A)), ("STDEVP(Data!A1:A10)", statistics.pstdev(A)),
    ("VAR(Data!A1:A10)", statistics.variance(A)), ("VARP(Data!A1:A10)", statistics.pvariance(A)),
    ("LARGE(Data!A1:A10,2)", sorted(A)[-2]), ("SMALL(Data!A1:A10,3)", sorted(A)[2]),
    ("RANK(8,Data!A1:A10)", 2), ("SUMSQ(Data!D1:D5)", 55), ("GEOMEAN(Data!D1:D5)", 120 ** 0.2),
    ("HARMEAN(Data!D1:D5)", 5 / sum(1 / d for d in D)), ("AVEDEV(Data!D1:D5)", 1.2), ("DEVSQ(Data!D1:D5)", 10),
    ("MODE(1,2,2,3)", 2), ("PERCENTILE(Data!D1:D5,0.5)", 3), ("QUARTILE(Data!D1:D5,1)", 2),
    ("CORREL(Data!D1:D5,Data!E1:E5)", statistics.correlation(D, E)),
    ("SLOPE(Data!E1:E5,Data!D1:D5)", statistics.linear_regression(D, E).slope),
    ("INTERCEPT(Data!E1:E5,Data!D1:D5)", statistics.linear_regression(D, E).intercept),
    ("SUMPRODUCT(Data!D1:D5,Data!E1:E5)", sum(d * e for d, e in zip(D, E))),
    ("SUMPRODUCT((Data!D1:D5>2)*Data!E1:E5)", 120.75), ("SUMPRODUCT(H1:H2,I1:I2)", 42 + 6),
    ("SUMPRODUCT((H1:H2>1)*(I1:I2))", 4), ("SUBTOTAL(9,Data!D1:D5)", 15), ("TRIMMEAN(Data!D1:D5,0.4)", 3),
    # mathematics
    ("ABS(-3.5)", 3.5), ("INT(-3.5)", -4), ("TRUNC(-3.5)", -3), ("ROUND(2.345,2)", 2.35), ("ROUNDUP(2.341,2)", 2.35),
    ("ROUNDDOWN(2.349,2)", 2.34), ("MOD(-7,3)", 2), ("SIGN(-9)", -1), ("SQRT(2)", math.sqrt(2)),
    ("EXP(1)", math.e), ("LN(10)", math.log(10)), ("LOG10(1000)", 3), ("LOG(8,2)", 3), ("LOG(100)", 2),
    ("PI()", math.pi), ("SIN(1)", math.sin(1)), ("COS(1)", math.cos(1)), ("TAN(1)", math.tan(1)),
    ("ASIN(0.5)", math.asin(0.5)), ("ACOS(0.5)", math.acos(0.5)), ("ATAN(2)", math.atan(2)),
    ("ATAN2(1,2)", math.atan2(2, 1)), ("SINH(1)", math.sinh(1)), ("COSH(1)", math.cosh(1)),
    ("TANH(1)", math.tanh(1)), ("FACT(6)", 720), ("COMBIN(6,2)", 15), ("PERMUT(6,2)", 30), ("EVEN(3)", 4),
    ("ODD(4)", 5), ("CEILING(2.1,0.5)", 2.5), ("FLOOR(2.9,0.5)", 2.5), ("DEGREES(PI())", 180),
    ("RADIANS(180)", math.pi), ("POWER(2,10)", 1024), ("ROMAN(14)", "XIV"),
    # logic and information
    ("IF(1>2,\"yes\",\"no\")", "no"), ("IF(Data!A1>2,Data!A1,0)", 3), ("AND(1,2>1)", True), ("OR(FALSE,0,1=1)", True),
    ("NOT(FALSE())", True), ("TRUE()", True), ("TRUE+1", 2), ("IF(TRUE,1,2)", 1), ("ISNUMBER(Data!A1)", True),
    ("ISTEXT(Data!B1)", True), ("ISBLANK(Data!B5)", True), ("ISLOGICAL(TRUE())", True), ("ISERROR(1/0)", True),
    ("ISNA(NA())", True), ("N(Data!C1)", 1), ("T(Data!B1)", "apple"), ("TYPE(\"a\")", 2), ("ISREF(Data!A1)", True),
    ("ISERR(\"a\"*1)", True), ("ERROR.TYPE(1/0)", 2), ("CHOOSE(2,\"a\",\"b\",\"c\")", "b"),
    ("IF(AND(Data!A1>0,OR(Data!A2>5,Data!A4>5)),SUM(Data!A1:A4),-1)", 10.5),
    # texts
    ("LEN(Data!B1)", 5), ("LEFT(\"spread\",3)", "spr"), ("RIGHT(\"sheet\",2)", "et"), ("MID(\"workbook\",5,4)", "book"),
    ("UPPER(Data!B2)", "PEAR"), ("LOWER(Data!B2)", "pear"), ("PROPER(\"two words\")", "Two Words"),
    ("TRIM(\"  a   b \")", "a b"), ("CONCATENATE(\"a\",1,\"b\")", "a1b"), ("REPT(\"ab\",3)", "ababab"),
    ("FIND(\"p\",Data!B1)", 2), ("SEARCH(\"P\",\"apple\")", 2), ("REPLACE(\"abcdef\",2,3,\"X\")", "aXef"),
    ("SUBSTITUTE(\"aXbXc\",\"X\",\"-\")", "a-b-c"), ("SUBSTITUTE(\"aXbXc\",\"X\",\"-\",2)", "aXb-c"),
    ("EXACT(\"a\",\"A\")", False), ("CODE(\"A\")", 65), ("CHAR(66)", "B"), ("VALUE(\"12.5\")", 12.5),
    ("TEXT(1234.5,\"0.00\")", "1234.50"), ("FIXED(1234.567,1)", "1,234.6"), ("CLEAN(\"ab\")", "ab"),
    ("LEFT(\"a,b;c\",4)", "a,b;"), ("LEN(\"a)(b\")", 4),
    # looking up
    ("VLOOKUP(3,Data!D1:E5,2,FALSE)", 30), ("VLOOKUP(3.5,Data!D1:E5,2)", 30), ("HLOOKUP(2,'Other sheet'!A1:B3,3)", 6),
    ("MATCH(4,Data!D1:D5,0)", 4), ("INDEX(Data!A1:E5,2,5)", 20.25), ("INDEX(Data!E1:E5,MATCH(4,Data!D1:D5,0))", 40.75),
    ("LOOKUP(3,Data!D1:D5,Data!E1:E5)", 30), ("ROW(Data!A7)", 7), ("COLUMN(Data!D1)", 4), ("ROWS(Data!A1:B5)", 5),
    ("COLUMNS(Data!A1:B5)", 2), ("ADDRESS(2,3)", "$C$2"), ("INDIRECT(\"H1\")", 42), ("OFFSET(H1,1,1)", 3),
    ("SUM(OFFSET(Data!A1,0,0,3,1))", 0.5), ("AREAS(Data!A1:B2)", 1), ("SUM(INDEX(Data!A1:A10,0,1))", sum(A)),
    # dates
    ("DATE(2024,2,29)", serial(2024, 2, 29)), ("YEAR(DATE(2024,2,29))", 2024), ("MONTH(DATE(2024,2,29))", 2),
    ("DAY(DATE(2024,2,29))", 29), ("WEEKDAY(DATE(2024,2,29))", 5), ("TIME(12,0,0)", 0.5), ("HOUR(0.75)", 18),
    ("MINUTE(TIME(1,2,3))", 2), ("SECOND(TIME(1,2,3))", 3), ("DAYS360(DATE(2024,1,1),DATE(2024,3,1))", 60),
    ("DATEVALUE(\"2024-02-29\")", serial(2024, 2, 29)), ("IF(TODAY()>DATE(2020,1,1),1,0)", 1),
    ("IF(NOW()-TODAY()<1,1,0)", 1),
    # money
    ("PMT(0.05/12,60,20000)", payment(rate, periods, present)),
    ("FV(0.05,10,-100)", 100 * (1.05 ** 10 - 1) / 0.05), ("PV(0.05,10,-100)", 100 * (1 - 1.05 ** -10) / 0.05),
    ("NPER(0.05,-100,772.173492918482)", 10), ("RATE(10,-100,772.173492918482)", 0.05),
    ("NPV(0.1,Data!D1:D5)", net_present(0.1, D)), ("SLN(1000,100,9)", 100), ("SYD(1000,100,9,1)", 180),
    ("IPMT(0.05/12,1,60,20000)", -present * rate), ("DDB(1000,100,10,1)", 200),
    # long and deep
    ("+".join("1" for _ in range(200)), 200), ("(" * 60 + "7" + ")" * 60, 7),
    ("SUM(" + ",".join(str(i) for i in range(1, 31)) + ")", 465),
    ("".join(f"IF(Data!A1={i}," for i in range(-3, 3)) + "0" + ",1)" * 6, 1),
]


def lines():
    yield "sheet\tData"
    for col, values in enumerate([A, B, C, D, E]):
        for row, value in enumerate(values):
            kind = "bool" if isinstance(value, bool) else "text" if isinstance(value, str) else "num"
            if value != "":
                yield f"{kind}\t{row}\t{col}\t{int(value) if kind == 'bool' else value}"
    yield "name\tBlock\t0\t4\t3\t4"
    yield "sheet\tOther sheet"
    for row, values in enumerate(OTHER):
        for col, value in enumerate(values):
            yield f"num\t{row}\t{col}\t{value}"
    yield from ["sheet\tIt's", "num\t0\t0\t2", "num\t1\t0\t3", "num\t5\t5\t0.19", "name\tRates\t5\t5\t5\t5"]
    for sheet, value in (("First", 1), ("Middle", 10), ("Last", 100)):
        yield from [f"sheet\t{sheet}", f"num\t0\t0\t{value}"]
    yield "sheet\tCalc"
    for place, value in (("0\t7", 42), ("0\t8", 1), ("1\t7", 2), ("1\t8", 3)):
        yield f"num\t{place}\t{value}"
    for row, (formula, _) in enumerate(CASES):
        yield f"formula\t{row}\t0\t{formula}"


def agrees(expected, kind, text):
    if isinstance(expected, bool):
        return kind in "bn" and text == str(int(expected))  # a comparison without a boolean format is a number there
    if isinstance(expected, str):
        return kind == "str" and (text or "") == expected
    return kind == "n" and text is not None and math.isclose(float(text), expected, rel_tol=1e-9, abs_tol=1e-9)


def main():
    if libreoffice.program() is None:
        print("skipped: soffice isn't installed")
        return libreoffice.SKIPPED
    with tempfile.TemporaryDirectory(prefix="formulas-") as directory:
        book = os.path.join(directory, "calc.xls")
        subprocess.run([sys.argv[1], "write", book], input="\n".join(lines()).encode(), check=True)
        converted = libreoffice.convert(book, directory)
        if converted is None:
            print("LibreOffice gave no file")
            return 1
        cells = libreoffice.Workbook(converted).cells["Calc"]
    wrong = 0
    for row, (formula, expected) in enumerate(CASES):
        kind, text, theirs = cells.get((row, 0), ("none", None, None))
        if not agrees(expected, kind, text):
            wrong += 1
            print(f"{formula}: expected {expected!r}, LibreOffice has {text!r} ({kind}) for {theirs}")
    print(f"{len(CASES) - wrong} of {len(CASES)} formulas have the value expected")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
