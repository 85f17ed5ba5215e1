// Inserting and removing rows and columns of an .xlsx sheet. Cells and rows are renumbered where they stand, so that an
// insertion costs a walk over what lies behind it and nothing is copied; everything that refers to cells follows.
#include <algorithm>

#include "xml/book_impl.h"
#include "xml/bound_list.h"
#include "xml/break_list.h"
#include "xml/carried_moves.h"
#include "xml/column_ranges.h"
#include "xml/comment_tree.h"
#include "xml/comments.h"
#include "xml/drawing.h"
#include "xml/filter_moves.h"
#include "xml/name_reference.h"
#include "xml/package_links.h"
#include "xml/package_names.h"
#include "xml/picture_anchors.h"
#include "xml/sheet_impl.h"
#include "xml/table.h"
#include "xml/table_tree.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

// A list of ranges after a move; false when nothing is left of any.
bool moveRanges(std::vector<std::string>& ranges, const LineMove& move) {
  std::erase_if(ranges, [&](std::string& text) {
    const auto moved = movedRange(text, move);
    if (moved) text = *moved;
    return !moved;
  });
  return !ranges.empty();
}

// The same for an element that has such a list.
template <class Element>
bool moveSqref(Element& element, const LineMove& move) {
  std::vector<std::string> ranges = element.get_sqref();
  const bool isLeft = ranges.empty() || moveRanges(ranges, move);
  if (isLeft && ranges != element.get_sqref()) element.set_sqref(std::move(ranges));
  return isLeft;
}

}  // namespace

