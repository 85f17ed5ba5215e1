// Cuts formula text, as users write it, into operands, operators and delimiters. Used by the steps of the compiler's
// first stage; borrows the text.
#pragma once

#include <string>
#include <string_view>

namespace rubrica::formula {

// Which quotes a character stands in, for readers that walk a formula from its front. A quote of one kind is plain text
// inside the other kind.
class QuoteState {
 public:
  bool inside() const { return _inText || _inName; }
  // To be told every quote; other characters don't matter.
  void pass(char16_t c) {
    if (c == u'"' && !_inName) _inText = !_inText;
    if (c == u'\'' && !_inText) _inName = !_inName;
  }

 private:
  bool _inText = false;
  bool _inName = false;
};

// A delimiter is one of + - * / ( ) ^ < > = ; & % , or a pair <= <> >=. What stands between delimiters is one token,
// as is anything between double quotes or apostrophes. Blanks outside quotes are skipped.
class InfixTokens {
 public:
  explicit InfixTokens(std::u16string_view text) : _rest(text) {}

  // The next token, empty at the end. Valid until the next call.
  std::u16string_view next();

  // The text behind the token.
  std::u16string_view rest() const { return _rest; }
  // Whether the last token begins a quote that the text doesn't end.
  bool endsInsideQuotes() const { return _endsInsideQuotes; }

 private:
  std::size_t operandLength(bool& blanks);
  std::u16string_view withoutBlanks(std::u16string_view token);

  std::u16string_view _rest;
  std::u16string _gathered;
  bool _endsInsideQuotes = false;
};

}  // namespace rubrica::formula
