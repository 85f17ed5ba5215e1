#include <clocale>
#include <locale.h>

#include "platform/numeric_locale.h"
#include "platform/win_api.h"

namespace rubrica::platform {

namespace {

// The C library's call of this name: whether the thread has a locale of its own. -1 where that can't be had.
int configureThreadLocale(int mode) {
#ifdef _UCRT
  return _configthreadlocale(mode);
#else
  // mingw-w64's import library for msvcrt.dll has a stand-in that always fails; the DLL itself has the real one.
  const HMODULE library = ::GetModuleHandleW(L"msvcrt.dll");
  if (library == nullptr) return -1;
  const FARPROC call = ::GetProcAddress(library, "_configthreadlocale");
  if (call == nullptr) return -1;
  return reinterpret_cast<int(__cdecl*)(int)>(reinterpret_cast<void*>(call))(mode);
#endif
}

// What the thread had: how its locale is kept, and the name of its LC_NUMERIC.
struct ThreadLocale {
  int mode;
  std::string numeric;
};

}  // namespace

NumericLocaleGuard::NumericLocaleGuard() {
  const int mode = configureThreadLocale(_ENABLE_PER_THREAD_LOCALE);
  if (mode == -1) return;  // without a locale of the thread's own, a change would reach every thread
  const char* numeric = std::setlocale(LC_NUMERIC, nullptr);
  _previous = new ThreadLocale{mode, numeric == nullptr ? "C" : numeric};
  std::setlocale(LC_NUMERIC, "C");
}

NumericLocaleGuard::~NumericLocaleGuard() {
  const auto* previous = static_cast<ThreadLocale*>(_previous);
  if (previous == nullptr) return;
  std::setlocale(LC_NUMERIC, previous->numeric.c_str());
  configureThreadLocale(previous->mode);
  delete previous;
}

}  // namespace rubrica::platform
