// Memory for the objects of one tree, which a reader makes by the ten thousand: they stand behind each other in slabs
// of one page, and a slab goes when the last of its objects has gone. The reader owns the arena, but not the objects;
// they may outlive it. Objects of one arena belong to one thread at a time, like the tree that they make up.
#pragma once

#include <cstddef>
#include <cstdint>

namespace rubrica::lmx {

// What every object in a slab is aligned to; more than any member of a binding class asks for.
inline constexpr std::size_t kObjectAlignment = 8;

class object_arena {
 public:
  // Larger objects are rare and left to the heap, so that no slab stays half empty for one of them.
  static constexpr std::size_t kLargestObject = 512;

  object_arena() = default;
  object_arena(const object_arena&) = delete;
  object_arena& operator=(const object_arena&) = delete;
  ~object_arena();

  // Room for an object of `size` bytes, kLargestObject at most. It counts from keep() on.
  void* take(std::size_t size);
  // An object has been made in the room that was taken last.
  void keep() { ++_slab->holders; }

  // Gives the room of a destroyed object of `size` bytes back.
  static void give_back(void* object, std::size_t size);

 private:
  // Slabs are aligned to this, so that an object's address tells its slab. They are smaller by what the heap writes
  // before a block, so that they can stand in pages next to each other.
  static constexpr std::size_t kSlabAlignment = 4096;
  static constexpr std::size_t kSlabSize = kSlabAlignment - 64;

  // Stands at the slab's begin.
  struct slab {
    char* next;             // free from here on
    std::uint64_t holders;  // its objects, and the arena that takes from it
  };

  static constexpr std::size_t rounded(std::size_t size) {
    return (size + kObjectAlignment - 1) / kObjectAlignment * kObjectAlignment;
  }
  static std::size_t room_in(slab* of) {
    return static_cast<std::size_t>(reinterpret_cast<char*>(of) + kSlabSize - of->next);
  }
  static void release(slab* of);
  void add_slab();

  slab* _slab = nullptr;
};

}  // namespace rubrica::lmx
