// A range of cells as records hold it (Ref8): four 16-bit words, inclusive.
#pragma once

#include <cstdint>

namespace rubrica {

struct CellRange {
  std::uint16_t rowFirst = 0, rowLast = 0, colFirst = 0, colLast = 0;

  static CellRange of(int rowFirst, int rowLast, int colFirst, int colLast) {
    return {static_cast<std::uint16_t>(rowFirst), static_cast<std::uint16_t>(rowLast),
            static_cast<std::uint16_t>(colFirst), static_cast<std::uint16_t>(colLast)};
  }
  bool holds(int row, int col) const { return rowFirst <= row && row <= rowLast && colFirst <= col && col <= colLast; }
  bool operator==(const CellRange&) const = default;
};
static_assert(sizeof(CellRange) == 8);

}  // namespace rubrica
