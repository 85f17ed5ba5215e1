#include <clocale>
#include <locale.h>

#include "platform/numeric_locale.h"

namespace rubrica::platform {

namespace {

// What the thread had: how its locale is kept, and the name of its LC_NUMERIC.
struct ThreadLocale {
  int mode;
  std::string numeric;
};

}  // namespace

NumericLocaleGuard::NumericLocaleGuard() : _previous(nullptr), _own(nullptr) {
  const int mode = _configthreadlocale(_ENABLE_PER_THREAD_LOCALE);
  if (mode == -1) return;  // without a locale of the thread's own, a change would reach every thread
  const char* numeric = std::setlocale(LC_NUMERIC, nullptr);
  _previous = new ThreadLocale{mode, numeric == nullptr ? "C" : numeric};
  std::setlocale(LC_NUMERIC, "C");
}

NumericLocaleGuard::~NumericLocaleGuard() {
  const auto* previous = static_cast<ThreadLocale*>(_previous);
  if (previous == nullptr) return;
  std::setlocale(LC_NUMERIC, previous->numeric.c_str());
  _configthreadlocale(previous->mode);
  delete previous;
}

}  // namespace rubrica::platform
