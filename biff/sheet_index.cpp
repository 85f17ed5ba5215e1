#include "biff/sheet_index.h"

#include <algorithm>
#include <utility>

#include "engine/xlerror.h"

namespace rubrica {

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
      to = {allocate(from.size), from.first, from.size};
      std::copy_n(from.words, from.size, to.words);
    }
  }
  return *this;
}

std::uint32_t* SheetIndex::allocate(unsigned count) {
  if (_slabSize - _slabUsed < count) {
    const auto grown = std::clamp(_slabSize * 2, kFirstSlab, kLargestSlab);
    _slabs.push_back(platform::makeBlock<std::uint32_t>(grown));
    _slabSize = grown;
    _slabUsed = 0;
  }
  std::uint32_t* words = _slabs.back().get() + _slabUsed;
  _slabUsed += count;
  std::fill_n(words, count, 0u);
  return words;
}

// Widens the block to hold `col`: at least to the double, so that a row that fills up column by column leaves no more
// behind than it uses.
void SheetIndex::cover(RowBlock& block, unsigned col) {
  const unsigned start = col / kStep * kStep;
  unsigned first = block.size == 0 ? start : std::min<unsigned>(block.first, start);
  unsigned end = std::max<unsigned>(block.size == 0 ? 0u : block.first + block.size, start + kStep);
  const unsigned wanted = 2u * block.size;
  if (end - first < wanted) end = std::min<unsigned>(first + wanted, kBiffCols);
  if (end - first < wanted) first = end > wanted ? end - wanted : 0;
  std::uint32_t* words = allocate(end - first);
  if (block.size != 0) std::copy_n(block.words, block.size, words + (block.first - first));
  block = {words, static_cast<std::uint16_t>(first), static_cast<std::uint16_t>(end - first)};
}

std::uint32_t& SheetIndex::makeSlot(unsigned row, unsigned col) {
  if (col >= kBiffCols) throw xlerror("SheetIndex: col can't be more than 255");
  RowBlock& block = blockOf(row);
  cover(block, col);
  return block.words[col - block.first];
}

SheetIndex::RowBlock& SheetIndex::blockOf(unsigned row) {
  auto& group = _groups[row / kGroupRows];
  if (group == nullptr) group = std::make_unique<Group>();
  return (*group)[row % kGroupRows];
}

int SheetIndex::firstInRow(int row) const {
  const RowBlock* block = find(row);
  if (block == nullptr) return 0;
  const std::uint32_t* begin = block->words;
  const std::uint32_t* end = begin + block->size;
  const std::uint32_t* found = std::find_if(begin, end, [](std::uint32_t word) { return (word & 1) != 0; });
  return found == end ? 0 : block->first + static_cast<int>(found - begin);
}

int SheetIndex::lastInRow(int row) const {
  const RowBlock* block = find(row);
  if (block == nullptr) return 0;
  unsigned i = block->size;
  while (i > 0 && (block->words[i - 1] & 1) == 0) --i;
  return i == 0 ? 0 : static_cast<int>(block->first + i);
}

int SheetIndex::nextRow(int row) const {
  while (row < kBiffRows) {
    const auto r = static_cast<unsigned>(row);
    const Group* group = _groups[r / kGroupRows].get();
    if (group == nullptr) {
      row = static_cast<int>((r / kGroupRows + 1) * kGroupRows);
      continue;
    }
    if ((*group)[r % kGroupRows].size != 0) return row;
    ++row;
  }
  return kBiffRows;
}

void SheetIndex::moveRow(int from, int to) {
  if (from == to) return;
  if (find(from) == nullptr) return eraseRow(to);
  blockOf(static_cast<unsigned>(to)) = std::exchange(blockOf(static_cast<unsigned>(from)), RowBlock());
}

void SheetIndex::eraseRow(int row) {
  if (find(row) != nullptr) blockOf(static_cast<unsigned>(row)) = RowBlock();
}

void SheetIndex::prune() {
  for (int row = nextRow(0); row < kBiffRows; row = nextRow(row + 1)) {
    if (lastInRow(row) == 0) eraseRow(row);
  }
}

void SheetIndex::clear() {
  for (auto& group : _groups) group.reset();
  _slabs.clear();
  _slabSize = _slabUsed = 0;
}

}  // namespace rubrica
