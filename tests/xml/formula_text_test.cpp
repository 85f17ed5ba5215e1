#include "xml/formula_text.h"

#include <gtest/gtest.h>

namespace rubrica {
namespace {

TEST(FormulaText, RelativeReferencesMoveAndAbsoluteOnesStay) {
  EXPECT_EQ(shiftReferences("A1+$A1+A$1+$A$1", 2, 1), "B3+$A3+B$1+$A$1");
  EXPECT_EQ(shiftReferences("SUM(a1:b2,Sheet1!C3)", 1, 1), "SUM(B2:C3,Sheet1!D4)");
  EXPECT_EQ(shiftReferences("SUM(A:B)+SUM($A:B)+SUM(1:3)+SUM($1:3)", 2, 1), "SUM(B:C)+SUM($A:C)+SUM(3:5)+SUM($1:5)");
  EXPECT_EQ(shiftReferences("Z1+AZ1+ZZ9", 0, 1), "AA1+BA1+AAA9");
  EXPECT_EQ(shiftReferences("A1", 0, 0), "A1");
  EXPECT_EQ(shiftReferences("", 1, 1), "");
}

TEST(FormulaText, ReferencesThatLeaveTheSheetAreLost) {
  EXPECT_EQ(shiftReferences("A1+B2", -1, 0), "#REF!+B1");
  EXPECT_EQ(shiftReferences("A1", 0, -1), "#REF!");
  EXPECT_EQ(shiftReferences("A1048576", 1, 0), "#REF!");
  EXPECT_EQ(shiftReferences("XFD1", 0, 1), "#REF!");
  EXPECT_EQ(shiftReferences("SUM(A:B)", 0, -1), "SUM(#REF!)");
  EXPECT_EQ(shiftReferences("XFC1048575", 1, 1), "XFD1048576");
}

TEST(FormulaText, WhatOnlyLooksLikeAReferenceIsLeftAlone) {
  for (const char* formula : {"LOG10(5)",
                              "\"A1\"",
                              "\"say \"\"A1\"\"\"",
                              "'A1'!$B$2",
                              "A1!$B$2",
                              "'it''s A1'!$B$2",
                              "A1B",
                              "_A1",
                              "A1.B2",
                              "Rate_A1",
                              "A1_",
                              "1E5",
                              "1.5E+10",
                              "Table1[A1]",
                              "Table1[[#All],[A1]]",
                              "Table1[a'[A1]",
                              "[1]!name",
                              "A0",
                              "A1048577",
                              "XFE1",
                              "AAAA1",
                              "TRUE",
                              "#REF!",
                              "#N/A",
                              "#DIV/0!",
                              "{1,2;3,4}",
                              "\xC3\xA9"
                              "A1",
                              "A1\xC3\xA9"}) {
    EXPECT_EQ(shiftReferences(formula, 1, 1), formula);
  }
}

TEST(FormulaText, ReferencesBesideOtherThingsAreFound) {
  EXPECT_EQ(shiftReferences("-A1%^B2&\"x\"&C3", 1, 0), "-A2%^B3&\"x\"&C4");
  EXPECT_EQ(shiftReferences("[1]Sheet1!A1+'[b.xlsx]S 1'!A1", 1, 0), "[1]Sheet1!A2+'[b.xlsx]S 1'!A2");
  EXPECT_EQ(shiftReferences("[1]A1!A1", 1, 0), "[1]A1!A2");
  EXPECT_EQ(shiftReferences("Sheet1:Sheet3!A1", 1, 0), "Sheet1:Sheet3!A2");
  EXPECT_EQ(shiftReferences("IF(A1>1E5,A1#,OFFSET(A1,1,1):B1)", 1, 0), "IF(A2>1E5,A2#,OFFSET(A2,1,1):B2)");
  EXPECT_EQ(shiftReferences("A1 B1", 1, 0), "A2 B2");
  EXPECT_EQ(shiftReferences("A1:A2:A3", 1, 0), "A2:A3:A4");
}

TEST(FormulaText, UnclosedQuotesAndBracketsReachToTheEnd) {
  EXPECT_EQ(shiftReferences("A1&\"A1", 1, 0), "A2&\"A1");
  EXPECT_EQ(shiftReferences("A1&'A1", 1, 0), "A2&'A1");
  EXPECT_EQ(shiftReferences("A1&[[A1]", 1, 0), "A2&[[A1]");
  EXPECT_EQ(shiftReferences("T[a'", 1, 0), "T[a'");
}

TEST(FormulaText, TheOtherStyleOfReferences) {
  const struct {
    const char* a1;
    const char* r1c1;
  } kPairs[] = {
      {"C5", "RC"},
      {"$C$5", "R5C3"},
      {"B4", "R[-1]C[-1]"},
      {"$A6", "R[1]C1"},
      {"D$1", "R1C[1]"},
      {"SUM(B:C)", "SUM(C[-1]:C)"},
      {"SUM($B:$B)", "SUM(C2)"},
      {"SUM(C:C)", "SUM(C)"},
      {"SUM(5:5)", "SUM(R)"},
      {"SUM($1:$3)", "SUM(R1:R3)"},
      {"SUM(4:6)", "SUM(R[-1]:R[1])"},
      {"SUM(A1:B2)", "SUM(R[-4]C[-2]:R[-3]C[-1])"},
      {"\"C5\"&Sheet1!C5", "\"C5\"&Sheet1!RC"},
      {"LOG10(C5)", "LOG10(RC)"},
      {"Table1[C5]", "Table1[C5]"},
  };
  for (const auto& [a1, r1c1] : kPairs) {
    EXPECT_EQ(r1c1FromA1(a1, 4, 2), r1c1);
    EXPECT_EQ(a1FromR1c1(r1c1, 4, 2), a1);
  }
}

TEST(FormulaText, R1c1IsReadInEitherCaseAndWithinTheSheet) {
  EXPECT_EQ(a1FromR1c1("r[1]c[-1]+rc", 4, 2), "B6+C5");
  EXPECT_EQ(a1FromR1c1("R[-5]C", 4, 2), "#REF!");
  EXPECT_EQ(a1FromR1c1("R1048576C16384", 0, 0), "$XFD$1048576");
  for (const char* formula : {"R1048577C1", "R1C16385", "R0C1", "ROW()", "COUNT(1)", "\"RC\"", "'RC'!x", "RATE",
                              "R1C1x", "RC(", "R[C", "R[1", "R[x]C", "C[", "Revenue", "Cost"}) {
    EXPECT_EQ(a1FromR1c1(formula, 0, 0), formula);
  }
}

}  // namespace
}  // namespace rubrica
