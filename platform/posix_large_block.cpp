#include <new>

#include <sys/mman.h>

#include "platform/large_block.h"

namespace rubrica::platform {

void* allocateBlock(std::size_t size) {
  if (size < kLargeBlock) {
    void* block = std::malloc(size);
    if (block == nullptr && size != 0) throw std::bad_alloc();
    return block;
  }
  const std::size_t rounded = (size + kLargeBlock - 1) / kLargeBlock * kLargeBlock;
  if (rounded < size) throw std::bad_alloc();
  void* block = std::aligned_alloc(kLargeBlock, rounded);
  if (block == nullptr) throw std::bad_alloc();
  // The whole pages of what was asked for; the rest of the last one stays untouched. A refusal costs speed alone.
  ::madvise(block, size / kLargeBlock * kLargeBlock, MADV_HUGEPAGE);
  return block;
}

}  // namespace rubrica::platform
