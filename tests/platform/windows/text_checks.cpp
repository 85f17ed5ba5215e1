#include <exception>
#include <string>

#include "expect.h"
#include "platform/numeric_locale.h"
#include "platform/text.h"

namespace rubrica::platform {

namespace {

template <class Call>
std::string messageOf(Call call) {
  try {
    call();
  } catch (const std::exception& error) {
    return error.what();
  }
  return {};
}

void checkUtf() {
  EXPECT(utf8FromUtf16(u"a\u00E9\u20AC\U0001F600") == "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT(utf16FromUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80") == u"a\u00E9\u20AC\U0001F600");
  const char16_t lone[] = {u'a', 0xD800, u'z', 0};
  EXPECT(messageOf([&] { utf8FromUtf16(lone); }) == "Invalid UTF-16");
  EXPECT(messageOf([] { utf16FromUtf8("\xC3("); }) == "Invalid UTF-8");
  EXPECT(utf8FromUtf16Lossy(lone) == "a\xEF\xBF\xBDz");
  EXPECT(utf16FromUtf8Lossy("a\xFFz") == u"a\uFFFDz");
}

void checkCodePages() {
  EXPECT(utf16FromCodePage(1252, "\x80 \xE9") == u"\u20AC \u00E9");
  EXPECT(utf16FromCodePage(1251, "\xCF\xF0") == u"\u041F\u0440");
  EXPECT(utf16FromCodePage(932, "\x83\x65\x83X") == u"\u30C6\u30B9");
  EXPECT(utf16FromCodePage(437, "\x81") == u"\u00FC");
  EXPECT(utf16FromCodePage(10000, "\x8E\xD5") == u"\u00E9\u2019");
  EXPECT(utf16FromCodePage(32768, "\x8E") == u"\u00E9");
  EXPECT(utf16FromCodePage(32769, "\x80") == u"\u20AC");
  EXPECT(utf16FromCodePage(10007, "\x80") == u"\u0410");
  EXPECT(utf16FromCodePage(65001, "\xE2\x82\xAC") == u"\u20AC");
  EXPECT(utf16FromCodePage(1255, "\xE0") == u"\u05D0");
  EXPECT(utf16FromCodePage(1252, "").empty());
}

void checkPagesThatTheSystemLacks() {
  EXPECT(utf16FromCodePage(1200, "\x80\xFF") == u"\u0080\u00FF");
  EXPECT(utf16FromCodePage(0, "\xE9") == u"\u00E9");
  EXPECT(utf16FromCodePage(3, "\x80") == u"\u0080");
  EXPECT(utf16FromCodePage(42, "\x80") == u"\u0080");
  EXPECT(utf16FromCodePage(54321, "\xE9") == u"\u00E9");
}

void checkBytesWithoutAMeaning() {
  EXPECT(utf16FromCodePage(1252, "a\x81z") == u"a\uFFFDz");
  EXPECT(utf16FromCodePage(1253, "a\xAAz") == u"a\uFFFDz");
  EXPECT(utf16FromCodePage(367, "a\xE9z") == u"a\uFFFDz");
  EXPECT(utf16FromCodePage(932, "a\x83") == u"a\uFFFD");
  EXPECT(utf16FromCodePage(65001, "a\xFF\xE2\x82\xACz") == u"a\uFFFD\u20ACz");
}

void checkLocaleText() {
  bool lost = true;
  EXPECT(!setCharacterLocale("C").empty());
  EXPECT(currentCharacterLocale() == "C");
  EXPECT(localeFromUtf16(u"abc", lost) == "abc" && !lost);
  EXPECT(localeFromUtf16(u"a\u20ACz\U0001F600", lost) == "a?z?" && lost);
  EXPECT(utf16FromLocale("abc", lost) == u"abc" && !lost);

  EXPECT(setCharacterLocale("no such locale").empty());
  EXPECT(!setCharacterLocale("English_United States.1252").empty());
  EXPECT(localeFromUtf16(u"\u20AC\u00E9", lost) == "\x80\xE9" && !lost);
  EXPECT(localeFromUtf16(u"a\u0416z", lost) == "a?z" && lost);
  EXPECT(utf16FromLocale("\x80\xE9", lost) == u"\u20AC\u00E9" && !lost);
  const char16_t lone[] = {u'a', 0xDC00, u'z', 0};
  EXPECT(localeFromUtf16(lone, lost) == "a?z" && lost);

  EXPECT(!setCharacterLocale("Japanese_Japan.932").empty());
  EXPECT(localeFromUtf16(u"a\u30C6", lost) == "a\x83\x65" && !lost);
  EXPECT(utf16FromLocale("\x83\x65z", lost) == u"\u30C6z" && !lost);
  EXPECT(utf16FromLocale("a\x83", lost) == u"a?" && lost);
  setCharacterLocale("C");
}

}  // namespace

void checkText() {
  checkUtf();
  checkCodePages();
  checkPagesThatTheSystemLacks();
  checkBytesWithoutAMeaning();
  checkLocaleText();
}

}  // namespace rubrica::platform
