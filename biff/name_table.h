// The defined names of a book: Lbl records in file order, each with its scope and its expression. Owned by the book;
// texts live in the book's pool.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "biff/book_state.h"
#include "biff/expression_walk.h"
#include "biff/unicode_string.h"
#include "engine/folded_index.h"
#include "engine/sheet_name.h"

namespace rubrica {

// Codes of the built-in names that a sheet gives itself.
enum class BuiltInName : char16_t { printArea = 6, printTitles = 7 };

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

  // The `itab` of a sheet by its position.
  static std::uint16_t scopeOf(int sheet) { return static_cast<std::uint16_t>(sheet + 1); }
  bool hidden() const { return (grbit & kHidden) != 0; }
  bool builtIn() const { return (grbit & kBuiltIn) != 0; }
  // The name as people see it: that of its code for a built-in name.
  std::u16string_view displayName() const;
};

class NameTable {
 public:
  // To append to, and to change all but names and scopes in: those are what entries are found by.
  std::vector<Lbl>& names() { return _names; }
  const std::vector<Lbl>& names() const { return _names; }

  void read(Xls& xls, std::uint16_t size, BookState& state);
  void write(Xls& xls) const;
  void clear() {
    _names.clear();
    _index.clear();
  }
  // The first entry with this name, whatever its case, or this built-in name, in a scope (`itab`).
  std::optional<std::size_t> find(std::u16string_view name, std::uint16_t itab) const;
  std::optional<std::size_t> find(BuiltInName name, std::uint16_t itab) const;

  // Removing and copying names moves the indexes by which formulas know them: each of these answers where every name
  // went, for BookImplT::renumberNames.
  [[nodiscard]] NameMapping remove(const std::function<bool(const Lbl&)>& goes);
  // Renumbers the sheets of scopes; `mapping` gives the new position of a sheet, negative for a removed one, whose
  // names go.
  [[nodiscard]] NameMapping renumberSheets(const std::function<int(int)>& mapping);
  // Repeats the names of one sheet's scope for another, behind all others. The mapping leads from each to its copy.
  [[nodiscard]] NameMapping cloneScope(int fromSheet, int toSheet);

 private:
  void indexNewNames() const;

  std::vector<Lbl> _names;
  mutable FoldedIndex _index;  // of the first names of the list, made up to date when a name is looked for
};

}  // namespace rubrica
