#include "formula/compile.h"

#include <gtest/gtest.h>

#include "tests/formula/fake_book.h"

namespace rubrica::formula {
namespace {

constexpr char incorrectToken[] = "incorrect token in formula";

TEST(Compile, OperatorsFollowTheirOperands) {
  EXPECT_EQ(compiledHex(u"1+2*3"), "1E 01 00 1E 02 00 1E 03 00 05 03");
  EXPECT_EQ(compiledHex(u"1+2-3"), "1E 01 00 1E 02 00 03 1E 03 00 04");
  EXPECT_EQ(compiledHex(u"4/2^2"), "1E 04 00 1E 02 00 1E 02 00 07 06");
  EXPECT_EQ(compiledHex(u"1&2"), "1E 01 00 1E 02 00 08");
  EXPECT_EQ(compiledHex(u"1<2"), "1E 01 00 1E 02 00 09");
  EXPECT_EQ(compiledHex(u"1<=2"), "1E 01 00 1E 02 00 0A");
  EXPECT_EQ(compiledHex(u"1=2"), "1E 01 00 1E 02 00 0B");
  EXPECT_EQ(compiledHex(u"1>=2"), "1E 01 00 1E 02 00 0C");
  EXPECT_EQ(compiledHex(u"1>2"), "1E 01 00 1E 02 00 0D");
  EXPECT_EQ(compiledHex(u"1<>2"), "1E 01 00 1E 02 00 0E");
  EXPECT_EQ(compiledHex(u"+1"), "1E 01 00 12");
  EXPECT_EQ(compiledHex(u"-1"), "1E 01 00 13");
  EXPECT_EQ(compiledHex(u"10%"), "1E 0A 00 14");
  EXPECT_EQ(compiledHex(u"(1)"), "1E 01 00 15");
  EXPECT_EQ(compiledHex(u"A1=B1&C1"), "44 00 00 00 C0 44 00 00 01 C0 0B 44 00 00 02 C0 08");
}

// The worked example of docs/formats/formula_tokens.md.
TEST(Compile, TheDocumentedFormula) {
  EXPECT_EQ(compiledHex(u"=IF(Sheet2!$B$3>0.5,COUNT(A1:A9)&\"x\",-Rate)"),
            "5A 00 00 02 00 01 00 1F 00 00 00 00 00 00 E0 3F 0D 25 00 00 08 00 00 C0 00 C0 42 01 00 00 "
            "17 01 01 78 00 08 23 01 00 00 00 13 42 03 01 00");
}

TEST(Compile, NothingBehindTheEqualsSignGivesNoTokens) {
  EXPECT_EQ(compiledHex(u"="), "");
  EXPECT_EQ(compiledHex(u""), "");
}

TEST(Compile, IntegersUpTo65535AndLargerNumbersAsDoubles) {
  EXPECT_EQ(compiledHex(u"0"), "1E 00 00");
  EXPECT_EQ(compiledHex(u"65535"), "1E FF FF");
  EXPECT_EQ(compiledHex(u"00001"), "1E 01 00");
  EXPECT_EQ(compiledHex(u"65536"), "1F 00 00 00 00 00 00 F0 40");
  EXPECT_EQ(compiledHex(u"70000"), "1F 00 00 00 00 00 17 F1 40");
  EXPECT_EQ(compiledHex(u"000001"), "1F 00 00 00 00 00 00 F0 3F");
  EXPECT_EQ(compiledHex(u"0.5"), "1F 00 00 00 00 00 00 E0 3F");
  EXPECT_EQ(compiledHex(u".5"), "1F 00 00 00 00 00 00 E0 3F");
  EXPECT_EQ(compiledHex(u"1."), "1F 00 00 00 00 00 00 F0 3F");
}

TEST(Compile, NumbersAreReadAsAStreamExtractsThem) {
  EXPECT_EQ(compiledHex(u"1.2.3"), compiledHex(u"1.2"));
  EXPECT_EQ(compiledHex(u"."), "1F 00 00 00 00 00 00 00 00");
  EXPECT_EQ(compiledHex(u".."), "1F 00 00 00 00 00 00 00 00");
  EXPECT_EQ(compiledHex(std::u16string(400, u'9')), "1F FF FF FF FF FF FF EF 7F");
  EXPECT_EQ(compiledHex(std::u16string(400, u'9') + u".5"), "1F FF FF FF FF FF FF EF 7F");
  EXPECT_EQ(compiledHex(u"0." + std::u16string(400, u'0') + u"1"), "1F 00 00 00 00 00 00 00 00");
  EXPECT_EQ(compiledHex(std::u16string(400, u'0') + u"1"), "1F 00 00 00 00 00 00 F0 3F");
}

TEST(Compile, ExponentsAreNotRead) {
  EXPECT_EQ(compileMessage(u"1E5"), incorrectToken);
  EXPECT_EQ(compileMessage(u"1E+5"), incorrectToken);
}

TEST(Compile, ReferencesCarryTheirMarks) {
  EXPECT_EQ(compiledHex(u"A1"), "44 00 00 00 C0");
  EXPECT_EQ(compiledHex(u"$A1"), "44 00 00 00 80");
  EXPECT_EQ(compiledHex(u"A$1"), "44 00 00 00 40");
  EXPECT_EQ(compiledHex(u"$A$1"), "44 00 00 00 00");
  EXPECT_EQ(compiledHex(u"ab12"), "44 0B 00 1B C0");
  EXPECT_EQ(compiledHex(u"IV65536"), "44 FF FF FF C0");
  EXPECT_EQ(compiledHex(u"A1R"), "24 00 00 00 C0");
  EXPECT_EQ(compiledHex(u"A1:$B$2"), "25 00 00 01 00 00 C0 01 00");
  EXPECT_EQ(compiledHex(u"B2:A1"), "25 01 00 00 00 01 C0 00 C0");
}

TEST(Compile, ReferencesOutsideTheSheet) {
  EXPECT_EQ(compileMessage(u"IW1"), "Column is out of range");
  EXPECT_EQ(compileMessage(u"TAX2010"), "Column is out of range");
  EXPECT_EQ(compileMessage(u"ABCDEFGHIJKLMNOPQRSTUVWXYZ1"), "Column is out of range");
  EXPECT_EQ(compileMessage(u"A0"), "Row is out of range");
  EXPECT_EQ(compileMessage(u"A65537"), "Row is out of range");
  EXPECT_EQ(compileMessage(u"A2147483647"), "Row is out of range");
  EXPECT_EQ(compileMessage(u"A2147483648"), "MakeFormula::isReference: can't convert string to number");
  EXPECT_EQ(compileMessage(u"A99999999999999999999999"), "MakeFormula::isReference: can't convert string to number");
  EXPECT_EQ(compileMessage(u"A1:IW1"), "Column is out of range");
  EXPECT_EQ(compileMessage(u"Sheet1!A65537"), "Row is out of range");
}

TEST(Compile, LettersOfOtherScriptsMakeNoColumn) {
  EXPECT_EQ(compileMessage(u"\u4E001"), "Column is out of range");
  EXPECT_EQ(compileMessage(u"Ä1"), "Column is out of range");
  EXPECT_EQ(compileMessage(u"Aß$1"), "Column is out of range");
  EXPECT_EQ(compileMessage(u"A×1"), incorrectToken);
}

TEST(Compile, RelativeNotationIsTakenForNames) {
  EXPECT_EQ(compileMessage(u"R1C1"), incorrectToken);
  EXPECT_EQ(compileMessage(u"R[1]C[1]"), incorrectToken);
  EXPECT_EQ(compiledHex(u"R1"), "44 00 00 11 C0");
}

TEST(Compile, SheetsGetAnExternSheetIndex) {
  FakeBook book;
  EXPECT_EQ(hex(compileFormula(u"Sheet2!A1", book, 0, 0)), "5A 00 00 00 00 00 C0");
  EXPECT_EQ(hex(compileFormula(u"Sheet1!A1:B2", book, 0, 0)), "5B 01 00 00 00 01 00 00 C0 01 C0");
  EXPECT_EQ(hex(compileFormula(u"Sheet2!B$1+COUNT(Sheet2!A1,Sheet1!A1:B2)", book, 0, 0)),
            "5A 00 00 00 00 01 40 3A 00 00 00 00 00 C0 3B 01 00 00 00 01 00 00 C0 01 C0 42 02 00 00 03");
  EXPECT_EQ(book.externSheets.size(), 2u);
}

TEST(Compile, QuotedSheetNamesLoseTheirQuotes) {
  FakeBook book;
  compileFormula(u"'My Sheet'!A1+'O''Brien'!A1+'a!b'!A1+'Sheet1'!A1", book, 0, 0);
  ASSERT_EQ(book.externSheets.size(), 4u);
  EXPECT_EQ(book.externSheets[0].first, 2u);
  EXPECT_EQ(book.externSheets[1].first, 3u);
  EXPECT_EQ(book.externSheets[2].first, 4u);
  EXPECT_EQ(book.externSheets[3].first, 0u);
}

TEST(Compile, ASheetThatIsNotThereIsAnIncorrectToken) {
  for (const auto* text : {u"Sheet9!A1", u"Sheet9!A1:B2", u"Sheet1!A1:Sheet9!B2", u"Sheet9!A1:Sheet1!B2", u"!A1",
                           u"Sheet1!", u"Sheet1!Rate", u"'Sheet1!A1"}) {
    EXPECT_EQ(compileMessage(text), incorrectToken);
  }
}

TEST(Compile, ARangeBetweenSheetsIsWrapped) {
  EXPECT_EQ(compiledHex(u"Sheet1!A1:Sheet2!$B$2"), "29 0F 00 3A 00 00 00 00 00 C0 3A 01 00 01 00 01 00 11");
  EXPECT_EQ(compiledHex(u"COUNT('My Sheet'!A1:Sheet2!B2)"),
            "29 0F 00 3A 00 00 00 00 00 C0 3A 01 00 01 00 01 C0 11 42 01 00 00");
}

TEST(Compile, TextsAreWideWithTheirDoubledQuotesUndone) {
  EXPECT_EQ(compiledHex(u"\"ab\""), "17 02 01 61 00 62 00");
  EXPECT_EQ(compiledHex(u"\"\""), "17 00 01");
  EXPECT_EQ(compiledHex(u"\"a\"\"b\""), "17 03 01 61 00 22 00 62 00");
  EXPECT_EQ(compiledHex(u"\"it's a 'b\"&1"),
            "17 09 01 69 00 74 00 27 00 73 00 20 00 61 00 20 00 27 00 62 00 1E 01 00 08");
  EXPECT_EQ(compiledHex(u"\"\u20AC\""), "17 01 01 AC 20");
  EXPECT_EQ(compiledHex(u"\"\"\""), "17 01 01 22 00");
  EXPECT_EQ(compileMessage(u"\""), incorrectToken);
  EXPECT_EQ(compileMessage(u"\"open"), incorrectToken);
}

TEST(Compile, TextsHoldUpTo255Characters) {
  EXPECT_EQ(compiled(u"\"" + std::u16string(255, u'x') + u"\"").size(), 3u + 2 * 255);
  EXPECT_EQ(compileMessage(u"\"" + std::u16string(256, u'x') + u"\""), "ShortXLUnicodeString: string is too long");
  std::u16string quotes = u"\"";
  for (int i = 0; i < 255; ++i) quotes += u"\"\"";
  EXPECT_EQ(compiled(quotes + u"\"").size(), 3u + 2 * 255);
}

TEST(Compile, ErrorConstants) {
  EXPECT_EQ(compiledHex(u"#NULL!"), "1C 00");
  EXPECT_EQ(compiledHex(u"#DIV/0!"), "1C 07");
  EXPECT_EQ(compiledHex(u"#VALUE!"), "1C 0F");
  EXPECT_EQ(compiledHex(u"#REF!"), "1C 17");
  EXPECT_EQ(compiledHex(u"#NAME?"), "1C 1D");
  EXPECT_EQ(compiledHex(u"#NUM!"), "1C 24");
  EXPECT_EQ(compiledHex(u"#N/A"), "1C 2A");
  EXPECT_EQ(compiledHex(u"1+#REF!"), "1E 01 00 1C 17 03");
  EXPECT_EQ(compileMessage(u"1+#N/A"), incorrectToken);
  EXPECT_EQ(compileMessage(u"#OTHER!"), incorrectToken);
}

TEST(Compile, Booleans) {
  EXPECT_EQ(compiledHex(u"TRUE+1"), "1D 01 1E 01 00 03");
  EXPECT_EQ(compiledHex(u"IF(FALSE,1,2)"), "1D 00 1E 01 00 1E 02 00 42 03 01 00");
  EXPECT_EQ(compiledHex(u"TRUE()"), "42 00 22 00");
  EXPECT_EQ(compileMessage(u"TRUE"), "error: function parentheses not found");
  EXPECT_EQ(compileMessage(u"A1=TRUE"), "error: function parentheses not found");
}

TEST(Compile, NamesGiveTheirIndexFromOneOn) {
  FakeBook book;
  EXPECT_EQ(hex(compileFormula(u"Rate*2", book, 3, 7)), "23 01 00 00 00 1E 02 00 05");
  EXPECT_EQ(book.lastSheetIndex, 3);
  EXPECT_EQ(book.lastScope, 7);
  EXPECT_EQ(hex(compileFormula(u"My_Name", book, 0, 0)), "23 02 00 00 00");
  EXPECT_EQ(hex(compileFormula(u"Größe", book, 0, 0)), "23 04 00 00 00");
  EXPECT_EQ(compileMessage(u"Unknown_Name"), incorrectToken);
  EXPECT_EQ(compileMessage(u"MISS"), incorrectToken);
}

TEST(Compile, CallsAreVariableCallsOfValueClass) {
  EXPECT_EQ(compiledHex(u"SUM(A1:B2)"), "25 00 00 01 00 00 C0 01 C0 42 01 04 00");
  EXPECT_EQ(compiledHex(u"SUM(A1)"), "44 00 00 00 C0 42 01 04 00");
  EXPECT_EQ(compiledHex(u"COUNT(A1)"), "24 00 00 00 C0 42 01 00 00");
  EXPECT_EQ(compiledHex(u"ROW(A1)"), "24 00 00 00 C0 42 01 08 00");
  EXPECT_EQ(compiledHex(u"ROW(1,A1)"), "1E 01 00 44 00 00 00 C0 42 02 08 00");
  EXPECT_EQ(compiledHex(u"PI()"), "42 00 13 00");
  EXPECT_EQ(compiledHex(u"SIN(1,2,3)"), "1E 01 00 1E 02 00 1E 03 00 42 03 0F 00");
  EXPECT_EQ(compiledHex(u"LOG10(5)"), "1E 05 00 42 01 17 00");
  EXPECT_EQ(compiledHex(u"LOG(5)"), "1E 05 00 42 01 6D 00");
  EXPECT_EQ(compiledHex(u"DAYS360(A1,B1)"), "44 00 00 00 C0 44 00 00 01 C0 42 02 DC 00");
  EXPECT_EQ(compiledHex(u"ATAN2(1,2)"), "1E 01 00 1E 02 00 42 02 61 00");
  EXPECT_EQ(compiledHex(u"SUMXMY2(1,2)"), "1E 01 00 1E 02 00 42 02 2F 01");
  EXPECT_EQ(compiledHex(u"ADD.BAR()"), "42 00 97 00");
}

TEST(Compile, TodayIsVolatileAndFixedAndOffsetIsAReference) {
  EXPECT_EQ(compiledHex(u"TODAY()"), "19 01 00 00 41 DD 00");
  EXPECT_EQ(compiledHex(u"OFFSET(A1,1,2)"), "24 00 00 00 C0 1E 01 00 1E 02 00 22 03 4E 00");
}

TEST(Compile, SumproductOverPlainRangesKeepsTheirClass) {
  EXPECT_EQ(compiledHex(u"SUMPRODUCT(A1:A3,B1:B3)"),
            "25 00 00 02 00 00 C0 00 C0 25 00 00 02 00 01 C0 01 C0 42 02 E4 00");
}

TEST(Compile, SumproductThatComputesTakesItsRangesAsArrays) {
  EXPECT_EQ(compiledHex(u"SUMPRODUCT(A1:A3*B1:B3)"),
            "65 00 00 02 00 00 C0 00 C0 65 00 00 02 00 01 C0 01 C0 05 42 01 E4 00");
  EXPECT_EQ(compiledHex(u"1+SUMPRODUCT(A1:A3)"), "1E 01 00 65 00 00 02 00 00 C0 00 C0 42 01 E4 00 03");
  // Ranges of a call inside are no longer remembered.
  EXPECT_EQ(compiledHex(u"SUMPRODUCT(SUM(A1:A3),B1:B3)").substr(0, 2), "25");
  EXPECT_EQ(compiledHex(u"SUMPRODUCT(SUM(A1:A3),B1:B3)").substr(39, 2), "65");
}

TEST(Compile, TheWordSum1IsTheSumOption) {
  EXPECT_EQ(compiledHex(u"A1+SUM1"), "44 00 00 00 C0 19 10 00 00 03");
}

TEST(Compile, NamesThatLookLikeFunctionItems) {
  EXPECT_EQ(compileMessage(u"TAXF"), "incorrect number of function parameters");
  EXPECT_EQ(compileMessage(u"F"), "incorrect number of function parameters");
  EXPECT_EQ(compileMessage(u"Sheet1!TAXF"), incorrectToken);
  EXPECT_EQ(compiledHex(u"TAX2F"), "42 02 FF 00");
  EXPECT_EQ(compiledHex(u"TAX2FF3F"), "42 02 FF 00");
  EXPECT_EQ(compiledHex(u"1F"), "42 01 FF 00");
  EXPECT_EQ(compileMessage(u"TAX99999999999F"), "incorrect number of function parameters");
  EXPECT_EQ(compileMessage(u"TAX2BF"), incorrectToken);
  EXPECT_EQ(compiledHex(u"TAX_F2"), "23 03 00 00 00");
}

TEST(Compile, TheRepairOfNamesWithDigitsTakesThemFromTheCount) {
  EXPECT_EQ(compileMessage(u"ATAN(1,2)"), "incorrect number of function parameters");
  EXPECT_EQ(compileMessage(u"LOG(1,2,3,4,5,6,7,8,9,10)"), "incorrect number of function parameters");
  EXPECT_EQ(compiledHex(u"ATAN(1)"), "1E 01 00 42 01 12 00");
}

TEST(Compile, TheArgumentCountIsOneByte) {
  std::u16string text = u"SUM(1";
  for (int i = 1; i < 258; ++i) text += u",1";
  const Bytes tokens = compiled(text + u")");
  EXPECT_EQ(hex(std::span(tokens).last(4)), "42 02 04 00");
}

TEST(Compile, FunctionsThatAreNotInTheTableFail) {
  EXPECT_EQ(compileMessage(u"sum(A1)"), incorrectToken);
  EXPECT_EQ(compileMessage(u"XLOOKUP(A1)"), incorrectToken);
  EXPECT_EQ(compiledHex(u"USERDEFINED()"), "42 00 FF 00");
}

TEST(Compile, MissingArgumentsLeaveNoToken) {
  EXPECT_EQ(compiledHex(u"IF(1,,2)"), "1E 01 00 1E 02 00 42 03 01 00");
}

TEST(Compile, BlanksDontMatterOutsideQuotes) {
  EXPECT_EQ(compiledHex(u" = SUM ( A1 : B2 , 3 ) "), compiledHex(u"SUM(A1:B2,3)"));
  EXPECT_EQ(compiledHex(u"1 < = 2"), compiledHex(u"1<=2"));
}

TEST(Compile, AnApostropheInATextCostsLaterSheetNamesTheirBlanks) {
  EXPECT_EQ(compileMessage(u"\"it's\"&'My Sheet'!A1"), incorrectToken);
  EXPECT_EQ(compileMessage(u"'My Sheet'!A1&\"it's\""), "nothing thrown");
}

TEST(Compile, TextOfAnySizeAndNestingAnswers) {
  EXPECT_EQ(compiled(std::u16string(100'000, u'(')).size(), 100'000u);
  EXPECT_EQ(compileMessage(std::u16string(100'000, u')')), "error in formula");
  std::u16string sum = u"1";
  for (int i = 0; i < 30'000; ++i) sum += u"+1";
  EXPECT_EQ(compiled(sum).size(), 3u * 30'001 + 30'000);
  EXPECT_EQ(compiled(std::u16string(100'000, u'-') + u"1").size(), 100'003u);
  std::u16string powers = u"1";
  for (int i = 0; i < 30'000; ++i) powers += u"&1^2";
  EXPECT_EQ(compiled(powers).size(), 3u + 30'000 * 8);
  EXPECT_EQ(compileMessage(std::u16string(100'000, u'A')), incorrectToken);
  EXPECT_EQ(compileMessage(std::u16string(100'000, u'\'')), incorrectToken);
}

}  // namespace
}  // namespace rubrica::formula
