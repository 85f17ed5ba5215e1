// Outline groups of rows and columns of an .xls sheet.
#include <algorithm>

#include "biff/book_impl.h"
#include "biff/sheet_impl.h"

namespace rubrica {
namespace {

// Levels take three bits in both records.
constexpr int kMostLevel = 7;

int levelOf(const RowRecord& row) {
  return static_cast<int>(row.flags & RowRecord::kOutlineLevel);
}

int levelOf(const ColInfo& info) {
  return (info.grbit & ColInfo::kLevelMask) >> ColInfo::kLevelShift;
}

void setLevel(ColInfo& info, int level) {
  info.grbit = static_cast<std::uint16_t>((info.grbit & ~ColInfo::kLevelMask) | level << ColInfo::kLevelShift);
}

// Guts counts one level more than there are.
void raiseDepth(std::uint16_t& depth, int level) {
  depth = std::max(depth, static_cast<std::uint16_t>(level + 1));
}

}  // namespace

// A row holds no level above the seventh: deeper groups share it.
bool SheetImplT::groupRows(int rowFirst, int rowLast, bool collapsed) {
  return guarded(state(), false, [&] {
    if (rowFirst < 0 || rowFirst >= kBiffRows) throw xlerror("rowFirst must be in range 0-65535");
    if (rowLast < 0 || rowLast >= kBiffRows) throw xlerror("rowLast must be in range 0-65535");
    if (rowFirst > rowLast) throw xlerror("must be rowFirst <= rowLast");
    const auto levelAt = [&](int row) {
      const RowRecord* entry = _rows.find(row);
      return entry == nullptr ? 0 : levelOf(*entry);
    };
    const int level = levelAt(rowFirst);
    for (int row = rowFirst; row <= rowLast; ++row) {
      if (levelAt(row) != level) throw xlerror("detect overlap");
    }
    const int newLevel = std::min(level + 1, kMostLevel);
    for (int row = rowFirst; row <= rowLast; ++row) {
      RowRecord& entry = rowEntry(row);
      entry.flags = (entry.flags & ~RowRecord::kOutlineLevel) | static_cast<std::uint32_t>(newLevel);
      if (collapsed) entry.flags |= RowRecord::kCollapsed | RowRecord::kHidden;
    }
    if (collapsed && rowLast + 1 < kBiffRows) rowEntry(rowLast + 1).flags |= RowRecord::kCollapsed;
    raiseDepth(_guts.iLevelRwMac, newLevel);
    return true;
  });
}

bool SheetImplT::groupCols(int colFirst, int colLast, bool collapsed) {
  return guarded(state(), false, [&] {
    if (colFirst < 0 || colFirst >= kBiffCols) throw xlerror("colFirst must be in range 0-255");
    if (colLast < 0 || colLast >= kBiffCols) throw xlerror("colLast must be in range 0-255");
    if (colFirst > colLast) throw xlerror("must be colFirst <= colLast");
    for (const ColInfo& info : _columns.infos()) {
      const bool touches = info.colFirst <= colLast && colFirst <= info.colLast;
      if (touches && levelOf(info) >= kMostLevel) throw xlerror("exceeded outline level");
    }
    const ColInfo fresh = freshColumn();
    _columns.isolate(colFirst, colLast, fresh);
    int deepest = 0;
    _columns.forEachWithin(colFirst, colLast, [&](ColInfo& info) {
      setLevel(info, levelOf(info) + 1);
      if (collapsed) info.grbit |= ColInfo::kCollapsed | ColInfo::kHidden;
      deepest = std::max(deepest, levelOf(info));
    });
    if (collapsed && colLast + 1 < kBiffCols) {
      _columns.isolate(colLast + 1, colLast + 1, fresh);
      _columns.forEachWithin(colLast + 1, colLast + 1, [](ColInfo& info) { info.grbit |= ColInfo::kCollapsed; });
    }
    _columns.refreshFormats();
    raiseDepth(_guts.iLevelColMac, deepest);
    return true;
  });
}

}  // namespace rubrica
