// What workbook.xml says by positions of sheets: the scope of names, the active and the first visible tab.
#include <algorithm>
#include <limits>

#include "xml/book_impl.h"
#include "xml/sheet_impl.h"

namespace rubrica {

template <class Tag>
void XMLBookImplT<Tag>::renumberNames(const Mapping& mapping) {
  if (!this->isset_definedNames()) return;
  auto& names = this->get_definedNames();
  for (std::size_t i = names.size_definedName(); i-- > 0;) {
    auto& name = names.get_definedName(i);
    if (!name.isset_localSheetId()) continue;
    // A position past the last sheet, which a damaged file may name, belongs to no sheet that could move.
    const auto position = static_cast<std::int64_t>(name.get_localSheetId());
    if (position > std::numeric_limits<int>::max()) continue;
    const int moved = mapping(static_cast<int>(position));
    if (moved != position) _nameIndex.forget();
    if (moved == kGone) {
      names.erase_definedName(i);
    } else {
      name.set_localSheetId(static_cast<std::uint32_t>(moved));
    }
  }
  if (names.size_definedName() == 0) this->unset_definedNames();
}

// A tab that went is followed by the one that took its place, or by the last.
template <class Tag>
void XMLBookImplT<Tag>::renumberViews(const Mapping& mapping) {
  if (!this->isset_bookViews()) return;
  auto& views = this->get_bookViews();
  const auto last = static_cast<int>(std::max<std::size_t>(entryCount(), 1)) - 1;
  const auto moved = [&](std::uint32_t old) {
    const int position = static_cast<int>(std::min<std::uint32_t>(old, std::numeric_limits<int>::max()));
    const int target = mapping(position);
    return static_cast<std::uint32_t>(std::clamp(target == kGone ? position : target, 0, last));
  };
  for (std::size_t i = 0; i < views.size_workbookView(); ++i) {
    auto& view = views.get_workbookView(i);
    if (view.isset_activeTab()) view.set_activeTab(moved(view.get_activeTab()));
    if (view.isset_firstSheet()) view.set_firstSheet(moved(view.get_firstSheet()));
  }
}

template <class Tag>
void XMLBookImplT<Tag>::setActiveTab(int index) {
  if (!this->isset_bookViews()) return;
  auto& views = this->get_bookViews();
  for (std::size_t i = 0; i < views.size_workbookView(); ++i) {
    auto& view = views.get_workbookView(i);
    view.set_activeTab(static_cast<std::uint32_t>(index));
    if (view.isset_firstSheet()) view.set_firstSheet(static_cast<std::uint32_t>(index));
  }
}

template <class Tag>
int XMLBookImplT<Tag>::activeSheet() {
  const auto* views = this->find_bookViews();
  if (views == nullptr || views->size_workbookView() == 0) return 0;
  return static_cast<int>(views->get_workbookView(0).get_activeTab());
}

template <class Tag>
void XMLBookImplT<Tag>::setActiveSheet(int index) {
  guarded(_last, [&] {
    if (index < 0 || index >= sheetCount()) throw xlerror("index is out of range");
    activate(index);
  });
}

template <class Tag>
void XMLBookImplT<Tag>::activate(int index) {
  auto& views = this->get_bookViews();
  auto& first = views.size_workbookView() == 0 ? views.append_workbookView() : views.get_workbookView(0);
  first.set_activeTab(static_cast<std::uint32_t>(index));
  for (std::size_t i = 0; i < _sheets.size(); ++i) {
    if (_sheets[i] == nullptr || !_sheets[i]->isset_sheetViews()) continue;
    auto& sheetViews = _sheets[i]->get_sheetViews();
    for (std::size_t k = 0; k < sheetViews.size_sheetView(); ++k) {
      auto& view = sheetViews.get_sheetView(k);
      const bool isActive = static_cast<int>(i) == index;
      if (isActive || view.isset_tabSelected()) view.set_tabSelected(isActive);
    }
  }
}

template <class Tag>
bool XMLBookImplT<Tag>::refR1C1() {
  return this->isset_calcPr() && this->get_calcPr().get_refMode() == "R1C1";
}

template <class Tag>
void XMLBookImplT<Tag>::setRefR1C1(bool refR1C1) {
  if (!refR1C1 && !this->isset_calcPr()) return;
  needCalcPr().set_refMode(refR1C1 ? "R1C1" : "A1");
}

template <class Tag>
bool XMLBookImplT<Tag>::isDate1904() {
  return this->isset_workbookPr() && this->get_workbookPr().get_date1904();
}

template <class Tag>
bool XMLBookImplT<Tag>::setDate1904(bool date1904) {
  this->get_workbookPr().set_date1904(date1904);
  _last.setOk();
  return true;
}

template class XMLBookImplT<excelNormal_tag>;
template class XMLBookImplT<excelStrict_tag>;

}  // namespace rubrica
