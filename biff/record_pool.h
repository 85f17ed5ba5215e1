// Bulk storage for the texts and small blocks of a book's records. Nothing is freed one by one: everything goes with
// the pool, or with clear() at the next load, so a book of hundreds of thousands of strings makes no allocation for
// each. Owned by the book; records hold pointers into it, and copying a record copies the pointer.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace rubrica {

// Base of the small heap objects that a pool destroys.
class BaseClass {
 public:
  virtual ~BaseClass() = default;
};

class RecordPool {
 public:
  // The most units that one request may take, and the largest block of a chain.
  static constexpr std::size_t kMaxUnits = 10'000'000;

  // Room for `count` units, uninitialised; null for 0. Throws xlerror above kMaxUnits.
  char16_t* allocateText(std::size_t count);
  std::byte* allocateBytes(std::size_t count);

  // A zero-terminated copy of a text; null for an empty one.
  const char16_t* copyText(std::u16string_view text);
  std::span<const std::byte> copyBytes(std::span<const std::byte> bytes);

  // Takes an object that lives as long as the pool's content.
  template <class T>
  T* adopt(std::unique_ptr<T> object) {
    T* pointer = object.get();
    _objects.push_back(std::move(object));
    return pointer;
  }

  void clear();

 private:
  // A chain of blocks that grow from a small first one to kMaxUnits; allocation bumps a counter in the last.
  template <class Unit>
  struct Chain {
    std::vector<std::unique_ptr<Unit[]>> blocks;
    std::size_t capacity = 0;
    std::size_t used = 0;
    Unit* allocate(std::size_t count);
  };

  Chain<std::byte> _bytes;
  Chain<char16_t> _texts;
  std::vector<std::unique_ptr<BaseClass>> _objects;
};

}  // namespace rubrica
