// Where the masters of a sheet's shared formulas are. Only the master of a group has the formula's text and the range
// of the group; the other cells have the group's number. Owned by the sheet.
#pragma once

#include <cstdint>

#include <boost/unordered/unordered_flat_map.hpp>

namespace rubrica {

struct SharedFormulaGroup {
  // The master, 0-based.
  int row = 0;
  int col = 0;
  // The range of the group, 0-based and inclusive.
  int firstRow = 0;
  int lastRow = 0;
  int firstCol = 0;
  int lastCol = 0;
  // Cells of the range before this one, row by row, are known to be no members, so that handing a group over from cell
  // to cell walks the range once.
  int scanRow = 0;
  int scanCol = 0;
};

// By the number of the group, `si`.
using SharedFormulas = boost::unordered_flat_map<std::uint32_t, SharedFormulaGroup>;

}  // namespace rubrica
