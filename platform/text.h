// Conversion between the engine's wide text (UTF-16 units) and narrow forms: UTF-8, the C library's locale encoding,
// and the code pages of old workbooks.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace rubrica::platform {

// Strict conversions. Malformed input throws a std::exception whose what() is "Invalid UTF-16", "Invalid UTF-8",
// "Invalid code point" or "Not enough space".
std::string utf8FromUtf16(std::u16string_view text);
std::u16string utf16FromUtf8(std::string_view text);

// The same without failure: every malformed sequence becomes U+FFFD.
std::string utf8FromUtf16Lossy(std::u16string_view text);
std::u16string utf16FromUtf8Lossy(std::string_view text);

// To and from the multibyte encoding of the calling thread's LC_CTYPE locale. What it can't hold becomes '?' and sets
// `lost`; otherwise `lost` becomes false.
std::string localeFromUtf16(std::u16string_view text, bool& lost);
std::u16string utf16FromLocale(std::string_view text, bool& lost);

// Text of one-byte or double-byte encoding in the code page of a CodePage record (1252, 1251, 932, 10000 for Mac
// Roman, 32768 and 32769 as their aliases; 1200 and unknown pages are read as Latin-1). Never fails: bytes without a
// meaning become U+FFFD.
std::u16string utf16FromCodePage(std::uint16_t codePage, std::string_view bytes);

}  // namespace rubrica::platform
