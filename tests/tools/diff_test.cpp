#include "tests/tools/tool_runner.h"

namespace rubrica::test {
namespace {

class Diff : public ToolTest {
 protected:
  // Two books that are alike but for what the changes do to the second.
  template <class Change>
  ToolResult diffAfter(Change&& change, std::vector<std::string> options = {}) {
    for (const bool changed : {false, true}) {
      const tools::BookPtr book = newBook();
      Sheet& sheet = *book->getSheet(0);
      sheet.writeStr(0, 0, u"Tea");
      sheet.writeNum(0, 1, 2.5);
      sheet.writeFormulaNum(1, 1, u"B1*2", 5);
      sheet.writeBool(2, 0, true);
      sheet.setMerge(4, 4, 0, 2);
      if (changed) change(*book, sheet);
      save(*book, changed ? "b.xls" : "a.xls");
    }
    options.push_back(path("a.xls"));
    options.push_back(path("b.xls"));
    return runTool("rubrica-diff", options);
  }
};

TEST_F(Diff, EqualBooksGiveNoLineAndExitCode0) {
  const ToolResult result = diffAfter([](Book&, Sheet&) {});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "");
}

TEST_F(Diff, AChangedNumberIsToldWithBothValues) {
  const ToolResult result = diffAfter([](Book&, Sheet& sheet) { sheet.writeNum(0, 1, 3); });
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "Prices!B1: value: 2.5 -> 3\n");
}

TEST_F(Diff, TextAndNumberOfTheSameDigitsDiffer) {
  const ToolResult result = diffAfter([](Book&, Sheet& sheet) { sheet.writeStr(0, 1, u"2.5"); });
  EXPECT_EQ(result.out, "Prices!B1: value: 2.5 -> \"2.5\"\n");
}

TEST_F(Diff, AFormulaDiffersByItsTextAlsoWhereTheValueIsTheSame) {
  const ToolResult result = diffAfter([](Book&, Sheet& sheet) { sheet.writeFormulaNum(1, 1, u"B1+B1", 5); });
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "Prices!B2: formula: B1*2 -> B1+B1\n");
}

TEST_F(Diff, AFormulaThatBecameItsValueIsADifferenceOfTheFormulaAlone) {
  const ToolResult result = diffAfter([](Book&, Sheet& sheet) { sheet.writeNum(1, 1, 5); });
  EXPECT_EQ(result.out, "Prices!B2: formula: B1*2 -> nothing\n");
}

TEST_F(Diff, AFormatDiffersPropertyByProperty) {
  const ToolResult result = diffAfter([](Book& book, Sheet& sheet) {
    Font* font = book.addFont(sheet.cellFormat(0, 0)->font());
    font->setBold(true);
    Format* format = book.addFormat(sheet.cellFormat(0, 0));
    format->setFont(font);
    format->setNumFormat(book.addCustomNumFormat(u"0.000"));
    format->setBorderLeft(BorderStyle::thick);
    format->setBorderLeftColor(color::red);
    sheet.setCellFormat(0, 1, format);
  });
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out,
            "Prices!B1: number format: General -> 0.000\n"
            "Prices!B1: bold: no -> yes\n"
            "Prices!B1: left border: none -> thick #FF0000\n");
}

TEST_F(Diff, TwoFormatsThatLookAlikeAreNoDifference) {
  const ToolResult result =
      diffAfter([](Book& book, Sheet& sheet) { sheet.setCellFormat(0, 1, book.addFormat(sheet.cellFormat(0, 1))); });
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.exitCode, 0);
}

TEST_F(Diff, ACellInOneBookAloneIsFoundAlsoOutsideTheOthersUsedRange) {
  const ToolResult result = diffAfter([](Book&, Sheet& sheet) { sheet.writeStr(99, 30, u"far"); });
  EXPECT_EQ(result.out, "Prices!AE100: value: nothing -> \"far\"\n");
}

TEST_F(Diff, OnlyTheRowsThatDifferAreTold) {
  const ToolResult result = diffAfter([](Book&, Sheet& sheet) {
    for (int row = 20; row < 23; ++row) sheet.setRowHidden(row, true);
    sheet.setRow(30, 40);
  });
  EXPECT_EQ(result.out,
            "Prices: height of rows 21-23: 12.75 -> 12.75 hidden\n"
            "Prices: height of row 31: 12.75 -> 40\n");
}

