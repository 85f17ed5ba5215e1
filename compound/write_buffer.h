// Collects small writes into large pieces for an output stream, and lets earlier bytes be patched whether or not they
// have gone out. Owned by Xls, which borrows the output.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "platform/output_stream.h"

namespace rubrica {

class WriteBuffer {
 public:
  static constexpr std::size_t kCapacity = 256 * 1024;

  // Takes an output, or none, to write from `position` on, and forgets what the last one had still to get.
  void attach(platform::OutputStream* output, std::uint64_t position);
  platform::OutputStream* output() const { return _output; }

  // Offset in the file of the next byte.
  std::uint64_t position() const { return _start + _cursor; }
  // The farthest that the position has been.
  std::uint64_t end() const { return std::max(_end, position()); }
  // The operations throw xlerror "stream error, perhaps it's too small writing buffer" where the output fails.
  void write(const void* data, std::size_t size) {
    if (size > _room - _cursor) {
      writeThrough(data, size);
      return;
    }
    if (size != 0) std::memcpy(_bytes.get() + _cursor, data, size);
    _cursor += size;
    if (_cursor > _size) _size = _cursor;
  }
  void writeZeros(std::uint64_t count);
  void seek(std::uint64_t target);
  void flush();

 private:
  void writeThrough(const void* data, std::size_t size);
  void send(const void* data, std::size_t size);

  platform::OutputStream* _output = nullptr;
  std::unique_ptr<std::byte[]> _bytes;
  std::size_t _room = 0;           // kCapacity once there is an output
  std::size_t _size = 0;           // bytes that the buffer holds
  std::size_t _cursor = 0;         // where in the buffer the next byte goes
  std::uint64_t _start = 0;        // file offset of the buffer's first byte
  std::uint64_t _end = 0;          // the farthest position at the last seek
  std::uint64_t _outputPlace = 0;  // file offset where the output stands
};

}  // namespace rubrica
