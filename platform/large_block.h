// Memory in large pieces for whole files and for tables of cells: not filled with zeros, and on pages as large as the
// system gives, so that a book of millions of cells doesn't meet a page fault every four kilobytes.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

namespace rubrica::platform {

// From this size on, memory is worth large pages.
inline constexpr std::size_t kLargeBlock = std::size_t{2} << 20;

struct FreeBlock {
  void operator()(void* block) const { std::free(block); }
};
template <class T>
using Block = std::unique_ptr<T[], FreeBlock>;

// Room for `size` bytes, uninitialised, aligned for any type. Throws std::bad_alloc.
void* allocateBlock(std::size_t size);

// Asks for large pages under memory that was got otherwise, such as the room of a string about to be filled.
void preferLargePages(void* begin, std::size_t size);

template <class T>
Block<T> makeBlock(std::size_t count) {
  return Block<T>(static_cast<T*>(allocateBlock(count * sizeof(T))));
}

}  // namespace rubrica::platform
