// Little-endian numbers in bytes, and the two visitors that read and write a structure whose fields are listed once
// (the file header, a directory entry). Used inside this folder.
#pragma once

#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace rubrica {

template <std::integral T>
T swapBytes(T value) {
  auto bytes = std::bit_cast<std::array<std::byte, sizeof(T)>>(value);
  for (std::size_t i = 0; i < sizeof(T) / 2; ++i) std::swap(bytes[i], bytes[sizeof(T) - 1 - i]);
  return std::bit_cast<T>(bytes);
}

template <std::integral T>
T loadLittle(const std::byte* from) {
  T value;
  std::memcpy(&value, from, sizeof value);
  return std::endian::native == std::endian::little ? value : swapBytes(value);
}

template <std::integral T>
void storeLittle(std::byte* to, T value) {
  if constexpr (std::endian::native != std::endian::little) value = swapBytes(value);
  std::memcpy(to, &value, sizeof value);
}

// Takes each field from the bytes that follow `at`; the caller has made sure that they are there.
class FieldLoader {
 public:
  explicit FieldLoader(const std::byte* at) : _at(at) {}

  template <std::integral T>
  void operator()(T& field) {
    field = loadLittle<T>(_at);
    _at += sizeof(T);
  }
  template <typename T, std::size_t N>
  void operator()(std::array<T, N>& field) {
    for (T& item : field) (*this)(item);
  }

 private:
  const std::byte* _at;
};

// Puts each field into the bytes that follow `at`.
class FieldStorer {
 public:
  explicit FieldStorer(std::byte* at) : _at(at) {}

  template <std::integral T>
  void operator()(const T& field) {
    storeLittle(_at, field);
    _at += sizeof(T);
  }
  template <typename T, std::size_t N>
  void operator()(const std::array<T, N>& field) {
    for (const T& item : field) (*this)(item);
  }

 private:
  std::byte* _at;
};

}  // namespace rubrica
