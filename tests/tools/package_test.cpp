// The tools on .xlsx packages: files that are made part by part, so that each holds what no writer of ours makes.
#include <map>

#include "tests/tools/tool_runner.h"
#include "tests/xml/package/zip_builder.h"
#include "xml/package_names.h"

namespace rubrica::test {
namespace {

using package_test::addLink;
using package_test::addPart;
using package_test::entry;
using package_test::replaced;
using package_test::TestEntry;

constexpr char kRelations[] = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";

class Package : public ToolTest {
 protected:
  std::string write(const std::vector<TestEntry>& parts, const std::string& name = "book.xlsx") {
    writeText(path(name), package_test::zipOf(parts));
    return path(name);
  }
  std::string writeBook() { return write(entries); }
  // Text of the sheet's part, with a stretch replaced.
  void change(const char* name, const char* what, const std::string& with) {
    TestEntry& part = entry(entries, name);
    part.content = replaced(part.content, what, with);
  }
  void changeSheet(const char* what, const std::string& with) { change("xl/worksheets/sheet1.xml", what, with); }
  void addStyles() {
    addPart(entries, "xl/styles.xml",
            std::string("<styleSheet xmlns=\"") + kMain +
                "\"><fonts count=\"1\"><font/></fonts><fills count=\"1\"><fill/></fills><borders count=\"1\"><border/>"
                "</borders><cellXfs count=\"2\"><xf numFmtId=\"0\"/><xf numFmtId=\"9\"/></cellXfs></styleSheet>",
            content_type::kStyles);
    addLink(entries, "xl/workbook.xml", "rIdStyles", std::string(kRelations) + "styles", "styles.xml");
  }
  void addStrings() {
    addPart(entries, "xl/sharedStrings.xml",
            std::string("<sst xmlns=\"") + kMain + "\"><si><t>tea</t></si><si><r><t>a</t></r></si></sst>",
            content_type::kSharedStrings);
    addLink(entries, "xl/workbook.xml", "rIdStrings", std::string(kRelations) + "sharedStrings", "sharedStrings.xml");
  }
  // A chart sheet in front of the others.
  void addChartSheet() {
    addPart(entries, "xl/chartsheets/sheet1.xml", std::string("<chartsheet xmlns=\"") + kMain + "\"/>",
            content_type::kChartsheet);
    addLink(entries, "xl/workbook.xml", "rIdChart", std::string(kRelations) + "chartsheet", "chartsheets/sheet1.xml");
    change("xl/workbook.xml", "<sheets>", "<sheets><sheet name=\"Graph\" sheetId=\"77\" r:id=\"rIdChart\"/>");
  }
  ToolResult check(std::vector<std::string> options = {}) {
    options.push_back(writeBook());
    return runTool("rubrica-check", options);
  }
  std::string findings() {
    const ToolResult result = check({"--quiet"});
    EXPECT_EQ(result.exitCode, result.out.empty() ? 0 : 1);
    EXPECT_EQ(result.err, "");
    return result.out;
  }
  static bool has(const std::string& text, const std::string& line) {
    return ("\n" + text).find("\n" + line + "\n") != std::string::npos;
  }

