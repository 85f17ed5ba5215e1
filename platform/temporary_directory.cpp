#include "platform/temporary_directory.h"

#include <filesystem>
#include <system_error>

namespace rubrica::platform {

TemporaryDirectory::TemporaryDirectory() : _path(make()) {}

TemporaryDirectory::~TemporaryDirectory() {
  if (_path.empty()) return;
  std::error_code ignored;
  std::filesystem::remove_all(std::filesystem::path(std::u8string(_path.begin(), _path.end())), ignored);
}

std::string TemporaryDirectory::file(std::string_view name) const {
  return std::string(_path).append("/").append(name);
}

}  // namespace rubrica::platform
