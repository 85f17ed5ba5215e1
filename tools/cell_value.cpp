#include "tools/cell_value.h"

#include <charconv>

#include "engine/address.h"
#include "tools/book_opener.h"

namespace rubrica::tools {

const char* errorText(ErrorType error) {
  switch (error) {
    case ErrorType::null:
      return "#NULL!";
    case ErrorType::divByZero:
      return "#DIV/0!";
    case ErrorType::value:
      return "#VALUE!";
    case ErrorType::ref:
      return "#REF!";
    case ErrorType::name:
      return "#NAME?";
    case ErrorType::num:
      return "#NUM!";
    case ErrorType::notAvailable:
      return "#N/A";
    case ErrorType::noError:
      break;
  }
  return "#UNKNOWN!";
}

std::string numberText(double number) {
  char buffer[32];
  return {buffer, std::to_chars(buffer, buffer + sizeof(buffer), number).ptr};
}

std::string addressText(int row, int col) {
  return narrowText(columnLetters(col)) + std::to_string(row + 1);
}

std::string rangeText(const CellRange& range) {
  std::string first = addressText(range.rowFirst, range.colFirst);
  if (range.rowFirst == range.rowLast && range.colFirst == range.colLast) return first;
  return first + ":" + addressText(range.rowLast, range.colLast);
}

std::string valueText(Sheet& sheet, int row, int col) {
  switch (sheet.cellType(row, col)) {
    case CellType::number:
      return numberText(sheet.readNum(row, col));
    case CellType::string: {
      const char16_t* text = sheet.readStr(row, col);
      return '"' + narrowText(text == nullptr ? u"" : text) + '"';
    }
    case CellType::boolean:
      return sheet.readBool(row, col) ? "TRUE" : "FALSE";
    case CellType::error:
      return errorText(sheet.readError(row, col));
    case CellType::blank:
    case CellType::empty:
      break;
  }
  // A formula that gave an empty text is stored as either.
  return sheet.isFormula(row, col) ? "\"\"" : std::string();
}

std::u16string formulaText(Sheet& sheet, int row, int col) {
  const char16_t* text = sheet.isFormula(row, col) ? sheet.readFormula(row, col) : nullptr;
  return text == nullptr ? std::u16string() : text;
}

int rowLimit(const std::string& form) {
  return form == "xlsx" ? kMaxRow + 1 : 65536;
}

int colLimit(const std::string& form) {
  return form == "xlsx" ? kMaxCol + 1 : 256;
}

}  // namespace rubrica::tools
