// Defined names that follow a row operation of a sheet.
#pragma once

#include "biff/link_table.h"
#include "biff/name_table.h"
#include "engine/line_move.h"

namespace rubrica {

// Moves the names whose whole expression is one cell or one range of the sheet at position `sheet`. A cell that leaves
// the sheet takes its name with it; ranges are cut at the sheet's edge. Any other expression stays. Answers where every
// name went, for BookImplT::renumberNames.
[[nodiscard]] NameMapping moveNamedRows(NameTable& names, const LinkTable& links, int sheet, const LineMove& move);

}  // namespace rubrica
