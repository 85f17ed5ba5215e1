// Room in a vector ahead of a step that may not fail half-way: lists that go together are given room first, and then
// grow together.
#pragma once

#include <algorithm>
#include <cstddef>

namespace rubrica {

// Makes sure that one more element needs no memory. Growth stays geometric.
template <class Vector>
void makeRoom(Vector& vector) {
  constexpr std::size_t kFirstCapacity = 16;
  if (vector.size() == vector.capacity()) vector.reserve(std::max(kFirstCapacity, 2 * vector.size()));
}

}  // namespace rubrica