  static constexpr char kMain[] = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
  std::vector<TestEntry> entries = package_test::workbookEntries<excelNormal_tag>(1);
};

// ---- Chart sheets

TEST_F(Package, DumpPassesOverChartSheets) {
  addChartSheet();
  const ToolResult result = runTool("rubrica-dump", {"--styles", writeBook()});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_TRUE(result.out.starts_with("{\"book\": {\"form\": \"xlsx\", \"sheets\": 2, ")) << result.out;
  EXPECT_NE(result.out.find("{\"sheet\": {\"index\": 1, \"name\": \"One\""), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("{\"cell\": {\"s\": 1, \"r\": 0, \"c\": 0, \"t\": \"number\", \"v\": 1"),
            std::string::npos);
}

TEST_F(Package, DiffPassesOverChartSheets) {
  addChartSheet();
  const std::string file = writeBook();
  EXPECT_EQ(runTool("rubrica-diff", {file, file}).exitCode, 0);
  changeSheet("<v>1</v>", "<v>2</v>");
  const ToolResult result = runTool("rubrica-diff", {file, write(entries, "other.xlsx")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "One!A1: value: 1 -> 2\n");
}

TEST_F(Package, ConvertPassesOverChartSheetsAndSaysSo) {
  addChartSheet();
  const ToolResult result = runTool("rubrica-convert", {writeBook(), path("out.xls")});
  EXPECT_EQ(result.exitCode, 1) << result.err;
  EXPECT_NE(result.out.find("sheet \"Graph\" holds a chart or macros: an empty sheet stands for it"), std::string::npos)
      << result.out;
  const tools::BookPtr book = load(path("out.xls"));
  ASSERT_EQ(book->sheetCount(), 2);
  EXPECT_EQ(book->getSheet(1)->readNum(0, 0), 1);
}

TEST_F(Package, CheckPassesOverChartSheets) {
  addChartSheet();
  const ToolResult result = check();
  EXPECT_EQ(result.exitCode, 0) << result.out;
  EXPECT_TRUE(has(result.out, "kept       chartsheet 1")) << result.out;
}

// ---- The list of parts

TEST_F(Package, PartsAreListedWithTypeHandlingAndSize) {
  addPart(entries, "xl/media/image1.png", "abc", "image/png");
  addPart(entries, "xl/stray.bin", "12345");
  const ToolResult result = runTool("rubrica-dump", {"--records", writeBook()});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  for (const char* line :
       {R"({"part": {"name": "/xl/media/image1.png", "type": "image/png", "handling": "carried", "size": 3}})",
        R"({"part": {"name": "/xl/stray.bin", "type": "", "handling": "dropped", "size": 5}})"}) {
    EXPECT_TRUE(has(result.out, line)) << result.out;
  }
  EXPECT_TRUE(result.out.starts_with(R"({"part": {"name": "/[Content_Types].xml", "type": )")) << result.out;
  EXPECT_NE(result.out.find(R"("name": "/xl/worksheets/sheet1.xml", "type": "application/vnd.openxmlformats-)"
                            R"(officedocument.spreadsheetml.worksheet+xml", "handling": "bound", "size": )"),
            std::string::npos)
      << result.out;
}

TEST_F(Package, PartsOfADamagedPackageAreListedAsFarAsTheyGo) {
  entry(entries, "xl/worksheets/sheet1.xml").crc = 1;
  const ToolResult result = runTool("rubrica-dump", {"--records", writeBook()});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_NE(result.out.find("/xl/worksheets/sheet1.xml"), std::string::npos);
  EXPECT_NE(result.err.find("/xl/worksheets/sheet1.xml: "), std::string::npos) << result.err;
}

// ---- What becomes of the parts

TEST_F(Package, ABookWithoutFaultsHasNoFindings) {
  addStyles();
  addStrings();
  EXPECT_EQ(findings(), "");
  const tools::BookPtr ours = tools::createBook("xlsx");
  ours->addSheet(u"Own")->writeStr(0, 0, u"text");
  const ToolResult result = runTool("rubrica-check", {save(*ours, "ours.xlsx")});
  EXPECT_EQ(result.exitCode, 0) << result.out;
  EXPECT_TRUE(has(result.out, path("ours.xlsx") + ": OOXML workbook, 1 sheet")) << result.out;
  for (const char* line : {"known      workbook 1", "known      worksheet 1", "known      styles 1",
                           "known      sharedStrings 1", "known      content types 1"}) {
    EXPECT_TRUE(has(result.out, line)) << result.out;
  }
  for (const char* word : {"\ndropped", "\nchanged"}) EXPECT_EQ(result.out.find(word), std::string::npos) << result.out;
}

TEST_F(Package, PartsAreKnownKeptOrDropped) {
  addPart(entries, "xl/media/image1.png", "abc", "image/png");
  addPart(entries, "xl/calcChain.xml", "<calcChain/>",
          "application/vnd.openxmlformats-officedocument.spreadsheetml.calcChain+xml");
  change("xl/workbook.xml", "<sheets>",
         "<mc:AlternateContent xmlns:mc=\"http://schemas.openxmlformats.org/markup-compatibility/2006\">"
         "<mc:Choice Requires=\"zz\" xmlns:zz=\"urn:zz\"><zz:a/></mc:Choice></mc:AlternateContent><sheets>");
  const std::string out = check().out;
  EXPECT_TRUE(has(out, "known      worksheet 1")) << out;
  EXPECT_TRUE(has(out, "kept       png 1")) << out;
  EXPECT_TRUE(has(out, "dropped    calcChain 1")) << out;
  EXPECT_TRUE(has(out, "dropped    alternative or ignorable markup in /xl/workbook.xml 1")) << out;
}

TEST_F(Package, ContentApartFromTheInterfacesIsNamed) {
  addStrings();
  addPart(entries, "xl/charts/chart1.xml", "<c/>", content_type::kChart);
  addPart(entries, "xl/vbaProject.bin", "macros", "application/vnd.ms-office.vbaProject");
  changeSheet("</sheetData>",
              "</sheetData><conditionalFormatting sqref=\"A1\"><cfRule type=\"expression\" priority=\"1\"><formula>TRUE"
              "</formula></cfRule><cfRule type=\"expression\" priority=\"2\"><formula>TRUE</formula></cfRule>"
              "</conditionalFormatting>");
  changeSheet("<row r=\"1\">", "<row r=\"1\" outlineLevel=\"2\">");
  const std::string out = check().out;
  for (const char* line :
       {"apart      1 chart", "apart      1 project of macros", "apart      2 conditional formats",
        "apart      1 row or column with an outline level", "apart      1 text with several fonts"}) {
    EXPECT_TRUE(has(out, line)) << out;
  }
}

// ---- Complaints

TEST_F(Package, ChildrenOutOfOrderAreTold) {
  changeSheet("<sheetData>", "<mergeCells><mergeCell ref=\"B1:C1\"/></mergeCells><sheetData>");
  const std::string out = findings();
  EXPECT_NE(out.find("complaint  /xl/worksheets/sheet1.xml: "), std::string::npos) << out;
  EXPECT_NE(out.find(" in line 1\n"), std::string::npos) << out;
}

TEST_F(Package, ValuesThatTheSchemaRefusesAreTold) {
  changeSheet("<v>1</v></c>", "<v>1</v></c><c r=\"B1\" t=\"zz\"/>");
  EXPECT_NE(findings().find("complaint  /xl/worksheets/sheet1.xml: "), std::string::npos);
}

TEST_F(Package, DanglingRelationshipsAreTold) {
  addLink(entries, "xl/worksheets/sheet1.xml", "rId5", std::string(kRelations) + "table", "../tables/table9.xml");
  addLink(entries, "xl/worksheets/sheet1.xml", "rId5", std::string(kRelations) + "hyperlink", "https://example.org/",
          true);
  addLink(entries, "xl/worksheets/sheet7.xml", "rId1", std::string(kRelations) + "drawing", "sheet1.xml");
  changeSheet("</sheetData>",
              std::string("</sheetData><drawing xmlns:r=\"") +
                  "http://schemas.openxmlformats.org/officeDocument/2006/relationships\" r:id=\"rId8\"/>");
  const std::string out = findings();
  const std::string links = "complaint  /xl/worksheets/_rels/sheet1.xml.rels: ";
  EXPECT_TRUE(has(out, links + "rId5 leads to ../tables/table9.xml, which there isn't")) << out;
  EXPECT_TRUE(has(out, links + "the id rId5 stands twice")) << out;
  EXPECT_TRUE(has(out, "complaint  /xl/worksheets/_rels/sheet7.xml.rels belongs to no part")) << out;
  EXPECT_TRUE(has(out, "complaint  /xl/worksheets/sheet1.xml uses the relationship rId8, which there isn't")) << out;
}

TEST_F(Package, APackageThatDoesNotLeadToItsWorkbookIsTold) {
  entry(entries, "_rels/.rels").content =
      "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\"/>";
  EXPECT_TRUE(has(findings(), "complaint  no relationship of the package leads to the workbook"));
}

TEST_F(Package, PartsAndTheirTypesBelongTogether) {
  addPart(entries, "xl/gone.xml", "", "application/vnd.x+xml");
  entries.pop_back();
  addPart(entries, "xl/stray.bin", "12345");
  entries.push_back(entry(entries, "xl/worksheets/sheet1.xml"));
  const std::string out = findings();
  EXPECT_TRUE(has(out, "complaint  a content type is given to /xl/gone.xml, which there isn't")) << out;
  EXPECT_TRUE(has(out, "complaint  /xl/stray.bin has no content type")) << out;
  EXPECT_TRUE(has(out, "complaint  /xl/worksheets/sheet1.xml stands twice")) << out;
}

TEST_F(Package, ForbiddenCharactersAreTold) {
  addPart(entries, "xl/carried.xml", "<a>\n\n\x0B</a>", "application/vnd.x+xml");
  addPart(entries, "xl/two.xml", "<a>\n&#x1F;&#2;\xEF\xBF\xBF</a>", "application/vnd.x+xml");
  addPart(entries, "xl/fine.xml", "<a>\t&#10;&#x41; &amp; &# \xEF\xBF\xBD</a>", "application/vnd.x+xml");
  const std::string out = findings();
  EXPECT_TRUE(has(out, "complaint  /xl/carried.xml: 1 character that XML forbids: U+000B in line 3")) << out;
  EXPECT_TRUE(has(out, "complaint  /xl/two.xml: 3 characters that XML forbids, the first U+001F in line 2")) << out;
  EXPECT_EQ(out.find("fine"), std::string::npos) << out;
}

TEST_F(Package, CellsThatNameWhatThereIsNotAreTold) {
  addStyles();
  addStrings();
  changeSheet("<row r=\"1\">",
              "<row r=\"1\"><c r=\"AA1\" t=\"s\" s=\"1\"><v>1</v></c><c r=\"AB1\" t=\"s\"><v>2</v></c></row>"
              "<row r=\"4\"><c r=\"A4\" s=\"2\"/><c r=\"B4\" s=\"7\"/></row><row r=\"3\">");
  const std::string out = findings();
  const std::string sheet = "complaint  /xl/worksheets/sheet1.xml: ";
  EXPECT_TRUE(has(out, sheet + "cell AB1 names a shared string that there isn't")) << out;
  EXPECT_TRUE(has(out, sheet + "2 cells name formats that there aren't, the first A4")) << out;
  EXPECT_TRUE(has(out, sheet + "rows are out of order")) << out;
}

TEST_F(Package, OverlappingMergesAndBadNamesAreTold) {
  changeSheet("</sheetData>",
              "</sheetData><mergeCells><mergeCell ref=\"A5:C6\"/><mergeCell ref=\"C6:D7\"/></mergeCells>");
  change("xl/workbook.xml", "</sheets>",
         "</sheets><definedNames><definedName name=\"A1\">One!$A$1</definedName>"
         "<definedName name=\"Twice\">One!$A$1</definedName><definedName name=\"TWICE\">One!$A$2</definedName>"
         "</definedNames>");
  change("xl/workbook.xml", "name=\"One\"", "name=\"One?\"");
  const std::string out = findings();
  EXPECT_TRUE(has(out, "complaint  sheet \"One?\": the merged ranges A5:C6 and C6:D7 overlap")) << out;
  EXPECT_TRUE(has(out, "complaint  sheet \"One?\": a sheet name can't hold \"?\"")) << out;
  EXPECT_TRUE(has(out, "complaint  name \"A1\": a name can't look like a cell")) << out;
  EXPECT_NE(out.find("stands twice"), std::string::npos) << out;
}

TEST_F(Package, StrictBooksAreJudgedByTheirOwnSchemas) {
  entries = package_test::workbookEntries<excelStrict_tag>(2);
  EXPECT_EQ(findings(), "");
}

TEST_F(Package, CommentsOfEitherFlavourAreJudgedByTheBooksOwnNamespace) {
  const std::string strictMain = "http://purl.oclc.org/ooxml/spreadsheetml/main";
  const auto commentsIn = [](const std::string& name) {
    return "<comments xmlns=\"" + name + "\"><authors/><commentList/></comments>";
  };
  const std::string complaint = "complaint  /xl/comments1.xml: Element not found (comments) in line 1";
  addPart(entries, "xl/comments1.xml", commentsIn(kMain), content_type::kComments);
  EXPECT_FALSE(has(findings(), complaint));
  change("xl/comments1.xml", kMain, strictMain);
  EXPECT_TRUE(has(findings(), complaint));
  entries = package_test::workbookEntries<excelStrict_tag>(1);
  addPart(entries, "xl/comments1.xml", commentsIn(strictMain), content_type::kComments);
  EXPECT_FALSE(has(findings(), complaint));
}

// ---- Damage

TEST_F(Package, WhatCanNotBeReadIsDamage) {
  entry(entries, "xl/worksheets/sheet1.xml").crc = 1;
  const std::string out = findings();
  EXPECT_NE(out.find("damaged    /xl/worksheets/sheet1.xml: "), std::string::npos) << out;
  EXPECT_NE(out.find("damaged    the book can't be loaded: "), std::string::npos) << out;
}

TEST_F(Package, APackageWithoutContentTypesIsDamaged) {
  entries.erase(entries.begin());
  EXPECT_TRUE(has(findings(), "damaged    the package has no [Content_Types].xml"));
}

}  // namespace
}  // namespace rubrica::test
