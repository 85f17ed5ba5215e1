#include "tests/xml/sheet/sheet_fixture.h"

namespace rubrica::test {
namespace {

template <class Tag>
class XmlRowsColumns : public XmlSheets<Tag> {};
TYPED_TEST_SUITE(XmlRowsColumns, Flavours, FlavourNames);

TYPED_TEST(XmlRowsColumns, AnUntouchedRowIsFifteenPointsHigh) {
  EXPECT_EQ(this->sheet->rowHeight(0), 15.0);
  EXPECT_EQ(this->sheet->rowHeight(1048575), 15.0);
  EXPECT_EQ(this->sheet->rowHeight(1048576), 0);
  EXPECT_EQ(this->message(), "row must be in range 0-1048575");
  this->sheet->get_sheetFormatPr().set_defaultRowHeight(18.5);
  EXPECT_EQ(this->sheet->rowHeight(3), 18.5);
}

TYPED_TEST(XmlRowsColumns, ColumnsAreSixtyFourPixelsWideUnlessTheSheetSaysOtherwise) {
  EXPECT_EQ(this->sheet->colWidth(0), 8.43);
  this->sheet->get_sheetFormatPr().set_defaultRowHeight(15);
  this->sheet->get_sheetFormatPr().set_baseColWidth(10);
  EXPECT_EQ(this->sheet->colWidth(0), 10.71);
  this->sheet->get_sheetFormatPr().set_defaultColWidth(10.7109375);
  EXPECT_EQ(this->sheet->colWidth(0), 10);
  EXPECT_EQ(this->sheet->colWidth(16384), 0);
  EXPECT_EQ(this->message(), "col must be in range 0-16383");
}

TYPED_TEST(XmlRowsColumns, SetWidthsAreStoredWithTheirPadding) {
  ASSERT_TRUE(this->sheet->setCol(1, 3, 10, nullptr, false));
  EXPECT_TRUE(this->holds("<col min=\"2\" max=\"4\" width=\"10.7109375\" customWidth=\"true\"/>")) << this->sheetXml();
  this->reload();
  EXPECT_EQ(this->sheet->colWidth(1), 10);
  EXPECT_EQ(this->sheet->colWidth(3), 10);
  EXPECT_EQ(this->sheet->colWidth(0), 8.43);
}

TYPED_TEST(XmlRowsColumns, ColumnRangesAreSplitToCoverExactlyWhatIsAsked) {
  ASSERT_TRUE(this->sheet->setCol(0, 9, 10, nullptr, false));
  ASSERT_TRUE(this->sheet->setCol(3, 5, 20, nullptr, true));
  const auto& cols = this->sheet->get_cols(0);
  ASSERT_EQ(cols.size_col(), 3U);
  EXPECT_EQ(cols.get_col(0).get_max(), 3U);
  EXPECT_EQ(cols.get_col(1).get_min(), 4U);
  EXPECT_EQ(cols.get_col(1).get_max(), 6U);
  EXPECT_EQ(cols.get_col(2).get_min(), 7U);
  EXPECT_TRUE(this->sheet->colHidden(4));
  EXPECT_EQ(this->sheet->colWidth(4), 0);
  ASSERT_TRUE(this->sheet->setColHidden(4, false));
  EXPECT_EQ(this->sheet->colWidth(4), 20);
  EXPECT_TRUE(this->sheet->colHidden(5));
  ASSERT_TRUE(this->sheet->setCol(3, 5, 20, nullptr, false));
  EXPECT_FALSE(this->sheet->colHidden(5));
}

TYPED_TEST(XmlRowsColumns, ColumnsOutsideTheSheetAreRefused) {
  EXPECT_REFUSED(this->sheet->setCol(-1, 0, 5, nullptr, false), "col must be in range 0-16383");
  EXPECT_REFUSED(this->sheet->setCol(0, 16384, 5, nullptr, false), "col must be in range 0-16383");
  EXPECT_REFUSED(this->sheet->setCol(3, 2, 5, nullptr, false), "colLast must be greater than or equal to colFirst");
  EXPECT_EQ(this->sheet->size_cols(), 0U);
  EXPECT_TRUE(this->sheet->setCol(16383, 16383, 5, nullptr, false));
}

TYPED_TEST(XmlRowsColumns, EachColumnIsFittedAlone) {
  this->sheet->writeStr(0, 1, u"12345", nullptr, 0);
  this->sheet->writeStr(1, 1, u"a\nlonger one", nullptr, 0);
  this->sheet->writeNum(0, 3, 1234567890123, nullptr);
  ASSERT_TRUE(this->sheet->setCol(1, 3, -1, nullptr, false));
  EXPECT_EQ(this->sheet->colWidth(1), 10);
  EXPECT_EQ(this->sheet->colWidth(2), 8.43) << "an empty column keeps its width";
  EXPECT_GT(this->sheet->colWidth(3), 10);
}

TYPED_TEST(XmlRowsColumns, TheAreaLimitsWhatIsMeasured) {
  this->sheet->writeStr(0, 0, u"12345678901234567890", nullptr, 0);
  this->sheet->writeStr(5, 0, u"123456", nullptr, 0);
  this->sheet->setAutoFitArea(1, 0, 9, 0);
  ASSERT_TRUE(this->sheet->setCol(0, 0, -1, nullptr, false));
  EXPECT_EQ(this->sheet->colWidth(0), 6);
  this->sheet->setAutoFitArea(0, 0, -1, -1);
  ASSERT_TRUE(this->sheet->setCol(0, 0, -1, nullptr, false));
  EXPECT_EQ(this->sheet->colWidth(0), 20);
}

TYPED_TEST(XmlRowsColumns, BoldCellsAreMeasuredInBold) {
  auto* format = this->book->addFormat(nullptr);
  auto* font = this->book->addFont(nullptr);
  font->setBold(true);
  format->setFont(font);
  this->sheet->writeStr(0, 0, u"1234567", format, 0);
  ASSERT_TRUE(this->sheet->setCol(0, 0, -1, nullptr, false));
  EXPECT_EQ(this->sheet->colWidth(0), 9);
}

TYPED_TEST(XmlRowsColumns, FormatsOfColumnsReachNewCells) {
  auto* format = this->book->addFormat(nullptr);
  format->setNumFormat(numformat::percent);
  ASSERT_TRUE(this->sheet->setCol(2, 3, 10, format, false));
  this->sheet->writeNum(0, 3, 0.5, nullptr);
  EXPECT_EQ(this->sheet->cellFormat(0, 3)->numFormat(), numformat::percent);
  this->reload();
  this->sheet->writeNum(1, 2, 0.5, nullptr);
  EXPECT_EQ(this->sheet->cellFormat(1, 2)->numFormat(), numformat::percent);
  XMLBookImplT<TypeParam> other;
  EXPECT_REFUSED(this->sheet->setCol(0, 0, 10, other.addFormat(nullptr), false), "specified format not found");
}

TYPED_TEST(XmlRowsColumns, RowsKeepHeightFormatAndHiding) {
  auto* format = this->book->addFormat(nullptr);
  ASSERT_TRUE(this->sheet->setRow(4, 33.5, format, true));
  EXPECT_TRUE(
      this->holds("<row r=\"5\" s=\"1\" customFormat=\"true\" ht=\"33.5\" hidden=\"true\" customHeight=\"true\"/>"))
      << this->sheetXml();
  this->reload();
  EXPECT_EQ(this->sheet->rowHeight(4), 33.5);
  EXPECT_TRUE(this->sheet->rowHidden(4));
  EXPECT_EQ(this->sheet->lastRow(), 5) << "a hidden row is in use";
  ASSERT_TRUE(this->sheet->setRow(4, 409.6, nullptr, false));
  EXPECT_FALSE(this->sheet->rowHidden(4));
  EXPECT_REFUSED(this->sheet->setRow(4, 409.7, nullptr, false), "height is too big");
  EXPECT_REFUSED(this->sheet->setRow(4, -1, nullptr, false), "height is too big");
  EXPECT_REFUSED(this->sheet->setRow(1048576, 10, nullptr, false), "row must be in range 0-1048575");
}

TYPED_TEST(XmlRowsColumns, ShowingWhatIsNotThereMakesNothing) {
  EXPECT_TRUE(this->sheet->setRowHidden(7, false));
  EXPECT_TRUE(this->sheet->setColHidden(7, false));
  EXPECT_EQ(this->sheet->get_sheetData().size_row(), 0U);
  EXPECT_EQ(this->sheet->size_cols(), 0U);
}

TYPED_TEST(XmlRowsColumns, TwoGroupsOfOneRangeMakeTheSecondLevel) {
  ASSERT_TRUE(this->sheet->groupRows(2, 4, false));
  ASSERT_TRUE(this->sheet->groupRows(2, 4, true));
  const auto& data = this->sheet->get_sheetData();
  ASSERT_EQ(data.size_row(), 4U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(data.get_row(i).get_outlineLevel(), 2);
    EXPECT_TRUE(data.get_row(i).get_hidden());
  }
  EXPECT_TRUE(data.get_row(3).get_collapsed());
  EXPECT_FALSE(data.get_row(3).get_hidden());
  EXPECT_EQ(this->sheet->get_sheetFormatPr().get_outlineLevelRow(), 2);
  ASSERT_TRUE(this->sheet->groupCols(1, 2, false));
  ASSERT_TRUE(this->sheet->groupCols(1, 2, true));
  EXPECT_EQ(this->sheet->get_cols(0).get_col(0).get_outlineLevel(), 2);
  EXPECT_TRUE(this->sheet->get_cols(0).get_col(1).get_collapsed());
  EXPECT_EQ(this->sheet->get_sheetFormatPr().get_outlineLevelCol(), 2);
}

TYPED_TEST(XmlRowsColumns, GroupsThatOverlapInPartChangeNothing) {
  ASSERT_TRUE(this->sheet->groupRows(2, 4, false));
  ASSERT_TRUE(this->sheet->groupCols(2, 4, false));
  const std::string before = this->sheetXml();
  EXPECT_REFUSED(this->sheet->groupRows(4, 6, true), "detect overlap");
  EXPECT_REFUSED(this->sheet->groupCols(1, 2, true), "detect overlap");
  EXPECT_REFUSED(this->sheet->groupRows(4, 3, true), "must be rowFirst <= rowLast");
  EXPECT_REFUSED(this->sheet->groupCols(4, 3, true), "must be colFirst <= colLast");
  EXPECT_EQ(this->sheetXml(), before);
}

TYPED_TEST(XmlRowsColumns, LevelsEndAtTheSeventh) {
  for (int i = 0; i < 7; ++i) {
    ASSERT_TRUE(this->sheet->groupRows(1, 1, false)) << this->message();
    ASSERT_TRUE(this->sheet->groupCols(1, 1, false)) << this->message();
  }
  const std::string before = this->sheetXml();
  EXPECT_REFUSED(this->sheet->groupRows(1, 1, true), "exceeded outline level");
  EXPECT_REFUSED(this->sheet->groupCols(1, 1, true), "exceeded outline level");
  EXPECT_EQ(this->sheetXml(), before);
  EXPECT_EQ(this->sheet->get_sheetData().get_row(0).get_outlineLevel(), 7);
  ASSERT_TRUE(this->sheet->groupRows(1048575, 1048575, true)) << "no row follows the last";
  ASSERT_TRUE(this->sheet->groupCols(16383, 16383, true));
}

// What files may have: several elements, ranges that meet, ranges past the last column.
TYPED_TEST(XmlRowsColumns, RangesOfAFileThatMeetAreSetInOrder) {
  auto add = [&](auto& cols, unsigned min, unsigned max, double width) {
    auto& col = cols.append_col();
    col.set_min(min);
    col.set_max(max);
    col.set_width(width);
  };
  add(this->sheet->append_cols(), 5, 20000, 20);
  auto& second = this->sheet->append_cols();
  add(second, 2, 6, 10);
  add(second, 9, 8, 30);
  ASSERT_TRUE(this->sheet->setCol(2, 2, 15, nullptr, false));
  ASSERT_EQ(this->sheet->size_cols(), 1U);
  const auto& cols = this->sheet->get_cols(0);
  unsigned last = 0;
  for (std::size_t i = 0; i < cols.size_col(); ++i) {
    EXPECT_GT(cols.get_col(i).get_min(), last);
    EXPECT_GE(cols.get_col(i).get_max(), cols.get_col(i).get_min());
    last = cols.get_col(i).get_max();
  }
  EXPECT_EQ(last, 16384U);
  this->reload();
  EXPECT_EQ(this->sheet->colWidth(2), 15);
}

}  // namespace
}  // namespace rubrica::test
