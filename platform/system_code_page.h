// Code pages as the system knows them. Used by code_page.cpp only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace rubrica::platform {

// What stands for a byte that has no meaning in its page.
inline constexpr char16_t kNoCharacter = 0xFFFD;

// `bytes` by the system's table for `page`, or nothing where it has none.
std::optional<std::u16string> utf16BySystem(std::uint16_t page, std::string_view bytes);

}  // namespace rubrica::platform
