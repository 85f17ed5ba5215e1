// Where on a sheet's cells a box of some pixels lies, and how many pixels an anchor spans. Used for placing pictures
// and comments and for reading placements. Free functions over a grid that the sheet gives.
#pragma once

#include "officeart/shape_records.h"

namespace rubrica::officeart {

// The pixels of a sheet's columns and rows; hidden ones have 0.
class CellGrid {
 public:
  virtual ~CellGrid() = default;
  virtual int columnPixels(int col) const = 0;
  virtual int rowPixels(int row) const = 0;
};

struct PixelBox {
  int row = 0, col = 0;
  int width = 0, height = 0;  // kToCellEnd: to the end of the last cell
  int offsetX = 0, offsetY = 0;
  // The cell that the box's far corner is looked for from; negative for the first one.
  int rowLast = -1, colLast = -1;
  static constexpr int kToCellEnd = -1;
};

// The anchor by the grid as it is now. A box that leaves the sheet ends with the last cell.
CellAnchor anchorOf(const PixelBox& box, const CellGrid& grid);

// The box of an anchor: the first cell, the pixels into it, and the extent to the end.
PixelBox boxOf(const CellAnchor& anchor, const CellGrid& grid);

}  // namespace rubrica::officeart
