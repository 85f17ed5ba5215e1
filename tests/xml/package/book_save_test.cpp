// Saving a book as a package: which parts there are, in which order, of which types, by which way.
#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "tests/support/temporary_directory.h"
#include "tests/support/working_directory.h"
#include "tests/xml/flavours.h"
#include "tests/xml/package/zip_builder.h"
#include "xml/package_names.h"

namespace rubrica::package_test {
namespace {

// Lets TMPDIR name another directory for the life of one test.
class TemporaryFilesIn {
 public:
  explicit TemporaryFilesIn(const std::filesystem::path& directory) {
    const char* before = std::getenv("TMPDIR");
    if (before != nullptr) _before = before;
    setenv("TMPDIR", directory.c_str(), 1);
  }
  ~TemporaryFilesIn() {
    if (_before.empty()) {
      unsetenv("TMPDIR");
    } else {
      setenv("TMPDIR", _before.c_str(), 1);
    }
  }

 private:
  std::string _before;
};

template <class Tag>
class BookSave : public ::testing::Test {
 protected:
  bool load(const std::vector<TestEntry>& from) { return loadRaw(book, zipOf(from)); }
  std::string message() { return book.errorMessage(); }
  std::string savedEntry(std::string_view name) { return entryOf(saveRaw(book), name); }
  // The main part's type in what a save under this name wrote.
  std::string typeSavedAs(const std::u16string& name) {
    const std::filesystem::path path = directory.file("") / name;
    if (!book.save(path.u16string().c_str(), false)) return "not saved: " + message();
    const std::string types = entryOf(test::readText(path), "[Content_Types].xml");
    const ContentTypes read(types.data(), types.size());
    return read.contentType(part_name::kWorkbook);
  }

