#include "platform/regular_file.h"
#include "platform/win_api.h"

namespace rubrica::platform {

RegularFile::RegularFile(std::u16string_view path) {
  const std::optional<std::wstring> name = winPath(path);
  if (!name) return;
  // A book that another program holds open, even for writing, can be read as far as that program allows.
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  HANDLE file = ::CreateFileW(name->c_str(), GENERIC_READ, kShared, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  BY_HANDLE_FILE_INFORMATION about{};
  const bool isRegular = ::GetFileType(file) == FILE_TYPE_DISK && ::GetFileInformationByHandle(file, &about) != 0 &&
                         (about.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
  if (!isRegular) {
    ::CloseHandle(file);
    return;
  }
  _handle = reinterpret_cast<std::intptr_t>(file);
  _size = (std::uint64_t{about.nFileSizeHigh} << 32) | about.nFileSizeLow;
}

RegularFile::~RegularFile() {
  if (isOpen()) ::CloseHandle(reinterpret_cast<HANDLE>(_handle));
}

std::int64_t RegularFile::read(std::byte* to, std::size_t size) {
  DWORD got = 0;
  if (::ReadFile(reinterpret_cast<HANDLE>(_handle), to, transferSize(size), &got, nullptr) == 0) return -1;
  return got;
}

}  // namespace rubrica::platform
