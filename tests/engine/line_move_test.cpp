#include "engine/line_move.h"

#include <gtest/gtest.h>

namespace rubrica {

static bool operator==(const LineSpan& a, const LineSpan& b) {
  return a.first == b.first && a.last == b.last;
}

namespace {

// A range as a file form would hold it.
struct CellRange {
  std::uint16_t rowFirst, rowLast, colFirst, colLast;
  static CellRange of(std::uint16_t r1, std::uint16_t r2, std::uint16_t c1, std::uint16_t c2) {
    return {r1, r2, c1, c2};
  }
  bool operator==(const CellRange&) const = default;
};

constexpr auto kRows = LineMove::Axis::rows;
constexpr auto kCols = LineMove::Axis::columns;
constexpr auto kInsert = LineMove::Kind::insert;
constexpr auto kRemove = LineMove::Kind::remove;

TEST(LineMove, InsertingPushesLinesOnAndSomeOut) {
  const LineMove move(kXlsGrid, kRows, kInsert, 5, 7);
  EXPECT_EQ(move.count(), 3);
  EXPECT_EQ(move.mapRow(4), 4);
  EXPECT_EQ(move.mapRow(5), 8);
  EXPECT_EQ(move.mapRow(65532), 65535);
  EXPECT_EQ(move.mapRow(65533), std::nullopt);
  EXPECT_EQ(move.mapCol(200), 200);
}

TEST(LineMove, RemovingTakesLinesAwayAndPullsTheRestBack) {
  const LineMove move(kXlsGrid, kCols, kRemove, 5, 7);
  EXPECT_EQ(move.mapCol(4), 4);
  EXPECT_EQ(move.mapCol(5), std::nullopt);
  EXPECT_EQ(move.mapCol(7), std::nullopt);
  EXPECT_EQ(move.mapCol(8), 5);
  EXPECT_EQ(move.mapCol(255), 252);
  EXPECT_EQ(move.mapRow(6), 6);
}

TEST(LineMove, ASpanGrowsAroundAnInsertionAndIsCutAtTheEdge) {
  const LineMove move(kXlsGrid, kCols, kInsert, 5, 7);
  EXPECT_EQ(move.mapSpan(0, 4), (LineSpan{0, 4}));
  EXPECT_EQ(move.mapSpan(4, 5), (LineSpan{4, 8}));
  EXPECT_EQ(move.mapSpan(5, 5), (LineSpan{8, 8}));
  EXPECT_EQ(move.mapSpan(250, 255), (LineSpan{253, 255}));
  EXPECT_EQ(move.mapSpan(253, 255), std::nullopt);
}

TEST(LineMove, ASpanLosesWhatIsRemoved) {
  const LineMove move(kXlsGrid, kRows, kRemove, 5, 7);
  EXPECT_EQ(move.mapSpan(0, 4), (LineSpan{0, 4}));
  EXPECT_EQ(move.mapSpan(3, 6), (LineSpan{3, 4}));
  EXPECT_EQ(move.mapSpan(5, 7), std::nullopt);
  EXPECT_EQ(move.mapSpan(6, 9), (LineSpan{5, 6}));
  EXPECT_EQ(move.mapSpan(3, 9), (LineSpan{3, 6}));
  EXPECT_EQ(move.mapSpan(8, 9), (LineSpan{5, 6}));
  EXPECT_EQ(LineMove(kXlsGrid, kRows, kRemove, 0, 3).mapSpan(0, 3), std::nullopt);
}

TEST(LineMove, ASpanOverAllLinesStaysOne) {
  EXPECT_EQ(LineMove(kXlsGrid, kRows, kInsert, 5, 7).mapSpan(0, 65535), (LineSpan{0, 65535}));
  EXPECT_EQ(LineMove(kXlsGrid, kCols, kRemove, 5, 7).mapSpan(0, 255), (LineSpan{0, 255}));
}

TEST(LineMove, TheLimitIsThatOfTheGrid) {
  const LineMove rows(kXlsxGrid, kRows, kInsert, 5, 7), cols(kXlsxGrid, kCols, kInsert, 5, 7);
  EXPECT_EQ(rows.mapRow(1048572), 1048575);
  EXPECT_EQ(rows.mapRow(1048573), std::nullopt);
  EXPECT_EQ(cols.mapCol(16380), 16383);
  EXPECT_EQ(cols.mapCol(16381), std::nullopt);
}

TEST(LineMove, ARangeMovesAlongItsAxisAlone) {
  CellRange range = CellRange::of(5, 6, 7, 8);
  EXPECT_TRUE(LineMove(kXlsGrid, kRows, kInsert, 0, 1).apply(range));
  EXPECT_EQ(range, CellRange::of(7, 8, 7, 8));
  EXPECT_TRUE(LineMove(kXlsGrid, kCols, kRemove, 8, 8).apply(range));
  EXPECT_EQ(range, CellRange::of(7, 8, 7, 7));
  EXPECT_FALSE(LineMove(kXlsGrid, kCols, kRemove, 7, 7).apply(range));
}

}  // namespace
}  // namespace rubrica
