// Characters of formula text, the same in every locale: classes, case, decimal numbers. Used within the formula engine.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>

namespace rubrica::formula {

constexpr bool isDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}

constexpr bool isAsciiLetter(char16_t c) {
  return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

inline constexpr auto kLetterNumbers = [] {
  std::array<std::uint8_t, 128> numbers{};
  for (std::uint8_t i = 0; i < 26; ++i) numbers[u'A' + i] = numbers[u'a' + i] = static_cast<std::uint8_t>(i + 1);
  return numbers;
}();

// 1 for A and a, 26 for Z and z, 0 for what is no ASCII letter.
constexpr unsigned letterNumber(char16_t c) {
  return c < kLetterNumbers.size() ? kLetterNumbers[c] : 0u;
}

// Letters of any script of the basic plane. Marks, digits and symbols among the scripts' blocks are taken for letters:
// behind a letter they can only be part of a name.
constexpr bool isLetter(char16_t c) {
  if (c < 0x80) return isAsciiLetter(c);
  if (c < 0x100) return c == 0xAA || c == 0xB5 || c == 0xBA || (c >= 0xC0 && c != 0xD7 && c != 0xF7);
  return c < 0x2000 || (c >= 0x2C00 && c < 0x2E00) || (c >= 0x3041 && c < 0xD800) || (c >= 0xF900 && c < 0xFE00) ||
         (c >= 0xFE70 && c < 0xFEFF) || (c >= 0xFF21 && c < 0xFF3B) || (c >= 0xFF41 && c < 0xFF5B) ||
         (c >= 0xFF66 && c < 0xFFDD);
}

constexpr char16_t upperCase(char16_t c) {
  return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 0x20) : c;
}

inline void appendDecimal(std::u16string& text, unsigned value) {
  char16_t digits[std::numeric_limits<unsigned>::digits10 + 1];
  std::size_t begin = std::size(digits);
  do {
    digits[--begin] = static_cast<char16_t>(u'0' + value % 10);
    value /= 10;
  } while (value > 0);
  text.append(digits + begin, std::size(digits) - begin);
}

}  // namespace rubrica::formula
