#include "formula/infix_tokens.h"

#include <algorithm>
#include <array>

namespace rubrica::formula {
namespace {

constexpr auto delimiters = [] {
  std::array<bool, 128> table{};
  for (const char16_t c : std::u16string_view(u"+-*/()^<>=;&%,")) table[c] = true;
  return table;
}();

constexpr bool isDelimiter(char16_t c) {
  return c < delimiters.size() && delimiters[c];
}

std::size_t delimiterLength(std::u16string_view text) {
  if (text.size() < 2) return 1;
  const bool pair = (text[0] == u'<' && (text[1] == u'=' || text[1] == u'>')) || (text[0] == u'>' && text[1] == u'=');
  return pair ? 2 : 1;
}

}  // namespace

std::u16string_view InfixTokens::next() {
  const std::size_t begin = std::min(_rest.find_first_not_of(u' '), _rest.size());
  _rest.remove_prefix(begin);
  if (_rest.empty()) return {};
  const bool delimiter = isDelimiter(_rest[0]);
  std::size_t length = delimiter ? delimiterLength(_rest) : 0;
  bool blanks = false;
  for (QuoteState quotes; !delimiter && length < _rest.size(); ++length) {
    const char16_t c = _rest[length];
    if (!quotes.inside() && isDelimiter(c)) break;
    blanks = blanks || (c == u' ' && !quotes.inside());
    quotes.pass(c);
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
