// Writes an .xlsx book with the structure that xlsx_sheet_judge.py lets other programs read: rows and columns, outline,
// merges, breaks, panes, page setup, names, links, validation, protection, a filter and pictures.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "engine/book.h"
#include "xml/book_impl.h"

namespace {

using namespace rubrica;

// A bitmap file of one colour, 24 bits a pixel, bottom row first.
std::string bitmap(int width, int height, const char (&bgr)[4]) {
  const int stride = (width * 3 + 3) / 4 * 4;
  std::string bytes = "BM";
  const auto number = [&](int value, int size) {
    for (int shift = 0; shift < size; ++shift) bytes += static_cast<char>(value >> shift * 8 & 0xFF);
  };
  number(54 + stride * height, 4);
  number(0, 4);
  number(54, 4);
  number(40, 4);
  number(width, 4);
  number(height, 4);
  number(1, 2);
  number(24, 2);
  number(0, 4);
  number(stride * height, 4);
  for (int i = 0; i < 4; ++i) number(0, 4);
  for (int row = 0; row < height; ++row) {
    std::string line;
    for (int col = 0; col < width; ++col) line.append(bgr, 3);
    line.resize(static_cast<std::size_t>(stride));
    bytes += line;
  }
  return bytes;
}

void structure(Sheet* sheet) {
  sheet->writeStr(0, 0, u"Operations");
  sheet->setMerge(0, 0, 0, 3);
  for (int row = 2; row < 40; ++row) {
    for (int col = 0; col < 6; ++col) sheet->writeNum(row, col, row * 100 + col);
    sheet->writeStr(row, 6, u"A remark that the column is fitted to");
  }
  sheet->setCol(1, 1, 20);
  sheet->setCol(2, 2, 10, nullptr, true);
  sheet->setCol(6, 6, -1);
  sheet->setRow(2, 30);
  sheet->setRow(3, 15, nullptr, true);
  sheet->groupRows(5, 9, false);
  sheet->groupRows(12, 14, true);
  sheet->groupCols(4, 5, false);
  sheet->setHorzPageBreak(20);
  sheet->setHorzPageBreak(30);
  sheet->setVertPageBreak(4);
  sheet->split(2, 1);
  sheet->setZoom(150);
  sheet->setTabRgbColor(250, 3, 1);
  sheet->addIgnoredError(2, 0, 39, 5, 4);
  // Everything below row 10 goes down by two, and everything right of column B right by one.
  sheet->insertRow(10, 11);
  sheet->insertCol(2, 2);
  sheet->removeRow(35, 36);
}

void page(Sheet* sheet) {
  sheet->setLandscape(true);
  sheet->setPaper(9);
  sheet->setPrintFit(1, 4);
  sheet->setHeader(u"&CFigures", 0.25);
  sheet->setFooter(u"&RPage &P", 0.5);
  sheet->setMarginLeft(0.25);
  sheet->setHCenter(true);
  sheet->setPrintGridlines(true);
  sheet->setPrintArea(0, 39, 0, 7);
  sheet->setPrintRepeatRows(0, 1);
  sheet->setPrintRepeatCols(0, 0);
  sheet->setProtect(true, u"secret", 4);
}

void marks(Sheet* sheet) {
  sheet->setNamedRange(u"Figures", 2, 9, 0, 1);
  sheet->setNamedRange(u"Local", 3, 3, 0, 0, 0);
  sheet->addHyperlink(u"https://example.org/figures?a=1&b=2", 2, 2, 0, 0);
  sheet->addHyperlink(u"other.xlsx#Data!B2", 3, 4, 0, 1);
  sheet->addHyperlink(u"'My pictures'!B2", 5, 5, 0, 0);
  sheet->addDataValidation(ValidationType::list, ValidationOperator::between, 2, 9, 1, 1, u"low,high", nullptr, false,
                           false, true, true, u"Level", u"Choose one", u"Wrong", u"Not a level",
                           ValidationErrorStyle::warning);
  sheet->addDataValidationDouble(ValidationType::decimal, ValidationOperator::greaterThan, 2, 9, 0, 0, 1.5);
}

void filtered(Sheet* sheet) {
  sheet->writeStr(0, 0, u"Name");
  sheet->writeStr(0, 1, u"Value");
  const char16_t* const names[] = {u"apple", u"pear", u"plum", u"peach"};
  for (int row = 1; row < 9; ++row) {
    sheet->writeStr(row, 0, names[row % 4]);
    sheet->writeNum(row, 1, row);
  }
  IAutoFilterT<char16_t>* filter = sheet->autoFilter();
  filter->setRef(0, 8, 0, 1);
  filter->column(0)->setCustomFilter(FilterOperator::equal, u"p*");
  filter->column(1)->setTop10(6);
  filter->setSort(1, true);
  sheet->applyFilter();
  sheet->setTabRgbColor(10, 200, 30);
  sheet->setRightToLeft(true);
  sheet->setDisplayGridlines(false);
  sheet->setTopLeftView(3, 1);
}

void pictures(Book* book, Sheet* sheet) {
  const std::string red = bitmap(100, 50, "\x20\x20\xE0"), blue = bitmap(60, 60, "\xE0\x40\x10");
  const int first = book->addPicture2(red.data(), red.size()), second = book->addPicture2(blue.data(), blue.size());
  sheet->writeStr(0, 0, u"A red one at B3, twice as large at B9, and a blue one 30 pixels into E3");
  sheet->setPicture(2, 1, first);
  sheet->setPicture(8, 1, first, 2.0);
  sheet->setPicture(2, 4, second, 1.0, 30, 10, PicturePosition::onlyMove);
  sheet->setPicture2(20, 1, second, 200, 30, 0, 0, PicturePosition::absolute);
  for (int row = 2; row < 24; ++row) sheet->writeNum(row, 0, row + 1);
}

}  // namespace

int main(int argc, char** argv) {
  const bool isStrict = argc == 3 && std::strcmp(argv[2], "strict") == 0;
  if (argc != 2 && !isStrict) {
    std::fprintf(stderr, "usage: xlsx_sheet_sample FILE.xlsx [strict]\n");
    return 2;
  }
  // A new book is transitional; the other dialect is otherwise met in files alone.
  Book* book = isStrict ? new XMLBookImplT<excelStrict_tag>() : createXmlBook();
  Sheet* sheet = book->addSheet(u"Operations");
  structure(sheet);
  page(sheet);
  Sheet* shown = book->addSheet(u"My pictures");
  marks(sheet);
  filtered(book->addSheet(u"Filtered"));
  pictures(book, shown);
  book->addSheet(u"Hidden")->setHidden(SheetState::hidden);

  const std::string narrow = argv[1];
  const std::u16string name(narrow.begin(), narrow.end());
  const bool saved = book->save(name.c_str());
  if (!saved) std::fprintf(stderr, "%s\n", book->errorMessage());
  book->release();
  return saved ? 0 : 1;
}
