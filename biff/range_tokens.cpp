#include "biff/range_tokens.h"

#include "biff/expression_walk.h"
#include "formula/ptg.h"

namespace rubrica {
namespace {

namespace ptg = formula::ptg;

void put16(std::vector<std::uint8_t>& bytes, int value) {
  bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
  bytes.push_back(static_cast<std::uint8_t>(value >> 8 & 0xFF));
}

void putArea(std::vector<std::uint8_t>& bytes, std::uint16_t externSheet, const FormulaRange& range) {
  bytes.push_back(ptg::Area3d);
  put16(bytes, externSheet);
  for (const int field : {range.rowFirst, range.rowLast, range.colFirst, range.colLast}) put16(bytes, field);
}

// The words of a reference's payload: the ExternSheet index of a 3d token stands before them.
std::optional<FormulaRange> rangeOf(const formula::Token& token) {
  const std::uint8_t base = formula::baseToken(token.first());
  const bool isCell = base == ptg::Ref || base == ptg::Ref3d;
  const bool isArea = base == ptg::Area || base == ptg::Area3d;
  if (!isCell && !isArea) return std::nullopt;
  const auto payload = token.payload().subspan(base == ptg::Ref3d || base == ptg::Area3d ? 2 : 0);
  const auto word = [&](std::size_t i) { return payload[2 * i] | payload[2 * i + 1] << 8; };
  const auto column = [&](std::size_t i) { return word(i) & 0xFF; };
  if (isCell) return FormulaRange{word(0), word(0), column(1), column(1)};
  return FormulaRange{word(0), word(1), column(2), column(3)};
}

bool onlyWraps(std::uint8_t base) {
  return base == ptg::MemFunc || base == ptg::MemArea || base == ptg::Union || base == ptg::Paren || base == ptg::Attr;
}

}  // namespace

std::vector<std::uint8_t> rangeTokens(std::uint16_t externSheet, const FormulaRange& range) {
  std::vector<std::uint8_t> bytes;
  if (range.rowFirst != range.rowLast || range.colFirst != range.colLast) {
    putArea(bytes, externSheet, range);
    return bytes;
  }
  bytes.push_back(ptg::Ref3d);
  put16(bytes, externSheet);
  put16(bytes, range.rowFirst);
  put16(bytes, range.colFirst);
  return bytes;
}

std::vector<std::uint8_t> unionTokens(std::uint16_t externSheet, const FormulaRange& first,
                                      const FormulaRange& second) {
  constexpr int kWrappedSize = 11 + 11 + 1;
  std::vector<std::uint8_t> bytes{ptg::MemFunc};
  put16(bytes, kWrappedSize);
  putArea(bytes, externSheet, first);
  putArea(bytes, externSheet, second);
  bytes.push_back(ptg::Union);
  return bytes;
}

std::vector<FormulaRange> leadingRanges(std::span<const std::uint8_t> tokens) {
  std::vector<FormulaRange> ranges;
  ExpressionWalk walk(tokens);
  for (formula::Token token; walk.next(token);) {
    if (const auto range = rangeOf(token)) {
      ranges.push_back(*range);
    } else if (!onlyWraps(formula::baseToken(token.first()))) {
      break;
    }
  }
  return ranges;
}

std::optional<FormulaRange> leadingRange(std::span<const std::uint8_t> tokens) {
  ExpressionWalk walk(tokens);
  for (formula::Token token; walk.next(token);) {
    if (const auto range = rangeOf(token)) return range;
    if (!onlyWraps(formula::baseToken(token.first()))) break;
  }
  return std::nullopt;
}

}  // namespace rubrica
