// A formula cell: its parsed expression as the file holds it, the cached value, and the text of a cached string.
// Rows of the sheet's formula table; bytes and text live in the book's pool. What shared and array formulas and data
// tables share stands in FormulaDefinitions.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>

#include "engine/enums.h"

namespace rubrica {

// The body of a ShrFmla, Array or Table record.
struct FormulaDefinition {
  std::uint16_t recordId = 0;
  std::span<const std::byte> bytes;  // the record's body: the range comes first in all three
};

struct FormulaRange {
  int rowFirst = 0, rowLast = 0, colFirst = 0, colLast = 0;
};

// FormulaValue of the published format: a double, or, with 0xFFFF in the last two bytes, a kind and its value.
struct FormulaValue {
  std::array<std::uint8_t, 8> bytes{};

  enum class Kind { string = 0, boolean = 1, error = 2, blank = 3, number = -1, unknown = -2 };
  static constexpr std::size_t kKindByte = 0, kPayloadByte = 2;

  bool isNumber() const { return bytes[6] != 0xFF || bytes[7] != 0xFF; }
  Kind kind() const {
    if (isNumber()) return Kind::number;
    return bytes[kKindByte] <= 3 ? static_cast<Kind>(bytes[kKindByte]) : Kind::unknown;
  }
  double number() const {
    double value = 0;
    std::memcpy(&value, bytes.data(), sizeof(value));
    return value;
  }
  std::uint8_t payload() const { return bytes[kPayloadByte]; }

  static FormulaValue ofNumber(double value) {
    FormulaValue made;
    std::memcpy(made.bytes.data(), &value, sizeof(value));
    if (!made.isNumber()) made.bytes[6] = 0xF8;  // a NaN whose bits would say "not a number at all"
    return made;
  }
  static FormulaValue of(Kind kind, std::uint8_t payload = 0) {
    FormulaValue made;
    made.bytes[kKindByte] = static_cast<std::uint8_t>(kind);
    made.bytes[kPayloadByte] = payload;
    made.bytes[6] = made.bytes[7] = 0xFF;
    return made;
  }
};

struct FormulaCell {
  std::uint16_t row = 0, col = 0, xf = 0, grbit = 0;
  FormulaValue value;
  std::uint32_t chn = 0;
  std::uint16_t tokenSize = 0;            // cce: how many of the bytes are tokens; array constants follow
  std::span<const std::byte> expression;  // tokens, then the data of array constants
  const char16_t* text = nullptr;         // cached string, when the value is one
  std::uint16_t textLength = 0;

  static constexpr std::uint16_t kAlwaysCalc = 1, kCalcOnLoad = 2, kSharedFormula = 8;

  std::span<const std::byte> tokens() const { return expression.first(tokenSize); }
  std::u16string_view cachedText() const {
    return text == nullptr ? std::u16string_view() : std::u16string_view(text, textLength);
  }
};

// The cell that a PtgExp or PtgTbl token points to: where the definition of a shared or array formula or a table hangs.
struct FormulaAnchor {
  std::uint16_t row, col;
};
std::optional<FormulaAnchor> formulaAnchor(const FormulaCell& cell);

// The range that a definition covers; nothing when its bytes are too short for one.
std::optional<FormulaRange> definitionRange(const FormulaDefinition& definition);

// The cell type that the cached value stands for.
CellType cachedType(const FormulaValue& value);

}  // namespace rubrica
