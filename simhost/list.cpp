#include "simhost/list.h"

#include <algorithm>
#include <numeric>

namespace rubrica::simhost {

void ColumnValues::setRoom(std::size_t room, const Value& empty) {
  const std::size_t full = room / kBlock, rest = room % kBlock;
  const std::size_t blocks = full + (rest > 0 ? 1 : 0);
  _blocks.resize(std::min(_blocks.size(), blocks));
  // The block that was the last may have to grow, the one that becomes it to shrink.
  for (std::size_t i = _blocks.empty() ? 0 : _blocks.size() - 1; i < blocks; ++i) {
    if (i == _blocks.size()) _blocks.emplace_back();
    _blocks[i].resize(i < full ? kBlock : rest, empty);
  }
}

std::size_t List::findColumn(std::string_view name) const {
  const auto found = std::find_if(_columns.begin(), _columns.end(),
                                  [name](const Column& column) { return sameName(utf8FromText(column.name), name); });
  return found == _columns.end() ? 0 : static_cast<std::size_t>(found - _columns.begin()) + 1;
}

bool List::addColumn(Column column) {
  if (columnCount() >= maxColumns) return false;
  _emptyLine.push_back(Value::emptyOf(column.kind, column.subtype));
  _cells.emplace_back(_room, _emptyLine.back());
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
  _room = 0;
  _lineCount = 0;
  _currentLine = 0;
}

// Where memory runs out, columns that have more room than others keep it for the next time.
void List::setRoom(std::size_t room) {
  for (std::size_t i = 0; i < columnCount(); ++i) _cells[i].setRoom(room, _emptyLine[i]);
  _room = room;
}

std::size_t List::addLine() {
  if (lineCount() >= maxLines) return 0;
  if (_lineCount == _room) setRoom(_room + std::clamp(_room, std::size_t{1}, ColumnValues::kBlock));
  return ++_lineCount;
}

std::size_t List::insertLine(std::size_t at) {
  const std::size_t added = addLine();
  if (added == 0 || at < 1 || at >= added) return added;
  for (std::size_t i = 0; i < columnCount(); ++i) {
    for (std::size_t line = added - 1; line >= at; --line) _cells[i][line] = std::move(_cells[i][line - 1]);
    _cells[i][at - 1] = _emptyLine[i];
  }
  return at;
}

void List::removeLine(std::size_t line) {
  for (std::size_t i = 0; i < columnCount(); ++i) {
    for (std::size_t next = line; next < _lineCount; ++next) _cells[i][next - 1] = std::move(_cells[i][next]);
    _cells[i][_lineCount - 1] = _emptyLine[i];
  }
  --_lineCount;
  if (_currentLine > lineCount()) _currentLine = lineCount();
}

void List::setLineCount(std::size_t count) {
  count = std::min(count, maxLines);
  setRoom(count);
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
  for (const ColumnValues& values : _cells) row._cells.emplace_back(1, values[line - 1]);
  row._room = 1;
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
  for (ColumnValues& values : _cells) {
    std::vector<Value> sorted;
    sorted.reserve(_lineCount);
    for (const std::size_t line : order) sorted.push_back(std::move(values[line]));
    for (std::size_t i = 0; i < _lineCount; ++i) values[i] = std::move(sorted[i]);
  }
}

}  // namespace rubrica::simhost
