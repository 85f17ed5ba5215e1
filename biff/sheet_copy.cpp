// Copies of .xls sheets, within a book and from another one.
#include <boost/unordered/unordered_flat_map.hpp>

#include "biff/book_impl.h"
#include "biff/expression_walk.h"
#include "biff/sheet_impl.h"
#include "formula/ptg.h"

namespace rubrica {
namespace {

// Tokens that mean something only in the book, or on the sheet, that they were written for. Bytes that can't be told
// count as such.
bool dependsOnBook(std::span<const std::uint8_t> tokens) {
  ExpressionWalk walk(tokens);
  for (formula::Token token; walk.next(token);) {
    switch (formula::baseToken(token.first())) {
      case formula::ptg::Exp:
      case formula::ptg::Tbl:
      case formula::ptg::Name:
      case formula::ptg::NameX:
      case formula::ptg::Ref3d:
      case formula::ptg::Area3d:
      case formula::ptg::RefErr3d:
      case formula::ptg::AreaErr3d:
        return true;
      default:
        break;
    }
  }
  return !walk.atEnd();
}

}  // namespace

SheetImplT::SheetImplT(BookImplT& book, std::u16string name, SheetImplT& source)
    : _book(&book), _name(std::move(name)), _bof(source._bof) {
  if (source._book == _book) {
    copyContent(source);
  } else {
    adoptFromOtherBook(source);
  }
  setSelected(false);
}

// Everything but the name and the book. Records' texts stay in the pool that both sheets share.
void SheetImplT::copyContent(SheetImplT& source) {
  std::u16string name = std::move(_name);
  BookImplT* book = _book;
  *this = source;
  _name = std::move(name);
  _book = book;
  StrMap& sst = book->sst();
  sst.setTotal(sst.cstTotal() + _cells.labelSstTable().size());
  book->forgetStringUse();
  ownDrawing();
}

// Cells, rows, columns, merges, links, marks and page setup. Texts and formats are entered into this book; a formula
// that refers to other sheets or to names keeps its value alone, as what it refers to isn't here. What is carried as
// raw records (drawings among it) refers to its own book and stays there.
void SheetImplT::adoptFromOtherBook(SheetImplT& source) {
  boost::unordered_flat_map<std::uint16_t, std::uint16_t> formats;
  const auto xfHere = [&](std::uint16_t xf) {
    if (xf == kDefaultCellXf || xf >= source._book->styles().formatCount()) return kDefaultCellXf;
    const auto [entry, isNew] = formats.try_emplace(xf);
    if (isNew) entry->second = *_book->styles().indexOf(_book->styles().addFormat(source._book->styles().format(xf)));
    return entry->second;
  };
  _words = source._words;
  _calcDelta = source._calcDelta;
  _guts = source._guts;
  _defaultRowHeight = source._defaultRowHeight;
  _dimensions = source._dimensions;
  _merges = source._merges;
  _hyperlinks = source._hyperlinks;
  _features = source._features;
  _view = source._view;
  _protection = source._protection;
  _page = source._page;
  _page.header.assign(source._page.header.view(), state().pool);
  _page.footer.assign(source._page.footer.view(), state().pool);
  for (ColInfo info : source._columns.infos()) {
    info.ixfe = xfHere(info.ixfe);
    _columns.append(info);
  }
  for (RowRecord row : source._rows.rows()) {
    const auto xf = xfHere(static_cast<std::uint16_t>(row.flags >> RowRecord::kXfShift & 0xFFF));
    row.flags = (row.flags & 0xFFFFu) | std::uint32_t{xf} << RowRecord::kXfShift;
    _rows.append(row);
  }
  const SheetIndex& index = source._cells.index();
  for (int row = index.nextRow(0); row < kBiffRows; row = index.nextRow(row + 1)) {
    index.forEachInRow(row, [&](int col, std::uint32_t bits) {
      adoptCell(source, row, col, CellWord{bits}, xfHere(source._cells.xf(CellWord{bits})));
    });
  }
}

void SheetImplT::adoptCell(SheetImplT& source, int row, int col, CellWord word, std::uint16_t xf) {
  switch (word.kind()) {
    case CellKind::rk:
      return _cells.addRk(row, col, xf, source._cells.rk(word).rk);
    case CellKind::number:
      return _cells.addNumber(row, col, xf, source._cells.number(word).value);
    case CellKind::labelSst:
      return _cells.addLabelSst(
          row, col, xf, _book->addSharedString(source._book->sst().get(source._cells.labelSst(word).isst).view()));
    case CellKind::label:
      return _cells.addLabelSst(row, col, xf, _book->addSharedString(source._cells.label(word).text.view()));
    case CellKind::blank:
      return _cells.addBlank(row, col, xf);
    case CellKind::boolErr: {
      const BoolErrCell& cell = source._cells.boolErr(word);
      return _cells.addBoolErr(row, col, xf, cell.value, cell.fError != 0);
    }
    case CellKind::formula:
      return adoptFormula(source, source._cells.formula(word), xf);
    case CellKind::none:
      return;
  }
}

void SheetImplT::adoptFormula(SheetImplT& source, FormulaCell cell, std::uint16_t xf) {
  const Expression own = source.ownExpression(cell);
  cell.xf = xf;
  if (dependsOnBook(std::span(own.bytes).first(own.tokenSize))) return addCachedValue(cell);
  cell.tokenSize = static_cast<std::uint16_t>(own.tokenSize);
  cell.expression = state().pool.copyBytes(rawBytes(own.bytes));
  cell.grbit = static_cast<std::uint16_t>(cell.grbit & ~FormulaCell::kSharedFormula);
  if (cell.text != nullptr) cell.text = cell.textLength == 0 ? u"" : state().pool.copyText(cell.cachedText());
  _cells.addFormula(cell);
}

}  // namespace rubrica
