// A regular file opened for reading, as the system sees it. Used by input_file.cpp only; it owns the open file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace rubrica::platform {

class RegularFile {
 public:
  // Opens `path`; isOpen() is false where there is no such file, or it isn't a regular one.
  explicit RegularFile(std::u16string_view path);
  ~RegularFile();
  RegularFile(const RegularFile&) = delete;
  RegularFile& operator=(const RegularFile&) = delete;

  bool isOpen() const { return _handle != kClosed; }
  // The size in bytes that the system states; the file may turn out longer or shorter.
  std::uint64_t size() const { return _size; }
  // Reads up to `size` bytes from where the last call ended: how many came, 0 at the end, -1 on failure.
  std::int64_t read(std::byte* to, std::size_t size);

 private:
  static constexpr std::intptr_t kClosed = -1;  // both an invalid descriptor and an invalid handle of Windows

  std::intptr_t _handle = kClosed;
  std::uint64_t _size = 0;
};

}  // namespace rubrica::platform
