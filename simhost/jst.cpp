#include "simhost/jst.h"

#include <charconv>
#include <cmath>
#include <optional>

#include "simhost/script_error.h"

namespace rubrica::simhost {

namespace {

constexpr int widest = 10000;

struct Format {
  enum class Side { Left, Right, Centre } side = Side::Left;
  int width = 0;
  std::optional<int> places;
  bool thousands = false;
  bool emptyZero = false;
  bool cut = false;
  char32_t pad = U' ';
  char32_t textCase = 0;
  std::optional<std::string> date;
};

int takeNumber(TextView& format, int most) {
  int number = 0;
  while (!format.empty() && format.front() >= U'0' && format.front() <= U'9') {
    number = number * 10 + static_cast<int>(format.front() - U'0');
    if (number > most) throw ScriptError("A number in a jst() format is larger than " + std::to_string(most));
    format.remove_prefix(1);
  }
  return number;
}

Format parseFormat(TextView format) {
  constexpr int mostPlaces = 15;
  Format result;
  if (format.starts_with(U'-')) result.side = Format::Side::Right;
  if (format.starts_with(U'^')) result.side = Format::Side::Centre;
  if (result.side != Format::Side::Left) format.remove_prefix(1);
  result.width = takeNumber(format, widest);
  while (!format.empty()) {
    const char32_t code = format.front();
    format.remove_prefix(1);
    switch (code) {
      case U'N':
        result.places = takeNumber(format, mostPlaces);
        break;
      case U',':
        result.thousands = true;
        break;
      case U'E':
        result.emptyZero = true;
        break;
      case U'X':
        result.cut = true;
        break;
      case U'U':
      case U'L':
      case U'C':
        result.textCase = code;
        break;
      case U'P':
        if (format.empty()) throw ScriptError("'P' in a jst() format needs the character to pad with");
        result.pad = format.front();
        format.remove_prefix(1);
        break;
      case U'D':
        if (format.starts_with(U':')) format.remove_prefix(1);
        result.date = utf8FromText(format);
        format = {};
        break;
      default:
        throw ScriptError("Unknown code '" + utf8FromText({&code, 1}) + "' in a jst() format");
    }
  }
  return result;
}

std::string withThousands(std::string digits) {
  const std::size_t first = digits.starts_with('-') ? 1 : 0;
  std::size_t at = std::min(digits.find('.'), digits.size());
  while (at > first + 3) {
    at -= 3;
    digits.insert(at, ",");
  }
  return digits;
}

Text content(const Value& value, const Format& format) {
  if (format.date) {
    return textFromUtf8(format.date->empty() ? textFromDate(value.toDate()) : formatDate(value.toDate(), *format.date));
  }
  if (value.isNull()) return {};
  if (format.emptyZero && value.toNumber() == 0) return {};
  if (format.places || format.thousands) {
    std::string digits =
        format.places ? textWithPlaces(value.toNumber(), *format.places) : textFromNumber(value.toNumber());
    return textFromUtf8(format.thousands ? withThousands(std::move(digits)) : digits);
  }
  Text text = value.toText();
  if (format.textCase == U'U') return upperCase(text);
  if (format.textCase == U'L') return lowerCase(text);
  if (format.textCase == U'C') {
    bool start = true;
    for (char32_t& c : text) {
      c = start ? upperCase(c) : lowerCase(c);
      start = isSpace(c);
    }
  }
  return text;
}

}  // namespace

std::string textWithPlaces(double value, int places) {
  char buffer[400];
  const double factor = std::pow(10.0, places);
  // What 15 digits show decides, so that 1.005 rounds as the text 1.005 does.
  double shown = value * factor;
  const std::string digits = textFromNumber(shown);
  std::from_chars(digits.data(), digits.data() + digits.size(), shown);
  const double rounded = std::round(shown) / factor;
  if (!std::isfinite(rounded) || std::fabs(rounded) >= 1e300) return textFromNumber(value);
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, rounded == 0 ? 0.0 : rounded, std::chars_format::fixed, places);
  return {buffer, end.ptr};
}

Text justified(const Value& value, TextView codes) {
  const Format format = parseFormat(codes);
  Text text = content(value, format);
  const auto width = static_cast<std::size_t>(format.width);
  if (format.cut && width > 0 && text.size() > width) text.resize(width);
  if (text.size() >= width) return text;
  const std::size_t missing = width - text.size();
  const std::size_t before = format.side == Format::Side::Left    ? 0
                             : format.side == Format::Side::Right ? missing
                                                                  : missing / 2;
  return Text(before, format.pad) + text + Text(missing - before, format.pad);
}

}  // namespace rubrica::simhost
