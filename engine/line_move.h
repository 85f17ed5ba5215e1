// Rows or columns being inserted into a sheet or removed from it, and where that leaves what belongs to a cell. The
// sheet makes one for each such operation and hands it to the objects of its subjects (links, breaks, notes, drawings
// and so on), which ask it for the new place of each row, column or range that they hold.
#pragma once

#include <optional>

namespace rubrica {

// How many lines a sheet has along each axis.
struct GridSize {
  int rows, cols;
};
inline constexpr GridSize kXlsGrid{65536, 256}, kXlsxGrid{1048576, 16384};

struct LineSpan {
  int first = 0, last = 0;
};

class LineMove {
 public:
  enum class Axis { rows, columns };
  enum class Kind { insert, remove };

  // Lines `first` to `last` are inserted in front of the present line `first`, or are removed.
  LineMove(const GridSize& grid, Axis axis, Kind kind, int first, int last)
      : _axis(axis), _kind(kind), _first(first), _last(last), _limit(axis == Axis::rows ? grid.rows : grid.cols) {}

  bool ofRows() const { return _axis == Axis::rows; }
  bool inserts() const { return _kind == Kind::insert; }
  int first() const { return _first; }
  int last() const { return _last; }
  int count() const { return _last - _first + 1; }
  // Lines that a sheet has along this axis.
  int limit() const { return _limit; }

  // The new number of a row or a column; nothing when it was removed or has left the sheet.
  std::optional<int> mapRow(int row) const { return ofRows() ? map(row) : row; }
  std::optional<int> mapCol(int col) const { return ofRows() ? col : map(col); }
  // The lines that a span has afterwards: it grows around an insertion and loses what is removed. A span over all lines
  // stays one. Nothing when none of its lines is left.
  std::optional<LineSpan> mapSpan(int first, int last) const;
  // The same for a range of cells, in place; false when nothing of it is left.
  template <class Range>
  bool apply(Range& range) const {
    return ofRows() ? applyTo(range.rowFirst, range.rowLast) : applyTo(range.colFirst, range.colLast);
  }

 private:
  std::optional<int> map(int line) const;
  template <class Line>
  bool applyTo(Line& first, Line& last) const {
    const auto moved = mapSpan(first, last);
    if (!moved) return false;
    first = static_cast<Line>(moved->first);
    last = static_cast<Line>(moved->last);
    return true;
  }

  Axis _axis;
  Kind _kind;
  int _first, _last, _limit;
};

}  // namespace rubrica
