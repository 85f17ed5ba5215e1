#include "platform/character_locale_lock.h"
#include "platform/locale_character.h"
#include "platform/text.h"

namespace rubrica::platform {

namespace {

constexpr char32_t kFirstSurrogate = 0xD800;
constexpr char32_t kLastSurrogate = 0xDFFF;
constexpr char32_t kFirstPair = 0x10000;
constexpr char32_t kLastPoint = 0x10FFFF;

bool isSurrogate(char32_t point) {
  return point >= kFirstSurrogate && point <= kLastSurrogate;
}

// The code point at `index`, which moves past it. A lone surrogate comes out as it is; no locale can hold it.
char32_t nextPoint(std::u16string_view text, std::size_t& index) {
  const char32_t lead = text[index++];
  if (lead < 0xD800 || lead > 0xDBFF || index == text.size()) return lead;
  const char32_t trail = text[index];
  if (trail < 0xDC00 || trail > 0xDFFF) return lead;
  ++index;
  return kFirstPair + ((lead - 0xD800) << 10) + (trail - 0xDC00);
}

void appendPoint(std::u16string& out, char32_t point) {
  if (point < kFirstPair) {
    out.push_back(static_cast<char16_t>(point));
    return;
  }
  out.push_back(static_cast<char16_t>(0xD800 + ((point - kFirstPair) >> 10)));
  out.push_back(static_cast<char16_t>(0xDC00 + ((point - kFirstPair) & 0x3FF)));
}

}  // namespace

std::string localeFromUtf16(std::u16string_view text, bool& lost) {
  lost = false;
  std::string out;
  out.reserve(text.size());
  std::mbstate_t state{};
  const CharacterLocaleLock lock(LocaleUse::read);
  for (std::size_t i = 0; i < text.size();) {
    const char32_t point = nextPoint(text, i);
    if (isSurrogate(point) || !appendInLocale(point, state, out)) {
      lost = true;
      out.push_back('?');
    }
  }
  return out;
}

std::u16string utf16FromLocale(std::string_view text, bool& lost) {
  lost = false;
  std::u16string out;
  out.reserve(text.size());
  std::mbstate_t state{};
  const CharacterLocaleLock lock(LocaleUse::read);
  while (!text.empty()) {
    const LocaleCharacter next = firstInLocale(text, state);
    const bool isText = next.isValid && !isSurrogate(next.point) && next.point <= kLastPoint;
    if (!isText) lost = true;
    appendPoint(out, isText ? next.point : U'?');
    text.remove_prefix(next.size);
  }
  return out;
}

}  // namespace rubrica::platform
