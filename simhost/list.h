// A host list, and a row, which is a list of one line: columns with a name and a type, lines of values, a current
// line. Lines and columns count from 1 at this interface, as they do in scripts and in the component's calls. The
// values of a column lie side by side, in blocks that stay where they are while the list grows: components fill lists
// of many lines, and walk them column by column.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "simhost/value.h"

namespace rubrica::simhost {

struct Column {
  Text name;
  Kind kind = Kind::Character;
  int subtype = 0;
  int length = 0;
};

// The values of one column, and what is kept in readiness for lines to come.
class ColumnValues {
 public:
  static constexpr std::size_t kBlock = 256;  // values: a page of memory

  ColumnValues(std::size_t room, const Value& empty) { setRoom(room, empty); }

  Value& operator[](std::size_t i) { return _blocks[i / kBlock][i % kBlock]; }
  const Value& operator[](std::size_t i) const { return _blocks[i / kBlock][i % kBlock]; }
  // What is added holds `empty`.
  void setRoom(std::size_t room, const Value& empty);

 private:
  std::vector<std::vector<Value>> _blocks;  // all but the last are full
};

class List {
 public:
  // The host's limits; a script or a component that asks for more is refused.
  static constexpr std::size_t maxColumns = 32000;
  static constexpr std::size_t maxLines = 10'000'000;

  std::size_t columnCount() const { return _emptyLine.size(); }
  std::size_t lineCount() const { return _lineCount; }
  const Column& column(std::size_t number) const { return _columns[number - 1]; }
  void renameColumn(std::size_t number, Text name) { _columns[number - 1].name = std::move(name); }
  // The number of the column; 0 when there is none of the name.
  std::size_t findColumn(std::string_view name) const;

  // Existing lines get an empty value in the new column. False beyond maxColumns.
  bool addColumn(Column column);
  void removeColumn(std::size_t number);
  void clearColumns();

  // The line number, or 0 beyond maxLines. A new line holds the empty values of its columns.
  std::size_t addLine();
  // Before the line `at`; at the end when there is no such line.
  std::size_t insertLine(std::size_t at);
  void removeLine(std::size_t line);
  void setLineCount(std::size_t count);

  // 0 is no current line.
  std::size_t currentLine() const { return _currentLine; }
  void setCurrentLine(std::size_t line) { _currentLine = line <= lineCount() ? line : 0; }

  bool has(std::size_t line, std::size_t column) const {
    return line >= 1 && line <= lineCount() && column >= 1 && column <= columnCount();
  }
  const Value& at(std::size_t line, std::size_t column) const { return _cells[column - 1][line - 1]; }
  Value& at(std::size_t line, std::size_t column) { return _cells[column - 1][line - 1]; }
  // Converts to the column's kind.
  void set(std::size_t line, std::size_t column, const Value& value);

  // One line as a row with the same columns.
  List rowOf(std::size_t line) const;
  // Sorts by columns, each ascending or descending; equal lines keep their order.
  struct SortKey {
    std::size_t column;
    bool descending;
  };
  void sort(const std::vector<SortKey>& keys);

 private:
  void setRoom(std::size_t room);

  std::vector<Column> _columns;
  // What a new line holds: the empty values of the columns.
  std::vector<Value> _emptyLine;
  // By column, then by line. Behind the last line stand empty values.
  std::vector<ColumnValues> _cells;
  std::size_t _room = 0;  // lines that every column has values for
  std::size_t _lineCount = 0;
  std::size_t _currentLine = 0;
};

}  // namespace rubrica::simhost
