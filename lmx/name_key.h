// Short names compared as numbers: element and attribute names are so short that a call of the C library costs more
// than they do.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace rubrica::lmx {

inline constexpr std::size_t kNameKeySize = 8;

template <class T>
std::uint64_t load_bytes(const char* at) {
  T value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

// The first eight bytes of a name as a number, the first byte lowest, zeros behind a shorter one.
constexpr std::uint64_t name_key(std::string_view name) {
  const std::size_t size = name.size() < kNameKeySize ? name.size() : kNameKeySize;
  if (std::is_constant_evaluated() || std::endian::native != std::endian::little) {
    std::uint64_t key = 0;
    for (std::size_t i = 0; i < size; ++i) key |= std::uint64_t{static_cast<unsigned char>(name[i])} << (8 * i);
    return key;
  }
  const char* const at = name.data();
  if (size == 8) return load_bytes<std::uint64_t>(at);
  // Two loads that overlap where the bytes are fewer than both.
  if (size >= 4) return load_bytes<std::uint32_t>(at) | load_bytes<std::uint32_t>(at + size - 4) << (8 * (size - 4));
  if (size >= 2) return load_bytes<std::uint16_t>(at) | load_bytes<std::uint16_t>(at + size - 2) << (8 * (size - 2));
  return size == 1 ? static_cast<unsigned char>(*at) : 0;
}

// Whether two names of the same size and key differ nowhere behind the key.
inline bool same_behind_key(const char* left, const char* right, std::size_t size) {
  return size <= kNameKeySize || std::memcmp(left + kNameKeySize, right + kNameKeySize, size - kNameKeySize) == 0;
}

inline bool same_name(std::string_view left, std::string_view right) {
  return left.size() == right.size() && name_key(left) == name_key(right) &&
         same_behind_key(left.data(), right.data(), left.size());
}

inline std::size_t find_colon(std::string_view name) {
  constexpr std::uint64_t kOnes = 0x0101010101010101U;
  constexpr std::uint64_t kHighs = kOnes * 0x80U;
  // Bytes that are a colon become zero; the lowest bit left tells the first of them.
  const std::uint64_t others = name_key(name) ^ kOnes * static_cast<unsigned char>(':');
  const std::uint64_t zeros = (others - kOnes) & ~others & kHighs;
  if (zeros != 0) return static_cast<std::size_t>(std::countr_zero(zeros)) / 8;
  for (std::size_t i = kNameKeySize; i < name.size(); ++i) {
    if (name[i] == ':') return i;
  }
  return std::string_view::npos;
}

}  // namespace rubrica::lmx
