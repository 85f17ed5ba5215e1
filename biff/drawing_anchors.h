// What becomes of the cells that a shape is anchored to when rows or columns are inserted or removed.
#pragma once

#include "engine/line_move.h"
#include "officeart/shape_records.h"

namespace rubrica {

// Moves an anchor with its cells and answers whether that changed it. A shape that is fixed to the page stays, unless
// it is a comment's box, which belongs to a cell; one that moves without sizing keeps its extent in cells; a corner on
// a removed line goes to the line that takes its place.
bool moveAnchor(officeart::CellAnchor& anchor, bool isComment, const LineMove& move);

}  // namespace rubrica
