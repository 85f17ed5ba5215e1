// Single text forms, apart from any type: numbers, dates, binaries, escaped text.
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "lmx/text.h"
#include "lmx/value.h"

namespace rubrica::lmx {

namespace {

constexpr int kDoublePrecision = 14;     // significant digits of a written double
constexpr std::size_t kNumberSize = 40;  // room for any of the forms below

template <class T>
void append_chars(std::string& out, T value) {
  char buffer[kNumberSize];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value);
  out.append(buffer, end.ptr);
}

std::string_view take_digits(std::string_view& text) {
  std::size_t count = 0;
  while (count < text.size() && is_digit(text[count])) ++count;
  const std::string_view digits = text.substr(0, count);
  text.remove_prefix(count);
  return digits;
}

bool take(std::string_view& text, char wanted) {
  if (text.empty() || text.front() != wanted) return false;
  text.remove_prefix(1);
  return true;
}

bool take_sign(std::string_view& text) {
  const bool minus = take(text, '-');
  if (!minus) take(text, '+');
  return minus;
}

// Where the first digit that is not 0 stands, as a power of ten, so that a number out of range is known to be huge or
// tiny.
bool is_huge(std::string_view whole, std::string_view fraction, std::string_view exponent, bool minus) {
  long power = 0;
  for (const char c : exponent) power = power < 100000 ? power * 10 + (c - '0') : power;
  if (minus) power = -power;
  const std::size_t first = whole.find_first_not_of('0');
  if (first != std::string_view::npos) return power + static_cast<long>(whole.size() - first) > 0;
  const std::size_t in_fraction = fraction.find_first_not_of('0');
  return in_fraction != std::string_view::npos && power > static_cast<long>(in_fraction);
}

// Whole numbers without a sign that a double holds exactly.
bool parse_whole(std::string_view text, double& value) {
  if (text.empty() || text.size() > std::numeric_limits<double>::digits10) return false;
  std::uint64_t whole = 0;
  for (const char c : text) {
    if (!is_digit(c)) return false;
    whole = whole * 10 + static_cast<std::uint64_t>(c - '0');
  }
  value = static_cast<double>(whole);
  return true;
}

constexpr std::string_view kBase64 = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<std::int16_t, 256> make_base64_values() {
  std::array<std::int16_t, 256> values{};
  for (auto& value : values) value = -1;
  for (std::size_t i = 0; i < kBase64.size(); ++i) {
    values[static_cast<unsigned char>(kBase64[i])] = static_cast<std::int16_t>(i);
  }
  return values;
}

constexpr std::array<std::int16_t, 256> kBase64Values = make_base64_values();

int hex_digit(char c) {
  if (is_digit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

const char* escape_of(char c) {
  switch (c) {
    case '"':
      return "&quot;";
    case '\'':
      return "&apos;";
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    default:
      return nullptr;
  }
}

constexpr std::array<bool, 256> make_specials() {
  std::array<bool, 256> specials{};
  for (const char c : std::string_view("\"'&<>")) specials[static_cast<unsigned char>(c)] = true;
  return specials;
}

constexpr std::array<bool, 256> kSpecials = make_specials();

}  // namespace

bool parse_double(std::string_view text, double& value) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  if (parse_whole(text, value)) return true;
  if (text == "INF" || text == "-INF") {
    value = text.front() == '-' ? -kInfinity : kInfinity;
    return true;
  }
  if (text == "NaN") {
    value = std::numeric_limits<double>::quiet_NaN();
    return true;
  }
  std::string_view rest = text;
  const bool minus = take_sign(rest);
  const std::string_view number = rest;  // without the sign, as std::from_chars wants it
  const std::string_view whole = take_digits(rest);
  if (whole.empty()) return false;
  std::string_view fraction;
  if (take(rest, '.')) {
    fraction = take_digits(rest);
    if (fraction.empty()) return false;
  }
  std::string_view exponent;
  bool exponent_minus = false;
  if (!rest.empty() && (rest.front() == 'e' || rest.front() == 'E')) {
    rest.remove_prefix(1);
    exponent_minus = take_sign(rest);
    exponent = take_digits(rest);
    if (exponent.empty()) return false;
  }
  if (!rest.empty()) return false;
  double size = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), size);
  if (result.ec == std::errc::result_out_of_range) {
    size = is_huge(whole, fraction, exponent, exponent_minus) ? kInfinity : 0.0;
  }
  value = minus ? -size : size;
  return true;
}

