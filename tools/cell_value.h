// What a cell holds, read through the interfaces of a sheet: its kind, its value as text, its formula. Shared by the
// tools that print, compare and copy cells.
#pragma once

#include <string>

#include "engine/book.h"

namespace rubrica::tools {

struct CellRange {
  int rowFirst = 0, rowLast = 0, colFirst = 0, colLast = 0;  // inclusive
  auto operator<=>(const CellRange&) const = default;        // NOLINT(modernize-use-nullptr): it is compared with 0
};

// "#REF!" and its like; "#UNKNOWN!" for a code without a name.
const char* errorText(ErrorType error);
// The shortest text that reads back exactly.
std::string numberText(double number);
// "B7"; "B7:C9", or "B7" for a range of one cell.
std::string addressText(int row, int col);
std::string rangeText(const CellRange& range);

// The value of a cell as a person would write it: 2.5, "tea", TRUE, #REF!, or nothing. Of a formula cell, the cached
// one.
std::string valueText(Sheet& sheet, int row, int col);
// The text of a cell's formula; empty where it has none.
std::u16string formulaText(Sheet& sheet, int row, int col);

// Rows and columns of a sheet of this file form.
int rowLimit(const std::string& form);
int colLimit(const std::string& form);

}  // namespace rubrica::tools
