#include "xml/auto_filter.h"

#include <algorithm>
#include <array>
#include <new>

#include "engine/xlerror.h"
#include "source/ooxml/sheet.h"
#include "source/ooxml/strict.h"
#include "source/ooxml/table.h"
#include "xml/filter_operators.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

constexpr char kValuesNotFound[] = "value filter is not found";
constexpr char kTop10NotFound[] = "top10 filter is not found";
constexpr char kCustomNotFound[] = "custom filter is not found";
constexpr char kIndexOutOfRange[] = "index is out of range";
constexpr char kBadRef[] = "ref has unrecognized format";
constexpr double kSmallestTop10 = 1.0, kLargestTop10 = 500.0;

template <class Bound>
FilterType kindOf(const Bound& bound) {
  if (bound.isset_filters()) return FilterType::values;
  if (bound.isset_top10()) return FilterType::top10;
  if (bound.isset_customFilters()) return FilterType::custom;
  if (bound.isset_dynamicFilter()) return FilterType::dynamic;
  if (bound.isset_colorFilter()) return FilterType::color;
  if (bound.isset_iconFilter()) return FilterType::icon;
  if (bound.isset_extLst()) return FilterType::extension;
  return FilterType::notSet;
}

// One kind at a time: the element takes a filter of this kind when it has none or one of it already.
template <class Bound>
void checkRoomFor(const Bound& bound, FilterType kind, const char* message) {
  const FilterType present = kindOf(bound);
  if (present != FilterType::notSet && present != kind) throw xlerror(message);
}

template <class Custom>
void appendCustom(Custom& filters, FilterOperator op, const char16_t* value) {
  if (value == nullptr) return;
  std::string token(operatorToken(op)), text = toXstring(value);
  auto& filter = filters.append_customFilter();
  filter.set_operator(std::move(token));
  filter.set_val(std::move(text));
}

}  // namespace

template <class Bound>
int XMLFilterColumnT<Bound>::index() const {
  return static_cast<int>(_bound->get_colId());
}

template <class Bound>
FilterType XMLFilterColumnT<Bound>::filterType() const {
  return guarded(*_last, FilterType::notSet, [&] {
    const FilterType kind = kindOf(*_bound);
    if (kind == FilterType::notSet) throw xlerror("filter if not found");
    return kind;
  });
}

template <class Bound>
int XMLFilterColumnT<Bound>::filterSize() const {
  return guarded(*_last, 0, [&] {
    if (!_bound->isset_filters()) throw xlerror(kValuesNotFound);
    return static_cast<int>(_bound->find_filters()->size_filter());
  });
}

template <class Bound>
const char16_t* XMLFilterColumnT<Bound>::filter(int index) const {
  return guarded(*_last, static_cast<const char16_t*>(nullptr), [&]() -> const char16_t* {
    const auto* filters = std::as_const(*_bound).find_filters();
    if (filters == nullptr) throw xlerror(kValuesNotFound);
    if (index < 0 || static_cast<std::size_t>(index) >= filters->size_filter()) throw xlerror(kIndexOutOfRange);
    const auto& entry = filters->get_filter(static_cast<std::size_t>(index));
    if (!entry.isset_val()) return nullptr;
    fromXstring(entry.get_val(), _text);
    return _text.c_str();
  });
}

template <class Bound>
void XMLFilterColumnT<Bound>::addFilter(const char16_t* value) {
  guarded(*_last, [&] {
    checkRoomFor(*_bound, FilterType::values, kValuesNotFound);
    std::string text = toXstring(viewOf(value));
    _bound->get_filters().append_filter().set_val(std::move(text));
  });
}

template <class Bound>
bool XMLFilterColumnT<Bound>::getTop10(double* value, bool* top, bool* percent) {
  return guarded(*_last, false, [&] {
    const auto* filter = _bound->find_top10();
    if (filter == nullptr) throw xlerror(kTop10NotFound);
    if (value != nullptr) *value = filter->get_val();
    if (top != nullptr) *top = filter->get_top();
    if (percent != nullptr) *percent = filter->get_percent();
    return true;
  });
}

template <class Bound>
bool XMLFilterColumnT<Bound>::setTop10(double value, bool top, bool percent) {
  return guarded(*_last, false, [&] {
    if (!(value >= kSmallestTop10 && value <= kLargestTop10)) throw xlerror("setTop10: value is out of range");
    checkRoomFor(*_bound, FilterType::top10, kTop10NotFound);
    auto& filter = _bound->get_top10();
    filter.set_val(value);
    filter.set_top(top);
    filter.set_percent(percent);
    return true;
  });
}

