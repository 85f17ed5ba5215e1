#include "host/text.h"

#include <gtest/gtest.h>

namespace rubrica::host {
namespace {

TEST(HostText, TravelsThroughAllFormsUnchanged) {
  const std::u32string text = U"A\u0000z\u007f\u0080\u07ff\u0800\ufffd\uffff\U00010000\U0010ffff";
  EXPECT_TRUE(utf32FromUtf16(utf16FromUtf32(text)) == text);
  EXPECT_TRUE(utf32FromUtf8(utf8FromUtf32(text)) == text);
  EXPECT_EQ(utf8FromUtf32(U"\u00e9\u20ac\U0001F600"), "\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80");
}

TEST(HostText, WhatIsNoTextBecomesTheReplacementCharacter) {
  const char32_t codes[] = {0xD800, 0xDFFF, 0x110000, 0xFFFFFFFF};
  for (char32_t code : codes) {
    EXPECT_TRUE(utf16FromUtf32({&code, 1}) == u"\ufffd");
    EXPECT_EQ(utf8FromUtf32({&code, 1}), "\xef\xbf\xbd");
  }
  const char16_t lone[] = {u'a', 0xD83D, u'b', 0xDE00, 0xD83D};
  EXPECT_TRUE(utf32FromUtf16({lone, 5}) == U"a\ufffdb\ufffd\ufffd");
}

TEST(HostText, TextsOfEveryLengthTravelWhereverTheirOddCharacterStands) {
  for (const char32_t odd : {U'\0', U'\u0100', U'\uD7FF', U'\uE000', U'\uFFFF', U'\U00010000', U'\U0010FFFF'}) {
    for (std::size_t length = 1; length <= 40; ++length) {
      for (const std::size_t place : {std::size_t{0}, length / 2, length - 1}) {
        std::u32string text(length, U'x');
        text[place] = odd;
        const std::u16string units = utf16FromUtf32(text);
        EXPECT_EQ(units.size(), length + (odd >= 0x10000 ? 1 : 0));
        EXPECT_TRUE(utf32FromUtf16(units) == text) << length << " " << place;
      }
    }
  }
  EXPECT_TRUE(utf16FromUtf32({}).empty());
  EXPECT_TRUE(utf32FromUtf16(std::u16string_view()).empty());
}

TEST(HostText, WhatIsNoTextIsFoundWhereverItStands) {
  for (std::size_t length = 1; length <= 20; ++length) {
    for (std::size_t place = 0; place < length; ++place) {
      std::u16string units(length, u'x');
      std::u32string text(length, U'x'), expected(length, U'x');
      units[place] = 0xDC00;
      text[place] = 0xD800;
      expected[place] = 0xFFFD;
      EXPECT_TRUE(utf32FromUtf16(units) == expected) << length << " " << place;
      EXPECT_TRUE(utf32FromUtf16(utf16FromUtf32(text)) == expected) << length << " " << place;
    }
  }
}

TEST(HostText, PlainTextsSayThatTheyAre) {
  char32_t wide[16] = {};
  char16_t narrow[16] = {};
  EXPECT_TRUE(copyPlain(u"0123456789\u20ac", wide));
  EXPECT_TRUE(std::u32string_view(wide, 11) == U"0123456789\u20ac");
  EXPECT_TRUE(copyPlain(U"0123456789\u20ac", narrow));
  EXPECT_TRUE(std::u16string_view(narrow, 11) == u"0123456789\u20ac");
  // Together they have the bits of a surrogate, none alone.
  EXPECT_TRUE(copyPlain(u"\u4e2d\u9fff\uac00\ud7ff", wide));
  EXPECT_TRUE(copyPlain(U"\u4e2d\u9fff\uac00\ud7ff", narrow));
  EXPECT_FALSE(copyPlain(u"0123456789\uffff", wide));
  EXPECT_FALSE(copyPlain(U"\U0001F600123456789", narrow));
  // The low half of a character beyond 16 bits is no character of its own.
  EXPECT_FALSE(copyPlain(U"\U00010041", narrow));
  for (const char32_t absurd : {0xFFFF0000, 0xFFFFD800, 0xFFFFFFFF}) EXPECT_FALSE(copyPlain({&absurd, 1}, narrow));
}

TEST(HostText, BrokenUtf8NeverReadsPastItsEnd) {
  EXPECT_TRUE(utf32FromUtf8("\x80") == U"\ufffd");
  EXPECT_TRUE(utf32FromUtf8("\xc0\x80") == U"\ufffd\ufffd");
  EXPECT_TRUE(utf32FromUtf8("a\xe2\x82") == U"a\ufffd\ufffd");
  EXPECT_TRUE(utf32FromUtf8("\xed\xa0\x80") == U"\ufffd");
  EXPECT_TRUE(utf32FromUtf8("\xf4\x90\x80\x80") == U"\ufffd");
  EXPECT_TRUE(utf32FromUtf8("\xe0\x80\x80") == U"\ufffd");
  EXPECT_TRUE(utf32FromUtf8("\xc3(") == U"\ufffd(");
}

}  // namespace
}  // namespace rubrica::host
