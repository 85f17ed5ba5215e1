#include "compound/write_buffer.h"

#include <algorithm>
#include <array>

#include "engine/xlerror.h"

namespace rubrica {

namespace {

constexpr const char* kStreamError = "stream error, perhaps it's too small writing buffer";
// Stands for a place that isn't known, so that the first bytes are preceded by a seek.
constexpr std::uint64_t kUnknownPlace = ~std::uint64_t{0};

}  // namespace

void WriteBuffer::attach(platform::OutputStream* output, std::uint64_t position) {
  _output = output;
  _size = _cursor = 0;
  _start = _end = position;
  _outputPlace = kUnknownPlace;
  _room = output == nullptr ? 0 : kCapacity;
  if (output != nullptr && !_bytes) _bytes = std::make_unique_for_overwrite<std::byte[]>(kCapacity);
}

void WriteBuffer::writeThrough(const void* data, std::size_t size) {
  flush();
  if (size <= _room) {
    write(data, size);
    return;
  }
  send(data, size);
  _start += size;
}

void WriteBuffer::writeZeros(std::uint64_t count) {
  static constexpr std::array<std::byte, 512> kZeros{};
  while (count != 0) {
    const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(count, kZeros.size()));
    write(kZeros.data(), part);
    count -= part;
  }
}

void WriteBuffer::seek(std::uint64_t target) {
  _end = end();
  if (target >= _start && target - _start <= _size) {
    _cursor = static_cast<std::size_t>(target - _start);
    return;
  }
  flush();
  _start = target;
}

void WriteBuffer::flush() {
  const std::uint64_t next = position();
  if (_size != 0) send(_bytes.get(), _size);
  _start = next;
  _size = _cursor = 0;
}

// Puts bytes at _start, wherever the output stands.
void WriteBuffer::send(const void* data, std::size_t size) {
  if (_output == nullptr) throw xlerror(kStreamError);
  if (_outputPlace != _start && !_output->seek(_start)) throw xlerror(kStreamError);
  if (!_output->write(data, size)) throw xlerror(kStreamError);
  _outputPlace = _start + size;
}

}  // namespace rubrica
