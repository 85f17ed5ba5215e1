#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/temporary_directory.h"

namespace rubrica::platform {

std::string TemporaryDirectory::make() {
  std::error_code error;
  std::string pattern = (std::filesystem::temp_directory_path(error) / "rubrica-XXXXXX").string();
  if (error || ::mkdtemp(pattern.data()) == nullptr) return {};
  return pattern;
}

}  // namespace rubrica::platform
