#include "platform/input_file.h"

#include <algorithm>
#include <limits>

#include "platform/regular_file.h"

namespace rubrica::platform {

namespace {

// Room added for a file that is longer than the system stated.
constexpr std::size_t kGrowth = 64 * 1024;

}  // namespace

void FileBytes::grow(std::size_t more) {
  FileBytes wider(_capacity + more);
  std::copy_n(_bytes.get(), _size, wider._bytes.get());
  wider._size = _size;
  *this = std::move(wider);
}

std::optional<FileBytes> readWholeFile(std::u16string_view path) {
  RegularFile file(path);
  if (!file.isOpen() || file.size() >= std::numeric_limits<std::size_t>::max()) return std::nullopt;

  // One byte more than the system states: the read that ends the file needs room too.
  FileBytes bytes(static_cast<std::size_t>(file.size()) + 1);
  for (;;) {
    if (bytes.size() == bytes.capacity()) bytes.grow(kGrowth);
    const std::int64_t got = file.read(bytes.data() + bytes.size(), bytes.capacity() - bytes.size());
    if (got < 0) return std::nullopt;
    if (got == 0) return bytes;
    bytes.setSize(bytes.size() + static_cast<std::size_t>(got));
  }
}

}  // namespace rubrica::platform
