#include "engine/column_widths.h"

#include <cmath>

#include <gtest/gtest.h>

namespace rubrica {
namespace {

TEST(ColumnWidths, TenCharactersOfSevenPixelsAreSeventyFivePixels) {
  const ColumnWidths widths(7);
  EXPECT_EQ(widths.pixelsOfChars(10), 75);
  EXPECT_EQ(widths.storedOfChars(10), 2742);
  EXPECT_EQ(widths.pixelsOfStored(2742), 75);
  EXPECT_EQ(widths.charsOfPixels(75), 10);
}

TEST(ColumnWidths, TheUsualWidthIsSixtyFourPixels) {
  const ColumnWidths widths(7);
  EXPECT_EQ(widths.pixelsOfChars(8.43), 64);
  EXPECT_EQ(widths.storedOfChars(8.43), 2340);
  EXPECT_EQ(widths.charsOfPixels(64), 8.43);
}

TEST(ColumnWidths, OneCharacterAndLessShareThePadding) {
  const ColumnWidths widths(7);
  EXPECT_EQ(widths.pixelsOfChars(1), 12);
  EXPECT_EQ(widths.pixelsOfChars(0.5), 6);
  EXPECT_EQ(widths.pixelsOfChars(0), 0);
  EXPECT_EQ(widths.charsOfPixels(12), 1);
  EXPECT_EQ(widths.charsOfPixels(6), 0.5);
  EXPECT_EQ(widths.charsOfPixels(11), 0.92);
  EXPECT_EQ(widths.charsOfPixels(0), 0);
}

TEST(ColumnWidths, WideDigitsHaveAWiderMargin) {
  EXPECT_EQ(ColumnWidths(12).pixelsOfChars(10), 125);
  EXPECT_EQ(ColumnWidths(13).pixelsOfChars(10), 143);
  EXPECT_EQ(ColumnWidths(28).pixelsOfChars(10), 293);
  EXPECT_EQ(ColumnWidths(29).pixelsOfChars(10), 311);
}

TEST(ColumnWidths, EveryPixelWidthComesBackFromItsCharactersAndItsStoredForm) {
  for (const int digit : {5, 6, 7, 8, 9, 12, 13, 16, 20}) {
    const ColumnWidths widths(digit);
    for (int pixels = 0; pixels < 250 * digit; ++pixels) {
      const double chars = widths.charsOfPixels(pixels);
      ASSERT_EQ(widths.pixelsOfChars(chars), pixels) << digit;
      ASSERT_EQ(widths.pixelsOfStored(widths.storedOfChars(chars)), pixels) << digit;
    }
  }
}

TEST(ColumnWidths, PastSixteenBitsTheStoredFormStartsAgain) {
  EXPECT_EQ(ColumnWidths(5).pixelsOfChars(255), 1280);
  EXPECT_EQ(ColumnWidths(5).storedOfChars(255), 0);
}

TEST(ColumnWidths, NoWidthOrDigitBreaksTheArithmetic) {
  const ColumnWidths widths(7);
  EXPECT_EQ(widths.storedOfChars(std::nan("")), 0);
  EXPECT_EQ(widths.pixelsOfChars(1e300), 1'000'000);
  EXPECT_EQ(ColumnWidths(0).storedOfChars(10), 0);
  EXPECT_EQ(ColumnWidths(0).charsOfPixels(100), 0);
}

TEST(ColumnWidths, OfColElementsCountDigitsWithTheirPadding) {
  const ColumnWidths widths(7);
  EXPECT_EQ(widths.digitsOfChars(10), 10.7109375);
  EXPECT_EQ(widths.pixelsOfDigits(10.7109375), 75);
  EXPECT_EQ(widths.pixelsOfDigits(9.140625), 64);
  EXPECT_EQ(widths.pixelsOfDigits(45.2142857142857), widths.pixelsOfDigits(45.214285714286));
  for (int pixels = 0; pixels < 2000; ++pixels) {
    EXPECT_EQ(widths.pixelsOfDigits(widths.digitsOfChars(widths.charsOfPixels(pixels))), pixels);
  }
  EXPECT_EQ(widths.digitsOfChars(std::nan("")), 0);
  EXPECT_EQ(ColumnWidths(0).digitsOfChars(10), 0);
}

TEST(ColumnWidths, OfABaseAreMultiplesOfEightPixels) {
  EXPECT_EQ(ColumnWidths(7).pixelsOfBase(8), 64);
  EXPECT_EQ(ColumnWidths(7).pixelsOfBase(10), 80);
  EXPECT_EQ(ColumnWidths(8).pixelsOfBase(8), 72);
}

}  // namespace
}  // namespace rubrica
