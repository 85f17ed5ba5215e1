// Cell addresses as they stand in worksheet parts: "C7" to column 2 and row 6 and back. Absolute marks, sheets and
// ranges do not occur there and are not understood.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace rubrica::ooxml {

inline constexpr std::uint32_t kMaxPackedRow = (1U << 21U) - 1;  // what the word of a cell has room for
inline constexpr std::uint32_t kMaxPackedColumn = 0xFFFF;

// Both zero-based. False, with row and column untouched, when the text is no address or lies outside the limits above.
bool parseCellAddress(std::string_view text, std::uint32_t& row, std::uint16_t& column);

void appendCellAddress(std::string& text, std::uint32_t row, std::uint16_t column);

}  // namespace rubrica::ooxml
