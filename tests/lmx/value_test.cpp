#include "lmx/value.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "lmx/c_regex.h"
#include "lmx/text.h"

namespace rubrica::lmx {
namespace {

template <class T>
elmx_error parse(value_kind kind, std::string_view text, T& value, const facets* limits = nullptr) {
  return parse_value({.kind = kind, .limits = limits}, text, &value);
}

TEST(BeyondAscii, IsPassedWhereItIsReadAsItStands) {
  const auto passed = [](std::string_view text) {
    const char* const behind = pass_beyond_ascii(text.data(), text.data() + text.size());
    return behind == nullptr ? -1 : static_cast<int>(behind - text.data());
  };
  EXPECT_EQ(passed("\xC3\xBC!"), 2);
  EXPECT_EQ(passed("\xE2\x82\xAC!"), 3);
  EXPECT_EQ(passed("\xF0\x9F\x93\x8A!"), 4);
  EXPECT_EQ(passed("\xC2\x84"), 2);
  EXPECT_EQ(passed("\xE2\x80\xA9"), 3);
  for (const char* text : {"", "a", "\xC2\x85", "\xE2\x80\xA8", "\xC3", "\xE2\x82", "\xF0\x9F\x93", "\x80", "\xC0\xAF",
                           "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xC3!"}) {
    EXPECT_EQ(passed(text), -1) << text;
  }
}

TEST(Booleans, FourFormsAndNoOther) {
  bool value = false;
  for (const char* text : {"true", "1"}) {
    EXPECT_EQ(parse(value_kind::boolean, text, value), ELMX_OK);
    EXPECT_TRUE(value);
  }
  for (const char* text : {"false", "0"}) {
    EXPECT_EQ(parse(value_kind::boolean, text, value), ELMX_OK);
    EXPECT_FALSE(value);
  }
  for (const char* text : {"", "TRUE", "True", "2", "01", "yes", "on"}) {
    EXPECT_EQ(parse(value_kind::boolean, text, value), ELMX_INVALID_VALUE_FORMAT) << text;
  }
}

template <class T>
void expect_width(value_kind kind) {
  using limits = std::numeric_limits<T>;
  T value{};
  std::string text;
  for (const T bound : {limits::min(), limits::max(), T{0}, T{7}}) {
    text.clear();
    append_value(text, {.kind = kind}, &bound);
    EXPECT_EQ(parse(kind, text, value), ELMX_OK) << text;
    EXPECT_EQ(value, bound);
  }
  // One past the greatest and the least, by hand on the decimal text.
  const auto one_more = [](std::string digits) {
    for (std::size_t i = digits.size(); i-- > 0;) {
      if (digits[i] != '9') {
        ++digits[i];
        return digits;
      }
      digits[i] = '0';
    }
    return "1" + digits;
  };
  EXPECT_EQ(parse(kind, one_more(std::to_string(limits::max())), value), ELMX_VALUE_GREATER_THAN_MAX);
  const std::string least = std::to_string(limits::min());
  const std::string below = least == "0" ? "-1" : "-" + one_more(least.substr(1));
  EXPECT_EQ(parse(kind, below, value), ELMX_VALUE_LESS_THAN_MIN) << below;
  EXPECT_EQ(parse(kind, "99999999999999999999999", value), ELMX_VALUE_GREATER_THAN_MAX);
  EXPECT_EQ(parse(kind, "-99999999999999999999999", value), ELMX_VALUE_LESS_THAN_MIN);
  EXPECT_EQ(parse(kind, "+5", value), ELMX_OK);
  EXPECT_EQ(value, T{5});
  EXPECT_EQ(parse(kind, "-0", value), ELMX_OK);
  EXPECT_EQ(parse(kind, "0000000000000000000000012", value), ELMX_OK);
  EXPECT_EQ(value, T{12});
  for (const char* bad : {"", "+", "-", "1.0", "1e2", "0x1", " 1", "1 ", "--1", "+-1", "a"}) {
    EXPECT_EQ(parse(kind, bad, value), ELMX_INVALID_VALUE_FORMAT) << bad;
  }
}

TEST(Integers, EachWidthAtItsBounds) {
  expect_width<std::int8_t>(value_kind::int8);
  expect_width<std::uint8_t>(value_kind::uint8);
  expect_width<std::int16_t>(value_kind::int16);
  expect_width<std::uint16_t>(value_kind::uint16);
  expect_width<std::int32_t>(value_kind::int32);
  expect_width<std::uint32_t>(value_kind::uint32);
  expect_width<std::int64_t>(value_kind::int64);
  expect_width<std::uint64_t>(value_kind::uint64);
}

TEST(Doubles, AcceptedForms) {
  double value = 0;
  const auto read = [&value](const char* text) {
    EXPECT_EQ(parse(value_kind::float64, text, value), ELMX_OK) << text;
    return value;
  };
  EXPECT_EQ(read("1"), 1.0);
  EXPECT_EQ(read("-1.25"), -1.25);
  EXPECT_EQ(read("+1.5"), 1.5);
  EXPECT_EQ(read("1e2"), 100.0);
  EXPECT_EQ(read("1.5E-3"), 0.0015);
  EXPECT_EQ(read("1e+2"), 100.0);
  EXPECT_EQ(read("0.1"), 0.1);
  EXPECT_EQ(read("007"), 7.0);
  EXPECT_EQ(read("999999999999999"), 999999999999999.0);
  EXPECT_EQ(read("9007199254740993"), 9007199254740992.0);  // beyond 2^53: the even neighbour
  EXPECT_EQ(read("INF"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(read("-INF"), -std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(read("NaN")));
  EXPECT_TRUE(std::signbit(read("-0")));
  EXPECT_EQ(read("1e999"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(read("-1e999"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(read("1e-999"), 0.0);
  EXPECT_EQ(read("0.0001e-99999999999999999999"), 0.0);
  EXPECT_EQ(read("100000e310"), std::numeric_limits<double>::infinity());
  for (const char* bad : {"", "+", "-", ".", ".5", "5.", "1e", "1e+", "e1", "1.2.3", "inf", "+INF", "nan", "+-1", "-+1",
                          "1 ", "0x1p3", "1,5"}) {
    EXPECT_EQ(parse(value_kind::float64, bad, value), ELMX_INVALID_VALUE_FORMAT) << bad;
  }
}

std::string written(double value) {
  std::string text;
  append_number(text, value);
  return text;
}

TEST(Doubles, WrittenForms) {
  EXPECT_EQ(written(0.0), "0.0");
  EXPECT_EQ(written(-0.0), "-0.0");
  EXPECT_EQ(written(std::numeric_limits<double>::quiet_NaN()), "NaN");
  EXPECT_EQ(written(std::numeric_limits<double>::infinity()), "INF");
  EXPECT_EQ(written(-std::numeric_limits<double>::infinity()), "-INF");
  EXPECT_EQ(written(1), "1");
  EXPECT_EQ(written(-1.5), "-1.5");
  EXPECT_EQ(written(0.1), "0.1");
  EXPECT_EQ(written(1E+100), "1e+100");
  EXPECT_EQ(written(1.0 / 3), "0.33333333333333");
  EXPECT_EQ(written(123456789012345.0), "1.2345678901234e+14") << "precision 14";
  EXPECT_EQ(written(12345678901234.0), "12345678901234");
  EXPECT_EQ(written(1e-5), "1e-05");
}

TEST(Datetimes, AcceptedForms) {
  for (const char* good : {"2024", "12024", "2024-01", "2024-01-02", "2024-01-02T03:04:05", "2024-01-02T03:04:05.678Z",
                           "2024-01-02T03:04", "2024-01-02Z", "2024-01-02+01:00", "2024-01-02T03:04:05-12:30"}) {
    c_datetime value;
    EXPECT_EQ(parse(value_kind::datetime, good, value), ELMX_OK) << good;
    EXPECT_EQ(value.text, good);
    std::string text;
    append_value(text, {.kind = value_kind::datetime}, &value);
    EXPECT_EQ(text, good);
  }
  for (const char* bad : {"", "202", "2024-", "2024-1", "2024-01-", "2024-01-02T", "2024-01-02T03",
                          "2024-01-02T03:04:", "2024-01-02T03:04:05.", "2024-01-02z", "2024-01-02+1", "2024/01/02",
                          "2024-01-02 03:04", "2024Z1"}) {
    c_datetime value;
    EXPECT_EQ(parse(value_kind::datetime, bad, value), ELMX_INVALID_VALUE_FORMAT) << bad;
  }
}

TEST(Binaries, Base64BothWays) {
  const std::pair<const char*, const char*> kCases[] = {
      {"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {"\xFF\xFE\xFD\xFC", "//79/A=="}};
  for (const auto& [bytes, text] : kCases) {
    c_binary value;
    const std::string_view wanted(bytes);
    EXPECT_EQ(parse(value_kind::base64, text, value), ELMX_OK) << text;
    EXPECT_EQ(std::string(value.bytes.begin(), value.bytes.end()), wanted);
    std::string out;
    append_value(out, {.kind = value_kind::base64}, &value);
    EXPECT_EQ(out, text);
  }
  c_binary value;
  EXPECT_EQ(parse(value_kind::base64, " Zm\n9v\tZg = = ", value), ELMX_OK);
  EXPECT_EQ(value.bytes.size(), 4U);
  for (const char* bad : {"Z", "Zg", "Zg=", "Zg===", "Zm9v=", "Z===", "Zm=v", "Zm9-", "===="}) {
    EXPECT_EQ(parse(value_kind::base64, bad, value), ELMX_INVALID_VALUE_FORMAT) << bad;
  }
}

TEST(Binaries, HexBothWays) {
  c_binary value;
  EXPECT_EQ(parse(value_kind::hex, "00fFAb", value), ELMX_OK);
  EXPECT_EQ(value.bytes, (std::vector<std::uint8_t>{0, 0xFF, 0xAB}));
  std::string out;
  append_value(out, {.kind = value_kind::hex}, &value);
  EXPECT_EQ(out, "00FFAB");
  for (const char* bad : {"0", "0g", "00 ff", "0x00"}) {
    EXPECT_EQ(parse(value_kind::hex, bad, value), ELMX_INVALID_VALUE_FORMAT) << bad;
  }
}

TEST(Facets, BoundsLengthsAndDigits) {
  constexpr facets kBounds{.min = -5, .max = 10, .has_min = true, .has_max = true};
  std::int32_t number = 0;
  EXPECT_EQ(parse(value_kind::int32, "-5", number, &kBounds), ELMX_OK);
  EXPECT_EQ(parse(value_kind::int32, "10", number, &kBounds), ELMX_OK);
  EXPECT_EQ(parse(value_kind::int32, "-6", number, &kBounds), ELMX_VALUE_LESS_THAN_MIN);
  EXPECT_EQ(parse(value_kind::int32, "11", number, &kBounds), ELMX_VALUE_GREATER_THAN_MAX);
  double real = 0;
  EXPECT_EQ(parse(value_kind::float64, "10.5", real, &kBounds), ELMX_VALUE_GREATER_THAN_MAX);
  EXPECT_EQ(parse(value_kind::float64, "-5.5", real, &kBounds), ELMX_VALUE_LESS_THAN_MIN);
  std::uint64_t large = 0;
  EXPECT_EQ(parse(value_kind::uint64, "18446744073709551615", large, &kBounds), ELMX_VALUE_GREATER_THAN_MAX);
  EXPECT_EQ(parse(value_kind::uint64, "0", large, &kBounds), ELMX_OK);

  constexpr facets kLength{.min_length = 2, .max_length = 3};
  std::string text;
  EXPECT_EQ(parse(value_kind::text, "a", text, &kLength), ELMX_LENGTH_TOO_SHORT);
  EXPECT_EQ(parse(value_kind::text, "\xC3\xA4\xC3\xA4\xC3\xA4", text, &kLength), ELMX_OK) << "characters, not bytes";
  EXPECT_EQ(parse(value_kind::text, "abcd", text, &kLength), ELMX_LENGTH_TOO_LONG);
  c_binary binary;
  EXPECT_EQ(parse(value_kind::hex, "00", binary, &kLength), ELMX_LENGTH_TOO_SHORT);
  EXPECT_EQ(parse(value_kind::hex, "00000000", binary, &kLength), ELMX_LENGTH_TOO_LONG);

  constexpr facets kDigits{.total_digits = 4, .fraction_digits = 2};
  EXPECT_EQ(parse(value_kind::float64, "12.34", real, &kDigits), ELMX_OK);
  EXPECT_EQ(parse(value_kind::float64, "0012.3400", real, &kDigits), ELMX_OK);
  EXPECT_EQ(parse(value_kind::float64, "1.234", real, &kDigits), ELMX_FRACTION_DIGITS_EXCEEDED);
  EXPECT_EQ(parse(value_kind::float64, "12345", real, &kDigits), ELMX_TOTAL_DIGITS_EXCEEDED);
  EXPECT_EQ(parse(value_kind::int32, "-1234", number, &kDigits), ELMX_OK);
  EXPECT_EQ(parse(value_kind::int32, "12345", number, &kDigits), ELMX_TOTAL_DIGITS_EXCEEDED);
}

constexpr const char* kStates[] = {"visible", "hidden", nullptr};
constexpr simple_type kState{.name = "ST_SheetState", .enumeration = kStates};

TEST(Enumerations, TokensExactly) {
  std::string value;
  EXPECT_EQ(parse_value(kState, "hidden", &value), ELMX_OK);
  EXPECT_EQ(value, "hidden");
  EXPECT_EQ(parse_value(kState, "Visible", &value), ELMX_VALUE_NOT_IN_ENUMERATION);
  EXPECT_EQ(parse_value(kState, "", &value), ELMX_VALUE_NOT_IN_ENUMERATION);
  EXPECT_EQ(parse_value(kState, "hidde", &value), ELMX_VALUE_NOT_IN_ENUMERATION);
  EXPECT_EQ(parse_value(kState, "hiddenn", &value), ELMX_VALUE_NOT_IN_ENUMERATION);
  EXPECT_EQ(parse_value(kState, std::string_view("hidden\0", 7), &value), ELMX_VALUE_NOT_IN_ENUMERATION);
}

TEST(Unions, TakeWhatAMemberTakes) {
  static const c_regex kMeasure("[0-9]+(\\.[0-9]+)?(mm|cm|in|pt|pc|pi)");
  static const simple_type kMeasureType{.pattern = &kMeasure};
  static constexpr facets kLimits{.min = 0, .max = 100, .has_min = true, .has_max = true};
  static const simple_type kNumber{.kind = value_kind::int64, .limits = &kLimits};
  static const simple_type* const kMembers[] = {&kNumber, &kMeasureType, nullptr};
  const simple_type either{.members = kMembers};
  std::string value;
  EXPECT_EQ(parse_value(either, "100", &value), ELMX_OK);
  EXPECT_EQ(parse_value(either, "1.5cm", &value), ELMX_OK);
  EXPECT_EQ(value, "1.5cm");
  EXPECT_EQ(parse_value(either, "101", &value), ELMX_INVALID_VALUE_FORMAT);
}

TEST(Lists, ItemsBetweenBlanks) {
  std::vector<std::string> texts;
  EXPECT_EQ(parse_list({}, " 1:3  5:7 ", &texts), ELMX_OK);
  EXPECT_EQ(texts, (std::vector<std::string>{"1:3", "5:7"}));
  EXPECT_EQ(parse_list({}, "", &texts), ELMX_OK);
  EXPECT_TRUE(texts.empty());
  std::vector<std::uint8_t> flags;
  EXPECT_EQ(parse_list({.kind = value_kind::boolean}, "1 false true", &flags), ELMX_OK);
  std::string out;
  append_list(out, {.kind = value_kind::boolean}, &flags);
  EXPECT_EQ(out, "true false true");
  std::vector<std::int32_t> numbers;
  EXPECT_EQ(parse_list({.kind = value_kind::int32}, "1 x", &numbers), ELMX_INVALID_VALUE_FORMAT);
  EXPECT_TRUE(equal_lists(value_kind::boolean, &flags, &flags));
}

TEST(Empties, HaveNoText) {
  c_empty value;
  EXPECT_EQ(parse(value_kind::empty, "", value), ELMX_OK);
  EXPECT_EQ(parse(value_kind::empty, "x", value), ELMX_INVALID_VALUE_FORMAT);
}

TEST(Defaults, ArePutBack) {
  std::string text = "x";
  assign_default(kState, "visible", &text);
  EXPECT_EQ(text, "visible");
  std::uint32_t number = 7;
  assign_default({.kind = value_kind::uint32}, nullptr, &number);
  EXPECT_EQ(number, 0U);
  assign_default({.kind = value_kind::uint32}, "9", &number);
  EXPECT_EQ(number, 9U);
}

TEST(Comparison, TellsNaNAndZeros) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double zero = 0.0;
  const double minus = -0.0;
  EXPECT_TRUE(equal_values(value_kind::float64, &nan, &nan));
  EXPECT_FALSE(equal_values(value_kind::float64, &nan, &zero));
  EXPECT_FALSE(equal_values(value_kind::float64, &minus, &zero));
}

TEST(Regex, Guid) {
  const c_regex guid("\\{[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\}");
  ASSERT_TRUE(guid.is_valid());
  EXPECT_TRUE(guid.matches("{01234567-89AB-CDEF-0123-456789ABCDEF}"));
  for (const char* bad : {"", "01234567-89AB-CDEF-0123-456789ABCDEF", "{01234567-89AB-CDEF-0123-456789ABCDE}",
                          "{01234567-89AB-CDEF-0123-456789ABCDEF0}", "{01234567-89ab-CDEF-0123-456789ABCDEF}",
                          "{01234567-89AB-CDEF-0123-456789ABCDEF} ", "{01234567-89AB-CDEF-0123-456789ABCDEG}"}) {
    EXPECT_FALSE(guid.matches(bad)) << bad;
  }
}

TEST(Regex, UniversalMeasure) {
  const c_regex measure("[0-9]+(\\.[0-9]+)?(mm|cm|in|pt|pc|pi)");
  ASSERT_TRUE(measure.is_valid());
  for (const char* good : {"1mm", "12.5cm", "0in", "007.700pt", "1pc", "1pi"})
    EXPECT_TRUE(measure.matches(good)) << good;
  for (const char* bad : {"", "mm", "1", "1.mm", ".5mm", "1px", "-1mm", "1mmm", "1 mm", "1.2.3mm"}) {
    EXPECT_FALSE(measure.matches(bad)) << bad;
  }
}

TEST(Regex, Extension) {
  const c_regex extension("([!$&'\\(\\)\\*\\+,:=]|(%[0-9a-fA-F][0-9a-fA-F])|[:@]|[a-zA-Z0-9\\-_~])+");
  ASSERT_TRUE(extension.is_valid());
  for (const char* good : {"xml", "a-b_c~d", "!$&'()*+,:=@", "%aF", "x%00y"})
    EXPECT_TRUE(extension.matches(good)) << good;
  for (const char* bad : {"", "a.b", "%a", "%ag", "a b", "a/b", "\xC3\xA4", "a;"})
    EXPECT_FALSE(extension.matches(bad)) << bad;
}

TEST(Regex, WhatItDoesNotKnowMatchesNothing) {
  for (const char* pattern :
       {"a*", "a.b", "a{1,2}", "a{0}", "a{", "(a", "a)", "[a", "\\d", "\\", "^a", "a$", "a{999}", "?", "]"}) {
    const c_regex regex(pattern);
    EXPECT_FALSE(regex.is_valid()) << pattern;
    EXPECT_FALSE(regex.matches("a")) << pattern;
  }
}

TEST(Regex, AlternationRepetitionAndEmptyBranches) {
  EXPECT_TRUE(c_regex("(ab|c)+d?").matches("abcabd"));
  EXPECT_FALSE(c_regex("(ab|c)+d?").matches("d"));
  EXPECT_TRUE(c_regex("(ab|c){3}").matches("abcab"));
  EXPECT_FALSE(c_regex("(ab|c){3}").matches("abc"));
  EXPECT_TRUE(c_regex("").matches(""));
  EXPECT_TRUE(c_regex("(a|)b").matches("b"));
  EXPECT_TRUE(c_regex("((a?)+b)+").matches("aabab"));
  EXPECT_TRUE(c_regex("-?[0-9]+(\\.[0-9]+)?%").matches("-12.5%"));
}

TEST(Patterns, FailWithTheirCode) {
  static const c_regex kPattern("[0-9]+");
  std::string value;
  EXPECT_EQ(parse_value({.pattern = &kPattern}, "12", &value), ELMX_OK);
  EXPECT_EQ(parse_value({.pattern = &kPattern}, "1x", &value), ELMX_NO_PATTERN_MATCHED);
}

TEST(WideText, StopsBeforeAHighSurrogateAlone) {
  EXPECT_EQ(utf8_from_wide(u"a\u00E4\u20AC\U0001F600z"), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80z");
  EXPECT_EQ(utf8_from_wide(std::u16string{u'a', 0xD83D, u'b'}), "a");
  EXPECT_EQ(utf8_from_wide(std::u16string{u'a', 0xD83D}), "a");
  EXPECT_EQ(utf8_from_wide(std::u16string{u'a', 0xDE00, u'b'}),
            "a\xED\xB8\x80"
            "b");
}

TEST(Check, LooksAtValuesAsAReaderWould) {
  const std::string text = "Visible";
  EXPECT_EQ(check_value(kState, &text), ELMX_VALUE_NOT_IN_ENUMERATION);
  constexpr facets kBounds{.max = 10, .has_max = true};
  const std::uint32_t number = 11;
  EXPECT_EQ(check_value({.kind = value_kind::uint32, .limits = &kBounds}, &number), ELMX_VALUE_GREATER_THAN_MAX);
  const c_datetime date{"tomorrow"};
  EXPECT_EQ(check_value({.kind = value_kind::datetime}, &date), ELMX_INVALID_VALUE_FORMAT);
  const std::vector<std::string> states{"visible", "x"};
  EXPECT_EQ(check_list(kState, &states), ELMX_VALUE_NOT_IN_ENUMERATION);
}

}  // namespace
}  // namespace rubrica::lmx
