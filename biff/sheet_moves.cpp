// Inserting and removing rows and columns of an .xls sheet.
#include <algorithm>
#include <cstring>

#include "biff/book_impl.h"
#include "biff/named_row_moves.h"
#include "biff/sheet_impl.h"
#include "engine/column_widths.h"

namespace rubrica {
namespace {

constexpr double kNewColumnChars = 8.43;

// The range that the bodies of ShrFmla, Array and Table records begin with.
struct DefinitionRange {
  std::uint16_t rowFirst, rowLast;
  std::uint8_t colFirst, colLast;
};
static_assert(sizeof(DefinitionRange) == 6);

std::vector<int> rowsFrom(const SheetIndex& index, int first) {
  std::vector<int> rows;
  for (int row = index.nextRow(first); row < kBiffRows; row = index.nextRow(row + 1)) rows.push_back(row);
  return rows;
}

}  // namespace

bool SheetImplT::insertRow(int rowFirst, int rowLast, bool updateNamedRanges) {
  return guarded(state(), false, [&] {
    checkRows(rowFirst, rowLast);
    moveLines({kXlsGrid, LineMove::Axis::rows, LineMove::Kind::insert, rowFirst, rowLast}, updateNamedRanges);
    return true;
  });
}

bool SheetImplT::removeRow(int rowFirst, int rowLast, bool updateNamedRanges) {
  return guarded(state(), false, [&] {
    checkRows(rowFirst, rowLast);
    moveLines({kXlsGrid, LineMove::Axis::rows, LineMove::Kind::remove, rowFirst, rowLast}, updateNamedRanges);
    return true;
  });
}

bool SheetImplT::insertCol(int colFirst, int colLast, bool updateNamedRanges) {
  return guarded(state(), false, [&] {
    checkCols(colFirst, colLast);
    moveLines({kXlsGrid, LineMove::Axis::columns, LineMove::Kind::insert, colFirst, colLast}, updateNamedRanges);
    return true;
  });
}

bool SheetImplT::removeCol(int colFirst, int colLast, bool updateNamedRanges) {
  return guarded(state(), false, [&] {
    checkCols(colFirst, colLast);
    moveLines({kXlsGrid, LineMove::Axis::columns, LineMove::Kind::remove, colFirst, colLast}, updateNamedRanges);
    return true;
  });
}

// Defined names follow rows and not columns.
void SheetImplT::moveLines(const LineMove& move, bool updateNamedRanges) {
  keepReferences(move);
  if (move.ofRows()) {
    moveRowsOfCells(move);
    moveRowEntries(move);
  } else {
    moveColumnsOfCells(move);
    moveColumnSettings(move);
  }
  moveDimensions(move);
  moveMerges(move);
  moveDefinitions(move);
  _page.moveBreaks(move);
  std::erase_if(_hyperlinks, [&](HLink& link) { return !move.apply(link.range); });
  _features.move(move);
  _notes.move(move);
  _drawing.moveAnchors(move);
  if (updateNamedRanges && move.ofRows()) {
    _book->renumberNames(moveNamedRows(_book->names(), _book->links(), _book->positionOf(*this), move));
  }
}

// A formula means the same cells before and after it moves. Those that share a definition of offsets from their own
// place would not, so they get tokens of their own.
void SheetImplT::keepReferences(const LineMove& move) {
  if (_definitions.empty()) return;
  const SheetIndex& index = _cells.index();
  for (const int row : rowsFrom(index, move.ofRows() ? move.first() : 0)) {
    index.forEachInRow(row, [&](int col, std::uint32_t bits) {
      const CellWord word{bits};
      if (word.kind() == CellKind::formula && (move.ofRows() || col >= move.first())) unshare(_cells.formula(word));
    });
  }
}

void SheetImplT::unshare(FormulaCell& cell) {
  const FormulaDefinition* definition = _definitions.of(cell);
  const auto shared = definition != nullptr ? definitionTokens(*definition) : std::nullopt;
  if (!shared || !shared->relative) return;
  holdOwnExpression(cell, ownExpression(cell));
}

void SheetImplT::moveRowsOfCells(const LineMove& move) {
  std::vector<int> rows = rowsFrom(_cells.index(), move.first());
  if (move.inserts()) std::reverse(rows.begin(), rows.end());
  for (const int row : rows) {
    if (const auto target = move.mapRow(row)) {
      _cells.moveRow(row, *target);
    } else {
      _cells.eraseRow(row);
    }
  }
}

// Texts that a file brought within their cells stay where they are, unless a cell moves onto them.
void SheetImplT::moveColumnsOfCells(const LineMove& move) {
  std::vector<int> cols;
  for (const int row : rowsFrom(_cells.index(), 0)) {
    cols.clear();
    _cells.index().forEachInRow(row, [&](int col, std::uint32_t bits) {
      if (col >= move.first() && CellWord{bits}.kind() != CellKind::label) cols.push_back(col);
    });
    if (move.inserts()) std::reverse(cols.begin(), cols.end());
    for (const int col : cols) {
      if (const auto target = move.mapCol(col)) {
        _cells.move(row, col, row, *target);
      } else {
        _cells.erase(row, col);
      }
    }
  }
}

void SheetImplT::moveRowEntries(const LineMove& move) {
  std::erase_if(_rows.rows(), [&](RowRecord& entry) {
    const auto row = move.mapRow(entry.rw);
    if (row) entry.rw = static_cast<std::uint16_t>(*row);
    return !row;
  });
  _rows.reindex();
}

SheetImplT::ColumnSetting SheetImplT::columnSetting(int col) {
  const ColInfo* info = _columns.find(col);
  if (info == nullptr) return {defaultStoredWidth(), false};
  return {info->coldx, (info->grbit & ColInfo::kHidden) != 0};
}

// Widths and hiding go with the cells; formats and outline levels stay with their columns.
void SheetImplT::moveColumnSettings(const LineMove& move) {
  const auto copySetting = [&](int from, int to) {
    const ColumnSetting setting = columnSetting(from);
    if (setting != columnSetting(to)) writeColumns(to, to, setting.stored, std::nullopt, setting.hidden);
  };
  if (move.inserts()) {
    for (int col = kBiffCols - 1; col > move.last(); --col) copySetting(col - move.count(), col);
    const std::uint16_t stored = ColumnWidths(_book->digitWidth()).storedOfChars(kNewColumnChars);
    writeColumns(move.first(), move.last(), stored, std::nullopt, false);
    return;
  }
  const int firstNew = kBiffCols - move.count();
  for (int col = move.first(); col < firstNew; ++col) copySetting(col + move.count(), col);
  const ColumnSetting byDefault{defaultStoredWidth(), false};
  for (int col = std::max(firstNew, move.first()); col < kBiffCols; ++col) {
    if (columnSetting(col) != byDefault) writeColumns(col, col, byDefault.stored, std::nullopt, false);
  }
}

void SheetImplT::moveDimensions(const LineMove& move) {
  const auto moveBounds = [&](auto& first, auto& last) {
    if (first == last) return true;
    using Bound = std::remove_reference_t<decltype(first)>;
    const auto moved = move.mapSpan(static_cast<int>(first), static_cast<int>(last) - 1);
    if (!moved) return false;
    first = static_cast<Bound>(moved->first);
    last = static_cast<Bound>(moved->last + 1);
    return true;
  };
  const bool isUsed = move.ofRows() ? moveBounds(_dimensions.rwMic, _dimensions.rwMac)
                                    : moveBounds(_dimensions.colMic, _dimensions.colMac);
  if (!isUsed) _dimensions = {};
}

// An insertion into a merged range divides it; what is removed makes it smaller.
void SheetImplT::moveMerges(const LineMove& move) {
  std::vector<MergedRange> behind;
  for (auto& block : _merges.blocks()) {
    std::erase_if(block, [&](MergedRange& range) {
      auto& first = move.ofRows() ? range.rowFirst : range.colFirst;
      auto& last = move.ofRows() ? range.rowLast : range.colLast;
      if (!move.inserts() || first >= move.first() || last < move.first()) return !move.apply(range);
      if (move.last() + 1 < move.limit()) {
        MergedRange rest = range;
        (move.ofRows() ? rest.rowFirst : rest.colFirst) = static_cast<std::uint16_t>(move.last() + 1);
        (move.ofRows() ? rest.rowLast : rest.colLast) =
            static_cast<std::uint16_t>(std::min(last + move.count(), move.limit() - 1));
        behind.push_back(rest);
      }
      last = static_cast<std::uint16_t>(move.first() - 1);
      return false;
    });
  }
  for (const MergedRange& range : behind) addMerge(range);
}

// Array formulas and data tables state the range of their cells.
void SheetImplT::moveDefinitions(const LineMove& move) {
  _definitions.forEach([&](FormulaDefinition& definition) {
    DefinitionRange range{};
    if (definition.recordId == id::kShrFmla || definition.bytes.size() < sizeof(range)) return;
    std::memcpy(&range, definition.bytes.data(), sizeof(range));
    if (!move.apply(range)) return;
    std::vector<std::byte> bytes(definition.bytes.begin(), definition.bytes.end());
    std::memcpy(bytes.data(), &range, sizeof(range));
    definition.bytes = state().pool.copyBytes(bytes);
  });
}

}  // namespace rubrica
