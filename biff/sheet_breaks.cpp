// Page breaks and panes of an .xls sheet.
#include <algorithm>

#include "biff/book_impl.h"
#include "biff/sheet_impl.h"

namespace rubrica {
namespace {

constexpr std::uint16_t kLastRow = kBiffRows - 1, kLastCol = kBiffCols - 1;

bool isBefore(const PageBreak& entry, int position) {
  return entry.position < position;
}

// Breaks stay in order. `extent` is the last column or row that a break of this direction runs to.
void changeBreak(std::vector<PageBreak>& breaks, int position, std::uint16_t extent, bool pageBreak) {
  const auto found =
      std::find_if(breaks.begin(), breaks.end(), [&](const PageBreak& entry) { return entry.position == position; });
  if (!pageBreak) {
    if (found == breaks.end()) throw xlerror("pagebreak not found");
    breaks.erase(found);
    return;
  }
  if (found != breaks.end()) throw xlerror("pagebreak already exists");
  if (breaks.size() >= kMostPageBreaks) throw xlerror("number of pagebreaks is exceed limit");
  const auto place = std::lower_bound(breaks.begin(), breaks.end(), position, isBefore);
  breaks.insert(place, {static_cast<std::uint16_t>(position), 0, extent});
}

int breakAt(const std::vector<PageBreak>& breaks, int index) {
  if (index < 0 || static_cast<std::size_t>(index) >= breaks.size()) throw xlerror("index is out of range");
  return breaks[static_cast<std::size_t>(index)].position;
}

// Panes are numbered from the bottom right one: it, top right, bottom left, top left.
std::uint8_t activePane(int row, int col) {
  return static_cast<std::uint8_t>((col != 0 ? 0 : 2) + (row == 0 ? 1 : 0));
}

}  // namespace

int SheetImplT::getHorzPageBreak(int index) {
  return guarded(state(), 0, [&] { return breakAt(_page.horzBreaks, index); });
}

int SheetImplT::getHorzPageBreakSize() {
  state().setOk();
  return static_cast<int>(_page.horzBreaks.size());
}

int SheetImplT::getVertPageBreak(int index) {
  return guarded(state(), 0, [&] { return breakAt(_page.vertBreaks, index); });
}

int SheetImplT::getVertPageBreakSize() {
  state().setOk();
  return static_cast<int>(_page.vertBreaks.size());
}

bool SheetImplT::setHorzPageBreak(int row, bool pageBreak) {
  return guarded(state(), false, [&] {
    checkCell(row, 0);
    changeBreak(_page.horzBreaks, row, kLastCol, pageBreak);
    return true;
  });
}

bool SheetImplT::setVertPageBreak(int col, bool pageBreak) {
  return guarded(state(), false, [&] {
    checkCell(0, col);
    changeBreak(_page.vertBreaks, col, kLastRow, pageBreak);
    return true;
  });
}

void SheetImplT::split(int row, int col) {
  guarded(state(), [&] {
    checkCell(row, col);
    Pane pane;
    pane.x = pane.colLeft = static_cast<std::uint16_t>(col);
    pane.y = pane.rwTop = static_cast<std::uint16_t>(row);
    pane.pnnAcct = activePane(row, col);
    _view.pane = pane;
    _view.setFlag(Window2::kFrozen, true);
  });
}

bool SheetImplT::splitInfo(int* row, int* col) {
  return guarded(state(), false, [&] {
    if (!_view.pane) throw xlerror("worksheet is not splitted");
    if (row != nullptr) *row = _view.pane->y;
    if (col != nullptr) *col = _view.pane->x;
    return true;
  });
}

}  // namespace rubrica
