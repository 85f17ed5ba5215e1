#include "simhost/list.h"

#include <algorithm>
#include <numeric>

namespace rubrica::simhost {

std::size_t List::findColumn(std::string_view name) const {
  const auto found = std::find_if(_columns.begin(), _columns.end(),
                                  [name](const Column& column) { return sameName(utf8FromText(column.name), name); });
  return found == _columns.end() ? 0 : static_cast<std::size_t>(found - _columns.begin()) + 1;
}

bool List::addColumn(Column column) {
  if (columnCount() >= maxColumns) return false;
  _emptyLine.push_back(Value::emptyOf(column.kind, column.subtype));
  _cells.emplace_back(_lineCount, _emptyLine.back());
  _columns.push_back(std::move(column));
  return true;
}

void List::removeColumn(std::size_t number) {
  const auto offset = static_cast<std::ptrdiff_t>(number) - 1;
  _columns.erase(_columns.begin() + offset);
  _emptyLine.erase(_emptyLine.begin() + offset);
  _cells.erase(_cells.begin() + offset);
}

void List::clearColumns() {
  _columns.clear();
  _emptyLine.clear();
  _cells.clear();
  _lineCount = 0;
  _currentLine = 0;
}

std::size_t List::addLine() {
  if (lineCount() >= maxLines) return 0;
  for (std::size_t i = 0; i < columnCount(); ++i) {
    if (_cells[i].size() == _lineCount) _cells[i].push_back(_emptyLine[i]);
  }
  return ++_lineCount;
}

std::size_t List::insertLine(std::size_t at) {
  const std::size_t added = addLine();
  if (added == 0 || at < 1 || at >= added) return added;
  for (auto& cells : _cells) {
    const auto end = cells.begin() + static_cast<std::ptrdiff_t>(added);
    std::rotate(cells.begin() + static_cast<std::ptrdiff_t>(at) - 1, end - 1, end);
  }
  return at;
}

void List::removeLine(std::size_t line) {
  for (auto& cells : _cells) cells.erase(cells.begin() + static_cast<std::ptrdiff_t>(line) - 1);
  --_lineCount;
  if (_currentLine > lineCount()) _currentLine = lineCount();
}

void List::setLineCount(std::size_t count) {
  count = std::min(count, maxLines);
  for (std::size_t i = 0; i < columnCount(); ++i) _cells[i].resize(count, _emptyLine[i]);
  _lineCount = count;
  if (_currentLine > lineCount()) _currentLine = lineCount();
}

void List::set(std::size_t line, std::size_t column, const Value& value) {
  const Column& type = this->column(column);
  at(line, column) = value.as(type.kind, type.subtype);
}

List List::rowOf(std::size_t line) const {
  List row;
  row._columns = _columns;
  row._emptyLine = _emptyLine;
  for (const auto& cells : _cells) row._cells.emplace_back(1, cells[line - 1]);
  row._lineCount = 1;
  row._currentLine = 1;
  return row;
}

void List::sort(const std::vector<SortKey>& keys) {
  std::vector<std::size_t> order(_lineCount);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    for (const SortKey& key : keys) {
      const Value& x = _cells[key.column - 1][a];
      const Value& y = _cells[key.column - 1][b];
      // Nulls come first, so that the order is one for every pair of values of a column.
      int difference = static_cast<int>(y.isNull()) - static_cast<int>(x.isNull());
      if (difference == 0 && !x.isNull()) difference = compareValues(x, y);
      if (difference != 0) return key.descending ? difference > 0 : difference < 0;
    }
    return false;
  });
  for (auto& cells : _cells) {
    std::vector<Value> sorted;
    sorted.reserve(cells.size());
    for (const std::size_t line : order) sorted.push_back(std::move(cells[line]));
    cells = std::move(sorted);
  }
}

}  // namespace rubrica::simhost
