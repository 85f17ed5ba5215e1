// IAutoFilterT and IFilterColumnT: the filter of a sheet or table and its columns. Owned by the sheet; only .xlsx
// sheets have one. Operations answer false, null or 0 on failure, with the reason in the book's errorMessage.
#pragma once

#include "engine/enums.h"

namespace rubrica {

// One filtered column. Exactly one kind of filter stands in it at a time; clear() makes room for another.
template <class C>
class IFilterColumnT {
 public:
  // 0-based column within the filter's range.
  virtual int index() const = 0;
  virtual FilterType filterType() const = 0;
  // The value list: its length, a value by 0-based index (valid until the next call), and a further value.
  virtual int filterSize() const = 0;
  virtual const C* filter(int index) const = 0;
  virtual void addFilter(const C* value) = 0;
  // The first (top) or last entries, counted or in percent; value 1 to 500. Out arguments may be null.
  virtual bool getTop10(double* value, bool* top, bool* percent) = 0;
  virtual bool setTop10(double value, bool top = true, bool percent = false) = 0;
  // One or two comparisons, joined by and or by or. Values may be null.
  virtual bool getCustomFilter(FilterOperator* op1, const C** value1, FilterOperator* op2, const C** value2,
                               bool* andOp) const = 0;
  virtual bool setCustomFilter(FilterOperator op1, const C* value1, FilterOperator op2 = FilterOperator::equal,
                               const C* value2 = nullptr, bool andOp = false) = 0;
  virtual void clear() = 0;

 protected:
  ~IFilterColumnT() = default;
};

template <class C>
class IAutoFilterT {
 public:
  // The filtered range, header row included; 0-based, inclusive.
  virtual bool getRef(int* rowFirst, int* rowLast, int* colFirst, int* colLast) = 0;
  virtual void setRef(int rowFirst, int rowLast, int colFirst, int colLast) = 0;
  // The column `colId` places right of the range's first; made on demand.
  virtual IFilterColumnT<C>* column(int colId) = 0;
  virtual int columnSize() const = 0;
  virtual IFilterColumnT<C>* columnByIndex(int index) = 0;
  virtual bool getSortRange(int* rowFirst, int* rowLast, int* colFirst, int* colLast) = 0;
  virtual bool getSort(int* columnIndex, bool* descending) = 0;
  virtual bool setSort(int columnIndex, bool descending = false) = 0;

 protected:
  ~IAutoFilterT() = default;
};

}  // namespace rubrica
