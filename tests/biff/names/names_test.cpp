#include "tests/biff/names/book_fixture.h"
#include "tests/support/temporary_directory.h"

namespace rubrica::test {
namespace {

struct Range {
  int rowFirst = -9, rowLast = -9, colFirst = -9, colLast = -9;
  bool operator==(const Range&) const = default;
};

bool getName(Sheet& sheet, const char16_t* name, Range& range, int scope = Sheet::kScopeUndefined) {
  return sheet.getNamedRange(name, &range.rowFirst, &range.rowLast, &range.colFirst, &range.colLast, scope, nullptr);
}

bool setName(Sheet& sheet, const char16_t* name, const Range& r, int scope = Sheet::kScopeUndefined) {
  return sheet.setNamedRange(name, r.rowFirst, r.rowLast, r.colFirst, r.colLast, scope, false);
}

TEST(NamedRanges, RefuseBlanksInNames) {
  const BookPtr book = bookWith();
  Sheet& sheet = *book->getSheet(0);
  EXPECT_FALSE(setName(sheet, u"My Name", {0, 1, 0, 1}));
  EXPECT_STREQ(book->errorMessage(), "space symbol isn't allowed");
  EXPECT_EQ(sheet.namedRangeSize(), 0);
  EXPECT_TRUE(setName(sheet, u"My_Name", {0, 1, 0, 1}));
  EXPECT_STREQ(book->errorMessage(), "ok");
}

TEST(NamedRanges, RefuseEmptyAndOverlongNamesAndCellsOffTheSheet) {
  const BookPtr book = bookWith();
  Sheet& sheet = *book->getSheet(0);
  EXPECT_FALSE(setName(sheet, u"", {0, 1, 0, 1}));
  EXPECT_FALSE(setName(sheet, nullptr, {0, 1, 0, 1}));
  EXPECT_TRUE(setName(sheet, std::u16string(255, u'n').c_str(), {0, 1, 0, 1}));
  EXPECT_FALSE(setName(sheet, std::u16string(256, u'n').c_str(), {0, 1, 0, 1}));
  EXPECT_STREQ(book->errorMessage(), "string is too long");
  EXPECT_FALSE(setName(sheet, u"N", {0, 65536, 0, 1}));
  EXPECT_STREQ(book->errorMessage(), "row must be in range 0-65535");
  EXPECT_FALSE(setName(sheet, u"N", {0, 1, 0, 256}));
  EXPECT_STREQ(book->errorMessage(), "col must be in range 0-255");
  EXPECT_TRUE(setName(sheet, u"N", {0, 65535, 0, 255}));
  EXPECT_FALSE(setName(sheet, u"N", {0, 1, 0, 1}, 1));
  EXPECT_STREQ(book->errorMessage(), "index is out of range");
}

TEST(NamedRanges, OneNameInOneScopeIsOneEntry) {
  const BookPtr book = bookWith({u"A", u"B"});
  Sheet& a = *book->getSheet(0);
  Sheet& b = *book->getSheet(1);
  EXPECT_TRUE(setName(a, u"Area", {0, 1, 0, 1}));
  EXPECT_TRUE(setName(b, u"AREA", {4, 5, 4, 5}, Sheet::kScopeWorkbook));
  EXPECT_EQ(a.namedRangeSize(), 1);
  Range range;
  EXPECT_TRUE(getName(a, u"area", range));
  EXPECT_EQ(range, (Range{4, 5, 4, 5}));
  EXPECT_TRUE(setName(b, u"Area", {7, 7, 7, 7}, 1));
  EXPECT_EQ(a.namedRangeSize(), 1);
  EXPECT_EQ(b.namedRangeSize(), 2);
  EXPECT_TRUE(getName(a, u"Area", range, 1));
  EXPECT_EQ(range, (Range{7, 7, 7, 7}));
  EXPECT_FALSE(getName(a, u"Area", range, 0));
  EXPECT_STREQ(book->errorMessage(), "named range is not found");
}

TEST(NamedRanges, AreWrittenAsAbsoluteReferencesOverTheSheet) {
  const BookPtr book = bookWith();
  Sheet& sheet = *book->getSheet(0);
  setName(sheet, u"R", {1, 2, 3, 4});
  setName(sheet, u"C", {1, 1, 3, 3});
  const auto names = bodiesOf(savedBytes(*book), id::kLbl);
  ASSERT_EQ(names.size(), 2u);
  EXPECT_EQ(names[0], bytesOf({0,    0, 0, 1, 11, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 'R', 0,  //
                               0x3B, 0, 0, 1, 0,  2, 0, 3, 0, 4, 0}));
  EXPECT_EQ(names[1], bytesOf({0, 0, 0, 1, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 'C', 0, 0x3A, 0, 0, 1, 0, 3, 0}));
}

TEST(NamedRanges, AreListedWithScopeAndSurviveASave) {
  const BookPtr book = bookWith({u"A", u"B"});
  setName(*book->getSheet(0), u"Whole", {0, 2, 0, 2});
  book->getSheet(1)->setNamedRange(u"Own", 5, 6, 1, 1, 1, true);
  setName(*book->getSheet(0), u"OfA", {1, 1, 1, 1}, 0);
  const BookPtr copy = reloaded(*book);
  Sheet& b = *copy->getSheet(1);
  ASSERT_EQ(b.namedRangeSize(), 2);
  Range r;
  int scope = -9;
  bool hidden = true;
  EXPECT_EQ(std::u16string(b.namedRange(0, &r.rowFirst, &r.rowLast, &r.colFirst, &r.colLast, &scope, &hidden)),
            u"Whole");
  EXPECT_EQ(scope, Sheet::kScopeWorkbook);
  EXPECT_FALSE(hidden);
  EXPECT_EQ(std::u16string(b.namedRange(1, &r.rowFirst, &r.rowLast, &r.colFirst, &r.colLast, &scope, &hidden)), u"Own");
  EXPECT_EQ(r, (Range{5, 6, 1, 1}));
  EXPECT_EQ(scope, 1);
  EXPECT_TRUE(hidden);
  for (const int outside : {-1, 2}) {
    EXPECT_EQ(b.namedRange(outside, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), nullptr);
    EXPECT_STREQ(copy->errorMessage(), "index is out of range");
  }
}

TEST(NamedRanges, DeletingAnUnknownNameFails) {
  const BookPtr book = bookWith();
  Sheet& sheet = *book->getSheet(0);
  EXPECT_FALSE(sheet.delNamedRange(u"Nobody", Sheet::kScopeUndefined));
  EXPECT_STREQ(book->errorMessage(), "named range is not found");
  setName(sheet, u"Somebody", {0, 0, 0, 0}, 0);
  EXPECT_FALSE(sheet.delNamedRange(u"Somebody", Sheet::kScopeUndefined));
  EXPECT_TRUE(sheet.delNamedRange(u"somebody", 0));
  EXPECT_EQ(sheet.namedRangeSize(), 0);
}

TEST(NamedRanges, FormulasKeepTheirNamesWhenAnotherGoes) {
  const BookPtr book = bookWith();
  Sheet& sheet = *book->getSheet(0);
  setName(sheet, u"First", {0, 0, 0, 0});
  setName(sheet, u"Second", {1, 1, 0, 0});
  sheet.writeFormula(5, 0, u"First+1", nullptr);
  sheet.writeFormula(5, 1, u"SUM(Second,1)", nullptr);
  EXPECT_TRUE(sheet.delNamedRange(u"First", Sheet::kScopeUndefined));
  EXPECT_EQ(formula(*book, 0, 5, 1), u"SUM(Second,1)");
  EXPECT_EQ(formula(*reloaded(*book), 0, 5, 1), u"SUM(Second,1)");
  EXPECT_EQ(formula(*book, 0, 5, 0), u"#REF!+1");
}

TEST(NamedRanges, NamesOfARemovedSheetGoAndTheOthersStayBound) {
  const BookPtr book = bookWith({u"A", u"B", u"C"});
  setName(*book->getSheet(0), u"OfA", {0, 0, 0, 0}, 0);
  setName(*book->getSheet(2), u"OfC", {0, 3, 0, 0}, 2);
  book->getSheet(2)->writeFormula(9, 0, u"SUM(OfC)", nullptr);
  EXPECT_TRUE(book->delSheet(0));
  EXPECT_EQ(formula(*book, 1, 9, 0), u"SUM(OfC)");
  Range range;
  EXPECT_TRUE(getName(*book->getSheet(1), u"OfC", range, 1));
  EXPECT_EQ(range, (Range{0, 3, 0, 0}));
  EXPECT_EQ(book->getSheet(0)->namedRangeSize(), 0);
}

TEST(NamedRanges, ACopiedSheetHasNamesThatReferToItself) {
  const BookPtr book = bookWith({u"A"});
  Sheet& a = *book->getSheet(0);
  setName(a, u"Own", {0, 0, 0, 0}, 0);
  a.writeFormula(2, 2, u"Own*2", nullptr);
  a.setPrintArea(0, 9, 0, 3);
  ASSERT_NE(book->addSheet(u"Copy", &a), nullptr);
  const auto names = bodiesOf(savedBytes(*book), id::kLbl);
  ASSERT_EQ(names.size(), 4u);
  const auto sheetOf = [&](std::size_t name) {
    const auto xtis = bodiesOf(savedBytes(*book), id::kExternSheet).at(0);
    const auto tokens = names[name].size() - (name % 2 == 0 ? 7 : 11);
    return std::to_integer<int>(xtis[2 + 6 * std::to_integer<std::size_t>(names[name][tokens + 1]) + 2]);
  };
  EXPECT_EQ(sheetOf(0), 0);
  EXPECT_EQ(sheetOf(2), 1);
  EXPECT_EQ(sheetOf(3), 1);
  EXPECT_EQ(formula(*book, 1, 2, 2), u"Own*2");
  const auto formulas = bodiesOf(savedBytes(*book), id::kFormula);
  ASSERT_EQ(formulas.size(), 2u);
  EXPECT_EQ(formulas[0][23], std::byte{1});
  EXPECT_EQ(formulas[1][23], std::byte{3});
}

TEST(NamedRanges, LoadingOneSheetKeepsItsOwnNames) {
  const BookPtr book = bookWith({u"A", u"B"});
  setName(*book->getSheet(0), u"OfA", {0, 0, 0, 0}, 0);
  setName(*book->getSheet(1), u"OfB", {3, 4, 0, 0}, 1);
  book->getSheet(1)->writeFormula(0, 5, u"B!A1+A!A1+SUM(OfB)", nullptr);
  const TemporaryDirectory directory;
  const std::u16string file = directory.file("book.xls").u16string();
  ASSERT_TRUE(book->save(file.c_str(), false));
  BookPtr one(createBiffBook());
  ASSERT_TRUE(one->loadSheet(file.c_str(), 1, nullptr)) << one->errorMessage();
  Range range;
  EXPECT_TRUE(getName(*one->getSheet(0), u"OfB", range, 0));
  EXPECT_EQ(range, (Range{3, 4, 0, 0}));
  EXPECT_EQ(one->getSheet(0)->namedRangeSize(), 1);
  EXPECT_EQ(formula(*one, 0, 0, 5), u"B!A1+#REF!+SUM(OfB)");
}

TEST(PrintAreas, AreABuiltInNameOfTheSheet) {
  const BookPtr book = bookWith({u"A", u"B"});
  Sheet& b = *book->getSheet(1);
  Range r;
  EXPECT_FALSE(b.printArea(&r.rowFirst, &r.rowLast, &r.colFirst, &r.colLast));
  EXPECT_STREQ(book->errorMessage(), "not found");
  b.setPrintArea(1, 5, 0, 3);
  b.setPrintArea(2, 6, 1, 4);
  const BookPtr copy = reloaded(*book);
  EXPECT_TRUE(copy->getSheet(1)->printArea(&r.rowFirst, &r.rowLast, &r.colFirst, &r.colLast));
  EXPECT_EQ(r, (Range{2, 6, 1, 4}));
  EXPECT_FALSE(copy->getSheet(0)->printArea(&r.rowFirst, &r.rowLast, &r.colFirst, &r.colLast));
  EXPECT_EQ(std::u16string(copy->getSheet(1)->namedRange(0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr)),
            u"Print_Area");
  const auto names = bodiesOf(savedBytes(*book), id::kLbl);
  ASSERT_EQ(names.size(), 1u);
  EXPECT_EQ(names[0][0], std::byte{0x20});
  EXPECT_EQ(names[0][8], std::byte{2});
  EXPECT_EQ(names[0][15], std::byte{6});
  copy->getSheet(1)->clearPrintArea();
  EXPECT_EQ(copy->getSheet(1)->namedRangeSize(), 0);
  copy->getSheet(1)->clearPrintArea();
  EXPECT_STREQ(copy->errorMessage(), "ok");
}

TEST(PrintTitles, HoldRowsAndColumnsInOneUnion) {
  const BookPtr book = bookWith();
  Sheet& sheet = *book->getSheet(0);
  sheet.setPrintRepeatRows(0, 1);
  int first = -9, last = -9;
  EXPECT_FALSE(sheet.printRepeatCols(&first, &last));
  EXPECT_STREQ(book->errorMessage(), "not found");
  sheet.setPrintRepeatCols(2, 3);
  const auto names = bodiesOf(savedBytes(*book), id::kLbl);
  ASSERT_EQ(names.size(), 1u);
  const Bytes tokens(names[0].end() - 26, names[0].end());
  EXPECT_EQ(tokens, bytesOf({0x29, 23, 0,                                   //
                             0x3B, 0,  0, 0, 0, 0xFF, 0xFF, 2, 0, 3,    0,  //
                             0x3B, 0,  0, 0, 0, 1,    0,    0, 0, 0xFF, 0, 0x10}));
  const BookPtr copy = reloaded(*book);
  EXPECT_TRUE(copy->getSheet(0)->printRepeatRows(&first, &last));
  EXPECT_EQ(std::pair(first, last), std::pair(0, 1));
  EXPECT_TRUE(copy->getSheet(0)->printRepeatCols(&first, &last));
  EXPECT_EQ(std::pair(first, last), std::pair(2, 3));
  copy->getSheet(0)->setPrintRepeatRows(4, 4);
  EXPECT_TRUE(copy->getSheet(0)->printRepeatCols(&first, &last));
  EXPECT_EQ(std::pair(first, last), std::pair(2, 3));
  copy->getSheet(0)->clearPrintRepeats();
  EXPECT_FALSE(copy->getSheet(0)->printRepeatRows(&first, &last));
}

TEST(PrintTitles, RowsAndColumnsHaveMessagesOfTheirOwn) {
  const BookPtr book = bookWith();
  Sheet& sheet = *book->getSheet(0);
  sheet.setPrintRepeatRows(-1, 0);
  EXPECT_STREQ(book->errorMessage(), "firstRow must be in range 0-65535");
  sheet.setPrintRepeatRows(0, 65536);
  EXPECT_STREQ(book->errorMessage(), "lastRow must be in range 0-65535");
  sheet.setPrintRepeatCols(256, 0);
  EXPECT_STREQ(book->errorMessage(), "firstCol must be in range 0-255");
  sheet.setPrintRepeatCols(0, 256);
  EXPECT_STREQ(book->errorMessage(), "lastCol must be in range 0-255");
  EXPECT_EQ(sheet.namedRangeSize(), 0);
}

Bytes nameBody(const Bytes& tokens, unsigned options = 0, unsigned textCount = 0) {
  return BytesBuilder()
      .u16(options)
      .u8(0)
      .u8(3)
      .u16(static_cast<unsigned>(tokens.size()))
      .u16(0)
      .u16(0)
      .u8(textCount)
      .u8(0)
      .u16(0)
      .u8(0)
      .text("Abc")
      .bytes(tokens);
}

TEST(NameRecords, OptionalTextsAreWrittenBackAsTheyCame) {
  const Bytes body = BytesBuilder().bytes(nameBody(bytesOf({0x1E, 5, 0}), 0, 2)).u8(0).text("hi");
  const BookPtr book = loaded(bookFile({{id::kLbl, body}}, {}));
  EXPECT_EQ(bodiesOf(savedBytes(*book), id::kLbl).at(0), body);
}

TEST(NameRecords, AnExpressionPastOneRecordGoesOnInAContinue) {
  Bytes tokens;
  for (int i = 0; i < 3000; ++i) {
    const Bytes step = i == 0 ? bytesOf({0x1E, 1, 0}) : bytesOf({0x1E, 1, 0, 3});
    tokens.insert(tokens.end(), step.begin(), step.end());
  }
  Bytes body = nameBody(tokens);
  const Bytes rest(body.begin() + 8224, body.end());
  body.resize(8224);
  const BookPtr book = loaded(bookFile({{id::kLbl, body}, {id::kContinue, rest}}, {}));
  const Bytes saved = savedBytes(*book);
  EXPECT_EQ(bodiesOf(saved, id::kLbl).at(0).size(), 8223u);
  EXPECT_EQ(bodiesOf(saved, id::kContinue).at(0).size(), rest.size() + 1);
  const BookPtr again = loaded(saved);
  EXPECT_EQ(again->getSheet(0)->namedRangeSize(), 1);
}

TEST(NameRecords, EveryCutOfARecordIsToldAndNothingMore) {
  const Bytes body = nameBody(bytesOf({0x3B, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0}));
  for (std::size_t size = 0; size < body.size(); ++size) {
    BookPtr book(createBiffBook());
    const Bytes file =
        bookFile({{id::kLbl, Bytes(body.begin(), body.begin() + static_cast<std::ptrdiff_t>(size))}}, {});
    EXPECT_FALSE(book->loadRaw(file.data(), file.size(), -1, -1, -1)) << size;
    EXPECT_STRNE(book->errorMessage(), "ok") << size;
  }
}

TEST(NameRecords, RangesOfForeignTokensAreNotRanges) {
  for (const Bytes& tokens :
       {bytesOf({}), bytesOf({0x1E, 1, 0}), bytesOf({0x3B, 0, 0, 0}), bytesOf({0x19}), bytesOf({0x29, 200, 0}),
        bytesOf({0x3D, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}), bytesOf({0xFF})}) {
    const BookPtr book = loaded(bookFile({{id::kLbl, nameBody(tokens)}}, {}));
    Range range;
    EXPECT_FALSE(getName(*book->getSheet(0), u"Abc", range));
    int row = 0;
    EXPECT_EQ(std::u16string(book->getSheet(0)->namedRange(0, &row, nullptr, nullptr, nullptr, nullptr, nullptr)),
              u"Abc");
    EXPECT_EQ(row, -1);
    EXPECT_TRUE(book->getSheet(0)->delNamedRange(u"Abc", Sheet::kScopeWorkbook));
  }
}

TEST(SheetNames, AreFoundAsTheyAreNowWhereTheSheetsAreNow) {
  Book* book = createBiffBook();
  for (const auto* name : {u"a", u"b", u"c"}) ASSERT_NE(book->addSheet(name), nullptr);
  EXPECT_EQ(book->addSheet(u"B"), nullptr);
  book->getSheet(1)->setName(u"d");
  EXPECT_NE(book->addSheet(u"B"), nullptr) << book->errorMessage();
  EXPECT_EQ(book->addSheet(u"D"), nullptr);
  ASSERT_TRUE(book->delSheet(1));
  EXPECT_NE(book->insertSheet(0, u"D"), nullptr);
  ASSERT_TRUE(book->moveSheet(0, 4));
  EXPECT_TRUE(book->getSheet(0)->writeFormula(0, 0, u"d!A1+c!A1")) << book->errorMessage();
  const std::u16string formula = book->getSheet(0)->readFormula(0, 0);
  EXPECT_EQ(formula, u"D!A1+'c'!A1");
  book->release();
}

}  // namespace
}  // namespace rubrica::test
