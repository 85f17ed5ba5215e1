// Numbers as the text of a cell's value, in no locale. Free functions without state.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace rubrica {

// Long enough for every double.
using NumberBuffer = std::array<char, 32>;

// The text that "%.17g" gives: 17 significant digits without trailing zeros, which read back as the same number.
std::string_view numberText(double value, NumberBuffer& buffer);

// The number that a text is from end to end; nothing for any other text. "inf" and "nan" are numbers too, as numberText
// writes them. Beyond the range of double it is an infinity or 0.
std::optional<double> parseNumber(std::string_view text);

}  // namespace rubrica
