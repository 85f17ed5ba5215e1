// The methods and properties of lists and rows, of their lines and of their columns, by name: `$add`, `$linecount`,
// `$cols.$add`, `$cols.name.$total`. Used by the evaluator, which has turned names and targets into values before.
#pragma once

#include <span>
#include <string_view>

#include "simhost/list.h"
#include "simhost/variables.h"

namespace rubrica::simhost {

// Where notation stands: on the whole list, on one line of it, on its group of columns, on one column.
struct ListPlace {
  enum class Part { Whole, Line, Columns, Column } part = Part::Whole;
  std::size_t line = 0;
  std::size_t column = 0;
};

// Finds a column by its name or as `C3`; throws ScriptError when there is none.
std::size_t requiredColumn(const List& list, std::string_view name);

// Throws for an unknown name.
Value listProperty(const List& list, bool isRow, const ListPlace& place, std::string_view name);
void setListProperty(List& list, bool isRow, const ListPlace& place, std::string_view name, const Value& value);

class ListMethods {
 public:
  ListMethods(List& list, bool isRow, Variables& variables) : _list(list), _isRow(isRow), _variables(variables) {}

  Value call(const ListPlace& place, std::string_view name, std::span<const Value> arguments);
  // `$define` and `$redefine`: the columns that the parameters named.
  void define(std::vector<Column> columns, bool keepLines);
  void sort(const std::vector<List::SortKey>& keys) { _list.sort(keys); }

 private:
  using Args = std::span<const Value>;

  Value callOnList(std::string_view name, Args arguments);
  Value callOnColumns(std::string_view name, Args arguments);
  Value callOnColumn(std::size_t column, std::string_view name);
  Value add(std::size_t at, Args arguments);
  void fillLine(std::size_t line, Args arguments);
  void assignRow(std::size_t line, const Value& row);
  Value merge(const Value& source);
  std::size_t requiredLine(const Value& number) const;

  List& _list;
  bool _isRow;
  Variables& _variables;
};

}  // namespace rubrica::simhost
