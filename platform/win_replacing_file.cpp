#include "platform/replacing_file.h"
#include "platform/win_api.h"

namespace rubrica::platform {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Where the directory part of a path ends: past its last separator, or past the drive of "C:name".
std::size_t directoryLength(std::wstring_view path) {
  const std::size_t end = path.find_last_of(L"\\/:");
  return end == std::wstring_view::npos ? 0 : end + 1;
}

// The path of an open file with every link in it followed.
std::optional<std::wstring> finalPath(HANDLE file) {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD size = ::GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), 0);
    if (size == 0) return std::nullopt;
    const bool fits = size < path.size();  // the size counts the NUL only where it doesn't fit
    path.resize(size);
    if (fits) return path;
  }
}

struct Target {
  std::wstring path;
  bool exists = false;
};

// What `path` stands for, or nothing where it may not be replaced. Opening it for writing asks all at once: whether it
// is a directory, write-protected, or held by a program that shares it with nobody.
std::optional<Target> findTarget(const std::wstring& path) {
  HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    if (::GetLastError() != ERROR_FILE_NOT_FOUND) return std::nullopt;
    return Target{path, false};
  }
  BY_HANDLE_FILE_INFORMATION about{};
  // The attribute is asked too: a file server or a backup privilege may grant the open regardless.
  const bool isReplaceable = ::GetFileType(file) == FILE_TYPE_DISK && ::GetFileInformationByHandle(file, &about) != 0 &&
                             (about.dwFileAttributes & FILE_ATTRIBUTE_READONLY) == 0;
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  std::optional<std::wstring> target = path;
  // A rename over a link would replace the link and not the file.
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    target = finalPath(file);
  }
  ::CloseHandle(file);
  if (!isReplaceable || !target) return std::nullopt;
  return Target{*std::move(target), true};
}

class WinReplacingFile final : public ReplacingFile {
 public:
  WinReplacingFile(HANDLE file, std::wstring temporary, Target target)
      : _file(file), _temporary(std::move(temporary)), _target(std::move(target)) {}

  ~WinReplacingFile() override {
    if (_file != INVALID_HANDLE_VALUE) ::CloseHandle(_file);
    if (!_replaced) ::DeleteFileW(_temporary.c_str());
  }

  bool writeAt(std::uint64_t position, const void* data, std::size_t size) override {
    const auto* bytes = static_cast<const std::byte*>(data);
    while (size != 0) {
      OVERLAPPED where{};
      where.Offset = static_cast<DWORD>(position);
      where.OffsetHigh = static_cast<DWORD>(position >> 32);
      DWORD done = 0;
      if (::WriteFile(_file, bytes, transferSize(size), &done, &where) == 0 || done == 0) return false;
      bytes += done;
      size -= done;
      position += done;
    }
    return true;
  }

  bool replaceTarget() override {
    const bool onDisk = ::FlushFileBuffers(_file) != 0;
    const bool closed = ::CloseHandle(_file) != 0;
    _file = INVALID_HANDLE_VALUE;
    _replaced = onDisk && closed && (takeOver() || ::MoveFileExW(_temporary.c_str(), _target.path.c_str(), kMove) != 0);
    return _replaced;
  }

 private:
  // Without MOVEFILE_COPY_ALLOWED: a copy over the target could stop halfway.
  static constexpr DWORD kMove = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;

  // Replaces with the target's permissions, attributes and creation time kept; not every file system can do it.
  bool takeOver() const {
    return _target.exists && ::ReplaceFileW(_target.path.c_str(), _temporary.c_str(), nullptr,
                                            REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) != 0;
  }

  HANDLE _file;
  std::wstring _temporary;
  Target _target;
  bool _replaced = false;
};

}  // namespace

std::unique_ptr<ReplacingFile> createReplacingFile(std::u16string_view path) {
  const std::optional<std::wstring> name = winPath(path);
  if (!name) return nullptr;
  std::optional<Target> target = findTarget(*name);
  if (!target || directoryLength(target->path) == target->path.size()) return nullptr;

  const std::wstring directory = target->path.substr(0, directoryLength(target->path));
  for (int attempt = 0; attempt < kTemporaryNameAttempts; ++attempt) {
    const std::string fileName = temporaryFileName(::GetCurrentProcessId());
    std::wstring temporary = directory;
    temporary.append(fileName.begin(), fileName.end());
    HANDLE file =
        ::CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE && ::GetLastError() == ERROR_FILE_EXISTS) continue;
    if (file == INVALID_HANDLE_VALUE) return nullptr;
    return std::make_unique<WinReplacingFile>(file, std::move(temporary), *std::move(target));
  }
  return nullptr;
}

}  // namespace rubrica::platform
