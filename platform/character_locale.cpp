#include <clocale>

#include "platform/numeric_locale.h"

namespace rubrica::platform {

std::string currentCharacterLocale() {
  const char* name = std::setlocale(LC_CTYPE, nullptr);
  return name == nullptr ? std::string() : std::string(name);
}

std::string setCharacterLocale(const char* name) {
  const char* result = std::setlocale(LC_CTYPE, name);
  return result == nullptr ? std::string() : std::string(result);
}

}  // namespace rubrica::platform
