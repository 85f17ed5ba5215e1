#include "xml/part_encoding.h"

#include <algorithm>

#include "lmx/text.h"
#include "platform/text.h"

namespace rubrica {
namespace {

constexpr std::string_view kBigEndianMark = "\xFE\xFF", kLittleEndianMark = "\xFF\xFE";

bool opensMarkup(char c) {
  return c == '<' || lmx::is_space(static_cast<unsigned char>(c));
}

std::u16string unitsOf(std::string_view bytes, bool isBigEndian) {
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    const unsigned first = static_cast<unsigned char>(bytes[2 * i]),
                   second = static_cast<unsigned char>(bytes[2 * i + 1]);
    units[i] = static_cast<char16_t>(isBigEndian ? first << 8 | second : second << 8 | first);
  }
  return units;
}

bool isUtf16Name(std::string_view name) {
  constexpr std::string_view kName = "utf-16";
  return std::equal(name.begin(), name.end(), kName.begin(), kName.end(),
                    [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; });
}

// The encoding that a declaration states becomes UTF-8; false where it states another than UTF-16.
bool restateEncoding(std::string& text) {
  constexpr std::string_view kAttribute = "encoding";
  if (!text.starts_with("<?xml")) return true;
  const std::size_t end = text.find("?>"), attribute = text.find(kAttribute);
  if (end == text.npos || attribute >= end) return true;
  const std::size_t open = text.find_first_of("\"'", attribute);
  const std::size_t close = open >= end ? text.npos : text.find(text[open], open + 1);
  if (close >= end) return false;
  if (!isUtf16Name(std::string_view(text).substr(open + 1, close - open - 1))) return false;
  text.replace(open + 1, close - open - 1, "UTF-8");
  return true;
}

}  // namespace

bool looksLikeUtf16(std::string_view part) {
  if (part.size() < 2) return false;
  return part.starts_with(kBigEndianMark) || part.starts_with(kLittleEndianMark) ||
         (part[0] == '\0' && opensMarkup(part[1])) || (part[1] == '\0' && opensMarkup(part[0]));
}

std::optional<std::string> utf8OfUtf16(std::string_view part) {
  if (!looksLikeUtf16(part) || part.size() % 2 != 0) return std::nullopt;
  const bool isBigEndian = part[0] == '\0' || part.starts_with(kBigEndianMark);
  if (part.starts_with(kBigEndianMark) || part.starts_with(kLittleEndianMark)) part.remove_prefix(2);
  const std::u16string units = unitsOf(part, isBigEndian);
  std::string text = platform::utf8FromUtf16Lossy(units);
  // Halves of a surrogate pair are the only units that don't come back as they were.
  if (platform::utf16FromUtf8Lossy(text) != units || !restateEncoding(text)) return std::nullopt;
  return text;
}

}  // namespace rubrica
