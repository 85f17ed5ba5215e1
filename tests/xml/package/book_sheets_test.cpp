// Adding, moving and removing sheets, and what the workbook and the package say about them afterwards.
#include <algorithm>

#include "tests/xml/flavours.h"
#include "tests/xml/package/zip_builder.h"
#include "xml/package_names.h"

namespace rubrica::package_test {
namespace {

template <class Tag>
class BookSheets : public ::testing::Test {
 protected:
  bool load(const std::vector<TestEntry>& from) { return loadRaw(book, zipOf(from)); }
  std::string message() { return book.errorMessage(); }
  std::string names() {
    std::string all;
    for (int i = 0; i < book.sheetCount(); ++i) {
      const std::u16string name = book.getSheetName(i);
      all.append(all.empty() ? "" : " ").append(name.begin(), name.end());
    }
    return all;
  }
  std::string savedEntry(std::string_view name) { return entryOf(saveRaw(book), name); }
  bool isSaved(const std::string& name) {
    const auto all = namesOf(saveRaw(book));
    return std::find(all.begin(), all.end(), name) != all.end();
  }
  std::string link(std::string_view kind) { return flavourText<Tag>().relationships + "/" + std::string(kind); }
  // A workbook of three sheets with views and local names.
  std::vector<TestEntry> threeSheets(int activeTab, int firstSheet) {
    auto entries = workbookEntries<Tag>(3);
    TestEntry& main = entry(entries, "xl/workbook.xml");
    main.content = replaced(main.content, "<sheets>",
                            "<bookViews><workbookView firstSheet=\"" + std::to_string(firstSheet) + "\" activeTab=\"" +
                                std::to_string(activeTab) + "\"/></bookViews><sheets>");
    main.content = replaced(main.content, "</sheets>",
                            "</sheets><definedNames><definedName name=\"n\" localSheetId=\"0\">1</definedName>"
                            "<definedName name=\"n\" localSheetId=\"1\">2</definedName>"
                            "<definedName name=\"n\" localSheetId=\"2\">3</definedName>"
                            "<definedName name=\"g\">4</definedName></definedNames>");
    return entries;
  }
  // "value of a local name @ its sheet's position" for each.
  std::string localNames() {
    std::string all;
    if (!book.isset_definedNames()) return all;
    auto& list = book.get_definedNames();
    for (std::size_t i = 0; i < list.size_definedName(); ++i) {
      const auto& name = list.get_definedName(i);
      if (!all.empty()) all += ' ';
      all += name.get_value();
      if (name.isset_localSheetId()) all += "@" + std::to_string(name.get_localSheetId());
    }
    return all;
  }

