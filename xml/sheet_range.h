// Ranges of cells as the parts of a package write them: "A1", "B2:D9". Free functions and one plain struct, used by all
// that keeps or moves references of a sheet.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace rubrica {

// 0-based and inclusive.
struct SheetRange {
  int rowFirst = 0, rowLast = 0, colFirst = 0, colLast = 0;

  bool holds(int row, int col) const { return rowFirst <= row && row <= rowLast && colFirst <= col && col <= colLast; }
  bool isOneCell() const { return rowFirst == rowLast && colFirst == colLast; }
  bool operator==(const SheetRange&) const = default;
};

// One address gives a range of one cell; "$" signs are passed over; corners come out in order. Nothing for other text.
std::optional<SheetRange> parseRange(std::string_view text);

// One address where both corners are the same; corners may come in any order. Throws xlerror for a corner outside the
// sheet.
std::string rangeText(const SheetRange& range);
std::string cellText(int row, int col);
// "$A$1".
std::string absoluteCellText(int row, int col);

// A range where the caller wants each part or not.
void giveRange(const SheetRange& range, int* rowFirst, int* rowLast, int* colFirst, int* colLast);

}  // namespace rubrica
