#include <algorithm>
#include <iterator>
#include <utf8.h>

#include "platform/text.h"

namespace rubrica::platform {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isLead(char16_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool isTrail(char16_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

// Most text of workbooks is ASCII: these units need no conversion but a change of width.
std::size_t asciiPrefix(std::u16string_view text) {
  return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), [](char16_t c) { return c > 0x7F; }) -
                                  text.begin());
}

std::size_t asciiPrefix(std::string_view text) {
  return static_cast<std::size_t>(
      std::find_if(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) > 0x7F; }) -
      text.begin());
}

std::string narrowed(std::u16string_view ascii) {
  std::string out(ascii.size(), '\0');
  std::transform(ascii.begin(), ascii.end(), out.begin(), [](char16_t c) { return static_cast<char>(c); });
  return out;
}

}  // namespace

std::string utf8FromUtf16(std::u16string_view text) {
  const std::size_t ascii = asciiPrefix(text);
  std::string out = narrowed(text.substr(0, ascii));
  if (ascii != text.size()) utf8::utf16to8(text.begin() + ascii, text.end(), std::back_inserter(out));
  return out;
}

std::u16string utf16FromUtf8(std::string_view text) {
  const std::size_t ascii = asciiPrefix(text);
  std::u16string out(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(ascii));
  if (ascii != text.size()) utf8::utf8to16(text.begin() + ascii, text.end(), std::back_inserter(out));
  return out;
}

std::string utf8FromUtf16Lossy(std::u16string_view text) {
  const std::size_t ascii = asciiPrefix(text);
  std::string out = narrowed(text.substr(0, ascii));
  for (std::size_t i = ascii; i < text.size(); ++i) {
    char32_t point = text[i];
    if (isLead(text[i]) && i + 1 < text.size() && isTrail(text[i + 1])) {
      point = 0x10000 + ((point - 0xD800) << 10) + (text[i + 1] - 0xDC00U);
      ++i;
    } else if (isLead(text[i]) || isTrail(text[i])) {
      point = kReplacement;
    }
    utf8::append(point, std::back_inserter(out));
  }
  return out;
}

std::u16string utf16FromUtf8Lossy(std::string_view text) {
  const std::size_t ascii = asciiPrefix(text);
  if (ascii == text.size()) return {text.begin(), text.end()};
  std::string wellFormed;
  wellFormed.reserve(text.size());
  utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(wellFormed), kReplacement);
  return utf16FromUtf8(wellFormed);
}

}  // namespace rubrica::platform
