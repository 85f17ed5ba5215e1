#include "simhost/text.h"

#include <algorithm>
#include <cstdint>

namespace rubrica::simhost {

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t lastCodePoint = 0x10FFFF;

bool isSurrogate(char32_t c) {
  return c >= 0xD800 && c <= 0xDFFF;
}

char asciiLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

struct Sequence {
  int length;
  char32_t bits;
  char32_t smallest;
};

Sequence sequenceOf(unsigned char lead) {
  if (lead < 0x80) return {1, lead, 0};
  if (lead >= 0xC2 && lead <= 0xDF) return {2, lead & 0x1Fu, 0x80};
  if (lead >= 0xE0 && lead <= 0xEF) return {3, lead & 0x0Fu, 0x800};
  if (lead >= 0xF0 && lead <= 0xF4) return {4, lead & 0x07u, 0x10000};
  return {0, replacement, 0};
}

}  // namespace

Text textFromUtf8(std::string_view bytes) {
  Text text;
  text.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size();) {
    const Sequence sequence = sequenceOf(static_cast<unsigned char>(bytes[i]));
    char32_t c = sequence.bits;
    int taken = 1;
    while (taken < sequence.length && i + static_cast<std::size_t>(taken) < bytes.size()) {
      const auto next = static_cast<unsigned char>(bytes[i + static_cast<std::size_t>(taken)]);
      if ((next & 0xC0u) != 0x80u) break;
      c = (c << 6u) | (next & 0x3Fu);
      ++taken;
    }
    const bool whole = sequence.length > 0 && taken == sequence.length;
    if (!whole || c < sequence.smallest || c > lastCodePoint || isSurrogate(c)) {
      c = replacement;
      taken = 1;
    }
    text.push_back(c);
    i += static_cast<std::size_t>(taken);
  }
  return text;
}

std::string utf8FromText(TextView text) {
  std::string bytes;
  bytes.reserve(text.size());
  const auto put = [&bytes](char32_t byte) { bytes.push_back(static_cast<char>(byte)); };
  for (char32_t c : text) {
    if (c > lastCodePoint || isSurrogate(c)) c = replacement;
    if (c < 0x80) {
      put(c);
    } else if (c < 0x800) {
      put(0xC0 | (c >> 6u));
      put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      put(0xE0 | (c >> 12u));
      put(0x80 | ((c >> 6u) & 0x3F));
      put(0x80 | (c & 0x3F));
    } else {
      put(0xF0 | (c >> 18u));
      put(0x80 | ((c >> 12u) & 0x3F));
      put(0x80 | ((c >> 6u) & 0x3F));
      put(0x80 | (c & 0x3F));
    }
  }
  return bytes;
}

char32_t lowerCase(char32_t c) {
  if (c < 0x80) return c >= U'A' && c <= U'Z' ? c + 32 : c;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
  if ((c >= 0x100 && c <= 0x12F) || (c >= 0x132 && c <= 0x137) || (c >= 0x14A && c <= 0x177)) return c | 1u;
  if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) return c + (c & 1u);
  if (c == 0x178) return 0xFF;
  if (c >= 0x391 && c <= 0x3A9 && c != 0x3A2) return c + 32;
  if (c >= 0x410 && c <= 0x42F) return c + 32;
  if (c >= 0x400 && c <= 0x40F) return c + 80;
  return c;
}

char32_t upperCase(char32_t c) {
  if (c < 0x80) return c >= U'a' && c <= U'z' ? c - 32 : c;
  if (c == 0xFF) return 0x178;
  const char32_t candidates[] = {c - 80, c - 32, c - 1};
  for (const char32_t candidate : candidates) {
    if (candidate < c && candidate != c && lowerCase(candidate) == c) return candidate;
  }
  return c;
}

Text upperCase(TextView text) {
  Text result(text);
  for (char32_t& c : result) c = upperCase(c);
  return result;
}

Text lowerCase(TextView text) {
  Text result(text);
  for (char32_t& c : result) c = lowerCase(c);
  return result;
}

bool sameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return asciiLower(x) == asciiLower(y); });
}

std::string nameKey(std::string_view name) {
  std::string key(name);
  for (char& c : key) c = asciiLower(c);
  return key;
}

bool isSpace(char32_t c) {
  return c == U' ' || c == U'\t' || c == U'\r' || c == U'\n' || c == 0xA0;
}

TextView trimmed(TextView text) {
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace rubrica::simhost
