// What names cells in text that no tree is bound to, after rows or columns were inserted or removed: the ranges in the
// extensions of a sheet (x14 conditional formats, validations, sparklines and the like), the boxes of notes and
// controls in a VML part, threaded comments, pivot tables. Functions from text to text, used by the sheet when it moves
// its lines.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "engine/line_move.h"

namespace rubrica {

// The XML of one extension. An element whose xm:sqref has no range left goes, and so does each element around it of
// which all that had ranges is gone; nothing when that is all of it. Formulas (xm:f) stay as those of cells do.
std::optional<std::string> movedExtension(std::string_view text, const LineMove& move);

// A legacy drawing part. The box of a note keeps its distance from its cell and goes with it; other shapes follow the
// cell of their first corner, unless they are fixed to the page.
std::string movedLegacyDrawing(std::string_view text, const LineMove& move);

// A part of threaded comments: each goes with its cell.
std::string movedThreadedComments(std::string_view text, const LineMove& move);

// A pivot table, whose place is kept where nothing is left of it.
std::string movedPivotTable(std::string_view text, const LineMove& move);

}  // namespace rubrica
