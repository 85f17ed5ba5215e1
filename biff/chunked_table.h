// A growing table whose rows keep their positions: the first chunk grows by doubling, every further one is a block of
// two megabytes, so that appending a million rows hardly copies, wastes little, and meets few page faults. Copying
// copies the rows.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "platform/large_block.h"

namespace rubrica {

template <class Row>
class ChunkedTable {
  static_assert(std::is_trivially_copyable_v<Row>);

 public:
  ChunkedTable() = default;
  ChunkedTable(ChunkedTable&&) noexcept = default;
  ChunkedTable& operator=(ChunkedTable&&) noexcept = default;
  ChunkedTable(const ChunkedTable& other) { *this = other; }
  ChunkedTable& operator=(const ChunkedTable& other) {
    if (this == &other) return *this;
    clear();
    for (std::uint32_t i = 0; i < other._size; ++i) append(other[i]);
    return *this;
  }

  // The position of the new row.
  std::uint32_t append(const Row& row) {
    const std::uint32_t at = _size & kMask;
    if (at == 0 || (_chunks.size() == 1 && at == _firstCapacity)) grow(at);
    _chunks.back()[at] = row;
    return _size++;
  }
  Row& operator[](std::uint32_t index) { return _chunks[index >> kShift][index & kMask]; }
  const Row& operator[](std::uint32_t index) const { return _chunks[index >> kShift][index & kMask]; }
  std::uint32_t size() const { return _size; }
  void clear() {
    _chunks.clear();
    _size = _firstCapacity = 0;
  }
  template <class Visit>
  void forEach(Visit&& visit) const {
    for (std::uint32_t i = 0; i < _size; ++i) visit((*this)[i]);
  }

 private:
  // Rows of a full chunk: the power of two that fills about two megabytes, or more, so that it comes on large pages.
  static constexpr int kShift = sizeof(Row) <= 8 ? 18 : sizeof(Row) <= 16 ? 17 : 16;
  static constexpr std::uint32_t kRows = 1u << kShift, kMask = kRows - 1, kFirst = 64;

  // Makes room for the row at `at` of the last chunk; 0 begins a further chunk.
  void grow(std::uint32_t at) {
    if (at == 0 && !_chunks.empty()) {
      _chunks.push_back(platform::makeBlock<Row>(kRows));
      return;
    }
    const std::uint32_t capacity = std::min(std::max(at * 4, kFirst), kRows);
    auto wider = platform::makeBlock<Row>(capacity);
    if (at > 0) std::copy_n(_chunks.front().get(), at, wider.get());
    _chunks.resize(1);
    _chunks.front() = std::move(wider);
    _firstCapacity = capacity;
  }

  std::vector<platform::Block<Row>> _chunks;
  std::uint32_t _size = 0, _firstCapacity = 0;
};

}  // namespace rubrica
