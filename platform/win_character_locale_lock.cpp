#include "platform/character_locale_lock.h"
#include "platform/win_api.h"

namespace rubrica::platform {

namespace {
SRWLOCK g_lock = SRWLOCK_INIT;
}

CharacterLocaleLock::CharacterLocaleLock(LocaleUse use) : _use(use) {
  use == LocaleUse::read ? ::AcquireSRWLockShared(&g_lock) : ::AcquireSRWLockExclusive(&g_lock);
}

CharacterLocaleLock::~CharacterLocaleLock() {
  _use == LocaleUse::read ? ::ReleaseSRWLockShared(&g_lock) : ::ReleaseSRWLockExclusive(&g_lock);
}

}  // namespace rubrica::platform
