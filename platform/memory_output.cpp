#include <cstring>
#include <limits>
#include <utility>

#include "platform/output_stream.h"

namespace rubrica::platform {

bool MemoryOutput::write(const void* data, std::size_t size) {
  if (size == 0) return true;
  if (_position > std::numeric_limits<std::size_t>::max() - size) return false;
  const auto start = static_cast<std::size_t>(_position);
  const std::size_t end = start + size;
  const auto* bytes = static_cast<const std::byte*>(data);
  if (start == _bytes.size()) {
    _bytes.insert(_bytes.end(), bytes, bytes + size);
  } else {
    if (end > _bytes.size()) _bytes.resize(end);
    std::memcpy(_bytes.data() + start, bytes, size);
  }
  _position = end;
  return true;
}

bool MemoryOutput::seek(std::uint64_t position) {
  _position = position;
  return true;
}

std::int64_t MemoryOutput::tell() const {
  return static_cast<std::int64_t>(_position);
}

bool MemoryOutput::commit() {
  return true;
}

std::vector<std::byte> MemoryOutput::release() {
  _position = 0;
  return std::exchange(_bytes, {});
}

}  // namespace rubrica::platform
