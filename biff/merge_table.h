// The merged ranges of a sheet, in blocks as the MergeCells records hold them. Owned by the sheet.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "compound/xls.h"

namespace rubrica {

struct MergedRange {
  std::uint16_t rowFirst = 0, rowLast = 0, colFirst = 0, colLast = 0;
  bool holds(int row, int col) const { return rowFirst <= row && row <= rowLast && colFirst <= col && col <= colLast; }
};

class MergeTable {
 public:
  static constexpr std::size_t kBlockRanges = 1026;

  std::vector<std::vector<MergedRange>>& blocks() { return _blocks; }
  const std::vector<std::vector<MergedRange>>& blocks() const { return _blocks; }
  void add(const MergedRange& range);
  // Reads one MergeCells record as one block; a count that the record doesn't hold throws.
  void read(std::span<const std::byte> bytes);
  void write(Xls& xls) const;
  void clear() { _blocks.clear(); }
  template <class Visit>
  void forEach(Visit&& visit) const {
    for (const auto& block : _blocks) {
      for (const MergedRange& range : block) visit(range);
    }
  }

 private:
  std::vector<std::vector<MergedRange>> _blocks;
};

}  // namespace rubrica
