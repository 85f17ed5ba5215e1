#include "engine/address.h"

#include <algorithm>

#include "engine/xlerror.h"

namespace rubrica {
namespace {

void checkRange(long long row, long long col) {
  if (row < 0 || row > kMaxRow) throw xlerror("row must be in range 0-1048575");
  if (col < 0 || col > kMaxCol) throw xlerror("col must be in range 0-16383");
}

bool takeDollar(std::u16string_view& text) {
  if (text.empty() || text.front() != u'$') return false;
  text.remove_prefix(1);
  return true;
}

// More digits or letters than any address has; stops before the sum could overflow.
constexpr long long kTooMany = 100'000'000;

}  // namespace

std::u16string columnLetters(int col) {
  std::u16string letters;
  for (int rest = col; rest >= 0; rest = rest / 26 - 1) letters.push_back(static_cast<char16_t>(u'A' + rest % 26));
  std::reverse(letters.begin(), letters.end());
  return letters;
}

std::u16string addressText(const CellAddress& address) {
  checkRange(address.row, address.col);
  std::u16string text;
  if (!address.colRelative) text += u'$';
  text += columnLetters(address.col);
  if (!address.rowRelative) text += u'$';
  for (const char digit : std::to_string(address.row + 1)) text += static_cast<char16_t>(digit);
  return text;
}

CellAddress parseAddress(std::u16string_view text) {
  CellAddress address;
  address.colRelative = !takeDollar(text);
  long long col = 0, row = 0;
  std::size_t letters = 0, digits = 0;
  for (; !text.empty(); text.remove_prefix(1), ++letters) {
    const char16_t c =
        text.front() >= u'a' && text.front() <= u'z' ? static_cast<char16_t>(text.front() - 32) : text.front();
    if (c < u'A' || c > u'Z') break;
    col = std::min(col * 26 + (c - u'A' + 1), kTooMany);
  }
  address.rowRelative = !takeDollar(text);
  for (; !text.empty() && text.front() >= u'0' && text.front() <= u'9'; text.remove_prefix(1), ++digits) {
    row = std::min(row * 10 + (text.front() - u'0'), kTooMany);
  }
  if (letters == 0 || digits == 0 || !text.empty()) throw xlerror("invalid cell address");
  checkRange(row - 1, col - 1);
  address.row = static_cast<int>(row - 1);
  address.col = static_cast<int>(col - 1);
  return address;
}

}  // namespace rubrica
