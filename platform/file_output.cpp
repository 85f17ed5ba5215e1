#include <array>
#include <atomic>
#include <chrono>
#include <cstring>

#include "platform/output_stream.h"
#include "platform/replacing_file.h"

namespace rubrica::platform {

namespace {

constexpr std::size_t kBufferSize = 64 * 1024;

class FileOutput final : public OutputStream {
 public:
  explicit FileOutput(std::unique_ptr<ReplacingFile> file) : _file(std::move(file)) {}

  bool write(const void* data, std::size_t size) override {
    if (isClosed()) return false;
    if (size > kBufferSize - _filled && !flush()) return false;
    if (size >= kBufferSize) return writeThrough(data, size);
    if (size != 0) std::memcpy(_buffer.data() + _filled, data, size);
    _filled += size;
    return true;
  }

  bool seek(std::uint64_t position) override {
    if (isClosed() || !flush()) return false;
    _position = position;
    return true;
  }

  std::int64_t tell() const override { return _failed ? -1 : static_cast<std::int64_t>(_position + _filled); }

  bool commit() override {
    if (isClosed() || !flush()) return false;
    _committed = _file->replaceTarget();
    _failed = !_committed;
    return _committed;
  }

 private:
  bool isClosed() const { return _failed || _committed; }

  bool flush() {
    const std::size_t size = _filled;
    _filled = 0;
    return writeThrough(_buffer.data(), size);
  }

  bool writeThrough(const void* data, std::size_t size) {
    _failed = !_file->writeAt(_position, data, size);
    if (!_failed) _position += size;
    return !_failed;
  }

  std::unique_ptr<ReplacingFile> _file;
  std::uint64_t _position = 0;  // in the file, of the buffer's first byte
  std::size_t _filled = 0;
  bool _failed = false;
  bool _committed = false;
  std::array<std::byte, kBufferSize> _buffer{};
};

}  // namespace

std::string temporaryFileName(unsigned long processId) {
  static std::atomic<unsigned> counter{0};
  const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
  return ".rubrica-" + std::to_string(processId) + "-" + std::to_string(++counter) + "-" + std::to_string(ticks) +
         ".tmp";
}

std::unique_ptr<OutputStream> openFileOutput(std::u16string_view path) {
  std::unique_ptr<ReplacingFile> file = createReplacingFile(path);
  if (!file) return nullptr;
  return std::make_unique<FileOutput>(std::move(file));
}

}  // namespace rubrica::platform
