#include "engine/sample_text.h"

#include <limits>

#include <gtest/gtest.h>

namespace rubrica {
namespace {

struct BuiltIn {
  int id;
  double value;
  const char16_t* sample;
};

class BuiltInSamples : public testing::TestWithParam<BuiltIn> {};

TEST_P(BuiltInSamples, StandForTheNumberInItsFormat) {
  EXPECT_EQ(sampleText(GetParam().value, GetParam().id, u"ignored"), GetParam().sample);
}

INSTANTIATE_TEST_SUITE_P(
    EachId, BuiltInSamples,
    testing::Values(BuiltIn{0, 1234.5, u"1234.5"}, BuiltIn{0, 1.0 / 3, u"0.3333333333"}, BuiltIn{0, 1e20, u"1e+20"},
                    BuiltIn{1, 1234.9, u"1234"}, BuiltIn{1, 1234567890123456.0, u"123456789012"},
                    BuiltIn{2, 1234.567, u"1234.57"}, BuiltIn{3, 12, u"12"}, BuiltIn{3, 12345, u"12345"},
                    BuiltIn{3, 123456, u"123456 "}, BuiltIn{3, 123456789, u"123456789  "},
                    BuiltIn{3, 1234567890123456.0, u"123456789012   "}, BuiltIn{4, 1234.5, u"1234.50 "},
                    BuiltIn{5, 1, u"1         "}, BuiltIn{6, 123456, u"123456          "},
                    BuiltIn{7, 1.5, u"1.50         "}, BuiltIn{8, 1234.5, u"1234.50          "},
                    BuiltIn{9, 2.7, u"200%"}, BuiltIn{10, 0.12345, u"12.35%"}, BuiltIn{11, 12345, u"1.23E+04"},
                    BuiltIn{12, 3.5, u"3 0/0"}, BuiltIn{13, 3.5, u"3 00/00"}, BuiltIn{14, 1, u"00.00.0000"},
                    BuiltIn{15, 1, u"00.mmm.00"}, BuiltIn{16, 1, u"00.mmm"}, BuiltIn{17, 1, u"mmm.00"},
                    BuiltIn{18, 1, u"00:00 AM"}, BuiltIn{19, 1, u"00:00:00 AM"}, BuiltIn{20, 1, u"00:00"},
                    BuiltIn{21, 1, u"00:00:00"}, BuiltIn{22, 1, u"00.00.0000 00:00"}, BuiltIn{37, 123456, u"123456 "},
                    BuiltIn{38, -5, u"-5"}, BuiltIn{39, 1234.5, u"1234.50 "}, BuiltIn{40, 1, u"1.00"},
                    BuiltIn{41, 1, u"1         "}, BuiltIn{42, 123456, u"123456          "},
                    BuiltIn{43, 1, u"1.00         "}, BuiltIn{44, 1234.5, u"1234.50          "},
                    BuiltIn{45, 1, u"00:00"}, BuiltIn{46, 1, u"0000000:00:00"}, BuiltIn{47, 1, u"00:00,0"},
                    BuiltIn{48, 1, u"00,0E+0"}, BuiltIn{49, 1234567890123456.0, u"1234567890123456"}));

TEST(SampleText, WholeNumbersPastSixtyFourBitsAreTheSmallest) {
  EXPECT_EQ(sampleText(1e300, 49, u""), u"-9223372036854775808");
  EXPECT_EQ(sampleText(1e300, 1, u""), u"-92233720368");
  EXPECT_EQ(sampleText(-1e300, 49, u""), u"-9223372036854775808");
  EXPECT_EQ(sampleText(std::numeric_limits<double>::quiet_NaN(), 49, u""), u"-9223372036854775808");
}

TEST(SampleText, TheLargestNumberHasRoom) {
  EXPECT_EQ(sampleText(std::numeric_limits<double>::max(), 2, u"").size(), 312u);
  EXPECT_EQ(sampleText(std::numeric_limits<double>::max(), 10, u""), u"inf%");
}

TEST(SampleText, OtherIdsTakeTheirTextAndWithoutOneTheGeneralFormat) {
  for (const int id : {23, 36, 50, 163, 164, 392, 65535}) {
    EXPECT_EQ(sampleText(1.5, id, u"0.000"), u"1.500") << id;
    EXPECT_EQ(sampleText(1.5, id, u""), u"1.5") << id;
  }
}

struct Custom {
  const char16_t* format;
  double value;
  const char16_t* sample;
};

class CustomSamples : public testing::TestWithParam<Custom> {};

TEST_P(CustomSamples, AreAsWideAsTheirSection) {
  EXPECT_EQ(customSample(GetParam().value, GetParam().format), GetParam().sample);
}

INSTANTIATE_TEST_SUITE_P(Dates, CustomSamples,
                         testing::Values(Custom{u"d", 1, u"00"}, Custom{u"dd", 1, u"00"}, Custom{u"ddd", 1, u"000"},
                                         Custom{u"dddd", 1, u"Wednesday"}, Custom{u"ddddd", 1, u"ddddd"},
                                         Custom{u"m", 1, u"00"}, Custom{u"mm", 1, u"00"}, Custom{u"mmm", 1, u"000"},
                                         Custom{u"mmmm", 1, u"September"}, Custom{u"mmmmm", 1, u"S"},
                                         Custom{u"mmmmmm", 1, u"mmmmmm"}, Custom{u"yy", 1, u"00"},
                                         Custom{u"yyyy", 1, u"0000"}, Custom{u"h:mm:ss", 1, u"00:00:00"},
                                         Custom{u"hh:mm AM/PM", 1, u"00:00 AM"}, Custom{u"h A/P", 1, u"00 A"},
                                         Custom{u"YYYY-MM-DD", 1, u"0000-00-00"}, Custom{u"[h]:mm", 4.5, u"108:00"},
                                         Custom{u"[mm]", 1, u"1440"}, Custom{u"[s].0", 1, u"86400.0"},
                                         Custom{u"dd\\.mm\\.yyyy", 1, u"00.00.0000"},
                                         Custom{u"[$-409]d mmm", 1, u"00 000"}, Custom{u"\"day \"d", 1, u"day 00"},
                                         Custom{u"mm:ss.00", 1, u"00:00.00"}));

INSTANTIATE_TEST_SUITE_P(
    Numbers, CustomSamples,
    testing::Values(Custom{u"0", 7, u"7"}, Custom{u"0000", 7, u"0007"}, Custom{u"0.00", 1.005, u"1.00"},
                    Custom{u"0.00", -1.5, u"-1.50"}, Custom{u"#,##0", 1234567, u"1234567,,"},
                    Custom{u"#,##0", 5, u"0005,"}, Custom{u"0,", 12345, u"12"}, Custom{u"0%", 0.05, u"05%"},
                    Custom{u"0%", 1.5, u"150%"}, Custom{u"0.00%", 0.1234, u"12.34%"}, Custom{u"%", 0.5, u"%"},
                    Custom{u"0.00E+00", 12345, u"1.23E+04"}, Custom{u"# ?/?", 3.5, u"3 0/0"},
                    Custom{u"# ?"
                           u"?/?"
                           u"?",
                           3.5, u"3 00/00"},
                    Custom{u"000-00-0000", 123456789, u"123456789--"}, Custom{u"[Red]0.00", 2, u"2.00"},
                    Custom{u"[$€-407] 0.0", 2, u"€ 2.0"}, Custom{u"[$USD]0", 2, u"USD2"}, Custom{u"[$]0", 2, u"2"},
                    Custom{u"\"days\" 0", 2, u"days 2"}, Custom{u"0\\x", 2, u"2x"}, Custom{u"_(0_)", 2, u"2"},
                    Custom{u"* 0", 2, u"2"}, Custom{u"0;(0)", -2, u"(2)"}, Custom{u"0;(0);\"none\"", 0, u"none"},
                    Custom{u"0;(0)", 0, u"0"}, Custom{u"General", 1.5, u"1.5"},
                    Custom{u"General\" kg\"", 1.5, u"1.5 kg"}, Custom{u"@", 1.5, u"1.5"},
                    Custom{u"\"a;b\"0", -1, u"-a;b1"}));

INSTANTIATE_TEST_SUITE_P(Broken, CustomSamples,
                         testing::Values(Custom{u"", 1, u""}, Custom{u"\"open", 1, u"open"}, Custom{u"[", 1, u""},
                                         Custom{u"[$", 1, u""}, Custom{u"[$-", 1, u""}, Custom{u"[]0", 1, u"1"},
                                         Custom{u"\\", 1, u""}, Custom{u"_", 1, u""}, Custom{u";;;", 1, u""},
                                         Custom{u"E+", 1, u""}, Custom{u".", 1, u"."}));

TEST(SampleText, ManyDigitPlacesStayShort) {
  EXPECT_LT(customSample(1, std::u16string(30000, u'0')).size(), 300u);
  EXPECT_LT(customSample(1, u"0." + std::u16string(30000, u'0')).size(), 300u);
}

}  // namespace
}  // namespace rubrica
