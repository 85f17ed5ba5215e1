// The C library's locale, as far as the engine touches it.
#pragma once

#include <string>

namespace rubrica::platform {

// Sets LC_NUMERIC to "C" for the calling thread alone while it lives, and gives the thread its locale back after.
class NumericLocaleGuard {
 public:
  NumericLocaleGuard();
  ~NumericLocaleGuard();
  NumericLocaleGuard(const NumericLocaleGuard&) = delete;
  NumericLocaleGuard& operator=(const NumericLocaleGuard&) = delete;

 private:
  void* _previous = nullptr;
  void* _own = nullptr;
};

// The name of the process's LC_CTYPE locale, and the attempt to set it: the resulting name, empty on failure. Calls
// from several threads come one after the other, and never while a text is being converted.
std::string currentCharacterLocale();
std::string setCharacterLocale(const char* name);

}  // namespace rubrica::platform