// Year, then fields of two digits as far as they go, then a zone. Months and days are not counted: a date that does not
// exist is kept like any other text.
bool is_datetime(std::string_view text) {
  constexpr std::size_t kYearDigits = 4;
  const auto two_digits = [&text] { return take_digits(text).size() == 2; };
  if (take_digits(text).size() < kYearDigits) return false;
  if (take(text, '-')) {
    if (!two_digits()) return false;
    if (take(text, '-') && !two_digits()) return false;
  }
  if (take(text, 'T')) {
    if (!two_digits() || !take(text, ':') || !two_digits()) return false;
    if (take(text, ':')) {
      if (!two_digits()) return false;
      if (take(text, '.') && take_digits(text).empty()) return false;
    }
  }
  if (text.empty() || text == "Z") return true;
  if (!take(text, '+') && !take(text, '-')) return false;
  return two_digits() && take(text, ':') && two_digits() && text.empty();
}

bool parse_base64(std::string_view text, c_binary& value) {
  value.bytes.clear();
  value.bytes.reserve(text.size() / 4 * 3);
  std::uint32_t bits = 0;
  std::size_t count = 0;
  std::size_t padding = 0;
  for (const char c : text) {
    if (is_space(c)) continue;
    const int digit = kBase64Values[static_cast<unsigned char>(c)];
    if (c == '=') {
      ++padding;
    } else if (digit < 0 || padding > 0) {
      return false;
    }
    bits = bits << 6U | static_cast<std::uint32_t>(digit < 0 ? 0 : digit);
    if (++count % 4 == 0) {
      for (unsigned shift = 24; shift > 0;) value.bytes.push_back(static_cast<std::uint8_t>(bits >> (shift -= 8)));
      bits = 0;
    }
  }
  if (count % 4 != 0 || padding > 2) return false;
  for (; padding > 0; --padding) value.bytes.pop_back();
  return true;
}

bool parse_hex(std::string_view text, c_binary& value) {
  value.bytes.clear();
  if (text.size() % 2 != 0) return false;
  value.bytes.reserve(text.size() / 2);
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const int high = hex_digit(text[i]);
    const int low = hex_digit(text[i + 1]);
    if (high < 0 || low < 0) return false;
    value.bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
  }
  return true;
}

void append_base64(std::string& out, const c_binary& value) {
  const std::vector<std::uint8_t>& bytes = value.bytes;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t left = bytes.size() - i;
    const std::uint32_t bits = static_cast<std::uint32_t>(bytes[i] << 16) |
                               static_cast<std::uint32_t>(left > 1 ? bytes[i + 1] << 8 : 0) |
                               static_cast<std::uint32_t>(left > 2 ? bytes[i + 2] : 0);
    out.push_back(kBase64[bits >> 18U]);
    out.push_back(kBase64[bits >> 12U & 63U]);
    out.push_back(left > 1 ? kBase64[bits >> 6U & 63U] : '=');
    out.push_back(left > 2 ? kBase64[bits & 63U] : '=');
  }
}

void append_hex(std::string& out, const c_binary& value) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  for (const std::uint8_t byte : value.bytes) {
    out.push_back(kDigits[byte >> 4]);
    out.push_back(kDigits[byte & 15]);
  }
}

void append_number(std::string& out, std::int64_t value) {
  append_chars(out, value);
}
void append_number(std::string& out, std::uint64_t value) {
  append_chars(out, value);
}

void append_number(std::string& out, double value) {
  if (std::isnan(value)) {
    out.append("NaN");
  } else if (std::isinf(value)) {
    out.append(value < 0 ? "-INF" : "INF");
  } else if (value == 0) {
    out.append(std::signbit(value) ? "-0.0" : "0.0");
  } else {
    char buffer[kNumberSize];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, kDoublePrecision);
    out.append(buffer, end.ptr);
  }
}

void append_escaped(std::string& out, std::string_view text) {
  std::size_t begin = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (!kSpecials[static_cast<unsigned char>(c)]) continue;
    const char* escape = escape_of(c);
    if (c == '>' && i >= 2 && text[i - 1] == ']') escape = "&gt;";
    if (escape == nullptr) continue;
    out.append(text, begin, i - begin);
    out.append(escape);
    begin = i + 1;
  }
  out.append(text, begin);
}

void append_escaped(std::string& out, std::u16string_view wide) {
  for (std::size_t i = 0; i < wide.size(); ++i) {
    std::uint32_t code_point = wide[i];
    if (code_point < 128) {
      const char c = static_cast<char>(code_point);
      const char* escape = escape_of(c);
      if (c == '>' && i >= 2 && wide[i - 1] == u']') escape = "&gt;";
      if (escape != nullptr) {
        out.append(escape);
      } else {
        out.push_back(c);
      }
      continue;
    }
    if (is_high_surrogate(code_point)) {
      if (i + 1 == wide.size() || !is_low_surrogate(wide[i + 1])) return;
      code_point = join_surrogates(code_point, wide[++i]);
    }
    append_utf8(out, code_point);
  }
}

}  // namespace rubrica::lmx
