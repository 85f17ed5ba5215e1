#include "biff/formula_cell.h"

namespace rubrica {
namespace {
constexpr std::byte kPtgExp{0x01}, kPtgTbl{0x02};
constexpr std::size_t kAnchorTokenSize = 5;
constexpr std::size_t kRangeSize = 6;  // two rows of 16 bits, two columns of 8
}  // namespace

std::optional<FormulaAnchor> formulaAnchor(const FormulaCell& cell) {
  const auto tokens = cell.tokens();
  if (tokens.size() < kAnchorTokenSize || (tokens[0] != kPtgExp && tokens[0] != kPtgTbl)) return std::nullopt;
  FormulaAnchor anchor{};
  std::memcpy(&anchor.row, tokens.data() + 1, 2);
  std::memcpy(&anchor.col, tokens.data() + 3, 2);
  return anchor;
}

std::optional<FormulaRange> definitionRange(const FormulaDefinition& definition) {
  if (definition.bytes.size() < kRangeSize) return std::nullopt;
  std::uint16_t rows[2];
  std::uint8_t cols[2];
  std::memcpy(rows, definition.bytes.data(), sizeof(rows));
  std::memcpy(cols, definition.bytes.data() + sizeof(rows), sizeof(cols));
  return FormulaRange{rows[0], rows[1], cols[0], cols[1]};
}

CellType cachedType(const FormulaValue& value) {
  switch (value.kind()) {
    case FormulaValue::Kind::number:
      return CellType::number;
    case FormulaValue::Kind::string:
      return CellType::string;
    case FormulaValue::Kind::boolean:
      return CellType::boolean;
    case FormulaValue::Kind::error:
      return CellType::error;
    case FormulaValue::Kind::blank:
      return CellType::blank;
    case FormulaValue::Kind::unknown:
      break;
  }
  return CellType::empty;
}

}  // namespace rubrica
