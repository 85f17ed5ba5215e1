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
