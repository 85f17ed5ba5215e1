// What is done with the bound tree of a comments part: finding the comment of a cell, reading it, and moving comments
// with their cells. Part 'Comments' owns the tree and keeps the places for as long as they hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

#include "engine/line_move.h"
#include "source/ooxml/comments.h"

namespace rubrica {

// Where the comments of a tree stand, so that a walk over cells doesn't search the whole list for each of them. True
// until the tree changes.
class CommentPlaces {
 public:
  explicit CommentPlaces(const comments::c_comments& root);
  // The position in the list, the first one where a cell has several comments; nothing where it has none.
  std::optional<std::size_t> find(int row, int col) const;

 private:
  std::unordered_map<std::uint64_t, std::size_t> _positions;
};

// The text of a comment (UTF-8), its runs put together.
std::string commentText(const comments::c_comments& root, std::size_t position);

// A comment goes with its cell, and away with it.
void moveComments(comments::c_comments& root, const LineMove& move);

}  // namespace rubrica
