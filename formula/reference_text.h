// Recognises references in formula text: cells, ranges, and both with a sheet before them. Used by the two stages of
// the compiler; owns nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "engine/address.h"
#include "formula/characters.h"
#include "formula/ptg.h"

namespace rubrica::formula {

inline constexpr int kColumnCount = 256;
inline constexpr int kRowCount = 65536;

// A cell as the compiler reads it. A final "R" in the text marks reference class.
struct CellText {
  CellAddress address;
  bool referenceClass = false;
};

struct RangeText {
  CellText first;
  CellText last;
};

// Each answers nothing for text of another form. For text of the right form whose numbers don't fit a sheet of 65536
// rows and 256 columns they throw xlerror "Column is out of range", "Row is out of range", or
// "MakeFormula::isReference: can't convert string to number" for more digits than an int holds.
std::optional<CellText> parseCell(std::u16string_view text);
std::optional<RangeText> parseRange(std::u16string_view text);

// A cell as tokens have it.
struct PlainCell {
  std::uint16_t row = 0;
  std::uint16_t columnWord = 0;
  bool found = false;
  bool marked = false;
};

// Takes a cell off the front of `text`, as nearly all formulas have them: one or two ASCII letters and up to five
// digits, within the sheet. Takes nothing where there is anything else, which may be a cell all the same. Inline, since
// most of the time that compiling takes goes into telling what operands are.
inline PlainCell takePlainCell(std::u16string_view& text) {
  constexpr std::ptrdiff_t mostLetters = 2, mostDigits = 5;
  const char16_t* at = text.data();
  const char16_t* const end = at + text.size();
  PlainCell cell;
  unsigned flags = kColumnRelative | kRowRelative;
  if (at != end && *at == u'$') {
    flags &= ~unsigned{kColumnRelative};
    ++at;
  }
  unsigned column = 0;
  const char16_t* const letters = at;
  for (; at != end && at - letters < mostLetters; ++at) {
    const unsigned letter = letterNumber(*at);
    if (letter == 0) break;
    column = column * 26 + letter;
  }
  if (column == 0 || column > kColumnCount) return cell;
  if (at != end && *at == u'$') {
    flags &= ~unsigned{kRowRelative};
    ++at;
  }
  unsigned row = 0;
  const char16_t* const digits = at;
  for (; at != end && isDigit(*at) && at - digits < mostDigits; ++at) row = row * 10 + (*at - u'0');
  if (row == 0 || row > kRowCount) return cell;
  cell.found = true;
  cell.row = static_cast<std::uint16_t>(row - 1);
  cell.columnWord = static_cast<std::uint16_t>((column - 1) | flags);
  cell.marked = at != end && *at == u'R';
  if (cell.marked) ++at;
  text.remove_prefix(static_cast<std::size_t>(at - text.data()));
  return cell;
}

// `text` cut in two at the first `separator` outside apostrophes.
struct Halves {
  std::u16string_view first;
  std::u16string_view second;
};
std::optional<Halves> cutAt(std::u16string_view text, char16_t separator);

// True for a cell, a range, either of them with a sheet, and a range between two sheets. Looks at the form alone: never
// throws, and doesn't count text that ends in the mark "R" already.
bool hasReferenceForm(std::u16string_view text);

}  // namespace rubrica::formula
