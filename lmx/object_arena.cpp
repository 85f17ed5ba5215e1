#include "lmx/object_arena.h"

#include <new>

#include "lmx/descriptor.h"

// The address sanitizer is told which bytes of a slab are objects, so that it watches them as it watches the heap's.
#if defined(__SANITIZE_ADDRESS__)
#define RUBRICA_WATCHES_SLABS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define RUBRICA_WATCHES_SLABS 1
#endif
#endif
#ifdef RUBRICA_WATCHES_SLABS
#include <sanitizer/asan_interface.h>
#endif

namespace rubrica::lmx {

namespace {

#ifdef RUBRICA_WATCHES_SLABS
void forbid(void* begin, std::size_t size) {
  __asan_poison_memory_region(begin, size);
}
void allow(void* begin, std::size_t size) {
  __asan_unpoison_memory_region(begin, size);
}
#else
void forbid(void*, std::size_t) {}
void allow(void*, std::size_t) {}
#endif

// Memory of an object that is still to be made.
struct raw_memory {
  explicit raw_memory(std::size_t size) : at(::operator new(size)) {}
  raw_memory(const raw_memory&) = delete;
  raw_memory& operator=(const raw_memory&) = delete;
  ~raw_memory() { ::operator delete(at); }
  void* at;
};

}  // namespace

object_arena::~object_arena() {
  if (_slab != nullptr) release(_slab);
}

void object_arena::add_slab() {
  void* memory = ::operator new (kSlabSize, std::align_val_t{kSlabAlignment});
  if (_slab != nullptr) release(_slab);
  _slab = ::new (memory) slab{static_cast<char*>(memory) + sizeof(slab), 1};
  forbid(_slab->next, kSlabSize - sizeof(slab));
}

void* object_arena::take(std::size_t size) {
  if (_slab == nullptr || room_in(_slab) < rounded(size)) add_slab();
  char* const taken = _slab->next;
  _slab->next += rounded(size);
  allow(taken, size);
  return taken;
}

// What was taken last can be taken again: a reader that drops each object it doesn't want needs room for one.
void object_arena::give_back(void* object, std::size_t size) {
  char* const begin = static_cast<char*>(object);
  auto* const of = reinterpret_cast<slab*>(begin - reinterpret_cast<std::uintptr_t>(object) % kSlabAlignment);
  if (begin + rounded(size) == of->next) of->next = begin;
  forbid(begin, size);
  release(of);
}

void object_arena::release(slab* of) {
  if (--of->holders > 0) return;
  allow(of, kSlabSize);
  ::operator delete (of, std::align_val_t{kSlabAlignment});
}

void owned::drop() noexcept {
  object* const child = get();
  if (!is_in_slab()) {
    delete child;
    return;
  }
  const std::size_t size = child->descriptor().size;
  child->~object();
  object_arena::give_back(child, size);
}

object* class_descriptor::create() const {
  raw_memory memory(size);
  object* const made = construct(memory.at);
  memory.at = nullptr;
  return made;
}

owned make_owned(const class_descriptor& type, object_arena& arena) {
  if (type.size > object_arena::kLargestObject) return owned(type.create());
  object* const made = type.construct(arena.take(type.size));
  arena.keep();
  return owned::in_slab(made);
}

}  // namespace rubrica::lmx
