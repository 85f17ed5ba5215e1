// The merged ranges of a sheet, in blocks as the MergeCells records hold them. Owned by the sheet.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "biff/cell_range.h"
#include "compound/xls.h"

namespace rubrica {

using MergedRange = CellRange;

class MergeTable {
 public:
  static constexpr std::size_t kBlockRanges = 1026;

  std::vector<std::vector<MergedRange>>& blocks() { return _blocks; }
  const std::vector<std::vector<MergedRange>>& blocks() const { return _blocks; }
  void add(const MergedRange& range);
  std::size_t size() const;
  // The first range that holds the cell; null when none does.
  const MergedRange* find(int row, int col) const;
  // The range at an index that counts across blocks; null past the last.
  const MergedRange* at(std::size_t index) const;
  // Removes a range that find() or at() gave.
  void erase(const MergedRange* range);
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
