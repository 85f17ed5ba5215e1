// What is done with the bound tree of a table part, in either flavour: reading where the table stands, and moving it
// with its cells. Free functions without state.
#pragma once

#include <string>
#include <vector>

#include "engine/line_move.h"
#include "xml/sheet_range.h"

namespace rubrica {

struct TableInfo {
  std::string name;  // UTF-8
  SheetRange range;
  int headerRowCount = 1, totalsRowCount = 0;
};

// Throws xlerror "ref has unrecognized format".
template <class Root>
TableInfo tableInfo(const Root& root);

// A cell of the header row whose text has to be the name of a column that came in.
struct TableHeaderCell {
  int row = 0, col = 0;
  std::string name;  // UTF-8
};

struct TableMove {
  bool isLeft = true;  // false: nothing of the table is left
  std::vector<TableHeaderCell> newHeaders;
};

// The table has as many columns as its range, each with a name of its own: columns that come in get one. A table whose
// header or totals row goes is one without it.
template <class Root>
TableMove moveTable(Root& root, const LineMove& move);

}  // namespace rubrica
