#include "lmx/text.h"

#include <cstddef>

namespace rubrica::lmx {

int encode_utf8(std::uint32_t code_point, char out[4]) {
  const auto tail = [code_point](unsigned shift) { return static_cast<char>(0x80U | (code_point >> shift & 0x3FU)); };
  if (code_point < 0x80) {
    out[0] = static_cast<char>(code_point);
    return 1;
  }
  if (code_point < 0x800) {
    out[0] = static_cast<char>(0xC0U | code_point >> 6U);
    out[1] = tail(0);
    return 2;
  }
  if (code_point < 0x10000) {
    out[0] = static_cast<char>(0xE0U | code_point >> 12U);
    out[1] = tail(6);
    out[2] = tail(0);
    return 3;
  }
  out[0] = static_cast<char>(0xF0U | code_point >> 18U);
  out[1] = tail(12);
  out[2] = tail(6);
  out[3] = tail(0);
  return 4;
}

void append_utf8(std::string& out, std::uint32_t code_point) {
  char bytes[4];
  out.append(bytes, static_cast<std::size_t>(encode_utf8(code_point, bytes)));
}

std::string utf8_from_wide(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::uint32_t code_point = text[i];
    if (is_high_surrogate(code_point)) {
      if (i + 1 == text.size() || !is_low_surrogate(text[i + 1])) break;
      code_point = join_surrogates(code_point, text[++i]);
    }
    append_utf8(out, code_point);
  }
  return out;
}

int utf8_sequence_length(const char* p, const char* end) {
  const auto byte = [p](int i) { return static_cast<unsigned char>(p[i]); };
  if (p == end) return 0;
  const unsigned lead = byte(0);
  if (lead < 0x80) return 1;
  const int length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  if (length == 0 || end - p < length) return 0;
  const unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (byte(1) < low || byte(1) > high) return 0;
  for (int i = 2; i < length; ++i) {
    if (byte(i) < 0x80 || byte(i) > 0xBF) return 0;
  }
  return length;
}

const char* pass_beyond_ascii(const char* p, const char* end) {
  const int length = utf8_sequence_length(p, end);
  if (length < 2) return nullptr;
  const std::string_view character(p, static_cast<std::size_t>(length));
  return character == "\xC2\x85" || character == "\xE2\x80\xA8" ? nullptr : p + length;
}

}  // namespace rubrica::lmx
