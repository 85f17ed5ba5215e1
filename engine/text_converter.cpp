#include "engine/text_converter.h"

#include "engine/list_separator.h"
#include "engine/xlerror.h"
#include "platform/numeric_locale.h"
#include "platform/text.h"

namespace rubrica {

void TextConverter::setWide(std::u16string_view text) {
  _lost = false;
  _narrow = _utf8Mode ? platform::utf8FromUtf16(text) : platform::localeFromUtf16(text, _lost);
  _wide = text;
}

void TextConverter::setNarrow(std::string_view text) {
  _lost = false;
  _wide = _utf8Mode ? platform::utf16FromUtf8(text) : platform::utf16FromLocale(text, _lost);
  _narrow = text;
}

void TextConverter::setLocale(const char* name) {
  if (name == nullptr) throw xlerror("setlocale error (1)");
  const std::string_view text = name;
  if (text == "UTF-8" || text == "UTF-8.semicolon" || text == "UTF-8.comma") {
    _utf8Mode = true;
    _listSeparator = text == "UTF-8.comma" ? ',' : ';';
    return;
  }
  setLibraryLocale(name);
}

void TextConverter::adoptEnvironmentLocale() {
  setLibraryLocale("");
}

void TextConverter::setLibraryLocale(const char* name) {
  _utf8Mode = false;
  _previousLocale = platform::currentCharacterLocale();
  const std::string resulting = platform::setCharacterLocale(name);
  if (resulting.empty()) throw xlerror("setlocale error (2)");
  _listSeparator = listSeparatorOf(resulting);
}

}  // namespace rubrica
