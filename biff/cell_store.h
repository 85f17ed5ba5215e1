// The cells of one sheet: a typed table for each kind of cell record and the index from place to table row. Adding a
// cell replaces what the place held; the old table row stays behind unreferenced. Owned by the sheet.
#pragma once

#include <cstdint>

#include "biff/cell_word.h"
#include "biff/chunked_table.h"
#include "biff/formula_cell.h"
#include "biff/sheet_index.h"
#include "biff/unicode_string.h"

namespace rubrica {

inline constexpr std::uint16_t kDefaultCellXf = 15;

struct RkCell {
  std::uint16_t row, col, xf, unused;
  std::uint32_t rk;
};
static_assert(sizeof(RkCell) == 12);

struct NumberCell {
  std::uint16_t row, col, xf, unused;
  double value;
};
static_assert(sizeof(NumberCell) == 16);

struct LabelSstCell {
  std::uint16_t row, col, xf, unused;
  std::uint32_t isst;
};
static_assert(sizeof(LabelSstCell) == 12);

struct BlankCell {
  std::uint16_t row, col, xf;
};
static_assert(sizeof(BlankCell) == 6);

struct BoolErrCell {
  std::uint16_t row, col, xf;
  std::uint8_t value, fError;
};
static_assert(sizeof(BoolErrCell) == 8);

// Text within the cell record, as files have it; never made here.
struct LabelCell {
  std::uint16_t row, col, xf;
  XLUnicodeString text;
};

class CellStore {
 public:
  CellWord word(int row, int col) const { return {_index.get(row, col)}; }
  const SheetIndex& index() const { return _index; }

  void addRk(int row, int col, std::uint16_t xf, std::uint32_t rk);
  void addNumber(int row, int col, std::uint16_t xf, double value);
  void addLabelSst(int row, int col, std::uint16_t xf, std::uint32_t isst);
  void addBlank(int row, int col, std::uint16_t xf);
  void addBoolErr(int row, int col, std::uint16_t xf, std::uint8_t value, bool isError);
  void addFormula(const FormulaCell& cell);
  void addLabel(const LabelCell& cell);
  // Forgets the cell of a place.
  void erase(int row, int col);
  void eraseRow(int row) { _index.eraseRow(row); }
  // Gives a row the cells of another, which is left empty.
  void moveRow(int from, int to);
  // Gives a place the word of another, whose cell gets the new place; the old place is left empty.
  void move(int fromRow, int fromCol, int toRow, int toCol);

  RkCell& rk(CellWord word) { return _rk[word.index()]; }
  NumberCell& number(CellWord word) { return _numbers[word.index()]; }
  LabelSstCell& labelSst(CellWord word) { return _labelSst[word.index()]; }
  BlankCell& blank(CellWord word) { return _blanks[word.index()]; }
  BoolErrCell& boolErr(CellWord word) { return _boolErrs[word.index()]; }
  FormulaCell& formula(CellWord word) { return _formulas[word.index()]; }
  LabelCell& label(CellWord word) { return _labels[word.index()]; }
  const ChunkedTable<LabelSstCell>& labelSstTable() const { return _labelSst; }

  std::uint16_t xf(CellWord word) const;
  void setXf(CellWord word, std::uint16_t xf);

  void prune() { _index.prune(); }
  void clear();

 private:
  // Calls visit with the table row that the word points to, as whatever cell struct that is.
  template <class Self, class Visit>
  static void visitCell(Self& self, CellWord word, Visit&& visit);

  SheetIndex _index;
  ChunkedTable<RkCell> _rk;
  ChunkedTable<NumberCell> _numbers;
  ChunkedTable<LabelSstCell> _labelSst;
  ChunkedTable<BlankCell> _blanks;
  ChunkedTable<BoolErrCell> _boolErrs;
  ChunkedTable<FormulaCell> _formulas;
  ChunkedTable<LabelCell> _labels;
};

}  // namespace rubrica
