#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <system_error>
#include <unistd.h>

#include <sys/stat.h>

#include "platform/posix_path.h"
#include "platform/replacing_file.h"

namespace rubrica::platform {

namespace {

namespace fs = std::filesystem;

// As many links as the kernel itself follows in one name.
constexpr int kMaxLinks = 40;
constexpr mode_t kNewFileMode = 0666;

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

class PosixReplacingFile final : public ReplacingFile {
 public:
  PosixReplacingFile(fs::path temporary, fs::path target)
      : _temporary(std::move(temporary)),
        _target(std::move(target)),
        _directory(_target.has_parent_path() ? _target.parent_path() : fs::path(".")) {}

  ~PosixReplacingFile() override {
    if (_fd >= 0) ::close(_fd);
    if (_isCreated && !_replaced) ::unlink(_temporary.c_str());
  }

  // Makes the temporary file, which must not be there yet; the descriptor, or -1 with errno set.
  int create() {
    _fd = ::open(_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode);
    _isCreated = _fd >= 0;
    return _fd;
  }

  bool writeAt(std::uint64_t position, const void* data, std::size_t size) override {
    const auto* bytes = static_cast<const char*>(data);
    while (size != 0) {
      const ssize_t done = ::pwrite(_fd, bytes, size, static_cast<off_t>(position));
      if (done < 0 && errno == EINTR) continue;
      if (done <= 0) return false;
      bytes += done;
      size -= static_cast<std::size_t>(done);
      position += static_cast<std::uint64_t>(done);
    }
    return true;
  }

  bool replaceTarget() override {
    const bool onDisk = ::fsync(_fd) == 0;
    const bool closed = ::close(_fd) == 0;
    _fd = -1;
    _replaced = onDisk && closed && ::rename(_temporary.c_str(), _target.c_str()) == 0;
    if (_replaced) syncDirectory();
    return _replaced;
  }

 private:
  // Makes the rename itself durable. The file is in place already, so a file system that can't do it fails nothing.
  void syncDirectory() const {
    const int directory = ::open(_directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0) return;
    ::fsync(directory);
    ::close(directory);
  }

  int _fd = -1;
  fs::path _temporary;
  fs::path _target;
  fs::path _directory;
  bool _isCreated = false;
  bool _replaced = false;
};

}  // namespace

std::unique_ptr<ReplacingFile> createReplacingFile(std::u16string_view path) {
  const std::optional<std::string> name = posixPath(path);
  if (!name) return nullptr;
  const std::optional<fs::path> target = followLinks(*name);
  if (!target || !target->has_filename()) return nullptr;

  struct stat old {};
  const bool replaces = ::stat(target->c_str(), &old) == 0;
  // A rename would put a plain file in the place of a device, and would overwrite a write-protected file unasked.
  if (replaces && (!S_ISREG(old.st_mode) || ::access(target->c_str(), W_OK) != 0)) return nullptr;

  for (int attempt = 0; attempt < kTemporaryNameAttempts; ++attempt) {
    // The object first, so that no file is left when there is no memory for it.
    const fs::path temporary = target->parent_path() / temporaryFileName(static_cast<unsigned long>(::getpid()));
    auto file = std::make_unique<PosixReplacingFile>(temporary, *target);
    const int fd = file->create();
    if (fd < 0 && errno == EEXIST) continue;
    if (fd < 0) return nullptr;
    if (replaces) {
      // Only a privileged process can keep a foreign owner; the mode comes after, since a new owner clears its bits.
      const bool sameOwner = ::fchown(fd, old.st_uid, old.st_gid) == 0;
      const mode_t kept = sameOwner ? 07777 : 0777;
      if (::fchmod(fd, old.st_mode & kept) != 0) return nullptr;
    }
    return file;
  }
  return nullptr;
}

}  // namespace rubrica::platform
