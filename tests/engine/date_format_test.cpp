#include "engine/date_format.h"

#include <string>

#include <gtest/gtest.h>

namespace rubrica {
namespace {

TEST(DateFormats, AreTextsWithADateLetterOutsideBracketsAndQuotes) {
  for (const char16_t* text : {u"0.00 s", u"d", u"YYYY", u"[Red]m", u"\"at\" h", u"0\"a\"S", u"[h]:M"}) {
    EXPECT_TRUE(isDateFormatText(text)) << testing::PrintToString(std::u16string(text));
  }
  for (const char16_t* text : {u"", u"0.00", u"[Red]0.00", u"\"days\" 0", u"[h]", u"\"[\"0\"d\"", u"\"days", u"[hms",
                               u"General", u"@", u"#,##0"}) {
    EXPECT_FALSE(isDateFormatText(text)) << testing::PrintToString(std::u16string(text));
  }
  EXPECT_FALSE(isDateFormatText(nullptr));
}

}  // namespace
}  // namespace rubrica
