// NOLINTNEXTLINE(modernize-deprecated-headers): the locales of threads are POSIX, not C++
#include <locale.h>

#include "platform/numeric_locale.h"

namespace rubrica::platform {

NumericLocaleGuard::NumericLocaleGuard() {
  // The copy keeps every other category as the thread has it; newlocale takes the copy over.
  const locale_t base = duplocale(uselocale(nullptr));
  if (base == nullptr) return;
  const locale_t own = newlocale(LC_NUMERIC_MASK, "C", base);
  if (own == nullptr) {
    freelocale(base);
    return;
  }
  _own = own;
  _previous = uselocale(own);
}

NumericLocaleGuard::~NumericLocaleGuard() {
  if (_own == nullptr) return;
  uselocale(static_cast<locale_t>(_previous));
  freelocale(static_cast<locale_t>(_own));
}

}  // namespace rubrica::platform
