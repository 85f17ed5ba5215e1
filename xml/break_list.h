// The page breaks of one direction: the rowBreaks or colBreaks element of a worksheet, in either flavour. Functions
// over the bound element; breaks stay in order and the element's counts stay true.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>

#include "engine/line_move.h"
#include "engine/xlerror.h"
#include "xml/bound_list.h"

namespace rubrica {

template <class Breaks>
void countBreaks(Breaks& breaks) {
  std::uint32_t manual = 0;
  for (std::size_t i = 0; i < breaks.size_brk(); ++i) manual += breaks.get_brk(i).get_man() ? 1 : 0;
  breaks.set_count(static_cast<std::uint32_t>(breaks.size_brk()));
  breaks.set_manualBreakCount(manual);
}

template <class Breaks>
std::optional<std::size_t> findBreak(const Breaks& breaks, int position) {
  for (std::size_t i = 0; i < breaks.size_brk(); ++i) {
    if (breaks.get_brk(i).get_id() == static_cast<std::uint32_t>(position)) return i;
  }
  return std::nullopt;
}

// `extent` is the last column or row that a break of this direction runs to. Throws xlerror "pagebreak already exists".
template <class Breaks>
void addBreak(Breaks& breaks, int position, int extent) {
  if (findBreak(breaks, position)) throw xlerror("pagebreak already exists");
  std::size_t at = breaks.size_brk();
  while (at > 0 && breaks.get_brk(at - 1).get_id() > static_cast<std::uint32_t>(position)) --at;
  auto& added = breaks.insert_brk(at);
  added.set_id(static_cast<std::uint32_t>(position));
  added.set_max(static_cast<std::uint32_t>(extent));
  added.set_man(true);
  countBreaks(breaks);
}

// Throws xlerror "index is out of range", "c_CT_Break without id".
template <class Breaks>
int breakAt(const Breaks* breaks, int index) {
  if (breaks == nullptr || index < 0 || static_cast<std::size_t>(index) >= breaks->size_brk()) {
    throw xlerror("index is out of range");
  }
  const auto& entry = breaks->get_brk(static_cast<std::size_t>(index));
  if (!entry.isset_id()) throw xlerror("c_CT_Break without id");
  return static_cast<int>(std::min<std::uint32_t>(entry.get_id(), std::numeric_limits<int>::max()));
}

// Breaks between moved lines go with them, the others change where they begin and end. Breaks of lines that are gone go
// too.
template <class Breaks>
void moveBreaks(Breaks& breaks, const LineMove& move, bool alongMove) {
  const auto whole = [](std::uint32_t value) {
    return static_cast<int>(std::min<std::uint32_t>(value, std::numeric_limits<int>::max()));
  };
  eraseItems(
      breaks.size_brk(), [&](std::size_t i) -> auto& { return breaks.get_brk(i); },
      [&](std::size_t i) { breaks.erase_brk(i); },
      [&](auto& entry) {
        if (alongMove) {
          const int position = whole(entry.get_id());
          if (position >= move.limit()) return false;
          const auto moved = move.ofRows() ? move.mapRow(position) : move.mapCol(position);
          if (moved) entry.set_id(static_cast<std::uint32_t>(*moved));
          return !moved;
        }
        const int first = whole(entry.get_min()), last = whole(entry.get_max());
        if (last < first || last >= move.limit()) return false;
        const auto extent = move.mapSpan(first, last);
        if (!extent) return true;
        if (entry.isset_min() || extent->first != 0) entry.set_min(static_cast<std::uint32_t>(extent->first));
        entry.set_max(static_cast<std::uint32_t>(extent->last));
        return false;
      });
  countBreaks(breaks);
}

}  // namespace rubrica
