// A BIFF book as its formulas see it: sheets by name through the link table, defined names, and, while a BIFF5 file is
// loaded, the meaning of that form's sheet numbers. Owned by the book.
#pragma once

#include "formula/biff5_tokens.h"
#include "formula/book_access.h"

namespace rubrica {

class BookImplT;

class BookFormulaAccess final : public formula::BookAccess, public formula::Biff5Access {
 public:
  explicit BookFormulaAccess(BookImplT& book) : _book(&book) {}

  // formula::BookAccess
  std::optional<std::uint16_t> externSheetIndex(std::u16string_view sheetName) override;
  std::optional<std::uint32_t> findName(std::u16string_view name, int sheetIndex, int scope) override;
  std::optional<std::u16string> nameText(std::uint32_t index) const override;
  std::u16string sheetPart(std::uint16_t externSheetIndex) const override;

  // formula::Biff5Access
  std::optional<std::uint16_t> externSheetIndex(std::int16_t externIndex, std::uint16_t firstSheet,
                                                std::uint16_t lastSheet) override;
  std::optional<ExternName> externName(std::int16_t externIndex, std::uint16_t nameIndex) override;
  std::u16string text(std::string_view bytes) override;

 private:
  BookImplT* _book;
};

}  // namespace rubrica
