// The process has one LC_CTYPE locale, which books on several threads read and set: reading goes on side by side,
// setting alone. Used by the conversions and by the calls that set the locale.
#pragma once

namespace rubrica::platform {

enum class LocaleUse { read, change };

// Holds the locale for the given use while it lives. Not to be nested in one thread.
class CharacterLocaleLock {
 public:
  explicit CharacterLocaleLock(LocaleUse use);
  ~CharacterLocaleLock();
  CharacterLocaleLock(const CharacterLocaleLock&) = delete;
  CharacterLocaleLock& operator=(const CharacterLocaleLock&) = delete;

 private:
  [[maybe_unused]] LocaleUse _use;  // one system's lock knows by itself how it is held
};

}  // namespace rubrica::platform
