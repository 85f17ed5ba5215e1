// Rows and columns of an .xls sheet: widths, heights, hiding, fitting columns to their cells.
#include <cmath>

#include <boost/unordered/unordered_flat_map.hpp>

#include "biff/book_impl.h"
#include "biff/sheet_impl.h"
#include "engine/column_fit.h"
#include "engine/column_widths.h"
#include "engine/sample_text.h"

namespace rubrica {
namespace {

constexpr int kTwipsPerPoint = 20;
constexpr int kMostTwips = 8192;
constexpr std::uint16_t kNoStandardWidth = 0xFFFF;
constexpr double kMostFittedChars = 250;  // with any digit width this stays within 16 bits of 1/256 digits

void checkRow(int row) {
  if (row < 0 || row >= kBiffRows) throw xlerror("row must be in range 0-65535");
}

void checkCol(int col) {
  if (col < 0 || col >= kBiffCols) throw xlerror("col must be in range 0-255");
}

void setFlag(std::uint32_t& flags, std::uint32_t flag, bool on) {
  flags = on ? flags | flag : flags & ~flag;
}

}  // namespace

std::uint16_t SheetImplT::defaultStoredWidth() {
  if (_words.standardWidth != kNoStandardWidth) return _words.standardWidth;
  return ColumnWidths(_book->digitWidth()).storedOfChars(_words.defColWidth);
}

ColInfo SheetImplT::freshColumn() {
  ColInfo info;
  info.coldx = defaultStoredWidth();
  return info;
}

double SheetImplT::colWidth(int col) {
  return guarded(state(), 0.0, [&] {
    checkCol(col);
    const ColumnWidths widths(_book->digitWidth());
    const ColInfo* info = _columns.find(col);
    if (info != nullptr) {
      const bool hidden = (info->grbit & ColInfo::kHidden) != 0;
      return widths.charsOfPixels(hidden ? 0 : widths.pixelsOfStored(info->coldx));
    }
    const bool stated = _words.standardWidth != kNoStandardWidth;
    return widths.charsOfPixels(stated ? widths.pixelsOfStored(_words.standardWidth)
                                       : widths.pixelsOfChars(_words.defColWidth));
  });
}

double SheetImplT::rowHeight(int row) {
  return guarded(state(), 0.0, [&] {
    checkRow(row);
    const RowRecord* entry = _rows.find(row);
    return double(entry != nullptr ? entry->miyRw : _defaultRowHeight.miyRw) / kTwipsPerPoint;
  });
}

void SheetImplT::writeColumns(int colFirst, int colLast, std::uint16_t stored, std::optional<std::uint16_t> xf,
                              bool hidden) {
  ColInfo fresh;
  _columns.isolate(colFirst, colLast, fresh);
  _columns.forEachWithin(colFirst, colLast, [&](ColInfo& info) {
    info.coldx = stored;
    info.grbit = static_cast<std::uint16_t>((info.grbit & ~ColInfo::kHidden) | ColInfo::kUserSet |
                                            (hidden ? ColInfo::kHidden : 0));
    if (xf) info.ixfe = *xf;
  });
  _columns.refreshFormats();
}

bool SheetImplT::setCol(int colFirst, int colLast, double width, FormatPtr format, bool hidden) {
  return guarded(state(), false, [&] {
    checkCol(colFirst);
    checkCol(colLast);
    if (colFirst > colLast) throw xlerror("colLast must be greater than or equal to colFirst");
    std::optional<std::uint16_t> xf;
    if (format != nullptr) {
      xf = _book->styles().indexOf(format);
      if (!xf) throw xlerror("specified format not found");
    }
    if (width >= 0 || std::isnan(width)) {
      writeColumns(colFirst, colLast, ColumnWidths(_book->digitWidth()).storedOfChars(width), xf, hidden);
      return true;
    }
    for (int col = colFirst; col <= colLast; ++col) {
      const auto fitted = fittedWidth(col);
      if (!fitted) return false;
      writeColumns(col, col, *fitted, xf, hidden);
    }
    return true;
  });
}

void SheetImplT::setAutoFitArea(int rowFirst, int colFirst, int rowLast, int colLast) {
  _autoFitArea = {rowFirst, rowLast, colFirst, colLast};
  state().setOk();
}

// A column without anything to measure keeps its width.
std::optional<std::uint16_t> SheetImplT::fittedWidth(int col) {
  ColumnFit fit(_book->textMetrics(), _book->digitWidth());
  const FormulaRange& area = _autoFitArea;
  const bool isInside = area.colFirst <= col && (area.colLast < 0 || col <= area.colLast);
  const int end = area.rowLast < 0 ? kBiffRows : std::min(area.rowLast + 1, kBiffRows);
  boost::unordered_flat_map<std::uint16_t, CellLook> looks;
  StyleTables& styles = _book->styles();
  const SheetIndex& index = _cells.index();
  for (int row = index.nextRow(std::max(area.rowFirst, 0)); isInside && row < end; row = index.nextRow(row + 1)) {
    const CellWord word = _cells.word(row, col);
    const std::uint16_t xf = _cells.xf(word);
    if (!word.present() || xf >= styles.formatCount()) continue;
    auto [entry, isNew] = looks.try_emplace(xf);
    CellLook& look = entry->second;
    if (isNew) look = lookOf(*styles.format(xf), styles.customNumFormat(styles.format(xf)->numFormat()));
    if (const Text text = textAt(word); text != nullptr) {
      fit.add(text, look.font, look.rotation);
    } else if (const auto number = numberIn(word)) {
      fit.add(sampleText(*number, look.numFormat, look.customText), look.font, look.rotation);
    }
  }
  state().setOk();
  if (fit.width() < 0) return std::nullopt;
  if (!fit.hasCells()) {
    const ColInfo* info = _columns.find(col);
    return info != nullptr ? info->coldx : defaultStoredWidth();
  }
  return ColumnWidths(_book->digitWidth()).storedOfChars(std::min(fit.width(), kMostFittedChars));
}

RowRecord& SheetImplT::rowEntry(int row) {
  if (RowRecord* entry = _rows.find(row)) return *entry;
  RowRecord& made = _rows.at(row);
  made.miyRw = _defaultRowHeight.miyRw;
  return made;
}

bool SheetImplT::setRow(int row, double height, FormatPtr format, bool hidden) {
  return guarded(state(), false, [&] {
    checkRow(row);
    const double twips = height * kTwipsPerPoint;
    if (!(twips >= 0 && twips <= kMostTwips)) throw xlerror("height is too big");
    std::optional<std::uint16_t> xf;
    if (format != nullptr) {
      xf = _book->styles().indexOf(format);
      if (!xf) throw xlerror("specified format not found");
    }
    RowRecord& entry = rowEntry(row);
    entry.miyRw = static_cast<std::uint16_t>(std::lround(twips));
    entry.flags |= RowRecord::kUnsynced | RowRecord::kAlwaysSet;
    setFlag(entry.flags, RowRecord::kHidden, hidden);
    if (xf) entry.flags = (entry.flags & 0xFFFFu) | RowRecord::kGhostDirty | std::uint32_t{*xf} << RowRecord::kXfShift;
    return true;
  });
}

bool SheetImplT::rowHidden(int row) {
  return guarded(state(), false, [&] {
    checkRow(row);
    const RowRecord* entry = _rows.find(row);
    return entry != nullptr && (entry->flags & RowRecord::kHidden) != 0;
  });
}

bool SheetImplT::setRowHidden(int row, bool hidden) {
  return guarded(state(), false, [&] {
    checkRow(row);
    if (hidden || _rows.find(row) != nullptr) setFlag(rowEntry(row).flags, RowRecord::kHidden, hidden);
    return true;
  });
}

bool SheetImplT::colHidden(int col) {
  return guarded(state(), false, [&] {
    checkCol(col);
    const ColInfo* info = _columns.find(col);
    return info != nullptr && (info->grbit & ColInfo::kHidden) != 0;
  });
}

bool SheetImplT::setColHidden(int col, bool hidden) {
  return guarded(state(), false, [&] {
    checkCol(col);
    if (!hidden && _columns.find(col) == nullptr) return true;
    _columns.isolate(col, col, freshColumn());
    _columns.forEachWithin(col, col, [&](ColInfo& info) {
      info.grbit = static_cast<std::uint16_t>(hidden ? info.grbit | ColInfo::kHidden : info.grbit & ~ColInfo::kHidden);
    });
    _columns.refreshFormats();
    return true;
  });
}

}  // namespace rubrica
