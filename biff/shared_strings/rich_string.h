// XLUnicodeRichExtendedString: one entry of the shared string table, with the formatting runs and phonetic data that a
// file may bring and that are carried unchanged. Texts, runs and phonetic blocks belong to the book's pool.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "biff/record_pool.h"
#include "biff/unicode_string.h"

namespace rubrica {

// A run of characters that starts at `firstChar` and has the font of index `font`.
struct FormatRun {
  std::uint16_t firstChar = 0;
  std::uint16_t font = 0;
};

struct ExtStringFormat final : BaseClass {
  std::vector<FormatRun> runs;
  std::span<const std::byte> phonetic;  // the ExtRst block
};

struct XLUnicodeRichExtendedString {
  const char16_t* text = u"";  // zero-terminated
  const ExtStringFormat* ext = nullptr;
  std::uint32_t hash = 0;  // of the text, once the table has looked at the entry
  std::uint16_t cch = 0;
  std::uint8_t flags = 0;  // of text_flags

  std::u16string_view view() const { return {text, cch}; }
  bool fHighByte() const { return (flags & text_flags::kHighByte) != 0; }
  bool fExtSt() const { return (flags & text_flags::kExtSt) != 0; }
  bool fRichSt() const { return (flags & text_flags::kRichSt) != 0; }
  bool isPlain() const { return !fExtSt() && !fRichSt(); }
};
static_assert(sizeof(XLUnicodeRichExtendedString) <= 24);

}  // namespace rubrica
