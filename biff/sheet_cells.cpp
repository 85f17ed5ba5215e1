// Cells of an .xls sheet: types, readers and writers.
#include "biff/book_impl.h"
#include "biff/rk_value.h"
#include "biff/sheet_impl.h"
#include "engine/address.h"

namespace rubrica {
namespace {

constexpr std::size_t kMaxCellText = 32767;  // characters

std::u16string_view viewOf(const char16_t* text) {
  return text == nullptr ? std::u16string_view() : text;
}

}  // namespace

BookState& SheetImplT::state() {
  return _book->state();
}

void SheetImplT::checkCell(int row, int col) {
  if (row < 0 || row >= kBiffRows) throw xlerror("row must be in range 0-65535");
  if (col < 0 || col >= kBiffCols) throw xlerror("col must be in range 0-255");
}

CellWord SheetImplT::cellAt(int row, int col) const {
  checkCell(row, col);
  return _cells.word(row, col);
}

SheetImplT::FormatPtr SheetImplT::formatOfXf(std::uint16_t xf) {
  StyleTables& styles = _book->styles();
  if (styles.formatCount() == 0) throw xlerror("formats are not found");
  if (xf >= styles.formatCount()) throw xlerror("format not found");
  return styles.format(xf);
}

std::uint16_t SheetImplT::xfFor(FormatPtr format, CellWord word, int col) {
  if (format != nullptr) {
    const auto xf = _book->styles().indexOf(format);
    if (!xf) throw xlerror("specified format not found");
    return *xf;
  }
  if (word.present()) return _cells.xf(word);
  const int columnXf = _columns.format(col);
  return columnXf >= 0 ? static_cast<std::uint16_t>(columnXf) : kDefaultCellXf;
}

void SheetImplT::giveFormat(CellWord word, FormatPtr* format) {
  if (format != nullptr) *format = formatOfXf(_cells.xf(word));
}

void SheetImplT::widenDimensions(int row, int col) {
  const auto widen = [](auto& first, auto& last, int position) {
    using Bound = std::remove_reference_t<decltype(first)>;
    if (first == last) {
      first = static_cast<Bound>(position);
      last = static_cast<Bound>(position + 1);
      return;
    }
    first = std::min(first, static_cast<Bound>(position));
    last = std::max(last, static_cast<Bound>(position + 1));
  };
  widen(_dimensions.rwMic, _dimensions.rwMac, row);
  widen(_dimensions.colMic, _dimensions.colMac, col);
}

CellType SheetImplT::cellType(int row, int col) {
  return guarded(state(), CellType::empty, [&] {
    const CellWord word = cellAt(row, col);
    switch (word.kind()) {
      case CellKind::none:
        break;
      case CellKind::rk:
      case CellKind::number:
        return CellType::number;
      case CellKind::labelSst:
      case CellKind::label:
        return CellType::string;
      case CellKind::blank:
        return CellType::blank;
      case CellKind::boolErr:
        return _cells.boolErr(word).fError != 0 ? CellType::error : CellType::boolean;
      case CellKind::formula:
        return cachedType(_cells.formula(word).value);
    }
    return CellType::empty;
  });
}

bool SheetImplT::isFormula(int row, int col) {
  return guarded(state(), false, [&] { return cellAt(row, col).kind() == CellKind::formula; });
}

SheetImplT::FormatPtr SheetImplT::cellFormat(int row, int col) {
  return guarded(state(), FormatPtr{}, [&] { return formatOfXf(xfFor(nullptr, cellAt(row, col), col)); });
}

void SheetImplT::setCellFormat(int row, int col, FormatPtr format) {
  guarded(state(), [&] {
    const CellWord word = cellAt(row, col);
    const auto xf = _book->styles().indexOf(format);
    if (!xf) throw xlerror("specified format is not found");
    if (word.present()) {
      _cells.setXf(word, *xf);
    } else {
      _cells.addBlank(row, col, *xf);
    }
    widenDimensions(row, col);
  });
}

std::optional<double> SheetImplT::numberIn(CellWord word) {
  if (word.kind() == CellKind::rk) return decodeRk(_cells.rk(word).rk);
  if (word.kind() == CellKind::number) return _cells.number(word).value;
  if (word.kind() == CellKind::formula && _cells.formula(word).value.isNumber())
    return _cells.formula(word).value.number();
  return std::nullopt;
}

double SheetImplT::numberAt(CellWord word) {
  const auto number = numberIn(word);
  if (!number) throw xlerror("this cell doesn't contain a number");
  return *number;
}

SheetImplT::Text SheetImplT::textAt(CellWord word) {
  Text text = nullptr;
  if (word.kind() == CellKind::labelSst) {
    text = _book->sst().text(_cells.labelSst(word).isst);
  } else if (word.kind() == CellKind::label) {
    text = _cells.label(word).text.text;
  } else if (word.kind() == CellKind::formula && cachedType(_cells.formula(word).value) == CellType::string) {
    text = _cells.formula(word).text;
  } else {
    return nullptr;
  }
  return text == nullptr ? u"" : text;
}

double SheetImplT::readNum(int row, int col, FormatPtr* format) {
  if (format != nullptr) *format = nullptr;
  return guarded(state(), 0.0, [&] {
    const CellWord word = cellAt(row, col);
    const double value = numberAt(word);
    giveFormat(word, format);
    return value;
  });
}

bool SheetImplT::writeNum(int row, int col, double value, FormatPtr format) {
  return guarded(state(), false, [&] {
    const CellWord word = cellAt(row, col);
    const std::uint16_t xf = xfFor(format, word, col);
    const auto rk = encodeRk(value);
    const CellKind kind = rk ? CellKind::rk : CellKind::number;
    if (word.kind() == kind) {
      if (rk) {
        _cells.rk(word).rk = *rk;
      } else {
        _cells.number(word).value = value;
      }
      _cells.setXf(word, xf);
    } else {
      if (rk) {
        _cells.addRk(row, col, xf, *rk);
      } else {
        _cells.addNumber(row, col, xf, value);
      }
    }
    widenDimensions(row, col);
    return true;
  });
}

SheetImplT::Text SheetImplT::readStr(int row, int col, FormatPtr* format) {
  if (format != nullptr) *format = nullptr;
  return guarded(state(), Text{}, [&]() -> Text {
    const CellWord word = cellAt(row, col);
    const Text text = textAt(word);
    if (text == nullptr) throw xlerror("this cell doesn't contain a string");
    giveFormat(word, format);
    return text;
  });
}

bool SheetImplT::writeStr(int row, int col, Text value, FormatPtr format, int /*kind*/) {
  return guarded(state(), false, [&] {
    const CellWord word = cellAt(row, col);
    const std::u16string_view text = viewOf(value);
    if (text.size() > kMaxCellText) throw xlerror("string is too long");
    const std::uint16_t xf = xfFor(format, word, col);
    if (word.kind() == CellKind::labelSst) {
      _book->replaceSharedString(_cells.labelSst(word).isst, text);
      _cells.setXf(word, xf);
    } else {
      const std::uint32_t isst = _book->addSharedString(text);
      _cells.addLabelSst(row, col, xf, isst);
    }
    widenDimensions(row, col);
    return true;
  });
}

bool SheetImplT::readBool(int row, int col, FormatPtr* format) {
  if (format != nullptr) *format = nullptr;
  return guarded(state(), false, [&] {
    const CellWord word = cellAt(row, col);
    bool value = false;
    if (word.kind() == CellKind::boolErr && _cells.boolErr(word).fError == 0) {
      value = _cells.boolErr(word).value == 1;
    } else if (word.kind() == CellKind::formula && cachedType(_cells.formula(word).value) == CellType::boolean) {
      value = _cells.formula(word).value.payload() == 1;
    } else {
      throw xlerror("this cell doesn't contain a bool");
    }
    giveFormat(word, format);
    return value;
  });
}

bool SheetImplT::writeBool(int row, int col, bool value, FormatPtr format, ErrorType errCode) {
  return guarded(state(), false, [&] {
    const CellWord word = cellAt(row, col);
    const std::uint16_t xf = xfFor(format, word, col);
    const bool isError = errCode != ErrorType::noError;
    const auto stored = static_cast<std::uint8_t>(isError ? static_cast<int>(errCode) : (value ? 1 : 0));
    if (word.kind() == CellKind::boolErr) {
      BoolErrCell& cell = _cells.boolErr(word);
      cell.value = stored;
      cell.fError = isError ? 1 : 0;
      cell.xf = xf;
    } else {
      _cells.addBoolErr(row, col, xf, stored, isError);
    }
    widenDimensions(row, col);
    return true;
  });
}

bool SheetImplT::readBlank(int row, int col, FormatPtr* format) {
  return guarded(state(), false, [&] {
    if (format == nullptr) throw xlerror("format mustn't be NULL");
    *format = nullptr;
    const CellWord word = cellAt(row, col);
    const bool blank = word.kind() == CellKind::blank ||
                       (word.kind() == CellKind::formula && cachedType(_cells.formula(word).value) == CellType::blank);
    if (!blank) throw xlerror("this cell doesn't contain a blank");
    giveFormat(word, format);
    return true;
  });
}

bool SheetImplT::writeBlank(int row, int col, FormatPtr format) {
  return guarded(state(), false, [&] {
    const CellWord word = cellAt(row, col);
    const std::uint16_t xf = xfFor(format, word, col);
    if (word.kind() == CellKind::blank) {
      _cells.setXf(word, xf);
    } else {
      _cells.addBlank(row, col, xf);
    }
    widenDimensions(row, col);
    return true;
  });
}

bool SheetImplT::isDate(int row, int col) {
  return guarded(state(), false, [&] {
    const CellWord word = cellAt(row, col);
    const bool number = word.kind() == CellKind::rk || word.kind() == CellKind::number ||
                        (word.kind() == CellKind::formula && _cells.formula(word).value.isNumber());
    return number && _book->styles().isDateNumFormat(formatOfXf(_cells.xf(word))->numFormat());
  });
}

ErrorType SheetImplT::readError(int row, int col) {
  return guarded(state(), ErrorType::noError, [&] {
    const CellWord word = cellAt(row, col);
    if (word.kind() == CellKind::boolErr && _cells.boolErr(word).fError != 0) {
      return static_cast<ErrorType>(_cells.boolErr(word).value);
    }
    if (word.kind() == CellKind::formula && cachedType(_cells.formula(word).value) == CellType::error) {
      return static_cast<ErrorType>(_cells.formula(word).value.payload());
    }
    return ErrorType::noError;
  });
}

void SheetImplT::writeError(int row, int col, ErrorType error, FormatPtr format) {
  writeBool(row, col, false, format, error);
}

void SheetImplT::clearCells(int rowFirst, int rowLast, int colFirst, int colLast) {
  for (int row = _cells.index().nextRow(rowFirst); row <= rowLast; row = _cells.index().nextRow(row + 1)) {
    for (int col = colFirst; col <= colLast; ++col) {
      _cells.erase(row, col);
    }
  }
}

bool SheetImplT::copyCell(int rowSrc, int colSrc, int rowDst, int colDst) {
  return guarded(state(), false, [&] {
    const CellWord word = cellAt(rowSrc, colSrc);
    checkCell(rowDst, colDst);
    if (word.kind() == CellKind::formula) return copyFormula(word, rowDst, colDst);
    FormatPtr format = formatOfXf(xfFor(nullptr, word, colSrc));
    switch (cellType(rowSrc, colSrc)) {
      case CellType::empty:
        throw xlerror("empty cell");
      case CellType::number:
        return writeNum(rowDst, colDst, readNum(rowSrc, colSrc, nullptr), format);
      case CellType::string: {
        const std::u16string text = readStr(rowSrc, colSrc, nullptr);
        return writeStr(rowDst, colDst, text.c_str(), format, 0);
      }
      case CellType::boolean:
        return writeBool(rowDst, colDst, readBool(rowSrc, colSrc, nullptr), format, ErrorType::noError);
      case CellType::blank:
        return writeBlank(rowDst, colDst, format);
      case CellType::error:
        return writeBool(rowDst, colDst, false, format, readError(rowSrc, colSrc));
    }
    throw xlerror("unknown type of cell");
  });
}

int SheetImplT::firstRow() {
  return static_cast<int>(_dimensions.rwMic);
}
int SheetImplT::lastRow() {
  return static_cast<int>(_dimensions.rwMac);
}
int SheetImplT::firstCol() {
  return _dimensions.colMic;
}
int SheetImplT::lastCol() {
  return _dimensions.colMac;
}

void SheetImplT::addrToRowCol(Text addr, int* row, int* col, bool* rowRelative, bool* colRelative) {
  guarded(state(), [&] {
    const CellAddress address = parseAddress(viewOf(addr));
    if (row != nullptr) *row = address.row;
    if (col != nullptr) *col = address.col;
    if (rowRelative != nullptr) *rowRelative = address.rowRelative;
    if (colRelative != nullptr) *colRelative = address.colRelative;
  });
}

SheetImplT::Text SheetImplT::rowColToAddr(int row, int col, bool rowRelative, bool colRelative) {
  return guarded(state(), Text{}, [&]() -> Text {
    checkCell(row, col);
    _addressText = addressText({row, col, rowRelative, colRelative});
    return _addressText.c_str();
  });
}

}  // namespace rubrica
