// Which values a filter column lets through: value lists, comparisons with wildcards, first and last entries. Works on
// values alone, so that it can be tested without a sheet; the sheet hands in the cells of the column.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/enums.h"

namespace rubrica {

// A cell as a filter sees it. Text is what a reader of the cell gets; of a number its shortest exact form.
struct FilterValue {
  enum class Kind { blank, number, text } kind = Kind::blank;
  double number = 0;
  std::u16string text;

  static FilterValue of(double number);
  static FilterValue of(std::u16string text);
};

// A condition of one column. A kind that can't be judged by values alone lets everything through.
class FilterRule {
 public:
  // One of the values, or, where `blank` is set, an empty cell.
  static FilterRule list(std::vector<std::u16string> values, bool blank);
  struct Comparison {
    FilterOperator op = FilterOperator::equal;
    std::u16string value;
  };
  // One or two comparisons. "*" and "?" in a text stand for any characters and for one, "~" takes that meaning away.
  static FilterRule custom(std::vector<Comparison> comparisons, bool both);
  // The first (or last) `value` entries of the column's numbers, or that many percent of them.
  static FilterRule top(double value, bool first, bool percent, const std::vector<FilterValue>& column);

  bool lets(const FilterValue& value) const;

 private:
  enum class Kind { list, custom, top };
  explicit FilterRule(Kind kind) : _kind(kind) {}

  Kind _kind;
  std::vector<std::u16string> _values;
  std::vector<std::optional<double>> _numbers;  // of the values, where they are numbers
  bool _flag = false;                           // list: blanks too; custom: both; top: the first ones
  std::vector<Comparison> _comparisons;
  std::optional<double> _bound;  // top: the last number that is let through
};

// Whether a text has the form of a pattern, without regard to case.
bool matchesPattern(std::u16string_view text, std::u16string_view pattern);

}  // namespace rubrica
