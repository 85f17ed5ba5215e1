// The part of a book's copy that stands around the cells: rows and columns, ranges, names, pictures, page and view.
#include <algorithm>

#include "tools/book_copy.h"
#include "tools/name_places.h"
#include "tools/sheet_facts.h"

namespace rubrica::tools {
namespace {

constexpr double kSameSize = 1e-9;

bool sameSize(double a, double b) {
  return std::max(a, b) - std::min(a, b) < kSameSize;
}

std::u16string owned(const char16_t* text) {
  return text == nullptr ? std::u16string() : text;
}

}  // namespace

bool BookCopy::fits(const Pair& sheets, const CellRange& range, const std::string& kind) {
  if (range.rowLast < rowLimit(_targetForm) && range.colLast < colLimit(_targetForm)) return true;
  _losses.addAt(sheets.name + "!" + rangeText(range), kind);
  return false;
}

// The format of a column shows in the cells that it doesn't have, as in its last one.
void BookCopy::copyLines(const Pair& sheets) {
  const int lastRow = rowLimit(_source.form) - 1;
  for (const LineRun& run : columnRuns(*sheets.from, _source.form)) {
    for (int col = run.first; col <= run.last && col < colLimit(_targetForm); ++col) {
      const bool isBare = sheets.from->cellType(lastRow, col) == CellType::empty;
      Format* format = isBare ? _styles.formatOf(_sourceStyles.of(sheets.from->cellFormat(lastRow, col))) : nullptr;
      if (format == sheets.to->cellFormat(rowLimit(_targetForm) - 1, col)) format = nullptr;
      // A hidden column answers no width, so it becomes one of the usual width that is hidden.
      const double width = run.hidden ? sheets.to->colWidth(col) : run.size;
      if (format == nullptr && !run.hidden && sameSize(sheets.to->colWidth(col), width)) continue;
      sheets.to->setCol(col, col, width, format, run.hidden);
    }
  }
  for (const LineRun& run : rowRuns(*sheets.from, _source.form)) {
    for (int row = run.first; row <= run.last && row < rowLimit(_targetForm); ++row) {
      const double height = run.hidden && run.size == 0 ? sheets.to->rowHeight(row) : run.size;
      if (!run.hidden && sameSize(sheets.to->rowHeight(row), height)) continue;
      if (!sheets.to->setRow(row, height, nullptr, run.hidden)) {
        _losses.addAt(sheets.name + "!" + addressText(row, 0), "the height of the row is lost" + reason());
      }
    }
  }
}

void BookCopy::copyRanges(const Pair& sheets) {
  for (const CellRange& range : merges(*sheets.from)) {
    if (!fits(sheets, range, "the merged range is outside the sheet")) continue;
    if (!sheets.to->setMerge(range.rowFirst, range.rowLast, range.colFirst, range.colLast)) {
      _losses.addAt(sheets.name + "!" + rangeText(range), "the cells are not merged" + reason());
    }
  }
  for (const Hyperlink& link : hyperlinks(*sheets.from)) {
    if (!fits(sheets, link.range, "the hyperlink is outside the sheet")) continue;
    const int before = sheets.to->hyperlinkSize();
    sheets.to->addHyperlink(link.target.c_str(), link.range.rowFirst, link.range.rowLast, link.range.colFirst,
                            link.range.colLast);
    if (sheets.to->hyperlinkSize() == before) {
      _losses.addAt(sheets.name + "!" + rangeText(link.range), "the hyperlink is lost" + reason());
    }
  }
}

void BookCopy::copyNames() {
  if (_sheets.empty()) return;
  const std::map<std::u16string, int> places = sheetsOfBookNames(_source, *_sheets.front().from);
  for (const NamedRange& name : namedRanges(*_sheets.front().from)) {
    if (name.scope != Sheet::kScopeWorkbook) continue;
    const auto place = places.find(name.name);
    if (name.range.rowFirst >= 0 && place == places.end()) {
      _losses.addAt("name " + narrowText(name.name), "the sheet of the name can't be told: it is set on the first one");
    }
    // Charts have places in the book, but no pair here.
    Sheet* home = place == places.end() ? nullptr : _target.getSheet(place->second);
    const auto pair = std::find_if(_sheets.begin(), _sheets.end(), [&](const Pair& each) { return each.to == home; });
    copyName(pair == _sheets.end() ? _sheets.front() : *pair, name);
  }
  for (const Pair& sheets : _sheets) {
    for (const NamedRange& name : namedRanges(*sheets.from)) {
      if (name.scope != Sheet::kScopeWorkbook) copyName(sheets, name);
    }
  }
}

void BookCopy::copyName(const Pair& sheets, const NamedRange& name) {
  const std::string place = "name " + narrowText(name.name);
  if (name.range.rowFirst < 0) {
    _losses.addAt(place, "a name that stands for no range is lost");
  } else if (fits(sheets, name.range, "the named range is outside the sheet") &&
             !sheets.to->setNamedRange(name.name.c_str(), name.range.rowFirst, name.range.rowLast, name.range.colFirst,
                                       name.range.colLast, name.scope, name.hidden)) {
    _losses.addAt(place, "the name is lost" + reason());
  }
}

void BookCopy::copyComments(const Pair& sheets) {
  for (const auto& [row, col, text] : comments(*_source.book, *sheets.from)) {
    if (text.empty() || !fits(sheets, {row, row, col, col}, "the comment is outside the sheet")) continue;
    sheets.to->writeComment(row, col, text.c_str());
    const std::string why = reason();
    if (owned(sheets.to->readComment(row, col)) != text) {
      _losses.addAt(sheets.name + "!" + addressText(row, col), "the comment is lost" + why);
    }
  }
}

void BookCopy::copyPictures(const Pair& sheets) {
  for (int i = 0; i < sheets.from->pictureSize(); ++i) {
    CellRange cells;
    int width = 0, height = 0, left = 0, top = 0;
    const int id = sheets.from->getPicture(i, &cells.rowFirst, &cells.colFirst, &cells.rowLast, &cells.colLast, &width,
                                           &height, &left, &top);
    const std::string place = sheets.name + "!" + addressText(cells.rowFirst, cells.colFirst);
    if (id < 0) {
      _losses.addAt(sheets.name, std::string("a picture is lost (") + _source.book->errorMessage() + ")");
      continue;
    }
    if (!_pictures.contains(id)) {
      const void* data = nullptr;
      std::size_t size = 0;
      const bool found = _source.book->getPicture(id, &data, &size) != PictureType::notFound;
      _pictures[id] = found ? _target.addPicture2(data, size) : -1;
    }
    const int before = sheets.to->pictureSize();
    if (_pictures[id] >= 0 && fits(sheets, {cells.rowFirst, cells.rowFirst, cells.colFirst, cells.colFirst},
                                   "the picture is outside the sheet")) {
      sheets.to->setPicture2(cells.rowFirst, cells.colFirst, _pictures[id], width, height, left, top);
    }
    const std::string why = reason();
    if (sheets.to->pictureSize() == before) _losses.addAt(place, "the picture is lost" + why);
  }
}

void BookCopy::copyFilters(const Pair& sheets) {
  for (int i = 0; i < sheets.from->tableSize(); ++i) {
    CellRange range;
    const std::u16string name = owned(
        sheets.from->table(i, &range.rowFirst, &range.rowLast, &range.colFirst, &range.colLast, nullptr, nullptr));
    _losses.addAt(sheets.name + "!" + rangeText(range), "table \"" + narrowText(name) + "\" becomes plain cells");
  }
  if (_source.form != "xlsx") return;
  IAutoFilterT<char16_t>* from = sheets.from->autoFilter();
  CellRange range;
  if (from == nullptr || !from->getRef(&range.rowFirst, &range.rowLast, &range.colFirst, &range.colLast)) return;
  IAutoFilterT<char16_t>* to = sheets.to->autoFilter();
  if (to != nullptr) to->setRef(range.rowFirst, range.rowLast, range.colFirst, range.colLast);
  const std::string what = to == nullptr ? "the filter is lost" : "the conditions of the filter are lost";
  if (to == nullptr || from->columnSize() > 0) _losses.addAt(sheets.name + "!" + rangeText(range), what);
}

void BookCopy::copyPage(const Pair& sheets) {
  Sheet &from = *sheets.from, &to = *sheets.to;
  to.setLandscape(from.landscape());
  to.setPaper(from.paper());
  to.setPrintZoom(from.printZoom());
  int wide = 0, high = 0;
  if (from.getPrintFit(&wide, &high)) to.setPrintFit(wide, high);
  if (!to.setHeader(owned(from.header()).c_str(), from.headerMargin())) {
    _losses.addAt(sheets.name, "the header is lost" + reason());
  }
  if (!to.setFooter(owned(from.footer()).c_str(), from.footerMargin())) {
    _losses.addAt(sheets.name, "the footer is lost" + reason());
  }
  to.setMarginLeft(from.marginLeft());
  to.setMarginRight(from.marginRight());
  to.setMarginTop(from.marginTop());
  to.setMarginBottom(from.marginBottom());
  to.setHCenter(from.hCenter());
  to.setVCenter(from.vCenter());
  to.setPrintGridlines(from.printGridlines());
  to.setPrintRowCol(from.printRowCol());
  CellRange range;
  const int rows = rowLimit(_targetForm) - 1, cols = colLimit(_targetForm) - 1;
  if (from.printArea(&range.rowFirst, &range.rowLast, &range.colFirst, &range.colLast)) {
    to.setPrintArea(range.rowFirst, std::min(range.rowLast, rows), range.colFirst, std::min(range.colLast, cols));
  }
  if (from.printRepeatRows(&range.rowFirst, &range.rowLast) && range.rowLast <= rows) {
    to.setPrintRepeatRows(range.rowFirst, range.rowLast);
  }
  if (from.printRepeatCols(&range.colFirst, &range.colLast) && range.colLast <= cols) {
    to.setPrintRepeatCols(range.colFirst, range.colLast);
  }
  copyBreaks(sheets);
}

void BookCopy::copyBreaks(const Pair& sheets) {
  for (int i = 0; i < sheets.from->getHorzPageBreakSize(); ++i) {
    if (!sheets.to->setHorzPageBreak(sheets.from->getHorzPageBreak(i))) {
      _losses.addAt(sheets.name, "a page break is lost" + reason());
    }
  }
  for (int i = 0; i < sheets.from->getVertPageBreakSize(); ++i) {
    if (!sheets.to->setVertPageBreak(sheets.from->getVertPageBreak(i))) {
      _losses.addAt(sheets.name, "a page break is lost" + reason());
    }
  }
}

void BookCopy::copyView(const Pair& sheets) {
  Sheet &from = *sheets.from, &to = *sheets.to;
  to.setDisplayGridlines(from.displayGridlines());
  to.setZoom(from.zoom());
  to.setRightToLeft(from.rightToLeft());
  to.setGroupSummaryBelow(from.groupSummaryBelow());
  to.setGroupSummaryRight(from.groupSummaryRight());
  int row = 0, col = 0;
  from.getTopLeftView(&row, &col);
  to.setTopLeftView(row, col);
  row = col = 0;
  if (from.splitInfo(&row, &col)) to.split(row, col);
  to.setHidden(from.hidden());
  if (!from.protect()) return;
  to.setProtect(true);
  _losses.addAt(sheets.name, "the sheet is protected without its password, which can't be read");
}

}  // namespace rubrica::tools
