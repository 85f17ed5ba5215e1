// The second stage of the compiler: postfix items become token bytes. Used by compile.cpp; keeps its room from one
// formula to the next. Borrows the book for the length of a formula.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "formula/book_access.h"
#include "formula/byte_stream.h"
#include "formula/postfix_builder.h"
#include "formula/reference_text.h"

namespace rubrica::formula {

class TokenWriter {
 public:
  // Forgets what was written and begins a formula of this book, sheet and scope.
  void begin(BookAccess& book, int sheetIndex, int scope);
  void write(std::span<const PostfixItem> items);
  // An item as it stands in postfix text. Tries what it can be in a fixed order; the first kind that accepts the item
  // writes its bytes.
  void write(std::u16string_view item);
  // Good until the next change.
  std::span<const std::uint8_t> tokens() const { return _stream.bytes(); }

 private:
  void writeOperand(const PostfixItem& item);
  void writeCall(const PostfixItem& item);
  bool writeOperator(std::u16string_view item);
  bool writeNumber(std::u16string_view item);
  bool writeBoolean(std::u16string_view item);
  bool writeFunction(std::u16string_view item);
  bool writeCell(std::u16string_view item);
  bool writeSheetCell(std::u16string_view item);
  bool writeSheetRange(std::u16string_view item);
  bool writeRange(std::u16string_view item);
  bool writeString(std::u16string_view item);
  bool writeRangeOfSheets(std::u16string_view item);
  bool writeError(std::u16string_view item);
  bool writeName(std::u16string_view item);

  void pushCall(std::uint16_t number, int count);
  void pushCell(const CellAddress& address);
  void pushRange(const RangeText& range);
  std::optional<std::uint16_t> sheetOf(std::u16string_view sheetText);

  BookAccess* _book = nullptr;
  int _sheetIndex = 0;
  int _scope = 0;
  ByteStream _stream;
  std::vector<std::size_t> _ranges;  // where the plain ranges since the last call begin
  std::u16string _text;              // of an item, or of a string in one
};

}  // namespace rubrica::formula
