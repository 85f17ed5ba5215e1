// Rows and columns of an .xlsx sheet: widths, heights, hiding, fitting columns to their cells.
#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

#include <boost/unordered/unordered_flat_map.hpp>

#include "engine/address.h"
#include "engine/column_fit.h"
#include "engine/column_widths.h"
#include "engine/sample_text.h"
#include "xml/book_impl.h"
#include "xml/column_ranges.h"
#include "xml/sheet_impl.h"
#include "xml/styles.h"

namespace rubrica {
namespace {

constexpr double kMostPoints = 409.6;
constexpr double kMostFittedChars = 250;

}  // namespace

template <class Tag>
int XMLSheetImplT<Tag>::colPixels(int col) {
  const ColumnWidths widths(_book->digitWidth());
  const auto* range = ColumnRanges<Root>(*this).find(col);
  if (range != nullptr && range->get_hidden()) return 0;
  if (range != nullptr && range->isset_width()) return widths.pixelsOfDigits(range->get_width());
  return defaultColPixels();
}

template <class Tag>
int XMLSheetImplT<Tag>::defaultColPixels() {
  constexpr int kBaseChars = 8;
  constexpr std::uint32_t kMostBaseChars = 255;
  const ColumnWidths widths(_book->digitWidth());
  const auto* defaults = this->find_sheetFormatPr();
  if (defaults == nullptr) return widths.pixelsOfBase(kBaseChars);
  if (defaults->isset_defaultColWidth()) return widths.pixelsOfDigits(defaults->get_defaultColWidth());
  return widths.pixelsOfBase(static_cast<int>(std::min(defaults->get_baseColWidth(), kMostBaseChars)));
}

// The width that a column without settings gets when it is given others.
template <class Tag>
double XMLSheetImplT<Tag>::freshColWidth() {
  const ColumnWidths widths(_book->digitWidth());
  return widths.digitsOfChars(widths.charsOfPixels(defaultColPixels()));
}

template <class Tag>
double XMLSheetImplT<Tag>::rowPoints(int row) {
  constexpr double kDefaultPoints = 15.0;
  if (const Row* entry = findRow(row); entry != nullptr && entry->isset_ht()) return entry->get_ht();
  const auto* defaults = this->find_sheetFormatPr();
  return defaults == nullptr ? kDefaultPoints : defaults->get_defaultRowHeight();
}

template <class Tag>
double XMLSheetImplT<Tag>::colWidth(int col) {
  return guarded(_book->lastMessage(), 0.0, [&] {
    checkCell(0, col);
    return ColumnWidths(_book->digitWidth()).charsOfPixels(colPixels(col));
  });
}

template <class Tag>
double XMLSheetImplT<Tag>::rowHeight(int row) {
  return guarded(_book->lastMessage(), 0.0, [&] {
    checkCell(row, 0);
    return rowPoints(row);
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::setCol(int colFirst, int colLast, double width, FormatPtr format, bool hidden) {
  return guarded(_book->lastMessage(), false, [&] {
    if (colFirst < 0 || colFirst > kMaxCol || colLast < 0 || colLast > kMaxCol) {
      throw xlerror("col must be in range 0-16383");
    }
    if (colFirst > colLast) throw xlerror("colLast must be greater than or equal to colFirst");
    std::optional<std::uint32_t> style;
    if (format != nullptr) style = indexOfFormat(format);
    const ColumnWidths widths(_book->digitWidth());
    const auto write = [&](int first, int last, double digits) {
      ColumnRanges<Root>(*this).change(first, last, digits, [&](auto& range) {
        range.set_width(digits);
        range.set_customWidth(true);
        if (style) range.set_style(*style);
        hidden ? range.set_hidden(true) : range.unset_hidden();
      });
      if (style) std::fill(_colFormats.begin() + first, _colFormats.begin() + last + 1, *style);
    };
    if (width >= 0 || std::isnan(width)) {
      write(colFirst, colLast, widths.digitsOfChars(width));
      return true;
    }
    for (int col = colFirst; col <= colLast; ++col) {
      const auto chars = fittedWidth(col);
      if (!chars) return false;
      write(col, col, widths.digitsOfChars(*chars));
    }
    return true;
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setAutoFitArea(int rowFirst, int colFirst, int rowLast, int colLast) {
  _autoFitArea = {rowFirst, rowLast, colFirst, colLast};
  _book->lastMessage().setOk();
}

// A column without anything to measure keeps its width. In characters.
template <class Tag>
std::optional<double> XMLSheetImplT<Tag>::fittedWidth(int col) {
  ColumnFit fit(_book->textMetrics(), _book->digitWidth());
  const SheetRange& area = _autoFitArea;
  const bool isInside = area.colFirst <= col && (area.colLast < 0 || col <= area.colLast);
  const auto* data = this->find_sheetData();
  Styles<Tag>* styles = _book->styles();
  boost::unordered_flat_map<std::uint32_t, CellLook> looks;
  std::map<int, std::u16string> formatTexts;
  for (std::size_t i = 0; data != nullptr && isInside && i < data->size_row(); ++i) {
    const Row& entry = data->get_row(i);
    const int row = static_cast<int>(entry.get_r()) - 1;
    if (row < area.rowFirst || (area.rowLast >= 0 && row > area.rowLast)) continue;
    const std::size_t at = cellPosition(entry, col);
    if (at >= entry.size_c() || entry.get_c(at).column() != col) continue;
    const Cell& cell = entry.get_c(at);
    auto [found, isNew] = looks.try_emplace(cell.get_s());
    CellLook& look = found->second;
    if (isNew && styles != nullptr && cell.get_s() < static_cast<std::uint32_t>(styles->formatCount())) {
      IFormatT<char16_t>& format = *_book->format(static_cast<int>(cell.get_s()));
      look = lookOf(format, nullptr);
      if (const char16_t* text = styles->findCustomNumFormat(look.numFormat)) {
        look.customText = formatTexts.try_emplace(look.numFormat, text).first->second;
      }
    }
    if (const auto number = numberIn(cell)) {
      fit.add(sampleText(*number, look.numFormat, look.customText), look.font, look.rotation);
    } else if (readText(cell)) {
      fit.add(_text, look.font, look.rotation);
    }
  }
  _book->lastMessage().setOk();
  if (fit.width() < 0) return std::nullopt;
  const ColumnWidths widths(_book->digitWidth());
  if (fit.hasCells()) return std::min(fit.width(), kMostFittedChars);
  const auto* range = ColumnRanges<Root>(*this).find(col);
  const bool stated = range != nullptr && range->isset_width();
  return widths.charsOfPixels(stated ? widths.pixelsOfDigits(range->get_width()) : defaultColPixels());
}

template <class Tag>
void XMLSheetImplT<Tag>::widenUsedRows(int row) {
  if (_used.empty()) {
    _used = {row, row + 1, 0, 1};
  } else {
    _used.widen(row, _used.firstCol);
  }
}

// A sheet that is read has the used range that it had when it was saved. One of which a part is read begins and ends
// with its rows.
template <class Tag>
void XMLSheetImplT<Tag>::widenByMarks() {
  const auto* data = std::as_const(*this).find_sheetData();
  for (std::size_t i = 0; data != nullptr && i < data->size_row(); ++i) {
    const Row& row = data->get_row(i);
    if (row.get_hidden() && row.size_c() == 0) widenUsedRows(static_cast<int>(row.get_r()) - 1);
  }
  const auto* merges = std::as_const(*this).find_mergeCells();
  for (std::size_t i = 0; merges != nullptr && !_isPartial && i < merges->size_mergeCell(); ++i) {
    const auto range = parseRange(merges->get_mergeCell(i).get_ref());
    if (!range) continue;
    _used.widen(range->rowFirst, range->colFirst);
    _used.widen(range->rowLast, range->colLast);
  }
}

template <class Tag>
bool XMLSheetImplT<Tag>::setRow(int row, double height, FormatPtr format, bool hidden) {
  return guarded(_book->lastMessage(), false, [&] {
    checkCell(row, 0);
    if (!(height >= 0 && height <= kMostPoints)) throw xlerror("height is too big");
    std::optional<std::uint32_t> style;
    if (format != nullptr) style = indexOfFormat(format);
    Row& entry = needRow(row);
    entry.set_ht(height);
    entry.set_customHeight(true);
    if (style) {
      entry.set_s(*style);
      entry.set_customFormat(true);
    }
    hidden ? entry.set_hidden(true) : entry.unset_hidden();
    if (hidden) widenUsedRows(row);
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::rowHidden(int row) {
  return guarded(_book->lastMessage(), false, [&] {
    checkCell(row, 0);
    const Row* entry = findRow(row);
    return entry != nullptr && entry->get_hidden();
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::setRowHidden(int row, bool hidden) {
  return guarded(_book->lastMessage(), false, [&] {
    checkCell(row, 0);
    if (hidden) {
      needRow(row).set_hidden(true);
      widenUsedRows(row);
    } else if (Row* entry = findRow(row)) {
      entry->unset_hidden();
    }
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::colHidden(int col) {
  return guarded(_book->lastMessage(), false, [&] {
    checkCell(0, col);
    const auto* range = ColumnRanges<Root>(*this).find(col);
    return range != nullptr && range->get_hidden();
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::setColHidden(int col, bool hidden) {
  return guarded(_book->lastMessage(), false, [&] {
    checkCell(0, col);
    ColumnRanges<Root> columns(*this);
    if (!hidden && columns.find(col) == nullptr) return true;
    columns.change(col, col, freshColWidth(),
                   [&](auto& range) { hidden ? range.set_hidden(true) : range.unset_hidden(); });
    return true;
  });
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
