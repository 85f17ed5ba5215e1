#include <new>

#include "platform/large_block.h"

namespace rubrica::platform {

// Large pages need a privilege on Windows that programs don't have as a rule; the heap hands large requests to the
// system whole, which is as good as can be had.
void* allocateBlock(std::size_t size) {
  void* block = std::malloc(size);
  if (block == nullptr && size != 0) throw std::bad_alloc();
  return block;
}

void preferLargePages(void* /*begin*/, std::size_t /*size*/) {}

}  // namespace rubrica::platform
