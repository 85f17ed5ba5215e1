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

TEST_F(Bench, WrongCallsAreExitCode2) {
  for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
           {}, {"write", "xls", "N"}, {"write", "xls", "Q", "f"}, {"read"}, {"fly", "a"}}) {
    EXPECT_EQ(runTool("rubrica-bench", words).exitCode, 2) << testing::PrintToString(words);
  }
  EXPECT_EQ(runTool("rubrica-bench", {"read", path("nowhere.xls")}).exitCode, 1);
}

}  // namespace
}  // namespace rubrica::test