  XMLBookImplT<Tag> book;
};
TYPED_TEST_SUITE(BookSheets, Flavours, FlavourNames);

TYPED_TEST(BookSheets, AreAddedAtTheEndOrInserted) {
  EXPECT_NE(this->book.addSheet(u"B", nullptr), nullptr);
  EXPECT_NE(this->book.insertSheet(0, u"A", nullptr), nullptr);
  EXPECT_NE(this->book.insertSheet(2, u"C", nullptr), nullptr);
  EXPECT_EQ(this->names(), "A B C");
  EXPECT_EQ(this->book.insertSheet(4, u"D", nullptr), nullptr);
  EXPECT_EQ(this->message(), "index is out of range");
  EXPECT_EQ(this->book.insertSheet(-1, u"D", nullptr), nullptr);
  EXPECT_EQ(this->message(), "index is out of range");
  EXPECT_EQ(this->book.addSheet(nullptr, nullptr), nullptr);
  EXPECT_EQ(this->message(), "sheet name can't be 0");
}

TYPED_TEST(BookSheets, NamesAreTakenOnceWithoutRegardToCase) {
  ASSERT_NE(this->book.addSheet(u"Sheet \u00c4", nullptr), nullptr);
  EXPECT_EQ(this->book.addSheet(u"SHEET \u00e4", nullptr), nullptr);
  EXPECT_EQ(this->message(), "book already contains such sheet name");
  EXPECT_EQ(this->book.sheetCount(), 1);
}

TYPED_TEST(BookSheets, ANameOf32CharactersIsCutWithAWarning) {
  const std::u16string longest(31, u'x');
  ASSERT_NE(this->book.addSheet(longest.c_str(), nullptr), nullptr);
  EXPECT_EQ(this->message(), "ok");
  const std::u16string tooLong = std::u16string(31, u'y') + u"z";
  ASSERT_NE(this->book.addSheet(tooLong.c_str(), nullptr), nullptr);
  EXPECT_EQ(this->message(), "warning: sheet's name is cut to 31 characters");
  EXPECT_EQ(std::u16string(this->book.getSheetName(1)), std::u16string(31, u'y'));
  EXPECT_EQ(this->book.addSheet((longest + u"q").c_str(), nullptr), nullptr);
  EXPECT_EQ(this->message(), "book already contains such sheet name");
}

TYPED_TEST(BookSheets, NewOnesTakeTheHighestIdPlusOneAndTheFirstFreePath) {
  auto entries = workbookEntries<TypeParam>(2);
  addPart(entries, "xl/worksheets/sheet3.xml", "<carried/>", "application/octet-stream");
  addLink(entries, "xl/workbook.xml", "rId8", "urn:other", "worksheets/sheet4.xml");
  addLink(entries, "xl/workbook.xml", "rId9", "urn:other", "/xl/worksheets/sheet5.xml");
  ASSERT_TRUE(this->load(entries)) << this->message();
  ASSERT_NE(this->book.insertSheet(0, u"New", nullptr), nullptr);
  EXPECT_TRUE(this->isSaved("xl/worksheets/sheet6.xml"));
  const std::string workbook = this->savedEntry("xl/workbook.xml");
  EXPECT_NE(workbook.find("<sheet name=\"New\" sheetId=\"13\" r:id=\"rId10\"/><sheet name=\"One\""), std::string::npos)
      << workbook;
  const std::string links = this->savedEntry("xl/_rels/workbook.xml.rels");
  EXPECT_NE(links.find("Target=\"worksheets/sheet6.xml\""), std::string::npos) << links;
  EXPECT_NE(links.find(relationship_type::kWorksheet), std::string::npos) << "a strict book gets this type too";
}

TYPED_TEST(BookSheets, AnIdThatIsTheLastThereIsLeavesTheLowestFreeOne) {
  auto entries = workbookEntries<TypeParam>(2);
  TestEntry& main = entry(entries, "xl/workbook.xml");
  main.content = replaced(main.content, "sheetId=\"11\"", "sheetId=\"4294967295\"");
  main.content = replaced(main.content, "sheetId=\"12\"", "sheetId=\"1\"");
  ASSERT_TRUE(this->load(entries)) << this->message();
  ASSERT_NE(this->book.addSheet(u"New", nullptr), nullptr);
  EXPECT_NE(this->savedEntry("xl/workbook.xml").find("name=\"New\" sheetId=\"2\""), std::string::npos);
}

TYPED_TEST(BookSheets, InsertingKeepsTabsAndNamesWithTheirSheets) {
  ASSERT_TRUE(this->load(this->threeSheets(1, 0))) << this->message();
  ASSERT_NE(this->book.insertSheet(1, u"New", nullptr), nullptr);
  EXPECT_EQ(this->book.activeSheet(), 2);
  EXPECT_EQ(this->localNames(), "1@0 2@2 3@3 4");
  ASSERT_NE(this->book.addSheet(u"Last", nullptr), nullptr);
  EXPECT_EQ(this->book.activeSheet(), 2);
  EXPECT_EQ(this->localNames(), "1@0 2@2 3@3 4");
}

TYPED_TEST(BookSheets, MovingKeepsTabsAndNamesWithTheirSheets) {
  ASSERT_TRUE(this->load(this->threeSheets(0, 2))) << this->message();
  auto* one = this->book.getSheet(0);
  ASSERT_TRUE(this->book.moveSheet(0, 3)) << this->message();
  EXPECT_EQ(this->names(), "Two Three One");
  EXPECT_EQ(this->book.getSheet(2), one);
  EXPECT_EQ(this->book.activeSheet(), 2);
  EXPECT_EQ(this->localNames(), "1@2 2@0 3@1 4");
  EXPECT_NE(this->savedEntry("xl/workbook.xml").find("firstSheet=\"1\""), std::string::npos);
  ASSERT_TRUE(this->book.moveSheet(2, 0)) << this->message();
  EXPECT_EQ(this->names(), "One Two Three");
  EXPECT_EQ(this->localNames(), "1@0 2@1 3@2 4");
  EXPECT_EQ(this->book.activeSheet(), 0);
  ASSERT_TRUE(this->book.moveSheet(0, 2)) << this->message();
  EXPECT_EQ(this->names(), "Two One Three");
}

TYPED_TEST(BookSheets, MovesThatMakeNoSenseAreRefused) {
  ASSERT_TRUE(this->load(workbookEntries<TypeParam>(3))) << this->message();
  const auto refusal = [&](int source, int target) {
    EXPECT_FALSE(this->book.moveSheet(source, target));
    return this->message();
  };
  EXPECT_EQ(refusal(-1, 0), "srcIndex is out of range");
  EXPECT_EQ(refusal(3, 0), "srcIndex is out of range");
  EXPECT_EQ(refusal(0, -1), "dstIndex is out of range");
  EXPECT_EQ(refusal(0, 4), "dstIndex is out of range");
  EXPECT_EQ(refusal(1, 1), "there is no sense: srcIndex is equal to dstIndex");
  EXPECT_EQ(refusal(1, 2), "there is no sense: srcIndex is equal to dstIndex - 1");
  EXPECT_EQ(this->names(), "One Two Three");
}

TYPED_TEST(BookSheets, RemovingKeepsTabsAndNamesWithTheirSheets) {
  ASSERT_TRUE(this->load(this->threeSheets(2, 1))) << this->message();
  ASSERT_TRUE(this->book.delSheet(0)) << this->message();
  EXPECT_EQ(this->names(), "Two Three");
  EXPECT_EQ(this->book.activeSheet(), 1);
  EXPECT_EQ(this->localNames(), "2@0 3@1 4");
  ASSERT_TRUE(this->book.delSheet(1)) << this->message();
  EXPECT_EQ(this->book.activeSheet(), 0) << "the last sheet takes the place of a removed active one";
  EXPECT_EQ(this->localNames(), "2@0 4");
  EXPECT_FALSE(this->book.delSheet(0));
  EXPECT_EQ(this->message(), "can't remove the last sheet in workbook");
  EXPECT_FALSE(this->book.delSheet(1));
  EXPECT_EQ(this->message(), "index is out of range");
  EXPECT_FALSE(this->book.delSheet(-1));
  EXPECT_EQ(this->message(), "index is out of range");
  XMLBookImplT<TypeParam> again;
  ASSERT_TRUE(loadRaw(again, saveRaw(this->book))) << again.errorMessage();
  EXPECT_EQ(again.getSheet(0)->readNum(0, 0), 2);
}

TYPED_TEST(BookSheets, ARemovedSheetTakesItsEntriesInThePackageAlong) {
  ASSERT_TRUE(this->load(workbookEntries<TypeParam>(3))) << this->message();
  ASSERT_TRUE(this->book.delSheet(1)) << this->message();
  EXPECT_FALSE(this->isSaved("xl/worksheets/sheet2.xml"));
  EXPECT_EQ(this->savedEntry("[Content_Types].xml").find("sheet2.xml"), std::string::npos);
  EXPECT_EQ(this->savedEntry("xl/_rels/workbook.xml.rels").find("sheet2.xml"), std::string::npos);
}

TYPED_TEST(BookSheets, ARemovedSheetTakesThePartsThatOnlyItUsesAlong) {
  auto entries = workbookEntries<TypeParam>(2);
  const std::string drawing =
      std::is_same_v<TypeParam, excelStrict_tag>
          ? R"(<wsDr xmlns="http://purl.oclc.org/ooxml/drawingml/spreadsheetDrawing"/>)"
          : R"(<d:wsDr xmlns:d="http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing"/>)";
  const std::string comments =
      "<comments xmlns=\"" + flavourText<excelNormal_tag>().main + "\"><authors/><commentList/></comments>";
  addPart(entries, "xl/drawings/drawing1.xml", drawing, content_type::kDrawing);
  addPart(entries, "xl/comments1.xml", comments, content_type::kComments);
  addPart(entries, "xl/charts/chart1.xml", "<c/>", content_type::kChart);
  addPart(entries, "xl/shared.bin", "used twice", "application/octet-stream");
  addPart(entries, "xl/media/image1.png", "\x89PNG\r\n", "image/png");
  addLink(entries, "xl/worksheets/sheet1.xml", "rId1", this->link("drawing"), "../drawings/drawing1.xml");
  addLink(entries, "xl/worksheets/sheet1.xml", "rId2", this->link("comments"), "../comments1.xml");
  addLink(entries, "xl/worksheets/sheet1.xml", "rId3", "urn:other", "/xl/shared.bin");
  addLink(entries, "xl/worksheets/sheet2.xml", "rId1", "urn:other", "../shared.bin");
  addLink(entries, "xl/drawings/drawing1.xml", "rId1", this->link("chart"), "../charts/chart1.xml");
  addLink(entries, "xl/drawings/drawing1.xml", "rId2", this->link("image"), "../media/image1.png");
  // A ring: the drawing names its sheet.
  addLink(entries, "xl/drawings/drawing1.xml", "rId3", "urn:other", "../worksheets/sheet1.xml");
  ASSERT_TRUE(this->load(entries)) << this->message();
  ASSERT_TRUE(this->book.delSheet(0)) << this->message();
  for (const char* gone :
       {"xl/worksheets/sheet1.xml", "xl/worksheets/_rels/sheet1.xml.rels", "xl/drawings/drawing1.xml",
        "xl/drawings/_rels/drawing1.xml.rels", "xl/comments1.xml", "xl/charts/chart1.xml"}) {
    EXPECT_FALSE(this->isSaved(gone)) << gone;
    EXPECT_EQ(this->savedEntry("[Content_Types].xml").find(gone), std::string::npos) << gone;
  }
  EXPECT_TRUE(this->isSaved("xl/shared.bin"));
  EXPECT_TRUE(this->isSaved("xl/media/image1.png")) << "a picture's id is its place in the list";
  EXPECT_EQ(this->book.pictureSize(), 1);
}

TYPED_TEST(BookSheets, APartThatTwoEntriesListStaysForTheOther) {
  auto entries = workbookEntries<TypeParam>(2);
  TestEntry& links = entry(entries, "xl/_rels/workbook.xml.rels");
  links.content = replaced(links.content, "worksheets/sheet2.xml", "/xl/worksheets/SHEET1.xml");
  ASSERT_TRUE(this->load(entries)) << this->message();
  ASSERT_TRUE(this->book.delSheet(0)) << this->message();
  EXPECT_EQ(this->book.getSheet(0)->readNum(0, 0), 1);
  XMLBookImplT<TypeParam> again;
  ASSERT_TRUE(loadRaw(again, saveRaw(this->book))) << again.errorMessage();
  EXPECT_EQ(again.getSheet(0)->readNum(0, 0), 1);
}

// A damaged file may call anything a sheet.
TYPED_TEST(BookSheets, WhatTheBookHoldsStaysWhenASheetOfThatPartIsRemoved) {
  auto entries = workbookEntries<TypeParam>(3);
  addPart(entries, "xl/sharedStrings.xml", partText<TypeParam>("sst", "<si><t>text</t></si>"),
          content_type::kSharedStrings);
  addPart(entries, "xl/styles.xml", partText<TypeParam>("styleSheet", ""), content_type::kStyles);
  addLink(entries, "xl/workbook.xml", "rId8", relationship_type::kSharedStrings, "sharedStrings.xml");
  addLink(entries, "xl/workbook.xml", "rId9", relationship_type::kStyles, "styles.xml");
  TestEntry& main = entry(entries, "xl/workbook.xml");
  main.content = replaced(main.content, "r:id=\"rId1\"", "r:id=\"rId8\"");
  main.content = replaced(main.content, "r:id=\"rId2\"", "r:id=\"rId9\"");
  addLink(entries, "xl/styles.xml", "rId1", "urn:other", "worksheets/sheet3.xml");
  ASSERT_TRUE(this->load(entries)) << this->message();
  ASSERT_TRUE(this->book.delSheet(0)) << this->message();
  ASSERT_TRUE(this->book.delSheet(0)) << this->message();
  EXPECT_EQ(this->book.getSheet(0)->readNum(0, 0), 3);
  ASSERT_TRUE(this->book.getSheet(0)->writeStr(0, 0, u"text")) << this->message();
  ASSERT_NE(this->book.addFormat(nullptr), nullptr);
  XMLBookImplT<TypeParam> again;
  ASSERT_TRUE(loadRaw(again, saveRaw(this->book))) << again.errorMessage();
  EXPECT_EQ(std::u16string(again.getSheet(0)->readStr(0, 0)), u"text");
}

TYPED_TEST(BookSheets, PartsOnDemandLeaveThoseOfTheirNameAlone) {
  auto entries = workbookEntries<TypeParam>(2);
  for (TestEntry& e : entries) {
    if (e.name == "xl/worksheets/sheet1.xml") e.name = "xl/styles.xml";
    if (e.name == "xl/worksheets/sheet2.xml") e.name = "xl/sharedStrings.xml";
    while (e.content.find("worksheets/sheet1.xml") != std::string::npos) {
      e.content = replaced(e.content, "worksheets/sheet1.xml", "styles.xml");
    }
    while (e.content.find("worksheets/sheet2.xml") != std::string::npos) {
      e.content = replaced(e.content, "worksheets/sheet2.xml", "sharedStrings.xml");
    }
  }
  ASSERT_TRUE(this->load(entries)) << this->message();
  ASSERT_NE(this->book.addFormat(nullptr), nullptr) << this->message();
  ASSERT_TRUE(this->book.getSheet(0)->writeStr(1, 0, u"text")) << this->message();
  EXPECT_TRUE(this->isSaved("xl/styles1.xml"));
  EXPECT_TRUE(this->isSaved("xl/sharedStrings1.xml"));
  XMLBookImplT<TypeParam> again;
  ASSERT_TRUE(loadRaw(again, saveRaw(this->book))) << again.errorMessage();
  EXPECT_EQ(again.getSheet(0)->readNum(0, 0), 1);
  EXPECT_EQ(std::u16string(again.getSheet(0)->readStr(1, 0)), u"text");
  EXPECT_EQ(again.getSheet(1)->readNum(0, 0), 2);
}

TYPED_TEST(BookSheets, NewPartsOfABookElsewhereAreFoundAgain) {
  for (const std::string& base : {std::string("inner/book/"), std::string()}) {
    auto entries = workbookEntries<TypeParam>(1);
    for (TestEntry& e : entries) {
      if (e.name.starts_with("xl/")) e.name.replace(0, 3, base);
      while (e.content.find("/xl/") != std::string::npos) e.content = replaced(e.content, "/xl/", "/" + base);
    }
    ASSERT_TRUE(this->load(entries)) << this->message();
    auto* sheet = this->book.addSheet(u"New", nullptr);
    ASSERT_NE(sheet, nullptr) << this->message();
    ASSERT_TRUE(sheet->writeStr(0, 0, u"text", this->book.addFormat(nullptr))) << this->message();
    XMLBookImplT<TypeParam> again;
    ASSERT_TRUE(loadRaw(again, saveRaw(this->book))) << again.errorMessage();
    ASSERT_NE(again.getSheet(1), nullptr) << again.errorMessage();
    EXPECT_EQ(std::u16string(again.getSheet(1)->readStr(0, 0)), u"text");
    EXPECT_NE(again.styles(), nullptr);
  }
}

TYPED_TEST(BookSheets, ASheetWithoutAPartCanBeRemoved) {
  auto entries = workbookEntries<TypeParam>(2);
  TestEntry& links = entry(entries, "xl/_rels/workbook.xml.rels");
  links.content = replaced(links.content, "Id=\"rId1\"", "Id=\"none\"");
  ASSERT_TRUE(this->load(entries)) << this->message();
  EXPECT_EQ(this->book.getSheet(0), nullptr);
  EXPECT_TRUE(this->book.moveSheet(0, 2)) << this->message();
  EXPECT_TRUE(this->book.delSheet(1)) << this->message();
  EXPECT_EQ(this->names(), "Two");
}

TYPED_TEST(BookSheets, ActivatingOneDeselectsTheOthers) {
  auto entries = workbookEntries<TypeParam>(3);
  for (const char* name : {"xl/worksheets/sheet1.xml", "xl/worksheets/sheet2.xml"}) {
    TestEntry& sheet = entry(entries, name);
    sheet.content = replaced(sheet.content, "<sheetData>",
                             "<sheetViews><sheetView tabSelected=\"1\" workbookViewId=\"0\"/></sheetViews><sheetData>");
  }
  ASSERT_TRUE(this->load(entries)) << this->message();
  EXPECT_EQ(this->book.activeSheet(), 0);
  this->book.setActiveSheet(1);
  EXPECT_EQ(this->message(), "ok");
  EXPECT_EQ(this->book.activeSheet(), 1);
  EXPECT_EQ(this->savedEntry("xl/worksheets/sheet1.xml").find("tabSelected=\"true\""), std::string::npos);
  EXPECT_NE(this->savedEntry("xl/worksheets/sheet2.xml").find("tabSelected=\"true\""), std::string::npos);
  EXPECT_NE(this->savedEntry("xl/workbook.xml").find("activeTab=\"1\""), std::string::npos);
  this->book.setActiveSheet(3);
  EXPECT_EQ(this->message(), "index is out of range");
  this->book.setActiveSheet(-1);
  EXPECT_EQ(this->message(), "index is out of range");
  EXPECT_EQ(this->book.activeSheet(), 1);
}

TYPED_TEST(BookSheets, PositionsPastTheLastSheetInAFileDoNoHarm) {
  auto entries = this->threeSheets(7, 9);
  TestEntry& main = entry(entries, "xl/workbook.xml");
  main.content = replaced(main.content, "localSheetId=\"2\"", "localSheetId=\"4294967295\"");
  ASSERT_TRUE(this->load(entries)) << this->message();
  ASSERT_TRUE(this->book.delSheet(0)) << this->message();
  EXPECT_LT(this->book.activeSheet(), 2);
  ASSERT_TRUE(this->book.moveSheet(0, 2)) << this->message();
  EXPECT_EQ(this->names(), "Three Two");
}

TYPED_TEST(BookSheets, CalculationModeAndDateSystemAreTheWorkbooks) {
  EXPECT_FALSE(this->book.refR1C1());
  this->book.setRefR1C1(true);
  EXPECT_TRUE(this->book.refR1C1());
  EXPECT_NE(this->savedEntry("xl/workbook.xml").find("refMode=\"R1C1\""), std::string::npos);
  this->book.setRefR1C1(false);
  EXPECT_FALSE(this->book.refR1C1());
  EXPECT_FALSE(this->book.isDate1904());
  EXPECT_TRUE(this->book.setDate1904(true));
  EXPECT_TRUE(this->book.isDate1904());
  EXPECT_NE(this->savedEntry("xl/workbook.xml").find("date1904=\"true\""), std::string::npos);
}

TYPED_TEST(BookSheets, TheListSeparatorFollowsTheLocale) {
  EXPECT_TRUE(this->book.setLocale("UTF-8"));
  EXPECT_EQ(this->book.listSeparator(), u';');
  EXPECT_TRUE(this->book.setLocale("UTF-8.comma"));
  EXPECT_EQ(this->book.listSeparator(), u',');
  EXPECT_TRUE(this->book.setLocale("UTF-8.semicolon"));
  EXPECT_EQ(this->book.listSeparator(), u';');
  EXPECT_FALSE(this->book.setLocale("no such locale"));
  EXPECT_NE(this->message(), "ok");
}

}  // namespace
}  // namespace rubrica::package_test