template <class Bound>
bool XMLFilterColumnT<Bound>::getCustomFilter(FilterOperator* op1, const char16_t** value1, FilterOperator* op2,
                                              const char16_t** value2, bool* andOp) const {
  if (op1 != nullptr) *op1 = FilterOperator::equal;
  if (op2 != nullptr) *op2 = FilterOperator::equal;
  if (value1 != nullptr) *value1 = nullptr;
  if (value2 != nullptr) *value2 = nullptr;
  if (andOp != nullptr) *andOp = false;
  return guarded(*_last, false, [&] {
    const auto* filters = std::as_const(*_bound).find_customFilters();
    if (filters == nullptr) throw xlerror(kCustomNotFound);
    if (andOp != nullptr) *andOp = filters->get_and();
    const auto give = [&](std::size_t at, FilterOperator* op, const char16_t** value, std::u16string& text) {
      if (filters->size_customFilter() <= at) return;
      const auto& filter = filters->get_customFilter(at);
      if (op != nullptr) *op = operatorOf(filter.get_operator());
      fromXstring(filter.get_val(), text);
      if (value != nullptr) *value = text.c_str();
    };
    give(0, op1, value1, _text);
    give(1, op2, value2, _secondText);
    return true;
  });
}

// A second call replaces what the first one set, since the element holds two comparisons at the most.
template <class Bound>
bool XMLFilterColumnT<Bound>::setCustomFilter(FilterOperator op1, const char16_t* value1, FilterOperator op2,
                                              const char16_t* value2, bool andOp) {
  return guarded(*_last, false, [&] {
    checkRoomFor(*_bound, FilterType::custom, kCustomNotFound);
    if (value1 == nullptr && value2 == nullptr) throw xlerror(kCustomNotFound);
    typename std::remove_reference_t<decltype(_bound->get_customFilters())> filters;
    appendCustom(filters, op1, value1);
    appendCustom(filters, op2, value2);
    filters.set_and(andOp);
    _bound->set_customFilters(filters);
    return true;
  });
}

template <class Bound>
void XMLFilterColumnT<Bound>::clear() {
  _bound->unset_filters();
  _bound->unset_top10();
  _bound->unset_customFilters();
  _bound->unset_dynamicFilter();
  _bound->unset_colorFilter();
  _bound->unset_iconFilter();
  _bound->unset_extLst();
  _last->setOk();
}

template <class Bound>
void XMLFilterColumnT<Bound>::detach() {
  _own = std::make_unique<Bound>(*_bound);
  _bound = _own.get();
}

template <class Owner>
SheetRange XMLAutoFilterT<Owner>::range() const {
  const Bound* bound = _owner->find_autoFilter();
  if (bound == nullptr || !bound->isset_ref()) throw xlerror("ref is not found");
  const auto range = parseRange(bound->get_ref());
  if (!range) throw xlerror(kBadRef);
  return *range;
}

template <class Owner>
bool XMLAutoFilterT<Owner>::getRef(int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
  return guarded(*_last, false, [&] {
    giveRange(range(), rowFirst, rowLast, colFirst, colLast);
    return true;
  });
}

template <class Owner>
void XMLAutoFilterT<Owner>::setRef(int rowFirst, int rowLast, int colFirst, int colLast) {
  guarded(*_last, [&] {
    std::string text = rangeText({rowFirst, rowLast, colFirst, colLast});
    _owner->get_autoFilter().set_ref(std::move(text));
  });
}

template <class Owner>
IFilterColumnT<char16_t>* XMLAutoFilterT<Owner>::column(int colId) {
  return guarded(*_last, static_cast<IFilterColumnT<char16_t>*>(nullptr), [&]() -> IFilterColumnT<char16_t>* {
    const SheetRange filtered = range();
    if (colId < 0 || colId > filtered.colLast - filtered.colFirst) throw xlerror(kIndexOutOfRange);
    if (const auto known = _columns.find(colId); known != _columns.end()) return known->second.get();
    Bound& bound = _owner->get_autoFilter();
    BoundColumn* found = nullptr;
    for (std::size_t i = 0; found == nullptr && i < bound.size_filterColumn(); ++i) {
      if (bound.get_filterColumn(i).get_colId() == static_cast<std::uint32_t>(colId))
        found = &bound.get_filterColumn(i);
    }
    if (found == nullptr) {
      found = &bound.append_filterColumn();
      found->set_colId(static_cast<std::uint32_t>(colId));
    }
    std::unique_ptr<Column> made(new (std::nothrow) Column(*found, *_last));
    if (!made) throw xlerror("can't create XMLFilterColumnT()");
    return (_columns[colId] = std::move(made)).get();
  });
}

