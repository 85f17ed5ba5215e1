// The character that separates list items in a locale's formulas, found from the locale's name.
#pragma once

#include <string_view>

namespace rubrica {

// ';' for an empty name and for every name that holds one of the words or tags of countries that write semicolons
// ("Germany", "_DE."), ',' for all others.
char listSeparatorOf(std::string_view localeName);

}  // namespace rubrica
