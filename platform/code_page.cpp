#include <algorithm>

#include "platform/system_code_page.h"
#include "platform/text.h"

namespace rubrica::platform {

namespace {

// Text of this page has two bytes a character in the file; its one-byte form holds the low bytes alone.
constexpr std::uint16_t kUtf16Page = 1200;

constexpr std::uint16_t kMacRoman = 10000;
constexpr std::uint16_t kWindowsLatin = 1252;

// The numbers that the CodePage record has for these two besides their own.
std::uint16_t withoutAlias(std::uint16_t page) {
  if (page == 32768) return kMacRoman;
  return page == 32769 ? kWindowsLatin : page;
}

std::u16string utf16FromLatin1(std::string_view bytes) {
  std::u16string out(bytes.size(), u'\0');
  std::transform(bytes.begin(), bytes.end(), out.begin(),
                 [](char c) { return static_cast<char16_t>(static_cast<unsigned char>(c)); });
  return out;
}

}  // namespace

std::u16string utf16FromCodePage(std::uint16_t codePage, std::string_view bytes) {
  if (codePage == kUtf16Page) return utf16FromLatin1(bytes);
  std::optional<std::u16string> text = utf16BySystem(withoutAlias(codePage), bytes);
  return text ? std::move(*text) : utf16FromLatin1(bytes);
}

}  // namespace rubrica::platform
