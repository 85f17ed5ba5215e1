// Writing cells: values, blanks, formats, copies.
#include <array>
#include <charconv>

#include "engine/xlerror.h"
#include "xml/book_impl.h"
#include "xml/cell_errors.h"
#include "xml/number_text.h"
#include "xml/shared_strings.h"
#include "xml/sheet_impl.h"
#include "xml/styles.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

using ooxml::cell_type;

// Forms of writeStr's text.
constexpr int kInline = 1;

}  // namespace

template <class Tag>
void XMLSheetImplT<Tag>::setCellFormat(int row, int col, FormatPtr format) {
  guarded(_book->lastMessage(), [&] {
    if (format == nullptr) throw xlerror("specified format not found");
    needCell(row, col, format);
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::writeNum(int row, int col, double value, FormatPtr format) {
  return guarded(_book->lastMessage(), false, [&] {
    NumberBuffer buffer;
    emptyCell(row, col, format).set_v(numberText(value, buffer));
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::writeStr(int row, int col, Text value, FormatPtr format, int kind) {
  return guarded(_book->lastMessage(), false, [&] {
    const std::u16string_view text = viewOf(value);
    checkCell(row, col);
    if (text.size() > kMaxCellText) throw xlerror("string is too long");
    if (kind == kInline) {
      const std::string stored = toXstring(text);
      emptyCell(row, col, format).set_v(stored);
      return true;
    }
    if (format != nullptr) indexOfFormat(format);
    const std::uint32_t index = _book->needSharedStrings().add(text);
    Cell& cell = emptyCell(row, col, format);
    std::array<char, 16> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), index).ptr;
    cell.set_type(cell_type::shared);
    cell.set_v({digits.data(), static_cast<std::size_t>(end - digits.data())});
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::writeBool(int row, int col, bool value, FormatPtr format, ErrorType errCode) {
  return guarded(_book->lastMessage(), false, [&] {
    const bool isError = errCode != ErrorType::noError;
    const std::string_view word = isError ? wordOfError(errCode) : value ? "1" : "0";
    if (word.empty()) throw xlerror("unknown error code");
    Cell& cell = emptyCell(row, col, format);
    cell.set_type(isError ? cell_type::error : cell_type::boolean);
    cell.set_v(word);
    return true;
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::writeError(int row, int col, ErrorType error, FormatPtr format) {
  writeBool(row, col, false, format, error);
}

template <class Tag>
bool XMLSheetImplT<Tag>::writeBlank(int row, int col, FormatPtr format) {
  return guarded(_book->lastMessage(), false, [&] {
    emptyCell(row, col, format);
    return true;
  });
}

// The copy has the text of the source's formula as it stands there: references don't move.
template <class Tag>
bool XMLSheetImplT<Tag>::copyCell(int rowSrc, int colSrc, int rowDst, int colDst) {
  return guarded(_book->lastMessage(), false, [&] {
    const Cell* source = findCell(rowSrc, colSrc);
    if (source == nullptr) throw xlerror("empty cell");
    checkCell(rowDst, colDst);
    Cell copy = *source;
    if (copy.isset_f()) {
      const std::string formula = formulaText(rowSrc, colSrc, copy);
      copy.set_f(formula);
    }
    Cell& target = emptyCell(rowDst, colDst, nullptr);
    target = std::move(copy);
    target.set_position(static_cast<std::uint32_t>(rowDst), static_cast<std::uint16_t>(colDst));
    return true;
  });
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
