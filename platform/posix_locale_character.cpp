#include <climits>

#include "platform/locale_character.h"

namespace rubrica::platform {

static_assert(sizeof(wchar_t) == 4, "these conversions take one wchar_t for one code point");

bool appendInLocale(char32_t point, std::mbstate_t& state, std::string& out) {
  char bytes[MB_LEN_MAX];
  const std::mbstate_t before = state;
  const std::size_t size = std::wcrtomb(bytes, static_cast<wchar_t>(point), &state);
  if (size == static_cast<std::size_t>(-1)) {
    state = before;
    return false;
  }
  out.append(bytes, size);
  return true;
}

LocaleCharacter firstInLocale(std::string_view text, std::mbstate_t& state) {
  constexpr auto kMalformed = static_cast<std::size_t>(-1);
  constexpr auto kIncomplete = static_cast<std::size_t>(-2);
  wchar_t wide = 0;
  const std::size_t size = std::mbrtowc(&wide, text.data(), text.size(), &state);
  if (size == kMalformed || size == kIncomplete) {
    state = std::mbstate_t{};
    return {0, size == kIncomplete ? text.size() : 1, false};
  }
  // A size of 0 is a NUL inside the text.
  return {static_cast<char32_t>(wide), size == 0 ? 1 : size, true};
}

}  // namespace rubrica::platform
