#include "tests/biff/sheet_ops/sheet_fixture.h"

namespace rubrica::test {
namespace {

Bytes colInfo(unsigned first, unsigned last, unsigned width, unsigned xf, unsigned options) {
  return BytesBuilder().u16(first).u16(last).u16(width).u16(xf).u16(options).u16(0);
}

TEST(Columns, AWidthOfTenIsTenAgain) {
  TestBook book;
  EXPECT_TRUE(book.sheet->setCol(1, 3, 10));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_EQ(book.sheet->colWidth(1), 10);
  EXPECT_EQ(book.sheet->colWidth(3), 10);
  EXPECT_EQ(book.sheet->colWidth(4), 8);
  EXPECT_EQ(book.saved(id::kColInfo), std::vector<Bytes>{colInfo(1, 3, 2742, 15, 2)});
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(book.sheet->colWidth(2), 10);
}

TEST(Columns, ThatAreHiddenHaveNoWidth) {
  TestBook book;
  EXPECT_TRUE(book.sheet->setCol(2, 2, 10, nullptr, true));
  EXPECT_EQ(book.sheet->colWidth(2), 0);
  EXPECT_TRUE(book.sheet->colHidden(2));
  EXPECT_TRUE(book.sheet->setColHidden(2, false));
  EXPECT_EQ(book.sheet->colWidth(2), 10);
  EXPECT_TRUE(book.sheet->setColHidden(3, true));
  EXPECT_TRUE(book.sheet->colHidden(3));
  EXPECT_TRUE(book.sheet->setColHidden(3, false));
  EXPECT_EQ(book.sheet->colWidth(3), 8);
  EXPECT_FALSE(book.sheet->colHidden(4));
}

TEST(Columns, ShowingAColumnThatIsShownMakesNoEntry) {
  TestBook book;
  EXPECT_TRUE(book.sheet->setColHidden(3, false));
  EXPECT_TRUE(book.saved(id::kColInfo).empty());
}

TEST(Columns, OverlappingSettingsAreDivided) {
  TestBook book;
  Format* format = book.book->addFormat(nullptr);
  book.sheet->setCol(0, 9, 10, format);
  book.sheet->setCol(3, 5, 20);
  book.sheet->setCol(5, 12, 30);
  const auto xf = static_cast<unsigned>(book.book->formatSize() - 1);
  const std::vector<Bytes> expected = {colInfo(0, 2, 2742, xf, 2), colInfo(3, 4, 5302, xf, 2),
                                       colInfo(5, 5, 7862, xf, 2), colInfo(6, 9, 7862, xf, 2),
                                       colInfo(10, 12, 7862, 15, 2)};
  EXPECT_EQ(book.saved(id::kColInfo), expected);
  EXPECT_EQ(book.sheet->cellFormat(0, 4), format);
  EXPECT_NE(book.sheet->cellFormat(0, 11), format);
}

TEST(Columns, AFormatOfTheColumnIsThatOfNewCells) {
  TestBook book;
  Format* format = book.book->addFormat(nullptr);
  book.sheet->setCol(1, 1, 10, format);
  book.sheet->writeNum(0, 1, 1);
  EXPECT_EQ(book.sheet->cellFormat(0, 1), format);
}

TEST(Columns, WrongArgumentsChangeNothing) {
  TestBook book, other;
  Format* foreign = other.book->addFormat(nullptr);
  EXPECT_REFUSED(book, book.sheet->setCol(-1, 0, 10), "col must be in range 0-255");
  EXPECT_REFUSED(book, book.sheet->setCol(0, 256, 10), "col must be in range 0-255");
  EXPECT_REFUSED(book, book.sheet->setCol(2, 1, 10), "colLast must be greater than or equal to colFirst");
  EXPECT_REFUSED(book, book.sheet->setCol(0, 1, 10, foreign), "specified format not found");
  EXPECT_REFUSED(book, book.sheet->setCol(0, 1, -1, foreign), "specified format not found");
  EXPECT_REFUSED(book, book.sheet->colWidth(-1), "col must be in range 0-255");
  EXPECT_REFUSED(book, book.sheet->colWidth(256), "col must be in range 0-255");
  EXPECT_REFUSED(book, book.sheet->colHidden(256), "col must be in range 0-255");
  EXPECT_REFUSED(book, book.sheet->setColHidden(-1, true), "col must be in range 0-255");
  EXPECT_TRUE(book.saved(id::kColInfo).empty());
}

TEST(Columns, WithoutAnEntryTheDefaultsOfTheSheetHold) {
  TestBook book;
  EXPECT_EQ(book.sheet->colWidth(255), 8);
  ASSERT_TRUE(book.reload({{id::kStandardWidth, BytesBuilder().u16(2742)}}));
  book.book->setTextMetrics(std::make_unique<FakeMetrics>());
  EXPECT_EQ(book.sheet->colWidth(255), 10);
  EXPECT_TRUE(book.sheet->setColHidden(7, true));
  EXPECT_TRUE(book.sheet->setColHidden(7, false));
  EXPECT_EQ(book.sheet->colWidth(7), 10);
}

TEST(Columns, ADefaultFontChangesWhatPixelsMean) {
  TestBook book;
  book.sheet->setCol(0, 0, 10);
  book.book->setTextMetrics(std::make_unique<FakeMetrics>(14));
  EXPECT_NE(book.sheet->colWidth(0), 10);
}

TEST(Columns, EntriesPastTheLastColumnOfAFileAreKept) {
  TestBook book;
  ASSERT_TRUE(book.reload({{id::kColInfo, colInfo(250, 256, 1000, 15, 0)}}));
  EXPECT_TRUE(book.sheet->setCol(252, 255, 10));
  const std::vector<Bytes> expected = {colInfo(250, 251, 1000, 15, 0), colInfo(252, 255, 2742, 15, 2),
                                       colInfo(256, 256, 1000, 15, 0)};
  EXPECT_EQ(book.saved(id::kColInfo), expected);
}

TEST(Rows, HeightsAreTwipsUpTo8192) {
  TestBook book;
  EXPECT_REFUSED(book, book.sheet->setRow(0, 410), "height is too big");
  EXPECT_TRUE(book.saved(id::kRow).empty());
  EXPECT_TRUE(book.sheet->setRow(0, 409));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_EQ(book.sheet->rowHeight(0), 409);
  EXPECT_TRUE(book.sheet->setRow(0, 409.6));
  EXPECT_REFUSED(book, book.sheet->setRow(0, 409.61), "height is too big");
  EXPECT_EQ(book.sheet->rowHeight(0), 409.6);
  EXPECT_REFUSED(book, book.sheet->setRow(0, -1), "height is too big");
}

TEST(Rows, ARowThatWasSetSaysSo) {
  TestBook book;
  Format* format = book.book->addFormat(nullptr);
  const auto xf = static_cast<std::uint32_t>(book.book->formatSize() - 1);
  EXPECT_TRUE(book.sheet->setRow(3, 30));
  EXPECT_TRUE(book.sheet->setRow(1, 15.75, format, true));
  const Bytes third = BytesBuilder().u16(3).u16(0).u16(0).u16(600).u16(0).u16(0).u32(0x000F0140);
  const Bytes first = BytesBuilder().u16(1).u16(0).u16(0).u16(315).u16(0).u16(0).u32(xf << 16 | 0x01E0);
  EXPECT_EQ(book.saved(id::kRow), (std::vector<Bytes>{third, first}));
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(book.sheet->rowHeight(3), 30);
  EXPECT_EQ(book.sheet->rowHeight(1), 15.75);
  EXPECT_TRUE(book.sheet->rowHidden(1));
  EXPECT_FALSE(book.sheet->rowHidden(3));
}

TEST(Rows, HidingChangesOneBit) {
  TestBook book;
  EXPECT_TRUE(book.sheet->setRowHidden(5, false));
  EXPECT_TRUE(book.saved(id::kRow).empty());
  EXPECT_TRUE(book.sheet->setRowHidden(5, true));
  EXPECT_TRUE(book.sheet->rowHidden(5));
  EXPECT_EQ(book.sheet->rowHeight(5), 12.75);
  EXPECT_TRUE(book.sheet->setRowHidden(5, false));
  EXPECT_FALSE(book.sheet->rowHidden(5));
  book.sheet->setRow(5, 20, nullptr, true);
  book.sheet->setRow(5, 20);
  EXPECT_FALSE(book.sheet->rowHidden(5));
}

TEST(Rows, WithoutAnEntryHaveTheDefaultHeight) {
  TestBook book;
  EXPECT_EQ(book.sheet->rowHeight(65535), 12.75);
  ASSERT_TRUE(book.reload({{id::kDefaultRowHeight, BytesBuilder().u16(1).u16(400)}}));
  EXPECT_EQ(book.sheet->rowHeight(9), 20);
  book.sheet->setRowHidden(9, true);
  EXPECT_EQ(book.sheet->rowHeight(9), 20);
}

TEST(Rows, WrongArgumentsChangeNothing) {
  TestBook book, other;
  Format* foreign = other.book->addFormat(nullptr);
  for (const int row : {-1, 65536}) {
    EXPECT_REFUSED(book, book.sheet->setRow(row, 10), "row must be in range 0-65535");
    EXPECT_REFUSED(book, book.sheet->rowHeight(row), "row must be in range 0-65535");
    EXPECT_REFUSED(book, book.sheet->rowHidden(row), "row must be in range 0-65535");
    EXPECT_REFUSED(book, book.sheet->setRowHidden(row, true), "row must be in range 0-65535");
  }
  EXPECT_REFUSED(book, book.sheet->setRow(0, 10, foreign), "specified format not found");
  EXPECT_TRUE(book.saved(id::kRow).empty());
}

TEST(Rows, EveryRowOfASheetCanBeSet) {
  TestBook book;
  for (int row = 0; row < 65536; ++row) ASSERT_TRUE(book.sheet->setRow(row, 10 + row % 100));
  for (int row = 0; row < 65536; ++row) ASSERT_EQ(book.sheet->rowHeight(row), 10 + row % 100);
}

TEST(RowGroups, GoOneLevelDown) {
  TestBook book;
  EXPECT_TRUE(book.sheet->groupRows(2, 3, false));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_TRUE(book.sheet->groupRows(3, 3, false));
  const auto row = [](unsigned number, std::uint32_t flags) -> Bytes {
    return BytesBuilder().u16(number).u16(0).u16(0).u16(255).u16(0).u16(0).u32(flags);
  };
  EXPECT_EQ(book.saved(id::kRow), (std::vector<Bytes>{row(2, 0x000F0101), row(3, 0x000F0102)}));
  EXPECT_EQ(book.saved(id::kGuts), std::vector<Bytes>{BytesBuilder().u16(0).u16(0).u16(3).u16(0)});
}

TEST(RowGroups, ThatAreCollapsedHideTheirRowsAndMarkTheNext) {
  TestBook book;
  EXPECT_TRUE(book.sheet->groupRows(2, 3, true));
  EXPECT_TRUE(book.sheet->rowHidden(2));
  EXPECT_TRUE(book.sheet->rowHidden(3));
  EXPECT_FALSE(book.sheet->rowHidden(4));
  const auto rows = book.saved(id::kRow);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[2], Bytes(BytesBuilder().u16(4).u16(0).u16(0).u16(255).u16(0).u16(0).u32(0x000F0110)));
  EXPECT_TRUE(book.sheet->groupRows(65534, 65535, true));
}

TEST(RowGroups, OfMixedLevelsOverlap) {
  TestBook book;
  book.sheet->groupRows(2, 3, false);
  EXPECT_REFUSED(book, book.sheet->groupRows(0, 3, false), "detect overlap");
  EXPECT_REFUSED(book, book.sheet->groupRows(3, 4, false), "detect overlap");
  EXPECT_EQ(book.saved(id::kRow).size(), 2u);
  EXPECT_EQ(book.saved(id::kGuts), std::vector<Bytes>{BytesBuilder().u16(0).u16(0).u16(2).u16(0)});
}

TEST(RowGroups, HaveNoLimitAndShareTheSeventhLevel) {
  TestBook book;
  for (int i = 0; i < 10; ++i) ASSERT_TRUE(book.sheet->groupRows(1, 2, false)) << i;
  EXPECT_EQ(book.saved(id::kRow).front(),
            Bytes(BytesBuilder().u16(1).u16(0).u16(0).u16(255).u16(0).u16(0).u32(0x000F0107)));
}

TEST(RowGroups, WrongRangesAreRefused) {
  TestBook book;
  EXPECT_REFUSED(book, book.sheet->groupRows(-1, 3), "rowFirst must be in range 0-65535");
  EXPECT_REFUSED(book, book.sheet->groupRows(65536, 3), "rowFirst must be in range 0-65535");
  EXPECT_REFUSED(book, book.sheet->groupRows(3, 65536), "rowLast must be in range 0-65535");
  EXPECT_REFUSED(book, book.sheet->groupRows(3, -1), "rowLast must be in range 0-65535");
  EXPECT_REFUSED(book, book.sheet->groupRows(3, 2), "must be rowFirst <= rowLast");
  EXPECT_TRUE(book.saved(id::kRow).empty());
}

TEST(ColumnGroups, DivideEntriesAndGoOneLevelDown) {
  TestBook book;
  book.sheet->setCol(0, 5, 10);
  EXPECT_TRUE(book.sheet->groupCols(4, 7, false));
  EXPECT_TRUE(book.sheet->groupCols(7, 7, false));
  const std::vector<Bytes> expected = {colInfo(0, 3, 2742, 15, 2), colInfo(4, 5, 2742, 15, 0x0102),
                                       colInfo(6, 6, 2230, 15, 0x0100), colInfo(7, 7, 2230, 15, 0x0200)};
  EXPECT_EQ(book.saved(id::kColInfo), expected);
  EXPECT_EQ(book.saved(id::kGuts), std::vector<Bytes>{BytesBuilder().u16(0).u16(0).u16(0).u16(3)});
  EXPECT_EQ(book.sheet->colWidth(6), 8);
}

TEST(ColumnGroups, ThatAreCollapsedHideTheirColumnsAndMarkTheNext) {
  TestBook book;
  EXPECT_TRUE(book.sheet->groupCols(1, 2, true));
  EXPECT_TRUE(book.sheet->colHidden(1));
  EXPECT_FALSE(book.sheet->colHidden(3));
  const std::vector<Bytes> expected = {colInfo(1, 2, 2230, 15, 0x1101), colInfo(3, 3, 2230, 15, 0x1000)};
  EXPECT_EQ(book.saved(id::kColInfo), expected);
  EXPECT_TRUE(book.sheet->groupCols(255, 255, true));
}

TEST(ColumnGroups, EndAtTheSeventhLevel) {
  TestBook book;
  for (int i = 0; i < 7; ++i) ASSERT_TRUE(book.sheet->groupCols(3, 3, false)) << i;
  const auto before = book.saved(id::kColInfo);
  EXPECT_REFUSED(book, book.sheet->groupCols(3, 3, false), "exceeded outline level");
  EXPECT_REFUSED(book, book.sheet->groupCols(0, 9, false), "exceeded outline level");
  EXPECT_EQ(book.saved(id::kColInfo), before);
  EXPECT_EQ(book.saved(id::kGuts), std::vector<Bytes>{BytesBuilder().u16(0).u16(0).u16(0).u16(8)});
}

TEST(ColumnGroups, WrongRangesAreRefused) {
  TestBook book;
  EXPECT_REFUSED(book, book.sheet->groupCols(-1, 3), "colFirst must be in range 0-255");
  EXPECT_REFUSED(book, book.sheet->groupCols(256, 3), "colFirst must be in range 0-255");
  EXPECT_REFUSED(book, book.sheet->groupCols(3, 256), "colLast must be in range 0-255");
  EXPECT_REFUSED(book, book.sheet->groupCols(3, 2), "must be colFirst <= colLast");
}

TEST(GroupSummaries, AreTwoFlags) {
  TestBook book;
  EXPECT_TRUE(book.sheet->groupSummaryBelow());
  EXPECT_TRUE(book.sheet->groupSummaryRight());
  book.sheet->setGroupSummaryBelow(false);
  book.sheet->setGroupSummaryRight(false);
  EXPECT_EQ(book.saved(id::kWsBool), std::vector<Bytes>{BytesBuilder().u16(0x0401)});
  ASSERT_TRUE(book.reload());
  EXPECT_FALSE(book.sheet->groupSummaryBelow());
  EXPECT_FALSE(book.sheet->groupSummaryRight());
}

TEST(PageBreaks, StandInOrderAndOnce) {
  TestBook book;
  EXPECT_TRUE(book.sheet->setHorzPageBreak(20));
  EXPECT_TRUE(book.sheet->setHorzPageBreak(10));
  EXPECT_REFUSED(book, book.sheet->setHorzPageBreak(10), "pagebreak already exists");
  EXPECT_TRUE(book.sheet->setVertPageBreak(5));
  EXPECT_EQ(book.sheet->getHorzPageBreakSize(), 2);
  EXPECT_EQ(book.sheet->getHorzPageBreak(0), 10);
  EXPECT_EQ(book.sheet->getHorzPageBreak(1), 20);
  EXPECT_EQ(book.sheet->getVertPageBreakSize(), 1);
  EXPECT_EQ(book.sheet->getVertPageBreak(0), 5);
  EXPECT_REFUSED(book, book.sheet->getHorzPageBreak(2), "index is out of range");
  EXPECT_REFUSED(book, book.sheet->getHorzPageBreak(-1), "index is out of range");
  EXPECT_REFUSED(book, book.sheet->getVertPageBreak(1), "index is out of range");
  EXPECT_EQ(book.saved(id::kHorzPageBreaks),
            std::vector<Bytes>{BytesBuilder().u16(2).u16(10).u16(0).u16(255).u16(20).u16(0).u16(255)});
  EXPECT_EQ(book.saved(id::kVertPageBreaks), std::vector<Bytes>{BytesBuilder().u16(1).u16(5).u16(0).u16(65535)});
  ASSERT_TRUE(book.reload());
  EXPECT_TRUE(book.sheet->setHorzPageBreak(10, false));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_REFUSED(book, book.sheet->setHorzPageBreak(10, false), "pagebreak not found");
  EXPECT_REFUSED(book, book.sheet->setVertPageBreak(4, false), "pagebreak not found");
  EXPECT_TRUE(book.sheet->setVertPageBreak(5, false));
  EXPECT_TRUE(book.saved(id::kVertPageBreaks).empty());
}

TEST(PageBreaks, EndAt1026) {
  TestBook book;
  for (int row = 0; row < 1026; ++row) ASSERT_TRUE(book.sheet->setHorzPageBreak(row));
  EXPECT_REFUSED(book, book.sheet->setHorzPageBreak(2000), "number of pagebreaks is exceed limit");
  EXPECT_EQ(book.sheet->getHorzPageBreakSize(), 1026);
  ASSERT_TRUE(book.reload());
  EXPECT_EQ(book.sheet->getHorzPageBreak(1025), 1025);
}

TEST(PageBreaks, OutsideTheSheetAreRefused) {
  TestBook book;
  EXPECT_REFUSED(book, book.sheet->setHorzPageBreak(-1), "row must be in range 0-65535");
  EXPECT_REFUSED(book, book.sheet->setHorzPageBreak(65536), "row must be in range 0-65535");
  EXPECT_REFUSED(book, book.sheet->setVertPageBreak(256), "col must be in range 0-255");
}

TEST(Panes, AreFrozenByRowAndColumn) {
  struct Case {
    int row, col, active;
  };
  for (const Case& c : {Case{2, 3, 0}, Case{0, 3, 1}, Case{2, 0, 2}, Case{0, 0, 3}}) {
    TestBook book;
    book.sheet->split(c.row, c.col);
    EXPECT_EQ(book.message(), "ok");
    const auto row = static_cast<unsigned>(c.row), col = static_cast<unsigned>(c.col);
    EXPECT_EQ(book.saved(id::kPane),
              std::vector<Bytes>{
                  BytesBuilder().u16(col).u16(row).u16(row).u16(col).u8(static_cast<unsigned>(c.active)).u8(0)});
    EXPECT_EQ(std::to_integer<int>(book.saved(id::kWindow2).front()[0]) & 8, 8);
    ASSERT_TRUE(book.reload());
    int gotRow = -1, gotCol = -1;
    EXPECT_TRUE(book.sheet->splitInfo(&gotRow, &gotCol));
    EXPECT_EQ(gotRow, c.row);
    EXPECT_EQ(gotCol, c.col);
    EXPECT_TRUE(book.sheet->splitInfo(nullptr, nullptr));
  }
}

TEST(Panes, ASheetWithoutASplitSaysSo) {
  TestBook book;
  int row = 7, col = 8;
  EXPECT_REFUSED(book, book.sheet->splitInfo(&row, &col), "worksheet is not splitted");
  EXPECT_EQ(row, 7);
  book.sheet->split(65536, 0);
  EXPECT_EQ(book.message(), "row must be in range 0-65535");
  EXPECT_FALSE(book.sheet->splitInfo(&row, &col));
}

}  // namespace
}  // namespace rubrica::test
