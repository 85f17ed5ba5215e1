#include "xml/filter_match.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>

#include "engine/sheet_name.h"

namespace rubrica {
namespace {

constexpr double kPercent = 100;

std::optional<double> numberIn(std::u16string_view text) {
  std::string narrow;
  for (const char16_t c : text) {
    if (c > 0x7F) return std::nullopt;
    narrow += static_cast<char>(c);
  }
  double number = 0;
  const auto end = std::from_chars(narrow.data(), narrow.data() + narrow.size(), number);
  if (end.ec != std::errc() || end.ptr != narrow.data() + narrow.size() || !std::isfinite(number)) return std::nullopt;
  return number;
}

bool sameLetter(char16_t a, char16_t b) {
  return sameNameIgnoringCase({&a, 1}, {&b, 1});
}

// Below, at or above, by the letters without their case.
int compareTexts(std::u16string_view a, std::u16string_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (!sameLetter(a[i], b[i])) return a[i] < b[i] ? -1 : 1;
  }
  return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

bool holds(FilterOperator op, int order) {
  switch (op) {
    case FilterOperator::lessThan:
      return order < 0;
    case FilterOperator::lessThanOrEqual:
      return order <= 0;
    case FilterOperator::greaterThan:
      return order > 0;
    case FilterOperator::greaterThanOrEqual:
      return order >= 0;
    case FilterOperator::notEqual:
      return order != 0;
    case FilterOperator::equal:
      break;
  }
  return order == 0;
}

// An empty text and a blank stand for empty cells.
bool meansBlank(std::u16string_view text) {
  return text.find_first_not_of(u' ') == text.npos;
}

bool compares(const FilterRule::Comparison& comparison, const FilterValue& value) {
  const bool equality = comparison.op == FilterOperator::equal || comparison.op == FilterOperator::notEqual;
  const bool wanted = comparison.op == FilterOperator::equal;
  if (equality && meansBlank(comparison.value)) return (value.kind == FilterValue::Kind::blank) == wanted;
  if (value.kind == FilterValue::Kind::blank) return comparison.op == FilterOperator::notEqual;
  if (const auto number = numberIn(comparison.value)) {
    if (value.kind == FilterValue::Kind::text) {
      return equality && (compareTexts(value.text, comparison.value) == 0) == wanted;
    }
    return holds(comparison.op, value.number < *number ? -1 : value.number > *number ? 1 : 0);
  }
  if (equality) return matchesPattern(value.text, comparison.value) == wanted;
  return value.kind == FilterValue::Kind::text && holds(comparison.op, compareTexts(value.text, comparison.value));
}

}  // namespace

FilterValue FilterValue::of(double number) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.begin(), buffer.end(), number).ptr;
  return {Kind::number, number, std::u16string(buffer.begin(), end)};
}

FilterValue FilterValue::of(std::u16string text) {
  if (text.empty()) return {};
  return {Kind::text, 0, std::move(text)};
}

FilterRule FilterRule::list(std::vector<std::u16string> values, bool blank) {
  FilterRule rule(Kind::list);
  for (const std::u16string& value : values) rule._numbers.push_back(numberIn(value));
  rule._values = std::move(values);
  rule._flag = blank;
  return rule;
}

FilterRule FilterRule::custom(std::vector<Comparison> comparisons, bool both) {
  FilterRule rule(Kind::custom);
  rule._comparisons = std::move(comparisons);
  rule._flag = both;
  return rule;
}

FilterRule FilterRule::top(double value, bool first, bool percent, const std::vector<FilterValue>& column) {
  FilterRule rule(Kind::top);
  rule._flag = first;
  std::vector<double> numbers;
  for (const FilterValue& entry : column) {
    if (entry.kind == FilterValue::Kind::number) numbers.push_back(entry.number);
  }
  if (numbers.empty()) return rule;
  const double share = percent ? std::floor(static_cast<double>(numbers.size()) * value / kPercent) : value;
  const auto count = static_cast<std::size_t>(std::clamp(share, 1.0, static_cast<double>(numbers.size())));
  const auto bound = numbers.begin() + static_cast<std::ptrdiff_t>(count) - 1;
  if (first) {
    std::nth_element(numbers.begin(), bound, numbers.end(), std::greater<>());
  } else {
    std::nth_element(numbers.begin(), bound, numbers.end());
  }
  rule._bound = *bound;
  return rule;
}

bool FilterRule::lets(const FilterValue& value) const {
  if (_kind == Kind::list) {
    if (value.kind == FilterValue::Kind::blank) return _flag;
    for (std::size_t i = 0; i < _values.size(); ++i) {
      if (value.kind == FilterValue::Kind::number && _numbers[i] == value.number) return true;
      if (sameNameIgnoringCase(value.text, _values[i])) return true;
    }
    return false;
  }
  if (_kind == Kind::custom) {
    const auto passes = [&](const Comparison& comparison) { return compares(comparison, value); };
    return _flag ? std::all_of(_comparisons.begin(), _comparisons.end(), passes)
                 : std::any_of(_comparisons.begin(), _comparisons.end(), passes);
  }
  if (value.kind != FilterValue::Kind::number || !_bound) return false;
  return _flag ? value.number >= *_bound : value.number <= *_bound;
}

// Goes on behind the last "*" when a later character differs, so that the time is at most the product of both lengths.
bool matchesPattern(std::u16string_view text, std::u16string_view pattern) {
  std::size_t t = 0, p = 0, star = pattern.npos, resume = 0;
  while (t < text.size()) {
    std::size_t width = 1;
    bool isAny = false, isEqual = false;
    if (p < pattern.size()) {
      const char16_t c = pattern[p];
      if (c == u'*') {
        star = ++p;
        resume = t;
        continue;
      }
      const bool isTaken = c == u'~' && p + 1 < pattern.size();
      isAny = c == u'?';
      isEqual = sameLetter(text[t], isTaken ? pattern[p + 1] : c);
      width = isTaken ? 2 : 1;
    }
    if (isAny || isEqual) {
      ++t;
      p += width;
    } else if (star != pattern.npos) {
      p = star;
      t = ++resume;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == u'*') ++p;
  return p == pattern.size();
}

}  // namespace rubrica
