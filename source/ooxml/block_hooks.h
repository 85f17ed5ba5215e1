// How the driver reaches hand-laid objects that stand in a vector of their class.
#pragma once

#include <vector>

#include "lmx/descriptor.h"

namespace rubrica::ooxml {

// Objects of plain form are read and written by the two functions.
template <class Object>
constexpr lmx::block_hooks blockHooks(decltype(lmx::block_hooks::read_plain) read,
                                      decltype(lmx::block_hooks::write_plain) write) {
  using objects = std::vector<Object>;
  return {[](const void* vector) { return static_cast<const objects*>(vector)->size(); },
          [](const void* vector, std::size_t index) -> const lmx::object& {
            return (*static_cast<const objects*>(vector))[index];
          },
          [](void* vector) -> lmx::object& { return static_cast<objects*>(vector)->emplace_back(); },
          [](void* vector) { static_cast<objects*>(vector)->shrink_to_fit(); },
          read,
          write};
}

}  // namespace rubrica::ooxml
