#include "platform/win_api.h"

namespace rubrica::platform {

std::optional<std::wstring> winPath(std::u16string_view path) {
  if (path.empty() || path.find(u'\0') != std::u16string_view::npos) return std::nullopt;
  return wideText(path);
}

}  // namespace rubrica::platform
