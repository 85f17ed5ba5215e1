// The 30-bit number form of RK records (RkNumber of the published format).
#pragma once

#include <bit>
#include <cstdint>
#include <optional>

namespace rubrica {

// Bit 1: a signed 30-bit integer; otherwise the high bits of a double. Bit 0: divided by 100.
inline double decodeRk(std::uint32_t rk) {
  const double value = (rk & 2u) != 0 ? static_cast<double>(static_cast<std::int32_t>(rk) >> 2)
                                      : std::bit_cast<double>(std::uint64_t{rk & ~3u} << 32);
  return (rk & 1u) != 0 ? value / 100.0 : value;
}

// The plain form, for values whose double has zeros in all bits that the form lacks. The integer and hundredths forms
// are read but never made.
inline std::optional<std::uint32_t> encodeRk(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  if ((bits & 0x3'FFFF'FFFFu) != 0) return std::nullopt;
  return static_cast<std::uint32_t>(bits >> 32);
}

}  // namespace rubrica
