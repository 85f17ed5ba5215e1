// From row and column to a 32-bit cell word, in two levels: rows in groups that exist once one of their rows does, and
// for each row a block of words over the columns in use. Owned by a sheet's cell store; empty until the first write.
//
// A row block begins with the sixteen columns around the first cell and doubles as it has to, instead of covering all
// 256 at once: a row of sixteen cells takes 64 bytes. Blocks are cut from slabs that go with the index. Two cells in
// far corners cost nothing between them.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/large_block.h"

namespace rubrica {

inline constexpr int kBiffRows = 65536;
inline constexpr int kBiffCols = 256;

class SheetIndex {
 public:
  SheetIndex() = default;
  SheetIndex(const SheetIndex& other) { *this = other; }
  SheetIndex& operator=(const SheetIndex& other);
  SheetIndex(SheetIndex&&) noexcept = default;
  SheetIndex& operator=(SheetIndex&&) noexcept = default;

  // The word's place, made on demand. Throws xlerror "SheetIndex: col can't be more than 255". The reference is good
  // until the next call of slot for the same row.
  std::uint32_t& slot(int row, int col) {
    const auto r = static_cast<unsigned>(row), c = static_cast<unsigned>(col);
    if (Group* group = _groups[r / kGroupRows].get()) {
      const RowBlock& block = (*group)[r % kGroupRows];
      if (c - block.first < block.size) return block.words[c - block.first];
    }
    return makeSlot(r, c);
  }
  // The word, 0 where there is none.
  std::uint32_t get(int row, int col) const {
    const RowBlock* block = find(row);
    if (block == nullptr) return 0;
    const unsigned at = static_cast<unsigned>(col) - block->first;
    return at < block->size ? block->words[at] : 0;
  }
  bool hasRow(int row) const { return find(row) != nullptr; }
  // First column of the row whose word has bit 0 set, and one past the last; 0 for a row without any.
  int firstInRow(int row) const;
  int lastInRow(int row) const;
  // Gives a row the words of another, which is left without any.
  void moveRow(int from, int to);
  // Gives up the block of a row.
  void eraseRow(int row);
  // Gives up the blocks of rows without a set word.
  void prune();
  void clear();

  // The rows that have a block, in order: the first at or after `row`, kBiffRows when there is none.
  int nextRow(int row) const;
  // Calls visit(col, word) for each word of the row with bit 0 set, in column order.
  template <class Visit>
  void forEachInRow(int row, Visit&& visit) const {
    const RowBlock* block = find(row);
    if (block == nullptr) return;
    for (unsigned i = 0; i < block->size; ++i) {
      if ((block->words[i] & 1) != 0) visit(static_cast<int>(block->first + i), block->words[i]);
    }
  }

 private:
  static constexpr unsigned kStep = 16;                                       // columns of the smallest block
  static constexpr unsigned kGroupRows = 256;                                 // rows of a group
  static constexpr std::size_t kFirstSlab = 1024, kLargestSlab = 512 * 1024;  // words

  struct RowBlock {
    std::uint32_t* words = nullptr;
    std::uint16_t first = 0;  // column of words[0]
    std::uint16_t size = 0;   // words held
  };
  using Group = std::array<RowBlock, kGroupRows>;

  // The row's block; null when it has none.
  const RowBlock* find(int row) const {
    const auto r = static_cast<unsigned>(row);
    const Group* group = _groups[r / kGroupRows].get();
    if (group == nullptr) return nullptr;
    const RowBlock& block = (*group)[r % kGroupRows];
    return block.size == 0 ? nullptr : &block;
  }
  // The block's place, made on demand.
  RowBlock& blockOf(unsigned row);
  std::uint32_t& makeSlot(unsigned row, unsigned col);
  void cover(RowBlock& block, unsigned col);
  // Zeroed words from the last slab.
  std::uint32_t* allocate(unsigned count);

  std::array<std::unique_ptr<Group>, kBiffRows / kGroupRows> _groups;
  std::vector<platform::Block<std::uint32_t>> _slabs;
  std::size_t _slabSize = 0, _slabUsed = 0;
};

}  // namespace rubrica
