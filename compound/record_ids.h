// What the byte layer has to know of BIFF records: the one that continues another, and how much a record may hold.
#pragma once

#include <cstdint>

namespace rubrica {

inline constexpr std::uint16_t kContinueId = 60;
inline constexpr std::uint16_t kMaxRecordSize = 8224;  // bytes of payload

}  // namespace rubrica
