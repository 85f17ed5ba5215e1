#include "xml/sheet_range.h"

#include <gtest/gtest.h>

#include "engine/xlerror.h"

namespace rubrica {
namespace {

TEST(SheetRanges, OneAddressIsARangeOfOneCell) {
  EXPECT_EQ(parseRange("B3"), (SheetRange{2, 2, 1, 1}));
  EXPECT_EQ(rangeText({2, 2, 1, 1}), "B3");
}

TEST(SheetRanges, CornersComeOutInOrderWithoutTheirMarks) {
  EXPECT_EQ(parseRange("$D$9:b2"), (SheetRange{1, 8, 1, 3}));
  EXPECT_EQ(rangeText({1, 8, 1, 3}), "B2:D9");
  EXPECT_EQ(rangeText({8, 1, 3, 1}), "B2:D9");
  EXPECT_EQ(parseRange("A1:XFD1048576"), (SheetRange{0, 1048575, 0, 16383}));
}

TEST(SheetRanges, OtherTextIsNone) {
  for (const char* text : {"", ":", "A1:", ":A1", "A1:B2:C3", "A:B", "1:2", "A0", "XFE1", "A1048577", "Sheet1!A1"}) {
    EXPECT_FALSE(parseRange(text)) << text;
  }
}

TEST(SheetRanges, TextsOfPlacesOutsideTheSheetFail) {
  EXPECT_THROW(cellText(1048576, 0), xlerror);
  EXPECT_THROW(cellText(0, 16384), xlerror);
  EXPECT_THROW(cellText(-1, 0), xlerror);
  EXPECT_THROW(rangeText({0, 0, 0, 16384}), xlerror);
  EXPECT_EQ(absoluteCellText(1048575, 16383), "$XFD$1048576");
}

}  // namespace
}  // namespace rubrica
