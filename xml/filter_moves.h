// Where inserted and removed rows and columns leave the filter of a sheet or table: its range, its columns and its
// sort.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "engine/line_move.h"
#include "xml/sheet_range.h"

namespace rubrica {

// The text of a range after the move; nothing when none of it is left. Text that is no range stays as it is.
inline std::optional<std::string> movedRange(const std::string& text, const LineMove& move) {
  auto range = parseRange(text);
  if (!range) return text;
  const SheetRange before = *range;
  if (!move.apply(*range)) return std::nullopt;
  return *range == before ? text : rangeText(*range);
}

// The sort state with its conditions; false when nothing of its range is left.
template <class SortState>
bool moveSort(SortState& state, const LineMove& move) {
  const auto moved = movedRange(state.get_ref(), move);
  if (!moved) return false;
  state.set_ref(*moved);
  for (std::size_t i = state.size_sortCondition(); i-- > 0;) {
    auto& condition = state.get_sortCondition(i);
    if (const auto ref = movedRange(condition.get_ref(), move)) {
      condition.set_ref(*ref);
    } else {
      state.erase_sortCondition(i);
    }
  }
  return true;
}

// Column ids count from the first column of the filter. `goes` is told of a column before it leaves the tree. False
// when nothing of the filter's range is left, or its header row is gone, without which there is no filter.
template <class AutoFilter, class Goes>
bool moveFilter(AutoFilter& filter, const LineMove& move, Goes&& goes) {
  const auto before = parseRange(filter.get_ref());
  if (!before) return true;
  SheetRange after = *before;
  if (!move.apply(after)) return false;
  if (move.ofRows() && !move.mapRow(before->rowFirst)) return false;
  filter.set_ref(rangeText(after));
  for (std::size_t i = filter.size_filterColumn(); i-- > 0 && !move.ofRows();) {
    auto& column = filter.get_filterColumn(i);
    const auto col = move.mapCol(before->colFirst + static_cast<int>(column.get_colId()));
    if (col) {
      column.set_colId(static_cast<std::uint32_t>(*col - after.colFirst));
    } else {
      goes(column);
      filter.erase_filterColumn(i);
    }
  }
  if (filter.isset_sortState() && !moveSort(filter.get_sortState(), move)) filter.unset_sortState();
  return true;
}

}  // namespace rubrica
