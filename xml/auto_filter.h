// The filter of an .xlsx sheet or table and its columns, as views on the bound autoFilter element: nothing is kept
// beside the tree but the column objects that were asked for. Owner is the root that has the element (the c_worksheet
// or the c_table of a flavour). The sheet or table that hands out a filter owns it; one thread at a time.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "engine/auto_filter.h"
#include "engine/last_message.h"
#include "xml/sheet_range.h"

namespace rubrica {

template <class Bound>
class XMLFilterColumnT final : public IFilterColumnT<char16_t> {
 public:
  XMLFilterColumnT(Bound& bound, LastMessage& last) : _bound(&bound), _last(&last) {}
  XMLFilterColumnT(const XMLFilterColumnT&) = delete;
  XMLFilterColumnT& operator=(const XMLFilterColumnT&) = delete;

  int index() const override;
  FilterType filterType() const override;
  int filterSize() const override;
  const char16_t* filter(int index) const override;
  void addFilter(const char16_t* value) override;
  bool getTop10(double* value, bool* top, bool* percent) override;
  bool setTop10(double value, bool top, bool percent) override;
  bool getCustomFilter(FilterOperator* op1, const char16_t** value1, FilterOperator* op2, const char16_t** value2,
                       bool* andOp) const override;
  bool setCustomFilter(FilterOperator op1, const char16_t* value1, FilterOperator op2, const char16_t* value2,
                       bool andOp) override;
  void clear() override;

  // Whether this is the view on that element.
  bool isOn(const Bound& bound) const { return _bound == &bound; }
  // The element is about to leave the tree: from now on the view is on a copy of its own, which is part of no sheet.
  void detach();

 private:
  Bound* _bound;
  LastMessage* _last;
  std::unique_ptr<Bound> _own;
  mutable std::u16string _text, _secondText;
};

template <class Owner>
class XMLAutoFilterT final : public IAutoFilterT<char16_t> {
 public:
  using Bound = std::remove_reference_t<decltype(std::declval<Owner&>().get_autoFilter())>;
  using BoundColumn = std::remove_reference_t<decltype(std::declval<Bound&>().get_filterColumn(0))>;
  using Column = XMLFilterColumnT<BoundColumn>;

  // Both must outlive the filter.
  XMLAutoFilterT(Owner& owner, LastMessage& last) : _owner(&owner), _last(&last) {}
  XMLAutoFilterT(const XMLAutoFilterT&) = delete;
  XMLAutoFilterT& operator=(const XMLAutoFilterT&) = delete;

  bool getRef(int* rowFirst, int* rowLast, int* colFirst, int* colLast) override;
  void setRef(int rowFirst, int rowLast, int colFirst, int colLast) override;
  IFilterColumnT<char16_t>* column(int colId) override;
  int columnSize() const override;
  IFilterColumnT<char16_t>* columnByIndex(int index) override;
  bool getSortRange(int* rowFirst, int* rowLast, int* colFirst, int* colLast) override;
  bool getSort(int* columnIndex, bool* descending) override;
  bool setSort(int columnIndex, bool descending) override;

  // Before elements leave the tree: detaches the objects handed out for all columns, or for one.
  void detachColumns();
  void detachColumn(const BoundColumn& bound);
  // After column ids have changed in the tree: files the objects under the new ones.
  void refileColumns();

 private:
  SheetRange range() const;

  Owner* _owner;
  LastMessage* _last;
  std::map<std::int32_t, std::unique_ptr<Column>> _columns;
  // Objects whose element has gone; callers may still hold them.
  std::vector<std::unique_ptr<Column>> _detached;
};

}  // namespace rubrica
