#include "host/column_letters.h"

#include <string_view>

namespace rubrica::host {
namespace {

constexpr std::u32string_view kLetters = U"ABCDEFGHIJKLMNOPQRSTUVXYZ";
constexpr char32_t kLetterOutsideTheTable = U'W';
constexpr int kTurn = 26;

// 1 for the first letter of the table, 0 for a character outside it.
int positionOf(char32_t letter) {
  return static_cast<int>(kLetters.find(letter) + 1);
}

char32_t letterAt(int position) {
  const bool isInTable = position >= 1 && position <= static_cast<int>(kLetters.size());
  return isInTable ? kLetters[static_cast<std::size_t>(position) - 1] : kLetterOutsideTheTable;
}

}  // namespace

int parseColumn(const HostField& field) {
  switch (field.type()) {
    case kind::integer:
      return field.integer();
    case kind::character: {
      const std::u32string text = field.utf32();
      if (text.size() == 1) return positionOf(text[0]);
      if (text.size() == 2) return positionOf(text[0]) * kTurn - 1;
      return 0;
    }
    default:
      return -1;
  }
}

std::u32string columnLetters(int n) {
  if (n <= 0) return {};
  if (n <= kTurn) return {letterAt(n)};
  return {letterAt(n / kTurn), letterAt(n % kTurn)};
}

}  // namespace rubrica::host
