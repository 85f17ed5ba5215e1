// The 56 changeable colours of an .xls book, indexes 8 to 63, and the rule by which a colour becomes an index. Owned by
// StyleTables.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "compound/xls.h"

namespace rubrica {

class Palette {
 public:
  static constexpr int kFirstIndex = 8;
  static constexpr std::size_t kSize = 56;

  Palette();

  // The index of the first entry of this colour. A colour that is in no entry overwrites the first entry that was not
  // handed out yet, in use by a fixed index or not. Throws xlerror when all 56 have been handed out.
  int pack(int red, int green, int blue);
  // The index of the entry nearest to a colour; nothing changes.
  int nearest(int red, int green, int blue) const;
  // Throws xlerror for an index without an entry; each out pointer may be null.
  void unpack(int color, int* red, int* green, int* blue) const;

  // The default colours again. What was handed out stays so: the flags are no part of a file.
  void resetColors();
  void read(Xls& xls, std::uint16_t size);
  void write(Xls& xls) const;

 private:
  std::vector<std::uint32_t> _entries;  // red in the lowest byte, then green, blue and a reserved byte
  std::array<bool, kSize> _used{};
};

}  // namespace rubrica
