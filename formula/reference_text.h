// Recognises references in formula text: cells, ranges, and both with a sheet before them. Used by the two stages of
// the compiler; owns nothing.
#pragma once

#include <optional>
#include <string_view>

#include "engine/address.h"

namespace rubrica::formula {

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
