#include "xml/name_reference.h"

#include <gtest/gtest.h>

namespace rubrica {
namespace {

std::string partsOf(std::string_view text) {
  std::string shown;
  for (const NamePart& part : nameParts(text)) {
    shown += '[' + part.sheet + '|' + (part.range ? rangeText(*part.range) : "-") + ']';
  }
  return shown;
}

TEST(NameReferences, AreTakenApart) {
  EXPECT_EQ(partsOf("Sheet1!$A$1:$B$9"), "[Sheet1|A1:B9]");
  EXPECT_EQ(partsOf("'It''s, here'!$C$3"), "[It's, here|C3]");
  EXPECT_EQ(partsOf("Sheet1!$A:$C,Sheet1!$1:$2"), "[Sheet1|A1:C1048576][Sheet1|A1:XFD2]");
  EXPECT_EQ(partsOf("A1"), "[|A1]");
}

TEST(NameReferences, OtherTextHasNoRange) {
  for (const char* text : {"", "#REF!", "Sheet1!#REF!", "OFFSET(Sheet1!$A$1,1,2)", "[1]Sheet1!$A$1", "'[b.xlsx]S'!$A$1",
                           "Sheet1:Sheet3!$A$1", "\"a,b\"", "5", "'open!$A$1", "Sheet1!$A$1:B", "{1,2}", "!A1"}) {
    EXPECT_EQ(nameParts(text).size(), 1U) << text;
    EXPECT_FALSE(nameParts(text)[0].range) << text;
  }
}

TEST(NameReferences, QuoteWhatIsNoPlainWord) {
  EXPECT_EQ(quotedSheetName("Sheet1_a.b"), "Sheet1_a.b");
  EXPECT_EQ(quotedSheetName("Preise\xC3\xA4"), "Preise\xC3\xA4");
  EXPECT_EQ(quotedSheetName("My sheet"), "'My sheet'");
  EXPECT_EQ(quotedSheetName("It's"), "'It''s'");
  for (const char* name : {"1st", "A1", "xfd5", "R1C1", "RC", "c", "a-b", "a!b", ""}) {
    EXPECT_EQ(quotedSheetName(name), "'" + std::string(name) + "'") << name;
  }
}

TEST(NameReferences, AreWrittenAsTheyAreRead) {
  for (const char* text :
       {"Sheet1!$A$1", "Sheet1!$A$1:$C$9", "'a b'!$3:$5", "'a b'!$B:$D", "Sheet1!$A$1:$XFD$1048576"}) {
    const NamePart part = nameParts(text)[0];
    EXPECT_EQ(referenceText(part.sheet, *part.range), text);
  }
}

TEST(NameReferences, MoveWithTheirSheetAlone) {
  const LineMove insert(kXlsxGrid, LineMove::Axis::rows, LineMove::Kind::insert, 2, 3);
  EXPECT_EQ(movedReference("Sheet1!$A$1:$B$9", "sheet1", insert), "Sheet1!$A$1:$B$11");
  EXPECT_EQ(movedReference("Other!$A$5", "Sheet1", insert), "Other!$A$5");
  EXPECT_EQ(movedReference("Sheet1!$A:$C,Sheet1!$4:$5", "Sheet1", insert), "Sheet1!$A:$C,Sheet1!$6:$7");
  EXPECT_EQ(movedReference("SUM(Sheet1!$A$5)", "Sheet1", insert), "SUM(Sheet1!$A$5)");
  const LineMove remove(kXlsxGrid, LineMove::Axis::rows, LineMove::Kind::remove, 4, 5);
  EXPECT_EQ(movedReference("Sheet1!$A$5:$A$6,Sheet1!$B$9", "Sheet1", remove), "Sheet1!#REF!,Sheet1!$B$7");
  EXPECT_EQ(movedReference("Sheet1!$A$5:$A$6", "Sheet1", remove), std::nullopt);
}

TEST(NameReferences, FollowTheNameOfTheirSheet) {
  EXPECT_EQ(renamedReference("Sheet1!$A$1,Other!$B$2", "SHEET1", "It's"), "'It''s'!$A$1,Other!$B$2");
  EXPECT_EQ(renamedReference("Sheet1!$A$1+1", "Sheet1", "X"), "Sheet1!$A$1+1");
}

TEST(NameReferences, NamesAreTheSameInEitherCase) {
  EXPECT_TRUE(sameName("PREIS\xC3\x84", "preis\xC3\xA4"));
  EXPECT_FALSE(sameName("a", "b"));
}

}  // namespace
}  // namespace rubrica
