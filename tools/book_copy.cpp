#include "tools/book_copy.h"

#include <algorithm>
#include <utility>

namespace rubrica::tools {

BookCopy::BookCopy(OpenedBook& source, Book& target, std::string targetForm, Losses& losses)
    : _source(source),
      _target(target),
      _targetForm(std::move(targetForm)),
      _losses(losses),
      _sourceStyles(*source.book),
      _targetStyles(target),
      _styles(target) {}

bool BookCopy::run(Progress& progress) {
  if (_targetForm == "xlsx") _target.setRgbMode(true);
  copySettings();
  if (!makeSheets()) return false;
  // Names come before formulas, which may use them.
  copyNames();
  for (const Pair& sheets : _sheets) {
    progress.begin("copying the settings of sheet " + sheets.name);
    copyLines(sheets);
    copyCells(sheets, progress);
    copyRanges(sheets);
    copyComments(sheets);
    copyPictures(sheets);
    copyFilters(sheets);
    copyPage(sheets);
    copyView(sheets);
  }
  if (_source.book->activeSheet() < static_cast<int>(_sheets.size()))
    _target.setActiveSheet(_source.book->activeSheet());
  if (_styles.approximatedColors() > 0) {
    _losses.add(std::to_string(_styles.approximatedColors()) + " colors are replaced by the nearest of the palette");
  }
  return true;
}

void BookCopy::copySettings() {
  Book& source = *_source.book;
  if (!_target.setDate1904(source.isDate1904())) _losses.add("the first day of dates" + reason());
  int size = 0;
  if (const char16_t* font = source.defaultFont(&size); font != nullptr) _target.setDefaultFont(font, size);
  _target.setRefR1C1(source.refR1C1());
}

bool BookCopy::makeSheets() {
  Book& source = *_source.book;
  for (int i = 0; i < source.sheetCount(); ++i) {
    const std::u16string name = source.getSheetName(i);
    Sheet* from = source.getSheet(i);
    Sheet* to = _target.addSheet(name.c_str());
    if (to == nullptr) return false;
    if (from != nullptr) _sheets.push_back({from, to, narrowText(name)});
    if (source.sheetType(i) != SheetType::sheet) {
      _losses.add("sheet \"" + narrowText(name) + "\" holds a chart or macros: an empty sheet stands for it");
    }
  }
  if (_sheets.empty()) return true;
  Format* plain = _sheets.front().to->cellFormat(0, 0);
  if (plain != nullptr) _styles.adopt(_targetStyles.of(plain), plain);
  return true;
}

// A format that the book has no room for leaves the cell with the plain one.
Format* BookCopy::formatFor(const Pair& sheets, int row, int col) {
  Format* format = _styles.formatOf(_sourceStyles.of(sheets.from->cellFormat(row, col)));
  if (format == nullptr) _losses.addAt(sheets.name + "!" + addressText(row, col), "the format is lost" + reason());
  return format;
}

void BookCopy::copyCells(const Pair& sheets, Progress& progress) {
  const int lastRow = sheets.from->lastRow(), lastCol = sheets.from->lastCol();
  progress.begin("copying the cells of sheet " + sheets.name, lastRow - sheets.from->firstRow());
  for (int row = sheets.from->firstRow(); row < lastRow; ++row, progress.advance()) {
    for (int col = sheets.from->firstCol(); col < lastCol; ++col) {
      if (sheets.from->cellType(row, col) == CellType::empty && !sheets.from->isFormula(row, col)) continue;
      if (fits(sheets, {row, row, col, col}, "the cell is outside the sheet")) copyCell(sheets, row, col);
    }
  }
}

void BookCopy::copyCell(const Pair& sheets, int row, int col) {
  Format* format = formatFor(sheets, row, col);
  if (sheets.from->isFormula(row, col) && copyFormula(sheets, row, col, format)) return;
  if (!copyValue(sheets, row, col, format)) {
    _losses.addAt(sheets.name + "!" + addressText(row, col), "the value is lost" + reason());
  }
}

bool BookCopy::copyFormula(const Pair& sheets, int row, int col, Format* format) {
  const std::string place = sheets.name + "!" + addressText(row, col);
  const char16_t* text = sheets.from->readFormula(row, col);
  if (text == nullptr) {
    _losses.addAt(place, std::string("the formula is kept as its value (") + _source.book->errorMessage() + ")");
    return false;
  }
  const std::u16string formula = text;
  bool written = false;
  switch (sheets.from->cellType(row, col)) {
    case CellType::number:
      written = sheets.to->writeFormulaNum(row, col, formula.c_str(), sheets.from->readNum(row, col), format);
      break;
    case CellType::string:
      written = sheets.to->writeFormulaStr(row, col, formula.c_str(), sheets.from->readStr(row, col), format);
      break;
    case CellType::boolean:
      written = sheets.to->writeFormulaBool(row, col, formula.c_str(), sheets.from->readBool(row, col), format);
      break;
    case CellType::blank:
    case CellType::empty:
      written = sheets.to->writeFormulaStr(row, col, formula.c_str(), u"", format);
      break;
    case CellType::error:
      // A constant error is found again at once, any other by the next program that calculates.
      written = sheets.to->writeFormula(row, col, formula.c_str(), format);
      if (written && sheets.to->cellType(row, col) != CellType::error) {
        _losses.addAt(place, "the error that the formula gave is lost until it is calculated again");
      }
      break;
  }
  if (!written) _losses.addAt(place, "the formula is kept as its value" + reason());
  return written;
}

bool BookCopy::copyValue(const Pair& sheets, int row, int col, Format* format) {
  Sheet &from = *sheets.from, &to = *sheets.to;
  switch (from.cellType(row, col)) {
    case CellType::number:
      return to.writeNum(row, col, from.readNum(row, col), format);
    case CellType::string: {
      const char16_t* text = from.readStr(row, col);
      return text != nullptr && to.writeStr(row, col, std::u16string(text).c_str(), format);
    }
    case CellType::boolean:
      return to.writeBool(row, col, from.readBool(row, col), format);
    case CellType::error:
      to.writeError(row, col, from.readError(row, col), format);
      return to.cellType(row, col) == CellType::error;
    case CellType::blank:
      return format == nullptr || to.writeBlank(row, col, format);
    case CellType::empty:
      break;
  }
  return true;
}

}  // namespace rubrica::tools
