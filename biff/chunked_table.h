// A growing table whose rows keep their positions and are never moved once a chunk is full: appending a million rows
// neither copies them nor leaves half the memory unused. Copying copies the rows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace rubrica {

template <class Row>
class ChunkedTable {
 public:
  std::uint32_t append(const Row& row) {
    if (_size % kChunk == 0) {
      _chunks.emplace_back();
      if (_chunks.size() > 1) _chunks.back().reserve(kChunk);
    }
    _chunks.back().push_back(row);
    return _size++;
  }
  Row& operator[](std::uint32_t index) { return _chunks[index / kChunk][index % kChunk]; }
  const Row& operator[](std::uint32_t index) const { return _chunks[index / kChunk][index % kChunk]; }
  std::uint32_t size() const { return _size; }
  void clear() {
    _chunks.clear();
    _size = 0;
  }
  template <class Visit>
  void forEach(Visit&& visit) const {
    for (const auto& chunk : _chunks) {
      for (const Row& row : chunk) visit(row);
    }
  }

 private:
  static constexpr std::uint32_t kChunk = 4096;
  std::vector<std::vector<Row>> _chunks;
  std::uint32_t _size = 0;
};

}  // namespace rubrica
