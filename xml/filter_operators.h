// The comparisons of custom filters by their tokens in a file, which the enumeration follows in order.
#pragma once

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

#include "engine/enums.h"

namespace rubrica {

inline constexpr std::array<std::string_view, 6> kFilterOperatorTokens = {
    "equal", "lessThan", "lessThanOrEqual", "notEqual", "greaterThanOrEqual", "greaterThan"};

// A number that stands for no operator compares for equality, the default of the format.
inline std::string_view operatorToken(FilterOperator op) {
  const auto number = static_cast<std::size_t>(op);
  return kFilterOperatorTokens[number < kFilterOperatorTokens.size() ? number : 0];
}

inline FilterOperator operatorOf(std::string_view token) {
  const auto found = std::find(kFilterOperatorTokens.begin(), kFilterOperatorTokens.end(), token);
  if (found == kFilterOperatorTokens.end()) return FilterOperator::equal;
  return static_cast<FilterOperator>(std::distance(kFilterOperatorTokens.begin(), found));
}

}  // namespace rubrica
