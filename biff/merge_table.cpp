#include "biff/merge_table.h"

#include <algorithm>

#include "biff/records/record_io.h"

namespace rubrica {

void MergeTable::add(const MergedRange& range) {
  if (_blocks.empty() || _blocks.back().size() >= kBlockRanges) _blocks.emplace_back();
  _blocks.back().push_back(range);
}

std::size_t MergeTable::size() const {
  std::size_t count = 0;
  for (const auto& block : _blocks) count += block.size();
  return count;
}

const MergedRange* MergeTable::find(int row, int col) const {
  for (const auto& block : _blocks) {
    const auto found =
        std::find_if(block.begin(), block.end(), [&](const MergedRange& r) { return r.holds(row, col); });
    if (found != block.end()) return &*found;
  }
  return nullptr;
}

const MergedRange* MergeTable::at(std::size_t index) const {
  for (const auto& block : _blocks) {
    if (index < block.size()) return &block[index];
    index -= block.size();
  }
  return nullptr;
}

void MergeTable::erase(const MergedRange* range) {
  for (auto& block : _blocks) {
    const auto found = std::find_if(block.begin(), block.end(), [&](const MergedRange& r) { return &r == range; });
    if (found == block.end()) continue;
    block.erase(found);
    return;
  }
}

void MergeTable::read(std::span<const std::byte> bytes) {
  RecordBody body(bytes);
  std::uint16_t count = 0;
  if (!body.take(count)) throwSizeIsIncorrect("MergeCells");
  if (body.left() < count * sizeof(MergedRange)) throwSizeIsIncorrect("MergeCells");
  auto& block = _blocks.emplace_back(count);
  for (MergedRange& range : block) body.take(range);
}

void MergeTable::write(Xls& xls) const {
  for (const auto& block : _blocks) {
    if (block.empty()) continue;
    xls.writeHeader(id::kMergeCells, static_cast<std::uint16_t>(2 + sizeof(MergedRange) * block.size()));
    xls.writeInt16(static_cast<std::uint16_t>(block.size()));
    xls.write(block.data(), block.size() * sizeof(MergedRange));
  }
}

}  // namespace rubrica
