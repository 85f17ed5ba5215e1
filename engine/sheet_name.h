// The rules for names that both file forms share: what a sheet may be called, and when two names are the same. Free
// functions without state.
#pragma once

#include <cstddef>
#include <string_view>

namespace rubrica {

inline constexpr std::size_t kMaxSheetName = 31;  // characters, which are UTF-16 units
inline constexpr char kSheetNameIsCut[] = "warning: sheet's name is cut to 31 characters";

// As much of a name as a sheet can bear. A character of two units isn't cut in two.
std::u16string_view cutSheetName(std::u16string_view name);

// Throws xlerror "sheet name can't be empty" and "sheet name has an invalid character". The length isn't looked at.
void checkSheetName(std::u16string_view name);

// The capital of a Latin-1, Greek or Cyrillic letter, which names of real books hold; any other unit as it is.
char16_t nameCapital(char16_t unit);

// Latin, Greek and Cyrillic letters are the same in either case.
bool sameNameIgnoringCase(std::u16string_view a, std::u16string_view b);

}  // namespace rubrica
