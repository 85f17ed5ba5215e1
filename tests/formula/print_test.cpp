#include "formula/print.h"

#include <limits>

#include <gtest/gtest.h>

#include "formula/ptg.h"
#include "formula/token_walk.h"
#include "tests/formula/fake_book.h"

namespace rubrica::formula {
namespace {

std::u16string postfixOf(const Bytes& tokens, const FakeBook& book = {}) {
  return postfixFromTokens(tokens, book, false, 0, 0);
}

std::string foldMessage(std::u16string_view postfix) {
  return messageOf([&] { infixFromPostfix(postfix); });
}

TEST(PostfixFromTokens, OperatorsHaveTheirTexts) {
  const std::u16string_view texts[] = {u"+",        u"-",     u"*",      u"/",        u"^",  u"&",   u"<",
                                       u"<=",       u"=",     u">=",     u">",        u"<>", u"?",   u"?",
                                       u"ptgRange", u"uPlus", u"uMinus", u"uPercent", u"(",  u"MISS"};
  for (std::size_t i = 0; i < std::size(texts); ++i) {
    EXPECT_EQ(postfixOf({static_cast<std::uint8_t>(ptg::Add + i)}), texts[i]) << i;
  }
}

// The items of all operand tokens with a payload of zeros, by their first byte. A name, here of index 0, prints as "?".
TEST(PostfixFromTokens, EveryFirstByteHasItsItem) {
  struct Row {
    std::vector<int> firsts;
    std::u16string_view item;
  };
  const Row rows[] = {
      {{0x01, 0x02, 0x20, 0x26, 0x39, 0x40, 0x46, 0x59, 0x60, 0x63, 0x66, 0x79, 0x23, 0x43}, u"?"},
      {{0x24, 0x2C, 0x44, 0x4C, 0x64, 0x6C}, u"$A$1"},
      {{0x25, 0x2D, 0x45, 0x4D, 0x65, 0x6D}, u"$A$1:$A$1"},
      {{0x27, 0x2B, 0x3C, 0x3D, 0x47, 0x4A, 0x4B, 0x5C, 0x5D, 0x67, 0x6A, 0x6B, 0x7C, 0x7D}, u"ERR"},
      {{0x28, 0x48, 0x68}, u"NOMEM"},
      {{0x29, 0x49, 0x69}, u""},
      {{0x2A, 0x3A, 0x5A, 0x7A, 0x3B, 0x5B, 0x7B}, u"#REF!"},
      {{0x21, 0x41, 0x61, 0x22, 0x42, 0x62}, u"COUNT0F"},
      {{0x1C}, u"#NULL!"},
      {{0x1D}, u"FALSE"},
      {{0x1E, 0x1F}, u"0"},
      {{0x17}, u"\"\""},
  };
  for (const Row& row : rows) {
    for (const int first : row.firsts) {
      Bytes bytes(12, 0);
      bytes[0] = static_cast<std::uint8_t>(first);
      bytes.resize(tokenLength(bytes));
      EXPECT_EQ(postfixOf(bytes), row.item) << first;
    }
  }
}

TEST(PostfixFromTokens, ExtendedTokensAreUnknown) {
  EXPECT_EQ(postfixOf({0x18, 1, 0, 0, 0, 0, 0}), u"?");
  EXPECT_EQ(printMessage({0x18, 4, 0, 0, 0, 0, 0}), "unknown Ptg 0x18");
}

TEST(PostfixFromTokens, AttrAddsNothingButTheSum) {
  for (const int option : {0x01, 0x02, 0x08, 0x40}) {
    EXPECT_EQ(postfixOf({0x1E, 1, 0, 0x19, static_cast<std::uint8_t>(option), 0, 0}), u"1");
  }
  for (const int option : {0x20, 0x21, 0x41}) {
    EXPECT_EQ(postfixOf({0x1E, 1, 0, 0x19, static_cast<std::uint8_t>(option), 0, 0, 0}), u"1");
  }
  EXPECT_EQ(postfixOf({0x19, 0x04, 0, 1, 0, 0, 0, 0x1E, 1, 0}), u"1");
  EXPECT_EQ(postfixOf({0x1E, 1, 0, 0x19, 0x10, 0, 0}), u"1 SUM1F");
  EXPECT_EQ(printMessage({0x19, 0x03, 0, 0}), "unknown Ptg 0x19");
}

TEST(PostfixFromTokens, Texts) {
  EXPECT_EQ(postfixOf({0x17, 3, 0, 'a', '"', 0xE9}), u"\"a\"\"\u00E9\"");
  EXPECT_EQ(postfixOf({0x17, 2, 1, 0xAC, 0x20, '"', 0}), u"\"\u20AC\"\"\"");
}

TEST(PostfixFromTokens, ErrorsAndBooleans) {
  EXPECT_EQ(postfixOf({0x1C, 42}), u"#N/A");
  EXPECT_EQ(postfixOf({0x1C, 1}), u"?");
  EXPECT_EQ(postfixOf({0x1D, 1}), u"TRUE");
  EXPECT_EQ(postfixOf({0x1D, 2}), u"TRUE");
}

TEST(PostfixFromTokens, Functions) {
  EXPECT_EQ(postfixOf({0x41, 15, 0}), u"SIN1F");
  EXPECT_EQ(postfixOf({0x41, 19, 0}), u"PI0F");
  EXPECT_EQ(postfixOf({0x42, 3, 4, 0}), u"SUM3F");
  EXPECT_EQ(postfixOf({0x42, 255, 4, 0}), u"SUM255F");
  EXPECT_EQ(postfixOf({0x42, 2, 202, 0}), u"?2F");
  EXPECT_EQ(postfixOf({0x42, 2, 0xFF, 0x7F}), u"?2F");
  EXPECT_EQ(postfixOf({0x42, 2, 0x00, 0x80}), u"?");
  EXPECT_EQ(postfixOf({0x42, 2, 0xFF, 0xFF}), u"?");
  EXPECT_EQ(postfixOf({0x41, 202, 0}), u"?0F");
}

TEST(PostfixFromTokens, Names) {
  EXPECT_EQ(postfixOf({0x23, 1, 0, 0, 0}), u"Rate");
  EXPECT_EQ(postfixOf({0x43, 2, 0, 0, 0}), u"My_Name");
  EXPECT_EQ(postfixOf({0x23, 0, 0, 0, 0}), u"?");
  EXPECT_EQ(postfixOf({0x23, 5, 0, 0, 0}), u"?");
  EXPECT_EQ(postfixOf({0x23, 0xFF, 0xFF, 0xFF, 0xFF}), u"?");
  EXPECT_EQ(postfixOf({0x63, 1, 0, 0, 0}), u"?");
}

TEST(PostfixFromTokens, References) {
  EXPECT_EQ(postfixOf({0x24, 0, 0, 0, 0xC0}), u"A1");
  EXPECT_EQ(postfixOf({0x44, 0, 0, 0, 0x40}), u"A$1");
  EXPECT_EQ(postfixOf({0x64, 0, 0, 0, 0x80}), u"$A1");
  EXPECT_EQ(postfixOf({0x44, 0xFF, 0xFF, 0xFF, 0x00}), u"$IV$65536");
  EXPECT_EQ(postfixOf({0x44, 0, 0, 0xFF, 0xFF}), u"XFD1");
  EXPECT_EQ(postfixOf({0x45, 0, 0, 9, 0, 1, 0xC0, 2, 0}), u"B1:$C$10");
}

TEST(PostfixFromTokens, SheetParts) {
  FakeBook book;
  book.externSheets = {{0, 0}, {2, 2}, {0, 1}, {0, 99}, {3, 3}};
  EXPECT_EQ(postfixOf({0x5A, 0, 0, 0, 0, 0, 0xC0}, book), u"Sheet1!A1");
  EXPECT_EQ(postfixOf({0x5B, 1, 0, 0, 0, 1, 0, 0, 0xC0, 1, 0xC0}, book), u"'My Sheet'!A1:B2");
  EXPECT_EQ(postfixOf({0x3A, 2, 0, 0, 0, 0, 0xC0}, book), u"Sheet1:Sheet2!A1");
  EXPECT_EQ(postfixOf({0x3A, 3, 0, 0, 0, 0, 0xC0}, book), u"#REF!");
  EXPECT_EQ(postfixOf({0x3B, 9, 0, 0, 0, 1, 0, 0, 0xC0, 1, 0xC0}, book), u"#REF!");
  EXPECT_EQ(postfixOf({0x7A, 4, 0, 0, 0, 0, 0xC0}, book), u"'O''Brien'!A1");
}

TEST(PostfixFromTokens, RelativePartsAreOffsetsFromTheCell) {
  const FakeBook book;
  const auto at = [&](const Bytes& tokens, int row, int col) {
    return postfixFromTokens(tokens, book, true, row, col);
  };
  EXPECT_EQ(at({0x4C, 1, 0, 2, 0xC0}, 9, 3), u"F11");
  EXPECT_EQ(at({0x4C, 0xFF, 0xFF, 0xFF, 0xC0}, 9, 3), u"C9");
  EXPECT_EQ(at({0x2C, 0xFF, 0xFF, 0xFF, 0xC0}, 0, 0), u"IV65536");
  EXPECT_EQ(at({0x6C, 1, 0, 2, 0x00}, 9, 3), u"$C$2");
  EXPECT_EQ(at({0x6C, 1, 0, 2, 0x80}, 9, 3), u"$C11");
  EXPECT_EQ(at({0x2D, 0, 0, 1, 0, 0, 0xC0, 1, 0xC0}, 65535, 255), u"IV65536:A1");
  EXPECT_EQ(at({0x44, 1, 0, 2, 0xC0}, 9, 3), u"C2");
}

TEST(PostfixFromTokens, WithoutTheFlagOffsetsPrintAsTheyStand) {
  const FakeBook book;
  EXPECT_EQ(postfixFromTokens(Bytes{0x4C, 1, 0, 2, 0xC0}, book, false, 9, 3), u"C2");
}

TEST(NumberText, IsTheShortestThatKeepsTheValue) {
  EXPECT_EQ(numberText(0.5), u"0.5");
  EXPECT_EQ(numberText(0.1), u"0.1");
  EXPECT_EQ(numberText(1.0 / 3), u"0.3333333333333333");
  EXPECT_EQ(numberText(70000), u"70000");
  EXPECT_EQ(numberText(-2.5), u"-2.5");
  EXPECT_EQ(numberText(0), u"0");
  EXPECT_EQ(numberText(-0.0), u"-0");
  EXPECT_EQ(numberText(5e-324), u"5e-324");
  EXPECT_EQ(numberText(1.7976931348623157e308), u"1.7976931348623157e+308");
}

TEST(NumberText, UsesExponentsWhereAStreamDoes) {
  EXPECT_EQ(numberText(1e16), u"10000000000000000");
  EXPECT_EQ(numberText(1e17), u"1e+17");
  EXPECT_EQ(numberText(1.5e20), u"1.5e+20");
  EXPECT_EQ(numberText(0.0001), u"0.0001");
  EXPECT_EQ(numberText(0.00012345678901234567), u"0.00012345678901234567");
  EXPECT_EQ(numberText(0.00001), u"1e-05");
}

TEST(NumberText, OfWhatIsNoNumber) {
  EXPECT_EQ(numberText(std::numeric_limits<double>::infinity()), u"inf");
  EXPECT_EQ(numberText(-std::numeric_limits<double>::infinity()), u"-inf");
  EXPECT_EQ(numberText(std::numeric_limits<double>::quiet_NaN()), u"nan");
}

TEST(InfixFromPostfix, PutsOperatorsBetweenTheirOperands) {
  EXPECT_EQ(infixFromPostfix(u"1 2 +"), u"1+2");
  EXPECT_EQ(infixFromPostfix(u"1 2 + ( 3 *"), u"(1+2)*3");
  EXPECT_EQ(infixFromPostfix(u"1 2 + 3 *"), u"1+2*3");
  EXPECT_EQ(infixFromPostfix(u"A1 B1 <> C1 >="), u"A1<>B1>=C1");
  EXPECT_EQ(infixFromPostfix(u"1 uMinus uPlus uPercent"), u"+-1%");
  EXPECT_EQ(infixFromPostfix(u"A1 B2 ptgRange"), u"A1:B2");
  EXPECT_EQ(infixFromPostfix(u"TRUE FALSE ="), u"TRUE=FALSE");
  EXPECT_EQ(infixFromPostfix(u"\"a b\" 'c d'!A1 &"), u"\"a b\"&'c d'!A1");
}

TEST(InfixFromPostfix, CallsTakeTheirArguments) {
  EXPECT_EQ(infixFromPostfix(u"PI0F"), u"PI()");
  EXPECT_EQ(infixFromPostfix(u"1 2 3 SUM3F"), u"SUM(1,2,3)");
  EXPECT_EQ(infixFromPostfix(u"1 2 3 MAX2F +"), u"1+MAX(2,3)");
  EXPECT_EQ(infixFromPostfix(u"5 LOG101F"), u"LOG10(5)");
  EXPECT_EQ(infixFromPostfix(u"A1 B1 DAYS3602F"), u"DAYS360(A1,B1)");
  EXPECT_EQ(infixFromPostfix(u"1 2 ATAN22F"), u"ATAN2(1,2)");
  EXPECT_EQ(infixFromPostfix(u"1 MISS IF2F"), u"IF(1,MISS)");
}

TEST(InfixFromPostfix, AnUnknownCallIsNamedByItsFirstArgument) {
  EXPECT_EQ(infixFromPostfix(u"MyFunc 1 2 USERDEFINED3F"), u"MyFunc(1,2)");
  EXPECT_EQ(infixFromPostfix(u"MyFunc USERDEFINED1F"), u"MyFunc()");
  EXPECT_EQ(infixFromPostfix(u"USERDEFINED0F"), u"USERDEFINED()");
  EXPECT_EQ(infixFromPostfix(u"A1 B1 ?2F"), u"A1(B1)");
  EXPECT_EQ(infixFromPostfix(u"?0F"), u"?()");
}

TEST(InfixFromPostfix, MissingOperandsHaveTheirMessages) {
  EXPECT_EQ(foldMessage(u"uMinus"), "toInfix error: incorrect unary minus expression");
  EXPECT_EQ(foldMessage(u"uPlus"), "toInfix error: incorrect unary plus expression");
  EXPECT_EQ(foldMessage(u"uPercent"), "toInfix error: incorrect percent expression");
  EXPECT_EQ(foldMessage(u"1 ptgRange"), "toInfix error: incorrect ptgRange expression");
  EXPECT_EQ(foldMessage(u"1 +"), "toInfix error: expected two operands for binary operator");
  EXPECT_EQ(foldMessage(u"("), "toInfix error: incorrect brackets");
  EXPECT_EQ(foldMessage(u"1 SUM2F"), "toInfix error: incorrect function expression");
  EXPECT_EQ(foldMessage(u"1 USERDEFINED2F"), "toInfix error: incorrect function expression");
  EXPECT_EQ(foldMessage(u"SUM2147483647F"), "toInfix error: incorrect function expression");
  EXPECT_EQ(foldMessage(u"TAXF"), "incorrect number of function parameters");
}

TEST(InfixFromPostfix, ExactlyOneExpressionMustRemain) {
  EXPECT_EQ(foldMessage(u"1 2"), "can't build infix formula string");
  EXPECT_EQ(foldMessage(u""), "can't build infix formula string");
}

TEST(Print, FormulasComeBack) {
  EXPECT_EQ(roundTrip(u"=1+2"), u"1+2");
  EXPECT_EQ(roundTrip(u"SUM(A1:B2)"), u"SUM(A1:B2)");
  EXPECT_EQ(roundTrip(u"(1+2)*3"), u"(1+2)*3");
  EXPECT_EQ(roundTrip(u"0.5"), u"0.5");
  EXPECT_EQ(roundTrip(u"TODAY()+OFFSET(A1;1;2)"), u"TODAY()+OFFSET(A1,1,2)");
  EXPECT_EQ(roundTrip(u"Sheet1!A1:Sheet2!B2"), u"Sheet1!A1:Sheet2!B2");
  EXPECT_EQ(roundTrip(u"'O''Brien'!A1&\"it's \"\"so\"\"\""), u"'O''Brien'!A1&\"it's \"\"so\"\"\"");
  EXPECT_EQ(roundTrip(u"'a!b'!A1"), u"'a!b'!A1");
  EXPECT_EQ(roundTrip(u"Rate*TRUE+#VALUE!"), u"Rate*TRUE+#VALUE!");
}

TEST(Print, FixedCallsTakeTheirCountFromTheTable) {
  EXPECT_EQ(printed({0x41, 19, 0}), u"PI()");
  EXPECT_EQ(printed({0x1E, 1, 0, 0x41, 15, 0}), u"SIN(1)");
  EXPECT_EQ(printMessage({0x41, 15, 0}), "toInfix error: incorrect function expression");
}

TEST(Print, TokensThatMakeNoExpression) {
  EXPECT_EQ(printMessage({0x1E, 1, 0, 0x1E, 2, 0}), "can't build infix formula string");
  EXPECT_EQ(printMessage({}), "can't build infix formula string");
  EXPECT_EQ(printMessage({0x19, 0x01, 0, 0}), "can't build infix formula string");
  EXPECT_EQ(printMessage({0x00}), "can't recognize formula block: unknown ptg");
  EXPECT_EQ(printMessage({0x7E}), "can't recognize formula block: unknown ptg");
  EXPECT_EQ(printMessage({0x1E, 1}), "GetFormula move1 error");
  EXPECT_EQ(printed({0x23, 0, 0, 0, 0}), u"?");
}

TEST(Print, ANameThatEndsInFIsTakenForACall) {
  FakeBook book;
  book.names = {u"TAXF", u"TAX0F"};
  EXPECT_EQ(messageOf([&] { printed({0x23, 1, 0, 0, 0}, book); }), "incorrect number of function parameters");
  EXPECT_EQ(printed({0x23, 2, 0, 0, 0}, book), u"TAX()");
}

TEST(Print, DeepAndLongTokensAnswer) {
  Bytes nested = {0x1E, 1, 0};
  for (int i = 0; i < 100'000; ++i) nested.push_back(ptg::Paren);
  EXPECT_EQ(printed(nested).size(), 200'001u);
  Bytes chain = {0x1E, 1, 0};
  for (int i = 0; i < 100'000; ++i) chain.insert(chain.end(), {0x1E, 2, 0, 0x08});
  EXPECT_EQ(printed(chain).size(), 200'001u);
}

}  // namespace
}  // namespace rubrica::formula
