// Text of the host (UTF-32), of the engine (UTF-16) and of messages (UTF-8), turned into one another. Nothing fails:
// what is no valid text becomes U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace rubrica::host {

std::u16string utf16FromUtf32(std::u32string_view text);
std::u32string utf32FromUtf16(std::u16string_view text);
// Into a buffer with room for as many characters as the text has units; answers how many it took.
std::size_t utf32FromUtf16(std::u16string_view text, char32_t* buffer);
std::string utf8FromUtf32(std::u32string_view text);
std::u32string utf32FromUtf8(std::string_view text);
std::string utf8FromUtf16(std::u16string_view text);

// The fast way for texts whose characters are the same numbers in UTF-16 and UTF-32, as nearly always: copies the text
// into a buffer of its size. False for others, such as those with a surrogate; the buffer then holds nothing of use.
bool copyPlain(std::u16string_view text, char32_t* buffer);
bool copyPlain(std::u32string_view text, char16_t* buffer);

// A text that the engine handed out: null counts as empty.
inline std::u16string_view orEmpty(const char16_t* text) {
  return text != nullptr ? text : u"";
}

}  // namespace rubrica::host
