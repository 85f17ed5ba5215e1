#include "formula/infix.h"

#include <gtest/gtest.h>

#include "formula/infix_tokens.h"
#include "tests/formula/fake_book.h"

namespace rubrica::formula {
namespace {

std::string postfixMessage(std::u16string_view text) {
  return messageOf([&] { postfixFromInfix(text); });
}

std::vector<std::u16string> tokensOf(std::u16string_view text) {
  std::vector<std::u16string> result;
  InfixTokens tokens(text);
  for (auto token = tokens.next(); !token.empty(); token = tokens.next()) result.emplace_back(token);
  return result;
}

using Texts = std::vector<std::u16string>;

TEST(InfixTokens, EndAtEveryDelimiter) {
  EXPECT_EQ(tokensOf(u"a+b-c*d/e(f)g^h<i>j=k;l&m%n,o"),
            (Texts{u"a", u"+", u"b", u"-", u"c", u"*", u"d", u"/", u"e", u"(", u"f", u")", u"g", u"^", u"h",
                   u"<", u"i", u">", u"j", u"=", u"k", u";", u"l", u"&", u"m", u"%", u"n", u",", u"o"}));
  EXPECT_EQ(tokensOf(u"A$1:B2!x.y#?_{}"), (Texts{u"A$1:B2!x.y#?_{}"}));
}

TEST(InfixTokens, PairsAreOneToken) {
  EXPECT_EQ(tokensOf(u"<=>=<>"), (Texts{u"<=", u">=", u"<>"}));
  EXPECT_EQ(tokensOf(u"=<=>><"), (Texts{u"=", u"<=", u">", u">", u"<"}));
}

TEST(InfixTokens, QuotesKeepDelimitersAndBlanks) {
  EXPECT_EQ(tokensOf(u"\"a + 'b\"+'c \"d'!A1"), (Texts{u"\"a + 'b\"", u"+", u"'c \"d'!A1"}));
  EXPECT_EQ(tokensOf(u"\"open + end"), (Texts{u"\"open + end"}));
}

TEST(InfixTokens, BlanksOutsideQuotesAreSkippedEvenWithinAToken) {
  EXPECT_EQ(tokensOf(u"  A 1 + 'b c' d  "), (Texts{u"A1", u"+", u"'b c'd"}));
  EXPECT_EQ(tokensOf(u"   "), Texts{});
}

TEST(NormalisedFormula, DropsBlanksOutsideQuotesAndOneEqualsSign) {
  EXPECT_EQ(normalisedFormula(u" = 1 + 'a b'!A1 & \"c d\" "), u"1+'a b'!A1&\"c d\"");
  EXPECT_EQ(normalisedFormula(u"==1"), u"=1");
  EXPECT_EQ(normalisedFormula(u"1=1"), u"1=1");
  EXPECT_EQ(normalisedFormula(u"="), u"");
  EXPECT_EQ(normalisedFormula(u""), u"");
}

TEST(NormalisedFormula, QuoteKindsToggleIndependently) {
  EXPECT_EQ(normalisedFormula(u"\"it's\" & A1"), u"\"it's\" & A1");
  EXPECT_EQ(normalisedFormula(u"'a\"b'!A1 & \"c d\""), u"'a\"b'!A1 & \"cd\"");
}

TEST(ReferenceMarks, StandWhereTheFunctionTakesReferences) {
  EXPECT_EQ(postfixFromInfix(u"COUNT(A1)"), u"A1R COUNT1F");
  EXPECT_EQ(postfixFromInfix(u"SUM(A1)"), u"A1 SUM1F");
  EXPECT_EQ(postfixFromInfix(u"ROW(1,A1)"), u"1 A1 ROW2F");
  EXPECT_EQ(postfixFromInfix(u"VLOOKUP(A1;B1:C9;D1;E1)"), u"A1 B1:C9R D1R E1 VLOOKUP4F");
  EXPECT_EQ(postfixFromInfix(u"A1+COUNT($A$1)+A1"), u"A1 $A$1R COUNT1F + A1 +");
  EXPECT_EQ(postfixFromInfix(u"COUNT(Sheet1!A1,'My Sheet'!A1:B2,Sheet1!A1:Sheet2!B2)"),
            u"Sheet1!A1R 'My Sheet'!A1:B2R Sheet1!A1:Sheet2!B2R COUNT3F");
  EXPECT_EQ(postfixFromInfix(u"COUNT(Rate,12,\"A1\",A,1A,A1B)"), u"Rate 12 \"A1\" A 1A A1B COUNT6F");
}

TEST(ReferenceMarks, FollowTheInnermostCall) {
  EXPECT_EQ(postfixFromInfix(u"COUNT(SUM(A1),A1)"), u"A1 SUM1F A1R COUNT2F");
  EXPECT_EQ(postfixFromInfix(u"SUM(COUNT(A1),A1)"), u"A1R COUNT1F A1 SUM2F");
  EXPECT_EQ(postfixFromInfix(u"ROW((A1,B1),C1)"), u"A1R B1R ( C1 ROW2F");
  EXPECT_EQ(postfixFromInfix(u"COUNT(((A1)),A1+B1)"), u"A1R ( ( A1R B1R + COUNT2F");
  EXPECT_EQ(postfixFromInfix(u"COUNT()+A1"), u"COUNT0F A1 +");
}

TEST(ReferenceMarks, TheMaskComesAroundAfter32Arguments) {
  std::u16string text, postfix;
  for (int i = 0; i < 32; ++i) {
    text += u"1,";
    postfix += u"1 ";
  }
  EXPECT_EQ(postfixFromInfix(u"ROW(" + text + u"A1,A1)"), postfix + u"A1R A1 ROW34F");
  // All-by-reference leaves out the two highest bits.
  EXPECT_EQ(postfixFromInfix(u"COUNT(" + text.substr(0, 58) + u"A1,A1,A1,A1)"),
            postfix.substr(0, 58) + u"A1R A1 A1 A1R COUNT33F");
}

TEST(ReferenceMarks, TrueWithoutParenthesesOpensNoCall) {
  EXPECT_EQ(postfixFromInfix(u"COUNT(TRUE,A1)"), u"TRUE A1R COUNT2F");
  EXPECT_EQ(postfixFromInfix(u"COUNT(TRUE(),A1)"), u"TRUE0F A1R COUNT2F");
}

TEST(ReferenceMarks, AreNotSetTwice) {
  EXPECT_EQ(postfixFromInfix(u"COUNT(A1R)"), u"A1R COUNT1F");
}

TEST(Postfix, BlanksThatAnApostropheKeepsAreSkippedLater) {
  EXPECT_EQ(postfixFromInfix(u"\"it's\" & A 1 < = TRUE ()"), u"\"it's\" A1 TRUE0F <= &");
  EXPECT_EQ(postfixFromInfix(u"\"it's\" & \"a b\""), u"\"it's\" \"a b\" &");
}

TEST(Postfix, FollowsPrecedence) {
  EXPECT_EQ(postfixFromInfix(u"1+2*3"), u"1 2 3 * +");
  EXPECT_EQ(postfixFromInfix(u"=(1+2)*3"), u"1 2 + ( 3 *");
  EXPECT_EQ(postfixFromInfix(u"1-2-3"), u"1 2 - 3 -");
  EXPECT_EQ(postfixFromInfix(u"1/2*3"), u"1 2 / 3 *");
  EXPECT_EQ(postfixFromInfix(u"1*2^3"), u"1 2 3 ^ *");
  EXPECT_EQ(postfixFromInfix(u"1+2<3"), u"1 2 + 3 <");
}

TEST(Postfix, PowerIsLeftAssociative) {
  EXPECT_EQ(postfixFromInfix(u"2^3^4"), u"2 3 ^ 4 ^");
}

TEST(Postfix, ConcatenationBindsLooserThanComparison) {
  EXPECT_EQ(postfixFromInfix(u"A1=B1&C1"), u"A1 B1 = C1 &");
  EXPECT_EQ(postfixFromInfix(u"A1&B1=C1"), u"A1 B1 C1 = &");
}

TEST(Postfix, EqualityBindsLooserThanTheOtherComparisons) {
  for (const std::u16string loose : {u"=", u"<>"}) {
    for (const std::u16string tight : {u"<", u">", u"<=", u">="}) {
      EXPECT_EQ(postfixFromInfix(u"1" + loose + u"2" + tight + u"3"), u"1 2 3 " + tight + u" " + loose);
      EXPECT_EQ(postfixFromInfix(u"1" + tight + u"2" + loose + u"3"), u"1 2 " + tight + u" 3 " + loose);
    }
  }
}

TEST(Postfix, SignsBindTighterThanPower) {
  EXPECT_EQ(postfixFromInfix(u"-2^2"), u"2 uMinus 2 ^");
  EXPECT_EQ(postfixFromInfix(u"2^-2"), u"2 2 uMinus ^");
  EXPECT_EQ(postfixFromInfix(u"+1"), u"1 uPlus");
  EXPECT_EQ(postfixFromInfix(u"--1"), u"1 uMinus uMinus");
  EXPECT_EQ(postfixFromInfix(u"1--1"), u"1 1 uMinus -");
  EXPECT_EQ(postfixFromInfix(u"2*-3+4"), u"2 3 uMinus * 4 +");
  EXPECT_EQ(postfixFromInfix(u"(-1)-2"), u"1 uMinus ( 2 -");
  EXPECT_EQ(postfixFromInfix(u"SUM()-1"), u"SUM0F 1 -");
  EXPECT_EQ(postfixFromInfix(u"IF(1,-2,+3)"), u"1 2 uMinus 3 uPlus IF3F");
}

TEST(Postfix, PercentStandsBehindItsOperand) {
  EXPECT_EQ(postfixFromInfix(u"10%"), u"10 uPercent");
  EXPECT_EQ(postfixFromInfix(u"-10%"), u"10 uPercent uMinus");
  EXPECT_EQ(postfixFromInfix(u"1+10%*2"), u"1 10 uPercent 2 * +");
  EXPECT_EQ(postfixFromInfix(u"10%%-1"), u"10 uPercent uPercent 1 -");
  EXPECT_EQ(postfixFromInfix(u"(1+2)%"), u"1 2 + ( uPercent");
}

TEST(Postfix, CallsCarryTheirArgumentCount) {
  EXPECT_EQ(postfixFromInfix(u"SUM()"), u"SUM0F");
  EXPECT_EQ(postfixFromInfix(u"SUM(A1)"), u"A1 SUM1F");
  EXPECT_EQ(postfixFromInfix(u"SUM(A1,B1;C1)"), u"A1 B1 C1 SUM3F");
  EXPECT_EQ(postfixFromInfix(u"SUM(,)"), u"SUM1F");
  EXPECT_EQ(postfixFromInfix(u"SUM(,1)"), u"1 SUM1F");
  EXPECT_EQ(postfixFromInfix(u"SUM(1,,2)"), u"1 2 SUM3F");
  EXPECT_EQ(postfixFromInfix(u"SUM(\"a,b;c)\",'x,y'!A1)"), u"\"a,b;c)\" 'x,y'!A1 SUM2F");
  EXPECT_EQ(postfixFromInfix(u"SUM(MAX(1,2),MIN(3))+PI()"), u"1 2 MAX2F 3 MIN1F SUM2F PI0F +");
}

TEST(Postfix, AnArgumentMayBeginWithAParenthesisOrAQuote) {
  EXPECT_EQ(postfixFromInfix(u"SUM((1))"), u"1 ( SUM1F");
  EXPECT_EQ(postfixFromInfix(u"SUM((1+2),(3))"), u"1 2 + ( 3 ( SUM2F");
  EXPECT_EQ(postfixFromInfix(u"LEN(\"a\")"), u"\"a\" LEN1F");
  EXPECT_EQ(postfixFromInfix(u"SUM((1,2),3)"), u"1 2 ( 3 SUM2F");
}

TEST(Postfix, SeparatorsOutsideCallsOnlyEndOperands) {
  EXPECT_EQ(postfixFromInfix(u"1+2,3"), u"1 2 + 3");
  EXPECT_EQ(postfixFromInfix(u",-1"), u"1 uMinus");
}

TEST(Postfix, AnErrorConstantIsItsOwnPostfix) {
  for (const std::u16string error : {u"#N/A", u"#NUM!", u"#NAME?", u"#REF!", u"#VALUE!", u"#DIV/0!", u"#NULL!"}) {
    EXPECT_EQ(postfixFromInfix(error), error);
  }
  EXPECT_EQ(postfixFromInfix(u"=#REF!"), u"#REF!");
  EXPECT_EQ(postfixFromInfix(u"=#N/A"), u"#N A /");
}

TEST(Postfix, TrueAndFalseAreConstantsUnlessAParenthesisOrNothingFollows) {
  EXPECT_EQ(postfixFromInfix(u"TRUE+1"), u"TRUE 1 +");
  EXPECT_EQ(postfixFromInfix(u"IF(FALSE,1,2)"), u"FALSE 1 2 IF3F");
  EXPECT_EQ(postfixFromInfix(u"TRUE()"), u"TRUE0F");
  for (const auto* text : {u"TRUE", u"=FALSE", u"A1=TRUE", u"1+FALSE"}) {
    EXPECT_EQ(postfixMessage(text), "error: function parentheses not found");
  }
}

TEST(Postfix, NothingGivesNothing) {
  EXPECT_EQ(postfixFromInfix(u""), u"");
  EXPECT_EQ(postfixFromInfix(u"="), u"");
  EXPECT_EQ(postfixFromInfix(u"  "), u"");
}

TEST(Postfix, FailuresOfParentheses) {
  EXPECT_EQ(postfixMessage(u"SUM"), "error: function parentheses not found");
  EXPECT_EQ(postfixMessage(u"SUM(1"), "error: function parentheses not found");
  EXPECT_EQ(postfixMessage(u"SUM(1+MAX(2)"), "error: function parentheses not found");
  EXPECT_EQ(postfixMessage(u"SUM(\")\""), "error: function parentheses not found");
  EXPECT_EQ(postfixMessage(u"SUM+1"), "error: function name without open parenthesis");
  EXPECT_EQ(postfixMessage(u"SUM(1+MAX)"), "error: function name without open parenthesis");
  EXPECT_EQ(postfixMessage(u"SUM((1+MAX+2)"), "error: function parentheses not found");
  EXPECT_EQ(postfixMessage(u"SUM((1+MAX+2)+(3))"), "error: function name without open parenthesis");
  EXPECT_EQ(postfixMessage(u"SUM(1,\")\"&MAX+1"), "error: function parentheses not found");
  EXPECT_EQ(postfixMessage(u"SUM)("), "error: function name without open parenthesis");
  EXPECT_EQ(postfixMessage(u")"), "error in formula");
  EXPECT_EQ(postfixMessage(u"(1))"), "error in formula");
  EXPECT_EQ(postfixMessage(u"SUM(1))"), "error in formula");
}

TEST(Postfix, AnOpenParenthesisAtTheEndIsClosed) {
  EXPECT_EQ(postfixFromInfix(u"(1+2"), u"1 2 + (");
  EXPECT_EQ(postfixFromInfix(u"(("), u"( (");
}

TEST(Postfix, WhatIsNoFunctionIsAnOperand) {
  EXPECT_EQ(postfixFromInfix(u"sum(A1)"), u"sum A1 (");
  EXPECT_EQ(postfixFromInfix(u"SUM2F(A1)"), u"SUM2F A1 (");
  EXPECT_EQ(postfixFromInfix(u"N1+T5"), u"N1 T5 +");
  EXPECT_EQ(postfixFromInfix(u"My_Name+'a b'!C3"), u"My_Name 'a b'!C3 +");
  EXPECT_EQ(postfixFromInfix(u"(1):(2)"), u"1 ( : 2 (");
}

TEST(Postfix, FunctionNamesWithDigitsAreFoundWhole) {
  EXPECT_EQ(postfixFromInfix(u"LOG10(5)"), u"5 LOG101F");
  EXPECT_EQ(postfixFromInfix(u"DAYS360(A1,B1)"), u"A1 B1 DAYS3602F");
  EXPECT_EQ(postfixFromInfix(u"ATAN2(1,2)"), u"1 2 ATAN22F");
  EXPECT_EQ(postfixFromInfix(u"SUMX2MY2(A1:A3,B1:B3)"), u"A1:A3 B1:B3 SUMX2MY22F");
}

TEST(Postfix, DeepNestingNeitherRecursesNorRescans) {
  constexpr std::size_t depth = 100'000;
  const std::u16string open(depth, u'('), close(depth, u')');
  EXPECT_EQ(postfixFromInfix(open).size(), 2 * depth - 1);
  EXPECT_EQ(postfixFromInfix(open + u"1" + close).size(), 2 * depth + 1);
  std::u16string calls;
  for (std::size_t i = 0; i < depth; ++i) calls += u"SUM(";
  EXPECT_EQ(postfixMessage(calls), "error: function parentheses not found");
  EXPECT_EQ(postfixFromInfix(calls + u"1" + close).size(), 1 + 6 * depth);
}

}  // namespace
}  // namespace rubrica::formula
