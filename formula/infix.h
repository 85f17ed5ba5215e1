// The first stage of the compiler: formula text as users write it becomes postfix text. Needs no book. Takes time in
// proportion to the text and doesn't recurse, whatever the nesting.
//
// Where this grammar leaves a choice, it is made so:
// - TRUE and FALSE without parentheses open no call, so the references behind them belong to the call around them.
// - An argument that begins with a parenthesis or a quote counts as an argument like any other.
// - A reference that ends in "R" already is not marked again.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "formula/postfix_builder.h"

namespace rubrica::formula {

// Without the blanks outside quotes, and then without one leading "=". Here the two kinds of quotes don't know of each
// other: an apostrophe inside a text, as in "it's", keeps the blanks up to the next apostrophe, and a double quote
// inside a quoted sheet name makes the texts behind it lose theirs.
std::u16string normalisedFormula(std::u16string_view text);

// The same, and without the blanks that are left outside quotes where the two kinds do know of each other: the text
// itself, or its copy in `room`.
std::u16string_view textWithoutBlanks(std::u16string_view text, std::u16string& room);

// The postfix text of a formula. Operands of the form of a reference get the mark "R" where their function takes
// references. A text that is one error constant is its own postfix text. Throws xlerror "error: function parentheses
// not found", "error: function name without open parenthesis", "error in formula".
std::u16string postfixFromInfix(std::u16string_view text);

// The items one after the other as postfix text.
std::u16string postfixText(std::span<const PostfixItem> items);

}  // namespace rubrica::formula
