#include "host/text.h"

#include <cstddef>

namespace rubrica::host {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kFirstSurrogate = 0xD800, kFirstLowSurrogate = 0xDC00, kAfterSurrogates = 0xE000;
constexpr char32_t kFirstSupplementary = 0x10000, kAfterLast = 0x110000;

char32_t valid(char32_t c) {
  const bool isSurrogate = c >= kFirstSurrogate && c < kAfterSurrogates;
  return isSurrogate || c >= kAfterLast ? kReplacement : c;
}

void appendUtf8(std::string& out, char32_t c) {
  const auto push = [&out](char32_t byte) { out.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
  if (c < 0x80) {
    push(c);
  } else if (c < 0x800) {
    push(0xC0 | (c >> 6));
    push(0x80 | (c & 0x3F));
  } else if (c < kFirstSupplementary) {
    push(0xE0 | (c >> 12));
    push(0x80 | ((c >> 6) & 0x3F));
    push(0x80 | (c & 0x3F));
  } else {
    push(0xF0 | (c >> 18));
    push(0x80 | ((c >> 12) & 0x3F));
    push(0x80 | ((c >> 6) & 0x3F));
    push(0x80 | (c & 0x3F));
  }
}

// Length of a UTF-8 sequence by its lead byte, 0 for a byte that leads none.
std::size_t sequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

char32_t decodeUtf8(std::string_view text, std::size_t& at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const std::size_t length = sequenceLength(lead);
  if (length == 0 || length > text.size() - at) {
    ++at;
    return kReplacement;
  }
  constexpr unsigned char kLeadMask[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, kFirstSupplementary};
  char32_t c = lead & kLeadMask[length];
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text[at + i]);
    if ((byte & 0xC0) != 0x80) {
      ++at;
      return kReplacement;
    }
    c = (c << 6) | (byte & 0x3F);
  }
  at += length;
  return c < kLeast[length] ? kReplacement : valid(c);
}

// Eight characters at a time, of which the last eight overlap those before: a loop of a fixed count becomes a few wide
// steps, without a rest that takes as long as the whole.
template <class Unit, class Text>
bool copyPlainTo(Unit* buffer, Text text) {
  constexpr std::size_t kStep = 8;
  constexpr char32_t kLift = kFirstSupplementary - kFirstSurrogate;  // takes a surrogate past 16 bits
  char32_t bits = 0, lifted = 0;
  const auto copyOne = [&](std::size_t at) {
    const char32_t c = text[at];
    bits |= c;
    lifted |= c + kLift;
    buffer[at] = static_cast<Unit>(c);
  };
  const auto copyStep = [&](std::size_t at) {
    for (std::size_t i = 0; i < kStep; ++i) copyOne(at + i);
  };
  if (text.size() < kStep) {
    for (std::size_t i = 0; i < text.size(); ++i) copyOne(i);
  } else {
    for (std::size_t at = 0; at < text.size() - kStep; at += kStep) copyStep(at);
    copyStep(text.size() - kStep);
  }
  return (bits | lifted) < kFirstSupplementary;
}

}  // namespace

bool copyPlain(std::u16string_view text, char32_t* buffer) {
  return copyPlainTo(buffer, text);
}

bool copyPlain(std::u32string_view text, char16_t* buffer) {
  return copyPlainTo(buffer, text);
}

std::u16string utf16FromUtf32(std::u32string_view text) {
  std::u16string out(text.size(), u'\0');
  if (copyPlain(text, out.data())) return out;
  out.clear();
  for (const char32_t given : text) {
    const char32_t c = valid(given);
    if (c < kFirstSupplementary) {
      out.push_back(static_cast<char16_t>(c));
    } else {
      out.push_back(static_cast<char16_t>(kFirstSurrogate + ((c - kFirstSupplementary) >> 10)));
      out.push_back(static_cast<char16_t>(kFirstLowSurrogate + ((c - kFirstSupplementary) & 0x3FF)));
    }
  }
  return out;
}

std::size_t utf32FromUtf16(std::u16string_view text, char32_t* buffer) {
  if (copyPlain(text, buffer)) return text.size();
  char32_t* out = buffer;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char32_t unit = text[i];
    const bool isHigh = unit >= kFirstSurrogate && unit < kFirstLowSurrogate;
    if (isHigh && i + 1 < text.size() && text[i + 1] >= kFirstLowSurrogate && text[i + 1] < kAfterSurrogates) {
      *out++ = kFirstSupplementary + ((unit - kFirstSurrogate) << 10) + (text[++i] - kFirstLowSurrogate);
    } else {
      *out++ = valid(unit);
    }
  }
  return static_cast<std::size_t>(out - buffer);
}

std::u32string utf32FromUtf16(std::u16string_view text) {
  std::u32string out(text.size(), U'\0');
  out.resize(utf32FromUtf16(text, out.data()));
  return out;
}

std::string utf8FromUtf32(std::u32string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char32_t c : text) appendUtf8(out, valid(c));
  return out;
}

std::u32string utf32FromUtf8(std::string_view text) {
  std::u32string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) out.push_back(decodeUtf8(text, at));
  return out;
}

std::string utf8FromUtf16(std::u16string_view text) {
  return utf8FromUtf32(utf32FromUtf16(text));
}

}  // namespace rubrica::host
