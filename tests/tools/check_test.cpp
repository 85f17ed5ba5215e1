#include <fstream>

#include "tests/tools/edited_stream.h"
#include "tests/tools/tool_runner.h"
#include "tools/book_complaints.h"

namespace rubrica::test {
namespace {

class Check : public ToolTest {
 protected:
  std::string bookWithCells() {
    const tools::BookPtr book = newBook();
    Sheet& sheet = *book->getSheet(0);
    sheet.writeStr(0, 0, u"Tea");
    sheet.writeNum(0, 1, 0.1);
    sheet.writeFormulaNum(3, 2, u"B1*2", 0.2);
    sheet.setMerge(4, 5, 0, 2);
    return save(*book, "book.xls");
  }
  ToolResult check(const std::string& file, std::vector<std::string> options = {}) {
    options.push_back(file);
    return runTool("rubrica-check", options);
  }
  // The findings alone.
  std::string findingsAfter(const std::function<void(EditableRecords&)>& edit) {
    const std::string file = bookWithCells();
    editRecords(file, edit);
    const ToolResult result = check(file, {"--quiet"});
    EXPECT_EQ(result.exitCode, result.out.empty() ? 0 : 1);
    EXPECT_EQ(result.err, "");
    return result.out;
  }
  static bool has(const ToolResult& result, const std::string& line) {
    return ("\n" + result.out).find("\n" + line + "\n") != std::string::npos;
  }
};

TEST_F(Check, HeadersThatReadersCantHoldAreToldToTheCharacter) {
  const tools::BookPtr book = newBook();
  book->getSheet(0)->setHeader(std::u16string(255, u'h').c_str());
  book->getSheet(0)->setFooter(std::u16string(256, u'f').c_str());
  const ToolResult result = check(save(*book, "book.xls"), {"--quiet"});
  EXPECT_EQ(result.out, "complaint  sheet \"Prices\": the footer has more than 255 characters\n");
  EXPECT_EQ(result.exitCode, 1);
}

TEST_F(Check, AFileThatOnlyBeginsAsAPackageIsNoWorkbook) {
  const std::string file = path("cut.xlsx");
  std::ofstream(file, std::ios::binary) << "PK\3\4 and nothing more";
  const ToolResult result = check(file, {"--quiet"});
  if (tools::createBook("xlsx") == nullptr) {
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, "rubrica-check: " + file + ": this version reads no .xlsx files\n");
  } else {
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.starts_with("damaged    the book can't be loaded: ")) << result.out;
  }
}

TEST_F(Check, ABookOfOursHasNoFindings) {
  const std::string file = bookWithCells();
  const ToolResult result = check(file);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_TRUE(has(result, file + ": BIFF8 workbook, 1 sheet")) << result.out;
  EXPECT_TRUE(has(result, "known      BoundSheet8 1")) << result.out;
  EXPECT_TRUE(has(result, "known      LabelSst 1")) << result.out;
  for (const char* word : {"\nkept", "\ndropped", "\nchanged", "\ndamaged", "\ncomplaint"}) {
    EXPECT_EQ(result.out.find(word), std::string::npos) << result.out;
  }
  EXPECT_EQ(check(file, {"--quiet"}).out, "");
}

TEST_F(Check, RewrittenRecordsAreTheSameFile) {
  const std::string file = bookWithCells(), before = readText(file);
  editRecords(file, [](EditableRecords&) {});
  EXPECT_EQ(readText(file), before);
}

TEST_F(Check, AnUnknownRecordIsKeptAndPrinterSettingsAreDropped) {
  const std::string file = bookWithCells();
  constexpr std::uint16_t kUnknown = 0x7777;
  editRecords(file, [](EditableRecords& records) {
    addToLastSheet(records, recordOf(kUnknown, {1, 2, 3}));
    addToLastSheet(records, recordOf(kUnknown, {4}));
    records.insert(find(records, id::kWindow2), recordOf(id::kPrinterSettings, {0, 0}));
  });
  const ToolResult result = check(file);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_TRUE(has(result, "kept       0x7777 2")) << result.out;
  EXPECT_TRUE(has(result, "dropped    Pls 1")) << result.out;
}

