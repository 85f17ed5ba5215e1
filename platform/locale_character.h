// One character at a time to and from the encoding of the calling thread's LC_CTYPE locale. Used by locale_text.cpp
// only; the state is the C library's, for encodings with shifts.
#pragma once

#include <cstddef>
#include <cwchar>
#include <string>
#include <string_view>

namespace rubrica::platform {

// Appends the bytes of `point`, which is no surrogate. False, with nothing appended, where the locale lacks it.
bool appendInLocale(char32_t point, std::mbstate_t& state, std::string& out);

struct LocaleCharacter {
  char32_t point = 0;
  std::size_t size = 1;  // bytes taken
  bool isValid = false;
};

// The first character of `text`, which isn't empty.
LocaleCharacter firstInLocale(std::string_view text, std::mbstate_t& state);

}  // namespace rubrica::platform
