// Reading cells: types, values, formats.
#include <charconv>
#include <cmath>

#include "engine/address.h"
#include "engine/date_serial.h"
#include "engine/xlerror.h"
#include "xml/book_impl.h"
#include "xml/cell_errors.h"
#include "xml/number_text.h"
#include "xml/rich_text.h"
#include "xml/shared_strings.h"
#include "xml/sheet_impl.h"
#include "xml/styles.h"
#include "xml/xml_format.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

using ooxml::cell_type;
using ooxml::packed_cell;

constexpr char kNoNumber[] = "this cell doesn't contain a number";
constexpr char kNoString[] = "this cell doesn't contain a string";

std::size_t takeDigits(std::string_view& text, std::size_t most, int& value) {
  value = 0;
  std::size_t count = 0;
  for (; count < most && count < text.size() && text[count] >= '0' && text[count] <= '9'; ++count) {
    value = value * 10 + (text[count] - '0');
  }
  text.remove_prefix(count);
  return count;
}

bool takeChar(std::string_view& text, char c) {
  if (text.empty() || text.front() != c) return false;
  text.remove_prefix(1);
  return true;
}

// The serial number of an ISO 8601 date with or without a time, as strict workbooks hold dates.
std::optional<double> parseDate(std::string_view text, bool date1904) {
  constexpr std::size_t kYear = 4, kTwo = 2, kMilliseconds = 3;
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, millisecond = 0;
  if (takeDigits(text, kYear, year) != kYear || !takeChar(text, '-') || takeDigits(text, kTwo, month) != kTwo ||
      !takeChar(text, '-') || takeDigits(text, kTwo, day) != kTwo) {
    return std::nullopt;
  }
  if (takeChar(text, 'T')) {
    if (takeDigits(text, kTwo, hour) != kTwo || !takeChar(text, ':') || takeDigits(text, kTwo, minute) != kTwo) {
      return std::nullopt;
    }
    if (takeChar(text, ':') && takeDigits(text, kTwo, second) != kTwo) return std::nullopt;
    if (takeChar(text, '.')) {
      std::size_t digits = takeDigits(text, kMilliseconds, millisecond);
      for (; digits < kMilliseconds; ++digits) millisecond *= 10;
      while (!text.empty() && text.front() >= '0' && text.front() <= '9') text.remove_prefix(1);
    }
  }
  takeChar(text, 'Z');
  if (!text.empty()) return std::nullopt;
  return datePack(date1904, year, month, day, hour, minute, second, millisecond);
}

}  // namespace

template <class Tag>
bool XMLSheetImplT<Tag>::hasContent(const Cell& cell) {
  return cell.isset_v() || cell.isset_is() || cell.isset_f();
}

template <class Tag>
std::optional<std::size_t> XMLSheetImplT<Tag>::sharedIndexOf(const Cell& cell) {
  if (cell.type() != cell_type::shared || !cell.isset_v()) return std::nullopt;
  packed_cell::value_buffer buffer;
  const std::string_view text = cell.view_v(buffer);
  std::size_t index = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), index);
  if (error != std::errc{} || stop != text.data() + text.size()) return std::nullopt;
  return index;
}

template <class Tag>
std::uint32_t XMLSheetImplT<Tag>::sharedStringCells() const {
  std::uint32_t count = 0;
  const auto* data = this->find_sheetData();
  for (std::size_t i = 0; data != nullptr && i < data->size_row(); ++i) {
    const Row& row = data->get_row(i);
    for (std::size_t k = 0; k < row.size_c(); ++k) {
      if (row.get_c(k).type() == cell_type::shared && row.get_c(k).isset_v()) ++count;
    }
  }
  return count;
}

template <class Tag>
CellType XMLSheetImplT<Tag>::typeOf(const Cell* cell) {
  if (cell == nullptr) return CellType::empty;
  if (!hasContent(*cell)) return cell->isset_s() ? CellType::blank : CellType::empty;
  switch (cell->type()) {
    case cell_type::none:
    case cell_type::number:
    case cell_type::date:
      break;
    case cell_type::shared:
    case cell_type::text:
    case cell_type::inline_text:
      return CellType::string;
    case cell_type::boolean:
      return CellType::boolean;
    case cell_type::error:
      return CellType::error;
  }
  return CellType::number;
}

template <class Tag>
CellType XMLSheetImplT<Tag>::cellType(int row, int col) {
  return guarded(_book->lastMessage(), CellType::empty, [&] { return typeOf(findCell(row, col)); });
}

template <class Tag>
bool XMLSheetImplT<Tag>::isFormula(int row, int col) {
  return guarded(_book->lastMessage(), false, [&] {
    const Cell* cell = findCell(row, col);
    return cell != nullptr && cell->isset_f();
  });
}

template <class Tag>
auto XMLSheetImplT<Tag>::formatOf(const Cell* cell, int col) -> FormatPtr {
  Styles<Tag>* styles = _book->styles();
  if (styles == nullptr || styles->formatCount() == 0) throw xlerror("formats are not found");
  const std::uint32_t index = cell != nullptr ? cell->get_s() : _colFormats[static_cast<std::size_t>(col)];
  if (index >= static_cast<std::uint32_t>(styles->formatCount())) throw xlerror("format not found");
  return styles->format(static_cast<int>(index));
}

template <class Tag>
void XMLSheetImplT<Tag>::giveFormat(const Cell& cell, int col, FormatPtr* format) {
  if (format != nullptr) *format = formatOf(&cell, col);
}

template <class Tag>
auto XMLSheetImplT<Tag>::cellFormat(int row, int col) -> FormatPtr {
  return guarded(_book->lastMessage(), FormatPtr{}, [&] { return formatOf(findCell(row, col), col); });
}

