#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <system_error>
#include <unistd.h>

#include <sys/stat.h>

#include "platform/output_stream.h"
#include "platform/posix_path.h"

namespace rubrica::platform {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBufferSize = 64 * 1024;
// As many links as the kernel itself follows in one name.
constexpr int kMaxLinks = 40;
constexpr int kNameAttempts = 100;

// The file that `path` names once every symbolic link at its end is followed, also where that file doesn't exist yet.
std::optional<fs::path> followLinks(fs::path path) {
  std::error_code error;
  for (int i = 0; i < kMaxLinks; ++i) {
    if (!fs::is_symlink(path, error)) return path;
    const fs::path target = fs::read_symlink(path, error);
    if (error) return std::nullopt;
    path = target.is_absolute() ? target : path.parent_path() / target;
  }
  return std::nullopt;
}

// A name in the target's directory that no other writer of any process uses at this moment.
fs::path temporaryName(const fs::path& target, int attempt) {
  static std::atomic<unsigned> counter{0};
  const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
  return target.parent_path() / (".rubrica-" + std::to_string(::getpid()) + "-" + std::to_string(++counter) + "-" +
                                 std::to_string(ticks + attempt) + ".tmp");
}

class FileOutput final : public OutputStream {
 public:
  FileOutput(int fd, fs::path temporary, fs::path target)
      : _fd(fd), _temporary(std::move(temporary)), _target(std::move(target)) {}

  ~FileOutput() override {
    if (_fd >= 0) ::close(_fd);
    if (!_committed) ::unlink(_temporary.c_str());
  }

  bool write(const void* data, std::size_t size) override {
    if (_failed || _fd < 0) return false;
    if (size > kBufferSize - _filled && !flush()) return false;
    if (size >= kBufferSize) return writeAt(data, size);
    if (size != 0) std::memcpy(_buffer.data() + _filled, data, size);
    _filled += size;
    return true;
  }

  bool seek(std::uint64_t position) override {
    if (_failed || _fd < 0 || !flush()) return false;
    _position = position;
    return true;
  }

  std::int64_t tell() const override { return _failed ? -1 : static_cast<std::int64_t>(_position + _filled); }

  bool commit() override {
    if (_failed || _fd < 0 || !flush()) return false;
    const bool onDisk = ::fsync(_fd) == 0;
    const bool closed = ::close(_fd) == 0;
    _fd = -1;
    _committed = onDisk && closed && ::rename(_temporary.c_str(), _target.c_str()) == 0;
    _failed = !_committed;
    if (_committed) syncDirectory();
    return _committed;
  }

 private:
  bool flush() {
    const std::size_t size = _filled;
    _filled = 0;
    return writeAt(_buffer.data(), size);
  }

  bool writeAt(const void* data, std::size_t size) {
    const auto* bytes = static_cast<const char*>(data);
    while (size != 0) {
      const ssize_t done = ::pwrite(_fd, bytes, size, static_cast<off_t>(_position));
      if (done < 0 && errno == EINTR) continue;
      if (done <= 0) {
        _failed = true;
        return false;
      }
      bytes += done;
      size -= static_cast<std::size_t>(done);
      _position += static_cast<std::uint64_t>(done);
    }
    return true;
  }

  // Makes the rename itself durable. The file is in place already, so a file system that can't do it fails nothing.
  void syncDirectory() const {
    const fs::path parent = _target.has_parent_path() ? _target.parent_path() : fs::path(".");
    const int directory = ::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0) return;
    ::fsync(directory);
    ::close(directory);
  }

  int _fd;
  fs::path _temporary;
  fs::path _target;
  std::uint64_t _position = 0;  // in the file, of the buffer's first byte
  std::size_t _filled = 0;
  bool _failed = false;
  bool _committed = false;
  std::array<std::byte, kBufferSize> _buffer{};
};

}  // namespace

std::unique_ptr<OutputStream> openFileOutput(std::u16string_view path) {
  const std::optional<std::string> name = posixPath(path);
  if (!name) return nullptr;
  const std::optional<fs::path> target = followLinks(*name);
  if (!target || !target->has_filename()) return nullptr;

  struct stat old {};
  const bool replaces = ::stat(target->c_str(), &old) == 0;
  // A rename would put a plain file in the place of a device, and would overwrite a write-protected file unasked.
  if (replaces && (!S_ISREG(old.st_mode) || ::access(target->c_str(), W_OK) != 0)) return nullptr;

  constexpr mode_t kNewFileMode = 0666;
  for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
    const fs::path temporary = temporaryName(*target, attempt);
    const int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode);
    if (fd < 0 && errno == EEXIST) continue;
    if (fd < 0) return nullptr;
    auto output = std::make_unique<FileOutput>(fd, temporary, *target);
    if (replaces) {
      // Only a privileged process can keep a foreign owner; the mode comes after, since a new owner clears its bits.
      const bool sameOwner = ::fchown(fd, old.st_uid, old.st_gid) == 0;
      const mode_t kept = sameOwner ? 07777 : 0777;
      if (::fchmod(fd, old.st_mode & kept) != 0) return nullptr;
    }
    return output;
  }
  return nullptr;
}

}  // namespace rubrica::platform
