#include "xml/xstring.h"

#include <gtest/gtest.h>

namespace rubrica {
namespace {

TEST(StoredText, OrdinaryTextIsUtf8) {
  EXPECT_EQ(toXstring(u"caf\u00E9 \u20AC \U0001F600"), "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80");
  EXPECT_EQ(toXstring(u"two\nlines\tand <&>\" marks"), "two\nlines\tand <&>\" marks");
  EXPECT_EQ(toXstring(u""), "");
}

TEST(StoredText, CharactersThatXmlCannotHoldAreEscaped) {
  EXPECT_EQ(toXstring(u"a\rb"), "a_x000D_b");
  EXPECT_EQ(toXstring(u"\x01\x1F"), "_x0001__x001F_");
  EXPECT_EQ(toXstring(std::u16string_view(u"a\0b", 3)), "a_x0000_b");
  EXPECT_EQ(toXstring(u"\uFFFF"), "_xFFFF_");
}

TEST(StoredText, AnUnderscoreIsEscapedOnlyWhereItWouldBeginAnEscape) {
  EXPECT_EQ(toXstring(u"_x000D_"), "_x005F_x000D_");
  EXPECT_EQ(toXstring(u"_x000G_ _x00D_ _X000D_ snake_case _"), "_x000G_ _x00D_ _X000D_ snake_case _");
}

TEST(StoredText, HalvesOfASurrogatePairBecomeTheReplacementCharacter) {
  EXPECT_EQ(toXstring(std::u16string{0xD83D}), "\xEF\xBF\xBD");
  EXPECT_EQ(toXstring(std::u16string{0xDE00, u'x'}), "\xEF\xBF\xBDx");
  EXPECT_EQ(toXstring(std::u16string{0xD83D, u'x'}), "\xEF\xBF\xBDx");
}

TEST(StoredText, ComesBackAsItWas) {
  for (const std::u16string text :
       {u"plain", u"a\rb\r\n", u"_x000D_", u"__x005F_", u"_x_x0041_", u"\U0001F600_x", u"_", u"", u"\u00E9_x0041_"}) {
    EXPECT_EQ(fromXstring(toXstring(text)), text) << toXstring(text);
  }
}

TEST(StoredText, EscapesOfOtherProgramsAreRead) {
  EXPECT_EQ(fromXstring("a_x000D_\nb"), u"a\r\nb");
  EXPECT_EQ(fromXstring("_xd83d__xDE00_"), u"\U0001F600");
  EXPECT_EQ(fromXstring("_x005f_x000D_"), u"_x000D_");
  EXPECT_EQ(fromXstring("_x00_x0041_"), u"_x00A");
}

TEST(StoredText, MalformedUtf8BecomesReplacementCharacters) {
  EXPECT_EQ(fromXstring("a\xFFz"), u"a\uFFFDz");
}

}  // namespace
}  // namespace rubrica
