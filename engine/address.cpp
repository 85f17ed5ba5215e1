#include "engine/address.h"

#include <algorithm>

#include "engine/xlerror.h"

namespace rubrica {
namespace {

// What is wrong with a place, null when nothing is.
const char* rangeError(long long row, long long col) {
  if (row < 0 || row > kMaxRow) return "row must be in range 0-1048575";
  if (col < 0 || col > kMaxCol) return "col must be in range 0-16383";
  return nullptr;
}

template <class C>
bool takeDollar(std::basic_string_view<C>& text) {
  if (text.empty() || text.front() != C('$')) return false;
  text.remove_prefix(1);
  return true;
}

// More digits or letters than any address has; stops before the sum could overflow.
constexpr long long kTooMany = 100'000'000;

// What is wrong with the text, null when nothing is.
template <class C>
const char* parse(std::basic_string_view<C> text, CellAddress& address) {
  address.colRelative = !takeDollar(text);
  long long col = 0, row = 0;
  std::size_t letters = 0, digits = 0;
  for (; !text.empty(); text.remove_prefix(1), ++letters) {
    const bool isLower = text.front() >= C('a') && text.front() <= C('z');
    const auto c = static_cast<char16_t>(isLower ? text.front() - 32 : text.front());
    if (c < u'A' || c > u'Z') break;
    col = std::min(col * 26 + (c - u'A' + 1), kTooMany);
  }
  address.rowRelative = !takeDollar(text);
  for (; !text.empty() && text.front() >= C('0') && text.front() <= C('9'); text.remove_prefix(1), ++digits) {
    row = std::min(row * 10 + (text.front() - C('0')), kTooMany);
  }
  if (letters == 0 || digits == 0 || !text.empty()) return "invalid cell address";
  if (const char* error = rangeError(row - 1, col - 1)) return error;
  address.row = static_cast<int>(row - 1);
  address.col = static_cast<int>(col - 1);
  return nullptr;
}

}  // namespace

std::u16string columnLetters(int col) {
  std::u16string letters;
  for (int rest = col; rest >= 0; rest = rest / 26 - 1) letters.push_back(static_cast<char16_t>(u'A' + rest % 26));
  std::reverse(letters.begin(), letters.end());
  return letters;
}

std::u16string addressText(const CellAddress& address) {
  if (const char* error = rangeError(address.row, address.col)) throw xlerror(error);
  std::u16string text;
  if (!address.colRelative) text += u'$';
  text += columnLetters(address.col);
  if (!address.rowRelative) text += u'$';
  for (const char digit : std::to_string(address.row + 1)) text += static_cast<char16_t>(digit);
  return text;
}

CellAddress parseAddress(std::u16string_view text) {
  CellAddress address;
  if (const char* error = parse(text, address)) throw xlerror(error);
  return address;
}

std::optional<CellAddress> addressIn(std::string_view text) {
  CellAddress address;
  return parse(text, address) == nullptr ? std::optional(address) : std::nullopt;
}

}  // namespace rubrica
