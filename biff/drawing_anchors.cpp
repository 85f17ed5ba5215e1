#include "biff/drawing_anchors.h"

#include <algorithm>

namespace rubrica {
namespace {

// The line of a corner afterwards. The offset within a line that is gone means nothing any more.
std::uint16_t movedCorner(std::uint16_t line, std::uint16_t& offset, const LineMove& move) {
  const int last = move.limit() - 1;
  if (line < move.first()) return line;
  if (move.inserts()) return static_cast<std::uint16_t>(std::min(line + move.count(), last));
  if (line > move.last()) return static_cast<std::uint16_t>(line - move.count());
  offset = 0;
  return static_cast<std::uint16_t>(move.first());
}

void moveEnds(std::uint16_t& first, std::uint16_t& firstOffset, std::uint16_t& last, std::uint16_t& lastOffset,
              bool keepsExtent, const LineMove& move) {
  const int extent = last - first;
  first = movedCorner(first, firstOffset, move);
  last = keepsExtent ? static_cast<std::uint16_t>(std::clamp(first + extent, 0, move.limit() - 1))
                     : movedCorner(last, lastOffset, move);
}

}  // namespace

bool moveAnchor(officeart::CellAnchor& anchor, bool isComment, const LineMove& move) {
  using officeart::CellAnchor;
  if ((anchor.flags & CellAnchor::kNoMove) != 0 && !isComment) return false;
  const CellAnchor before = anchor;
  const bool keepsExtent = (anchor.flags & CellAnchor::kNoSize) != 0;
  if (move.ofRows()) {
    moveEnds(anchor.rwT, anchor.dyT, anchor.rwB, anchor.dyB, keepsExtent, move);
  } else {
    moveEnds(anchor.colL, anchor.dxL, anchor.colR, anchor.dxR, keepsExtent, move);
  }
  return anchor != before;
}

}  // namespace rubrica
