#include <climits>
#include <cwchar>

#include "platform/text.h"

namespace rubrica::platform {

namespace {

static_assert(sizeof(wchar_t) == 4, "these conversions take one wchar_t for one code point");

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
  char bytes[MB_LEN_MAX];
  for (std::size_t i = 0; i < text.size();) {
    const char32_t point = nextPoint(text, i);
    const std::mbstate_t before = state;
    const std::size_t size =
        isSurrogate(point) ? static_cast<std::size_t>(-1) : std::wcrtomb(bytes, static_cast<wchar_t>(point), &state);
    if (size == static_cast<std::size_t>(-1)) {
      state = before;
      lost = true;
      out.push_back('?');
    } else {
      out.append(bytes, size);
    }
  }
  return out;
}

std::u16string utf16FromLocale(std::string_view text, bool& lost) {
  constexpr auto kMalformed = static_cast<std::size_t>(-1);
  constexpr auto kIncomplete = static_cast<std::size_t>(-2);
  lost = false;
  std::u16string out;
  out.reserve(text.size());
  std::mbstate_t state{};
  while (!text.empty()) {
    wchar_t wide = 0;
    std::size_t size = std::mbrtowc(&wide, text.data(), text.size(), &state);
    auto point = static_cast<char32_t>(wide);
    if (size == kMalformed || size == kIncomplete) {
      size = size == kIncomplete ? text.size() : 1;
      state = std::mbstate_t{};
      point = kFirstSurrogate;
    } else if (size == 0) {
      size = 1;  // a NUL inside the text
    }
    if (isSurrogate(point) || point > kLastPoint) {
      lost = true;
      point = U'?';
    }
    appendPoint(out, point);
    text.remove_prefix(size);
  }
  return out;
}

}  // namespace rubrica::platform
