// Outline groups of rows and columns of an .xlsx sheet.
#include "engine/address.h"
#include "xml/book_impl.h"
#include "xml/column_ranges.h"
#include "xml/sheet_impl.h"

namespace rubrica {
namespace {

// Readers know levels up to the seventh.
constexpr int kMostLevel = 7;

int levelAbove(int level) {
  if (level >= kMostLevel) throw xlerror("exceeded outline level");
  return level + 1;
}

template <class Line>
void setLevel(Line& line, int level) {
  line.set_outlineLevel(static_cast<std::uint8_t>(level));
}

}  // namespace

// How deep outlines go, from which readers take the room for them.
template <class Tag>
void XMLSheetImplT<Tag>::raiseOutlineDepth(int rowLevel, int colLevel) {
  constexpr double kDefaultPoints = 15.0;
  const bool isNew = !this->isset_sheetFormatPr();
  auto& defaults = this->get_sheetFormatPr();
  if (isNew) defaults.set_defaultRowHeight(kDefaultPoints);
  if (rowLevel > defaults.get_outlineLevelRow()) defaults.set_outlineLevelRow(static_cast<std::uint8_t>(rowLevel));
  if (colLevel > defaults.get_outlineLevelCol()) defaults.set_outlineLevelCol(static_cast<std::uint8_t>(colLevel));
}

template <class Tag>
bool XMLSheetImplT<Tag>::groupRows(int rowFirst, int rowLast, bool collapsed) {
  return guarded(_book->lastMessage(), false, [&] {
    checkCell(rowFirst, 0);
    checkCell(rowLast, 0);
    if (rowFirst > rowLast) throw xlerror("must be rowFirst <= rowLast");
    const auto levelAt = [&](int row) -> int {
      const Row* entry = findRow(row);
      return entry == nullptr ? 0 : entry->get_outlineLevel();
    };
    const int level = levelAt(rowFirst);
    for (int row = rowFirst; row <= rowLast; ++row) {
      if (levelAt(row) != level) throw xlerror("detect overlap");
    }
    const int newLevel = levelAbove(level);
    for (int row = rowFirst; row <= rowLast; ++row) {
      Row& entry = needRow(row);
      setLevel(entry, newLevel);
      if (collapsed) entry.set_hidden(true);
    }
    if (collapsed && rowLast < kMaxRow) needRow(rowLast + 1).set_collapsed(true);
    raiseOutlineDepth(newLevel, 0);
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::groupCols(int colFirst, int colLast, bool collapsed) {
  return guarded(_book->lastMessage(), false, [&] {
    checkCell(0, colFirst);
    checkCell(0, colLast);
    if (colFirst > colLast) throw xlerror("must be colFirst <= colLast");
    ColumnRanges<Root> columns(*this);
    const auto levelAt = [&](int col) -> int {
      const auto* range = columns.find(col);
      return range == nullptr ? 0 : range->get_outlineLevel();
    };
    const int level = levelAt(colFirst);
    for (int col = colFirst; col <= colLast; ++col) {
      if (levelAt(col) != level) throw xlerror("detect overlap");
    }
    const int newLevel = levelAbove(level);
    const double width = freshColWidth();
    columns.change(colFirst, colLast, width, [&](auto& range) {
      setLevel(range, newLevel);
      if (collapsed) range.set_hidden(true);
    });
    if (collapsed && colLast < kMaxCol) {
      columns.change(colLast + 1, colLast + 1, width, [](auto& range) { range.set_collapsed(true); });
    }
    raiseOutlineDepth(0, newLevel);
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::groupSummaryBelow() {
  return guarded(_book->lastMessage(), true, [&] {
    const auto* properties = this->find_sheetPr();
    const auto* outline = properties == nullptr ? nullptr : properties->find_outlinePr();
    return outline == nullptr || outline->get_summaryBelow();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setGroupSummaryBelow(bool below) {
  guarded(_book->lastMessage(), [&] { this->get_sheetPr().get_outlinePr().set_summaryBelow(below); });
}

template <class Tag>
bool XMLSheetImplT<Tag>::groupSummaryRight() {
  return guarded(_book->lastMessage(), true, [&] {
    const auto* properties = this->find_sheetPr();
    const auto* outline = properties == nullptr ? nullptr : properties->find_outlinePr();
    return outline == nullptr || outline->get_summaryRight();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setGroupSummaryRight(bool right) {
  guarded(_book->lastMessage(), [&] { this->get_sheetPr().get_outlinePr().set_summaryRight(right); });
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
