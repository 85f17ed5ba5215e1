#include <gtest/gtest.h>

#include "tests/simhost/script_runner.h"

namespace rubrica::simhost::test {
namespace {

TEST(Expressions, OperatorsBindAsInOmnis) {
  EXPECT_EQ(printed("1+2*3"), "7");
  EXPECT_EQ(printed("(1+2)*3"), "9");
  EXPECT_EQ(printed("10-2-3"), "5");
  EXPECT_EQ(printed("-2*3"), "-6");
  EXPECT_EQ(printed("- -2"), "2");
  EXPECT_EQ(printed("1=1 & 2>3"), "NO");
  EXPECT_EQ(printed("1=2 | 2<3"), "YES");
  EXPECT_EQ(printed("1+1=2"), "YES");
  EXPECT_EQ(printed("not(1=2)"), "YES");
  EXPECT_EQ(printed("not kTrue"), "NO");
  EXPECT_EQ(printed("3<>3"), "NO");
  EXPECT_EQ(printed("3>=3"), "YES");
  EXPECT_EQ(printed("3<=2"), "NO");
}

TEST(Expressions, WholeNumbersStayWholeAsLongAsTheResultIs) {
  EXPECT_EQ(printed("6/2"), "3");
  EXPECT_EQ(printed("7/2"), "3.5");
  EXPECT_EQ(printed("0.1+0.2"), "0.3");
  EXPECT_EQ(printed("1/3"), "0.333333333333333");
  EXPECT_EQ(printed("9223372036854775807+1"), "9223372036854780000");
  EXPECT_EQ(printed("1e3"), "1000");
  EXPECT_EQ(printed("1e300*10"), "1e+301");
  EXPECT_EQ(printed("0.00001"), "0.00001");
  EXPECT_EQ(printed("mod(-7,3)"), "-1");
  EXPECT_EQ(printed("mod(7.5,2)"), "1.5");
  EXPECT_EQ(printed("int(-3.7)"), "-3");
  EXPECT_EQ(printed("rnd(2.345,2)"), "2.35");
  EXPECT_EQ(printed("rnd(1.005,2)"), "1.01");
  EXPECT_EQ(printed("rnd(-2.5)"), "-3");
  EXPECT_EQ(printed("abs(-4)"), "4");
  EXPECT_EQ(printed("min(3,1.5,2)"), "1.5");
  EXPECT_EQ(printed("max('a','c','b')"), "c");
  EXPECT_EQ(printed("pwr(2,10)"), "1024");
  EXPECT_EQ(printed("sqr(9)"), "3");
  EXPECT_EQ(printed("bitand(12,10)"), "8");
}

TEST(Expressions, TextBecomesANumberWhereANumberIsNeeded) {
  EXPECT_EQ(printed("'12'+1"), "13");
  EXPECT_EQ(printed("' 3.5 '*2"), "7");
  EXPECT_EQ(printed("'abc'+1"), "1");
  EXPECT_EQ(printed("'12abc'+1"), "13");
  EXPECT_EQ(printed("'10'=10"), "YES");
  EXPECT_EQ(printed("'10'<'9'"), "YES");
  EXPECT_EQ(printed("-'5'"), "-5");
}

TEST(Expressions, NullSpreadsThroughArithmeticAndEqualsNothing) {
  EXPECT_EQ(printed("isnull(kNull+1)"), "YES");
  EXPECT_EQ(printed("kNull=kNull"), "NO");
  EXPECT_EQ(printed("kNull<>1"), "NO");
  EXPECT_EQ(printed("con('a',kNull,'b')"), "ab");
  EXPECT_EQ(printed("isclear('')"), "YES");
  EXPECT_EQ(printed("isclear(0)"), "YES");
  EXPECT_EQ(printed("isclear(1)"), "NO");
}

TEST(Expressions, SecondOperandOfAndIsOnlyLookedAtWhereItDecides) {
  EXPECT_EQ(printed("kFalse & 1/0"), "NO");
  EXPECT_EQ(printed("kTrue | 1/0"), "YES");
  EXPECT_EQ(printed("1/0"), "line 1: Division by zero");
}

TEST(TextFunctions, CountCharactersAndNotBytes) {
  EXPECT_EQ(printed("len('žluťoučký')"), "9");
  EXPECT_EQ(printed("len('😀a')"), "2");
  EXPECT_EQ(printed("mid('abcdef',2,3)"), "bcd");
  EXPECT_EQ(printed("mid('abcdef',5)"), "ef");
  EXPECT_EQ(printed("mid('abc',9,1)"), "");
  EXPECT_EQ(printed("mid('abc',0,2)"), "ab");
  EXPECT_EQ(printed("left('abc',2)"), "ab");
  EXPECT_EQ(printed("right('abc',2)"), "bc");
  EXPECT_EQ(printed("right('abc',9)"), "abc");
  EXPECT_EQ(printed("pos('cd','abcdef')"), "3");
  EXPECT_EQ(printed("pos('x','abc')"), "0");
  EXPECT_EQ(printed("upp('straße šíp ÿ')"), "STRAßE ŠÍP Ÿ");
  EXPECT_EQ(printed("low('ŽÁBA Ψ Ж')"), "žába ψ ж");
  EXPECT_EQ(printed("cap('the quick FOX')"), "The Quick Fox");
  EXPECT_EQ(printed("con('[',trim('  a b '),']')"), "[a b]");
  EXPECT_EQ(printed("con('[',trim(' a ',kTrue,kFalse),']')"), "[a ]");
  EXPECT_EQ(printed("trim('00120',kTrue,kFalse,'0')"), "120");
  EXPECT_EQ(printed("replace('aXbX','X','-')"), "a-bX");
  EXPECT_EQ(printed("replaceall('aXbX','X','--')"), "a--b--");
  EXPECT_EQ(printed("chr(65,8364)"), "A€");
  EXPECT_EQ(printed("asc('€')"), "8364");
  EXPECT_EQ(printed("asc('ab',2)"), "98");
  EXPECT_EQ(printed("asc('ab',3)"), "-1");
  EXPECT_EQ(printed("'it''s'"), "it's");
  EXPECT_EQ(printed("\"say \"\"hi\"\"\""), "say \"hi\"");
  EXPECT_EQ(printed("con('a',1,2.5,kTrue)"), "a12.5YES");
  EXPECT_EQ(printed("isnumber('1e5')"), "YES");
  EXPECT_EQ(printed("isnumber('12a')"), "NO");
  EXPECT_EQ(printed("isnumber('')"), "NO");
  EXPECT_EQ(printed("bintohex(chartoutf8('é'))"), "C3A9");
  EXPECT_EQ(printed("binlength(chartoutf8('é'))"), "2");
  EXPECT_EQ(printed("utf8tochar(chartoutf8('é'))"), "é");
}

TEST(Justification, FollowsItsCodes) {
  EXPECT_EQ(printed("con('[',jst('ab','5'),']')"), "[ab   ]");
  EXPECT_EQ(printed("con('[',jst('ab','-5'),']')"), "[   ab]");
  EXPECT_EQ(printed("con('[',jst('ab','^6'),']')"), "[  ab  ]");
  EXPECT_EQ(printed("jst(1234567.891,'N2,')"), "1,234,567.89");
  EXPECT_EQ(printed("jst(-1234,'N0,')"), "-1,234");
  EXPECT_EQ(printed("jst(12.5,'-10N2')"), "     12.50");
  EXPECT_EQ(printed("jst(2.675,'N2')"), "2.68");
  EXPECT_EQ(printed("jst(-0.001,'N2')"), "0.00");
  EXPECT_EQ(printed("con('[',jst(0,'N2E'),']')"), "[]");
  EXPECT_EQ(printed("jst(7,'-3P0')"), "007");
  EXPECT_EQ(printed("jst('abcdef','3X')"), "abc");
  EXPECT_EQ(printed("jst('aBc','U')"), "ABC");
  EXPECT_EQ(printed("jst('x','3','y','-3')"), "x    y");
  EXPECT_EQ(printed("jst(date(2026,11,20),'D:d n y')"), "20th November 2026");
  EXPECT_EQ(printed("jst(1,'Q')"), "line 1: Unknown code 'Q' in a jst() format");
  EXPECT_EQ(printed("jst(1,'99999')"), "line 1: A number in a jst() format is larger than 10000");
}

TEST(DateFunctions, CalculateOnTheCalendar) {
  EXPECT_EQ(printed("date(2026,11,20)"), "2026-11-20");
  EXPECT_EQ(printed("date(2026,11,20,14,30,5)"), "2026-11-20 14:30:05");
  EXPECT_EQ(printed("dat('20 Nov 2026')"), "2026-11-20");
  EXPECT_EQ(printed("dat('20/11/2026')"), "2026-11-20");
  EXPECT_EQ(printed("dat('Nov 20, 2026 14:30')"), "2026-11-20 14:30");
  EXPECT_EQ(printed("con('[',dat('31/02/2026'),']')"), "[]");
  EXPECT_EQ(printed("dat('2026-11-20','w D m y')"), "Friday 20 NOV 2026");
  EXPECT_EQ(printed("dat('2026-11-20 15:04:05','H:N:S h A E')"), "15:04:05 3 PM 324");
  EXPECT_EQ(printed("tim('2026-11-20 15:04')"), "15:04");
  EXPECT_EQ(printed("dadd(kDay,30,date(2026,11,20))"), "2026-12-20");
  EXPECT_EQ(printed("dadd(kMonth,1,date(2024,1,31))"), "2024-02-29");
  EXPECT_EQ(printed("dadd(kYear,-1,date(2024,2,29))"), "2023-02-28");
  EXPECT_EQ(printed("dadd(kMinute,90,date(2026,1,1))"), "2026-01-01 01:30");
  EXPECT_EQ(printed("ddiff(kDay,date(2024,2,28),date(2024,3,1))"), "2");
  EXPECT_EQ(printed("ddiff(kMonth,date(2024,1,31),date(2024,2,29))"), "0");
  EXPECT_EQ(printed("ddiff(kYear,date(2000,6,1),date(2026,5,31))"), "25");
  EXPECT_EQ(printed("date(2026,3,1)-date(2026,2,1)"), "28");
  EXPECT_EQ(printed("date(2026,2,28)+1"), "2026-03-01");
  EXPECT_EQ(printed("dpart(kDayofYear,date(2024,12,31))"), "366");
  EXPECT_EQ(printed("dpart(kQuarter,date(2026,11,20))"), "4");
  EXPECT_EQ(printed("dname(kMonth,date(2026,11,20))"), "November");
  EXPECT_EQ(printed("dname(kDay,date(2026,11,20))"), "Friday");
  EXPECT_EQ(printed("dtcy('20 Nov 2026')"), "2026");
  EXPECT_EQ(printed("date(2026,2,30)"), "line 1: There is no such date");
  EXPECT_EQ(printed("date(9999,12,31)+1"), "line 1: The date lies outside of the years 1 to 9999");
  EXPECT_EQ(printed("dadd(99,1,date(2026,1,1))").substr(0, 32), "line 1: The unit of a date funct");
}

TEST(DateFunctions, EveryDayOfFourCenturiesComesBack) {
  DateTime date;
  const std::int64_t first = daysFromCivil(1700, 1, 1);
  const std::int64_t last = daysFromCivil(2100, 12, 31);
  for (std::int64_t day = first; day <= last; ++day) {
    civilFromDays(day, date);
    ASSERT_TRUE(isValidDate(date.year, date.month, date.day)) << day;
    ASSERT_EQ(daysFromCivil(date.year, date.month, date.day), day);
  }
  EXPECT_EQ(last - first + 1, 401 * 365 + 97);
}

TEST(Conversions, BooleansReadAsOmnisWritesThem) {
  EXPECT_TRUE(Value::utf8("YES").toBoolean());
  EXPECT_TRUE(Value::utf8("kTrue").toBoolean());
  EXPECT_TRUE(Value::utf8("1").toBoolean());
  EXPECT_FALSE(Value::utf8("NO").toBoolean());
  EXPECT_FALSE(Value::utf8("").toBoolean());
  EXPECT_FALSE(Value::booleanCode(7).toBoolean());
  EXPECT_EQ(Value::booleanCode(booleanUnset).toUtf8(), "");
}

TEST(Conversions, TextThatIsNoUtf8BecomesReplacementCharacters) {
  EXPECT_EQ(textFromUtf8("a\xFF"
                         "b"),
            U"a\uFFFDb");
  EXPECT_EQ(textFromUtf8("\xE2\x82"), U"\uFFFD\uFFFD");
  EXPECT_EQ(textFromUtf8("\xED\xA0\x80"), U"\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(utf8FromText(U"\U0001F600"), "\xF0\x9F\x98\x80");
}

TEST(ExpressionErrors, NameWhatIsWrong) {
  EXPECT_EQ(printed("foo"), "line 1: Unknown word 'foo'");
  EXPECT_EQ(printed("foo(1)"), "line 1: Unknown function 'foo'");
  EXPECT_EQ(printed("len()"), "line 1: len() takes 1 parameters, not 0");
  EXPECT_EQ(printed("mid('a')"), "line 1: mid() takes 2 to 3 parameters, not 1");
  EXPECT_EQ(printed("1+"), "line 1: Expected a value but found the end of the line");
  EXPECT_EQ(printed("(1"), "line 1: Expected ')' but found the end of the line");
  EXPECT_EQ(printed("'abc"), "line 1: A text that begins with ' has no end");
  EXPECT_EQ(printed("1 2"), "line 1: Expected the end of the line but found '2'");
  EXPECT_EQ(printed("1 ! 2"), "line 1: Unknown character '!'");
  EXPECT_EQ(printed("12abc"), "line 1: '12a...' is neither a number nor a name");
  EXPECT_EQ(printed("$ref.name"), "line 1: $ref.column has a meaning within $search() and $sort() only");
}

}  // namespace
}  // namespace rubrica::simhost::test
