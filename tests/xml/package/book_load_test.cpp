// Loading a book from a package: what is found where, what each part becomes, what is kept of a part of a book.
#include <algorithm>
#include <filesystem>

#include "tests/support/temporary_directory.h"
#include "tests/xml/flavours.h"
#include "tests/xml/package/zip_builder.h"
#include "xml/package_names.h"
#include "xml/shared_strings.h"
#include "xml/styles.h"

namespace rubrica::package_test {
namespace {

const std::string kBinaryType = "application/octet-stream";

template <class Tag>
class BookLoad : public ::testing::Test {
 protected:
  bool load(const std::vector<TestEntry>& from, int sheetIndex = -1, int firstRow = -1, int lastRow = -1) {
    return loadRaw(book, zipOf(from), sheetIndex, firstRow, lastRow);
  }
  std::string message() { return book.errorMessage(); }
  std::u16string nameAt(int index) {
    const char16_t* name = book.getSheetName(index);
    return name == nullptr ? u"(null)" : name;
  }
  double numberAt(int sheet, int row = 0, int col = 0) {
    ISheetT<char16_t>* found = book.getSheet(sheet);
    return found == nullptr ? -1 : found->readNum(row, col);
  }
  std::string link(std::string_view kind) { return flavourText<Tag>().relationships + "/" + std::string(kind); }
  std::string worksheet(const std::string& content) { return partText<Tag>("worksheet", content); }
  // The content of an entry of the book as it is saved.
  std::string savedEntry(std::string_view name) { return entryOf(saveRaw(book), name); }

  XMLBookImplT<Tag> book;
  std::vector<TestEntry> entries = workbookEntries<Tag>(3);
};
TYPED_TEST_SUITE(BookLoad, Flavours, FlavourNames);

TYPED_TEST(BookLoad, SheetsComeInTheWorkbooksOrderWithTheirCells) {
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->message(), "ok");
  ASSERT_EQ(this->book.sheetCount(), 3);
  EXPECT_EQ(this->nameAt(1), u"Two");
  EXPECT_EQ(this->numberAt(0), 1);
  EXPECT_EQ(this->numberAt(2), 3);
}

TYPED_TEST(BookLoad, TheOrderOfTheEntriesDoesNotMatter) {
  std::reverse(this->entries.begin(), this->entries.end());
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->numberAt(1), 2);
  ASSERT_TRUE(this->load(this->entries, 1)) << this->message();
  EXPECT_EQ(this->book.sheetCount(), 1);
  EXPECT_EQ(this->numberAt(0), 2);
}

TYPED_TEST(BookLoad, NamesOfEntriesAreComparedWithoutRegardToCaseAndSlashes) {
  entry(this->entries, "[Content_Types].xml").name = "[CONTENT_types].XML";
  entry(this->entries, "xl/workbook.xml").name = "XL\\Workbook.xml";
  entry(this->entries, "xl/worksheets/sheet1.xml").name = "/xl\\worksheets\\SHEET1.xml";
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->numberAt(0), 1);
  const auto names = namesOf(saveRaw(this->book));
  EXPECT_NE(std::find(names.begin(), names.end(), "xl/worksheets/SHEET1.xml"), names.end());
  EXPECT_TRUE(std::none_of(names.begin(), names.end(),
                           [](const std::string& name) { return name.find('\\') != std::string::npos; }));
}

TYPED_TEST(BookLoad, AbsoluteAndRelativeTargetsReachTheSameSheet) {
  TestEntry& links = entry(this->entries, "xl/_rels/workbook.xml.rels");
  links.content = replaced(links.content, "\"worksheets/sheet1.xml", "\"/xl/worksheets/sheet1.xml");
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->numberAt(0), 1);
  EXPECT_EQ(this->numberAt(1), 2);
}

