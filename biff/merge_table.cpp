#include "biff/merge_table.h"

#include "biff/records/record_io.h"

namespace rubrica {

void MergeTable::add(const MergedRange& range) {
  if (_blocks.empty() || _blocks.back().size() >= kBlockRanges) _blocks.emplace_back();
  _blocks.back().push_back(range);
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
