// The printer: token bytes become formula text again, without a leading "=" and without blanks. Takes time in
// proportion to the bytes and doesn't recurse.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "formula/book_access.h"

namespace rubrica::formula {

// The text of a parsed expression, whatever bytes it is made of. `relative` says that the PtgRefN family holds offsets
// from the cell at `row` and `col` (both 0-based), as in a shared formula; without it they print as plain references.
// Only the parts of a reference that are marked relative are offsets.
//
// Operators get no parentheses but those in the tokens. Arguments are parted by ",". Tokens without a text of their own
// print as "?", "ERR", "NOMEM", a missing argument as "MISS". A call of a function that isn't known takes its first
// argument for its name. Numbers are the shortest digits that read back to the same double, in the layout of a stream
// with precision 17: 1e+17 and 1e-05 are the first with an exponent.
//
// Throws xlerror: the messages of tokenLength, functionItem and infixFromPostfix.
std::u16string printFormula(std::span<const std::uint8_t> tokens, const BookAccess& book, bool relative, int row,
                            int col);

// The first step: one item a token, joined with blanks.
std::u16string postfixFromTokens(std::span<const std::uint8_t> tokens, const BookAccess& book, bool relative, int row,
                                 int col);

// The second step. Throws xlerror "toInfix error: incorrect unary minus expression", "toInfix error: incorrect unary
// plus expression", "toInfix error: incorrect percent expression", "toInfix error: incorrect ptgRange expression",
// "toInfix error: expected two operands for binary operator", "toInfix error: incorrect brackets", "toInfix error:
// incorrect function expression" when items miss their operands, and "can't build infix formula string" when not
// exactly one expression results.
std::u16string infixFromPostfix(std::u16string_view postfix);

// A double in formula text.
std::u16string numberText(double value);

}  // namespace rubrica::formula
