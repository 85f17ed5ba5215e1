#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include <sys/stat.h>

#include "platform/input_file.h"
#include "platform/posix_path.h"

namespace rubrica::platform {

namespace {

// How much is asked for past the size that the system states, to meet the end of a file that says 0 or has grown.
constexpr std::size_t kGrowth = 64 * 1024;

class FileDescriptor {
 public:
  explicit FileDescriptor(int fd) : _fd(fd) {}
  ~FileDescriptor() {
    if (_fd >= 0) ::close(_fd);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  int get() const { return _fd; }

 private:
  int _fd;
};

// One read() that a signal doesn't end; -1 on failure.
ssize_t readSome(int fd, std::byte* to, std::size_t size) {
  for (;;) {
    const ssize_t got = ::read(fd, to, size);
    if (got >= 0 || errno != EINTR) return got;
  }
}

}  // namespace

std::optional<std::vector<std::byte>> readWholeFile(std::u16string_view path) {
  const std::optional<std::string> name = posixPath(path);
  if (!name) return std::nullopt;
  // Without O_NONBLOCK the open of a pipe would wait for its writer before it can be refused.
  const FileDescriptor file(::open(name->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (file.get() < 0 || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;

  std::vector<std::byte> bytes(static_cast<std::size_t>(status.st_size));
  std::size_t filled = 0;
  for (;;) {
    if (filled == bytes.size()) {
      std::byte next;
      const ssize_t got = readSome(file.get(), &next, 1);
      if (got < 0) return std::nullopt;
      if (got == 0) break;
      bytes.resize(filled + kGrowth);
      bytes[filled++] = next;
    }
    const ssize_t got = readSome(file.get(), bytes.data() + filled, bytes.size() - filled);
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  bytes.resize(filled);
  return bytes;
}

}  // namespace rubrica::platform
