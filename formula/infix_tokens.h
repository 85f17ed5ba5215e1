// Cuts formula text, as users write it, into operands, operators and delimiters. Used by the steps of the compiler's
// first stage; borrows the text.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace rubrica::formula {

// What a character of a formula is to the cutting.
enum class InfixKind : std::uint8_t { plain, delimiter, quote, blank };

inline constexpr auto kInfixKinds = [] {
  std::array<InfixKind, 128> kinds{};
  for (const char16_t c : std::u16string_view(u"+-*/()^<>=;&%,")) kinds[c] = InfixKind::delimiter;
  kinds[u'"'] = kinds[u'\''] = InfixKind::quote;
  kinds[u' '] = InfixKind::blank;
  return kinds;
}();

constexpr InfixKind infixKindOf(char16_t c) {
  return c < kInfixKinds.size() ? kInfixKinds[c] : InfixKind::plain;
}

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

  // Begins another text.
  void restart(std::u16string_view text) {
    _rest = text;
    _endsInsideQuotes = false;
  }

  // The next token, empty at the end. Valid until the next call.
  std::u16string_view next() {
    while (!_rest.empty() && _rest[0] == u' ') _rest.remove_prefix(1);
    if (_rest.empty()) return {};
    if (infixKindOf(_rest[0]) == InfixKind::delimiter) return takeDelimiter();
    // Nearly all operands are short and plain to their end.
    std::size_t length = 0;
    while (length < _rest.size() && infixKindOf(_rest[length]) == InfixKind::plain) ++length;
    if (length == _rest.size() || infixKindOf(_rest[length]) == InfixKind::delimiter) return take(length);
    return quotedOperand();
  }

  // The text behind the token.
  std::u16string_view rest() const { return _rest; }
  // The rest begins with a delimiter, which is taken.
  std::u16string_view takeDelimiter() { return take(delimiterLength()); }
  // Takes what the caller has read itself off the rest.
  void drop(std::size_t length) { _rest.remove_prefix(length); }
  // Whether the last token begins a quote that the text doesn't end.
  bool endsInsideQuotes() const { return _endsInsideQuotes; }

 private:
  std::u16string_view take(std::size_t length) {
    const std::u16string_view token = _rest.substr(0, length);
    _rest.remove_prefix(length);
    return token;
  }
  std::size_t delimiterLength() const {
    if (_rest.size() < 2 || (_rest[0] != u'<' && _rest[0] != u'>')) return 1;
    return _rest[1] == u'=' || (_rest[0] == u'<' && _rest[1] == u'>') ? 2 : 1;
  }
  // An operand with quotes or blanks in it.
  std::u16string_view quotedOperand();
  std::u16string_view withoutBlanks(std::u16string_view token);

  std::u16string_view _rest;
  std::u16string _gathered;
  bool _endsInsideQuotes = false;
};

}  // namespace rubrica::formula
