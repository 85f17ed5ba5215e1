// Token bytes of BIFF5 and BIFF7 workbooks rewritten as BIFF8 token bytes. Used when formulas of such files are loaded;
// owns nothing.
//
// The older form packs a reference's flags into the row word and its column into one byte, names sheets in the token
// itself, and has texts of one byte a character without a flag. Everything that counts bytes (jumps of PtgAttr, sizes
// of the PtgMem family) is counted anew.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace rubrica::formula {

// What the conversion needs of the book. Answers of nothing make the formula inconvertible.
class Biff5Access {
 public:
  virtual ~Biff5Access() = default;

  // The BIFF8 ExternSheet index of a 3d reference. `externIndex` is negative for the book itself, and first and last
  // sheet then count its sheets from 0; 0xFFFF stands for deleted sheets.
  virtual std::optional<std::uint16_t> externSheetIndex(std::int16_t externIndex, std::uint16_t firstSheet,
                                                        std::uint16_t lastSheet) = 0;

  // The BIFF8 ExternSheet index and name index of an external name; both name indexes count from 1.
  struct ExternName {
    std::uint16_t externSheetIndex;
    std::uint16_t nameIndex;
  };
  virtual std::optional<ExternName> externName(std::int16_t externIndex, std::uint16_t nameIndex) = 0;

  // The text of bytes in the book's code page.
  virtual std::u16string text(std::string_view bytes) = 0;
};

// The same formula in BIFF8 form, or nothing when it is cut off, holds a token that has no such form (array constants,
// whose values stand behind the tokens, and tokens that BIFF8 doesn't know), jumps into the middle of a token, or names
// a sheet or external name that `book` doesn't give. Errors of deleted sheets stay errors, without the sheet.
std::optional<std::vector<std::uint8_t>> biff8FromBiff5(std::span<const std::uint8_t> tokens, Biff5Access& book);

}  // namespace rubrica::formula
