#include "xml/sheet_range.h"

#include <algorithm>
#include <utility>

#include "engine/address.h"
#include "engine/xlerror.h"
#include "source/ooxml/cell_address.h"

namespace rubrica {

std::optional<SheetRange> parseRange(std::string_view text) {
  const std::size_t colon = text.find(':');
  const auto first = addressIn(text.substr(0, colon));
  const auto last = colon == text.npos ? first : addressIn(text.substr(colon + 1));
  if (!first || !last) return std::nullopt;
  SheetRange range{first->row, last->row, first->col, last->col};
  if (range.rowLast < range.rowFirst) std::swap(range.rowFirst, range.rowLast);
  if (range.colLast < range.colFirst) std::swap(range.colFirst, range.colLast);
  return range;
}

std::string cellText(int row, int col) {
  if (row < 0 || row > kMaxRow) throw xlerror("row must be in range 0-1048575");
  if (col < 0 || col > kMaxCol) throw xlerror("col must be in range 0-16383");
  std::string text;
  ooxml::appendCellAddress(text, static_cast<std::uint32_t>(row), static_cast<std::uint16_t>(col));
  return text;
}

std::string rangeText(const SheetRange& range) {
  std::string text = cellText(std::min(range.rowFirst, range.rowLast), std::min(range.colFirst, range.colLast));
  if (range.rowFirst == range.rowLast && range.colFirst == range.colLast) return text;
  return text + ':' + cellText(std::max(range.rowFirst, range.rowLast), std::max(range.colFirst, range.colLast));
}

std::string absoluteCellText(int row, int col) {
  std::string text = cellText(row, col);
  text.insert(text.find_first_of("0123456789"), 1, '$');
  return '$' + text;
}

void giveRange(const SheetRange& range, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
  if (rowFirst != nullptr) *rowFirst = range.rowFirst;
  if (rowLast != nullptr) *rowLast = range.rowLast;
  if (colFirst != nullptr) *colFirst = range.colFirst;
  if (colLast != nullptr) *colLast = range.colLast;
}

}  // namespace rubrica
