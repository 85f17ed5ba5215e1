// The columns of a worksheet as its `cols` element keeps them: ranges of columns that share width, style, hiding and
// outline level. Functions over the bound root; the tree is all there is. Columns are 0-based here and 1-based in it.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "engine/address.h"
#include "engine/line_move.h"

namespace rubrica {

template <class Root>
class ColumnRanges {
 public:
  using Cols = std::remove_reference_t<decltype(std::declval<Root&>().get_cols(0))>;
  using Col = std::remove_reference_t<decltype(std::declval<Cols&>().get_col(0))>;

  explicit ColumnRanges(Root& root) : _root(&root) {}

  // The range that a column is in, null for a column without settings.
  const Col* find(int col) const;
  // Calls `change` for ranges that cover exactly the columns first to last: ranges are cut at the ends, and columns
  // without settings get a range of `freshWidth` (in the unit of the file).
  template <class Change>
  void change(int first, int last, double freshWidth, Change&& change) {
    isolate(first, last, freshWidth);
    Cols& cols = _root->get_cols(0);
    for (std::size_t i = 0; i < cols.size_col(); ++i) {
      Col& range = cols.get_col(i);
      if (firstOf(range) >= first && lastOf(range) <= last) change(range);
    }
  }
  // Settings go with their columns; columns that come in have none.
  void move(const LineMove& move);

  static int firstOf(const Col& range) { return static_cast<int>(range.get_min()) - 1; }
  static int lastOf(const Col& range) { return static_cast<int>(range.get_max()) - 1; }

 private:
  void isolate(int first, int last, double freshWidth);
  // One element with ranges in order that don't meet, whatever the file had.
  void settle();
  bool isSettled() const;
  void cutBefore(int col);
  void dropIfEmpty();
  static void setRange(Col& range, int first, int last);

  Root* _root;
};

}  // namespace rubrica
