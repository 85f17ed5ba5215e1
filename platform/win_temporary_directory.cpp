#include "platform/replacing_file.h"
#include "platform/temporary_directory.h"
#include "platform/text.h"
#include "platform/win_api.h"

namespace rubrica::platform {

// The directory for temporary files lies in the user's own profile, whose rights what is made there inherits.
std::string TemporaryDirectory::make() {
  std::wstring base(MAX_PATH + 1, L'\0');
  base.resize(::GetTempPathW(static_cast<DWORD>(base.size()), base.data()));
  if (base.empty()) return {};
  for (int attempt = 0; attempt < kTemporaryNameAttempts; ++attempt) {
    const std::string name = temporaryFileName(::GetCurrentProcessId());
    const std::wstring path = base + std::wstring(name.begin(), name.end());
    if (::CreateDirectoryW(path.c_str(), nullptr) != 0) return utf8FromUtf16Lossy(unitsOf(path));
    if (::GetLastError() != ERROR_ALREADY_EXISTS) return {};
  }
  return {};
}

}  // namespace rubrica::platform
