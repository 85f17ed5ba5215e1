#include "formula/infix.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "engine/xlerror.h"
#include "formula/function_table.h"
#include "formula/infix_tokens.h"
#include "formula/postfix.h"
#include "formula/ptg.h"
#include "formula/reference_text.h"

namespace rubrica::formula {
namespace {

constexpr bool isSeparator(std::u16string_view token) {
  return token == u";" || token == u",";
}

// The function that `token` calls, or null. TRUE and FALSE are calls only in front of a parenthesis; as the last word
// of a formula they are taken for calls all the same, which then miss their parentheses.
const FunctionRow* calledFunction(std::u16string_view token, std::u16string_view rest) {
  const FunctionRow* const row = findFunction(token);
  if (!row || (token != postfix::kTrue && token != postfix::kFalse)) return row;
  return rest.empty() || rest[0] == u'(' ? row : nullptr;
}

// A call that the walk is inside of.
struct CallContext {
  std::uint32_t referenceMask = 0;
  unsigned argument = 0;
  std::size_t depth = 0;  // open parentheses, the call's own included

  bool takesReference() const { return (referenceMask >> (argument % 32) & 1) != 0; }
};

}  // namespace

std::u16string normalisedFormula(std::u16string_view text) {
  std::u16string result;
  result.reserve(text.size());
  bool inText = false, inName = false;
  for (const char16_t c : text) {
    if (c == u'"') inText = !inText;
    if (c == u'\'') inName = !inName;
    if (c != u' ' || inText || inName) result += c;
  }
  if (!result.empty() && result[0] == u'=') result.erase(0, 1);
  return result;
}

std::u16string withReferenceMarks(std::u16string_view text) {
  std::u16string result;
  result.reserve(text.size() + text.size() / 4);
  std::vector<CallContext> calls;
  InfixTokens tokens(text);
  for (auto token = tokens.next(); !token.empty(); token = tokens.next()) {
    result += token;
    if (const FunctionRow* const row = calledFunction(token, tokens.rest())) {
      calls.push_back({row->referenceMask});
    } else if (calls.empty()) {
      continue;
    } else if (token == u"(") {
      ++calls.back().depth;
    } else if (token == u")") {
      if (calls.back().depth > 0) --calls.back().depth;
      if (calls.back().depth == 0) calls.pop_back();
    } else if (isSeparator(token)) {
      if (calls.back().depth == 1) ++calls.back().argument;
    } else if (calls.back().takesReference() && hasReferenceForm(token)) {
      result += u'R';
    }
  }
  return result;
}

namespace {

constexpr std::int32_t unclosed = -1;

// For every "(" outside quotes, at its position, how many arguments a call with that parenthesis has: the separators
// directly inside it, and one more when something stands before the first of them. So "()" has 0, "(a)" 1, "(a,b)" 2,
// "(,)" 1. `unclosed` where the ")" is missing. One walk for all calls keeps deep nesting linear.
std::vector<std::int32_t> argumentCounts(std::u16string_view text) {
  struct Open {
    std::size_t position;
    std::int32_t count;
  };
  std::vector<std::int32_t> counts(text.size(), unclosed);
  std::vector<Open> open;
  QuoteState quotes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    const bool quoted = quotes.inside();
    quotes.pass(c);
    if (quoted) continue;
    if (c == u')') {
      if (open.empty()) continue;
      counts[open.back().position] = open.back().count;
      open.pop_back();
      continue;
    }
    if (!open.empty()) {
      std::int32_t& count = open.back().count;
      if (c == u',' || c == u';' || count == 0) ++count;
    }
    if (c == u'(') open.push_back({i, 0});
  }
  return counts;
}

enum Precedence : int {
  callPrecedence = -1,
  parenthesisPrecedence = 0,
  separatorPrecedence = 1,
  concatPrecedence = 2,
  equalPrecedence = 3,
  lessPrecedence = 4,
  addPrecedence = 5,
  multiplyPrecedence = 6,
  powerPrecedence = 7,
  unaryPrecedence = 9,
};

Precedence precedenceOf(std::uint8_t operatorToken) {
  switch (operatorToken) {
    case ptg::Concat:
      return concatPrecedence;
    case ptg::Eq:
    case ptg::Ne:
      return equalPrecedence;
    case ptg::Lt:
    case ptg::Le:
    case ptg::Gt:
    case ptg::Ge:
      return lessPrecedence;
    case ptg::Add:
    case ptg::Sub:
      return addPrecedence;
    case ptg::Mul:
    case ptg::Div:
      return multiplyPrecedence;
    default:
      return powerPrecedence;
  }
}

// The operator stack over a formula with reference marks.
class PostfixBuilder {
 public:
  explicit PostfixBuilder(std::u16string_view text) : _text(text), _argumentCounts(argumentCounts(text)) {
    _output.reserve(2 * text.size());
  }

