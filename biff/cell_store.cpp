#include "biff/cell_store.h"

namespace rubrica {
namespace {
std::uint16_t u16(int value) {
  return static_cast<std::uint16_t>(value);
}
}  // namespace

// The slot is taken first: a column past the sheet throws before a table grows.
void CellStore::addRk(int row, int col, std::uint16_t xf, std::uint32_t rk) {
  std::uint32_t& slot = _index.slot(row, col);
  slot = CellWord::of(CellKind::rk, _rk.append({u16(row), u16(col), xf, 0, rk})).bits;
}

void CellStore::addNumber(int row, int col, std::uint16_t xf, double value) {
  std::uint32_t& slot = _index.slot(row, col);
  slot = CellWord::of(CellKind::number, _numbers.append({u16(row), u16(col), xf, 0, value})).bits;
}

void CellStore::addLabelSst(int row, int col, std::uint16_t xf, std::uint32_t isst) {
  std::uint32_t& slot = _index.slot(row, col);
  slot = CellWord::of(CellKind::labelSst, _labelSst.append({u16(row), u16(col), xf, 0, isst})).bits;
}

void CellStore::addBlank(int row, int col, std::uint16_t xf) {
  std::uint32_t& slot = _index.slot(row, col);
  slot = CellWord::of(CellKind::blank, _blanks.append({u16(row), u16(col), xf})).bits;
}

void CellStore::addBoolErr(int row, int col, std::uint16_t xf, std::uint8_t value, bool isError) {
  std::uint32_t& slot = _index.slot(row, col);
  const BoolErrCell cell{u16(row), u16(col), xf, value, static_cast<std::uint8_t>(isError ? 1 : 0)};
  slot = CellWord::of(CellKind::boolErr, _boolErrs.append(cell)).bits;
}

void CellStore::addFormula(const FormulaCell& cell) {
  std::uint32_t& slot = _index.slot(cell.row, cell.col);
  slot = CellWord::of(CellKind::formula, _formulas.append(cell)).bits;
}

void CellStore::addLabel(const LabelCell& cell) {
  std::uint32_t& slot = _index.slot(cell.row, cell.col);
  slot = CellWord::of(CellKind::label, _labels.append(cell)).bits;
}

void CellStore::erase(int row, int col) {
  if (word(row, col).present()) _index.slot(row, col) = 0;
}

template <class Self, class Visit>
void CellStore::visitCell(Self& self, CellWord word, Visit&& visit) {
  switch (word.kind()) {
    case CellKind::rk:
      return visit(self._rk[word.index()]);
    case CellKind::number:
      return visit(self._numbers[word.index()]);
    case CellKind::labelSst:
      return visit(self._labelSst[word.index()]);
    case CellKind::blank:
      return visit(self._blanks[word.index()]);
    case CellKind::boolErr:
      return visit(self._boolErrs[word.index()]);
    case CellKind::formula:
      return visit(self._formulas[word.index()]);
    case CellKind::label:
      return visit(self._labels[word.index()]);
    case CellKind::none:
      return;
  }
}

void CellStore::move(int fromRow, int fromCol, int toRow, int toCol) {
  const CellWord moved = word(fromRow, fromCol);
  if (!moved.present()) return;
  _index.slot(fromRow, fromCol) = 0;
  _index.slot(toRow, toCol) = moved.bits;
  visitCell(*this, moved, [&](auto& cell) {
    cell.row = u16(toRow);
    cell.col = u16(toCol);
  });
}

void CellStore::moveRow(int from, int to) {
  _index.moveRow(from, to);
  _index.forEachInRow(
      to, [&](int, std::uint32_t bits) { visitCell(*this, CellWord{bits}, [&](auto& cell) { cell.row = u16(to); }); });
}

std::uint16_t CellStore::xf(CellWord word) const {
  std::uint16_t found = kDefaultCellXf;
  visitCell(*this, word, [&](const auto& cell) { found = cell.xf; });
  return found;
}

void CellStore::setXf(CellWord word, std::uint16_t xf) {
  visitCell(*this, word, [&](auto& cell) { cell.xf = xf; });
}

void CellStore::clear() {
  _index.clear();
  _rk.clear();
  _numbers.clear();
  _labelSst.clear();
  _blanks.clear();
  _boolErrs.clear();
  _formulas.clear();
  _labels.clear();
}

}  // namespace rubrica