TYPED_TEST(BookLoad, ATargetAboveTheBaseIsNotFollowed) {
  TestEntry& links = entry(this->entries, "xl/_rels/workbook.xml.rels");
  links.content = replaced(links.content, "\"worksheets/sheet1.xml", "\"../xl/worksheets/sheet1.xml");
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->book.getSheet(0), nullptr);
  EXPECT_EQ(this->message(), "sheet not found");
  EXPECT_EQ(this->numberAt(1), 2);
}

TYPED_TEST(BookLoad, OfTwoSheetsWhoseNamesDifferInCaseTheLaterStands) {
  this->entries.push_back({"xl/worksheets/Sheet1.XML",
                           this->worksheet("<sheetData><row r=\"1\"><c r=\"A1\"><v>77</v></c></row></sheetData>")});
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->numberAt(0), 77);
}

TYPED_TEST(BookLoad, OfTwoMainPartsOfOneNameTheLaterStands) {
  TestEntry earlier = entry(this->entries, "xl/workbook.xml");
  earlier.name = "XL/workbook.xml";
  earlier.content = "not read";
  this->entries.insert(this->entries.begin(), earlier);
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->book.sheetCount(), 3);
  EXPECT_NE(this->savedEntry("xl/workbook.xml").find("<sheets>"), std::string::npos);
}

TYPED_TEST(BookLoad, OfTwoContentTypesAndRelationshipsTheLaterStands) {
  this->entries.insert(this->entries.begin(), {"[content_types].xml", "not read"});
  this->entries.insert(this->entries.begin(), {"XL/_rels/workbook.xml.rels", "not read"});
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->numberAt(2), 3);
}

TYPED_TEST(BookLoad, AnEmptyBoundPartIsAnErrorAndAnEmptyOpaqueOneIsNot) {
  addPart(this->entries, "xl/empty.bin", "", kBinaryType);
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  const auto names = namesOf(saveRaw(this->book));
  EXPECT_NE(std::find(names.begin(), names.end(), "xl/empty.bin"), names.end());
  for (const char* bound : {"[Content_Types].xml", "xl/workbook.xml", "xl/_rels/workbook.xml.rels",
                            "xl/worksheets/sheet2.xml", "_rels/.rels"}) {
    auto emptied = this->entries;
    entry(emptied, bound).content.clear();
    EXPECT_FALSE(this->load(emptied)) << bound;
    EXPECT_EQ(this->message(), "data is empty") << bound;
  }
}

TYPED_TEST(BookLoad, OpaquePartsKeepTheirBytes) {
  std::string bytes;
  for (int i = 0; i < 5000; ++i) bytes.push_back(static_cast<char>(i * i >> 3));
  addPart(this->entries, "xl/vbaProject.bin", bytes, "application/vnd.ms-office.vbaProject");
  addPart(this->entries, "docProps/app.xml", "<not well-formed",
          "application/vnd.openxmlformats-officedocument.extended-properties+xml");
  addPart(this->entries, "xl/charts/chart1.xml", bytes,
          "application/vnd.openxmlformats-officedocument.drawingml.chart+xml");
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  const std::string saved = saveRaw(this->book);
  EXPECT_EQ(entryOf(saved, "xl/vbaProject.bin"), bytes);
  EXPECT_EQ(entryOf(saved, "docProps/app.xml"), "<not well-formed");
  EXPECT_EQ(entryOf(saved, "xl/charts/chart1.xml"), bytes);
}

TYPED_TEST(BookLoad, AnEntryOfNoContentTypeIsPassedOver) {
  addPart(this->entries, "xl/unknown.thing", "bytes");
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  const auto names = namesOf(saveRaw(this->book));
  EXPECT_EQ(std::find(names.begin(), names.end(), "xl/unknown.thing"), names.end());
}

TYPED_TEST(BookLoad, WhatAPackageMustHaveIsNamedWhenItIsMissing) {
  const std::vector<std::pair<std::string, std::string>> needed = {
      {"[Content_Types].xml", "load error: workbook content types are not found"},
      {"xl/workbook.xml", "workbook main xml file is not found"},
      {"xl/_rels/workbook.xml.rels", "load error: workbook relationships are not found"}};
  for (const auto& [name, expected] : needed) {
    auto without = this->entries;
    without.erase(std::find_if(without.begin(), without.end(), [&](const auto& e) { return e.name == name; }));
    EXPECT_FALSE(this->load(without));
    EXPECT_EQ(this->message(), expected);
  }
}