  test::TemporaryDirectory directory;
  XMLBookImplT<Tag> book;
};
TYPED_TEST_SUITE(BookSave, Flavours, FlavourNames);

TYPED_TEST(BookSave, ANewBookHasNothingButWhatItNeeds) {
  EXPECT_EQ(namesOf(saveRaw(this->book)),
            (std::vector<std::string>{"[Content_Types].xml", "_rels/.rels", "xl/_rels/workbook.xml.rels",
                                      "xl/styles.xml", "xl/workbook.xml"}));
  auto* sheet = this->book.addSheet(u"One", nullptr);
  ASSERT_NE(sheet, nullptr);
  ASSERT_TRUE(sheet->writeStr(0, 0, u"text"));
  EXPECT_EQ(namesOf(saveRaw(this->book)),
            (std::vector<std::string>{"[Content_Types].xml", "_rels/.rels", "xl/_rels/workbook.xml.rels",
                                      "xl/sharedStrings.xml", "xl/styles.xml", "xl/workbook.xml",
                                      "xl/worksheets/sheet1.xml"}));
}

TYPED_TEST(BookSave, PartsOfANewBookBearTheTransitionalTypes) {
  this->book.addSheet(u"One", nullptr)->writeStr(0, 0, u"text");
  const std::string saved = saveRaw(this->book);
  const std::string types = entryOf(saved, "[Content_Types].xml");
  const ContentTypes read(types.data(), types.size());
  EXPECT_EQ(read.contentType("/xl/workbook.xml"), content_type::kWorkbook);
  EXPECT_EQ(read.contentType("/xl/worksheets/sheet1.xml"), content_type::kWorksheet);
  EXPECT_EQ(read.contentType("/xl/styles.xml"), content_type::kStyles);
  EXPECT_EQ(read.contentType("/xl/sharedStrings.xml"), content_type::kSharedStrings);
  EXPECT_EQ(read.contentType("/_rels/.rels"), content_type::kRelationships);
  EXPECT_EQ(read.contentType("/any.xml"), "application/xml");
  const std::string links = entryOf(saved, "xl/_rels/workbook.xml.rels");
  Relationships workbook(links.data(), links.size());
  EXPECT_EQ(workbook.findByType(relationship_type::kStyles), "styles.xml");
  EXPECT_EQ(workbook.findByType(relationship_type::kWorksheet), "worksheets/sheet1.xml");
  EXPECT_EQ(workbook.findByType(relationship_type::kSharedStrings), "sharedStrings.xml");
  const std::string package = entryOf(saved, "_rels/.rels");
  Relationships root(package.data(), package.size());
  EXPECT_EQ(root.findByType(relationship_type::kOfficeDocument), "xl/workbook.xml");
}

TYPED_TEST(BookSave, TheExtensionGivesTheMainPartsType) {
  ASSERT_TRUE(this->load(workbookEntries<TypeParam>()));
  EXPECT_EQ(this->typeSavedAs(u"a.xlsm"), content_type::kMacroWorkbook);
  EXPECT_EQ(this->typeSavedAs(u"a.xltx"), content_type::kTemplate);
  EXPECT_TRUE(this->book.isTemplate());
  EXPECT_EQ(this->typeSavedAs(u"a.other"), content_type::kTemplate) << "another extension changes nothing";
  EXPECT_EQ(this->typeSavedAs(u"a.xltm"), content_type::kMacroTemplate);
  EXPECT_FALSE(this->book.isTemplate());
  EXPECT_EQ(this->typeSavedAs(u"book.XLSX"), content_type::kWorkbook);
  EXPECT_EQ(this->typeSavedAs(u"book.XlTm"), content_type::kMacroTemplate);
  EXPECT_EQ(this->typeSavedAs(u"a.xlsx"), content_type::kWorkbook);
  const auto names = namesOf(test::readText(this->directory.file("a.xlsm")));
  EXPECT_EQ(std::count(names.begin(), names.end(), "xl/vbaProject.bin"), 0);
}

TYPED_TEST(BookSave, APathOfFiveCharactersChangesNothingAndOneOfSixDoes) {
  const test::TemporaryWorkingDirectory here;
  this->book.setTemplate(true);
  ASSERT_TRUE(this->book.save(u".xlsx", false)) << this->message();
  EXPECT_TRUE(this->book.isTemplate());
  ASSERT_TRUE(this->book.save(u"a.xlsx", false)) << this->message();
  EXPECT_FALSE(this->book.isTemplate());
}

TYPED_TEST(BookSave, ATemplateIsTheTypeOfTheMainPart) {
  EXPECT_FALSE(this->book.isTemplate());
  this->book.setTemplate(true);
  EXPECT_TRUE(this->book.isTemplate());
  EXPECT_NE(this->savedEntry("[Content_Types].xml").find(content_type::kTemplate), std::string::npos);
  this->book.setTemplate(false);
  EXPECT_FALSE(this->book.isTemplate());
}

TYPED_TEST(BookSave, TheMainTypeIsSetForTheUsualNameEvenIfTheMainPartStandsElsewhere) {
  auto entries = workbookEntries<TypeParam>();
  for (TestEntry& e : entries) {
    if (e.name.starts_with("xl/")) e.name.replace(0, 2, "else");
    while (e.content.find("/xl/") != std::string::npos) e.content = replaced(e.content, "/xl/", "/else/");
  }
  ASSERT_TRUE(this->load(entries)) << this->message();
  EXPECT_EQ(this->typeSavedAs(u"a.xlsx"), content_type::kWorkbook);
  XMLBookImplT<TypeParam> again;
  EXPECT_TRUE(again.load((this->directory.file("a.xlsx")).u16string().c_str(), nullptr)) << again.errorMessage();
}

TYPED_TEST(BookSave, EverySavedBookAsksForACalculation) {
  EXPECT_NE(this->savedEntry("xl/workbook.xml").find("<calcPr calcId=\"125725\" fullCalcOnLoad=\"true\"/>"),
            std::string::npos)
      << this->savedEntry("xl/workbook.xml");
  auto entries = workbookEntries<TypeParam>();
  TestEntry& main = entry(entries, "xl/workbook.xml");
  main.content = replaced(main.content, "</sheets>", "</sheets><calcPr calcId=\"191029\" fullCalcOnLoad=\"0\"/>");
  ASSERT_TRUE(this->load(entries)) << this->message();
  const std::string saved = this->savedEntry("xl/workbook.xml");
  EXPECT_NE(saved.find("calcId=\"191029\""), std::string::npos) << saved;
  EXPECT_NE(saved.find("fullCalcOnLoad=\"true\""), std::string::npos) << saved;
}

TYPED_TEST(BookSave, TheCalculationChainGoes) {
  auto entries = workbookEntries<TypeParam>();
  addPart(entries, "xl/calcChain.xml", "<calcChain/>",
          "application/vnd.openxmlformats-officedocument.spreadsheetml.calcChain+xml");
  addLink(entries, "xl/workbook.xml", "rId9", "t/calcChain", "calcChain.xml");
  ASSERT_TRUE(this->load(entries)) << this->message();
  const std::string saved = saveRaw(this->book);
  for (const auto& [name, content] : entriesOf(saved)) {
    EXPECT_NE(name, "xl/calcChain.xml");
    EXPECT_EQ(content.find("calcChain"), std::string::npos) << name;
  }
}

TYPED_TEST(BookSave, NewRelationshipsStartPastTheHighestNumberInTheFile) {
  auto entries = workbookEntries<TypeParam>();
  addLink(entries, "xl/workbook.xml", "rId41", "urn:other", "other.bin");
  ASSERT_TRUE(this->load(entries)) << this->message();
  ASSERT_NE(this->book.addSheet(u"New", nullptr), nullptr);
  const std::string saved = this->savedEntry("xl/_rels/workbook.xml.rels");
  EXPECT_NE(saved.find("Id=\"rId42\""), std::string::npos) << saved;
  EXPECT_NE(this->savedEntry("xl/workbook.xml").find("r:id=\"rId42\""), std::string::npos);
}

TYPED_TEST(BookSave, SharedStringsAreCountedAsTheyAreUsed) {
  auto* sheet = this->book.addSheet(u"One", nullptr);
  sheet->writeStr(0, 0, u"a");
  sheet->writeStr(0, 1, u"a");
  sheet->writeStr(0, 2, u"b");
  EXPECT_NE(this->savedEntry("xl/sharedStrings.xml").find("count=\"3\" uniqueCount=\"2\""), std::string::npos)
      << this->savedEntry("xl/sharedStrings.xml");
  sheet->writeNum(0, 1, 1);
  auto* other = this->book.addSheet(u"Two", sheet);
  other->clear(0, 0, 0, 0);
  EXPECT_NE(this->savedEntry("xl/sharedStrings.xml").find("count=\"3\" uniqueCount=\"2\""), std::string::npos);
  this->book.delSheet(0);
  EXPECT_NE(this->savedEntry("xl/sharedStrings.xml").find("count=\"1\" uniqueCount=\"2\""), std::string::npos);
}

TYPED_TEST(BookSave, CountsThatAFileStatesWronglyArePutRight) {
  auto entries = workbookEntries<TypeParam>();
  addPart(entries, "xl/sharedStrings.xml",
          replaced(partText<TypeParam>("sst", "<si><t>a</t></si><si><t>b</t></si>"), "<sst ",
                   "<sst count=\"99\" uniqueCount=\"77\" "),
          content_type::kSharedStrings);
  addLink(entries, "xl/workbook.xml", "rId9", relationship_type::kSharedStrings, "sharedStrings.xml");
  entry(entries, "xl/worksheets/sheet1.xml").content =
      partText<TypeParam>("worksheet", "<sheetData><row r=\"1\"><c r=\"A1\" t=\"s\"><v>1</v></c></row></sheetData>");
  ASSERT_TRUE(this->load(entries)) << this->message();
  const std::string saved = this->savedEntry("xl/sharedStrings.xml");
  EXPECT_NE(saved.find(" count=\"1\""), std::string::npos) << saved;
  EXPECT_NE(saved.find(" uniqueCount=\"2\""), std::string::npos) << saved;
}

TYPED_TEST(BookSave, ATemporaryFileGivesTheSamePartsAndIsGoneAfterwards) {
  const TemporaryFilesIn scratch(this->directory.file("scratch"));
  std::filesystem::create_directory(this->directory.file("scratch"));
  auto* sheet = this->book.addSheet(u"One", nullptr);
  for (int row = 0; row < 500; ++row) sheet->writeStr(row, 0, (u"text " + std::u16string(row % 40, u'x')).c_str());
  const std::u16string plain = this->directory.file("plain.xlsx").u16string();
  const std::u16string through = this->directory.file("through.xlsx").u16string();
  ASSERT_TRUE(this->book.save(plain.c_str(), false)) << this->message();
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(this->book.save(through.c_str(), true)) << this->message();
    EXPECT_TRUE(std::filesystem::is_empty(this->directory.file("scratch")));
  }
  EXPECT_EQ(entriesOf(test::readText(this->directory.file("through.xlsx"))),
            entriesOf(test::readText(this->directory.file("plain.xlsx"))));
}

TYPED_TEST(BookSave, ATemporaryFileThatCantBeHadIsAnError) {
  const TemporaryFilesIn scratch(this->directory.file("none"));
  test::writeText(this->directory.file("kept.xlsx"), "what stood there");
  EXPECT_FALSE(this->book.save(this->directory.file("kept.xlsx").u16string().c_str(), true));
  EXPECT_EQ(this->message(), "can't open temporary file for writing");
  EXPECT_EQ(test::readText(this->directory.file("kept.xlsx")), "what stood there");
}

TYPED_TEST(BookSave, AFileThatCantBeWrittenIsAnError) {
  EXPECT_FALSE(this->book.save(this->directory.file("none/a.xlsx").u16string().c_str(), false));
  EXPECT_EQ(this->message(), "can't open file for writing");
  EXPECT_FALSE(this->book.save(nullptr, false));
  EXPECT_NE(this->message(), "ok");
  EXPECT_TRUE(this->book.save(this->directory.file("a.xlsx").u16string().c_str(), false));
  EXPECT_EQ(this->message(), "ok");
}

TYPED_TEST(BookSave, SavingDoesNotChangeTheBook) {
  auto* sheet = this->book.addSheet(u"One", nullptr);
  sheet->writeNum(0, 0, 0.1);
  const std::string first = saveRaw(this->book);
  EXPECT_EQ(saveRaw(this->book), first);
  EXPECT_EQ(sheet->readNum(0, 0), 0.1);
  sheet->writeNum(0, 0, 0.2);
  EXPECT_NE(saveRaw(this->book), first);
}

TYPED_TEST(BookSave, ABookWithoutASheetIsSaved) {
  EXPECT_EQ(this->book.sheetCount(), 0);
  XMLBookImplT<TypeParam> again;
  ASSERT_TRUE(loadRaw(again, saveRaw(this->book))) << again.errorMessage();
  EXPECT_EQ(again.sheetCount(), 0);
  EXPECT_NE(again.addSheet(u"First", nullptr), nullptr) << again.errorMessage();
}

TYPED_TEST(BookSave, OutArgumentsMayBeNull) {
  std::size_t size = 0;
  EXPECT_TRUE(this->book.saveRaw(nullptr, &size));
  EXPECT_GT(size, 0U);
  EXPECT_TRUE(this->book.saveRaw(nullptr, nullptr));
}

TYPED_TEST(BookSave, WhatIsSavedIsLoadedByTheProxy) {
  this->book.addSheet(u"Caf\u00e9 \U0001F600", nullptr)->writeStr(2, 3, u"\u4e2d & <");
  const BookPtr again = newBook();
  ASSERT_TRUE(loadRaw(*again, saveRaw(this->book))) << again->errorMessage();
  EXPECT_EQ(std::u16string(again->getSheetName(0)), u"Caf\u00e9 \U0001F600");
  EXPECT_EQ(std::u16string(again->getSheet(0)->readStr(2, 3)), u"\u4e2d & <");
}

}  // namespace
}  // namespace rubrica::package_test
