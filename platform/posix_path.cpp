#include "platform/posix_path.h"

#include <utf8.h>

#include "platform/text.h"

namespace rubrica::platform {

std::optional<std::string> posixPath(std::u16string_view path) {
  if (path.empty() || path.find(u'\0') != std::u16string_view::npos) return std::nullopt;
  try {
    return utf8FromUtf16(path);
  } catch (const utf8::exception&) {
    return std::nullopt;
  }
}

}  // namespace rubrica::platform