  std::u16string build();

 private:
  struct Pending {
    std::u16string_view text;
    Precedence precedence;
    std::int32_t argumentCount = 0;  // of a call
    bool plain = false;              // parentheses that belong to no call
  };

  void put(std::u16string_view item) { _output.append(item).append(1, u' '); }
  void popToOutput();
  void popNotBelow(Precedence precedence);
  void operand(std::u16string_view text);
  void call(std::u16string_view name, std::u16string_view rest);
  void openParenthesis();
  void closeParenthesis();
  void separator();
  void binaryOrSign(std::u16string_view text, std::uint8_t operatorToken);

  std::u16string_view _text;
  std::vector<std::int32_t> _argumentCounts;
  std::u16string _output;
  std::vector<Pending> _stack;
  bool _hasOperand = false;  // "-" and "+" are signs while there is none
  bool _callBegins = false;  // the next parenthesis is a call's
};

std::u16string PostfixBuilder::build() {
  InfixTokens tokens(_text);
  for (auto token = tokens.next(); !token.empty(); token = tokens.next()) {
    if (calledFunction(token, tokens.rest())) {
      call(token, tokens.rest());
    } else if (token == u"%") {
      put(postfix::kPercent);
    } else if (token == u"(") {
      openParenthesis();
    } else if (token == u")") {
      closeParenthesis();
    } else if (isSeparator(token)) {
      separator();
    } else if (const auto operatorToken = binaryOperatorToken(token)) {
      binaryOrSign(token, *operatorToken);
    } else {
      operand(token);
    }
  }
  while (!_stack.empty()) popToOutput();
  if (!_output.empty()) _output.pop_back();
  return std::move(_output);
}

void PostfixBuilder::popToOutput() {
  const Pending top = _stack.back();
  _stack.pop_back();
  _output += top.text;
  if (top.precedence == callPrecedence) {
    for (const char digit : std::to_string(top.argumentCount)) _output += static_cast<char16_t>(digit);
    _output += postfix::kFunctionEnd;
  }
  _output += u' ';
}

void PostfixBuilder::popNotBelow(Precedence precedence) {
  while (!_stack.empty() && _stack.back().precedence >= precedence) popToOutput();
}

void PostfixBuilder::operand(std::u16string_view text) {
  put(text);
  _hasOperand = true;
}

void PostfixBuilder::call(std::u16string_view name, std::u16string_view rest) {
  if (rest.empty()) throw xlerror("error: function parentheses not found");
  if (rest[0] != u'(') throw xlerror("error: function name without open parenthesis");
  const std::int32_t count = _argumentCounts[_text.size() - rest.size()];
  if (count == unclosed) throw xlerror("error: function parentheses not found");
  _stack.push_back({name, callPrecedence, count});
  _callBegins = true;
  _hasOperand = false;
}

void PostfixBuilder::openParenthesis() {
  _stack.push_back({postfix::kParentheses, parenthesisPrecedence, 0, !_callBegins});
  _callBegins = false;
}

void PostfixBuilder::closeParenthesis() {
  while (!_stack.empty() && _stack.back().precedence != parenthesisPrecedence) popToOutput();
  if (_stack.empty()) throw xlerror("error in formula");
  if (_stack.back().plain) put(postfix::kParentheses);
  _stack.pop_back();
  if (!_stack.empty() && _stack.back().precedence == callPrecedence) {
    popToOutput();
    _hasOperand = true;
  }
}

void PostfixBuilder::separator() {
  popNotBelow(separatorPrecedence);
  _hasOperand = false;
}

void PostfixBuilder::binaryOrSign(std::u16string_view text, std::uint8_t operatorToken) {
  const bool isSign = !_hasOperand && (operatorToken == ptg::Sub || operatorToken == ptg::Add);
  const Precedence precedence = precedenceOf(operatorToken);
  if (_hasOperand) popNotBelow(precedence);
  if (isSign) {
    _stack.push_back({operatorToken == ptg::Sub ? postfix::kUnaryMinus : postfix::kUnaryPlus, unaryPrecedence});
  } else {
    _stack.push_back({text, precedence});
  }
  _hasOperand = false;
}

}  // namespace

std::u16string postfixFromInfix(std::u16string_view text) {
  if (errorCode(text)) return std::u16string(text);
  const std::u16string marked = withReferenceMarks(normalisedFormula(text));
  return PostfixBuilder(marked).build();
}

}  // namespace rubrica::formula