TYPED_TEST(BookLoad, AllFourMainTypesAreWorkbooks) {
  for (const std::string_view type :
       {content_type::kWorkbook, content_type::kMacroWorkbook, content_type::kTemplate, content_type::kMacroTemplate}) {
    auto changed = this->entries;
    TestEntry& types = entry(changed, "[Content_Types].xml");
    types.content = replaced(types.content, content_type::kWorkbook, type);
    ASSERT_TRUE(this->load(changed)) << type << this->message();
    EXPECT_EQ(this->book.sheetCount(), 3);
    EXPECT_EQ(this->book.isTemplate(), type == content_type::kTemplate);
  }
}

TYPED_TEST(BookLoad, AMainPartElsewhereTakesItsDirectoryAsBase) {
  for (TestEntry& e : this->entries) {
    if (e.name.starts_with("xl/")) e.name.replace(0, 2, "inner/book");
    while (e.content.find("/xl/") != std::string::npos) e.content = replaced(e.content, "/xl/", "/inner/book/");
  }
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->book.baseDirectory(), "/inner/book");
  EXPECT_EQ(this->numberAt(1), 2);
}

TYPED_TEST(BookLoad, AMainPartInTheRootIsAWorkbookToo) {
  for (TestEntry& e : this->entries) {
    if (e.name.starts_with("xl/")) e.name.erase(0, 3);
    while (e.content.find("/xl/") != std::string::npos) e.content = replaced(e.content, "/xl/", "/");
  }
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->book.baseDirectory(), "");
  EXPECT_EQ(this->numberAt(1), 2);
}

TYPED_TEST(BookLoad, OfSeveralPartsOfTheMainTypeThePackageNamesTheOne) {
  TestEntry& types = entry(this->entries, "[Content_Types].xml");
  types.content = replaced(types.content, "application/xml", content_type::kWorkbook);
  this->entries.push_back({"docProps/custom.xml", "<anything/>"});
  TestEntry& package = entry(this->entries, "_rels/.rels");
  package.content = replaced(package.content, "\"xl/workbook.xml", "\"/xl/workbook.xml");
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->book.sheetCount(), 3);
  EXPECT_EQ(this->savedEntry("docProps/custom.xml"), "<anything/>");
}

// Sheets that only the default of their extension declares.
TYPED_TEST(BookLoad, APlainXmlPartIsASheetIfItStartsAsOne) {
  TestEntry& types = entry(this->entries, "[Content_Types].xml");
  for (const char* number : {"1", "2", "3"}) {
    types.content = replaced(types.content,
                             "<Override PartName=\"/xl/worksheets/sheet" + std::string(number) +
                                 ".xml\" ContentType=\"" + std::string(content_type::kWorksheet) + "\"/>",
                             "");
  }
  const std::string root = "<worksheet xmlns=\"" + flavourText<TypeParam>().main + "\">";
  entry(this->entries, "xl/worksheets/sheet1.xml").content = root + "<sheetData/></worksheet>";
  // The sign has to end within the first 100 bytes.
  const auto padded = [&](std::size_t before) {
    return "<!--" + std::string(before - 7, ' ') + "-->" + root + "<sheetData/></worksheet>";
  };
  const std::size_t sign = std::string_view("<worksheet xmlns=").size();
  entry(this->entries, "xl/worksheets/sheet2.xml").content = padded(100 - sign);
  entry(this->entries, "xl/worksheets/sheet3.xml").content = padded(100 - sign + 1);
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_NE(this->book.getSheet(0), nullptr);
  EXPECT_NE(this->book.getSheet(1), nullptr);
  EXPECT_EQ(this->book.getSheet(2), nullptr);
  EXPECT_EQ(this->book.sheetType(2), SheetType::unknown);
  entry(this->entries, "xl/worksheets/sheet3.xml").content = "<short/>";
  EXPECT_TRUE(this->load(this->entries)) << this->message();
}

