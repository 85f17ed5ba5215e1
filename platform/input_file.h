// Whole files read into memory, the one way in which the engine reads files.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "platform/large_block.h"

namespace rubrica::platform {

// The bytes of a file, owned.
class FileBytes {
 public:
  FileBytes() = default;
  explicit FileBytes(std::size_t capacity) : _bytes(makeBlock<std::byte>(capacity)), _capacity(capacity) {}

  std::byte* data() { return _bytes.get(); }
  const std::byte* data() const { return _bytes.get(); }
  std::size_t size() const { return _size; }
  std::size_t capacity() const { return _capacity; }
  bool empty() const { return _size == 0; }
  operator std::span<const std::byte>() const { return {_bytes.get(), _size}; }
  // How many of the first bytes are the file's; at most the capacity.
  void setSize(std::size_t size) { _size = size; }
  // More room behind what there is.
  void grow(std::size_t more);

 private:
  Block<std::byte> _bytes;
  std::size_t _size = 0, _capacity = 0;
};

// The bytes of the file at `path` (wide text: used as it is on Windows, as UTF-8 elsewhere), or nothing when it can't
// be opened or read or is not a regular file. An empty file gives no bytes.
std::optional<FileBytes> readWholeFile(std::u16string_view path);

}  // namespace rubrica::platform
