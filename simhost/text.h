// Text as the substitute host holds it: UTF-32, so that len(), mid() and pos() count characters. Scripts, files and
// the terminal are UTF-8. Used by every other file of this folder; owns nothing.
#pragma once

#include <string>
#include <string_view>

namespace rubrica::simhost {

using Text = std::u32string;
using TextView = std::u32string_view;

// Malformed UTF-8 becomes U+FFFD, one for each byte that can't start or continue a sequence.
Text textFromUtf8(std::string_view bytes);

// Code points outside Unicode and lone surrogates become U+FFFD.
std::string utf8FromText(TextView text);

// Upper and lower case of ASCII, Latin-1, Latin Extended-A, Greek and Cyrillic letters; others stay.
char32_t upperCase(char32_t c);
char32_t lowerCase(char32_t c);
Text upperCase(TextView text);
Text lowerCase(TextView text);

// Names of variables, methods and functions are compared without regard to the case of ASCII letters.
bool sameName(std::string_view a, std::string_view b);
std::string nameKey(std::string_view name);

bool isSpace(char32_t c);
TextView trimmed(TextView text);

}  // namespace rubrica::simhost
