// Hyperlinks, ignored errors and the tab colour of an .xls sheet.
#include <algorithm>

#include "biff/book_impl.h"
#include "biff/sheet_ext.h"
#include "biff/sheet_impl.h"

namespace rubrica {

int SheetImplT::hyperlinkSize() {
  state().setOk();
  return static_cast<int>(_hyperlinks.size());
}

HLink& SheetImplT::linkAt(int index) {
  if (index < 0 || static_cast<std::size_t>(index) >= _hyperlinks.size()) throw xlerror("index is out of range");
  return _hyperlinks[static_cast<std::size_t>(index)];
}

SheetImplT::Text SheetImplT::hyperlink(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
  return guarded(state(), Text{}, [&]() -> Text {
    const HLink& link = linkAt(index);
    if (rowFirst != nullptr) *rowFirst = link.range.rowFirst;
    if (rowLast != nullptr) *rowLast = link.range.rowLast;
    if (colFirst != nullptr) *colFirst = link.range.colFirst;
    if (colLast != nullptr) *colLast = link.range.colLast;
    _hyperlinkText = link.object.text();
    return _hyperlinkText.c_str();
  });
}

bool SheetImplT::delHyperlink(int index) {
  return guarded(state(), false, [&] {
    linkAt(index);
    _hyperlinks.erase(_hyperlinks.begin() + index);
    return true;
  });
}

void SheetImplT::addHyperlink(Text hyperlink, int rowFirst, int rowLast, int colFirst, int colLast) {
  guarded(state(), [&] {
    checkCell(rowFirst, colFirst);
    checkCell(rowLast, colLast);
    HLink link;
    link.range = CellRange::of(rowFirst, rowLast, colFirst, colLast);
    link.object = HyperlinkObject::of(hyperlink == nullptr ? u"" : hyperlink);
    _hyperlinks.push_back(std::move(link));
  });
}

bool SheetImplT::addIgnoredError(int rowFirst, int colFirst, int rowLast, int colLast, int errorSet) {
  return guarded(state(), false, [&] {
    checkCell(rowFirst, colFirst);
    checkCell(rowLast, colLast);
    if (!_features.addIgnoredErrors(errorSet, CellRange::of(rowFirst, rowLast, colFirst, colLast))) {
      throw xlerror("ignored error already exists");
    }
    return true;
  });
}

RawRecord& SheetImplT::sheetExt() {
  const auto found = std::find_if(_rawMembers.begin(), _rawMembers.end(),
                                  [](const RawRecord& record) { return record.recordId == id::kSheetExt; });
  if (found != _rawMembers.end()) return *found;
  return _rawMembers.emplace_back(makeSheetExt());
}

void SheetImplT::setTabColor(Color color) {
  guarded(state(), [&] { setTabColorIndex(sheetExt(), color); });
}

void SheetImplT::setTabRgbColor(int red, int green, int blue) {
  guarded(state(),
          [&] { setTabColorRgb(sheetExt(), red, green, blue, _book->styles().palette().nearest(red, green, blue)); });
}

}  // namespace rubrica
