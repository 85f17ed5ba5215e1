#include "tests/biff/sheet_ops/sheet_fixture.h"

namespace rubrica::test {
namespace {

TEST(Merges, AreFoundByAnyOfTheirCells) {
  TestBook book;
  EXPECT_TRUE(book.sheet->setMerge(1, 2, 3, 5));
  int r1 = 0, r2 = 0, c1 = 0, c2 = 0;
  EXPECT_TRUE(book.sheet->getMerge(2, 5, &r1, &r2, &c1, &c2));
  EXPECT_EQ((std::vector<int>{r1, r2, c1, c2}), (std::vector<int>{1, 2, 3, 5}));
  EXPECT_TRUE(book.sheet->getMerge(1, 3, nullptr, nullptr, nullptr, nullptr));
  EXPECT_REFUSED(book, book.sheet->getMerge(3, 3, &r1, &r2, &c1, &c2), "this cell isn't in merging block");
  EXPECT_REFUSED(book, book.sheet->getMerge(-1, 70000, &r1, &r2, &c1, &c2), "this cell isn't in merging block");
  EXPECT_EQ(book.saved(id::kMergeCells), std::vector<Bytes>{BytesBuilder().u16(1).u16(1).u16(2).u16(3).u16(5)});
}

TEST(Merges, TheSameRangeTwiceIsKeptTwice) {
  TestBook book;
  EXPECT_TRUE(book.sheet->setMerge(1, 2, 3, 5));
  EXPECT_TRUE(book.sheet->setMerge(1, 2, 3, 5));
  EXPECT_EQ(book.sheet->mergeSize(), 2);
  EXPECT_TRUE(book.sheet->delMerge(2, 4));
  EXPECT_EQ(book.sheet->mergeSize(), 1);
  EXPECT_TRUE(book.sheet->delMerge(2, 4));
  EXPECT_REFUSED(book, book.sheet->delMerge(2, 4), "this cell isn't in merging block");
  EXPECT_TRUE(book.saved(id::kMergeCells).empty());
}

TEST(Merges, TheirEmptyPlacesGetTheFormatOfTheFirstCell) {
  TestBook book;
  Format* format = book.book->addFormat(nullptr);
  book.sheet->writeStr(1, 1, u"title", format);
  book.sheet->writeNum(1, 2, 5);
  EXPECT_TRUE(book.sheet->setMerge(1, 2, 1, 3));
  EXPECT_EQ(book.sheet->cellType(1, 3), CellType::blank);
  EXPECT_EQ(book.sheet->cellFormat(2, 2), format);
  EXPECT_EQ(book.sheet->cellType(1, 2), CellType::number);
  EXPECT_NE(book.sheet->cellFormat(1, 2), format);
  EXPECT_EQ(book.sheet->lastRow(), 3);
  EXPECT_EQ(book.sheet->lastCol(), 4);
}

TEST(Merges, OfNoCellAtAllGetTheDefaultFormat) {
  TestBook book;
  EXPECT_TRUE(book.sheet->setMerge(0, 0, 0, 1));
  EXPECT_EQ(book.sheet->cellFormat(0, 1), book.book->format(15));
  Format* format = book.book->addFormat(nullptr);
  book.sheet->setCol(3, 3, 10, format);
  EXPECT_TRUE(book.sheet->setMerge(0, 0, 3, 4));
  EXPECT_EQ(book.sheet->cellFormat(0, 4), format);
}

TEST(Merges, FillBlocksOf1026) {
  TestBook book;
  for (int i = 0; i < 1027; ++i) ASSERT_TRUE(book.sheet->setMerge(i, i, 0, 1));
  const auto blocks = book.saved(id::kMergeCells);
  ASSERT_EQ(blocks.size(), 2u);
  EXPECT_EQ(blocks[0].size(), 2 + 1026 * 8u);
  EXPECT_EQ(blocks[1].size(), 2 + 8u);
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(book.sheet->mergeSize(), 1027);
  int row = 0;
  EXPECT_TRUE(book.sheet->merge(1026, &row, nullptr, nullptr, nullptr));
  EXPECT_EQ(row, 1026);
  EXPECT_TRUE(book.sheet->delMergeByIndex(3));
  EXPECT_TRUE(book.sheet->merge(3, &row, nullptr, nullptr, nullptr));
  EXPECT_EQ(row, 4);
  EXPECT_TRUE(book.sheet->merge(1025, &row, nullptr, nullptr, nullptr));
  EXPECT_EQ(row, 1026);
  EXPECT_REFUSED(book, book.sheet->merge(1026, &row, nullptr, nullptr, nullptr), "index is out of range");
  EXPECT_REFUSED(book, book.sheet->merge(-1, &row, nullptr, nullptr, nullptr), "index is out of range");
  EXPECT_REFUSED(book, book.sheet->delMergeByIndex(1026), "index is out of range");
  EXPECT_REFUSED(book, book.sheet->delMergeByIndex(-1), "index is out of range");
}

TEST(Merges, WrongRangesChangeNothing) {
  TestBook book;
  EXPECT_REFUSED(book, book.sheet->setMerge(0, 0, -1, 1), "col must be in range 0-255");
  EXPECT_REFUSED(book, book.sheet->setMerge(0, 0, 0, 256), "col must be in range 0-255");
  EXPECT_REFUSED(book, book.sheet->setMerge(1, 0, 0, 1), "rowLast must be greater than or equal to rowFirst");
  EXPECT_REFUSED(book, book.sheet->setMerge(0, 1, 1, 0), "colLast must be greater than or equal to colFirst");
  EXPECT_REFUSED(book, book.sheet->setMerge(-1, 0, 0, 1), "row must be in range 0-65535");
  EXPECT_REFUSED(book, book.sheet->setMerge(0, 65536, 0, 1), "row must be in range 0-65535");
  EXPECT_EQ(book.sheet->mergeSize(), 0);
  EXPECT_EQ(book.sheet->lastRow(), 0);
}

TEST(Merges, ARecordThatPromisesMoreThanItHoldsIsRefused) {
  TestBook book;
  EXPECT_FALSE(book.reload({{id::kMergeCells, BytesBuilder().u16(2).u16(0).u16(0).u16(0).u16(1)}}));
  EXPECT_EQ(book.message(), "MergeCells size is incorrect");
}

TEST(Clearing, DeletesTheCellsOfARange) {
  TestBook book;
  for (int i = 0; i < 4; ++i) book.sheet->writeNum(i, i, i);
  book.sheet->clear(1, 2, 0, 1);
  EXPECT_EQ(book.message(), "ok");
  EXPECT_EQ(book.sheet->cellType(1, 1), CellType::empty);
  EXPECT_EQ(book.sheet->cellType(2, 2), CellType::number);
  book.sheet->clear();
  EXPECT_EQ(book.sheet->cellType(3, 3), CellType::empty);
}

TEST(Clearing, WrongRangesDeleteNothing) {
  TestBook book;
  book.sheet->writeNum(0, 0, 1);
  struct Case {
    int r1, r2, c1, c2;
    const char* text;
  };
  for (const Case& c :
       {Case{-1, 0, 0, 0, "row must be in range 0-65535"}, Case{0, 65536, 0, 0, "row must be in range 0-65535"},
        Case{1, 0, 0, 0, "rowLast must be greater than or equal to rowFirst"},
        Case{0, 0, -1, 0, "col must be in range 0-255"}, Case{0, 0, 0, 256, "col must be in range 0-255"},
        Case{0, 0, 1, 0, "colLast must be greater than or equal to colFirst"}}) {
    book.sheet->clear(c.r1, c.r2, c.c1, c.c2);
    EXPECT_EQ(book.message(), c.text);
    EXPECT_EQ(book.sheet->cellType(0, 0), CellType::number);
  }
}

TEST(CopiedCells, TakeTheirValueAndFormat) {
  TestBook book;
  Format* format = book.book->addFormat(nullptr);
  book.sheet->writeNum(0, 0, 1.5, format);
  book.sheet->writeStr(0, 1, u"text", format);
  book.sheet->writeBool(0, 2, true, format);
  book.sheet->writeError(0, 3, ErrorType::num, format);
  book.sheet->writeBlank(0, 4, format);
  book.sheet->writeFormulaNum(0, 5, u"A1+1", 2.5, format);
  for (int col = 0; col < 6; ++col) {
    ASSERT_TRUE(book.sheet->copyCell(0, col, 4, col)) << col << book.message();
    EXPECT_EQ(book.sheet->cellType(4, col), book.sheet->cellType(0, col)) << col;
    EXPECT_EQ(book.sheet->cellFormat(4, col), format) << col;
  }
  EXPECT_EQ(book.sheet->readNum(4, 0), 1.5);
  EXPECT_EQ(book.str(4, 1), u"text");
  EXPECT_TRUE(book.sheet->readBool(4, 2));
  EXPECT_EQ(book.sheet->readError(4, 3), ErrorType::num);
  EXPECT_EQ(std::u16string(book.sheet->readFormula(4, 5)), u"A1+1");
  EXPECT_REFUSED(book, book.sheet->copyCell(9, 9, 0, 0), "empty cell");
  EXPECT_REFUSED(book, book.sheet->copyCell(0, 256, 0, 0), "col must be in range 0-255");
  EXPECT_REFUSED(book, book.sheet->copyCell(0, 0, 65536, 0), "row must be in range 0-65535");
}

}  // namespace
}  // namespace rubrica::test
