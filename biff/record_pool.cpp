#include "biff/record_pool.h"

#include <algorithm>

#include "engine/xlerror.h"

namespace rubrica {
namespace {
constexpr std::size_t kFirstBlock = 4096;
}

template <class Unit>
Unit* RecordPool::Chain<Unit>::allocate(std::size_t count) {
  if (count == 0) return nullptr;
  if (count > kMaxUnits) throw xlerror("record data is too long");
  if (capacity - used < count) {
    const std::size_t grown = std::max(count, std::clamp(capacity * 2, kFirstBlock, kMaxUnits));
    blocks.push_back(std::make_unique_for_overwrite<Unit[]>(grown));
    capacity = grown;
    used = 0;
  }
  Unit* place = blocks.back().get() + used;
  used += count;
  return place;
}

char16_t* RecordPool::allocateText(std::size_t count) {
  return _texts.allocate(count);
}
std::byte* RecordPool::allocateBytes(std::size_t count) {
  return _bytes.allocate(count);
}

const char16_t* RecordPool::copyText(std::u16string_view text) {
  if (text.empty()) return nullptr;
  char16_t* copy = allocateText(text.size() + 1);
  *std::copy(text.begin(), text.end(), copy) = u'\0';
  return copy;
}

std::span<const std::byte> RecordPool::copyBytes(std::span<const std::byte> bytes) {
  std::byte* copy = allocateBytes(bytes.size());
  std::copy(bytes.begin(), bytes.end(), copy);
  return {copy, bytes.size()};
}

void RecordPool::clear() {
  _objects.clear();
  _bytes = {};
  _texts = {};
}

}  // namespace rubrica
