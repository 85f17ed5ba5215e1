// Windows' own declarations, without the names of them that harm ours, and what this folder's Windows files share.
// Used by the Windows files of this folder only.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <windows.h>

namespace rubrica::platform {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "Windows' wide text is UTF-16");

// The same units as Windows' calls take them, and back.
inline std::wstring wideText(std::u16string_view text) {
  return {text.begin(), text.end()};
}
inline std::u16string unitsOf(std::wstring_view text) {
  return {text.begin(), text.end()};
}

// `path` as Windows takes it, or nothing where no file can have that name: empty, or with a NUL inside.
std::optional<std::wstring> winPath(std::u16string_view path);

// The most bytes that one read or write is asked for: its count has 32 bits.
inline constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

inline DWORD transferSize(std::size_t wanted) {
  return static_cast<DWORD>(std::min(wanted, kLargestTransfer));
}

}  // namespace rubrica::platform
