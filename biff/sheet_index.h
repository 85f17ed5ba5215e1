// From row and column to a 32-bit cell word, in two levels: rows in groups that exist once one of their rows does, and
// for each row a block of words over the columns in use. Owned by a sheet's cell store; empty until the first write.
//
// A row block covers a whole number of 16-column steps around the columns in use instead of all 256, so a row of
// sixteen cells takes 64 bytes. Two cells in far corners cost nothing between them.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

namespace rubrica {

inline constexpr int kBiffRows = 65536;
inline constexpr int kBiffCols = 256;

class SheetIndex {
 public:
  SheetIndex() = default;
  SheetIndex(const SheetIndex& other);
  SheetIndex& operator=(const SheetIndex& other);
  SheetIndex(SheetIndex&&) = default;
  SheetIndex& operator=(SheetIndex&&) = default;

  // The word's place, made on demand. Throws xlerror "SheetIndex: col can't be more than 255". The reference is good
  // until the next call of slot for the same row.
  std::uint32_t& slot(int row, int col);
  // The word, 0 where there is none.
  std::uint32_t get(int row, int col) const;
  bool hasRow(int row) const;
  // First column of the row whose word has bit 0 set, and one past the last; 0 for a row without any.
  int firstInRow(int row) const;
  int lastInRow(int row) const;
  // Gives a row the words of another, which is left without any.
  void moveRow(int from, int to);
  // Frees the block of a row.
  void eraseRow(int row);
  // Frees the blocks of rows without a set word.
  void prune();
  void clear();

  // The rows that have a block, in order: the first at or after `row`, kBiffRows when there is none.
  int nextRow(int row) const;
  // Calls visit(col, word) for each word of the row with bit 0 set, in column order.
  template <class Visit>
  void forEachInRow(int row, Visit&& visit) const {
    const RowBlock* block = find(row);
    if (block == nullptr) return;
    for (int i = 0; i < block->size; ++i) {
      if ((block->words[static_cast<std::size_t>(i)] & 1) != 0) {
        visit(block->first + i, block->words[static_cast<std::size_t>(i)]);
      }
    }
  }

 private:
  static constexpr int kStep = 16;        // columns a block grows by
  static constexpr int kGroupRows = 256;  // rows of a group

  struct RowBlock {
    std::unique_ptr<std::uint32_t[]> words;
    std::uint16_t first = 0;  // column of words[0]
    std::uint16_t size = 0;   // words held
    void cover(int col);
  };
  using Group = std::array<RowBlock, kGroupRows>;

  const RowBlock* find(int row) const;
  // The block's place, made on demand.
  RowBlock& blockOf(int row);

  std::array<std::unique_ptr<Group>, kBiffRows / kGroupRows> _groups;
};

}  // namespace rubrica
