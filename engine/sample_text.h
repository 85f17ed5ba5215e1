// Sample text of a number: characters that take about the room which the number takes in its format. Only ever
// measured, to fit a column to its cells; nothing is shown by it.
#pragma once

#include <string>
#include <string_view>

namespace rubrica {

// The sample of a value under a number format id. `customText` is the text of the format where the id has no sample of
// its own (23 to 36 and above 49); without a text the sample is that of the general format.
std::u16string sampleText(double value, int numFormat, std::u16string_view customText);

// The sample under a format text alone.
std::u16string customSample(double value, std::u16string_view formatText);

// How samples print numbers, as the C functions of the same formats do and without regard to any locale.
std::u16string generalDigits(double value);                   // %.10g
std::u16string wholeDigits(double value);                     // %lld of the value cut to an integer
std::u16string fixedDigits(double value, int decimals);       // %.<decimals>f
std::u16string scientificDigits(double value, int decimals);  // %.<decimals>E

}  // namespace rubrica
