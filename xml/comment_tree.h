// What is done with the bound tree of a comments part: reading the comment of a cell, and moving comments with their
// cells. Free functions without state.
#pragma once

#include <optional>
#include <string>

#include "engine/line_move.h"
#include "source/ooxml/comments.h"

namespace rubrica {

// The text of the cell's comment (UTF-8), its runs put together; nothing where the cell has none.
std::optional<std::string> commentText(const comments::c_comments& root, int row, int col);

// A comment goes with its cell, and away with it.
void moveComments(comments::c_comments& root, const LineMove& move);

}  // namespace rubrica
