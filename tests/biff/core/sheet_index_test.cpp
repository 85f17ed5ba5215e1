#include "biff/sheet_index.h"

#include <map>
#include <random>

#include <gtest/gtest.h>

#include "tests/biff/record_stream.h"

namespace rubrica {
namespace {

TEST(SheetIndices, HoldNothingAtFirst) {
  const SheetIndex index;
  EXPECT_EQ(index.get(0, 0), 0u);
  EXPECT_EQ(index.get(65535, 255), 0u);
  EXPECT_FALSE(index.hasRow(0));
  EXPECT_EQ(index.firstInRow(0), 0);
  EXPECT_EQ(index.lastInRow(0), 0);
  EXPECT_EQ(index.nextRow(0), kBiffRows);
}

TEST(SheetIndices, TellTheUsedColumnsOfARow) {
  SheetIndex index;
  index.slot(7, 200) = 3;
  index.slot(7, 30) = 5;
  index.slot(7, 100) = 4;  // bit 0 clear: no cell
  EXPECT_TRUE(index.hasRow(7));
  EXPECT_EQ(index.firstInRow(7), 30);
  EXPECT_EQ(index.lastInRow(7), 201);
  EXPECT_EQ(index.get(7, 30), 5u);
  EXPECT_EQ(index.get(7, 200), 3u);
  EXPECT_EQ(index.get(7, 31), 0u);
}

TEST(SheetIndices, RefuseColumnsPastTheSheet) {
  SheetIndex index;
  EXPECT_NO_THROW(index.slot(0, 255));
  EXPECT_EQ(test::errorOf([&] { index.slot(0, 256); }), "SheetIndex: col can't be more than 255");
}

TEST(SheetIndices, AgreeWithAMapUnderRandomWrites) {
  std::mt19937 random(7);
  SheetIndex index;
  std::map<std::pair<int, int>, std::uint32_t> expected;
  for (int i = 0; i < 20000; ++i) {
    const int row = static_cast<int>(random() % 65536), col = static_cast<int>(random() % 256);
    const auto word = static_cast<std::uint32_t>(random() % 100) * 2 + 1;
    index.slot(row % 700, col) = word;
    expected[{row % 700, col}] = word;
  }
  std::map<std::pair<int, int>, std::uint32_t> found;
  for (int row = index.nextRow(0); row < kBiffRows; row = index.nextRow(row + 1)) {
    index.forEachInRow(row, [&](int col, std::uint32_t word) { found[{row, col}] = word; });
  }
  EXPECT_EQ(found, expected);
}

TEST(SheetIndices, PruningFreesRowsWithoutCells) {
  SheetIndex index;
  index.slot(1, 1) = 1;
  index.slot(2, 1) = 0;
  index.prune();
  EXPECT_TRUE(index.hasRow(1));
  EXPECT_FALSE(index.hasRow(2));
}

TEST(SheetIndices, CopiesStandForThemselves) {
  SheetIndex index;
  index.slot(300, 20) = 9;
  SheetIndex copy = index;
  copy.slot(300, 20) = 11;
  copy.slot(5, 5) = 1;
  EXPECT_EQ(index.get(300, 20), 9u);
  EXPECT_FALSE(index.hasRow(5));
  index.clear();
  EXPECT_EQ(index.nextRow(0), kBiffRows);
  EXPECT_EQ(copy.get(300, 20), 11u);
}

}  // namespace
}  // namespace rubrica
