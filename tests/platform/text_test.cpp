#include "platform/text.h"

#include <functional>
#include <stdexcept>

#include <gtest/gtest.h>

#include "platform/numeric_locale.h"

namespace rubrica::platform {
namespace {

std::string failureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "no failure";
}

const std::u16string kLoneLead(1, char16_t{0xD83D});
const std::u16string kLoneTrail(1, char16_t{0xDE00});

TEST(Utf, CharactersOfEveryLengthGoBothWays) {
  const std::u16string wide = u"a\u007F\u0080\u07FF\u0800\uFFFD\U00010000\U0010FFFFz";
  const std::string narrow = "a\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBD\xF0\x90\x80\x80\xF4\x8F\xBF\xBFz";
  EXPECT_EQ(utf8FromUtf16(wide), narrow);
  EXPECT_EQ(utf16FromUtf8(narrow), wide);
  EXPECT_EQ(utf8FromUtf16Lossy(wide), narrow);
  EXPECT_EQ(utf16FromUtf8Lossy(narrow), wide);
  EXPECT_EQ(utf8FromUtf16(u""), "");
  EXPECT_EQ(utf16FromUtf8(std::string_view("a\0b", 3)), std::u16string(u"a\0b", 3));
}

TEST(Utf, MalformedTextHasItsMessage) {
  EXPECT_EQ(failureOf([] { utf8FromUtf16(u"ab" + kLoneLead); }), "Invalid UTF-16");
  EXPECT_EQ(failureOf([] { utf8FromUtf16(kLoneLead + u"b"); }), "Invalid UTF-16");
  EXPECT_EQ(failureOf([] { utf8FromUtf16(kLoneTrail); }), "Invalid UTF-16");
  EXPECT_EQ(failureOf([] { utf16FromUtf8("a\x80"); }), "Invalid UTF-8");
  EXPECT_EQ(failureOf([] { utf16FromUtf8("\xC3("); }), "Invalid UTF-8");
  EXPECT_EQ(failureOf([] { utf16FromUtf8("\xC0\xAF"); }), "Invalid UTF-8");
  EXPECT_EQ(failureOf([] { utf16FromUtf8("\xE2\x82"); }), "Not enough space");
  EXPECT_EQ(failureOf([] { utf16FromUtf8("\xED\xA0\x80"); }), "Invalid code point");
  EXPECT_EQ(failureOf([] { utf16FromUtf8("\xF4\x90\x80\x80"); }), "Invalid code point");
}

TEST(Utf, TheLossyFormsReplaceWhatIsMalformed) {
  EXPECT_EQ(utf8FromUtf16Lossy(u"a" + kLoneLead + u"b"),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(utf8FromUtf16Lossy(kLoneTrail + kLoneLead), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(utf16FromUtf8Lossy("a\xFFz"), u"a\uFFFDz");
  EXPECT_EQ(utf16FromUtf8Lossy("a\xE2\x82"), u"a\uFFFD");
}

// The C library's character locale for the length of a test.
class LocaleText : public testing::Test {
 protected:
  ~LocaleText() override { setCharacterLocale("C"); }
};

TEST_F(LocaleText, TheCLocaleHoldsAsciiAlone) {
  setCharacterLocale("C");
  bool lost = true;
  EXPECT_EQ(localeFromUtf16(u"abc", lost), "abc");
  EXPECT_FALSE(lost);
  EXPECT_EQ(localeFromUtf16(u"a\u20ACb\U0001F600c", lost), "a?b?c");
  EXPECT_TRUE(lost);
  EXPECT_EQ(utf16FromLocale("abc", lost), u"abc");
  EXPECT_FALSE(lost);
}

TEST_F(LocaleText, AUtf8LocaleHoldsAllButHalvesOfPairs) {
  if (setCharacterLocale("C.UTF-8").empty()) GTEST_SKIP() << "this system has no C.UTF-8";
  bool lost = true;
  EXPECT_EQ(localeFromUtf16(u"\u20AC\U0001F600", lost), "\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_FALSE(lost);
  EXPECT_EQ(localeFromUtf16(u"a" + kLoneLead + u"b" + kLoneTrail, lost), "a?b?");
  EXPECT_TRUE(lost);
  EXPECT_EQ(utf16FromLocale("\xE2\x82\xAC\xF0\x9F\x98\x80", lost), u"\u20AC\U0001F600");
  EXPECT_FALSE(lost);
  EXPECT_EQ(utf16FromLocale("a\xFF"
                            "b",
                            lost),
            u"a?b");
  EXPECT_TRUE(lost);
  EXPECT_EQ(utf16FromLocale("a\xE2\x82", lost), u"a?");
  EXPECT_TRUE(lost);
  EXPECT_EQ(utf16FromLocale(std::string_view("a\0b", 3), lost), std::u16string(u"a\0b", 3));
  EXPECT_FALSE(lost);
}

TEST(CodePages, TheUsualOnesAreKnown) {
  EXPECT_EQ(utf16FromCodePage(1252, "\x80 \xE9"), u"\u20AC \u00E9");
  EXPECT_EQ(utf16FromCodePage(1251, "\xCF\xF0"), u"\u041F\u0440");
  EXPECT_EQ(utf16FromCodePage(932, "\x83\x65\x83X"), u"\u30C6\u30B9");
  EXPECT_EQ(utf16FromCodePage(437, "\x81"), u"\u00FC");
  EXPECT_EQ(utf16FromCodePage(10000, "\x8E\xD5"), u"\u00E9\u2019");
  EXPECT_EQ(utf16FromCodePage(32768, "\x8E"), u"\u00E9");
  EXPECT_EQ(utf16FromCodePage(32769, "\x80"), u"\u20AC");
  EXPECT_EQ(utf16FromCodePage(10029, "\x8E"), u"\u00E9");
  EXPECT_EQ(utf16FromCodePage(10007, "\x80"), u"\u0410");
  EXPECT_EQ(utf16FromCodePage(367, "abc"), u"abc");
  EXPECT_EQ(utf16FromCodePage(65001, "\xE2\x82\xAC"), u"\u20AC");
}

TEST(CodePages, UnknownPagesAndTheUtf16PageAreReadAsLatin1) {
  EXPECT_EQ(utf16FromCodePage(1200, "\x80\xFF"), u"\u0080\u00FF");
  EXPECT_EQ(utf16FromCodePage(0, "\xE9"), u"\u00E9");
  EXPECT_EQ(utf16FromCodePage(54321, "\xE9"), u"\u00E9");
}

TEST(CodePages, BytesWithoutAMeaningAreReplaced) {
  EXPECT_EQ(utf16FromCodePage(1252, "a\x81z"), u"a\uFFFDz");
  EXPECT_EQ(utf16FromCodePage(367, "a\xE9z"), u"a\uFFFDz");
  EXPECT_EQ(utf16FromCodePage(932, "a\x83"), u"a\uFFFD");
  EXPECT_EQ(utf16FromCodePage(1252, ""), u"");
}

TEST(CodePages, TextLongerThanOnePieceOfTheConverterIsWhole) {
  EXPECT_EQ(utf16FromCodePage(1252, std::string(1000, '\x80')), std::u16string(1000, u'\u20AC'));
}

TEST(CodePageText, PagesWithCombiningAccentsGiveTheirLastLetter) {
  EXPECT_EQ(utf16FromCodePage(1258, "Implied"), u"Implied");
  EXPECT_EQ(utf16FromCodePage(1258, "a\xCC"), u"\u00E0") << "a letter and its accent are one character";
  EXPECT_EQ(utf16FromCodePage(1255, "\xE0"), u"\u05D0");
}

}  // namespace
}  // namespace rubrica::platform
