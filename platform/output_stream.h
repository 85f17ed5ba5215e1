// Where saved bytes go: a file that replaces its target only on success, or a growing memory block. The compound
// file writer and the package writer see this interface alone, so tests can make any call fail.
//
// Not thread-safe; one writer owns one stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace rubrica::platform {

class OutputStream {
 public:
  virtual ~OutputStream() = default;
  // Writes `size` bytes at the current position and moves past them. False when they could not all be taken; the
  // stream stays failed from then on.
  virtual bool write(const void* data, std::size_t size) = 0;
  // Moves the position (bytes from the start). A position past the end is filled with zeros by the next write.
  virtual bool seek(std::uint64_t position) = 0;
  // The current position in bytes, or -1 on a failed stream.
  virtual std::int64_t tell() const = 0;
  // Hands everything to its destination. A file takes the place of its target here, and only here.
  virtual bool commit() = 0;
};

// Bytes in memory; `bytes` holds all that was written.
class MemoryOutput final : public OutputStream {
 public:
  bool write(const void* data, std::size_t size) override;
  bool seek(std::uint64_t position) override;
  std::int64_t tell() const override;
  bool commit() override;
  const std::vector<std::byte>& bytes() const { return _bytes; }
  std::vector<std::byte> release();

 private:
  std::vector<std::byte> _bytes;
  std::uint64_t _position = 0;
};

// A file written beside `path` under a temporary name. commit() flushes it to the disk and renames it over `path`;
// without a successful commit the temporary file is removed and what stood at `path` stays as it was. Keeps the
// permissions of a file that it replaces. Null when it can't be created.
// `path` is wide text: used as it is on Windows, as UTF-8 elsewhere.
std::unique_ptr<OutputStream> openFileOutput(std::u16string_view path);

}  // namespace rubrica::platform
