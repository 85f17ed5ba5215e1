// The comments part of a sheet, as a bound tree: comments of a workbook are read and follow their cells, but are not
// written. The book's part map owns it. Functions over the bound root do the work; this keeps where the comments stand.
#pragma once

#include <optional>
#include <string>

#include "engine/line_move.h"
#include "source/ooxml/comments.h"
#include "xml/comment_tree.h"
#include "xml/part.h"

namespace rubrica {

class Comments : public XmlFile<comments::c_comments> {
 public:
  using XmlFile::XmlFile;

  // The text of the cell's comment (UTF-8); nothing where the cell has none.
  std::optional<std::string> text(int row, int col) const {
    if (!_places) _places.emplace(*this);
    const auto position = _places->find(row, col);
    return position ? std::optional(commentText(*this, *position)) : std::nullopt;
  }

  void move(const LineMove& lineMove) {
    _places.reset();
    moveComments(*this, lineMove);
  }

 private:
  mutable std::optional<CommentPlaces> _places;
};

}  // namespace rubrica
