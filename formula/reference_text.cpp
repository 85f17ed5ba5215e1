#include "formula/reference_text.h"

#include <cstdint>
#include <limits>

#include "engine/xlerror.h"
#include "formula/characters.h"
#include "formula/ptg.h"

namespace rubrica::formula {
namespace {

// The pieces of a text of the form $A$1R.
struct CellParts {
  std::u16string_view letters;
  std::u16string_view digits;
  bool columnAbsolute = false;
  bool rowAbsolute = false;
  bool marked = false;
};

bool take(std::u16string_view& text, char16_t c) {
  if (text.empty() || text[0] != c) return false;
  text.remove_prefix(1);
  return true;
}

template <typename Predicate>
std::u16string_view takeWhile(std::u16string_view& text, Predicate predicate) {
  std::size_t length = 0;
  while (length < text.size() && predicate(text[length])) ++length;
  const std::u16string_view taken = text.substr(0, length);
  text.remove_prefix(length);
  return taken;
}

std::optional<CellParts> splitCell(std::u16string_view text) {
  CellParts parts;
  parts.columnAbsolute = take(text, u'$');
  parts.letters = takeWhile(text, isLetter);
  if (parts.letters.empty()) return std::nullopt;
  parts.rowAbsolute = take(text, u'$');
  parts.digits = takeWhile(text, isDigit);
  if (parts.digits.empty()) return std::nullopt;
  parts.marked = take(text, u'R');
  if (!text.empty()) return std::nullopt;
  return parts;
}

// Letters beyond A to Z have the form of a column too, but name none.
int columnFromLetters(std::u16string_view letters) {
  int sum = 0;
  for (const char16_t letter : letters) {
    sum = sum * 26 + (upperCase(letter) - u'A' + 1);
    if (sum > kColumnCount || !isAsciiLetter(letter)) throw xlerror("Column is out of range");
  }
  return sum - 1;
}

int rowFromDigits(std::u16string_view digits) {
  std::int64_t value = 0;
  for (const char16_t digit : digits) {
    value = value * 10 + (digit - u'0');
    if (value > std::numeric_limits<std::int32_t>::max()) {
      throw xlerror("MakeFormula::isReference: can't convert string to number");
    }
  }
  if (value < 1 || value > kRowCount) throw xlerror("Row is out of range");
  return static_cast<int>(value - 1);
}

bool hasCellForm(std::u16string_view text, bool mayBeMarked) {
  const auto parts = splitCell(text);
  return parts && (mayBeMarked || !parts->marked);
}

bool hasRangeForm(std::u16string_view text) {
  const auto halves = cutAt(text, u':');
  return halves && hasCellForm(halves->first, true) && hasCellForm(halves->second, false);
}

bool hasSheetCellForm(std::u16string_view text, bool mayBeMarked) {
  const auto halves = cutAt(text, u'!');
  return halves && hasCellForm(halves->second, mayBeMarked);
}

}  // namespace

std::optional<CellText> parseCell(std::u16string_view text) {
  std::u16string_view rest = text;
  if (const PlainCell plain = takePlainCell(rest); plain.found && rest.empty()) {
    return CellText{addressFromWords(plain.row, plain.columnWord), plain.marked};
  }
  const auto parts = splitCell(text);
  if (!parts) return std::nullopt;
  CellText cell;
  cell.address.col = columnFromLetters(parts->letters);
  cell.address.row = rowFromDigits(parts->digits);
  cell.address.colRelative = !parts->columnAbsolute;
  cell.address.rowRelative = !parts->rowAbsolute;
  cell.referenceClass = parts->marked;
  return cell;
}

std::optional<RangeText> parseRange(std::u16string_view text) {
  const auto halves = cutAt(text, u':');
  if (!halves) return std::nullopt;
  const auto first = parseCell(halves->first);
  if (!first) return std::nullopt;
  const auto last = parseCell(halves->second);
  if (!last) return std::nullopt;
  return RangeText{*first, *last};
}

std::optional<Halves> cutAt(std::u16string_view text, char16_t separator) {
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'\'') quoted = !quoted;
    if (text[i] == separator && !quoted) return Halves{text.substr(0, i), text.substr(i + 1)};
  }
  return std::nullopt;
}

bool hasReferenceForm(std::u16string_view text) {
  if (hasCellForm(text, false) || hasRangeForm(text) || hasSheetCellForm(text, false)) return true;
  if (const auto sheet = cutAt(text, u'!'); sheet && hasRangeForm(sheet->second)) return true;
  const auto halves = cutAt(text, u':');
  return halves && hasSheetCellForm(halves->first, true) && hasSheetCellForm(halves->second, false);
}

}  // namespace rubrica::formula
