#include "platform/numeric_locale.h"

#include <clocale>
#include <locale.h>
#include <string>

#include <gtest/gtest.h>

namespace rubrica::platform {
namespace {

TEST(NumericLocaleGuard, GivesTheThreadItsLocaleBack) {
  const locale_t before = uselocale(nullptr);
  {
    const NumericLocaleGuard outer;
    const locale_t inOuter = uselocale(nullptr);
    EXPECT_NE(inOuter, before);
    EXPECT_STREQ(localeconv()->decimal_point, ".");
    {
      const NumericLocaleGuard inner;
      EXPECT_NE(uselocale(nullptr), inOuter);
    }
    EXPECT_EQ(uselocale(nullptr), inOuter);
  }
  EXPECT_EQ(uselocale(nullptr), before);
}

TEST(NumericLocaleGuard, KeepsTheOtherCategories) {
  const std::string before = setCharacterLocale("C.UTF-8");
  if (before.empty()) GTEST_SKIP() << "this system has no C.UTF-8";
  {
    const NumericLocaleGuard guard;
    EXPECT_EQ(MB_CUR_MAX, 6U);
  }
  setCharacterLocale("C");
}

TEST(CharacterLocale, IsNamedAndSet) {
  EXPECT_EQ(setCharacterLocale("C"), "C");
  EXPECT_EQ(currentCharacterLocale(), "C");
  EXPECT_EQ(setCharacterLocale("no-such-locale"), "");
  EXPECT_EQ(currentCharacterLocale(), "C");
}

}  // namespace
}  // namespace rubrica::platform
