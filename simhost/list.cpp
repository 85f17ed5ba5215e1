#include "simhost/list.h"

#include <algorithm>

namespace rubrica::simhost {

std::size_t List::findColumn(std::string_view name) const {
  const auto found = std::find_if(_columns.begin(), _columns.end(),
                                  [name](const Column& column) { return sameName(utf8FromText(column.name), name); });
  return found == _columns.end() ? 0 : static_cast<std::size_t>(found - _columns.begin()) + 1;
}

bool List::addColumn(Column column) {
  if (columnCount() >= maxColumns) return false;
  _emptyLine.push_back(Value::emptyOf(column.kind, column.subtype));
  for (auto& line : _lines) line.push_back(_emptyLine.back());
  _columns.push_back(std::move(column));
  return true;
}

void List::removeColumn(std::size_t number) {
  const auto offset = static_cast<std::ptrdiff_t>(number) - 1;
  _columns.erase(_columns.begin() + offset);
  _emptyLine.erase(_emptyLine.begin() + offset);
  for (auto& line : _lines) line.erase(line.begin() + offset);
}

void List::clearColumns() {
  _columns.clear();
  _emptyLine.clear();
  _lines.clear();
  _currentLine = 0;
}

std::size_t List::addLine() {
  if (lineCount() >= maxLines) return 0;
  _lines.push_back(_emptyLine);
  return lineCount();
}

std::size_t List::insertLine(std::size_t at) {
  if (at < 1 || at > lineCount()) return addLine();
  if (lineCount() >= maxLines) return 0;
  _lines.insert(_lines.begin() + static_cast<std::ptrdiff_t>(at) - 1, _emptyLine);
  return at;
}

void List::removeLine(std::size_t line) {
  _lines.erase(_lines.begin() + static_cast<std::ptrdiff_t>(line) - 1);
  if (_currentLine > lineCount()) _currentLine = lineCount();
}

void List::setLineCount(std::size_t count) {
  while (lineCount() < count && addLine() != 0) {
  }
  _lines.resize(std::min(count, lineCount()));
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
  row._lines.push_back(_lines[line - 1]);
  row._currentLine = 1;
  return row;
}

void List::sort(const std::vector<SortKey>& keys) {
  std::stable_sort(_lines.begin(), _lines.end(), [&keys](const auto& a, const auto& b) {
    for (const SortKey& key : keys) {
      const Value& x = a[key.column - 1];
      const Value& y = b[key.column - 1];
      // Nulls come first, so that the order is one for every pair of values of a column.
      int order = static_cast<int>(y.isNull()) - static_cast<int>(x.isNull());
      if (order == 0 && !x.isNull()) order = compareValues(x, y);
      if (order != 0) return key.descending ? order > 0 : order < 0;
    }
    return false;
  });
}

}  // namespace rubrica::simhost
