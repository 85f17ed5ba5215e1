// Ranges of an .xls sheet: merges, and clearing cells.
#include "biff/book_impl.h"
#include "biff/sheet_impl.h"

namespace rubrica {
namespace {

void giveRange(const MergedRange& range, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
  if (rowFirst != nullptr) *rowFirst = range.rowFirst;
  if (rowLast != nullptr) *rowLast = range.rowLast;
  if (colFirst != nullptr) *colFirst = range.colFirst;
  if (colLast != nullptr) *colLast = range.colLast;
}

const MergedRange& mergeAt(const MergeTable& merges, int index) {
  const MergedRange* range = index < 0 ? nullptr : merges.at(static_cast<std::size_t>(index));
  if (range == nullptr) throw xlerror("index is out of range");
  return *range;
}

void checkOrder(int rowFirst, int rowLast, int colFirst, int colLast) {
  if (rowLast < rowFirst) throw xlerror("rowLast must be greater than or equal to rowFirst");
  if (colLast < colFirst) throw xlerror("colLast must be greater than or equal to colFirst");
}

}  // namespace

void SheetImplT::checkRows(int rowFirst, int rowLast) {
  if (rowFirst < 0 || rowFirst >= kBiffRows) throw xlerror("rowFirst must be in range 0-65535");
  if (rowLast < 0 || rowLast >= kBiffRows) throw xlerror("rowLast must be in range 0-65535");
  checkOrder(rowFirst, rowLast, 0, 0);
}

void SheetImplT::checkCols(int colFirst, int colLast) {
  if (colFirst < 0 || colFirst >= kBiffCols) throw xlerror("colFirst must be in range 0-255");
  if (colLast < 0 || colLast >= kBiffCols) throw xlerror("colLast must be in range 0-255");
  checkOrder(0, 0, colFirst, colLast);
}

// Readers draw the borders of a merged area from its cells, so every place of it gets one.
void SheetImplT::addMerge(const MergedRange& range) {
  _merges.add(range);
  const std::uint16_t xf = xfFor(nullptr, _cells.word(range.rowFirst, range.colFirst), range.colFirst);
  for (int row = range.rowFirst; row <= range.rowLast; ++row) {
    for (int col = range.colFirst; col <= range.colLast; ++col) {
      if (!_cells.word(row, col).present()) _cells.addBlank(row, col, xf);
    }
  }
  widenDimensions(range.rowFirst, range.colFirst);
  widenDimensions(range.rowLast, range.colLast);
}

bool SheetImplT::setMerge(int rowFirst, int rowLast, int colFirst, int colLast) {
  return guarded(state(), false, [&] {
    checkCell(0, colFirst);
    checkCell(0, colLast);
    checkOrder(rowFirst, rowLast, colFirst, colLast);
    checkCell(rowFirst, colFirst);
    checkCell(rowLast, colLast);
    addMerge(MergedRange::of(rowFirst, rowLast, colFirst, colLast));
    return true;
  });
}

bool SheetImplT::getMerge(int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
  return guarded(state(), false, [&] {
    const MergedRange* range = _merges.find(row, col);
    if (range == nullptr) throw xlerror("this cell isn't in merging block");
    giveRange(*range, rowFirst, rowLast, colFirst, colLast);
    return true;
  });
}

bool SheetImplT::delMerge(int row, int col) {
  return guarded(state(), false, [&] {
    const MergedRange* range = _merges.find(row, col);
    if (range == nullptr) throw xlerror("this cell isn't in merging block");
    _merges.erase(range);
    return true;
  });
}

int SheetImplT::mergeSize() {
  state().setOk();
  return static_cast<int>(_merges.size());
}

bool SheetImplT::merge(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
  return guarded(state(), false, [&] {
    giveRange(mergeAt(_merges, index), rowFirst, rowLast, colFirst, colLast);
    return true;
  });
}

bool SheetImplT::delMergeByIndex(int index) {
  return guarded(state(), false, [&] {
    _merges.erase(&mergeAt(_merges, index));
    return true;
  });
}

void SheetImplT::clear(int rowFirst, int rowLast, int colFirst, int colLast) {
  guarded(state(), [&] {
    checkCell(rowFirst, colFirst);
    checkCell(rowLast, colLast);
    checkOrder(rowFirst, rowLast, colFirst, colLast);
    clearCells(rowFirst, rowLast, colFirst, colLast);
  });
}

}  // namespace rubrica
