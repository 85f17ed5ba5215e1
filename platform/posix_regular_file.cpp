#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include <sys/stat.h>

#include "platform/posix_path.h"
#include "platform/regular_file.h"

namespace rubrica::platform {

RegularFile::RegularFile(std::u16string_view path) {
  const std::optional<std::string> name = posixPath(path);
  if (!name) return;
  // Without O_NONBLOCK the open of a pipe would wait for its writer before it can be refused.
  const int fd = ::open(name->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return;
  struct stat status {};
  if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
    ::close(fd);
    return;
  }
  _handle = fd;
  _size = static_cast<std::uint64_t>(status.st_size);
}

RegularFile::~RegularFile() {
  if (isOpen()) ::close(static_cast<int>(_handle));
}

std::int64_t RegularFile::read(std::byte* to, std::size_t size) {
  for (;;) {
    const ssize_t got = ::read(static_cast<int>(_handle), to, size);
    if (got >= 0 || errno != EINTR) return got;
  }
}

}  // namespace rubrica::platform
