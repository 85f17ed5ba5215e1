// The defined names of a book: Lbl records in file order, each with its scope and its expression. Owned by the book;
// texts live in the book's pool.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "biff/book_state.h"
#include "biff/unicode_string.h"

namespace rubrica {

struct Lbl {
  static constexpr std::uint16_t kHidden = 0x0001, kBuiltIn = 0x0020;

  std::uint16_t grbit = 0;
  std::uint8_t chKey = 0;
  std::uint16_t reserved = 0;
  std::uint16_t itab = 0;                    // 0: the whole book, otherwise the sheet's position plus 1
  std::array<std::uint8_t, 4> textCounts{};  // characters of the menu, description, help and status texts
  XLUnicodeStringNoCch name;                 // of a built-in name one character, its code
  std::vector<std::uint8_t> formula;         // tokens
  std::vector<std::byte> texts;              // the texts as they came, with what else stood behind the tokens

  bool builtIn() const { return (grbit & kBuiltIn) != 0; }
  // The name as people see it: that of its code for a built-in name.
  std::u16string displayName() const;
};

// Names of sheets and ranges compare without regard to the case of Latin-1, Greek and Cyrillic letters.
bool sameNameIgnoringCase(std::u16string_view a, std::u16string_view b);

class NameTable {
 public:
  std::vector<Lbl>& names() { return _names; }
  const std::vector<Lbl>& names() const { return _names; }

  void read(Xls& xls, std::uint16_t size, BookState& state);
  void write(Xls& xls) const;
  void clear() { _names.clear(); }
  // Renumbers the sheets of scopes; `mapping` gives the new position of a sheet, negative for a removed one, whose
  // names go.
  void renumberSheets(const std::function<int(int)>& mapping);
  // Repeats the names of one sheet's scope for another.
  void cloneScope(int fromSheet, int toSheet);

 private:
  std::vector<Lbl> _names;
};

}  // namespace rubrica