TYPED_TEST(BookLoad, TheKindOfASheetIsThatOfItsPart) {
  TestEntry& types = entry(this->entries, "[Content_Types].xml");
  const auto retype = [&](const char* number, std::string_view type) {
    const std::string part = "sheet" + std::string(number) + ".xml\" ContentType=\"";
    types.content = replaced(types.content, part + std::string(content_type::kWorksheet), part + std::string(type));
  };
  retype("1", content_type::kChartsheet);
  retype("2", "application/vnd.openxmlformats-officedocument.spreadsheetml.dialogsheet+xml");
  this->entries.pop_back();  // the third sheet's part
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->book.sheetType(0), SheetType::chart);
  EXPECT_EQ(this->book.sheetType(1), SheetType::unknown);
  EXPECT_EQ(this->message(), "ok");
  EXPECT_EQ(this->book.sheetType(2), SheetType::unknown);
  EXPECT_EQ(this->message(), "sheet not found");
  EXPECT_EQ(this->book.sheetType(3), SheetType::unknown);
  EXPECT_EQ(this->message(), "index is out of range");
  EXPECT_EQ(this->book.getSheet(-1), nullptr);
  EXPECT_EQ(this->message(), "sheet index is out of range");
}

TYPED_TEST(BookLoad, OneSheetLeavesABookOfThatSheet) {
  TestEntry& main = entry(this->entries, "xl/workbook.xml");
  main.content = replaced(main.content, "<sheets>",
                          "<bookViews><workbookView firstSheet=\"1\" activeTab=\"2\"/></bookViews><sheets>");
  main.content = replaced(main.content, "</sheets>",
                          "</sheets><definedNames><definedName name=\"a\" localSheetId=\"0\">1</definedName>"
                          "<definedName name=\"b\" localSheetId=\"1\">2</definedName>"
                          "<definedName name=\"c\">3</definedName></definedNames>");
  ASSERT_TRUE(this->load(this->entries, 1)) << this->message();
  EXPECT_EQ(this->book.sheetCount(), 1);
  EXPECT_EQ(this->nameAt(0), u"Two");
  EXPECT_EQ(this->numberAt(0), 2);
  EXPECT_EQ(this->book.activeSheet(), 0);
  const std::string saved = saveRaw(this->book);
  const std::string workbook = entryOf(saved, "xl/workbook.xml");
  EXPECT_NE(workbook.find("name=\"Two\" sheetId=\"12\""), std::string::npos) << workbook;
  EXPECT_EQ(workbook.find("name=\"a\""), std::string::npos) << workbook;
  EXPECT_NE(workbook.find("name=\"b\" localSheetId=\"0\""), std::string::npos) << workbook;
  EXPECT_NE(workbook.find("name=\"c\""), std::string::npos) << workbook;
  EXPECT_EQ(entryOf(saved, "xl/worksheets/sheet1.xml"), "");
  EXPECT_EQ(entryOf(saved, "[Content_Types].xml").find("sheet1.xml"), std::string::npos);
  EXPECT_EQ(entryOf(saved, "xl/_rels/workbook.xml.rels").find("sheet3.xml"), std::string::npos);
  XMLBookImplT<TypeParam> again;
  ASSERT_TRUE(loadRaw(again, saved)) << again.errorMessage();
  EXPECT_EQ(again.sheetCount(), 1);
}

TYPED_TEST(BookLoad, ASheetIndexThatNoSheetHasIsAnError) {
  for (const int index : {3, 100, -2}) {
    EXPECT_FALSE(this->load(this->entries, index)) << index;
    EXPECT_EQ(this->message(), "sheetIndex is out of range") << index;
  }
  EXPECT_TRUE(this->load(this->entries, 2));
}

