#include <clocale>

#include "platform/character_locale_lock.h"
#include "platform/numeric_locale.h"

namespace rubrica::platform {

std::string currentCharacterLocale() {
  const CharacterLocaleLock lock(LocaleUse::change);  // the answer lives only until the next call
  const char* name = std::setlocale(LC_CTYPE, nullptr);
  return name == nullptr ? std::string() : std::string(name);
}

std::string setCharacterLocale(const char* name) {
  const CharacterLocaleLock lock(LocaleUse::change);
  const char* result = std::setlocale(LC_CTYPE, name);
  return result == nullptr ? std::string() : std::string(result);
}

}  // namespace rubrica::platform
