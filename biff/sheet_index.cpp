#include "biff/sheet_index.h"

#include <algorithm>
#include <utility>

#include "engine/xlerror.h"

namespace rubrica {

SheetIndex::SheetIndex(const SheetIndex& other) {
  *this = other;
}

SheetIndex& SheetIndex::operator=(const SheetIndex& other) {
  if (this == &other) return *this;
  clear();
  for (std::size_t g = 0; g < _groups.size(); ++g) {
    if (other._groups[g] == nullptr) continue;
    _groups[g] = std::make_unique<Group>();
    for (std::size_t r = 0; r < kGroupRows; ++r) {
      const RowBlock& from = (*other._groups[g])[r];
      if (from.size == 0) continue;
      RowBlock& to = (*_groups[g])[r];
      to.first = from.first;
      to.size = from.size;
      to.words = std::make_unique<std::uint32_t[]>(from.size);
      std::copy_n(from.words.get(), from.size, to.words.get());
    }
  }
  return *this;
}

// Widens the block to hold `col`, in whole steps.
void SheetIndex::RowBlock::cover(int col) {
  const int start = col / kStep * kStep;
  const int newFirst = size == 0 ? start : std::min<int>(first, start);
  const int newEnd = std::max<int>(size == 0 ? 0 : first + size, start + kStep);
  auto wider = std::make_unique<std::uint32_t[]>(static_cast<std::size_t>(newEnd - newFirst));
  std::copy_n(words.get(), size, wider.get() + (size == 0 ? 0 : first - newFirst));
  words = std::move(wider);
  first = static_cast<std::uint16_t>(newFirst);
  size = static_cast<std::uint16_t>(newEnd - newFirst);
}

std::uint32_t& SheetIndex::slot(int row, int col) {
  if (col >= kBiffCols) throw xlerror("SheetIndex: col can't be more than 255");
  RowBlock& block = blockOf(row);
  if (block.size == 0 || col < block.first || col >= block.first + block.size) block.cover(col);
  return block.words[static_cast<std::size_t>(col - block.first)];
}

SheetIndex::RowBlock& SheetIndex::blockOf(int row) {
  auto& group = _groups[static_cast<std::size_t>(row / kGroupRows)];
  if (group == nullptr) group = std::make_unique<Group>();
  return (*group)[static_cast<std::size_t>(row % kGroupRows)];
}

const SheetIndex::RowBlock* SheetIndex::find(int row) const {
  const auto& group = _groups[static_cast<std::size_t>(row / kGroupRows)];
  if (group == nullptr) return nullptr;
  const RowBlock& block = (*group)[static_cast<std::size_t>(row % kGroupRows)];
  return block.size == 0 ? nullptr : &block;
}

std::uint32_t SheetIndex::get(int row, int col) const {
  const RowBlock* block = find(row);
  if (block == nullptr || col < block->first || col >= block->first + block->size) return 0;
  return block->words[static_cast<std::size_t>(col - block->first)];
}

bool SheetIndex::hasRow(int row) const {
  return find(row) != nullptr;
}

int SheetIndex::firstInRow(int row) const {
  const RowBlock* block = find(row);
  if (block == nullptr) return 0;
  const std::uint32_t* begin = block->words.get();
  const std::uint32_t* end = begin + block->size;
  const std::uint32_t* found = std::find_if(begin, end, [](std::uint32_t word) { return (word & 1) != 0; });
  return found == end ? 0 : block->first + static_cast<int>(found - begin);
}

int SheetIndex::lastInRow(int row) const {
  const RowBlock* block = find(row);
  if (block == nullptr) return 0;
  int i = block->size;
  while (i > 0 && (block->words[static_cast<std::size_t>(i - 1)] & 1) == 0) --i;
  return i == 0 ? 0 : block->first + i;
}

int SheetIndex::nextRow(int row) const {
  while (row < kBiffRows) {
    const auto& group = _groups[static_cast<std::size_t>(row / kGroupRows)];
    if (group == nullptr) {
      row = (row / kGroupRows + 1) * kGroupRows;
      continue;
    }
    if ((*group)[static_cast<std::size_t>(row % kGroupRows)].size != 0) return row;
    ++row;
  }
  return kBiffRows;
}

void SheetIndex::moveRow(int from, int to) {
  if (from == to) return;
  if (find(from) == nullptr) return eraseRow(to);
  blockOf(to) = std::exchange(blockOf(from), RowBlock());
}

void SheetIndex::eraseRow(int row) {
  if (find(row) != nullptr) blockOf(row) = RowBlock();
}

void SheetIndex::prune() {
  for (int row = nextRow(0); row < kBiffRows; row = nextRow(row + 1)) {
    if (lastInRow(row) == 0) eraseRow(row);
  }
}

void SheetIndex::clear() {
  for (auto& group : _groups) group.reset();
}

}  // namespace rubrica
