#include <utility>

#include "simhost/evaluator.h"
#include "simhost/script_error.h"

namespace rubrica::simhost {

std::vector<Column> Evaluator::columnsNamed(const std::vector<ExprPtr>& names) {
  std::vector<Column> columns;
  for (const ExprPtr& expression : names) {
    const Variable* variable = variableOf(*expression);
    if (variable == nullptr) throw ScriptError("Columns are named after variables: $define(lName,lDate)");
    const TypeSpec& type = variable->declaration->type;
    columns.push_back({textFromUtf8(variable->declaration->name), type.kind, type.subtype, type.length});
  }
  return columns;
}

std::vector<List::SortKey> Evaluator::sortKeys(Walk& walk, const Step& step) {
  std::vector<List::SortKey> keys;
  for (const ExprPtr& expression : step.arguments) {
    const auto* path = std::get_if<Path>(&expression->node);
    const auto* name = path == nullptr ? nullptr : std::get_if<Name>(&path->base);
    if (name != nullptr && name->kind == Name::Kind::ListReference && path->steps.size() == 1) {
      const Place place = navigate(walk, false);
      keys.push_back({requiredColumn(place.value->listRef(), path->steps.front().name), false});
    } else if (!keys.empty()) {
      keys.back().descending = evaluate(*expression).toBoolean();
    } else {
      throw ScriptError("$sort() takes $ref.column and kTrue for descending, in pairs");
    }
  }
  return keys;
}

Value Evaluator::callList(Walk& walk, const Step& step) {
  const auto writable = [this, &walk]() -> List& { return navigate(walk, true).value->mutableList(); };
  const Place before = navigate(walk, false);
  const bool isRow = before.value->kind() == Kind::Row;
  const bool whole = !before.isPart();
  if (whole && (sameName(step.name, "$define") || sameName(step.name, "$redefine"))) {
    std::vector<Column> columns = columnsNamed(step.arguments);
    ListMethods(writable(), isRow, _variables).define(std::move(columns), sameName(step.name, "$redefine"));
    return Value::boolean(true);
  }
  if (whole && !isRow && sameName(step.name, "$sort")) {
    const auto keys = sortKeys(walk, step);
    writable().sort(keys);
    return Value::boolean(true);
  }
  if (whole && !isRow && sameName(step.name, "$search")) return searchList(walk, step);
  if (whole && sameName(step.name, "$loadcols")) return loadColumns(walk, step);
  const std::vector<Value> arguments = evaluateAll(step.arguments);
  // The parameters may have changed the very list, so that the place is looked for again.
  const Place place = navigate(walk, false);
  const ListPlace part = place.part;
  if (part.part == ListPlace::Part::Line && !place.value->listRef().has(part.line, 1)) {
    throw ScriptError("The list has no line " + std::to_string(part.line));
  }
  return ListMethods(writable(), isRow, _variables).call(part, step.name, arguments);
}

// `$search(condition)`: the first line for which the condition holds becomes the current one. 0 when there is none.
Value Evaluator::searchList(Walk& walk, const Step& step) {
  if (step.arguments.size() != 1) throw ScriptError("$search() takes one condition, such as $ref.name='x'");
  const Value outer = std::exchange(_searched, *navigate(walk, false).value);
  const std::size_t outerLine = _searchedLine;
  std::size_t found = 0;
  const std::size_t lines = _searched.listRef().lineCount();
  for (std::size_t line = 1; line <= lines && found == 0; ++line) {
    _searchedLine = line;
    if (evaluate(*step.arguments[0]).toBoolean()) found = line;
  }
  _searched = outer;
  _searchedLine = outerLine;
  if (found != 0) navigate(walk, true).value->mutableList().setCurrentLine(found);
  return Value::integer(static_cast<std::int64_t>(found));
}

// `$loadcols()`: the current line's values into the variables that are named like the columns.
Value Evaluator::loadColumns(Walk& walk, const Step& step) {
  if (!step.arguments.empty()) throw ScriptError("$loadcols() takes no parameters here");
  const Place place = navigate(walk, false);
  const Value source = *place.value;
  const List& list = source.listRef();
  const std::size_t line = source.kind() == Kind::Row ? 1 : list.currentLine();
  for (Frame* frame : {_locals, _globals}) {
    for (Variable& variable : *frame) {
      const std::size_t column = list.findColumn(variable.declaration->name);
      if (column != 0 && list.has(line, column)) _variables.assign(variable, list.at(line, column));
    }
    if (_locals == _globals) break;
  }
  return Value::boolean(true);
}

Value Evaluator::makeList(const FunctionCall& call, bool row) {
  List list;
  std::vector<Value> values = evaluateAll(call.arguments);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Variable* variable = variableOf(*call.arguments[i]);
    Column column{textFromUtf8("C" + std::to_string(i + 1)), values[i].kind(), 0, 0};
    if (variable != nullptr && !variable->declaration->type.fieldReference) {
      const TypeSpec& type = variable->declaration->type;
      column = {textFromUtf8(variable->declaration->name), type.kind, type.subtype, type.length};
    } else if (values[i].kind() == Kind::Date) {
      column.subtype = values[i].toDate().subtype;
    } else if (values[i].kind() == Kind::None) {
      column.kind = Kind::Character;
    }
    list.addColumn(std::move(column));
  }
  if (!row) return Value::list(std::move(list));
  list.addLine();
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Column& column = list.column(i + 1);
    list.at(1, i + 1) = _variables.forCell(values[i], column.kind, column.subtype);
  }
  return Value::row(std::move(list));
}

// lst(list, line, column): the column by name or number.
Value Evaluator::listCell(const FunctionCall& call) {
  const std::vector<Value> values = evaluateAll(call.arguments);
  if (!values[0].isList()) throw ScriptError("lst() needs a list");
  const List& list = values[0].listRef();
  const std::int64_t line = values[1].toInteger();
  std::int64_t column = values[2].toInteger();
  if (values[2].kind() == Kind::Character) column = static_cast<std::int64_t>(requiredColumn(list, values[2].toUtf8()));
  if (line < 1 || column < 1 || !list.has(static_cast<std::size_t>(line), static_cast<std::size_t>(column)))
    return Value::null();
  return list.at(static_cast<std::size_t>(line), static_cast<std::size_t>(column));
}

}  // namespace rubrica::simhost
