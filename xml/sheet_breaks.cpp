// Page breaks of an .xlsx sheet.
#include "engine/address.h"
#include "xml/book_impl.h"
#include "xml/break_list.h"
#include "xml/sheet_impl.h"

namespace rubrica {

template <class Tag>
int XMLSheetImplT<Tag>::getHorzPageBreak(int index) {
  return guarded(_book->lastMessage(), 0, [&] { return breakAt(std::as_const(*this).find_rowBreaks(), index); });
}

template <class Tag>
int XMLSheetImplT<Tag>::getHorzPageBreakSize() {
  return guarded(_book->lastMessage(), 0, [&] {
    const auto* breaks = this->find_rowBreaks();
    return breaks == nullptr ? 0 : static_cast<int>(breaks->size_brk());
  });
}

template <class Tag>
int XMLSheetImplT<Tag>::getVertPageBreak(int index) {
  return guarded(_book->lastMessage(), 0, [&] { return breakAt(std::as_const(*this).find_colBreaks(), index); });
}

template <class Tag>
int XMLSheetImplT<Tag>::getVertPageBreakSize() {
  return guarded(_book->lastMessage(), 0, [&] {
    const auto* breaks = this->find_colBreaks();
    return breaks == nullptr ? 0 : static_cast<int>(breaks->size_brk());
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::setHorzPageBreak(int row, bool pageBreak) {
  return guarded(_book->lastMessage(), false, [&] {
    checkCell(row, 0);
    if (pageBreak) {
      addBreak(this->get_rowBreaks(), row, kMaxCol);
      return true;
    }
    auto* breaks = this->find_rowBreaks();
    const auto found = breaks == nullptr ? std::nullopt : findBreak(*breaks, row);
    if (!found) throw xlerror("pagebreak not found");
    breaks->erase_brk(*found);
    countBreaks(*breaks);
    if (breaks->size_brk() == 0) this->unset_rowBreaks();
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::setVertPageBreak(int col, bool pageBreak) {
  return guarded(_book->lastMessage(), false, [&] {
    checkCell(0, col);
    if (pageBreak) {
      addBreak(this->get_colBreaks(), col, kMaxRow);
      return true;
    }
    auto* breaks = this->find_colBreaks();
    const auto found = breaks == nullptr ? std::nullopt : findBreak(*breaks, col);
    if (!found) throw xlerror("pagebreak not found");
    breaks->erase_brk(*found);
    countBreaks(*breaks);
    if (breaks->size_brk() == 0) this->unset_colBreaks();
    return true;
  });
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
