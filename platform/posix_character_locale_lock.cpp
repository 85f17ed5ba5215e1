#include <pthread.h>

#include "platform/character_locale_lock.h"

namespace rubrica::platform {

namespace {
pthread_rwlock_t g_lock = PTHREAD_RWLOCK_INITIALIZER;
}

CharacterLocaleLock::CharacterLocaleLock(LocaleUse use) : _use(use) {
  use == LocaleUse::read ? ::pthread_rwlock_rdlock(&g_lock) : ::pthread_rwlock_wrlock(&g_lock);
}

CharacterLocaleLock::~CharacterLocaleLock() {
  ::pthread_rwlock_unlock(&g_lock);
}

}  // namespace rubrica::platform
