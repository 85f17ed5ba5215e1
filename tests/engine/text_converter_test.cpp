#include "engine/text_converter.h"

#include <clocale>
#include <string>

#include <gtest/gtest.h>

#include "engine/xlerror.h"

namespace rubrica {
namespace {

std::string messageOf(const auto& body) {
  try {
    body();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "nothing thrown";
}

// Keeps the process's locale for the tests that follow.
class TextConversion : public testing::Test {
 protected:
  ~TextConversion() override { std::setlocale(LC_CTYPE, _before.c_str()); }
  TextConverter _text;

 private:
  std::string _before = std::setlocale(LC_CTYPE, nullptr);
};

TEST_F(TextConversion, Utf8NamesDecideTheSeparatorWithoutTouchingTheLibrary) {
  const std::string before = std::setlocale(LC_CTYPE, nullptr);
  _text.setLocale("UTF-8.comma");
  EXPECT_TRUE(_text.utf8Mode());
  EXPECT_EQ(_text.listSeparator(), ',');
  _text.setLocale("UTF-8");
  EXPECT_EQ(_text.listSeparator(), ';');
  _text.setLocale("UTF-8.comma");
  _text.setLocale("UTF-8.semicolon");
  EXPECT_EQ(_text.listSeparator(), ';');
  EXPECT_EQ(std::setlocale(LC_CTYPE, nullptr), before);
}

TEST_F(TextConversion, OtherNamesLeaveUtf8ModeAndSetTheLibrary) {
  _text.setLocale("UTF-8");
  _text.setLocale("C");
  EXPECT_FALSE(_text.utf8Mode());
  EXPECT_EQ(_text.listSeparator(), ',');
  EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");
}

TEST_F(TextConversion, NamesThatTheLibraryLacksFail) {
  EXPECT_EQ(messageOf([&] { _text.setLocale("xx_YY.nothing"); }), "setlocale error (2)");
  EXPECT_EQ(messageOf([&] { _text.setLocale(nullptr); }), "setlocale error (1)");
}

TEST_F(TextConversion, AnyNameMayComeFromTheEnvironment) {
  _text.setLocale("UTF-8");
  _text.adoptEnvironmentLocale();
  EXPECT_FALSE(_text.utf8Mode());
}

TEST_F(TextConversion, Utf8ModeConvertsEverythingBothWays) {
  _text.setLocale("UTF-8");
  _text.setWide(u"Grüße 漢 \U0001F600");
  EXPECT_STREQ(_text.getNarrow(), reinterpret_cast<const char*>(u8"Grüße 漢 \U0001F600"));
  EXPECT_FALSE(_text.lost());
  _text.setNarrow(reinterpret_cast<const char*>(u8"漢"));
  EXPECT_EQ(std::u16string(_text.getWide()), u"漢");
}

TEST_F(TextConversion, MalformedTextFailsInUtf8Mode) {
  _text.setLocale("UTF-8");
  EXPECT_EQ(messageOf([&] { _text.setWide(std::u16string(1, char16_t{0xD800})); }), "Invalid UTF-16");
  EXPECT_EQ(messageOf([&] { _text.setNarrow("\xFF\xFE"); }), "Invalid UTF-8");
}

TEST_F(TextConversion, CharactersThatTheLocaleLacksAreLost) {
  _text.setLocale("C");
  _text.setWide(u"a漢b");
  EXPECT_STREQ(_text.getNarrow(), "a?b");
  EXPECT_TRUE(_text.lost());
  _text.setWide(u"plain");
  EXPECT_FALSE(_text.lost());
}

}  // namespace
}  // namespace rubrica
