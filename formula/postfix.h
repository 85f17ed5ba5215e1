// The postfix text between formula text and token bytes: items separated by single blanks, operands before their
// operators, as in "1 2 3 * +" or "A1 B1 SUM2F". The compiler writes and reads it, the printer too; owns nothing.
//
//   uMinus uPlus uPercent   unary signs and percent ("%" is read as well)
//   + - * / ^ & = <> < > <= >=
//   (                       parentheses around the value before it
//   SUM2F                   a call with its argument count; "?2F" when the function isn't known
//   MISS                    a missing argument, from files only
//   ptgRange                the range operator
//   TRUE FALSE 12 1.5 "a ""b""" #REF!
//   A1 $A$1:B2 Sheet1!A1R   references, with a final "R" when of reference class
//   NOMEM ERR ?             printed for tokens without a text of their own
//   anything else           a defined name
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "formula/function_table.h"

namespace rubrica::formula {

namespace postfix {

inline constexpr std::u16string_view kUnaryMinus = u"uMinus";
inline constexpr std::u16string_view kUnaryPlus = u"uPlus";
inline constexpr std::u16string_view kPercent = u"uPercent";
inline constexpr std::u16string_view kParentheses = u"(";
inline constexpr std::u16string_view kRange = u"ptgRange";
inline constexpr std::u16string_view kTrue = u"TRUE";
inline constexpr std::u16string_view kFalse = u"FALSE";
inline constexpr char16_t kFunctionEnd = u'F';
inline constexpr char16_t kReferenceMark = u'R';

}  // namespace postfix

// The items one by one. Blanks between double quotes or apostrophes don't separate.
class PostfixItems {
 public:
  explicit PostfixItems(std::u16string_view text) : _rest(text) {}

  // Sets `item` to the next one, a part of the text, or answers false at the end.
  bool next(std::u16string_view& item);

 private:
  std::u16string_view _rest;
};

// The token of a binary operator's text, from PtgAdd to PtgNe; nothing for other text.
std::optional<std::uint8_t> binaryOperatorToken(std::u16string_view text);

// The text of such a token.
std::u16string_view binaryOperatorText(std::uint8_t token);

// Appends "SUM2F" for SUM and 2.
void appendFunctionItem(std::u16string& text, const FunctionRow& function, unsigned count);

struct FunctionItem {
  std::u16string_view name;
  std::uint16_t number = 0;  // kUserDefinedFunction for a name that isn't in the table
  int count = 0;
};

// An item that ends in "F" and holds only digits and "F" behind its name, which ends at the first digit. Table names
// with digits in them, like "LOG10", are kept whole, which costs LOG its calls with 10 arguments, ATAN those with 2.
// Nothing for other items. Throws xlerror "incorrect number of function parameters" when no count can be read, so also
// for any name like "TAXF".
std::optional<FunctionItem> functionItem(std::u16string_view item);

// Whether the items of a function give its name and its argument count back, whatever the count: not so for LOG and
// ATAN.
bool readsBackAsItself(const FunctionRow& function);

}  // namespace rubrica::formula
