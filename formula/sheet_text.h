// The sheet part of references: names with and without apostrophes. Used by the compiler, and by books to give the
// printer its sheet parts. Free functions without state.
#pragma once

#include <string>
#include <string_view>

namespace rubrica::formula {

// True for names that can't stand as they are: empty, beginning with a digit, holding anything but letters, digits, "_"
// and ".", or to be taken for a cell address or a boolean.
bool sheetNameNeedsQuotes(std::u16string_view name);

// The name between apostrophes, those inside it doubled, when it needs that.
std::u16string quotedSheetName(std::u16string_view name);

// "First:Last", or one name when both are the same sheet. Each name is quoted for itself.
std::u16string sheetPartText(std::u16string_view first, std::u16string_view last);

// The reverse of quotedSheetName; text without apostrophes around it is answered as it is.
std::u16string unquotedSheetName(std::u16string_view text);

}  // namespace rubrica::formula
