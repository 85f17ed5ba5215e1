#include "source/ooxml/cell_address.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace rubrica::ooxml {

namespace {

constexpr std::uint32_t kLetters = 26;

std::uint32_t letterValue(char c) {
  if (c >= 'A' && c <= 'Z') return static_cast<std::uint32_t>(c - 'A') + 1;
  if (c >= 'a' && c <= 'z') return static_cast<std::uint32_t>(c - 'a') + 1;
  return 0;
}

}  // namespace

bool parseCellAddress(std::string_view text, std::uint32_t& row, std::uint16_t& column) {
  std::size_t at = 0;
  std::uint32_t letters = 0;
  while (at < text.size() && letterValue(text[at]) != 0) {
    letters = letters * kLetters + letterValue(text[at++]);
    if (letters > kMaxPackedColumn + 1) return false;
  }
  const bool starts_with_digit = at < text.size() && text[at] >= '1' && text[at] <= '9';
  if (letters == 0 || !starts_with_digit) return false;
  std::uint32_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data() + at, end, number);
  if (error != std::errc{} || stop != end || number - 1 > kMaxPackedRow) return false;
  row = number - 1;
  column = static_cast<std::uint16_t>(letters - 1);
  return true;
}

void appendCellAddress(std::string& text, std::uint32_t row, std::uint16_t column) {
  constexpr std::size_t kLongest = 12;  // four letters, seven digits
  std::array<char, kLongest> buffer;
  std::size_t letters = 0;
  for (std::uint32_t rest = column + 1U; rest != 0; rest = (rest - 1) / kLetters) {
    buffer[letters++] = static_cast<char>('A' + (rest - 1) % kLetters);
  }
  std::reverse(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(letters));
  const auto digits = std::to_chars(buffer.data() + letters, buffer.data() + buffer.size(), row + 1);
  text.append(buffer.data(), digits.ptr);
}

}  // namespace rubrica::ooxml
