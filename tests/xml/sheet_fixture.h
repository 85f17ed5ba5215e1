// A book of either flavour with one empty sheet, or with a sheet that a test writes as XML.
#pragma once

#include <memory>
#include <string>

#include "tests/xml/flavours.h"
#include "xml/book_impl.h"
#include "xml/shared_strings.h"
#include "xml/sheet_impl.h"
#include "xml/styles.h"
#include "xml/xml_format.h"

namespace rubrica {

template <class Tag>
class SheetFixture : public ::testing::Test {
 protected:
  using Part = XMLSheetImplT<Tag>;

  std::unique_ptr<Part> parse(std::string_view rows, int firstRow = -1, int lastRow = -1) {
    return parseAll("<sheetData>" + std::string(rows) + "</sheetData>", firstRow, lastRow);
  }
  std::unique_ptr<Part> parseAll(std::string_view content, int firstRow = -1, int lastRow = -1) {
    const std::string text = partText<Tag>("worksheet", content);
    return std::make_unique<Part>(book, text.data(), text.size(), firstRow, lastRow);
  }
  // The rows of a sheet as a save writes them.
  static std::string rowsOf(Part& from) {
    const std::string text = saved(from);
    const std::size_t begin = text.find("<sheetData>");
    const std::size_t end = text.find("</sheetData>");
    return begin == text.npos ? "" : text.substr(begin + 11, end - begin - 11);
  }
  static std::string saved(Part& from) {
    std::string text;
    from.save(text);
    return text;
  }
  std::string message() { return book.errorMessage(); }
  static std::u16string textOr(const char16_t* text) { return text == nullptr ? u"(null)" : text; }
  std::u16string formulaAt(Part& from, int row, int col) { return textOr(from.readFormula(row, col, nullptr)); }
  std::u16string stringAt(Part& from, int row, int col) { return textOr(from.readStr(row, col, nullptr)); }

  XMLBookImplT<Tag> book;
  Part fresh{book};
};

}  // namespace rubrica