TYPED_TEST(BookLoad, AWindowOfRowsLeavesTheOthersOut) {
  entry(this->entries, "xl/worksheets/sheet1.xml").content = this->worksheet(
      "<sheetData><row r=\"1\"><c r=\"A1\"><v>1</v></c></row><row r=\"2\"><c r=\"A2\"><v>2</v></c></row>"
      "<row r=\"3\"><c r=\"A3\"><v>3</v></c></row></sheetData>");
  ASSERT_TRUE(this->load(this->entries, 0, 1, 1)) << this->message();
  EXPECT_EQ(this->book.getSheet(0)->cellType(0, 0), CellType::empty);
  EXPECT_EQ(this->numberAt(0, 1), 2);
  EXPECT_EQ(this->book.getSheet(0)->cellType(2, 0), CellType::empty);
}

TYPED_TEST(BookLoad, FilesGoThroughATemporaryFileAsThroughMemory) {
  const test::TemporaryDirectory directory;
  addPart(this->entries, "xl/opaque.bin", "bytes", kBinaryType);
  addPart(this->entries, "xl/media/image1.png", "\x89PNG\r\n", "image/png");
  TestEntry& main = entry(this->entries, "xl/workbook.xml");
  main.content = replaced(main.content, "<sheets>",
                          "<q:AlternateContent xmlns:q=\"http://schemas.openxmlformats.org/markup-compatibility/2006\">"
                          "<q:Choice Requires=\"q\"><foreign/></q:Choice></q:AlternateContent><sheets>");
  test::writeText(directory.file("book.xlsx"), zipOf(this->entries));
  const std::u16string path = directory.file("book.xlsx").u16string();
  const std::u16string scratch = directory.file("scratch.tmp").u16string();
  ASSERT_TRUE(this->book.load(path.c_str(), nullptr)) << this->message();
  const std::string saved = saveRaw(this->book);
  XMLBookImplT<TypeParam> other;
  ASSERT_TRUE(other.load(path.c_str(), scratch.c_str())) << other.errorMessage();
  EXPECT_EQ(saveRaw(other), saved);
  EXPECT_EQ(other.pictureSize(), 1);
  ASSERT_TRUE(other.loadPartially(path.c_str(), 1, 0, 0, scratch.c_str())) << other.errorMessage();
  EXPECT_EQ(other.getSheet(0)->readNum(0, 0), 2);
  ASSERT_TRUE(other.loadSheet(path.c_str(), 2, scratch.c_str())) << other.errorMessage();
  EXPECT_EQ(other.getSheet(0)->readNum(0, 0), 3);
  const std::u16string nowhere = directory.file("none/scratch.tmp").u16string();
  EXPECT_FALSE(other.load(path.c_str(), nowhere.c_str()));
  EXPECT_STREQ(other.errorMessage(), "can't open temporary file for writing");
}

TYPED_TEST(BookLoad, FilesThatCantBeReadAreSaidToBe) {
  const test::TemporaryDirectory directory;
  EXPECT_FALSE(this->book.load(nullptr, nullptr));
  EXPECT_FALSE(this->book.load(directory.file("none.xlsx").u16string().c_str(), nullptr));
  EXPECT_EQ(this->message(), "can't open file for reading");
  EXPECT_FALSE(this->book.loadRaw(nullptr, 100, -1, -1, -1));
  EXPECT_EQ(this->message(), "data is empty");
  EXPECT_FALSE(this->book.loadWithoutEmptyCells(u"any.xlsx"));
  EXPECT_EQ(this->message(), "Book::loadWithoutEmptyCells() is not supported for xlsx files");
}

