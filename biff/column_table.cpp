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
