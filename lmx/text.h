// Single characters of XML text: classes of bytes and the UTF-8 form of code points.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "lmx/name_key.h"

namespace rubrica::lmx {

// The white space of XML.
constexpr bool is_space(int c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
constexpr bool is_digit(int c) {
  return c >= '0' && c <= '9';
}
constexpr bool is_letter(int c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// Names are taken generously: every byte of a character beyond ASCII may stand in one.
constexpr bool is_name_start(int c) {
  return is_letter(c) || c == '_' || c == ':' || c > 127;
}
constexpr bool is_name_char(int c) {
  return is_name_start(c) || is_digit(c) || c == '.' || c == '-';
}

constexpr bool is_high_surrogate(std::uint32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool is_low_surrogate(std::uint32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr std::uint32_t join_surrogates(std::uint32_t high, std::uint32_t low) {
  return (((high & 0x3FFU) + 64U) << 10U) + (low & 0x3FFU);
}

// Writes the UTF-8 form of a code point (surrogates are not looked at: they become three bytes) and gives its length.
int encode_utf8(std::uint32_t code_point, char out[4]);
void append_utf8(std::string& out, std::uint32_t code_point);

// UTF-8 of wide text. It ends, without a word, before a high surrogate that no low one follows; a lone low surrogate
// becomes three bytes. This is how every wide value is written.
std::string utf8_from_wide(std::u16string_view text);

// The length of the well-formed UTF-8 sequence at `p`, 0 when there is none before `end`.
int utf8_sequence_length(const char* p, const char* end);

// Behind the character beyond ASCII at `p`; null when it is malformed or counts as a line end (U+0085, U+2028), which
// readers turn into LF.
const char* pass_beyond_ascii(const char* p, const char* end);

}  // namespace rubrica::lmx