TEST_F(Check, ConditionalFormatsStandApart) {
  const std::string file = bookWithCells();
  constexpr std::uint16_t kCondFmt = 432;
  editRecords(file, [](EditableRecords& records) {
    addToLastSheet(records, recordOf(kCondFmt, {0, 0, 0, 0, 0, 0, 0}));
    addToLastSheet(records, recordOf(kCondFmt, {0, 0, 0, 0, 0, 0, 0}));
  });
  EXPECT_TRUE(has(check(file), "apart      2 conditional formats"));
}

TEST_F(Check, TextsWithSeveralFontsAreCountedAlsoAcrossRecords) {
  const tools::BookPtr book = newBook();
  const std::u16string filler(5000, u'x');
  book->getSheet(0)->writeStr(0, 0, filler.c_str());
  book->getSheet(0)->writeStr(1, 0, (filler + u"ü").c_str());
  book->getSheet(0)->writeStr(2, 0, u"plain");
  const std::string file = save(*book, "book.xls");
  EXPECT_EQ(check(file).out.find("apart"), std::string::npos);
  // Makes "plain", in the last record of the table, a text of one run: flags, number of runs, characters, runs.
  editRecords(file, [](EditableRecords& records) {
    constexpr std::byte kWideAndRich{9};
    const std::u16string plain = u"plain";
    const auto pattern = std::as_bytes(std::span(plain));
    for (EditableRecord& record : records) {
      if (record.recordId != id::kContinue) continue;
      std::vector<std::byte>& body = record.body;
      const auto text = std::search(body.begin(), body.end(), pattern.begin(), pattern.end());
      if (text == body.end()) continue;
      *(text - 1) = kWideAndRich;
      const std::byte runs[] = {std::byte{1}, std::byte{0}};
      body.insert(text, std::begin(runs), std::end(runs));
      body.insert(body.end(), 4, std::byte{0});
    }
  });
  EXPECT_TRUE(has(check(file), "apart      1 text with several fonts")) << check(file).out;
}

TEST_F(Check, AFileThatIsCutOffIsDamaged) {
  const std::string file = bookWithCells();
  const std::string bytes = readText(file);
  writeText(file, bytes.substr(0, 1000));
  const ToolResult result = check(file);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_NE(result.out.find("\ndamaged    "), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("no workbook that can be loaded"), std::string::npos);
}

TEST_F(Check, ARecordOfId0AndOnePastTheEndAreDamage) {
  EXPECT_NE(findingsAfter([](EditableRecords& records) {
              addToLastSheet(records, recordOf(0, {0}));
            }).find("damaged    there is a record of id 0 at offset "),
            std::string::npos);
  EXPECT_NE(findingsAfter([](EditableRecords& records) { records.pop_back(); }).find("damaged    "), std::string::npos);
}

TEST_F(Check, AWrongSizeOfAKnownRecordIsDamage) {
  EXPECT_EQ(findingsAfter([](EditableRecords& records) { find(records, id::kGuts)->body.pop_back(); }).substr(0, 61),
            "damaged    the book can't be loaded: Guts size is incorrect\n");
}

TEST_F(Check, ASheetThatIsNotWhereTheBookSaysIsAComplaint) {
  const std::string findings =
      findingsAfter([](EditableRecords& records) { find(records, id::kBoundSheet)->setWord(0, 77); });
  EXPECT_NE(findings.find("says that its sheet is at offset 77, where none begins\n"), std::string::npos) << findings;
}

TEST_F(Check, RecordsOutOfOrderAreAComplaint) {
  const std::string findings = findingsAfter([](EditableRecords& records) {
    const auto window = find(records, id::kWindow2);
    const EditableRecord moved = *window;
    records.erase(window);
    addToLastSheet(records, moved);
  });
  EXPECT_NE(findings.find("complaint  Window2 at offset "), std::string::npos) << findings;
  EXPECT_NE(findings.find(" comes too late: behind MergeCells\n"), std::string::npos) << findings;
}

