// What a package may ask for at most. No honest workbook meets these bounds; a hostile one ends at them in a message
// before memory is taken.
#pragma once

#include <cstddef>
#include <cstdint>

namespace rubrica {

struct PackageLimits {
  // Entries of one archive. Workbooks with a picture or comment part for each of thousands of objects stay far below.
  std::uint64_t entries = 100'000;

  // Bytes of one part. A sheet of 10 million numbers has 0.4 GB of XML.
  std::uint64_t partSize = std::uint64_t{1} << 32U;

  // What all parts that are read may come to: this many bytes whatever the archive's size, and beyond that so many
  // times the archive's size. XML of workbooks shrinks to a tenth or, where cells repeat, to a seventieth.
  std::uint64_t freeExpansion = std::uint64_t{32} << 20U;
  std::uint64_t expansionRatio = 150;
};

// DEFLATE can't expand further than this.
inline constexpr std::uint64_t kMaxDeflateRatio = 1032;

}  // namespace rubrica