TYPED_TEST(BookLoad, InformationIsTheWorkbookAlone) {
  const test::TemporaryDirectory directory;
  entry(this->entries, "xl/worksheets/sheet1.xml").content = "never read";
  test::writeText(directory.file("book.xlsx"), zipOf(this->entries));
  ASSERT_TRUE(this->book.loadInfo(directory.file("book.xlsx").u16string().c_str())) << this->message();
  EXPECT_EQ(this->book.sheetCount(), 3);
  EXPECT_EQ(this->nameAt(2), u"Three");
  EXPECT_EQ(this->book.getSheet(0), nullptr);
  EXPECT_EQ(this->message(), "sheet index is out of range");
  EXPECT_EQ(this->book.addSheet(u"New", nullptr), nullptr);
  std::erase_if(this->entries, [](const TestEntry& e) { return e.name == "xl/_rels/workbook.xml.rels"; });
  test::writeText(directory.file("book.xlsx"), zipOf(this->entries));
  EXPECT_FALSE(this->book.loadInfo(directory.file("book.xlsx").u16string().c_str()));
  EXPECT_EQ(this->message(), "workbook relationships not found");
}

TYPED_TEST(BookLoad, SharedStringsAndStylesAreFoundByEitherFlavoursTypes) {
  for (const FlavourText& types : {flavourText<excelNormal_tag>(), flavourText<excelStrict_tag>()}) {
    auto with = workbookEntries<TypeParam>();
    addPart(with, "xl/theStrings.xml", partText<TypeParam>("sst", "<si><t>text</t></si>"),
            content_type::kSharedStrings);
    addPart(with, "xl/look.xml", partText<TypeParam>("styleSheet", ""), content_type::kStyles);
    addLink(with, "xl/workbook.xml", "rIdA", types.relationships + "/sharedStrings", "theStrings.xml");
    addLink(with, "xl/workbook.xml", "rIdB", types.relationships + "/styles", "/xl/look.xml");
    entry(with, "xl/worksheets/sheet1.xml").content =
        this->worksheet("<sheetData><row r=\"1\"><c r=\"A1\" t=\"s\"><v>0</v></c></row></sheetData>");
    ASSERT_TRUE(this->load(with)) << this->message();
    EXPECT_EQ(std::u16string(this->book.getSheet(0)->readStr(0, 0)), u"text");
    EXPECT_NE(this->book.styles(), nullptr);
  }
}

TYPED_TEST(BookLoad, WithoutSharedStringsInlineTextIsReadAndTheFirstWrittenOneMakesThePart) {
  entry(this->entries, "xl/worksheets/sheet1.xml").content = this->worksheet(
      "<sheetData><row r=\"1\"><c r=\"A1\" t=\"inlineStr\"><is><t>inside</t></is></c></row></sheetData>");
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->book.sharedStrings(), nullptr);
  EXPECT_EQ(this->book.styles(), nullptr);
  EXPECT_EQ(std::u16string(this->book.getSheet(0)->readStr(0, 0)), u"inside");
  EXPECT_TRUE(this->book.getSheet(0)->writeStr(1, 0, u"outside"));
  const std::string saved = saveRaw(this->book);
  EXPECT_NE(entryOf(saved, "xl/sharedStrings.xml").find("outside"), std::string::npos);
  EXPECT_NE(entryOf(saved, "[Content_Types].xml").find(content_type::kSharedStrings), std::string::npos);
  EXPECT_NE(entryOf(saved, "xl/_rels/workbook.xml.rels").find("Id=\"rId4\""), std::string::npos);
}

TYPED_TEST(BookLoad, EveryPrefixMayStandForANamespace) {
  const FlavourText text = flavourText<TypeParam>();
  entry(this->entries, "xl/workbook.xml").content =
      "<x:workbook xmlns:x=\"" + text.main + "\" xmlns:rel=\"" + text.relationships +
      "\"><x:sheets><x:sheet name=\"One\" sheetId=\"1\" rel:id=\"rId1\"/></x:sheets></x:workbook>";
  entry(this->entries, "xl/worksheets/sheet1.xml").content =
      "<s:worksheet xmlns:s=\"" + text.main +
      "\"><s:sheetData><s:row r=\"1\"><s:c r=\"A1\"><s:v>42</s:v></s:c></s:row></s:sheetData></s:worksheet>";
  TestEntry& links = entry(this->entries, "xl/_rels/workbook.xml.rels");
  links.content =
      "<p:Relationships xmlns:p=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
      "<p:Relationship Id=\"rId1\" Type=\"" +
      text.relationships + "/worksheet\" Target=\"worksheets/sheet1.xml\"/></p:Relationships>";
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->numberAt(0), 42);
}

