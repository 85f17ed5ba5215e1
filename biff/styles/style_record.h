// The Style record, which names an XF as a cell style, and the StyleExt record that newer programs put behind it, which
// is carried as it came. Owned by StyleTables.
#pragma once

#include <cstdint>

#include "biff/book_state.h"
#include "biff/records/record_io.h"
#include "biff/unicode_string.h"

namespace rubrica {

struct Style {
  static constexpr char kName[] = "Style";
  static constexpr std::uint16_t kBuiltIn = 0x8000;
  static constexpr std::uint8_t kNoLevel = 0xFF;

  std::uint16_t xf = 0;           // bits 0 to 11 the XF index, bit 15 a built-in style
  std::uint8_t builtInId = 0;     // 0 Normal, 3 Comma, 4 Currency, 5 Percent, 6 Comma [0], 7 Currency [0]
  std::uint8_t level = kNoLevel;  // outline level of the row and column styles
  bool hasName = false;           // of a user style
  XLUnicodeString name;
  RawRecord ext{id::kStyleExt, false, {}};

  bool builtIn() const { return (xf & kBuiltIn) != 0; }
  // Reads the record and the StyleExt behind it, if there is one.
  void read(Xls& xls, std::uint16_t size, BookState& state);
  void write(Xls& xls) const;
};

}  // namespace rubrica
