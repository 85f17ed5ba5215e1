#include <cmath>
#include <limits>

#include "tests/biff/names/book_fixture.h"

namespace rubrica::test {
namespace {

TEST(FormulaCells, EachFormOfWritingHasItsCachedValue) {
  const BookPtr book = bookWith();
  Sheet& sheet = *book->getSheet(0);
  EXPECT_TRUE(sheet.writeFormula(0, 0, u"=1+2", nullptr));
  EXPECT_TRUE(sheet.writeFormulaNum(1, 0, u"1+2", 3, nullptr));
  EXPECT_TRUE(sheet.writeFormulaStr(2, 0, u"\"a\"&\"b\"", u"ab", nullptr));
  EXPECT_TRUE(sheet.writeFormulaBool(3, 0, u"1=1", true, nullptr));
  EXPECT_TRUE(sheet.writeFormulaStr(4, 0, u"\"\"", u"", nullptr));
  EXPECT_TRUE(sheet.writeFormulaNum(5, 0, u"#N/A", 3, nullptr));
  for (int pass = 0; pass < 2; ++pass) {
    const BookPtr copy = reloaded(*book);
    Sheet& read = pass == 0 ? sheet : *copy->getSheet(0);
    EXPECT_EQ(read.readNum(0, 0, nullptr), 0);
    EXPECT_EQ(read.readNum(1, 0, nullptr), 3);
    EXPECT_EQ(std::u16string(read.readStr(2, 0, nullptr)), u"ab");
    EXPECT_TRUE(read.readBool(3, 0, nullptr));
    EXPECT_EQ(read.cellType(4, 0), CellType::string);
    EXPECT_EQ(std::u16string(read.readStr(4, 0, nullptr)), u"");
    EXPECT_EQ(read.cellType(5, 0), CellType::error);
    EXPECT_EQ(read.readError(5, 0), static_cast<ErrorType>(42));
    EXPECT_EQ(formula(*(pass == 0 ? book : copy), 0, 2, 0), u"\"a\"&\"b\"");
  }
}

TEST(FormulaCells, OnlyFormulasReadAsFormulas) {
  const BookPtr book = bookWith();
  Sheet& sheet = *book->getSheet(0);
  sheet.writeNum(0, 0, 1, nullptr);
  for (const int col : {0, 1}) {
    EXPECT_EQ(sheet.readFormula(0, col, nullptr), nullptr);
    EXPECT_STREQ(book->errorMessage(), "cell doesn't contain a formula");
  }
  sheet.writeFormula(0, 0, u"1+1", nullptr);
  EXPECT_TRUE(sheet.isFormula(0, 0));
  sheet.writeNum(0, 0, 7, nullptr);
  EXPECT_FALSE(sheet.isFormula(0, 0));
  EXPECT_EQ(sheet.readNum(0, 0, nullptr), 7);
}

TEST(FormulaCells, AFailedFormulaLeavesTheCellAsItWas) {
  const BookPtr book = bookWith();
  Sheet& sheet = *book->getSheet(0);
  sheet.writeNum(0, 0, 7, nullptr);
  EXPECT_FALSE(sheet.writeFormula(0, 0, u"sum(A1)", nullptr));
  EXPECT_EQ(sheet.readNum(0, 0, nullptr), 7);
  EXPECT_FALSE(sheet.writeFormula(70000, 0, u"1", nullptr));
  EXPECT_STREQ(book->errorMessage(), "row must be in range 0-65535");
  EXPECT_FALSE(sheet.writeFormulaStr(1, 0, u"1", std::u16string(32768, u'x').c_str(), nullptr));
  EXPECT_STREQ(book->errorMessage(), "string is too long");
  EXPECT_TRUE(sheet.writeFormulaStr(1, 0, u"1", std::u16string(32767, u'x').c_str(), nullptr));
  EXPECT_EQ(std::u16string(reloaded(*book)->getSheet(0)->readStr(1, 0, nullptr)), std::u16string(32767, u'x'));
}

TEST(FormulaCells, NotANumberNeverBecomesAnotherKindOfValue) {
  const BookPtr book = bookWith();
  Sheet& sheet = *book->getSheet(0);
  double allOnes = 0;
  std::memset(&allOnes, 0xFF, sizeof(allOnes));
  sheet.writeFormulaNum(0, 0, u"1", allOnes, nullptr);
  EXPECT_EQ(sheet.cellType(0, 0), CellType::number);
  EXPECT_TRUE(std::isnan(reloaded(*book)->getSheet(0)->readNum(0, 0, nullptr)));
}

TEST(FormulaCells, VeryLongAndDeepTextsAnswer) {
  const BookPtr book = bookWith();
  Sheet& sheet = *book->getSheet(0);
  std::u16string sums = u"1";
  for (int i = 0; i < 30000; ++i) sums += u"+1";
  for (const std::u16string& text :
       {std::u16string(100000, u'('), std::u16string(100000, u')'), sums, std::u16string(30000, u'-'),
        std::u16string(100000, u'A'), u"SUM(" + std::u16string(50000, u',') + u")"}) {
    sheet.writeFormula(0, 0, text.c_str(), nullptr);
    EXPECT_STRNE(book->errorMessage(), "") << text.size();
  }
  EXPECT_FALSE(sheet.writeFormula(0, 0, sums.c_str(), nullptr));
  EXPECT_STREQ(book->errorMessage(), "formula is too long");
}

TEST(FormulaCells, ACopiedFormulaKeepsItsReferences) {
  const BookPtr book = bookWith();
  Sheet& sheet = *book->getSheet(0);
  sheet.writeFormulaNum(0, 0, u"B1+$C$2", 5, nullptr);
  EXPECT_TRUE(sheet.copyCell(0, 0, 9, 9));
  EXPECT_EQ(formula(*book, 0, 9, 9), u"B1+$C$2");
  EXPECT_EQ(sheet.readNum(9, 9, nullptr), 5);
}

// Rows 0 to 2 of column 1 share "the cell to the left, times 2".
Bytes sharedFile() {
  const Bytes exp = bytesOf({0x01, 0, 0, 1, 0});
  const Record shared{id::kShrFmla, bytesOf({0, 0, 2, 0, 1, 1, 0, 3, 9, 0,  //
                                             0x4C, 0, 0, 0xFF, 0xC0, 0x1E, 2, 0, 0x05})};
  return bookFile({}, {formulaRecord(0, 1, exp), shared, formulaRecord(1, 1, exp), formulaRecord(2, 1, exp)});
}

TEST(SharedFormulas, PrintForTheCellThatIsRead) {
  const BookPtr book = loaded(sharedFile());
  EXPECT_EQ(formula(*book, 0, 0, 1), u"A1*2");
  EXPECT_EQ(formula(*book, 0, 2, 1), u"A3*2");
}

TEST(SharedFormulas, AreHandedOnWhenTheirFirstCellIsOverwritten) {
  const BookPtr book = loaded(sharedFile());
  book->getSheet(0)->writeNum(0, 1, 5, nullptr);
  EXPECT_EQ(formula(*book, 0, 1, 1), u"A2*2");
  const Bytes saved = savedBytes(*book);
  const auto shared = bodiesOf(saved, id::kShrFmla);
  ASSERT_EQ(shared.size(), 1u);
  EXPECT_EQ(Bytes(shared[0].begin(), shared[0].begin() + 6), bytesOf({1, 0, 2, 0, 1, 1}));
  for (const Bytes& cell : bodiesOf(saved, id::kFormula)) {
    EXPECT_EQ(Bytes(cell.end() - 5, cell.end()), bytesOf({0x01, 1, 0, 1, 0}));
  }
  const BookPtr copy = loaded(saved);
  EXPECT_EQ(formula(*copy, 0, 1, 1), u"A2*2");
  EXPECT_EQ(formula(*copy, 0, 2, 1), u"A3*2");
}

TEST(SharedFormulas, GoWithTheirLastCell) {
  const BookPtr book = loaded(sharedFile());
  for (int row = 0; row < 3; ++row) book->getSheet(0)->writeFormula(row, 1, u"1", nullptr);
  EXPECT_TRUE(bodiesOf(savedBytes(*book), id::kShrFmla).empty());
}

TEST(SharedFormulas, AreUntouchedByALoadAndSave) {
  const auto before = bodiesOf(sharedFile(), id::kShrFmla);
  EXPECT_EQ(bodiesOf(savedBytes(*loaded(sharedFile())), id::kShrFmla), before);
}

TEST(SharedFormulas, BecomePlainInCopiesOfACellAndInOtherBooks) {
  const BookPtr book = loaded(sharedFile());
  EXPECT_TRUE(book->getSheet(0)->copyCell(2, 1, 7, 7));
  EXPECT_EQ(formula(*book, 0, 7, 7), u"A3*2");
  const BookPtr other = bookWith({u"First"});
  ASSERT_NE(other->addSheet(u"Copy", book->getSheet(0)), nullptr) << other->errorMessage();
  EXPECT_EQ(formula(*reloaded(*other), 1, 1, 1), u"A2*2");
  EXPECT_TRUE(bodiesOf(savedBytes(*other), id::kShrFmla).empty());
}

TEST(SharedFormulas, AJumpTableIsNoObstacleToResolvingThem) {
  const Bytes exp = bytesOf({0x01, 0, 0, 1, 0});
  const Bytes tokens = bytesOf({0x1E, 1, 0, 0x19, 0x04, 1, 0, 4, 0, 9, 0, 0x4C, 0, 0, 0xFF, 0xC0, 0x42, 2, 100, 0});
  const Bytes body = BytesBuilder().bytes(bytesOf({0, 0, 1, 0, 1, 1, 0, 2, 20, 0})).bytes(tokens);
  const BookPtr book = loaded(bookFile({}, {formulaRecord(0, 1, exp), {id::kShrFmla, body}, formulaRecord(1, 1, exp)}));
  EXPECT_TRUE(book->getSheet(0)->copyCell(1, 1, 5, 5));
  const auto formulas = bodiesOf(savedBytes(*book), id::kFormula);
  ASSERT_EQ(formulas.size(), 3u);
  const Bytes& copy = formulas.back();
  EXPECT_EQ(Bytes(copy.begin() + 33, copy.begin() + 38), bytesOf({0x44, 1, 0, 0, 0xC0}));
}

// A1:A2 is the array {1,2}.
Bytes arrayFile() {
  const Bytes exp = bytesOf({0x01, 0, 0, 0, 0});
  const Record array{id::kArray,
                     BytesBuilder()
                         .bytes(bytesOf({0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 8, 0, 0x60, 0, 0, 0, 0, 0, 0, 0}))
                         .bytes(bytesOf({1, 0, 0}))
                         .bytes(bytesOf({1, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F}))
                         .bytes(bytesOf({1, 0, 0, 0, 0, 0, 0, 0, 0x40}))};
  return bookFile({}, {formulaRecord(0, 0, exp), array, formulaRecord(1, 0, exp)});
}

TEST(ArrayFormulas, ConstantsGoWithTheCopyOfACell) {
  const BookPtr book = loaded(arrayFile());
  EXPECT_TRUE(book->getSheet(0)->copyCell(0, 0, 5, 0));
  const auto formulas = bodiesOf(savedBytes(*book), id::kFormula);
  ASSERT_EQ(formulas.size(), 3u);
  EXPECT_EQ(formulas[2].size(), 22u + 8 + 3 + 18);
}

TEST(ArrayFormulas, CoverTheCellsThatAreLeft) {
  const BookPtr book = loaded(arrayFile());
  book->getSheet(0)->writeNum(1, 0, 3, nullptr);
  const auto arrays = bodiesOf(savedBytes(*book), id::kArray);
  ASSERT_EQ(arrays.size(), 1u);
  EXPECT_EQ(Bytes(arrays[0].begin(), arrays[0].begin() + 6), bytesOf({0, 0, 0, 0, 0, 0}));
}

TEST(DataTables, ACellCopiedOutOfOneIsItsValue) {
  const Bytes member = bytesOf({0x02, 1, 0, 1, 0});
  const Record table{id::kTable, bytesOf({1, 0, 2, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})};
  const BookPtr book = loaded(bookFile({}, {formulaRecord(1, 1, member), table, formulaRecord(2, 1, member)}));
  EXPECT_TRUE(book->getSheet(0)->copyCell(1, 1, 9, 9));
  EXPECT_FALSE(book->getSheet(0)->isFormula(9, 9));
  EXPECT_EQ(book->getSheet(0)->readNum(9, 9, nullptr), 0);
  EXPECT_EQ(bodiesOf(savedBytes(*book), id::kTable).at(0), table.bytes);
}

TEST(FormulaRecords, ACachedTextMayGoOnInContinues) {
  Record cell = formulaRecord(0, 0, bytesOf({0x1E, 1, 0}));
  std::memcpy(cell.bytes.data() + 6, bytesOf({0, 0, 0, 0, 0, 0, 0xFF, 0xFF}).data(), 8);
  const BookPtr book = loaded(
      bookFile({}, {cell, {id::kString, bytesOf({4, 0, 0, 'a', 'b'})}, {id::kContinue, bytesOf({1, 'c', 0, 'd', 0})}}));
  EXPECT_EQ(std::u16string(book->getSheet(0)->readStr(0, 0, nullptr)), u"abcd");
}

TEST(FormulaRecords, EveryCutAnswers) {
  Record cell = formulaRecord(0, 1, bytesOf({0x01, 0, 0, 1, 0}));
  std::memcpy(cell.bytes.data() + 6, bytesOf({0, 0, 0, 0, 0, 0, 0xFF, 0xFF}).data(), 8);
  const std::vector<Record> whole = {cell,
                                     {id::kShrFmla, bytesOf({0, 0, 2, 0, 1, 1, 0, 3, 5, 0, 0x4C, 0, 0, 0xFF, 0xC0})},
                                     {id::kString, bytesOf({2, 0, 1, 'a', 0, 'b', 0})}};
  for (std::size_t which = 0; which < whole.size(); ++which) {
    for (std::size_t size = 0; size <= whole[which].bytes.size(); ++size) {
      std::vector<Record> records = whole;
      records[which].bytes.resize(size);
      const Bytes file = bookFile({}, records);
      BookPtr book(createBiffBook());
      if (!book->loadRaw(file.data(), file.size(), -1, -1, -1)) {
        EXPECT_STRNE(book->errorMessage(), "ok");
        continue;
      }
      book->getSheet(0)->readFormula(0, 1, nullptr);
      book->getSheet(0)->copyCell(0, 1, 3, 3);
      const Bytes saved = savedBytes(*book);
      EXPECT_TRUE(book->loadRaw(saved.data(), saved.size(), -1, -1, -1)) << which << ' ' << size;
    }
  }
}

TEST(FormulaRecords, AnyTokenBytesLoadPrintCopyAndSave) {
  for (int first = 0; first < 256; ++first) {
    for (const int rest : {0, 1, 0x7F, 0xFF}) {
      const Bytes tokens = BytesBuilder().u8(static_cast<unsigned>(first)).fill(6, static_cast<unsigned>(rest));
      const BookPtr book = loaded(bookFile({}, {formulaRecord(0, 0, tokens)}));
      book->getSheet(0)->readFormula(0, 0, nullptr);
      EXPECT_TRUE(book->getSheet(0)->copyCell(0, 0, 1, 0));
      const BookPtr other = bookWith();
      EXPECT_NE(other->addSheet(u"Copy", book->getSheet(0)), nullptr) << other->errorMessage();
      EXPECT_NE(book->addSheet(u"Copy", book->getSheet(0)), nullptr);
      savedBytes(*book);
    }
  }
}

TEST(Biff5Formulas, AreReadIntoTheWiderForm) {
  const Bytes tokens = bytesOf({0x44, 0x02, 0xC0, 3, 0x17, 2, 'h', 'i', 0x08});
  const BookPtr book = loaded(bookFile({}, {formulaRecord(0, 0, tokens)}, 0x0500));
  EXPECT_EQ(formula(*book, 0, 0, 0), u"D3&\"hi\"");
  EXPECT_EQ(formula(*reloaded(*book), 0, 0, 0), u"D3&\"hi\"");
}

TEST(Biff5Formulas, DeletedSheetsAreReferenceErrors) {
  const Bytes tokens =
      bytesOf({0x5A, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0xC0, 0, 0x1E, 1, 0, 3});
  const BookPtr book = loaded(bookFile({}, {formulaRecord(0, 0, tokens)}, 0x0500));
  EXPECT_EQ(formula(*book, 0, 0, 0), u"#REF!+1");
}

TEST(Biff5Formulas, ThatNoLongerFitIntoARecordBecomeAnError) {
  BytesBuilder tokens;
  tokens.bytes(bytesOf({0x1E, 1, 0}));
  for (int i = 0; i < 1500; ++i) tokens.bytes(bytesOf({0x17, 2, 'h', 'i', 0x08}));
  const BookPtr book = loaded(bookFile({}, {formulaRecord(0, 0, tokens)}, 0x0500));
  EXPECT_EQ(formula(*book, 0, 0, 0), u"#REF!");
  EXPECT_EQ(formula(*reloaded(*book), 0, 0, 0), u"#REF!");
}

}  // namespace
}  // namespace rubrica::test
