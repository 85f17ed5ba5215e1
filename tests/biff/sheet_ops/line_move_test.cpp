#include "biff/line_move.h"

#include <gtest/gtest.h>

#include "biff/cell_range.h"

namespace rubrica {

static bool operator==(const LineSpan& a, const LineSpan& b) {
  return a.first == b.first && a.last == b.last;
}

namespace {

constexpr auto kRows = LineMove::Axis::rows;
constexpr auto kCols = LineMove::Axis::columns;
constexpr auto kInsert = LineMove::Kind::insert;
constexpr auto kRemove = LineMove::Kind::remove;

TEST(LineMove, InsertingPushesLinesOnAndSomeOut) {
  const LineMove move(kRows, kInsert, 5, 7);
  EXPECT_EQ(move.count(), 3);
  EXPECT_EQ(move.mapRow(4), 4);
  EXPECT_EQ(move.mapRow(5), 8);
  EXPECT_EQ(move.mapRow(65532), 65535);
  EXPECT_EQ(move.mapRow(65533), std::nullopt);
  EXPECT_EQ(move.mapCol(200), 200);
}

TEST(LineMove, RemovingTakesLinesAwayAndPullsTheRestBack) {
  const LineMove move(kCols, kRemove, 5, 7);
  EXPECT_EQ(move.mapCol(4), 4);
  EXPECT_EQ(move.mapCol(5), std::nullopt);
  EXPECT_EQ(move.mapCol(7), std::nullopt);
  EXPECT_EQ(move.mapCol(8), 5);
  EXPECT_EQ(move.mapCol(255), 252);
  EXPECT_EQ(move.mapRow(6), 6);
}

TEST(LineMove, ASpanGrowsAroundAnInsertionAndIsCutAtTheEdge) {
  const LineMove move(kCols, kInsert, 5, 7);
  EXPECT_EQ(move.mapSpan(0, 4), (LineSpan{0, 4}));
  EXPECT_EQ(move.mapSpan(4, 5), (LineSpan{4, 8}));
  EXPECT_EQ(move.mapSpan(5, 5), (LineSpan{8, 8}));
  EXPECT_EQ(move.mapSpan(250, 255), (LineSpan{253, 255}));
  EXPECT_EQ(move.mapSpan(253, 255), std::nullopt);
}

TEST(LineMove, ASpanLosesWhatIsRemoved) {
  const LineMove move(kRows, kRemove, 5, 7);
  EXPECT_EQ(move.mapSpan(0, 4), (LineSpan{0, 4}));
  EXPECT_EQ(move.mapSpan(3, 6), (LineSpan{3, 4}));
  EXPECT_EQ(move.mapSpan(5, 7), std::nullopt);
  EXPECT_EQ(move.mapSpan(6, 9), (LineSpan{5, 6}));
  EXPECT_EQ(move.mapSpan(3, 9), (LineSpan{3, 6}));
  EXPECT_EQ(move.mapSpan(8, 9), (LineSpan{5, 6}));
  EXPECT_EQ(LineMove(kRows, kRemove, 0, 3).mapSpan(0, 3), std::nullopt);
}

TEST(LineMove, ASpanOverAllLinesStaysOne) {
  EXPECT_EQ(LineMove(kRows, kInsert, 5, 7).mapSpan(0, 65535), (LineSpan{0, 65535}));
  EXPECT_EQ(LineMove(kCols, kRemove, 5, 7).mapSpan(0, 255), (LineSpan{0, 255}));
}

TEST(LineMove, ARangeMovesAlongItsAxisAlone) {
  CellRange range = CellRange::of(5, 6, 7, 8);
  EXPECT_TRUE(LineMove(kRows, kInsert, 0, 1).apply(range));
  EXPECT_EQ(range, CellRange::of(7, 8, 7, 8));
  EXPECT_TRUE(LineMove(kCols, kRemove, 8, 8).apply(range));
  EXPECT_EQ(range, CellRange::of(7, 8, 7, 7));
  EXPECT_FALSE(LineMove(kCols, kRemove, 7, 7).apply(range));
}

}  // namespace
}  // namespace rubrica
