// The sheets of an .xls book: adding, copying, moving, removing, naming and activating.
#include "tests/biff/core/book_fixture.h"
#include "tests/support/temporary_directory.h"

namespace rubrica {
namespace {

using test::BytesBuilder;
using test::findRecord;
using test::newBook;
using test::OneSheet;
using test::Record;
using test::reloaded;
using test::savedRecords;
using test::substream;
using test::textOf;

BookPtr bookOf(std::initializer_list<const char16_t*> names) {
  auto book = newBook();
  for (const char16_t* name : names) EXPECT_NE(book->addSheet(name), nullptr);
  return book;
}

std::u16string order(Book& book) {
  std::u16string names;
  for (int i = 0; i < book.sheetCount(); ++i) names += book.getSheet(i)->name();
  return names;
}

TEST(BookSheets, ANewBookHasNone) {
  auto book = newBook();
  EXPECT_STREQ(book->errorMessage(), "ok");
  EXPECT_EQ(book->sheetCount(), 0);
  EXPECT_EQ(book->getSheet(0), nullptr);
  EXPECT_STREQ(book->errorMessage(), "index is out of range");
  EXPECT_EQ(book->version(), 0x03080500u);
  EXPECT_EQ(book->biffVersion(), 0x0600);
}

TEST(BookSheets, NamesAreCutAt31CharactersWithAWarning) {
  auto book = newBook();
  const std::u16string name(32, u'n');
  Sheet* sheet = book->addSheet(name.c_str());
  ASSERT_NE(sheet, nullptr);
  EXPECT_STREQ(book->errorMessage(), "warning: sheet's name is cut to 31 characters");
  EXPECT_EQ(textOf(sheet->name()), name.substr(0, 31));
  EXPECT_NE(book->addSheet(std::u16string(31, u'm').c_str()), nullptr);
  EXPECT_STREQ(book->errorMessage(), "ok");
}

TEST(BookSheets, NamesThatExcelRefusesAreRefused) {
  auto book = bookOf({u"Data"});
  EXPECT_EQ(book->addSheet(u""), nullptr);
  EXPECT_STREQ(book->errorMessage(), "sheet name can't be empty");
  EXPECT_EQ(book->addSheet(nullptr), nullptr);
  EXPECT_STREQ(book->errorMessage(), "sheet name can't be 0");
  for (const char16_t* name : {u"a:b", u"a\\b", u"a*b", u"a?b", u"a/b", u"[a", u"a]", u"'a", u"a'"}) {
    EXPECT_EQ(book->addSheet(name), nullptr);
    EXPECT_STREQ(book->errorMessage(), "sheet name has an invalid character");
  }
  for (const char16_t* name : {u"Data", u"dATA"}) {
    EXPECT_EQ(book->addSheet(name), nullptr);
    EXPECT_STREQ(book->errorMessage(), "book already contains such sheet name");
  }
  EXPECT_NE(book->addSheet(u"it's fine"), nullptr);
  EXPECT_EQ(book->sheetCount(), 2);
}

TEST(BookSheets, RenamingFollowsTheSameRulesAndReachesTheFile) {
  auto book = bookOf({u"One", u"Two"});
  Sheet* sheet = book->getSheet(0);
  sheet->setName(u"two");
  EXPECT_STREQ(book->errorMessage(), "book already contains such sheet name");
  sheet->setName(u"a/b");
  EXPECT_STREQ(book->errorMessage(), "sheet name has an invalid character");
  EXPECT_EQ(textOf(sheet->name()), u"One");
  sheet->setName(u"ONE");
  EXPECT_EQ(textOf(sheet->name()), u"ONE");
  EXPECT_EQ(textOf(book->getSheetName(0)), u"One") << "the list of sheets takes the name at the next save";
  const auto again = reloaded(*book);
  EXPECT_EQ(textOf(again->getSheetName(0)), u"ONE");
  EXPECT_EQ(textOf(book->getSheetName(0)), u"ONE");
}

TEST(BookSheets, InsertingPutsTheSheetInItsPlace) {
  auto book = bookOf({u"A", u"B"});
  EXPECT_NE(book->insertSheet(1, u"X"), nullptr);
  EXPECT_NE(book->insertSheet(0, u"Y"), nullptr);
  EXPECT_EQ(order(*book), u"YAXB");
  EXPECT_EQ(book->insertSheet(5, u"Z"), nullptr);
  EXPECT_STREQ(book->errorMessage(), "index is out of range");
  EXPECT_EQ(book->insertSheet(-1, u"Z"), nullptr);
  EXPECT_EQ(order(*reloaded(*book)), u"YAXB");
}

TEST(BookSheets, MovingGoesBeforeTheDestination) {
  auto book = bookOf({u"0", u"1", u"2", u"3"});
  ASSERT_TRUE(book->moveSheet(1, 3));
  EXPECT_EQ(order(*book), u"0213");
  ASSERT_TRUE(book->moveSheet(3, 0));
  EXPECT_EQ(order(*book), u"3021");
  ASSERT_TRUE(book->moveSheet(0, 4));
  EXPECT_EQ(order(*book), u"0213");
  EXPECT_EQ(order(*reloaded(*book)), u"0213");
}

TEST(BookSheets, MovesWithoutSenseAreRefused) {
  auto book = bookOf({u"0", u"1", u"2", u"3"});
  const struct {
    int from, to;
    const char* message;
  } moves[] = {{-1, 0, "srcIndex is out of range"},
               {4, 0, "srcIndex is out of range"},
               {0, 5, "dstIndex is out of range"},
               {0, -1, "dstIndex is out of range"},
               {1, 1, "there is no sense: srcIndex is equal to dstIndex"},
               {1, 2, "there is no sense: srcIndex is equal to dstIndex - 1"}};
  for (const auto& [from, to, message] : moves) {
    EXPECT_FALSE(book->moveSheet(from, to));
    EXPECT_STREQ(book->errorMessage(), message);
  }
  EXPECT_EQ(order(*book), u"0123");
}

TEST(BookSheets, TheLastSheetStays) {
  auto book = bookOf({u"A", u"B"});
  EXPECT_FALSE(book->delSheet(2));
  EXPECT_STREQ(book->errorMessage(), "index is out of range");
  EXPECT_TRUE(book->delSheet(0));
  EXPECT_EQ(order(*book), u"B");
  EXPECT_FALSE(book->delSheet(0));
  EXPECT_STREQ(book->errorMessage(), "can't remove the last sheet in workbook");
}

TEST(BookSheets, OnlyTheActiveSheetIsSelected) {
  auto book = bookOf({u"A", u"B", u"C"});
  book->setActiveSheet(2);
  EXPECT_EQ(book->activeSheet(), 2);
  book->setActiveSheet(3);
  EXPECT_STREQ(book->errorMessage(), "index is out of range");
  book->setActiveSheet(-1);
  EXPECT_STREQ(book->errorMessage(), "index is out of range");
  EXPECT_EQ(book->activeSheet(), 2);
  const auto records = savedRecords(*book);
  for (int sheet = 0; sheet < 3; ++sheet) {
    const auto records2 = substream(records, sheet + 1);
    const Record* window = findRecord(records2, id::kWindow2);
    ASSERT_NE(window, nullptr);
    const auto flags = std::to_integer<unsigned>(window->bytes[0]) | std::to_integer<unsigned>(window->bytes[1]) << 8;
    EXPECT_EQ((flags & 0x0200) != 0, sheet == 2);
  }
  ASSERT_TRUE(book->delSheet(2));
  EXPECT_EQ(book->activeSheet(), 1) << "an active sheet past the end becomes the last";
}

TEST(BookSheets, TabIdsCountFromOne) {
  auto book = bookOf({u"A", u"B", u"C"});
  book->delSheet(1);
  const auto records = savedRecords(*book);
  EXPECT_EQ(findRecord(records, id::kRrTabId)->bytes, test::Bytes(BytesBuilder().u16(1).u16(2)));
}

TEST(BookSheets, StatesTravelInTheListOfSheets) {
  auto book = bookOf({u"A", u"B"});
  EXPECT_TRUE(book->getSheet(1)->setHidden(SheetState::veryHidden));
  EXPECT_FALSE(book->getSheet(1)->setHidden(static_cast<SheetState>(3)));
  const auto again = reloaded(*book);
  EXPECT_EQ(again->getSheet(0)->hidden(), SheetState::visible);
  EXPECT_EQ(again->getSheet(1)->hidden(), SheetState::veryHidden);
}

TEST(BookSheets, ACopyHasTheCellsOfItsSourceAndStandsForItself) {
  OneSheet b;
  Format* format = b.book->addFormat();
  format->setNumFormat(numformat::percent);
  b.sheet->writeNum(0, 0, 1.5, format);
  b.sheet->writeStr(0, 1, u"text");
  b.sheet->writeFormulaNum(0, 2, u"A1*2", 3);
  Sheet* copy = b.book->addSheet(u"Copy", b.sheet);
  ASSERT_NE(copy, nullptr);
  b.sheet->writeNum(0, 0, 9);
  b.sheet->writeStr(0, 1, u"changed");
  EXPECT_EQ(copy->readNum(0, 0), 1.5);
  EXPECT_EQ(textOf(copy->readStr(0, 1)), u"text");
  EXPECT_EQ(textOf(copy->readFormula(0, 2)), u"A1*2");
  EXPECT_EQ(copy->cellFormat(0, 0), format);
  EXPECT_EQ(textOf(copy->name()), u"Copy");
  const auto again = reloaded(*b.book);
  EXPECT_EQ(textOf(again->getSheet(1)->readStr(0, 1)), u"text");
  EXPECT_EQ(textOf(again->getSheet(0)->readStr(0, 1)), u"changed");
}

TEST(BookSheets, ACopyFromAnotherBookBringsItsTextsAndFormatsAlong) {
  OneSheet source, target;
  Format* format = source.book->addFormat();
  format->setNumFormat(source.book->addCustomNumFormat(u"0.000"));
  source.sheet->writeNum(0, 0, 1.5, format);
  source.sheet->writeStr(0, 1, u"text", format);
  source.sheet->writeBool(0, 2, true);
  source.sheet->writeFormulaNum(0, 3, u"A1*2", 3);
  source.sheet->writeFormulaStr(0, 4, u"Sheet1!B1&\"!\"", u"text!");
  source.sheet->writeFormulaBool(0, 5, u"Sheet1!A1>1", true);
  target.sheet->writeStr(0, 0, u"other text");
  Sheet* copy = target.book->addSheet(u"Copy", source.sheet);
  ASSERT_NE(copy, nullptr) << target.book->errorMessage();
  source.book.reset();
  EXPECT_EQ(copy->readNum(0, 0), 1.5);
  EXPECT_EQ(textOf(copy->readStr(0, 1)), u"text");
  EXPECT_TRUE(copy->readBool(0, 2));
  EXPECT_EQ(textOf(copy->readFormula(0, 3)), u"A1*2");
  EXPECT_FALSE(copy->isFormula(0, 4)) << "what another book's names and sheets meant isn't known here";
  EXPECT_EQ(textOf(copy->readStr(0, 4)), u"text!");
  EXPECT_TRUE(copy->readBool(0, 5));
  EXPECT_EQ(textOf(target.book->customNumFormat(copy->cellFormat(0, 0)->numFormat())), u"0.000");
  EXPECT_EQ(copy->cellFormat(0, 0), copy->cellFormat(0, 1)) << "one format stays one format";
  EXPECT_EQ(textOf(reloaded(*target.book)->getSheet(1)->readStr(0, 1)), u"text");
}

TEST(BookSheets, AfterLoadInfoTheNamesAreThereAndNoSheetCanBeAdded) {
  auto book = bookOf({u"A", u"B"});
  const test::TemporaryDirectory directory;
  const std::u16string wide = directory.file("book.xls").u16string();
  ASSERT_TRUE(book->save(wide.c_str())) << book->errorMessage();
  ASSERT_TRUE(book->loadInfo(wide.c_str()));
  EXPECT_EQ(book->sheetCount(), 0);
  EXPECT_EQ(textOf(book->getSheetName(1)), u"B");
  EXPECT_EQ(book->addSheet(u"C"), nullptr);
  EXPECT_STREQ(book->errorMessage(), "integrity error: _boundSheets.size() != _sheets.size()");
}

TEST(BookSheets, LoadingOneSheetLeavesOneSheet) {
  auto book = bookOf({u"A", u"B", u"C"});
  for (int i = 0; i < 3; ++i) {
    for (int row = 0; row < 20; ++row) book->getSheet(i)->writeNum(row, 0, 100 * i + row);
  }
  const test::TemporaryDirectory directory;
  const std::u16string wide = directory.file("book.xls").u16string();
  ASSERT_TRUE(book->save(wide.c_str()));
  ASSERT_TRUE(book->loadSheet(wide.c_str(), 1));
  EXPECT_EQ(order(*book), u"B");
  EXPECT_EQ(book->getSheet(0)->readNum(19, 0), 119.0);
  EXPECT_EQ(order(*reloaded(*book)), u"B");
  for (const int index : {3, -2}) {
    EXPECT_FALSE(book->loadSheet(wide.c_str(), index));
    EXPECT_STREQ(book->errorMessage(), "sheetIndex is out of range");
  }
  ASSERT_TRUE(book->loadPartially(wide.c_str(), 2, 5, 9));
  EXPECT_EQ(book->getSheet(0)->cellType(4, 0), CellType::empty);
  EXPECT_EQ(book->getSheet(0)->readNum(5, 0), 205.0);
  EXPECT_EQ(book->getSheet(0)->readNum(9, 0), 209.0);
  EXPECT_EQ(book->getSheet(0)->cellType(10, 0), CellType::empty);
  EXPECT_EQ(book->getSheet(0)->readStr(4, 0), nullptr);
  EXPECT_STREQ(book->errorMessage(), "this cell doesn't contain a string");
  const auto again = reloaded(*book);
  EXPECT_EQ(again->getSheet(0)->firstRow(), 5);
  EXPECT_EQ(again->getSheet(0)->lastRow(), 10);
}

TEST(BookSheets, LoadingWithoutEmptyCellsDropsBlanks) {
  OneSheet b;
  b.sheet->writeNum(0, 0, 1);
  b.sheet->writeBlank(5, 5, nullptr);
  const test::TemporaryDirectory directory;
  const std::u16string wide = directory.file("book.xls").u16string();
  ASSERT_TRUE(b.book->save(wide.c_str()));
  ASSERT_TRUE(b.book->loadWithoutEmptyCells(wide.c_str()));
  EXPECT_EQ(b.book->getSheet(0)->cellType(5, 5), CellType::empty);
  EXPECT_EQ(b.book->getSheet(0)->readNum(0, 0), 1.0);
}

TEST(BookSheets, FilesThatArentThereOrHaveNoNameFail) {
  auto book = newBook();
  EXPECT_FALSE(book->load(nullptr));
  EXPECT_STREQ(book->errorMessage(), "file name name can't be 0");
  EXPECT_FALSE(book->loadInfo(nullptr));
  EXPECT_STREQ(book->errorMessage(), "file name name can't be 0");
  EXPECT_FALSE(book->load(u"/no/such/file.xls"));
  EXPECT_STREQ(book->errorMessage(), "can't open file for reading");
  EXPECT_FALSE(book->save(nullptr));
  EXPECT_STREQ(book->errorMessage(), "file name can't be 0");
  EXPECT_FALSE(book->save(u"/no/such/directory/file.xls"));
  EXPECT_STREQ(book->errorMessage(), "can't open file for writing");
  EXPECT_FALSE(book->loadRaw(nullptr, 100));
  EXPECT_STREQ(book->errorMessage(), "readHeader: file is corrupt (size < 512 bytes)");
}

TEST(BookSheets, ABookCanBeLoadedAgainAfterAFailure) {
  OneSheet b;
  b.sheet->writeStr(0, 0, u"text");
  const auto bytes = test::savedBytes(*b.book);
  auto book = newBook();
  EXPECT_FALSE(test::loadBytes(*book, test::Bytes(600)));
  EXPECT_STREQ(book->errorMessage(), "invalid file format");
  ASSERT_TRUE(test::loadBytes(*book, bytes));
  EXPECT_STREQ(book->errorMessage(), "ok");
  EXPECT_EQ(textOf(book->getSheet(0)->readStr(0, 0)), u"text");
}

TEST(BookSheets, ReferenceModeFollowsTheLastSheet) {
  auto book = newBook();
  book->setRefR1C1();
  EXPECT_TRUE(book->refR1C1());
  book->addSheet(u"A");
  EXPECT_TRUE(book->refR1C1());
  book->setRefR1C1(false);
  EXPECT_FALSE(book->refR1C1());
  EXPECT_FALSE(reloaded(*book)->refR1C1());
}

}  // namespace
}  // namespace rubrica
