// Ranges as the expressions of defined names hold them: absolute references over an ExternSheet entry, and unions of
// two. Used for named ranges, print areas and print titles; owns nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "biff/formula_cell.h"

namespace rubrica {

// One PtgRef3d for a single cell, otherwise one PtgArea3d.
std::vector<std::uint8_t> rangeTokens(std::uint16_t externSheet, const FormulaRange& range);

// "first,second" as other programs write print titles: a PtgMemFunc around two PtgArea3d and a PtgUnion.
std::vector<std::uint8_t> unionTokens(std::uint16_t externSheet, const FormulaRange& first, const FormulaRange& second);

// The ranges of an expression, with a sheet or without, up to the first token that is something else. Unions,
// parentheses and the tokens that only wrap a subexpression are passed over.
std::vector<FormulaRange> leadingRanges(std::span<const std::uint8_t> tokens);

// The first of them.
std::optional<FormulaRange> leadingRange(std::span<const std::uint8_t> tokens);

}  // namespace rubrica
