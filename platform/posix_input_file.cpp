#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include <sys/stat.h>

#include "platform/input_file.h"
#include "platform/posix_path.h"

namespace rubrica::platform {

namespace {

// Room added for a file that is longer than the system stated.
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

void FileBytes::grow(std::size_t more) {
  FileBytes wider(_capacity + more);
  std::copy_n(_bytes.get(), _size, wider._bytes.get());
  wider._size = _size;
  *this = std::move(wider);
}

std::optional<FileBytes> readWholeFile(std::u16string_view path) {
  const std::optional<std::string> name = posixPath(path);
  if (!name) return std::nullopt;
  // Without O_NONBLOCK the open of a pipe would wait for its writer before it can be refused.
  const FileDescriptor file(::open(name->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (file.get() < 0 || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;

  // One byte more than the system states: the read that ends the file needs room too.
  FileBytes bytes(static_cast<std::size_t>(status.st_size) + 1);
  for (;;) {
    if (bytes.size() == bytes.capacity()) bytes.grow(kGrowth);
    const ssize_t got = readSome(file.get(), bytes.data() + bytes.size(), bytes.capacity() - bytes.size());
    if (got < 0) return std::nullopt;
    if (got == 0) return bytes;
    bytes.setSize(bytes.size() + static_cast<std::size_t>(got));
  }
}

}  // namespace rubrica::platform
