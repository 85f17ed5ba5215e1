#include "tests/tools/edited_stream.h"
#include "tests/tools/tool_runner.h"

namespace rubrica::test {
namespace {

class Dump : public ToolTest {
 protected:
  std::string bookFile() {
    const tools::BookPtr book = newBook();
    book->getSheet(0)->writeNum(0, 1, 2.5);
    book->addSheet(u"Second")->writeStr(1, 0, u"tea \"green\"");
    return save(*book, "book.xls");
  }
};

TEST_F(Dump, PrintsBookSheetsAndCells) {
  const ToolResult result = runTool("rubrica-dump", {bookFile()});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_TRUE(
      result.out.starts_with("{\"book\": {\"form\": \"xls\", \"sheets\": 2, \"active\": 0, \"date1904\": "
                             "false}}\n{\"sheet\": {\"index\": 0, "))
      << result.out;
  EXPECT_NE(result.out.find("{\"cell\": {\"s\": 0, \"r\": 0, \"c\": 1, \"t\": \"number\", \"v\": 2.5}}\n"),
            std::string::npos);
  EXPECT_NE(result.out.find("\"v\": \"tea \\\"green\\\"\"}}\n"), std::string::npos);
}

// Everything of a book that has a line or a member of its own.
TEST_F(Dump, EachKindOfCellAndEachRangeIsPrinted) {
  const tools::BookPtr book = newBook();
  Sheet& sheet = *book->getSheet(0);
  Format* date = book->addFormat();
  date->setNumFormat(numformat::date);
  sheet.writeBool(0, 0, true);
  sheet.writeError(0, 1, ErrorType::divByZero);
  sheet.writeBlank(0, 2, date);
  sheet.writeNum(0, 3, 40000, date);
  sheet.writeFormulaNum(0, 4, u"D1+1", 40001);
  int row = 1;
  for (const ErrorType error :
       {ErrorType::null, ErrorType::value, ErrorType::ref, ErrorType::name, ErrorType::num, ErrorType::notAvailable}) {
    sheet.writeError(row++, 0, error);
  }
  sheet.setMerge(8, 9, 1, 3);
  sheet.addHyperlink(u"https://example.org/", 2, 3, 0, 0);
  sheet.setNamedRange(u"Rate", 4, 4, 5, 5);
  sheet.writeComment(1, 1, u"really?", u"me", 100, 50);
  const std::string out = runTool("rubrica-dump", {save(*book, "all.xls")}).out;
  for (const char* part :
       {"\"type\": \"sheet\", \"state\": 0, ", "\"merges\": [[8, 9, 1, 3]], ",
        "\"hyperlinks\": [{\"ref\": [2, 3, 0, 0], \"target\": \"https://example.org/\"}], ",
        "\"names\": [\"Rate\"], \"comments\": 1}}\n", "\"r\": 0, \"c\": 0, \"t\": \"bool\", \"v\": true}}\n",
        "\"c\": 1, \"t\": \"error\", \"v\": \"#DIV/0!\"}}\n", "\"c\": 2, \"t\": \"blank\"",
        "\"c\": 3, \"t\": \"number\", \"v\": 40000, \"date\": true}}\n",
        "\"c\": 4, \"t\": \"number\", \"v\": 40001, \"f\": \"D1+1\"}}\n", "\"v\": \"#NULL!\"}}\n",
        "\"v\": \"#VALUE!\"}}\n", "\"v\": \"#REF!\"}}\n", "\"v\": \"#NAME?\"}}\n", "\"v\": \"#NUM!\"}}\n",
        "\"v\": \"#N/A\"}}\n"}) {
    EXPECT_NE(out.find(part), std::string::npos) << part << " in\n" << out;
  }
}

TEST_F(Dump, StylesArePrintedOnDemand) {
  const tools::BookPtr book = newBook();
  Format* format = book->addFormat();
  Font* font = book->addFont();
  font->setName(u"Courier New");
  font->setSize(13);
  font->setItalic(true);
  format->setFont(font);
  format->setNumFormat(book->addCustomNumFormat(u"0.0 [$EUR]"));
  format->setAlignH(AlignH::center);
  format->setRotation(45);
  format->setBorderTop(BorderStyle::thick);
  format->setFillPattern(FillPattern::solid);
  book->getSheet(0)->writeNum(0, 0, 1, format);
  const std::string out = runTool("rubrica-dump", {"--styles", save(*book, "styled.xls")}).out;
  for (const char* part :
       {"\"fmt\": {\"id\": 164, \"text\": \"0.0 [$EUR]\"}",
        "\"font\": {\"name\": \"Courier New\", \"size\": 13, \"bold\": false, \"italic\": true, \"strike\": false, ",
        "\"fill\": {\"pattern\": 1, ", "\"align\": {\"h\": 2, ", "\"rotation\": 45, ", "\"top\": [5, "}) {
    EXPECT_NE(out.find(part), std::string::npos) << part << " in\n" << out;
  }
  EXPECT_EQ(runTool("rubrica-dump", {path("styled.xls")}).out.find("\"font\""), std::string::npos);
}

TEST_F(Dump, SheetChoosesOne) {
  const ToolResult result = runTool("rubrica-dump", {"--sheet", "1", bookFile()});
  EXPECT_EQ(result.out.find("2.5"), std::string::npos);
  EXPECT_NE(result.out.find("Second"), std::string::npos);
  EXPECT_EQ(runTool("rubrica-dump", {"--sheet", "2", bookFile()}).exitCode, 1);
  EXPECT_EQ(runTool("rubrica-dump", {"--sheet", "one", bookFile()}).exitCode, 2);
}

TEST_F(Dump, RecordsAreListedWithOffsetIdNameAndSize) {
  const ToolResult result = runTool("rubrica-dump", {"--records", bookFile()});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_TRUE(result.out.starts_with(
      "{\"record\": {\"offset\": 0, \"id\": 2057, \"name\": \"BOF\", \"size\": 16, \"substream\": 0}}\n"
      "{\"record\": {\"offset\": 20, \"id\": 225, \"name\": \"InterfaceHdr\", \"size\": 2, \"substream\": 0}}\n"))
      << result.out;
  EXPECT_NE(result.out.find("\"name\": \"RK\", \"size\": 10, \"substream\": 1}}\n"), std::string::npos);
  EXPECT_NE(result.out.find("\"name\": \"EOF\", \"size\": 0, \"substream\": 2}}\n"), std::string::npos);
}

TEST_F(Dump, RecordsOfADamagedFileAreListedAsFarAsTheyGo) {
  const std::string file = bookFile();
  editRecords(file, [](EditableRecords& records) { records.pop_back(); });
  const ToolResult result = runTool("rubrica-dump", {"--records", file});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_NE(result.out.find("\"LabelSst\""), std::string::npos);
  EXPECT_TRUE(result.err.starts_with("rubrica-dump: " + file + ": ")) << result.err;
}

TEST_F(Dump, RecordsGoWithNoOtherOption) {
  EXPECT_EQ(runTool("rubrica-dump", {"--records", "--styles", bookFile()}).exitCode, 2);
}

TEST_F(Dump, WhatCantBeReadIsExitCode1) {
  writeText(path("bad.xls"), "no workbook");
  for (const char* option : {"--styles", "--records"}) {
    const ToolResult result = runTool("rubrica-dump", {option, path("bad.xls")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("rubrica-dump: " + path("bad.xls") + ": ")) << result.err;
  }
}

class Bench : public ToolTest {};

TEST_F(Bench, WrittenCellsAreReadAgain) {
  const ToolResult written = runTool("rubrica-bench", {"write", "xls", "S", path("s.xls")});
  EXPECT_EQ(written.exitCode, 0);
  EXPECT_TRUE(written.out.starts_with("write cells=1000000 seconds=")) << written.out;
  const ToolResult read = runTool("rubrica-bench", {"read", path("s.xls")});
  EXPECT_EQ(read.exitCode, 0);
  EXPECT_NE(read.out.find("read cells=1000000 seconds="), std::string::npos) << read.out;
}

TEST_F(Bench, MixedCellsAreReadAgainAfterASave) {
  EXPECT_EQ(runTool("rubrica-bench", {"write", "xls", "M", path("m.xls")}).exitCode, 0);
  EXPECT_EQ(runTool("rubrica-bench", {"resave", path("m.xls"), path("again.xls")}).exitCode, 0);
  const ToolResult read = runTool("rubrica-bench", {"read", path("again.xls")});
  EXPECT_NE(read.out.find(" bools=62500\n"), std::string::npos) << read.out;
  EXPECT_NE(read.out.find("read cells=625000 seconds="), std::string::npos) << read.out;
}

TEST_F(Bench, WrongCallsAreExitCode2) {
  for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
           {}, {"write", "xls", "N"}, {"write", "xls", "Q", "f"}, {"read"}, {"fly", "a"}}) {
    EXPECT_EQ(runTool("rubrica-bench", words).exitCode, 2) << testing::PrintToString(words);
  }
  EXPECT_EQ(runTool("rubrica-bench", {"read", path("nowhere.xls")}).exitCode, 1);
}

}  // namespace
}  // namespace rubrica::test
