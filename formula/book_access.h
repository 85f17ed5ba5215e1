// What formulas need of the book they stand in: its sheets by name, its defined names, its table of external sheets.
// Implemented by the book (and by fakes in tests); the compiler and the printer borrow it for one call.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace rubrica::formula {

class BookAccess {
 public:
  virtual ~BookAccess() = default;

  // The index in the ExternSheet table of the sheet with this name (without quotes), entered there when it is needed
  // for the first time. Nothing when there is no such sheet: the text then counts as an unknown name. May be asked for
  // a formula that fails further on. Two-sheet parts arrive as they are written, "First:Last".
  virtual std::optional<std::uint16_t> externSheetIndex(std::u16string_view sheetName) = 0;

  // The 0-based index of a defined name, or nothing. `sheetIndex` is the sheet of the formula and `scope` the scope
  // that the caller of compileFormula gave.
  virtual std::optional<std::uint32_t> findName(std::u16string_view name, int sheetIndex, int scope) = 0;

  // The text of the defined name with this 0-based index, or nothing outside the table.
  virtual std::optional<std::u16string> nameText(std::uint32_t index) const = 0;

  // What stands before the "!" of a reference over this ExternSheet entry, quoted where needed: see sheetPartText().
  // Exactly "#REF!" when the entry doesn't exist or its sheets don't.
  virtual std::u16string sheetPart(std::uint16_t externSheetIndex) const = 0;
};

}  // namespace rubrica::formula
