#include "formula/infix_tokens.h"

#include <array>
#include <cstdint>

namespace rubrica::formula {
namespace {

enum CharacterKind : std::uint8_t { plain, delimiter, quote, blank };

constexpr auto characterKinds = [] {
  std::array<CharacterKind, 128> kinds{};
  for (const char16_t c : std::u16string_view(u"+-*/()^<>=;&%,")) kinds[c] = delimiter;
  kinds[u'"'] = kinds[u'\''] = quote;
  kinds[u' '] = blank;
  return kinds;
}();

constexpr CharacterKind kindOf(char16_t c) {
  return c < characterKinds.size() ? characterKinds[c] : plain;
}

std::size_t delimiterLength(std::u16string_view text) {
  if (text.size() < 2) return 1;
  const bool pair = (text[0] == u'<' && (text[1] == u'=' || text[1] == u'>')) || (text[0] == u'>' && text[1] == u'=');
  return pair ? 2 : 1;
}

}  // namespace

// Up to the next delimiter outside quotes. `blanks` is set when there are blanks outside quotes in it.
std::size_t InfixTokens::operandLength(bool& blanks) {
  QuoteState quotes;
  for (std::size_t length = 0; length < _rest.size(); ++length) {
    const CharacterKind kind = kindOf(_rest[length]);
    if (kind == plain) continue;
    if (kind == quote) {
      quotes.pass(_rest[length]);
    } else if (!quotes.inside()) {
      if (kind == delimiter) return length;
      blanks = true;
    }
  }
  _endsInsideQuotes = quotes.inside();
  return _rest.size();
}

std::u16string_view InfixTokens::next() {
  while (!_rest.empty() && _rest[0] == u' ') _rest.remove_prefix(1);
  if (_rest.empty()) return {};
  std::size_t length = 0;
  bool blanks = false;
  if (kindOf(_rest[0]) == delimiter) {
    length = delimiterLength(_rest);
  } else {
    length = operandLength(blanks);
  }
  const std::u16string_view token = _rest.substr(0, length);
  _rest.remove_prefix(length);
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
