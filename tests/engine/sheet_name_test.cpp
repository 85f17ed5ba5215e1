#include "engine/sheet_name.h"

#include <string>

#include <gtest/gtest.h>

#include "engine/xlerror.h"

namespace rubrica {
namespace {

std::string complaintAbout(std::u16string_view name) {
  try {
    checkSheetName(name);
  } catch (const xlerror& error) {
    return error.what();
  }
  return "ok";
}

TEST(SheetNames, MustNotBeEmpty) {
  EXPECT_EQ(complaintAbout(u""), "sheet name can't be empty");
}

TEST(SheetNames, SomeCharactersAreForbiddenAnywhereAndApostrophesAtTheEnds) {
  for (const char16_t* name : {u"'a", u"a'", u"'", u"a:b", u"a\\b", u"*", u"a?", u"a/b", u"[a", u"a]"}) {
    EXPECT_EQ(complaintAbout(name), "sheet name has an invalid character") << testing::PrintToString(name);
  }
  for (const char16_t* name : {u"it's", u"a b", u" ", u"!#$%&()+-.;<=>@^_`{|}~", u"\u00DCbersicht"}) {
    EXPECT_EQ(complaintAbout(name), "ok") << testing::PrintToString(name);
  }
}

TEST(SheetNames, AreCutTo31CharactersButNotWithinOne) {
  const std::u16string longest(31, u'a');
  EXPECT_EQ(cutSheetName(longest), longest);
  EXPECT_EQ(cutSheetName(longest + u"b"), longest);
  EXPECT_EQ(cutSheetName(std::u16string(30, u'a') + u"\U0001F600"), std::u16string(30, u'a'));
  EXPECT_EQ(cutSheetName(std::u16string(29, u'a') + u"\U0001F600z"), std::u16string(29, u'a') + u"\U0001F600");
}

TEST(SheetNames, AreComparedWithoutRegardToCase) {
  EXPECT_TRUE(sameNameIgnoringCase(u"Prices", u"pRICES"));
  EXPECT_TRUE(sameNameIgnoringCase(u"\u00E4\u03B1\u0436\u0451", u"\u00C4\u0391\u0416\u0401"));
  EXPECT_FALSE(sameNameIgnoringCase(u"Prices", u"Prices "));
  EXPECT_FALSE(sameNameIgnoringCase(u"\u00F7", u"\u00D7")) << "signs, not letters";
}

}  // namespace
}  // namespace rubrica
