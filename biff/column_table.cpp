#include "biff/column_table.h"

#include <algorithm>

namespace rubrica {

const ColInfo* ColumnTable::find(int col) const {
  const auto found = std::find_if(_infos.begin(), _infos.end(),
                                  [col](const ColInfo& info) { return info.colFirst <= col && col <= info.colLast; });
  return found == _infos.end() ? nullptr : &*found;
}

void ColumnTable::takeFormat(const ColInfo& info) {
  for (std::size_t col = info.colFirst; col <= info.colLast && col < kFormatColumns; ++col) _formats[col] = info.ixfe;
}

void ColumnTable::append(const ColInfo& info) {
  _infos.push_back(info);
  takeFormat(info);
}

void ColumnTable::divideAt(int col) {
  const std::size_t count = _infos.size();
  for (std::size_t i = 0; i < count; ++i) {
    if (col <= _infos[i].colFirst || _infos[i].colLast < col) continue;
    ColInfo right = _infos[i];
    right.colFirst = static_cast<std::uint16_t>(col);
    _infos[i].colLast = static_cast<std::uint16_t>(col - 1);
    _infos.push_back(right);
  }
}

void ColumnTable::isolate(int first, int last, const ColInfo& fresh) {
  divideAt(first);
  divideAt(last + 1);
  std::vector<bool> covered(static_cast<std::size_t>(last - first + 1));
  forEachWithin(first, last, [&](const ColInfo& info) {
    for (int col = info.colFirst; col <= info.colLast; ++col) covered[static_cast<std::size_t>(col - first)] = true;
  });
  for (int col = first; col <= last; ++col) {
    if (covered[static_cast<std::size_t>(col - first)]) continue;
    ColInfo gap = fresh;
    gap.colFirst = static_cast<std::uint16_t>(col);
    while (col < last && !covered[static_cast<std::size_t>(col + 1 - first)]) ++col;
    gap.colLast = static_cast<std::uint16_t>(col);
    _infos.push_back(gap);
  }
}

void ColumnTable::refreshFormats() {
  std::stable_sort(_infos.begin(), _infos.end(),
                   [](const ColInfo& a, const ColInfo& b) { return a.colFirst < b.colFirst; });
  _formats.fill(kNoFormat);
  for (const ColInfo& info : _infos) takeFormat(info);
}

void ColumnTable::clear() {
  _infos.clear();
  _formats.fill(kNoFormat);
}

}  // namespace rubrica
