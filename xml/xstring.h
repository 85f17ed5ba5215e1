// Text as it stands in the parts of a workbook (ST_Xstring): UTF-8 in which a character that XML can't hold, or would
// not give back, is written "_xHHHH_" by its UTF-16 unit. A carriage return is one of them; an underscore that would
// begin such a form by accident is "_x005F_". Free functions without state.
#pragma once

#include <string>
#include <string_view>

namespace rubrica {

// Characters, which are UTF-16 units, that a cell's text may have.
inline constexpr std::size_t kMaxCellText = 32767;

// Replaces `out`. A surrogate without its other half becomes U+FFFD.
void toXstring(std::u16string_view text, std::string& out);
std::string toXstring(std::u16string_view text);

void fromXstring(std::string_view stored, std::u16string& out);
std::u16string fromXstring(std::string_view stored);

// The view of a zero-terminated text; null is the empty text.
inline std::u16string_view viewOf(const char16_t* text) {
  return text == nullptr ? std::u16string_view() : std::u16string_view(text);
}

}  // namespace rubrica
