#include <gtest/gtest.h>

#include "formula/biff5_tokens.h"
#include "formula/ptg.h"
#include "formula/token_walk.h"
#include "tests/formula/fake_book.h"

namespace rubrica::formula {
namespace {

// Knows the sheets 0 to 2 of its own book and one external name; its code page is Latin-1 with U+20AC at 0x80.
class FakeBiff5Book : public Biff5Access {
 public:
  std::optional<std::uint16_t> externSheetIndex(std::int16_t externIndex, std::uint16_t firstSheet,
                                                std::uint16_t lastSheet) override {
    if (externIndex >= 0 || firstSheet > 2 || lastSheet > 2) return std::nullopt;
    return static_cast<std::uint16_t>(0x100 + 16 * firstSheet + lastSheet);
  }

  std::optional<ExternName> externName(std::int16_t externIndex, std::uint16_t nameIndex) override {
    if (externIndex != 1 || nameIndex != 2) return std::nullopt;
    return ExternName{7, 9};
  }

  std::u16string text(std::string_view bytes) override {
    std::u16string result;
    for (const char c : bytes) result += c == '\x80' ? u'\u20AC' : static_cast<char16_t>(static_cast<std::uint8_t>(c));
    return result;
  }
};

std::string converted(const Bytes& tokens) {
  FakeBiff5Book book;
  const auto result = biff8FromBiff5(tokens, book);
  return result ? hex(*result) : "nothing";
}

Bytes joined(std::initializer_list<Bytes> parts) {
  Bytes result;
  for (const Bytes& part : parts) result.insert(result.end(), part.begin(), part.end());
  return result;
}

const Bytes zeros8(8, 0), zeros12(12, 0);

TEST(Biff5Tokens, WhatIsTheSameInBothFormsIsCopied) {
  for (const Bytes& tokens :
       {Bytes{}, Bytes{0x1E, 1, 0, 0x1E, 2, 0, 0x03}, Bytes{0x1F, 1, 2, 3, 4, 5, 6, 7, 8}, Bytes{0x1C, 42, 0x1D, 1},
        Bytes{0x01, 5, 0, 6, 0}, Bytes{0x41, 19, 0, 0x42, 2, 4, 0}, Bytes{0x19, 0x10, 0, 0}, Bytes{0x19, 0x01, 0, 0},
        Bytes{0x19, 0x40, 0, 3}, Bytes{0x19, 0x41, 0, 3}, Bytes{0x16, 0x15, 0x14, 0x13, 0x12, 0x11, 0x10, 0x0F}}) {
    EXPECT_EQ(converted(tokens), hex(tokens));
  }
}

TEST(Biff5Tokens, ReferenceFlagsMoveFromTheRowToTheColumn) {
  EXPECT_EQ(converted({0x44, 0x04, 0xC0, 2}), "44 04 00 02 C0");
  EXPECT_EQ(converted({0x24, 0xFF, 0x7F, 0xFF}), "24 FF 3F FF 40");
  EXPECT_EQ(converted({0x64, 0x01, 0x80, 1}), "64 01 00 01 80");
  EXPECT_EQ(converted({0x25, 0x00, 0xC0, 0x09, 0x00, 1, 2}), "25 00 00 09 00 01 C0 02 00");
}

TEST(Biff5Tokens, OffsetsKeepTheirSign) {
  EXPECT_EQ(converted({0x4C, 0xFF, 0xFF, 0xFF}), "4C FF FF FF C0");
  EXPECT_EQ(converted({0x4C, 0xFF, 0x7F, 0xFF}), "4C FF 3F FF 40");
  EXPECT_EQ(converted({0x4C, 0x01, 0xC0, 0x02}), "4C 01 00 02 C0");
  EXPECT_EQ(converted({0x6D, 0xFE, 0xFF, 0x02, 0xC0, 0xFF, 1}), "6D FE FF 02 00 FF C0 01 C0");
}

TEST(Biff5Tokens, NamesLoseTheirPadding) {
  EXPECT_EQ(converted(joined({{0x23, 3, 0}, zeros12})), "23 03 00 00 00");
  EXPECT_EQ(converted(joined({{0x59, 1, 0}, zeros8, {2, 0}, zeros12})), "59 07 00 09 00 00 00");
  EXPECT_EQ(converted(joined({{0x59, 1, 0}, zeros8, {3, 0}, zeros12})), "nothing");
}

TEST(Biff5Tokens, SheetsBecomeExternSheetIndexes) {
  EXPECT_EQ(converted(joined({{0x5A, 0xFF, 0xFF}, zeros8, {1, 0, 1, 0, 0x04, 0xC0, 2}})), "5A 11 01 04 00 02 C0");
  EXPECT_EQ(converted(joined({{0x3B, 0xFF, 0xFF}, zeros8, {0, 0, 2, 0, 0, 0, 9, 0, 1, 2}})),
            "3B 02 01 00 00 09 00 01 00 02 00");
  EXPECT_EQ(converted(joined({{0x5A, 0xFF, 0xFF}, zeros8, {0xFF, 0xFF, 0xFF, 0xFF, 4, 0xC0, 2}})), "nothing");
  EXPECT_EQ(converted(joined({{0x5A, 1, 0}, zeros8, {0, 0, 0, 0, 4, 0xC0, 2}})), "nothing");
}

TEST(Biff5Tokens, ErrorsOfReferencesStayErrors) {
  EXPECT_EQ(converted({0x2A, 9, 9, 9}), "2A 00 00 00 00");
  EXPECT_EQ(converted({0x4B, 9, 9, 9, 9, 9, 9}), "4B 00 00 00 00 00 00 00 00");
  EXPECT_EQ(converted(joined({{0x5C, 0xFF, 0xFF}, zeros8, {1, 0, 1, 0, 9, 9, 9}})), "5C 11 01 00 00 00 00");
  EXPECT_EQ(converted(joined({{0x5C, 0xFF, 0xFF}, zeros8, {0xFF, 0xFF, 0xFF, 0xFF, 9, 9, 9}})), "4A 00 00 00 00");
  EXPECT_EQ(converted(joined({{0x7D, 1, 0}, zeros8, {0, 0, 0, 0, 9, 9, 9, 9, 9, 9}})), "6B 00 00 00 00 00 00 00 00");
}

TEST(Biff5Tokens, TextsGetAFlagAndWideCharacters) {
  EXPECT_EQ(converted({0x17, 2, 'a', 0x80}), "17 02 01 61 00 AC 20");
  EXPECT_EQ(converted({0x17, 0}), "17 00 01");
}

TEST(Biff5Tokens, JumpsAreCountedAnew) {
  // IF(A1,B1,"x"): test, if, value, goto, value, goto, call.
  const Bytes tokens = joined({{0x44, 0, 0xC0, 0},
                               {0x19, 0x02, 8, 0},
                               {0x44, 0, 0xC0, 1},
                               {0x19, 0x08, 10, 0},
                               {0x17, 1, 'x'},
                               {0x19, 0x08, 3, 0},
                               {0x42, 3, 1, 0}});
  EXPECT_EQ(converted(tokens),
            "44 00 00 00 C0 19 02 09 00 44 00 00 01 C0 19 08 0C 00 17 01 01 78 00 19 08 03 00 42 03 01 00");
}

TEST(Biff5Tokens, TheJumpTableOfChooseIsCountedAnew) {
  // CHOOSE(1,A1,B1); distances from the beginning of the table, the last one to the call.
  const Bytes tokens = joined({{0x1E, 1, 0},
                               {0x19, 0x04, 2, 0, 6, 0, 14, 0, 22, 0},
                               {0x44, 0, 0xC0, 0},
                               {0x19, 0x08, 11, 0},
                               {0x44, 0, 0xC0, 1},
                               {0x19, 0x08, 3, 0},
                               {0x42, 3, 100, 0}});
  EXPECT_EQ(converted(tokens),
            "1E 01 00 19 04 02 00 06 00 0F 00 18 00 44 00 00 00 C0 19 08 0C 00 44 00 00 01 C0 19 08 03 00 42 03 64 00");
  Bytes inside = tokens;
  inside[7] = 5;
  EXPECT_EQ(converted(inside), "nothing");
}

TEST(Biff5Tokens, JumpsToNowhereDontConvert) {
  EXPECT_EQ(converted({0x19, 0x02, 1, 0, 0x1E, 1, 0}), "nothing");
  EXPECT_EQ(converted({0x19, 0x02, 4, 0, 0x1E, 1, 0}), "nothing");
  EXPECT_EQ(converted({0x19, 0x02, 3, 0, 0x1E, 1, 0}), "19 02 03 00 1E 01 00");
  EXPECT_EQ(converted({0x19, 0x08, 2, 0, 0x1E, 1, 0}), "19 08 02 00 1E 01 00");
}

TEST(Biff5Tokens, SizesOfWrappedTokensAreCountedAnew) {
  EXPECT_EQ(converted({0x29, 4, 0, 0x44, 0, 0xC0, 0}), "29 05 00 44 00 00 00 C0");
  EXPECT_EQ(converted({0x46, 9, 9, 9, 9, 4, 0, 0x44, 0, 0xC0, 0}), "49 05 00 44 00 00 00 C0");
  EXPECT_EQ(converted({0x27, 1, 2, 3, 4, 4, 0, 0x44, 0, 0xC0, 0}), "27 01 02 03 04 05 00 44 00 00 00 C0");
  EXPECT_EQ(converted({0x29, 3, 0, 0x44, 0, 0xC0, 0}), "nothing");
}

TEST(Biff5Tokens, WhatHasNoFormDoesntConvert) {
  EXPECT_EQ(converted({0x20, 0, 0, 0, 0, 0, 0, 0}), "nothing");
  EXPECT_EQ(converted({0x18, 1, 0, 0, 0, 0, 0}), "nothing");
  EXPECT_EQ(converted({0x1A, 0, 0, 0, 0, 0, 0}), "nothing");
  EXPECT_EQ(converted({0x2E, 0, 0}), "nothing");
  EXPECT_EQ(converted({0x00}), "nothing");
  EXPECT_EQ(converted({0x7E}), "nothing");
  EXPECT_EQ(converted({0xFF}), "nothing");
}

TEST(Biff5Tokens, WhatIsCutOffDoesntConvert) {
  const Bytes whole[] = {
      {0x1E, 1, 0},
      {0x44, 0, 0xC0, 0},
      {0x17, 2, 'a', 'b'},
      {0x19, 0x10, 0, 0},
      {0x19, 0x04, 0, 0, 2, 0},
      joined({{0x23, 3, 0}, zeros12}),
      joined({{0x5A, 0xFF, 0xFF}, zeros8, {1, 0, 1, 0, 4, 0xC0, 2}}),
  };
  for (const Bytes& tokens : whole) {
    EXPECT_NE(converted(tokens), "nothing") << hex(tokens);
    for (std::size_t size = 1; size < tokens.size(); ++size) {
      EXPECT_EQ(converted(Bytes(tokens.begin(), tokens.begin() + static_cast<std::ptrdiff_t>(size))), "nothing")
          << hex(tokens) << " cut to " << size;
    }
  }
}

TEST(Biff5Tokens, ConvertedFormulasPrint) {
  FakeBiff5Book book;
  const auto tokens =
      biff8FromBiff5(Bytes{0x25, 0x00, 0xC0, 0x09, 0x00, 1, 2, 0x42, 1, 4, 0, 0x17, 1, 'x', 0x08}, book);
  ASSERT_TRUE(tokens);
  EXPECT_EQ(printed(*tokens), u"SUM(B1:$C$10)&\"x\"");
}

}  // namespace
}  // namespace rubrica::formula
