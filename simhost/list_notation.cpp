#include "simhost/list_notation.h"

#include <algorithm>

#include "simhost/script_error.h"

namespace rubrica::simhost {

namespace {

[[noreturn]] void unknown(std::string_view what, std::string_view name) {
  throw ScriptError(std::string(what) + " has no '" + std::string(name) + "'");
}

// `C3` names the third column where no column has that name.
std::size_t columnByPosition(std::string_view name) {
  if (name.size() < 2 || name.size() > 6 || (name[0] != 'C' && name[0] != 'c')) return 0;
  std::size_t number = 0;
  for (const char c : name.substr(1)) {
    if (c < '0' || c > '9') return 0;
    number = number * 10 + static_cast<std::size_t>(c - '0');
  }
  return number;
}

void requireCount(std::span<const Value> arguments, std::size_t least, std::string_view name) {
  if (arguments.size() >= least) return;
  throw ScriptError(std::string(name) + "() needs at least " + std::to_string(least) + " parameter" +
                    (least == 1 ? "" : "s"));
}

Value total(const List& list, std::size_t column) {
  bool whole = true;
  double number = 0;
  std::int64_t integer = 0;
  for (std::size_t line = 1; line <= list.lineCount(); ++line) {
    const Value& value = list.at(line, column);
    number += value.toNumber();
    whole = whole && value.isWhole();
    if (whole && std::abs(number) < 9.0e18) integer += value.toInteger();
  }
  return whole && std::abs(number) < 9.0e18 ? Value::integer(integer) : Value::number(number);
}

Value extremeOf(const List& list, std::size_t column, int wanted) {
  Value best = Value::null();
  for (std::size_t line = 1; line <= list.lineCount(); ++line) {
    const Value& value = list.at(line, column);
    if (value.isNull()) continue;
    if (best.isNull() || compareValues(value, best) == wanted) best = value;
  }
  return best;
}

}  // namespace

std::size_t requiredColumn(const List& list, std::string_view name) {
  std::size_t column = list.findColumn(name);
  if (column == 0) column = columnByPosition(name);
  if (column < 1 || column > list.columnCount()) {
    throw ScriptError("The list has no column '" + std::string(name) + "'");
  }
  return column;
}

Value listProperty(const List& list, bool isRow, const ListPlace& place, std::string_view name) {
  const auto count = [](std::size_t number) { return Value::integer(static_cast<std::int64_t>(number)); };
  if (place.part == ListPlace::Part::Whole) {
    if (sameName(name, "$linecount")) return count(list.lineCount());
    if (sameName(name, "$line")) return count(list.currentLine());
    if (sameName(name, "$colcount")) return count(list.columnCount());
  } else if (place.part == ListPlace::Part::Columns) {
    if (sameName(name, "$count")) return count(list.columnCount());
  } else if (place.part == ListPlace::Part::Column) {
    const Column& column = list.column(place.column);
    if (sameName(name, "$name")) return Value::text(column.name);
    if (sameName(name, "$coltype")) return Value::constant(static_cast<int>(column.kind));
    if (sameName(name, "$colsubtype")) return Value::constant(column.subtype);
    if (sameName(name, "$colsublen")) return Value::integer(column.length);
  }
  unknown(isRow ? "A row" : "A list", name);
}

void setListProperty(List& list, bool isRow, const ListPlace& place, std::string_view name, const Value& value) {
  const std::int64_t number = value.toInteger();
  if (place.part == ListPlace::Part::Whole && !isRow) {
    if (sameName(name, "$line")) {
      list.setCurrentLine(static_cast<std::size_t>(std::max<std::int64_t>(number, 0)));
      return;
    }
    if (sameName(name, "$linecount")) {
      if (number < 0 || number > static_cast<std::int64_t>(List::maxLines))
        throw ScriptError("A list can't have that many lines");
      list.setLineCount(static_cast<std::size_t>(number));
      return;
    }
  }
  if (place.part == ListPlace::Part::Column && sameName(name, "$name")) {
    list.renameColumn(place.column, value.toText());
    return;
  }
  unknown(isRow ? "A row" : "A list", std::string(name) + "' that can be assigned");
}

Value ListMethods::call(const ListPlace& place, std::string_view name, std::span<const Value> arguments) {
  switch (place.part) {
    case ListPlace::Part::Whole:
      return callOnList(name, arguments);
    case ListPlace::Part::Columns:
      return callOnColumns(name, arguments);
    case ListPlace::Part::Column:
      return callOnColumn(place.column, name);
    case ListPlace::Part::Line:
      break;
  }
  if (sameName(name, "$assigncols")) {
    fillLine(place.line, arguments);
  } else if (sameName(name, "$assignrow")) {
    requireCount(arguments, 1, name);
    assignRow(place.line, arguments[0]);
  } else {
    unknown("A line", name);
  }
  return Value::boolean(true);
}

Value ListMethods::callOnList(std::string_view name, Args arguments) {
  if (sameName(name, "$assigncols") || sameName(name, "$assignrow")) {
    const std::size_t line = _isRow ? 1 : requiredLine(Value::integer(static_cast<std::int64_t>(_list.currentLine())));
    return call({ListPlace::Part::Line, line, 0}, name, arguments);
  }
  if (sameName(name, "$copydefinition")) {
    requireCount(arguments, 1, name);
    if (!arguments[0].isList()) throw ScriptError("$copydefinition() needs a list");
    std::vector<Column> columns;
    for (std::size_t i = 1; i <= arguments[0].listRef().columnCount(); ++i)
      columns.push_back(arguments[0].listRef().column(i));
    define(std::move(columns), false);
    return Value::boolean(true);
  }
  if (sameName(name, "$clear")) {
    _list.setLineCount(0);
    if (_isRow) _list.setLineCount(1);
    return Value::boolean(true);
  }
  if (_isRow) unknown("A row", name);
  if (sameName(name, "$add")) return add(0, arguments);
  if (sameName(name, "$addbefore") || sameName(name, "$addafter")) {
    requireCount(arguments, 1, name);
    const std::size_t after = sameName(name, "$addafter") ? 1 : 0;
    return add(requiredLine(arguments[0]) + after, arguments.subspan(1));
  }
  if (sameName(name, "$remove")) {
    requireCount(arguments, 1, name);
    _list.removeLine(requiredLine(arguments[0]));
    return Value::boolean(true);
  }
  if (sameName(name, "$merge")) {
    requireCount(arguments, 1, name);
    return merge(arguments[0]);
  }
  unknown("A list", name);
}

Value ListMethods::callOnColumns(std::string_view name, Args arguments) {
  if (sameName(name, "$count")) return Value::integer(static_cast<std::int64_t>(_list.columnCount()));
  if (sameName(name, "$add")) {
    requireCount(arguments, 1, name);
    Column column{arguments[0].toText(), Kind::Character, 0, 0};
    if (arguments.size() > 1) {
      const std::int64_t kind = arguments[1].toInteger();
      if (*kindName(static_cast<Kind>(kind)) == '\0' || kind <= 20 || kind > 38)
        throw ScriptError("Unknown column type");
      column.kind = static_cast<Kind>(kind);
    }
    if (arguments.size() > 2)
      column.subtype = static_cast<int>(std::clamp<std::int64_t>(arguments[2].toInteger(), 0, 255));
    if (arguments.size() > 3)
      column.length = static_cast<int>(std::clamp<std::int64_t>(arguments[3].toInteger(), 0, maxTextLength));
    if (!_list.addColumn(std::move(column))) throw ScriptError("A list can't have that many columns");
    return Value::integer(static_cast<std::int64_t>(_list.columnCount()));
  }
  if (sameName(name, "$remove")) {
    requireCount(arguments, 1, name);
    const std::int64_t number = arguments[0].toInteger();
    if (arguments[0].kind() == Kind::Character) {
      _list.removeColumn(requiredColumn(_list, arguments[0].toUtf8()));
    } else if (number >= 1 && number <= static_cast<std::int64_t>(_list.columnCount())) {
      _list.removeColumn(static_cast<std::size_t>(number));
    } else {
      throw ScriptError("The list has no column " + std::to_string(number));
    }
    return Value::boolean(true);
  }
  unknown("A group of columns", name);
}

Value ListMethods::callOnColumn(std::size_t column, std::string_view name) {
  const std::size_t lines = _list.lineCount();
  if (sameName(name, "$total")) return total(_list, column);
  if (sameName(name, "$minimum")) return extremeOf(_list, column, -1);
  if (sameName(name, "$maximum")) return extremeOf(_list, column, 1);
  if (sameName(name, "$average")) {
    return lines == 0 ? Value::null() : Value::number(total(_list, column).toNumber() / static_cast<double>(lines));
  }
  if (sameName(name, "$count")) {
    std::int64_t count = 0;
    for (std::size_t line = 1; line <= lines; ++line) count += _list.at(line, column).isNull() ? 0 : 1;
    return Value::integer(count);
  }
  unknown("A column", name);
}

void ListMethods::define(std::vector<Column> columns, bool keepLines) {
  List defined;
  for (Column& column : columns) {
    if (!defined.addColumn(std::move(column))) throw ScriptError("A list can't have that many columns");
  }
  if (keepLines) {
    defined.setLineCount(_list.lineCount());
    const std::size_t shared = std::min(defined.columnCount(), _list.columnCount());
    for (std::size_t line = 1; line <= _list.lineCount(); ++line) {
      for (std::size_t column = 1; column <= shared; ++column) defined.set(line, column, _list.at(line, column));
    }
  }
  if (_isRow) {
    defined.setLineCount(1);
    defined.setCurrentLine(1);
  }
  _list = std::move(defined);
}

std::size_t ListMethods::requiredLine(const Value& number) const {
  const std::int64_t line = number.toInteger();
  if (line < 1 || line > static_cast<std::int64_t>(_list.lineCount())) {
    throw ScriptError("The list has no line " + std::to_string(line) + "; it has " + std::to_string(_list.lineCount()));
  }
  return static_cast<std::size_t>(line);
}

Value ListMethods::add(std::size_t at, Args arguments) {
  const std::size_t line = _list.insertLine(at);
  if (line == 0) throw ScriptError("A list can't have that many lines");
  fillLine(line, arguments);
  return Value::integer(static_cast<std::int64_t>(line));
}

void ListMethods::fillLine(std::size_t line, Args arguments) {
  if (arguments.size() > _list.columnCount()) {
    throw ScriptError("There are " + std::to_string(arguments.size()) + " values for " +
                      std::to_string(_list.columnCount()) + " columns");
  }
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const Column& column = _list.column(i + 1);
    _list.at(line, i + 1) = _variables.forCell(arguments[i], column.kind, column.subtype);
  }
}

void ListMethods::assignRow(std::size_t line, const Value& row) {
  if (!row.isList() || row.listRef().lineCount() == 0) throw ScriptError("$assignrow() needs a row");
  const List& source = row.listRef();
  const std::size_t from = source.currentLine() == 0 ? 1 : source.currentLine();
  for (std::size_t i = 1; i <= std::min(source.columnCount(), _list.columnCount()); ++i) {
    const Column& column = _list.column(i);
    _list.at(line, i) = _variables.forCell(source.at(from, i), column.kind, column.subtype);
  }
}

// Appends the lines of another list, column by column in order.
Value ListMethods::merge(const Value& source) {
  if (!source.isList()) throw ScriptError("$merge() needs a list");
  const List& lines = source.listRef();
  for (std::size_t line = 1; line <= lines.lineCount(); ++line) {
    const std::size_t added = _list.addLine();
    if (added == 0) throw ScriptError("A list can't have that many lines");
    for (std::size_t i = 1; i <= std::min(lines.columnCount(), _list.columnCount()); ++i) {
      const Column& column = _list.column(i);
      _list.at(added, i) = _variables.forCell(lines.at(line, i), column.kind, column.subtype);
    }
  }
  return Value::boolean(true);
}

}  // namespace rubrica::simhost
