#include "xml/table_tree.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "engine/xlerror.h"
#include "source/ooxml/strict.h"
#include "source/ooxml/table.h"
#include "xml/filter_moves.h"

namespace rubrica {
namespace {

// Counts in a file may be any 32 bits.
int countOf(std::uint32_t value) {
  return static_cast<int>(std::min<std::uint32_t>(value, std::numeric_limits<int>::max()));
}

template <class Columns>
bool hasName(const Columns& columns, const std::string& name) {
  for (std::size_t i = 0; i < columns.size_tableColumn(); ++i) {
    if (columns.get_tableColumn(i).get_name() == name) return true;
  }
  return false;
}

template <class Columns>
std::uint32_t freeColumnId(const Columns& columns) {
  std::uint32_t highest = 0;
  for (std::size_t i = 0; i < columns.size_tableColumn(); ++i) {
    highest = std::max(highest, columns.get_tableColumn(i).get_id());
  }
  return highest + 1;
}

template <class Columns>
std::string insertColumn(Columns& columns, std::size_t index) {
  const std::uint32_t id = freeColumnId(columns);
  std::size_t number = columns.size_tableColumn() + 1;
  std::string name = "Column" + std::to_string(number);
  while (hasName(columns, name)) name = "Column" + std::to_string(++number);
  auto& column = columns.insert_tableColumn(index);
  column.set_id(id);
  column.set_name(name);
  return name;
}

template <class Root>
void moveColumns(Root& root, const LineMove& move, const SheetRange& before, const SheetRange& after,
                 TableMove& moved) {
  auto& columns = root.get_tableColumns();
  if (move.inserts() && before.colFirst < move.first() && move.first() <= before.colLast) {
    const int added = std::min(move.count(), after.colLast - after.colFirst - (before.colLast - before.colFirst));
    const auto at = std::min(static_cast<std::size_t>(move.first() - before.colFirst), columns.size_tableColumn());
    for (int i = 0; i < added; ++i) {
      std::string name = insertColumn(columns, at + static_cast<std::size_t>(i));
      if (root.get_headerRowCount() > 0)
        moved.newHeaders.push_back({after.rowFirst, move.first() + i, std::move(name)});
    }
  }
  if (!move.inserts()) {
    const int from = std::max(move.first(), before.colFirst), to = std::min(move.last(), before.colLast);
    for (int col = to; col >= from; --col) {
      const auto index = static_cast<std::size_t>(col - before.colFirst);
      if (index < columns.size_tableColumn()) columns.erase_tableColumn(index);
    }
  }
  const auto width = static_cast<std::size_t>(after.colLast - after.colFirst) + 1;
  while (columns.size_tableColumn() > width) columns.erase_tableColumn(columns.size_tableColumn() - 1);
  columns.set_count(static_cast<std::uint32_t>(columns.size_tableColumn()));
}

template <class Root>
void moveRows(Root& root, const LineMove& move, const SheetRange& before) {
  if (!move.mapRow(before.rowFirst) && root.get_headerRowCount() > 0) root.set_headerRowCount(0);
  if (!move.mapRow(before.rowLast) && root.get_totalsRowCount() > 0) {
    root.set_totalsRowCount(0);
    root.set_totalsRowShown(false);
  }
}

}  // namespace

template <class Root>
TableInfo tableInfo(const Root& root) {
  const auto range = parseRange(root.get_ref());
  if (!range) throw xlerror("ref has unrecognized format");
  return {root.isset_name() ? root.get_name() : root.get_displayName(), *range, countOf(root.get_headerRowCount()),
          countOf(root.get_totalsRowCount())};
}

template <class Root>
TableMove moveTable(Root& root, const LineMove& move) {
  TableMove moved;
  const auto before = parseRange(root.get_ref());
  if (!before) return moved;
  SheetRange after = *before;
  moved.isLeft = move.apply(after);
  if (!moved.isLeft) return moved;
  root.set_ref(rangeText(after));
  move.ofRows() ? moveRows(root, move, *before) : moveColumns(root, move, *before, after, moved);
  if (root.isset_autoFilter() && !moveFilter(root.get_autoFilter(), move, [](auto&) {})) root.unset_autoFilter();
  if (root.isset_sortState() && !moveSort(root.get_sortState(), move)) root.unset_sortState();
  return moved;
}

template TableInfo tableInfo(const table::c_table&);
template TableMove moveTable(table::c_table&, const LineMove&);
template TableInfo tableInfo(const strict::c_table&);
template TableMove moveTable(strict::c_table&, const LineMove&);

}  // namespace rubrica
