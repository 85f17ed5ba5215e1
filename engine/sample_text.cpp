#include "engine/sample_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>

namespace rubrica {
namespace {

constexpr std::size_t kBufferSize = 1000;  // characters; the longest double takes some 350
constexpr std::size_t kWholeRoom = 12;     // characters after which a whole number is cut
constexpr std::size_t kCurrencyRoom = 9;   // blanks for a currency symbol
constexpr int kMaxDecimals = 30;
constexpr int kPercent = 100;

std::u16string widened(const char* first, const char* last) {
  return std::u16string(first, last);
}

// What each built-in id shows.
enum class Form {
  literal,  // the text alone
  general,
  whole,       // a whole number, cut
  wholeAnd,    // a whole number, then the text
  hundredths,  // two decimals
  percent,     // two decimals of a hundred times the value
  scientific
};
enum class Room { none, groups, groupsAndCurrency };

struct Sample {
  int id;
  Form form;
  Room room = Room::none;
  std::u16string_view text = {};
};

constexpr Sample kSamples[] = {{0, Form::general},
                               {1, Form::whole},
                               {2, Form::hundredths},
                               {3, Form::whole, Room::groups},
                               {4, Form::hundredths, Room::groups},
                               {5, Form::whole, Room::groupsAndCurrency},
                               {6, Form::whole, Room::groupsAndCurrency},
                               {7, Form::hundredths, Room::groupsAndCurrency},
                               {8, Form::hundredths, Room::groupsAndCurrency},
                               {9, Form::wholeAnd, Room::none, u"00%"},
                               {10, Form::percent},
                               {11, Form::scientific},
                               {12, Form::wholeAnd, Room::none, u" 0/0"},
                               {13, Form::wholeAnd, Room::none, u" 00/00"},
                               {14, Form::literal, Room::none, u"00.00.0000"},
                               {15, Form::literal, Room::none, u"00.mmm.00"},
                               {16, Form::literal, Room::none, u"00.mmm"},
                               {17, Form::literal, Room::none, u"mmm.00"},
                               {18, Form::literal, Room::none, u"00:00 AM"},
                               {19, Form::literal, Room::none, u"00:00:00 AM"},
                               {20, Form::literal, Room::none, u"00:00"},
                               {21, Form::literal, Room::none, u"00:00:00"},
                               {22, Form::literal, Room::none, u"00.00.0000 00:00"},
                               {37, Form::whole, Room::groups},
                               {38, Form::whole, Room::groups},
                               {39, Form::hundredths, Room::groups},
                               {40, Form::hundredths, Room::groups},
                               {41, Form::whole, Room::groupsAndCurrency},
                               {42, Form::whole, Room::groupsAndCurrency},
                               {43, Form::hundredths, Room::groupsAndCurrency},
                               {44, Form::hundredths, Room::groupsAndCurrency},
                               {45, Form::literal, Room::none, u"00:00"},
                               {46, Form::literal, Room::none, u"0000000:00:00"},
                               {47, Form::literal, Room::none, u"00:00,0"},
                               {48, Form::literal, Room::none, u"00,0E+0"},
                               {49, Form::wholeAnd, Room::none, u""}};

std::u16string printed(double value, const Sample& sample) {
  switch (sample.form) {
    case Form::literal:
      return std::u16string(sample.text);
    case Form::general:
      return generalDigits(value);
    case Form::whole:
      return wholeDigits(value).substr(0, kWholeRoom);
    case Form::wholeAnd:
      return wholeDigits(value).append(sample.text);
    case Form::hundredths:
      return fixedDigits(value, 2);
    case Form::percent:
      return fixedDigits(value * kPercent, 2) + u'%';
    case Form::scientific:
      return scientificDigits(value, 2);
  }
  return {};
}

}  // namespace

std::u16string generalDigits(double value) {
  std::array<char, kBufferSize> buffer;
  const auto end = std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::general, 10).ptr;
  return widened(buffer.begin(), end);
}

// A value past 64 bits gives the smallest integer, as the conversion of the processor does.
std::u16string wholeDigits(double value) {
  constexpr double kEnd = 9223372036854775808.0;  // 2 to the 63rd
  const bool fits = value >= -kEnd && value < kEnd;
  const std::int64_t whole = fits ? static_cast<std::int64_t>(value) : std::numeric_limits<std::int64_t>::min();
  const std::string digits = std::to_string(whole);
  return {digits.begin(), digits.end()};
}

std::u16string fixedDigits(double value, int decimals) {
  std::array<char, kBufferSize> buffer;
  const int places = std::clamp(decimals, 0, kMaxDecimals);
  const auto end = std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::fixed, places).ptr;
  return widened(buffer.begin(), end);
}

std::u16string scientificDigits(double value, int decimals) {
  std::array<char, kBufferSize> buffer;
  const int places = std::clamp(decimals, 0, kMaxDecimals);
  const auto end = std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::scientific, places).ptr;
  std::replace(buffer.begin(), end, 'e', 'E');
  return widened(buffer.begin(), end);
}

std::u16string sampleText(double value, int numFormat, std::u16string_view customText) {
  const auto sample =
      std::find_if(std::begin(kSamples), std::end(kSamples), [&](const Sample& s) { return s.id == numFormat; });
  if (sample == std::end(kSamples)) return customText.empty() ? generalDigits(value) : customSample(value, customText);
  std::u16string text = printed(value, *sample);
  if (sample->room != Room::none) {
    const std::size_t groups = text.size() < 3 ? 0 : (text.size() - 3) / 3;
    text.append(groups, u' ');
  }
  if (sample->room == Room::groupsAndCurrency) text.append(kCurrencyRoom, u' ');
  return text;
}

}  // namespace rubrica
