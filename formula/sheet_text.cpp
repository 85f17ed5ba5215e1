#include "formula/sheet_text.h"

#include <algorithm>

#include "formula/characters.h"

namespace rubrica::formula {
namespace {

constexpr char16_t apostrophe = u'\'';

// Behind `letter` in either case and digits, or where it was when the letter isn't there.
std::u16string_view skipPart(std::u16string_view text, char16_t letter) {
  if (text.empty() || upperCase(text[0]) != letter) return text;
  const auto end = std::find_if_not(text.begin() + 1, text.end(), isDigit);
  return text.substr(static_cast<std::size_t>(end - text.begin()));
}

// An address in either notation, up to the columns of the largest sheets: "AB12", "R1C1", "RC", "C".
bool looksLikeAddress(std::u16string_view name) {
  constexpr std::ptrdiff_t longestColumn = 3;
  const auto lettersEnd = std::find_if_not(name.begin(), name.end(), isAsciiLetter);
  const std::ptrdiff_t letters = lettersEnd - name.begin();
  const bool hasBoth = letters > 0 && letters <= longestColumn && lettersEnd != name.end();
  if (hasBoth && std::all_of(lettersEnd, name.end(), isDigit)) return true;
  return skipPart(skipPart(name, u'R'), u'C').empty();
}

}  // namespace

bool sheetNameNeedsQuotes(std::u16string_view name) {
  const auto isPlain = [](char16_t c) { return isLetter(c) || isDigit(c) || c == u'_' || c == u'.'; };
  return name.empty() || isDigit(name[0]) || !std::all_of(name.begin(), name.end(), isPlain) || name == u"TRUE" ||
         name == u"FALSE" || looksLikeAddress(name);
}

std::u16string quotedSheetName(std::u16string_view name) {
  if (!sheetNameNeedsQuotes(name)) return std::u16string(name);
  std::u16string quoted(1, apostrophe);
  for (const char16_t c : name) {
    if (c == apostrophe) quoted += apostrophe;
    quoted += c;
  }
  quoted += apostrophe;
  return quoted;
}

std::u16string sheetPartText(std::u16string_view first, std::u16string_view last) {
  std::u16string text = quotedSheetName(first);
  if (first != last) text.append(1, u':').append(quotedSheetName(last));
  return text;
}

std::u16string unquotedSheetName(std::u16string_view text) {
  if (text.size() < 2 || text.front() != apostrophe || text.back() != apostrophe) return std::u16string(text);
  std::u16string name;
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    name += text[i];
    if (text[i] == apostrophe && i + 2 < text.size() && text[i + 1] == apostrophe) ++i;
  }
  return name;
}

}  // namespace rubrica::formula
