#include <cstdint>
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
  preferLargePages(block, size);
  return block;
}

// The whole pages that lie within; the rest stays untouched. A refusal costs speed alone.
void preferLargePages(void* begin, std::size_t size) {
  const auto address = reinterpret_cast<std::uintptr_t>(begin);
  const std::size_t skipped = (kLargeBlock - address % kLargeBlock) % kLargeBlock;
  if (size < skipped + kLargeBlock) return;
  ::madvise(static_cast<char*>(begin) + skipped, (size - skipped) / kLargeBlock * kLargeBlock, MADV_HUGEPAGE);
}

}  // namespace rubrica::platform