TYPED_TEST(BookLoad, MarkupCompatibilityIsResolvedInEveryBoundPart) {
  const std::string mc = "xmlns:mc=\"http://schemas.openxmlformats.org/markup-compatibility/2006\"";
  entry(this->entries, "xl/worksheets/sheet1.xml").content =
      this->worksheet("<sheetData/><mc:AlternateContent " + mc +
                      "><mc:Choice Requires=\"new\" "
                      "xmlns:new=\"urn:new\"><mergeCells><new:thing/></mergeCells></mc:Choice><mc:Fallback>"
                      "<mergeCells><mergeCell ref=\"A1:B2\"/></mergeCells></mc:Fallback></mc:AlternateContent>");
  TestEntry& main = entry(this->entries, "xl/workbook.xml");
  main.content =
      replaced(main.content, "<sheets>",
               "<n:early xmlns:n=\"urn:n\" " + mc + " mc:Ignorable=\"n\"/><workbookPr date1904=\"1\"/><sheets>");
  main.content = replaced(main.content, "<workbook ", "<workbook " + mc + " xmlns:n=\"urn:n\" mc:Ignorable=\"n\" ");
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->book.getSheet(0)->mergeSize(), 1);
  EXPECT_TRUE(this->book.isDate1904());
  EXPECT_EQ(this->book.droppedMarkupOfParts(), 2U);
}

TYPED_TEST(BookLoad, ExtensionsComeBackAsTheyWere) {
  const std::string inner = "<x14:thing xmlns:x14=\"urn:x14\" a=\"1\">text<x14:other/></x14:thing>";
  entry(this->entries, "xl/worksheets/sheet1.xml").content =
      this->worksheet("<sheetData/><extLst><ext uri=\"{1}\">" + inner + "</ext></extLst>");
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_NE(this->savedEntry("xl/worksheets/sheet1.xml").find(inner), std::string::npos);
}

TYPED_TEST(BookLoad, EachLoadIsAFreshStart) {
  addPart(this->entries, "xl/opaque.bin", "bytes", kBinaryType);
  addPart(this->entries, "xl/media/image1.png", "\x89PNG\r\n", "image/png");
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  ASSERT_TRUE(this->book.getSheet(0)->writeStr(0, 0, u"text"));
  ASSERT_TRUE(this->load(workbookEntries<TypeParam>(1))) << this->message();
  EXPECT_EQ(this->book.sheetCount(), 1);
  EXPECT_EQ(this->book.pictureSize(), 0);
  EXPECT_EQ(this->book.sharedStrings(), nullptr);
  const auto names = namesOf(saveRaw(this->book));
  EXPECT_EQ(names.size(), 5U);
}

TYPED_TEST(BookLoad, AFailedLoadLeavesABookOfNothingThatCanBeLoadedAgain) {
  auto broken = this->entries;
  entry(broken, "xl/worksheets/sheet3.xml").content = "<worksheet";
  EXPECT_FALSE(this->load(broken));
  EXPECT_NE(this->message(), "ok");
  EXPECT_EQ(this->book.sheetCount(), 0);
  EXPECT_EQ(saveRaw(this->book), "");
  EXPECT_EQ(this->book.addSheet(u"New", nullptr), nullptr);
  ASSERT_TRUE(this->load(this->entries)) << this->message();
  EXPECT_EQ(this->numberAt(2), 3);
}

TYPED_TEST(BookLoad, APartOfAnotherFlavourFailsTheWholeLoad) {
  using Other = typename Flavour<TypeParam>::Other;
  entry(this->entries, "xl/worksheets/sheet2.xml").content = partText<Other>("worksheet", "<sheetData/>");
  EXPECT_FALSE(this->load(this->entries));
  EXPECT_EQ(this->message(), "Element not found");
}

}  // namespace
}  // namespace rubrica::package_test