TEST_F(Check, IndexesThatLeadNowhereAreComplaints) {
  const std::string xf = findingsAfter([](EditableRecords& records) { find(records, id::kNumber)->setWord(4, 999); });
  EXPECT_NE(xf.find("complaint  Number at offset "), std::string::npos) << xf;
  EXPECT_NE(xf.find(" names a format that there isn't\n"), std::string::npos) << xf;
  const std::string text = findingsAfter([](EditableRecords& records) { find(records, id::kLabelSst)->setWord(6, 1); });
  EXPECT_NE(text.find(" names a shared string that there isn't\n"), std::string::npos) << text;
  const std::string font = findingsAfter([](EditableRecords& records) { find(records, id::kXf)->setWord(0, 4); });
  EXPECT_NE(font.find(" names a font that there isn't\n"), std::string::npos) << font;
  const std::string format = findingsAfter([](EditableRecords& records) { find(records, id::kXf)->setWord(2, 200); });
  EXPECT_NE(format.find(" names a number format that there isn't\n"), std::string::npos) << format;
}

TEST_F(Check, CellsOutsideTheStatedDimensionsAreAComplaint) {
  const std::string findings =
      findingsAfter([](EditableRecords& records) { find(records, id::kDimensions)->setWord(4, 2); });
  EXPECT_NE(findings.find("leaves out cells: they are in A1:C6\n"), std::string::npos) << findings;
}

TEST_F(Check, OverlappingMergesAreAComplaint) {
  const std::string findings = findingsAfter([](EditableRecords& records) {
    records.insert(find(records, id::kMergeCells), recordOf(id::kMergeCells, {1, 5, 6, 2, 3}));
  });
  EXPECT_EQ(findings, "complaint  sheet \"Prices\": the merged ranges A5:C6 and C6:D7 overlap\n");
}

TEST_F(Check, BadSheetNamesAreComplaints) {
  const std::string findings = findingsAfter([](EditableRecords& records) {
    EditableRecord& sheet = *find(records, id::kBoundSheet);
    sheet.setWord(sheet.body.size() - 2, u'?');
  });
  EXPECT_EQ(findings, "complaint  sheet \"Price?\": a sheet name can't hold \"?\"\n");
}

TEST(SheetNameComplaint, KnowsTheRulesOfSheetNames) {
  EXPECT_EQ(tools::sheetNameComplaint(u"Prices 2026!"), "");
  EXPECT_EQ(tools::sheetNameComplaint(std::u16string(31, u'x')), "");
  EXPECT_NE(tools::sheetNameComplaint(std::u16string(32, u'x')), "");
  for (const char16_t* name : {u"", u"a:b", u"a/b", u"[a]", u"'a", u"a'", u"a\nb"}) {
    EXPECT_NE(tools::sheetNameComplaint(name), "") << tools::narrowText(name);
  }
}

TEST(DefinedNameComplaint, KnowsTheRulesOfNames) {
  for (const char16_t* name : {u"Rate", u"_a.b?", u"\\x", u"größe", u"Rate1x", u"ZZ1", u"A70000"}) {
    EXPECT_EQ(tools::definedNameComplaint(name, "xls"), "") << tools::narrowText(name);
  }
  for (const char16_t* name : {u"", u"1a", u"a b", u"a-b", u"A1", u"iv65536", u"R1C1", u"r", u"c", u"RC2"}) {
    EXPECT_NE(tools::definedNameComplaint(name, "xls"), "") << tools::narrowText(name);
  }
  EXPECT_NE(tools::definedNameComplaint(u"ZZ1", "xlsx"), "");
}

TEST_F(Check, MaxCutsEachKindOfLine) {
  const tools::BookPtr book = newBook();
  const std::string file = save(*book, "book.xls");
  editRecords(file, [](EditableRecords& records) {
    for (std::uint16_t i = 0; i < 4; ++i) {
      addToLastSheet(records, recordOf(id::kMergeCells, {1, 0, 2, 0, static_cast<std::uint16_t>(i + 1)}));
    }
  });
  const ToolResult result = check(file, {"--quiet", "--max", "2"});
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 3);
  EXPECT_TRUE(has(result, "complaint  ... and 4 more")) << result.out;
}

TEST_F(Check, WhatCantBeReadIsExitCode2) {
  EXPECT_EQ(check(path("nowhere.xls")).exitCode, 2);
  EXPECT_EQ(runTool("rubrica-check", {}).exitCode, 2);
  EXPECT_EQ(check(bookWithCells(), {"--max", "few"}).exitCode, 2);
}

}  // namespace
}  // namespace rubrica::test
