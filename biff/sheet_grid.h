// The pixels of a sheet's columns and rows, for placing what is anchored to its cells.
#pragma once

#include "biff/sheet_impl.h"
#include "officeart/picture_anchor.h"

namespace rubrica {

class SheetImplT::Grid final : public officeart::CellGrid {
 public:
  explicit Grid(SheetImplT& sheet) : _sheet(sheet) {}
  int columnPixels(int col) const override { return _sheet.columnPixels(col); }
  int rowPixels(int row) const override { return _sheet.rowPixels(row); }

 private:
  SheetImplT& _sheet;
};

}  // namespace rubrica
