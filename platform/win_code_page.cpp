#include "platform/system_code_page.h"
#include "platform/win_api.h"

namespace rubrica::platform {

namespace {

constexpr UINT kAscii = 367;  // Windows' own ASCII page strips the high bit of what isn't ASCII
// Below the first real page stand names for the current settings (CP_ACP and its like), CP_SYMBOL aside.
constexpr UINT kFirstPage = 37;
constexpr UINT kThai = 874;
constexpr UINT kFirstWindowsPage = 1250;
constexpr UINT kLastWindowsPage = 1258;
// The longest character of any page, GB 18030's.
constexpr int kLongestCharacter = 4;

bool isKnown(UINT page) {
  return page >= kFirstPage && page != CP_SYMBOL && ::IsValidCodePage(page) != 0;
}

// The text of `bytes`; nothing where a byte in it has no meaning.
std::optional<std::wstring> converted(UINT page, DWORD flags, std::string_view bytes) {
  const int size = static_cast<int>(bytes.size());
  const int units = ::MultiByteToWideChar(page, flags, bytes.data(), size, nullptr, 0);
  if (units <= 0) return std::nullopt;
  std::wstring text(static_cast<std::size_t>(units), L'\0');
  if (::MultiByteToWideChar(page, flags, bytes.data(), size, text.data(), units) != units) return std::nullopt;
  return text;
}

// Character by character, so that what has no meaning is replaced alone.
std::wstring convertedPiecemeal(UINT page, std::string_view bytes) {
  std::wstring text;
  while (!bytes.empty()) {
    std::optional<std::wstring> next;
    std::size_t size = ::IsDBCSLeadByteEx(page, static_cast<BYTE>(bytes.front())) != 0 ? 2 : 1;
    for (; !next && size <= std::min<std::size_t>(kLongestCharacter, bytes.size()); ++size) {
      next = converted(page, MB_ERR_INVALID_CHARS, bytes.substr(0, size));
    }
    text += next ? *next : std::wstring(1, kNoCharacter);
    bytes.remove_prefix(next ? size - 1 : 1);
  }
  return text;
}

// Windows fills the holes of its one-byte pages with C1 controls and characters of private use.
bool isHole(wchar_t unit) {
  constexpr wchar_t kFirstControl = 0x80, kLastControl = 0x9F, kFirstPrivate = 0xE000, kLastPrivate = 0xF8FF;
  return (unit >= kFirstControl && unit <= kLastControl) || (unit >= kFirstPrivate && unit <= kLastPrivate);
}

std::wstring wideFromPage(UINT page, std::string_view bytes) {
  std::optional<std::wstring> text = converted(page, MB_ERR_INVALID_CHARS, bytes);
  // Pages with shift states take no flags.
  if (!text && ::GetLastError() == ERROR_INVALID_FLAGS) text = converted(page, 0, bytes);
  if (!text) text = convertedPiecemeal(page, bytes);
  const bool hasHoles = page == kThai || (page >= kFirstWindowsPage && page <= kLastWindowsPage);
  if (hasHoles) std::replace_if(text->begin(), text->end(), isHole, static_cast<wchar_t>(kNoCharacter));
  return *std::move(text);
}

std::u16string utf16FromAscii(std::string_view bytes) {
  std::u16string text(bytes.begin(), bytes.end());
  std::replace_if(
      text.begin(), text.end(), [](char16_t unit) { return unit > 0x7F; }, kNoCharacter);
  return text;
}

}  // namespace

std::optional<std::u16string> utf16BySystem(std::uint16_t page, std::string_view bytes) {
  if (page == kAscii) return utf16FromAscii(bytes);
  if (!isKnown(page)) return std::nullopt;
  if (bytes.empty()) return std::u16string();
  // Its lengths are int; no record's text comes near.
  if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) return std::nullopt;
  return unitsOf(wideFromPage(page, bytes));
}

}  // namespace rubrica::platform
