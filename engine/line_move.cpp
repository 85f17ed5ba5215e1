#include "engine/line_move.h"

#include <algorithm>

namespace rubrica {

std::optional<int> LineMove::map(int line) const {
  if (line < _first) return line;
  if (!inserts()) {
    if (line <= _last) return std::nullopt;
    return line - count();
  }
  if (line + count() >= limit()) return std::nullopt;
  return line + count();
}

std::optional<LineSpan> LineMove::mapSpan(int first, int last) const {
  const bool isWhole = first == 0 && last >= limit() - 1;
  if (isWhole || last < _first || first > last) return LineSpan{first, last};
  if (inserts()) {
    const int movedFirst = first < _first ? first : first + count();
    if (movedFirst >= limit()) return std::nullopt;
    return LineSpan{movedFirst, std::min(last + count(), limit() - 1)};
  }
  const int movedFirst = first < _first ? first : std::max(first - count(), _first);
  const int movedLast = last <= _last ? _first - 1 : last - count();
  if (movedLast < movedFirst) return std::nullopt;
  return LineSpan{movedFirst, movedLast};
}

}  // namespace rubrica
