// The test that tells date and time formats from all others, which both file forms share: a date is a number in such a
// format. Free functions without state.
#pragma once

namespace rubrica {

// Whether the text shows a date or a time: it has a letter of m d y h s outside brackets and quotes. Null is none.
bool isDateFormatText(const char16_t* text);

// What the id alone tells. Custom formats, and 23 to 36, go by their text.
enum class DateRule { date, noDate, byText };
DateRule dateRuleOf(int numFormat);

}  // namespace rubrica
