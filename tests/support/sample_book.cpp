#include "tests/support/sample_book.h"

#include <iterator>

namespace rubrica::test {
namespace {

constexpr int kRows = 24;
constexpr const char16_t* kTexts[] = {u"a text", u"another text that is a little longer than the first", u"<&\"'>",
                                      u"\u00e4\u20ac\U0001F600", u""};

void fillCells(Book& book, Sheet& sheet) {
  Font* font = book.addFont();
  if (font != nullptr) {
    font->setName(u"Liberation Serif");
    font->setBold(true);
  }
  Format* format = book.addFormat();
  if (format != nullptr) {
    format->setNumFormat(book.addCustomNumFormat(u"0.00 \"pieces\""));
    if (font != nullptr) format->setFont(font);
    format->setBorder(BorderStyle::thin);
  }
  for (int row = 0; row < kRows; ++row) {
    sheet.writeNum(row, 0, row * 1.25, format);
    sheet.writeStr(row, 1, kTexts[static_cast<std::size_t>(row) % std::size(kTexts)]);
    sheet.writeFormulaNum(row, 2, u"SUM(A1:A9)*2", row);
    sheet.writeBool(row, 3, row % 2 == 0);
    sheet.writeBlank(row, 4, format);
  }
}

void fillStructure(Sheet& sheet) {
  sheet.setMerge(30, 31, 0, 3);
  sheet.setCol(0, 2, 14.5);
  sheet.setRow(3, 30.0);
  sheet.addHyperlink(u"https://example.org/a#b", 1, 1, 6, 6);
  sheet.setNamedRange(u"figures", 0, kRows - 1, 0, 0);
  sheet.setPrintArea(0, kRows, 0, 5);
  sheet.setHeader(u"&CHeader", 0.5);
  sheet.setHorzPageBreak(10, true);
  sheet.split(1, 1);
  sheet.groupRows(5, 8, true);
}

}  // namespace

void fillSample(Book& book) {
  for (const char16_t* name : {u"First", u"Second & last"}) {
    Sheet* sheet = book.addSheet(name);
    if (sheet == nullptr) continue;
    fillCells(book, *sheet);
    fillStructure(*sheet);
  }
}

std::string savedBytes(Book& book) {
  const void* data = nullptr;
  std::size_t size = 0;
  if (!book.saveRaw(&data, &size)) return {};
  return {static_cast<const char*>(data), size};
}

}  // namespace rubrica::test
