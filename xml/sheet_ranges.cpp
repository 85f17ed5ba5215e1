// Ranges of an .xlsx sheet: merges, and clearing cells.
#include <algorithm>

#include "engine/address.h"
#include "xml/book_impl.h"
#include "xml/bound_list.h"
#include "xml/sheet_impl.h"
#include "xml/sheet_range.h"

namespace rubrica {
namespace {

constexpr char kNotMerged[] = "this cell isn't in merging block";

struct FoundMerge {
  std::size_t index;
  SheetRange range;
};

template <class Merges>
std::optional<FoundMerge> findMerge(const Merges* merges, int row, int col) {
  for (std::size_t i = 0; merges != nullptr && i < merges->size_mergeCell(); ++i) {
    const auto range = parseRange(merges->get_mergeCell(i).get_ref());
    if (range && range->holds(row, col)) return FoundMerge{i, *range};
  }
  return std::nullopt;
}

template <class Merges>
std::size_t checkedIndex(const Merges* merges, int index) {
  if (merges == nullptr || index < 0 || static_cast<std::size_t>(index) >= merges->size_mergeCell()) {
    throw xlerror("index is out of range");
  }
  return static_cast<std::size_t>(index);
}

}  // namespace

template <class Tag>
void XMLSheetImplT<Tag>::checkOrder(int rowFirst, int rowLast, int colFirst, int colLast) {
  if (rowLast < rowFirst) throw xlerror("rowLast must be greater than or equal to rowFirst");
  if (colLast < colFirst) throw xlerror("colLast must be greater than or equal to colFirst");
}

template <class Tag>
bool XMLSheetImplT<Tag>::setMerge(int rowFirst, int rowLast, int colFirst, int colLast) {
  return guarded(_book->lastMessage(), false, [&] {
    checkOrder(rowFirst, rowLast, colFirst, colLast);
    if (colLast > kMaxCol) throw xlerror("col must be less than 16384");
    std::string ref = cellText(rowFirst, colFirst) + ':' + cellText(rowLast, colLast);
    auto& merges = this->get_mergeCells();
    merges.append_mergeCell().set_ref(std::move(ref));
    merges.set_count(static_cast<std::uint32_t>(merges.size_mergeCell()));
    _used.widen(rowFirst, colFirst);
    _used.widen(rowLast, colLast);
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::getMerge(int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
  return guarded(_book->lastMessage(), false, [&] {
    const auto found = findMerge(std::as_const(*this).find_mergeCells(), row, col);
    if (!found) throw xlerror(kNotMerged);
    giveRange(found->range, rowFirst, rowLast, colFirst, colLast);
    return true;
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::eraseMerge(std::size_t index) {
  auto& merges = this->get_mergeCells();
  merges.erase_mergeCell(index);
  merges.set_count(static_cast<std::uint32_t>(merges.size_mergeCell()));
  if (merges.size_mergeCell() == 0) this->unset_mergeCells();
}

template <class Tag>
bool XMLSheetImplT<Tag>::delMerge(int row, int col) {
  return guarded(_book->lastMessage(), false, [&] {
    const auto found = findMerge(std::as_const(*this).find_mergeCells(), row, col);
    if (!found) throw xlerror(kNotMerged);
    eraseMerge(found->index);
    return true;
  });
}

template <class Tag>
int XMLSheetImplT<Tag>::mergeSize() {
  return guarded(_book->lastMessage(), 0, [&] {
    const auto* merges = this->find_mergeCells();
    return merges == nullptr ? 0 : static_cast<int>(merges->size_mergeCell());
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::merge(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
  return guarded(_book->lastMessage(), false, [&] {
    const auto* merges = std::as_const(*this).find_mergeCells();
    const auto range =
        parseRange(merges == nullptr ? std::string() : merges->get_mergeCell(checkedIndex(merges, index)).get_ref());
    if (!range) throw xlerror(merges == nullptr ? "index is out of range" : "ref has unrecognized format");
    giveRange(*range, rowFirst, rowLast, colFirst, colLast);
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::delMergeByIndex(int index) {
  return guarded(_book->lastMessage(), false, [&] {
    eraseMerge(checkedIndex(std::as_const(*this).find_mergeCells(), index));
    return true;
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::clear(int rowFirst, int rowLast, int colFirst, int colLast) {
  guarded(_book->lastMessage(), [&] {
    checkOrder(rowFirst, rowLast, colFirst, colLast);
    checkCell(rowFirst, colFirst);
    checkCell(rowLast, colLast);
    auto* data = this->find_sheetData();
    if (data == nullptr) return;
    for (std::size_t at = rowPosition(*data, rowFirst); at < data->size_row(); ++at) {
      Row& row = data->get_row(at);
      if (static_cast<int>(row.get_r()) - 1 > rowLast) break;
      eraseCells(row, colFirst, colLast);
    }
  });
}

// A shared formula whose master goes is handed over before the cell is gone.
template <class Tag>
void XMLSheetImplT<Tag>::eraseCells(Row& row, int colFirst, int colLast) {
  const std::size_t first = cellPosition(row, colFirst), end = cellPosition(row, colLast + 1);
  for (std::size_t i = first; i < end; ++i) {
    Cell& cell = row.get_c(i);
    handOverSharedFormula(static_cast<int>(cell.row()), cell.column(), cell);
    cell.unset_f();
  }
  std::size_t position = 0;
  eraseItems(
      row.size_c(), [&](std::size_t i) -> Cell& { return row.get_c(i); }, [&](std::size_t i) { row.erase_c(i); },
      [&](Cell&) {
        const bool goes = first <= position && position < end;
        ++position;
        return goes;
      });
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
