// The sector numbers of a compound file that are marks and not places.
#pragma once

#include <cstdint>

namespace rubrica {

inline constexpr std::uint32_t kFreeSector = 0xFFFFFFFF;
inline constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
inline constexpr std::uint32_t kFatSector = 0xFFFFFFFD;
inline constexpr std::uint32_t kDifatSector = 0xFFFFFFFC;

// A shorter stream lives in the mini stream, in pieces of a mini sector each. Readers take this value whatever the
// header's own field says.
inline constexpr std::uint32_t kMiniStreamCutoff = 4096;

}  // namespace rubrica
