#include "officeart/picture_anchor.h"

#include <map>

#include <gtest/gtest.h>

namespace rubrica::officeart {
namespace {

class Grid final : public CellGrid {
 public:
  int columnPixels(int col) const override { return columns.contains(col) ? columns.at(col) : 64; }
  int rowPixels(int row) const override { return rows.contains(row) ? rows.at(row) : 20; }
  std::map<int, int> columns, rows;
};

TEST(Anchors, AWidthOfExactlyTheColumnEndsAtTheStartOfTheNext) {
  const CellAnchor anchor = anchorOf({.row = 3, .col = 2, .width = 64, .height = 20}, Grid());
  EXPECT_EQ(anchor, (CellAnchor{0, 2, 0, 3, 0, 3, 0, 4, 0}));
}

TEST(Anchors, PartsOfCellsAreCut) {
  const CellAnchor anchor =
      anchorOf({.row = 0, .col = 0, .width = 100, .height = 33, .offsetX = 10, .offsetY = 5}, Grid());
  EXPECT_EQ(anchor, (CellAnchor{0, 0, 160, 0, 64, 1, 46 * 1024 / 64, 1, 18 * 256 / 20}));
}

TEST(Anchors, HiddenColumnsAndRowsAreStridenOver) {
  Grid grid;
  grid.columns[1] = 0;
  grid.rows[0] = 0;
  EXPECT_EQ(anchorOf({.width = 65, .height = 5}, grid), (CellAnchor{0, 0, 0, 0, 0, 2, 16, 1, 64}));
  EXPECT_EQ(anchorOf({.col = 1, .width = 10, .height = 5, .offsetX = 3}, grid),
            (CellAnchor{0, 1, 0, 0, 0, 2, 208, 1, 64}));
}

TEST(Anchors, ASizeOfMinusOneReachesToTheEndOfTheCell) {
  EXPECT_EQ(anchorOf({.row = 1, .col = 1, .width = -1, .height = -1, .offsetX = 5}, Grid()),
            (CellAnchor{0, 1, 80, 1, 0, 1, 32767, 1, 32767}));
  EXPECT_EQ(anchorOf({.row = 1, .col = 1, .width = -1, .height = -1, .rowLast = 4, .colLast = 3}, Grid()),
            (CellAnchor{0, 1, 0, 1, 0, 3, 32767, 4, 32767}));
}

TEST(Anchors, ABoxThatLeavesTheSheetEndsWithItsLastCell) {
  EXPECT_EQ(anchorOf({.row = 65535, .col = 255, .width = 2000000000, .height = 2000000000}, Grid()),
            (CellAnchor{0, 255, 0, 65535, 0, 255, 1024, 65535, 256}));
  const CellAnchor whole = anchorOf({.width = 2147483647, .height = 2147483647, .offsetX = 64, .offsetY = 20}, Grid());
  EXPECT_EQ(whole.colR, 255);
  EXPECT_EQ(whole.rwB, 65535);
}

TEST(Anchors, GiveTheirBoxBackToThePixel) {
  Grid grid;
  grid.columns = {{0, 13}, {1, 0}, {2, 181}, {3, 7}};
  grid.rows = {{0, 33}, {1, 1}, {2, 0}};
  for (int width = 0; width < 400; width += 7) {
    for (int offset = 0; offset <= 12; offset += 3) {
      const PixelBox box =
          boxOf(anchorOf({.width = width, .height = width / 2, .offsetX = offset, .offsetY = offset}, grid), grid);
      EXPECT_EQ(box.width, width) << offset;
      EXPECT_EQ(box.height, width / 2) << offset;
      EXPECT_EQ(box.offsetX, offset);
      EXPECT_EQ(box.offsetY, offset);
    }
  }
}

TEST(Anchors, OfOtherProgramsNeedNoOrder) {
  const PixelBox box = boxOf({0, 300, 5000, 9, 9999, 2, 1, 3, 1}, Grid());
  EXPECT_EQ(box.width, 0);
  EXPECT_EQ(box.height, 0);
}

}  // namespace
}  // namespace rubrica::officeart