TEST_F(Diff, SettingsOfTheSheetAreCompared) {
  const ToolResult result = diffAfter([](Book&, Sheet& sheet) {
    sheet.delMergeByIndex(0);
    sheet.setCol(2, 2, 20);
    sheet.setLandscape();
    sheet.addHyperlink(u"https://example.org", 0, 0, 0, 0);
    sheet.setNamedRange(u"Total", 1, 1, 1, 1);
  });
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_NE(result.out.find("Prices: merge A5:C5: merged -> nothing\n"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("Prices: width of column C: 8 -> 20\n"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("Prices: landscape: no -> yes\n"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("Prices: hyperlink A1: nothing -> https://example.org\n"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("Prices: name Total of the book: nothing -> B2\n"), std::string::npos) << result.out;
}

TEST_F(Diff, SheetsAreMatchedByName) {
  const ToolResult result = diffAfter([](Book& book, Sheet&) { book.insertSheet(0, u"Cover"); });
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out,
            "sheet \"Cover\": only in the second book\n"
            "sheet \"Prices\": position: 1 -> 2\n");
}

TEST_F(Diff, OnlyAndIgnoreChooseSubjects) {
  const auto change = [](Book&, Sheet& sheet) {
    sheet.writeNum(0, 1, 3);
    sheet.delMergeByIndex(0);
  };
  EXPECT_EQ(diffAfter(change, {"--only", "merges"}).out, "Prices: merge A5:C5: merged -> nothing\n");
  EXPECT_EQ(diffAfter(change, {"--ignore", "merges"}).out, "Prices!B1: value: 2.5 -> 3\n");
  EXPECT_EQ(diffAfter(change, {"--only=formulas,links"}).exitCode, 0);
}

TEST_F(Diff, ToleranceIsRelative) {
  const auto change = [](Book&, Sheet& sheet) { sheet.writeNum(0, 1, 2.5000001); };
  EXPECT_EQ(diffAfter(change, {"--tolerance", "1e-6"}).exitCode, 0);
  EXPECT_EQ(diffAfter(change, {"--tolerance", "1e-9"}).exitCode, 1);
}

TEST_F(Diff, MaxCountsTheRestAndQuietPrintsNothing) {
  const auto change = [](Book&, Sheet& sheet) {
    for (int row = 0; row < 5; ++row) sheet.writeNum(row, 7, row);
  };
  EXPECT_EQ(diffAfter(change, {"--max", "1"}).out, "Prices!H1: value: nothing -> 0\n... and 4 more\n");
  const ToolResult quiet = diffAfter(change, {"--quiet"});
  EXPECT_EQ(quiet.out, "");
  EXPECT_EQ(quiet.exitCode, 1);
}

TEST_F(Diff, WhatCantBeReadIsExitCode2WithTheReason) {
  const std::string book = save(*newBook(), "a.xls");
  const ToolResult missing = runTool("rubrica-diff", {book, path("nowhere.xls")});
  EXPECT_EQ(missing.exitCode, 2);
  EXPECT_EQ(missing.err, "rubrica-diff: " + path("nowhere.xls") + ": can't open file for reading\n");
  writeText(path("bad.xls"), "no workbook");
  EXPECT_EQ(runTool("rubrica-diff", {path("bad.xls"), book}).exitCode, 2);
}

TEST_F(Diff, WrongCallsAreExitCode2) {
  const std::string book = save(*newBook(), "a.xls");
  const std::vector<std::vector<std::string>> calls = {
      {},
      {book},
      {book, book, book},
      {"--frob", book, book},
      {"--only", "colours", book, book},
      {"--max", "-1", book, book},
      {"--max", "x", book, book},
      {"--tolerance", "near", book, book},
      {"--ignore", "values,formulas,formats,comments,merges,links,names,sizes,pictures,page,view,protection", book,
       book}};
  for (const auto& words : calls) {
    const ToolResult result = runTool("rubrica-diff", words);
    EXPECT_EQ(result.exitCode, 2) << testing::PrintToString(words);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find("rubrica-diff"), std::string::npos);
  }
}

}  // namespace
}  // namespace rubrica::test
