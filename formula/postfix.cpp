#include "formula/postfix.h"

#include <algorithm>
#include <limits>

#include "engine/xlerror.h"
#include "formula/characters.h"
#include "formula/infix_tokens.h"
#include "formula/ptg.h"

namespace rubrica::formula {
namespace {

// In the order of their tokens from PtgAdd on.
constexpr std::u16string_view binaryOperators[] = {u"+", u"-",  u"*", u"/",  u"^", u"&",
                                                   u"<", u"<=", u"=", u">=", u">", u"<>"};
static_assert(std::size(binaryOperators) == ptg::Ne - ptg::Add + 1);

// The table's names with a digit in them, which the search for the argument count would cut.
constexpr std::u16string_view namesWithDigits[] = {u"LOG10",   u"DAYS360",  u"ATAN2",
                                                   u"SUMXMY2", u"SUMX2MY2", u"SUMX2PY2"};

std::size_t nameLength(std::u16string_view item) {
  for (const std::u16string_view name : namesWithDigits) {
    if (item.starts_with(name)) return name.size();
  }
  return static_cast<std::size_t>(std::find_if(item.begin(), item.end(), isDigit) - item.begin());
}

// The number at the front of `text`, as a stream reads it: up to the first character that is no digit.
int leadingCount(std::u16string_view text) {
  constexpr char message[] = "incorrect number of function parameters";
  if (text.empty() || !isDigit(text[0])) throw xlerror(message);
  std::int64_t count = 0;
  for (std::size_t i = 0; i < text.size() && isDigit(text[i]); ++i) {
    count = count * 10 + (text[i] - u'0');
    if (count > std::numeric_limits<int>::max()) throw xlerror(message);
  }
  return static_cast<int>(count);
}

}  // namespace

bool PostfixItems::next(std::u16string_view& item) {
  while (!_rest.empty() && _rest[0] == u' ') _rest.remove_prefix(1);
  if (_rest.empty()) return false;
  QuoteState quotes;
  std::size_t length = 0;
  for (; length < _rest.size(); ++length) {
    const char16_t c = _rest[length];
    if (c > u'\'') continue;
    if (c == u' ' && !quotes.inside()) break;
    quotes.pass(c);
  }
  item = _rest.substr(0, length);
  _rest.remove_prefix(length);
  return true;
}

std::optional<std::uint8_t> binaryOperatorToken(std::u16string_view text) {
  if (text.size() == 1) {
    switch (text[0]) {
      case u'+':
        return ptg::Add;
      case u'-':
        return ptg::Sub;
      case u'*':
        return ptg::Mul;
      case u'/':
        return ptg::Div;
      case u'^':
        return ptg::Power;
      case u'&':
        return ptg::Concat;
      case u'<':
        return ptg::Lt;
      case u'=':
        return ptg::Eq;
      case u'>':
        return ptg::Gt;
      default:
        return std::nullopt;
    }
  }
  if (text.size() != 2) return std::nullopt;
  if (text[0] == u'<' && text[1] == u'=') return ptg::Le;
  if (text[0] == u'<' && text[1] == u'>') return ptg::Ne;
  if (text[0] == u'>' && text[1] == u'=') return ptg::Ge;
  return std::nullopt;
}

std::u16string_view binaryOperatorText(std::uint8_t token) {
  return binaryOperators[token - ptg::Add];
}

void appendFunctionItem(std::u16string& text, const FunctionRow& function, unsigned count) {
  text += function.name;
  appendDecimal(text, count);
  text += postfix::kFunctionEnd;
}

bool readsBackAsItself(const FunctionRow& function) {
  return std::none_of(std::begin(namesWithDigits), std::end(namesWithDigits), [&](std::u16string_view name) {
    return name.size() > function.name.size() && isDigit(name[function.name.size()]) && name.starts_with(function.name);
  });
}

std::optional<FunctionItem> functionItem(std::u16string_view item) {
  if (item.empty() || item.back() != postfix::kFunctionEnd) return std::nullopt;
  FunctionItem function;
  function.name = item.substr(0, nameLength(item));
  const std::u16string_view rest = item.substr(function.name.size());
  const auto mayStand = [](char16_t c) { return isDigit(c) || c == postfix::kFunctionEnd; };
  if (!std::all_of(rest.begin(), rest.end(), mayStand)) return std::nullopt;
  const FunctionRow* const row = findFunction(function.name);
  function.number = row ? row->number : kUserDefinedFunction;
  function.count = leadingCount(rest);
  return function;
}

}  // namespace rubrica::formula
