#include "xml/column_ranges.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "source/ooxml/sheet.h"
#include "source/ooxml/strict.h"
#include "xml/bound_list.h"

namespace rubrica {

template <class Root>
void ColumnRanges<Root>::setRange(Col& range, int first, int last) {
  range.set_min(static_cast<std::uint32_t>(first + 1));
  range.set_max(static_cast<std::uint32_t>(last + 1));
}

template <class Root>
const typename ColumnRanges<Root>::Col* ColumnRanges<Root>::find(int col) const {
  const auto number = static_cast<std::uint32_t>(col + 1);
  const Root& root = *_root;
  for (std::size_t i = 0; i < root.size_cols(); ++i) {
    const Cols& cols = root.get_cols(i);
    for (std::size_t k = 0; k < cols.size_col(); ++k) {
      const Col& range = cols.get_col(k);
      if (range.get_min() <= number && number <= range.get_max()) return &range;
    }
  }
  return nullptr;
}

template <class Root>
bool ColumnRanges<Root>::isSettled() const {
  if (_root->size_cols() != 1) return false;
  const Cols& cols = _root->get_cols(0);
  std::uint32_t next = 1;
  for (std::size_t i = 0; i < cols.size_col(); ++i) {
    const Col& range = cols.get_col(i);
    if (range.get_min() < next || range.get_max() < range.get_min() || range.get_max() > kMaxCol + 1) return false;
    next = range.get_max() + 1;
  }
  return true;
}

template <class Root>
void ColumnRanges<Root>::settle() {
  if (isSettled()) return;
  std::vector<Col> ranges;
  for (std::size_t i = 0; i < _root->size_cols(); ++i) {
    Cols& cols = _root->get_cols(i);
    for (std::size_t k = 0; k < cols.size_col(); ++k) ranges.push_back(cols.get_col(k));
  }
  std::stable_sort(ranges.begin(), ranges.end(), [](const Col& a, const Col& b) { return a.get_min() < b.get_min(); });
  _root->clear_cols();
  Cols& cols = _root->append_cols();
  std::uint32_t next = 1;
  for (Col& range : ranges) {
    range.set_min(std::max(range.get_min(), next));
    range.set_max(std::min<std::uint32_t>(range.get_max(), kMaxCol + 1));
    if (range.get_max() < range.get_min()) continue;
    next = range.get_max() + 1;
    cols.append_col() = std::move(range);
  }
}

// Makes a range begin at the column where one holds it.
template <class Root>
void ColumnRanges<Root>::cutBefore(int col) {
  Cols& cols = _root->get_cols(0);
  for (std::size_t i = 0; i < cols.size_col(); ++i) {
    const int first = firstOf(cols.get_col(i)), last = lastOf(cols.get_col(i));
    if (first >= col || last < col) continue;
    const Col whole = cols.get_col(i);
    setRange(cols.get_col(i), first, col - 1);
    Col& rest = cols.insert_col(i + 1);
    rest = whole;
    setRange(rest, col, last);
    return;
  }
}

template <class Root>
void ColumnRanges<Root>::isolate(int first, int last, double freshWidth) {
  settle();
  cutBefore(first);
  cutBefore(last + 1);
  Cols& cols = _root->get_cols(0);
  std::size_t at = 0;
  while (at < cols.size_col() && lastOf(cols.get_col(at)) < first) ++at;
  for (int next = first; next <= last; ++at) {
    const int present = at < cols.size_col() ? firstOf(cols.get_col(at)) : last + 1;
    if (present > next) {
      Col& fresh = cols.insert_col(at);
      setRange(fresh, next, std::min(present - 1, last));
      fresh.set_width(freshWidth);
    }
    next = lastOf(cols.get_col(at)) + 1;
  }
}

template <class Root>
void ColumnRanges<Root>::dropIfEmpty() {
  if (_root->size_cols() == 1 && _root->get_cols(0).size_col() == 0) _root->clear_cols();
}

template <class Root>
void ColumnRanges<Root>::move(const LineMove& move) {
  if (_root->size_cols() == 0) return;
  settle();
  cutBefore(move.first());
  if (!move.inserts()) cutBefore(move.last() + 1);
  Cols& cols = _root->get_cols(0);
  eraseItems(
      cols.size_col(), [&](std::size_t i) -> Col& { return cols.get_col(i); },
      [&](std::size_t i) { cols.erase_col(i); },
      [&](Col& range) {
        const auto moved = move.mapCol(firstOf(range));
        if (!moved) return true;
        const int width = lastOf(range) - firstOf(range);
        setRange(range, *moved, std::min(*moved + width, kMaxCol));
        return false;
      });
  dropIfEmpty();
}

template class ColumnRanges<sheet::c_worksheet>;
template class ColumnRanges<strict::c_worksheet>;

}  // namespace rubrica
