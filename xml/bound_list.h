// Taking items out of a repeated member of a binding class in one pass, however many there are.
#pragma once

#include <cstddef>
#include <utility>

namespace rubrica {

// `get` gives the item at an index, `erase` takes the last one away, `goes` says whether an item has to go. Items that
// stay keep their order, but not their addresses.
template <class Get, class Erase, class Goes>
std::size_t eraseItems(std::size_t size, Get&& get, Erase&& erase, Goes&& goes) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < size; ++i) {
    if (goes(get(i))) continue;
    if (kept != i) get(kept) = std::move(get(i));
    ++kept;
  }
  for (std::size_t i = size; i > kept; --i) erase(i - 1);
  return kept;
}

}  // namespace rubrica
