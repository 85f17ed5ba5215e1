#include "formula/token_walk.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include "formula/ptg.h"
#include "tests/formula/fake_book.h"

namespace rubrica::formula {
namespace {

constexpr char moveError[] = "GetFormula move1 error";
constexpr char unknownPtg[] = "can't recognize formula block: unknown ptg";

struct LengthRow {
  std::uint8_t first;
  std::size_t payload;
};

// Every token of fixed length; classes are told for each, since not every base token has all of them by nature.
const LengthRow fixedLengths[] = {
    {0x01, 4}, {0x02, 4}, {0x03, 0}, {0x04, 0}, {0x05, 0}, {0x06, 0}, {0x07, 0},  {0x08, 0}, {0x09, 0},
    {0x0A, 0}, {0x0B, 0}, {0x0C, 0}, {0x0D, 0}, {0x0E, 0}, {0x0F, 0}, {0x10, 0},  {0x11, 0}, {0x12, 0},
    {0x13, 0}, {0x14, 0}, {0x15, 0}, {0x16, 0}, {0x1C, 1}, {0x1D, 1}, {0x1E, 2},  {0x1F, 8}, {0x20, 7},
    {0x21, 2}, {0x22, 3}, {0x23, 4}, {0x24, 4}, {0x25, 8}, {0x26, 6}, {0x27, 6},  {0x28, 6}, {0x29, 2},
    {0x2A, 4}, {0x2B, 8}, {0x2C, 4}, {0x2D, 8}, {0x39, 6}, {0x3A, 6}, {0x3B, 10}, {0x3C, 6}, {0x3D, 10},
};

TEST(TokenLength, FollowsTheTableInEveryClass) {
  int known = 0;
  for (int first = 0; first < 256; ++first) {
    if (first == ptg::Str || first == ptg::Extended || first == ptg::Attr) continue;
    const std::uint8_t base = baseToken(static_cast<std::uint8_t>(first));
    const auto row = std::find_if(std::begin(fixedLengths), std::end(fixedLengths),
                                  [&](const LengthRow& r) { return r.first == base; });
    Bytes bytes(40, 0);
    bytes[0] = static_cast<std::uint8_t>(first);
    if (first >= 126 || row == std::end(fixedLengths)) {
      EXPECT_EQ(messageOf([&] { tokenLength(bytes); }), unknownPtg) << first;
      continue;
    }
    ++known;
    EXPECT_EQ(tokenLength(bytes), 1 + row->payload) << first;
    if (row->payload == 0) continue;
    bytes.resize(row->payload);
    EXPECT_EQ(messageOf([&] { tokenLength(bytes); }), moveError) << first;
  }
  EXPECT_EQ(known, 26 + 3 * 19);
}

TEST(TokenLength, OfStringsFollowsCountAndFlag) {
  EXPECT_EQ(tokenLength(Bytes{0x17, 2, 0, 'a', 'b', 9}), 5u);
  EXPECT_EQ(tokenLength(Bytes{0x17, 2, 1, 'a', 0, 'b', 0, 9}), 7u);
  EXPECT_EQ(tokenLength(Bytes{0x17, 0, 1}), 3u);
  EXPECT_EQ(tokenLength(Bytes{0x17, 1, 0xFE, 'a', 9}), 4u);
  for (const Bytes& cut : {Bytes{0x17}, Bytes{0x17, 0}, Bytes{0x17, 2, 0, 'a'}, Bytes{0x17, 2, 1, 'a', 0, 'b'}}) {
    EXPECT_EQ(messageOf([&] { tokenLength(cut); }), moveError) << hex(cut);
  }
}

TEST(TokenLength, OfExtendedTokensFollowsTheSubtype) {
  const std::set<int> known = {1, 2, 3, 6, 7, 10, 11, 13, 15, 16, 29};
  for (int subtype = 0; subtype < 256; ++subtype) {
    Bytes bytes(7, 0);
    bytes[0] = 0x18;
    bytes[1] = static_cast<std::uint8_t>(subtype);
    if (known.count(subtype) == 0) {
      EXPECT_EQ(messageOf([&] { tokenLength(bytes); }), "unknown Ptg 0x18") << subtype;
      continue;
    }
    EXPECT_EQ(tokenLength(bytes), 7u) << subtype;
    bytes.pop_back();
    EXPECT_EQ(messageOf([&] { tokenLength(bytes); }), moveError) << subtype;
  }
  EXPECT_EQ(messageOf([] { tokenLength(Bytes{0x18}); }), moveError);
}

TEST(TokenLength, OfAttrFollowsTheOption) {
  const std::set<int> twoBytes = {0x01, 0x02, 0x08, 0x10, 0x40}, threeBytes = {0x20, 0x21, 0x41};
  for (int option = 0; option < 256; ++option) {
    if (option == attr::Choose) continue;
    Bytes bytes(10, 0);
    bytes[0] = 0x19;
    bytes[1] = static_cast<std::uint8_t>(option);
    if (twoBytes.count(option) + threeBytes.count(option) == 0) {
      EXPECT_EQ(messageOf([&] { tokenLength(bytes); }), "unknown Ptg 0x19") << option;
      continue;
    }
    const std::size_t length = 2 + (twoBytes.count(option) ? 2u : 3u);
    EXPECT_EQ(tokenLength(bytes), length) << option;
    bytes.resize(length - 1);
    EXPECT_EQ(messageOf([&] { tokenLength(bytes); }), moveError) << option;
  }
  EXPECT_EQ(messageOf([] { tokenLength(Bytes{0x19}); }), moveError);
}

TEST(TokenLength, OfChooseReadsOneByteThenACountAndOneByteMoreThanIt) {
  EXPECT_EQ(tokenLength(Bytes{0x19, 0x04, 0xFF, 0, 0, 1, 2}), 6u);
  EXPECT_EQ(tokenLength(Bytes{0x19, 0x04, 0xFF, 2, 0, 1, 2, 3, 4}), 8u);
  EXPECT_EQ(messageOf([] { tokenLength(Bytes{0x19, 0x04, 0, 2, 0, 1, 2}); }), moveError);
  EXPECT_EQ(messageOf([] { tokenLength(Bytes{0x19, 0x04, 0, 2}); }), moveError);
  EXPECT_EQ(messageOf([] { tokenLength(Bytes{0x19, 0x04, 0, 0xFF, 0xFF, 1}); }), moveError);
}

TEST(TokenWalk, GivesTokensWithTheirOffsets) {
  const Bytes bytes = {0x1E, 1, 0, 0x44, 0, 0, 0, 0xC0, 0x03};
  TokenWalk walk(bytes);
  Token token;
  ASSERT_TRUE(walk.next(token));
  EXPECT_EQ(token.offset, 0u);
  EXPECT_EQ(token.first(), ptg::Int);
  EXPECT_EQ(hex(token.payload()), "01 00");
  ASSERT_TRUE(walk.next(token));
  EXPECT_EQ(token.offset, 3u);
  EXPECT_EQ(hex(token.bytes), "44 00 00 00 C0");
  ASSERT_TRUE(walk.next(token));
  EXPECT_EQ(token.offset, 8u);
  EXPECT_TRUE(token.payload().empty());
  EXPECT_FALSE(walk.next(token));
}

TEST(TokenWalk, OfNothingEndsAtOnce) {
  TokenWalk walk({});
  Token token;
  EXPECT_FALSE(walk.next(token));
}

TEST(FormulaBlock, TakesOneTokenAtATimeAndIsEmptyAtTheEnd) {
  const Bytes bytes = {0x1E, 1, 0, 0x03};
  ByteStream stream(bytes);
  FormulaBlock block;
  block.takeFrom(stream);
  EXPECT_EQ(hex(block.bytes().bytes()), "1E 01 00");
  block.takeFrom(stream);
  EXPECT_EQ(hex(block.bytes().bytes()), "03");
  block.takeFrom(stream);
  EXPECT_TRUE(block.empty());
}

TEST(FormulaBlock, AFailedTakeLeavesTheStreamAsItWas) {
  const Bytes bytes = {0x1E, 1};
  ByteStream stream(bytes);
  FormulaBlock block;
  EXPECT_EQ(messageOf([&] { block.takeFrom(stream); }), moveError);
  EXPECT_EQ(stream.size(), 2u);
}

TEST(LeadingErrorCode, IsThatOfAnErrorTokenInFront) {
  EXPECT_EQ(leadingErrorCode(Bytes{0x1C, 42}), 42);
  EXPECT_EQ(leadingErrorCode(Bytes{0x1C, 7, 0x1E, 1, 0, 0x03}), 7);
  EXPECT_EQ(leadingErrorCode(Bytes{0x1C}), std::nullopt);
  EXPECT_EQ(leadingErrorCode(Bytes{0x1E, 1, 0}), std::nullopt);
  EXPECT_EQ(leadingErrorCode({}), std::nullopt);
}

TEST(ErrorTexts, GoBothWays) {
  for (const int code : {0, 7, 15, 23, 29, 36, 42}) {
    const auto text = errorText(static_cast<std::uint8_t>(code));
    ASSERT_TRUE(text) << code;
    EXPECT_EQ(errorCode(*text), code);
  }
  EXPECT_EQ(errorText(1), std::nullopt);
  EXPECT_EQ(errorCode(u"#N/B"), std::nullopt);
}

}  // namespace
}  // namespace rubrica::formula
