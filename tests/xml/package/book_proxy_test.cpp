// The book that a caller holds: it finds out by itself which flavour a file is of.
#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"
#include "tests/xml/package/zip_builder.h"

namespace rubrica::package_test {
namespace {

const std::string kStrictUri = "http://purl.oclc.org/ooxml/spreadsheetml/main";

bool isStrict(Book& book) {
  return entryOf(saveRaw(book), "xl/workbook.xml").find(kStrictUri) != std::string::npos;
}

TEST(BookProxy, ANewBookIsTransitional) {
  const BookPtr book = newBook();
  EXPECT_FALSE(isStrict(*book));
  EXPECT_STREQ(book->errorMessage(), "ok");
  EXPECT_EQ(book->version(), 0x03080500U);
  EXPECT_EQ(book->biffVersion(), 0);
}

TEST(BookProxy, AFileOfTheOtherFlavourIsLoadedOnTheSecondTry) {
  const BookPtr book = newBook();
  ASSERT_TRUE(loadRaw(*book, zipOf(workbookEntries<excelStrict_tag>(2)))) << book->errorMessage();
  EXPECT_STREQ(book->errorMessage(), "ok");
  EXPECT_EQ(book->sheetCount(), 2);
  EXPECT_EQ(book->getSheet(1)->readNum(0, 0), 2);
  EXPECT_TRUE(isStrict(*book));
  ASSERT_TRUE(loadRaw(*book, zipOf(workbookEntries<excelNormal_tag>(3)))) << book->errorMessage();
  EXPECT_STREQ(book->errorMessage(), "ok");
  EXPECT_EQ(book->sheetCount(), 3);
  EXPECT_FALSE(isStrict(*book));
}

TEST(BookProxy, EveryWayToLoadTriesBothFlavours) {
  const test::TemporaryDirectory directory;
  test::writeText(directory.file("strict.xlsx"), zipOf(workbookEntries<excelStrict_tag>(3)));
  const std::u16string path = directory.file("strict.xlsx").u16string();
  const BookPtr whole = newBook(), one = newBook(), part = newBook(), raw = newBook();
  EXPECT_TRUE(whole->load(path.c_str()));
  EXPECT_EQ(whole->sheetCount(), 3);
  EXPECT_TRUE(one->loadSheet(path.c_str(), 1));
  EXPECT_EQ(std::u16string(one->getSheetName(0)), u"Two");
  EXPECT_TRUE(part->loadPartially(path.c_str(), 2, 5, 9));
  EXPECT_EQ(part->getSheet(0)->cellType(0, 0), CellType::empty);
  EXPECT_TRUE(loadRaw(*raw, zipOf(workbookEntries<excelStrict_tag>(3)), 0));
  EXPECT_EQ(raw->sheetCount(), 1);
}

TEST(BookProxy, InformationIsThatOfTheCurrentFlavour) {
  const test::TemporaryDirectory directory;
  test::writeText(directory.file("strict.xlsx"), zipOf(workbookEntries<excelStrict_tag>(3)));
  const std::u16string path = directory.file("strict.xlsx").u16string();
  const BookPtr book = newBook();
  EXPECT_FALSE(book->loadInfo(path.c_str()));
  EXPECT_STREQ(book->errorMessage(), "Element not found");
  ASSERT_TRUE(book->load(path.c_str()));
  EXPECT_TRUE(book->loadInfo(path.c_str())) << book->errorMessage();
  EXPECT_EQ(book->sheetCount(), 3);
}

TEST(BookProxy, ADamagedFileReportsTheSecondTrysError) {
  auto entries = workbookEntries<excelNormal_tag>();
  entry(entries, "xl/worksheets/sheet1.xml").content = "<worksheet";
  const BookPtr book = newBook();
  EXPECT_FALSE(loadRaw(*book, zipOf(entries)));
  EXPECT_STREQ(book->errorMessage(), "Element not found");
  // The implementation is the other one now, and goes back for the next file.
  ASSERT_TRUE(loadRaw(*book, zipOf(workbookEntries<excelNormal_tag>()))) << book->errorMessage();
  EXPECT_FALSE(isStrict(*book));
}

TEST(BookProxy, ABookThatFailedToLoadSavesNothing) {
  const test::TemporaryDirectory directory;
  test::writeText(directory.file("kept.xlsx"), "what stood there");
  const BookPtr book = newBook();
  book->addSheet(u"Old");
  EXPECT_FALSE(loadRaw(*book, "no archive"));
  EXPECT_FALSE(book->save(directory.file("kept.xlsx").u16string().c_str()));
  EXPECT_EQ(test::readText(directory.file("kept.xlsx")), "what stood there");
}

TEST(BookProxy, OperationsReachTheBookBehindIt) {
  const BookPtr book = newBook();
  Sheet* sheet = book->addSheet(u"One");
  ASSERT_NE(sheet, nullptr);
  EXPECT_EQ(book->sheetCount(), 1);
  EXPECT_EQ(book->getSheet(0), sheet);
  EXPECT_EQ(std::u16string(book->getSheetName(0)), u"One");
  EXPECT_EQ(book->sheetType(0), SheetType::sheet);
  EXPECT_NE(book->insertSheet(0, u"Zero"), nullptr);
  EXPECT_TRUE(book->moveSheet(0, 2));
  book->setActiveSheet(1);
  EXPECT_EQ(book->activeSheet(), 1);
  EXPECT_TRUE(book->delSheet(1));
  EXPECT_EQ(book->activeSheet(), 0);
  EXPECT_GT(book->formatSize(), 0);
  EXPECT_GT(book->fontSize(), 0);
  EXPECT_NE(book->addFormat(), nullptr);
  EXPECT_NE(book->addFont(), nullptr);
  const int id = book->addCustomNumFormat(u"0.0000");
  EXPECT_EQ(std::u16string(book->customNumFormat(id)), u"0.0000");
  book->setRgbMode(true);
  EXPECT_TRUE(book->rgbMode());
  book->setRefR1C1(true);
  EXPECT_TRUE(book->refR1C1());
  EXPECT_TRUE(book->setDate1904(true));
  EXPECT_TRUE(book->isDate1904());
  book->setTemplate(true);
  EXPECT_TRUE(book->isTemplate());
  EXPECT_TRUE(book->setLocale("UTF-8"));
  int size = 0;
  book->setDefaultFont(u"Arial", 10);
  EXPECT_EQ(std::u16string(book->defaultFont(&size)), u"Arial");
  EXPECT_EQ(size, 10);
  const double packed = book->datePack(2026, 11, 21);
  int year = 0, month = 0, day = 0;
  EXPECT_TRUE(book->dateUnpack(packed, &year, &month, &day));
  EXPECT_EQ(year * 10000 + month * 100 + day, 20261121);
}

}  // namespace
}  // namespace rubrica::package_test
