// A1 addresses: "B7", "$B$7". Shared by both file forms; limits are those of the larger one. Free functions without
// state.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "engine/export.h"

namespace rubrica {

inline constexpr int kMaxRow = 1048575;
inline constexpr int kMaxCol = 16383;

struct CellAddress {
  int row = 0;
  int col = 0;
  bool rowRelative = true;
  bool colRelative = true;
};

// The letters of a 0-based column: 0 is A, 25 Z, 26 AA.
RUBRICA_API std::u16string columnLetters(int col);

// The text of an address; a part that isn't relative has "$" before it. Throws xlerror "row must be in range 0-1048575"
// or "col must be in range 0-16383".
RUBRICA_API std::u16string addressText(const CellAddress& address);

// Parses letters and digits with optional "$" signs, in either case. Throws xlerror "invalid cell address" for
// anything else, and the range messages of addressText.
RUBRICA_API CellAddress parseAddress(std::u16string_view text);

// The same for the narrow text of a file; nothing for what parseAddress refuses.
std::optional<CellAddress> addressIn(std::string_view text);

}  // namespace rubrica
