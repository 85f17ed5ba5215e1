#include "formula/sheet_text.h"

#include <gtest/gtest.h>

namespace rubrica::formula {
namespace {

TEST(QuotedSheetName, PlainNamesStandAsTheyAre) {
  for (const std::u16string name : {u"Sheet1x", u"Sheet_1", u"_x", u"a.b", u"Größe", u"\u8868", u"R1C1x", u"Row"}) {
    EXPECT_EQ(quotedSheetName(name), name);
  }
  EXPECT_EQ(quotedSheetName(u"Sheet1"), u"Sheet1");
}

TEST(QuotedSheetName, EverythingElseIsQuoted) {
  for (const std::u16string name : {u"", u"My Sheet", u"1st", u"a-b", u"a!b", u"A1", u"XFD99", u"R1C1", u"rc", u"R",
                                    u"c5", u"TRUE", u"FALSE", u"a\"b", u"#REF!", u"(x)"}) {
    EXPECT_EQ(quotedSheetName(name), u"'" + name + u"'");
  }
  EXPECT_EQ(quotedSheetName(u"O'Brien"), u"'O''Brien'");
  EXPECT_EQ(quotedSheetName(u"'"), u"''''");
}

TEST(UnquotedSheetName, ReversesQuoting) {
  for (const std::u16string name : {u"", u"My Sheet", u"O'Brien", u"'", u"''", u"'a'", u"a''b", u"Plain", u"'''"}) {
    EXPECT_EQ(unquotedSheetName(quotedSheetName(name)), name);
  }
  EXPECT_EQ(unquotedSheetName(u"'open"), u"'open");
  EXPECT_EQ(unquotedSheetName(u"'"), u"'");
  EXPECT_EQ(unquotedSheetName(u""), u"");
  EXPECT_EQ(unquotedSheetName(u"'a'b'"), u"a'b");
}

TEST(SheetPartText, NamesOneSheetOrTwo) {
  EXPECT_EQ(sheetPartText(u"Jan", u"Jan"), u"Jan");
  EXPECT_EQ(sheetPartText(u"Jan", u"Feb"), u"Jan:Feb");
  EXPECT_EQ(sheetPartText(u"My Sheet", u"Feb"), u"'My Sheet':Feb");
}

}  // namespace
}  // namespace rubrica::formula
