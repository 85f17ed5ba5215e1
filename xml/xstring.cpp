#include "xml/xstring.h"

#include <algorithm>
#include <optional>
#include <type_traits>

#include "lmx/text.h"
#include "platform/text.h"

namespace rubrica {
namespace {

constexpr std::size_t kEscapeLength = 7;  // "_xHHHH_"
constexpr char kHexDigits[] = "0123456789ABCDEF";
constexpr char16_t kReplacement = 0xFFFD;

int hexValue(unsigned c) {
  if (c >= '0' && c <= '9') return static_cast<int>(c - '0');
  if (c >= 'A' && c <= 'F') return static_cast<int>(c - 'A') + 10;
  if (c >= 'a' && c <= 'f') return static_cast<int>(c - 'a') + 10;
  return -1;
}

// The unit that an escape at the beginning of `text` stands for.
template <class View>
std::optional<char16_t> escapeAt(View text) {
  if (text.size() < kEscapeLength || text[0] != '_' || text[1] != 'x' || text[kEscapeLength - 1] != '_') {
    return std::nullopt;
  }
  unsigned unit = 0;
  for (std::size_t i = 2; i < kEscapeLength - 1; ++i) {
    const int digit = hexValue(static_cast<unsigned>(text[i]));
    if (digit < 0) return std::nullopt;
    unit = unit << 4U | static_cast<unsigned>(digit);
  }
  return static_cast<char16_t>(unit);
}

void appendEscape(std::string& out, unsigned unit) {
  out.append("_x");
  for (const unsigned shift : {12U, 8U, 4U, 0U}) out.push_back(kHexDigits[unit >> shift & 0xFU]);
  out.push_back('_');
}

bool isEscaped(char16_t unit) {
  return (unit < u' ' && unit != u'\t' && unit != u'\n') || unit == 0xFFFE || unit == 0xFFFF;
}

// Whether a text is the same in both forms. Without a way out of the loop, so that it is done many units at a time.
template <class View>
bool isSameStored(View text) {
  unsigned other = 0;
  for (const auto c : text) {
    const auto unit = static_cast<std::make_unsigned_t<decltype(c)>>(c);
    other |=
        static_cast<unsigned>(unit < ' ') | static_cast<unsigned>(unit > 0x7E) | static_cast<unsigned>(unit == '_');
  }
  return other == 0;
}

}  // namespace

void toXstring(std::u16string_view text, std::string& out) {
  constexpr std::size_t kMostBytes = 3;  // of one unit that isn't escaped
  if (isSameStored(text)) {
    out.resize(text.size());
    std::transform(text.begin(), text.end(), out.begin(), [](char16_t unit) { return static_cast<char>(unit); });
    return;
  }
  out.clear();
  out.reserve(text.size() * kMostBytes);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (isEscaped(unit) || (unit == u'_' && escapeAt(text.substr(i)))) {
      appendEscape(out, unit);
    } else if (unit < 0x80) {
      out.push_back(static_cast<char>(unit));
    } else if (lmx::is_high_surrogate(unit) && i + 1 < text.size() && lmx::is_low_surrogate(text[i + 1])) {
      lmx::append_utf8(out, lmx::join_surrogates(unit, text[++i]));
    } else if (lmx::is_high_surrogate(unit) || lmx::is_low_surrogate(unit)) {
      lmx::append_utf8(out, kReplacement);
    } else {
      lmx::append_utf8(out, unit);
    }
  }
}

std::string toXstring(std::u16string_view text) {
  std::string stored;
  toXstring(text, stored);
  return stored;
}

void fromXstring(std::string_view stored, std::u16string& out) {
  if (isSameStored(stored)) {
    out.resize(stored.size());
    std::transform(stored.begin(), stored.end(), out.begin(), [](char c) { return static_cast<char16_t>(c); });
    return;
  }
  out.clear();
  std::size_t begin = 0;
  for (std::size_t at = stored.find("_x"); at != stored.npos; at = stored.find("_x", at)) {
    const auto unit = escapeAt(stored.substr(at));
    if (!unit) {
      ++at;
      continue;
    }
    out += platform::utf16FromUtf8Lossy(stored.substr(begin, at - begin));
    out.push_back(*unit);
    at += kEscapeLength;
    begin = at;
  }
  out += platform::utf16FromUtf8Lossy(stored.substr(begin));
}

std::u16string fromXstring(std::string_view stored) {
  std::u16string text;
  fromXstring(stored, text);
  return text;
}

}  // namespace rubrica
