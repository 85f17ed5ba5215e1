// Reads the bytes of one stream in order, straight from the file in memory. Values inside one run of sectors take an
// inlined path; whatever crosses runs or meets the end takes the general one. Owned by Xls.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "compound/field_io.h"
#include "compound/stream_runs.h"

namespace rubrica {

class StreamCursor {
 public:
  // A place in the stream, to come back to.
  struct Place {
    std::size_t run = 0;
    std::uint64_t offset = 0;  // bytes from the run's start
    bool end = false;
  };

  // Enters a stream at its first byte. `file` is borrowed.
  void open(std::span<const std::byte> file, StreamRuns runs);
  void clear() { open({}, {}); }

  bool isEnd() const { return _end; }
  // Bytes from the stream's start to the cursor, and from the cursor to the stream's end.
  std::uint64_t position() const;
  std::uint64_t left() const { return _length - position(); }

  std::size_t read(void* buffer, std::size_t size) {
    if (size > runLeft()) return readAcrossRuns(static_cast<std::byte*>(buffer), size);
    if (size != 0) std::memcpy(buffer, _at, size);
    _at += size;
    return size;
  }

  // A little-endian number. What the stream no longer holds of it is 0.
  template <std::integral T>
  std::size_t readNumber(T& value) {
    if (sizeof(T) <= runLeft()) {
      value = loadLittle<T>(_at);
      _at += sizeof(T);
      return sizeof(T);
    }
    std::byte bytes[sizeof(T)] = {};
    const std::size_t got = readAcrossRuns(bytes, sizeof(T));
    value = loadLittle<T>(bytes);
    return got;
  }

  std::span<const std::byte> view(std::size_t size) {
    if (size > runLeft()) return gather(size);
    const std::span<const std::byte> bytes(_at, size);
    _at += size;
    return bytes;
  }

  std::size_t skip(std::size_t size) {
    if (size > runLeft()) return skipAcrossRuns(size);
    _at += size;
    return size;
  }

  Place place() const;
  void goTo(const Place& place);

 private:
  std::size_t runLeft() const { return static_cast<std::size_t>(_runEnd - _at); }
  void enterRun(std::size_t run, std::uint64_t offset);
  bool nextRun();
  std::size_t readAcrossRuns(std::byte* buffer, std::size_t size);
  std::size_t skipAcrossRuns(std::size_t size);
  std::span<const std::byte> gather(std::size_t size);

  const std::byte* _at = nullptr;
  const std::byte* _runEnd = nullptr;
  bool _end = false;
  std::size_t _run = 0;
  std::uint64_t _length = 0;  // bytes of the whole stream
  std::span<const std::byte> _file;
  StreamRuns _runs;
  std::vector<std::byte> _scratch;
};

}  // namespace rubrica