template <class Owner>
int XMLAutoFilterT<Owner>::columnSize() const {
  _last->setOk();
  return static_cast<int>(_columns.size());
}

template <class Owner>
IFilterColumnT<char16_t>* XMLAutoFilterT<Owner>::columnByIndex(int index) {
  return guarded(*_last, static_cast<IFilterColumnT<char16_t>*>(nullptr), [&]() -> IFilterColumnT<char16_t>* {
    if (index < 0 || static_cast<std::size_t>(index) >= _columns.size()) throw xlerror(kIndexOutOfRange);
    return std::next(_columns.begin(), index)->second.get();
  });
}

// Without a sort nothing is changed, the message included.
template <class Owner>
bool XMLAutoFilterT<Owner>::getSortRange(int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
  const Bound* bound = std::as_const(*_owner).find_autoFilter();
  if (bound == nullptr || !bound->isset_sortState()) return false;
  return guarded(*_last, false, [&] {
    const auto sorted = parseRange(bound->find_sortState()->get_ref());
    if (!sorted) throw xlerror(kBadRef);
    giveRange(*sorted, rowFirst, rowLast, colFirst, colLast);
    return true;
  });
}

template <class Owner>
bool XMLAutoFilterT<Owner>::getSort(int* columnIndex, bool* descending) {
  const Bound* bound = std::as_const(*_owner).find_autoFilter();
  const auto* state = bound == nullptr ? nullptr : bound->find_sortState();
  if (state == nullptr || state->size_sortCondition() == 0) return false;
  return guarded(*_last, false, [&] {
    const auto& condition = state->get_sortCondition(0);
    const auto sorted = parseRange(state->get_ref()), column = parseRange(condition.get_ref());
    if (!sorted || !column) throw xlerror(kBadRef);
    if (columnIndex != nullptr) *columnIndex = column->colFirst - sorted->colFirst;
    if (descending != nullptr) *descending = condition.get_descending();
    return true;
  });
}

// The header row stays out of the sort. A filter of nothing but a header sorts the row that would follow.
template <class Owner>
bool XMLAutoFilterT<Owner>::setSort(int columnIndex, bool descending) {
  if (int unused = 0; !getRef(&unused, &unused, &unused, &unused)) {
    _last->setMessage("AutoFilter ref is not specified");
    return false;
  }
  return guarded(*_last, false, [&] {
    SheetRange sorted = range();
    if (columnIndex < 0 || columnIndex > sorted.colLast - sorted.colFirst) throw xlerror("columnIndex is out of range");
    sorted.rowLast = std::max(++sorted.rowFirst, sorted.rowLast);
    const int col = sorted.colFirst + columnIndex;
    std::string rows = rangeText(sorted), column = rangeText({sorted.rowFirst, sorted.rowLast, col, col});
    auto& state = _owner->get_autoFilter().get_sortState();
    state.set_ref(std::move(rows));
    state.clear_sortCondition();
    auto& condition = state.append_sortCondition();
    if (descending) condition.set_descending(true);
    condition.set_ref(std::move(column));
    return true;
  });
}

template <class Owner>
void XMLAutoFilterT<Owner>::detachColumns() {
  for (auto& [colId, column] : _columns) {
    column->detach();
    _detached.push_back(std::move(column));
  }
  _columns.clear();
}

template <class Owner>
void XMLAutoFilterT<Owner>::detachColumn(const BoundColumn& bound) {
  const auto found =
      std::find_if(_columns.begin(), _columns.end(), [&](const auto& entry) { return entry.second->isOn(bound); });
  if (found == _columns.end()) return;
  found->second->detach();
  _detached.push_back(std::move(found->second));
  _columns.erase(found);
}

template <class Owner>
void XMLAutoFilterT<Owner>::refileColumns() {
  std::map<std::int32_t, std::unique_ptr<Column>> filed;
  for (auto& [colId, column] : _columns) filed[column->index()] = std::move(column);
  _columns = std::move(filed);
}

template class XMLFilterColumnT<sheet::c_CT_FilterColumn>;
template class XMLFilterColumnT<table::c_CT_FilterColumn>;
template class XMLFilterColumnT<strict::c_CT_FilterColumn>;
template class XMLAutoFilterT<sheet::c_worksheet>;
template class XMLAutoFilterT<table::c_table>;
template class XMLAutoFilterT<strict::c_worksheet>;
template class XMLAutoFilterT<strict::c_table>;

}  // namespace rubrica