template <class Tag>
double XMLSheetImplT<Tag>::numberOf(const Cell& cell) {
  packed_cell::value_buffer buffer;
  const std::string_view text = cell.view_v(buffer);
  std::optional<double> number;
  switch (cell.type()) {
    case cell_type::none:
    case cell_type::number:
      number = parseNumber(text);
      break;
    case cell_type::text:
      number = parseNumber(text);
      // "inf" and "nan" are words here.
      if (number && !std::isfinite(*number)) number = std::nullopt;
      break;
    case cell_type::date:
      number = parseDate(text, _book->isDate1904());
      break;
    case cell_type::boolean:
    case cell_type::error:
    case cell_type::shared:
    case cell_type::inline_text:
      break;
  }
  if (!number) throw xlerror(kNoNumber);
  return *number;
}

template <class Tag>
double XMLSheetImplT<Tag>::readNum(int row, int col, FormatPtr* format) {
  if (format != nullptr) *format = nullptr;
  return guarded(_book->lastMessage(), 0.0, [&] {
    const Cell& cell = cellAt(row, col);
    const double value = numberOf(cell);
    giveFormat(cell, col, format);
    return value;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::readText(const Cell& cell) {
  packed_cell::value_buffer buffer;
  switch (cell.type()) {
    case cell_type::none:
    case cell_type::number:
    case cell_type::date:
      if (!cell.isset_v()) return false;
      break;
    case cell_type::text:
      break;
    case cell_type::inline_text: {
      const auto* item = cell.find_is();
      const bool hasRuns = item != nullptr && !item->isset_t() && item->size_r() > 0;
      fromXstring(item == nullptr ? std::string_view()
                  : hasRuns       ? storedText(item->get_r(0))
                                  : storedText(*item),
                  _text);
      return true;
    }
    case cell_type::shared: {
      _text.clear();
      if (_book->sharedStrings() == nullptr) throw xlerror("sharedStrings not found");
      if (cell.view_v(buffer).empty()) return true;
      const auto index = sharedIndexOf(cell);
      if (!index) throw xlerror("index is out of range or no value");
      _book->sharedStrings()->get(*index, _text);
      return true;
    }
    case cell_type::boolean:
    case cell_type::error:
      return false;
  }
  fromXstring(cell.view_v(buffer), _text);
  return true;
}

template <class Tag>
auto XMLSheetImplT<Tag>::readStr(int row, int col, FormatPtr* format) -> Text {
  if (format != nullptr) *format = nullptr;
  return guarded(_book->lastMessage(), Text{}, [&] {
    const Cell& cell = cellAt(row, col);
    if (!readText(cell)) throw xlerror(kNoString);
    giveFormat(cell, col, format);
    return _text.c_str();
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::readBool(int row, int col, FormatPtr* format) {
  if (format != nullptr) *format = nullptr;
  return guarded(_book->lastMessage(), false, [&] {
    const Cell& cell = cellAt(row, col);
    if (cell.type() != cell_type::boolean || !cell.isset_v()) throw xlerror("this cell doesn't contain a bool");
    giveFormat(cell, col, format);
    packed_cell::value_buffer buffer;
    const std::string_view text = cell.view_v(buffer);
    return text == "1" || text == "true";
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::readBlank(int row, int col, FormatPtr* format) {
  if (format != nullptr) *format = nullptr;
  return guarded(_book->lastMessage(), false, [&] {
    const Cell& cell = cellAt(row, col);
    if (typeOf(&cell) != CellType::blank) throw xlerror("cell is not blank");
    giveFormat(cell, col, format);
    return true;
  });
}

template <class Tag>
ErrorType XMLSheetImplT<Tag>::readError(int row, int col) {
  return guarded(_book->lastMessage(), ErrorType::noError, [&] {
    const Cell& cell = cellAt(row, col);
    packed_cell::value_buffer buffer;
    if (cell.type() != cell_type::error) throw xlerror("this cell doesn't contain an error");
    return errorOfWord(cell.view_v(buffer));
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::isDate(int row, int col) {
  return guarded(_book->lastMessage(), false, [&] {
    const Cell* cell = findCell(row, col);
    if (typeOf(cell) != CellType::number) return false;
    if (cell->type() == cell_type::date) return true;
    Styles<Tag>* styles = _book->styles();
    if (styles == nullptr || cell->get_s() >= static_cast<std::uint32_t>(styles->formatCount())) return false;
    return styles->isDateNumFormat(styles->format(static_cast<int>(cell->get_s()))->numFormat());
  });
}

template <class Tag>
int XMLSheetImplT<Tag>::firstRow() {
  return _used.firstRow;
}
template <class Tag>
int XMLSheetImplT<Tag>::lastRow() {
  return _used.lastRow;
}
template <class Tag>
int XMLSheetImplT<Tag>::firstCol() {
  return _used.firstCol;
}
template <class Tag>
int XMLSheetImplT<Tag>::lastCol() {
  return _used.lastCol;
}

template <class Tag>
void XMLSheetImplT<Tag>::addrToRowCol(Text addr, int* row, int* col, bool* rowRelative, bool* colRelative) {
  guarded(_book->lastMessage(), [&] {
    const CellAddress address = parseAddress(viewOf(addr));
    if (row != nullptr) *row = address.row;
    if (col != nullptr) *col = address.col;
    if (rowRelative != nullptr) *rowRelative = address.rowRelative;
    if (colRelative != nullptr) *colRelative = address.colRelative;
  });
}

template <class Tag>
auto XMLSheetImplT<Tag>::rowColToAddr(int row, int col, bool rowRelative, bool colRelative) -> Text {
  return guarded(_book->lastMessage(), Text{}, [&] {
    _text = addressText({row, col, rowRelative, colRelative});
    return _text.c_str();
  });
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
