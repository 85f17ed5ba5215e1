#include "engine/address.h"

#include <gtest/gtest.h>

#include "engine/xlerror.h"

namespace rubrica {
namespace {

std::string messageOf(const auto& body) {
  try {
    body();
  } catch (const xlerror& error) {
    return error.what();
  }
  return "nothing thrown";
}

TEST(Addresses, ColumnsCountInLetters) {
  EXPECT_EQ(columnLetters(0), u"A");
  EXPECT_EQ(columnLetters(25), u"Z");
  EXPECT_EQ(columnLetters(26), u"AA");
  EXPECT_EQ(columnLetters(255), u"IV");
  EXPECT_EQ(columnLetters(701), u"ZZ");
  EXPECT_EQ(columnLetters(702), u"AAA");
  EXPECT_EQ(columnLetters(16383), u"XFD");
}

TEST(Addresses, AbsolutePartsHaveADollar) {
  EXPECT_EQ(addressText({6, 1, true, true}), u"B7");
  EXPECT_EQ(addressText({6, 1, false, true}), u"B$7");
  EXPECT_EQ(addressText({6, 1, true, false}), u"$B7");
  EXPECT_EQ(addressText({6, 1, false, false}), u"$B$7");
}

TEST(Addresses, TextAndPlaceAgreeOverTheWholeSheet) {
  for (int col = 0; col <= kMaxCol; ++col) {
    const CellAddress address = parseAddress(addressText({col * 64, col, (col & 1) != 0, (col & 2) != 0}));
    ASSERT_EQ(address.row, col * 64);
    ASSERT_EQ(address.col, col);
    ASSERT_EQ(address.rowRelative, (col & 1) != 0);
    ASSERT_EQ(address.colRelative, (col & 2) != 0);
  }
}

TEST(Addresses, LowerCaseIsRead) {
  EXPECT_EQ(parseAddress(u"$xfd$1048576").col, kMaxCol);
}

TEST(Addresses, PlacesOutsideTheSheetFail) {
  EXPECT_EQ(messageOf([] { addressText({kMaxRow + 1, 0}); }), "row must be in range 0-1048575");
  EXPECT_EQ(messageOf([] { addressText({-1, 0}); }), "row must be in range 0-1048575");
  EXPECT_EQ(messageOf([] { addressText({0, kMaxCol + 1}); }), "col must be in range 0-16383");
  EXPECT_EQ(messageOf([] { parseAddress(u"A0"); }), "row must be in range 0-1048575");
  EXPECT_EQ(messageOf([] { parseAddress(u"XFE1"); }), "col must be in range 0-16383");
  EXPECT_EQ(messageOf([] { parseAddress(u"A99999999999999999999"); }), "row must be in range 0-1048575");
  EXPECT_EQ(messageOf([] { parseAddress(u"AAAAAAAAAAAAAAAAAAAAAA1"); }), "col must be in range 0-16383");
}

TEST(Addresses, OtherTextFails) {
  for (const char16_t* text : {u"", u"A", u"7", u"$", u"$A$", u"A1B", u"A 1", u"A1 ", u"A-1", u"Ä1", u"A1:B2"}) {
    EXPECT_EQ(messageOf([&] { parseAddress(text); }), "invalid cell address");
  }
}

TEST(Addresses, NarrowTextOfAFileGivesThePlaceOrNothing) {
  const auto address = addressIn("$xfd1048576");
  ASSERT_TRUE(address);
  EXPECT_EQ(address->row, kMaxRow);
  EXPECT_EQ(address->col, kMaxCol);
  EXPECT_FALSE(address->colRelative);
  EXPECT_TRUE(address->rowRelative);
  for (const char* text : {"", "A", "7", "A0", "XFE1", "A1048577", "A1:B2", "A1 ",
                           "\xC3\x84"
                           "1"}) {
    EXPECT_FALSE(addressIn(text)) << text;
  }
}

}  // namespace
}  // namespace rubrica
