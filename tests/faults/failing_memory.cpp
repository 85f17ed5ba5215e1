#include "tests/faults/failing_memory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

// What the linker leaves of the C library's own functions, and what it puts in their place in our objects.
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_aligned_alloc(std::size_t alignment, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void* __wrap_malloc(std::size_t size);
void* __wrap_aligned_alloc(std::size_t alignment, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
}

namespace {

bool g_armed = false;
long g_left = 0;

bool fails() {
  if (!g_armed || g_left-- != 0) return false;
  g_armed = false;
  return true;
}

void* allocate(std::size_t size) {
  void* block = fails() ? nullptr : __real_malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

void* __wrap_malloc(std::size_t size) {
  return fails() ? nullptr : __real_malloc(size);
}
void* __wrap_aligned_alloc(std::size_t alignment, std::size_t size) {
  return fails() ? nullptr : __real_aligned_alloc(alignment, size);
}
void* __wrap_realloc(void* block, std::size_t size) {
  return fails() ? nullptr : __real_realloc(block, size);
}

void* operator new(std::size_t size) {
  return allocate(size);
}
void* operator new[](std::size_t size) {
  return allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return fails() ? nullptr : __real_malloc(size == 0 ? 1 : size);
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete[](void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  std::free(block);
}

namespace rubrica::test {

FailingAllocation::FailingAllocation(long passed) {
  g_left = passed;
  g_armed = true;
}

FailingAllocation::~FailingAllocation() {
  g_armed = false;
}

bool FailingAllocation::happened() const {
  return !g_armed;
}

}  // namespace rubrica::test
