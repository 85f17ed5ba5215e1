#include "formula/infix_tokens.h"

namespace rubrica::formula {

std::u16string_view InfixTokens::quotedOperand() {
  QuoteState quotes;
  bool blanks = false;
  std::size_t length = 0;
  for (; length < _rest.size(); ++length) {
    const InfixKind kind = infixKindOf(_rest[length]);
    if (kind == InfixKind::plain) continue;
    if (kind == InfixKind::quote) {
      quotes.pass(_rest[length]);
    } else if (!quotes.inside()) {
      if (kind == InfixKind::delimiter) break;
      blanks = true;
    }
  }
  _endsInsideQuotes = quotes.inside();
  const std::u16string_view token = take(length);
  return blanks ? withoutBlanks(token) : token;
}

std::u16string_view InfixTokens::withoutBlanks(std::u16string_view token) {
  _gathered.clear();
  QuoteState quotes;
  for (const char16_t c : token) {
    if (c != u' ' || quotes.inside()) _gathered += c;
    quotes.pass(c);
  }
  return _gathered;
}

}  // namespace rubrica::formula
