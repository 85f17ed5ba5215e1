// The 32-bit word that the index holds for a cell: bit 0 says that there is one, bits 1 to 3 its kind, bits 4 to 31 the
// row of that kind's table.
#pragma once

#include <cstdint>

namespace rubrica {

enum class CellKind : std::uint32_t {
  none = 0,
  rk = 1,
  number = 2,
  labelSst = 3,
  blank = 4,
  boolErr = 5,
  formula = 6,
  label = 7
};

struct CellWord {
  std::uint32_t bits = 0;

  static CellWord of(CellKind kind, std::uint32_t index) {
    return {1u | static_cast<std::uint32_t>(kind) << 1 | index << 4};
  }
  bool present() const { return (bits & 1u) != 0; }
  CellKind kind() const { return present() ? static_cast<CellKind>(bits >> 1 & 7u) : CellKind::none; }
  std::uint32_t index() const { return bits >> 4; }
};

}  // namespace rubrica