template <class Tag>
bool XMLSheetImplT<Tag>::insertRow(int rowFirst, int rowLast, bool updateNamedRanges) {
  return guarded(_book->lastMessage(), false, [&] {
    checkOrder(rowFirst, rowLast, 0, 0);
    checkCell(rowFirst, 0);
    checkCell(rowLast, 0);
    moveLines({kXlsxGrid, LineMove::Axis::rows, LineMove::Kind::insert, rowFirst, rowLast}, updateNamedRanges);
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::removeRow(int rowFirst, int rowLast, bool updateNamedRanges) {
  return guarded(_book->lastMessage(), false, [&] {
    checkOrder(rowFirst, rowLast, 0, 0);
    checkCell(rowFirst, 0);
    checkCell(rowLast, 0);
    moveLines({kXlsxGrid, LineMove::Axis::rows, LineMove::Kind::remove, rowFirst, rowLast}, updateNamedRanges);
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::insertCol(int colFirst, int colLast, bool updateNamedRanges) {
  return guarded(_book->lastMessage(), false, [&] {
    checkOrder(0, 0, colFirst, colLast);
    checkCell(0, colFirst);
    checkCell(0, colLast);
    moveLines({kXlsxGrid, LineMove::Axis::columns, LineMove::Kind::insert, colFirst, colLast}, updateNamedRanges);
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::removeCol(int colFirst, int colLast, bool updateNamedRanges) {
  return guarded(_book->lastMessage(), false, [&] {
    checkOrder(0, 0, colFirst, colLast);
    checkCell(0, colFirst);
    checkCell(0, colLast);
    moveLines({kXlsxGrid, LineMove::Axis::columns, LineMove::Kind::remove, colFirst, colLast}, updateNamedRanges);
    return true;
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::moveLines(const LineMove& move, bool updateNamedRanges) {
  unshareFormulas();
  move.ofRows() ? moveRows(move) : moveColumns(move);
  moveUsedRange(move);
  moveMerges(move);
  moveMarks(move);
  moveHyperlinks(move);
  if (auto* breaks = this->find_rowBreaks()) moveBreaks(*breaks, move, move.ofRows());
  if (auto* breaks = this->find_colBreaks()) moveBreaks(*breaks, move, !move.ofRows());
  moveOwnFilter(move);
  moveTables(move);
  if (auto* drawing = findDrawing()) moveAnchors(static_cast<typename Flavour<Tag>::DrawingRoot&>(*drawing), move);
  if (auto* comments = findComments()) comments->move(move);
  moveCarriedParts(move);
  moveExtensions(move);
  moveNames(move, updateNamedRanges);
}

// Cells of a group say their formula by the distance from its master. When lines come or go between them that would be
// another formula, so each gets the text that it means now.
template <class Tag>
void XMLSheetImplT<Tag>::unshareFormulas() {
  if (_sharedFormulas.empty()) return;
  const auto forEachShared = [&](auto&& visit) {
    auto& data = this->get_sheetData();
    for (std::size_t i = 0; i < data.size_row(); ++i) {
      Row& row = data.get_row(i);
      for (std::size_t k = 0; k < row.size_c(); ++k) {
        auto* formula = row.get_c(k).find_full_f();
        if (formula != nullptr && formula->get_t() == "shared") visit(row.get_c(k), *formula);
      }
    }
  };
  // The masters' texts have to stand until the last of the others was asked.
  forEachShared([&](const Cell& cell, auto& formula) {
    if (!formula.isset_ref()) {
      formula.set_value(formulaText(static_cast<int>(cell.row()), cell.column(), cell));
    }
  });
  forEachShared([](const Cell&, auto& formula) {
    formula.unset_t();
    formula.unset_si();
    formula.unset_ref();
  });
  _sharedFormulas.clear();
}

// Array formulas and data tables state the range of their cells.
template <class Tag>
void XMLSheetImplT<Tag>::moveFormulaRange(Cell& cell, const LineMove& move) {
  auto* formula = cell.find_full_f();
  if (formula == nullptr || !formula->isset_ref()) return;
  if (const auto moved = movedRange(formula->get_ref(), move)) formula->set_ref(*moved);
}

template <class Tag>
void XMLSheetImplT<Tag>::moveRows(const LineMove& move) {
  auto& data = this->get_sheetData();
  const std::size_t first = rowPosition(data, move.first());
  if (move.inserts()) {
    const std::size_t end = rowPosition(data, move.limit() - move.count());
    for (std::size_t i = data.size_row(); i > std::max(end, first); --i) data.erase_row(i - 1);
  } else {
    std::size_t position = 0;
    const std::size_t gone = rowPosition(data, move.last() + 1) - first;
    eraseItems(
        data.size_row() - first, [&](std::size_t i) -> Row& { return data.get_row(first + i); },
        [&](std::size_t i) { data.erase_row(first + i); }, [&](Row&) { return position++ < gone; });
  }
  _lastRowPosition = 0;
  const int shift = move.inserts() ? move.count() : -move.count();
  for (std::size_t i = 0; i < data.size_row(); ++i) {
    Row& row = data.get_row(i);
    const bool moves = i >= first;
    const auto number = static_cast<std::uint32_t>(static_cast<int>(row.get_r()) + (moves ? shift : 0));
    row.set_r(number);
    const std::size_t count = row.size_c();
    for (std::size_t k = 0; k < count; ++k) {
      Cell& cell = row.get_c(k);
      if (moves) cell.set_position(number - 1, cell.column());
      moveFormulaRange(cell, move);
    }
  }
}

template <class Tag>
void XMLSheetImplT<Tag>::moveColumns(const LineMove& move) {
  auto& data = this->get_sheetData();
  for (std::size_t i = 0; i < data.size_row(); ++i) {
    Row& row = data.get_row(i);
    eraseItems(
        row.size_c(), [&](std::size_t k) -> Cell& { return row.get_c(k); }, [&](std::size_t k) { row.erase_c(k); },
        [&](Cell& cell) {
          const auto col = move.mapCol(cell.column());
          if (!col) return true;
          if (*col != cell.column()) cell.set_position(cell.row(), static_cast<std::uint16_t>(*col));
          moveFormulaRange(cell, move);
          return false;
        });
  }
  ColumnRanges<Root>(*this).move(move);
  adoptColumnFormats();
}

template <class Tag>
void XMLSheetImplT<Tag>::moveUsedRange(const LineMove& move) {
  if (_used.empty()) return;
  int& first = move.ofRows() ? _used.firstRow : _used.firstCol;
  int& last = move.ofRows() ? _used.lastRow : _used.lastCol;
  auto moved = move.mapSpan(first, last - 1);
  // A range over all lines stays one; cells don't.
  if (moved && !move.inserts() && first == 0 && last == move.limit()) {
    moved->last -= move.count();
    if (moved->last < 0) moved.reset();
  }
  if (!moved) {
    _used = {};
    return;
  }
  first = moved->first;
  last = moved->last + 1;
}

// A merge grows around an insertion and shrinks by what is removed of it. One cell that is left of it is no merge.
template <class Tag>
void XMLSheetImplT<Tag>::moveMerges(const LineMove& move) {
  auto* merges = this->find_mergeCells();
  if (merges == nullptr) return;
  eraseItems(
      merges->size_mergeCell(), [&](std::size_t i) -> auto& { return merges->get_mergeCell(i); },
      [&](std::size_t i) { merges->erase_mergeCell(i); },
      [&](auto& merge) {
        auto range = parseRange(merge.get_ref());
        if (!range) return false;
        const SheetRange before = *range;
        if (!move.apply(*range)) return true;
        if (range->isOneCell() && !before.isOneCell()) return true;
        merge.set_ref(cellText(range->rowFirst, range->colFirst) + ':' + cellText(range->rowLast, range->colLast));
        return false;
      });
  merges->set_count(static_cast<std::uint32_t>(merges->size_mergeCell()));
  if (merges->size_mergeCell() == 0) this->unset_mergeCells();
}

// Validations, conditional formats, ignored errors and protected ranges: each has a list of ranges, and goes with the
// last of them.
template <class Tag>
void XMLSheetImplT<Tag>::moveMarks(const LineMove& move) {
  const auto goes = [&](auto& element) { return !moveSqref(element, move); };
  if (auto* list = this->find_dataValidations()) {
    eraseItems(
        list->size_dataValidation(), [&](std::size_t i) -> auto& { return list->get_dataValidation(i); },
        [&](std::size_t i) { list->erase_dataValidation(i); }, goes);
    list->set_count(static_cast<std::uint32_t>(list->size_dataValidation()));
    if (list->size_dataValidation() == 0) this->unset_dataValidations();
  }
  eraseItems(
      this->size_conditionalFormatting(), [&](std::size_t i) -> auto& { return this->get_conditionalFormatting(i); },
      [&](std::size_t i) { this->erase_conditionalFormatting(i); }, goes);
  if (auto* list = this->find_ignoredErrors()) {
    eraseItems(
        list->size_ignoredError(), [&](std::size_t i) -> auto& { return list->get_ignoredError(i); },
        [&](std::size_t i) { list->erase_ignoredError(i); }, goes);
    if (list->size_ignoredError() == 0) this->unset_ignoredErrors();
  }
  if (auto* list = this->find_protectedRanges()) {
    eraseItems(
        list->size_protectedRange(), [&](std::size_t i) -> auto& { return list->get_protectedRange(i); },
        [&](std::size_t i) { list->erase_protectedRange(i); }, goes);
    if (list->size_protectedRange() == 0) this->unset_protectedRanges();
  }
}

template <class Tag>
void XMLSheetImplT<Tag>::moveHyperlinks(const LineMove& move) {
  auto* links = this->find_hyperlinks();
  if (links == nullptr) return;
  std::vector<std::string> gone;
  eraseItems(
      links->size_hyperlink(), [&](std::size_t i) -> auto& { return links->get_hyperlink(i); },
      [&](std::size_t i) { links->erase_hyperlink(i); },
      [&](auto& link) {
        const auto moved = movedRange(link.get_ref(), move);
        if (moved) link.set_ref(*moved);
        if (!moved && link.isset_r_id()) gone.push_back(link.get_r_id());
        return !moved;
      });
  if (links->size_hyperlink() == 0) this->unset_hyperlinks();
  for (const std::string& id : gone) forgetLinkTarget(id);
}

template <class Tag>
void XMLSheetImplT<Tag>::moveOwnFilter(const LineMove& move) {
  if (this->isset_sortState() && !moveSort(this->get_sortState(), move)) this->unset_sortState();
  if (!this->isset_autoFilter()) return;
  const auto goes = [&](const auto& column) {
    if (_autoFilter) _autoFilter->detachColumn(column);
  };
  const bool isLeft = moveFilter(this->get_autoFilter(), move, goes);
  if (_autoFilter) isLeft ? _autoFilter->refileColumns() : _autoFilter->detachColumns();
  if (isLeft) return;
  this->unset_autoFilter();
  removeName(kFilterDatabase, _book->positionOf(*this));
}

// Parts of the sheet that nobody here reads otherwise: the boxes of the comments and their threads, pivot tables.
template <class Tag>
void XMLSheetImplT<Tag>::moveCarriedParts(const LineMove& move) {
  const auto change = [&](const std::string& name, const auto& moved) {
    const auto* part = _book->parts().template findAs<BinaryFile>(name);
    if (part == nullptr) return;
    const std::string_view text(reinterpret_cast<const char*>(part->data()), part->size());
    const std::string now = moved(text, move);
    if (now != text) _book->parts().add(name, std::make_unique<BinaryFile>(now.data(), now.size()));
  };
  if constexpr (requires { this->find_legacyDrawing(); }) {
    if (const auto* legacy = this->find_legacyDrawing()) change(linkedPart(legacy->get_r_id()), movedLegacyDrawing);
  }
  const std::string own = _book->partNameOf(*this);
  Relationships* links = _book->relationshipsOf(own);
  if (links == nullptr) return;
  const auto changeAll = [&](std::string_view type, const auto& moved) {
    for (std::string target = links->findByType(type); !target.empty(); target = links->nextByType()) {
      change(targetKey(partDirectory(own), target), moved);
    }
  };
  changeAll(relationship_type::kThreadedComments, movedThreadedComments);
  changeAll(relationship_type::kPivotTable, movedPivotTable);
  changeAll(relationship_type::kStrictPivotTable, movedPivotTable);
}

// Conditional formats, validations, sparklines and more of later versions of the format.
template <class Tag>
void XMLSheetImplT<Tag>::moveExtensions(const LineMove& move) {
  auto* list = this->find_extLst();
  auto* extensions = list == nullptr ? nullptr : list->find_EG_ExtensionList();
  if (extensions == nullptr) return;
  eraseItems(
      extensions->size_ext(), [&](std::size_t i) -> auto& { return extensions->get_ext(i); },
      [&](std::size_t i) { extensions->erase_ext(i); },
      [&](auto& extension) {
        for (std::size_t i = extension.size_any(); i-- > 0;) {
          lmx::any_item item = extension.get_any(i);
          auto moved = movedExtension(item.text, move);
          if (!moved) {
            extension.erase_any(i);
            if (extension.size_any() == 0) return true;
          } else if (*moved != item.text) {
            item.text = std::move(*moved);
            extension.set_any(i, std::move(item));
          }
        }
        return false;
      });
  if (extensions->size_ext() == 0) this->unset_extLst();
}

// A table of which nothing is left goes with its part. The header cells of columns that came in bear their names.
template <class Tag>
void XMLSheetImplT<Tag>::moveTables(const LineMove& move) {
  auto* parts = this->find_tableParts();
  for (std::size_t i = parts == nullptr ? 0 : parts->size_tablePart(); i-- > 0;) {
    const std::string id = parts->get_tablePart(i).get_r_id(), name = linkedPart(id);
    auto* table = _book->parts().template findAs<Table<Tag>>(name);
    if (table == nullptr) continue;
    const TableMove moved = moveTable(static_cast<typename Flavour<Tag>::TableRoot&>(*table), move);
    for (const TableHeaderCell& header : moved.newHeaders) {
      if (!writeStr(header.row, header.col, fromXstring(header.name).c_str(), nullptr, 0)) {
        throw xlerror(_book->errorMessage());
      }
    }
    if (moved.isLeft) continue;
    parts->erase_tablePart(i);
    _book->relationshipsOf(_book->partNameOf(*this))->removeById(id);
    _book->needContentTypes().removeOverride(name);
    _book->parts().remove(makeRelsPath(name));
    _book->parts().remove(name);
  }
  if (parts == nullptr) return;
  parts->set_count(static_cast<std::uint32_t>(parts->size_tablePart()));
  if (parts->size_tablePart() == 0) this->unset_tableParts();
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
