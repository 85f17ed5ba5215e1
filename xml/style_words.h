// The words of the styles part for the engine's enumerations. A word that isn't in the table reads as 0; a value that
// isn't has no word. Free functions over constant tables.
#pragma once

#include <string_view>

#include "engine/enums.h"

namespace rubrica::style_words {

// Empty for a value outside the table.
std::string_view wordOf(AlignH align);
std::string_view wordOf(AlignV align);
std::string_view wordOf(FillPattern pattern);
// "none" for a value outside the table.
std::string_view wordOf(BorderStyle style);

AlignH alignHOf(std::string_view word);
AlignV alignVOf(std::string_view word);
FillPattern fillPatternOf(std::string_view word);
BorderStyle borderStyleOf(std::string_view word);

// Of a font. Values outside the tables are written as "none" and "baseline".
std::string_view wordOf(Underline underline);
std::string_view wordOf(Script script);
Underline underlineOf(std::string_view word);
Script scriptOf(std::string_view word);

}  // namespace rubrica::style_words
