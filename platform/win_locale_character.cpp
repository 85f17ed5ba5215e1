#include <locale.h>

#include "platform/locale_character.h"
#include "platform/win_api.h"

namespace rubrica::platform {

namespace {

// The longest character of any locale's page: UTF-8's.
constexpr int kLongestCharacter = 4;

// The page of the calling thread's LC_CTYPE locale; 0 is the "C" locale, whose bytes are the first 256 characters.
UINT localePage() {
  return ___lc_codepage_func();
}

// The code point that `units` wide units spell.
char32_t pointOf(const wchar_t* wide, int units) {
  if (units == 1) return wide[0];
  return 0x10000 + ((static_cast<char32_t>(wide[0]) - 0xD800) << 10) + (static_cast<char32_t>(wide[1]) - 0xDC00);
}

}  // namespace

bool appendInLocale(char32_t point, std::mbstate_t& /*state*/, std::string& out) {
  const UINT page = localePage();
  if (page == 0) {
    if (point > 0xFF) return false;
    out.push_back(static_cast<char>(point));
    return true;
  }
  wchar_t wide[2] = {static_cast<wchar_t>(point), 0};
  int units = 1;
  if (point > 0xFFFF) {
    wide[0] = static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10));
    wide[1] = static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
    units = 2;
  }
  char bytes[kLongestCharacter];
  // UTF-8 holds everything, and the call refuses to be asked whether it does.
  const bool isUtf8 = page == CP_UTF8;
  BOOL replaced = FALSE;
  const int size = ::WideCharToMultiByte(page, isUtf8 ? 0 : WC_NO_BEST_FIT_CHARS, wide, units, bytes, sizeof bytes,
                                         nullptr, isUtf8 ? nullptr : &replaced);
  if (size <= 0 || replaced != FALSE) return false;
  out.append(bytes, static_cast<std::size_t>(size));
  return true;
}

LocaleCharacter firstInLocale(std::string_view text, std::mbstate_t& /*state*/) {
  const UINT page = localePage();
  const auto first = static_cast<unsigned char>(text.front());
  if (page == 0) return {first, 1, true};
  if (first == 0) return {0, 1, true};
  const std::size_t longest = std::min<std::size_t>(kLongestCharacter, text.size());
  for (std::size_t size = ::IsDBCSLeadByteEx(page, first) != 0 ? 2 : 1; size <= longest; ++size) {
    wchar_t wide[2] = {};
    const int units = ::MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, text.data(), static_cast<int>(size), wide, 2);
    if (units > 0) return {pointOf(wide, units), size, true};
  }
  return {};
}

}  // namespace rubrica::platform
