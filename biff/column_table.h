// The ColInfo records of a sheet and, derived from them, the format of each column. Owned by the sheet.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "biff/records/sheet_records.h"

namespace rubrica {

class ColumnTable {
 public:
  static constexpr int kNoFormat = -1;

  ColumnTable() { _formats.fill(kNoFormat); }
  const std::vector<ColInfo>& infos() const { return _infos; }
  // Changes are followed by refreshFormats().
  std::vector<ColInfo>& infos() { return _infos; }
  // The entry that holds the column; null when there is none.
  const ColInfo* find(int col) const;
  // The XF index of the column, kNoFormat when none of its own. Columns 0 to 256.
  int format(int col) const { return _formats[static_cast<std::size_t>(col)]; }
  void append(const ColInfo& info);
  // Divides the entries that lie across the ends of a range of columns, and gives its columns that have no entry one
  // like `fresh`. Followed by refreshFormats().
  void isolate(int first, int last, const ColInfo& fresh);
  // Calls visit(entry) for each entry that lies wholly within the range. Followed by refreshFormats() when it changes.
  template <class Visit>
  void forEachWithin(int first, int last, Visit&& visit) {
    for (ColInfo& info : _infos) {
      if (first <= info.colFirst && info.colLast <= last) visit(info);
    }
  }
  // Sorts by first column and takes the formats anew.
  void refreshFormats();
  void clear();

 private:
  // One more than a sheet has columns: files describe the column behind the last one too.
  static constexpr std::size_t kFormatColumns = 257;
  void takeFormat(const ColInfo& info);
  // Divides the entries that hold both `col` and the column before it.
  void divideAt(int col);

  std::vector<ColInfo> _infos;
  std::array<std::int32_t, kFormatColumns> _formats;
};

}  // namespace rubrica
