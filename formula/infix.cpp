#include "formula/infix.h"

#include <cstdint>
#include <utility>
#include <vector>

#include "engine/xlerror.h"
#include "formula/characters.h"
#include "formula/function_table.h"
#include "formula/infix_tokens.h"
#include "formula/postfix.h"
#include "formula/ptg.h"
#include "formula/reference_text.h"

namespace rubrica::formula {
namespace {

constexpr char missingParentheses[] = "error: function parentheses not found";

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

constexpr bool isSeparator(std::u16string_view token) {
  return token == u"," || token == u";";
}

// The function that `token` calls, or null. TRUE and FALSE are calls only in front of a parenthesis; as the last word
// of a formula they are taken for calls all the same, which then miss their parentheses.
const FunctionRow* calledFunction(std::u16string_view token, std::u16string_view rest) {
  const FunctionRow* const row = findFunction(token);
  if (!row || (token != postfix::kTrue && token != postfix::kFalse)) return row;
  return rest.empty() || rest[0] == u'(' ? row : nullptr;
}

// The operator stack over a formula without blanks outside quotes.
class PostfixBuilder {
 public:
  explicit PostfixBuilder(std::u16string_view text) : _tokens(text) { _output.reserve(2 * text.size() + 8); }

  std::u16string build();

 private:
  struct Pending {
    std::u16string_view text;
    Precedence precedence;
    bool plain = false;  // parentheses that belong to no call
  };

  // A call that the walk is inside of.
  struct Call {
    std::uint32_t referenceMask = 0;
    unsigned separators = 0;  // so far, which is also the position of the present argument
    std::size_t depth = 0;    // open parentheses, the call's own included
    bool begunWithArgument = false;

    bool takesReference() const { return (referenceMask >> (separators % 32) & 1) != 0; }
    // "()" has no arguments, "(a)" one, "(a,b)" two, but "(,)" one and "(,b)" too.
    unsigned count() const { return separators + (begunWithArgument ? 1 : 0); }
  };

  void put(std::u16string_view item) { _output.append(item) += u' '; }
  void popToOutput();
  void popNotBelow(Precedence precedence);
  void countArgument(std::u16string_view token);
  void operand(std::u16string_view text);
  void openCall(const FunctionRow& function);
  void closeCall();
  void openParenthesis();
  void closeParenthesis();
  void separator();
  void binaryOrSign(std::u16string_view text, std::uint8_t operatorToken);
  bool enclosingCallsClose() const;

  InfixTokens _tokens;
  std::u16string _output;
  std::vector<Pending> _stack;
  std::vector<Call> _calls;
  bool _hasOperand = false;  // "-" and "+" are signs while there is none
  bool _callBegins = false;  // the next parenthesis is a call's
};

std::u16string PostfixBuilder::build() {
  for (auto token = _tokens.next(); !token.empty(); token = _tokens.next()) {
    countArgument(token);
    if (const FunctionRow* const function = calledFunction(token, _tokens.rest())) {
      openCall(*function);
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
  if (!_calls.empty()) throw xlerror(missingParentheses);
  while (!_stack.empty()) popToOutput();
  if (!_output.empty()) _output.pop_back();
  return std::move(_output);
}

void PostfixBuilder::popToOutput() {
  put(_stack.back().text);
  _stack.pop_back();
}

void PostfixBuilder::popNotBelow(Precedence precedence) {
  while (!_stack.empty() && _stack.back().precedence >= precedence) popToOutput();
}

// What stands directly inside a call's parentheses in front of the first separator makes the first argument.
void PostfixBuilder::countArgument(std::u16string_view token) {
  if (_calls.empty() || _calls.back().depth != 1) return;
  Call& call = _calls.back();
  if (isSeparator(token)) {
    ++call.separators;
  } else if (call.separators == 0 && token != u")") {
    call.begunWithArgument = true;
  }
}

void PostfixBuilder::operand(std::u16string_view text) {
  _output += text;
  if (!_calls.empty() && _calls.back().takesReference() && hasReferenceForm(text)) _output += u'R';
  _output += u' ';
  _hasOperand = true;
}

void PostfixBuilder::openCall(const FunctionRow& function) {
  const std::u16string_view rest = _tokens.rest();
  if (rest.empty()) throw xlerror(missingParentheses);
  if (rest[0] != u'(') {
    throw xlerror(enclosingCallsClose() ? "error: function name without open parenthesis" : missingParentheses);
  }
  _stack.push_back({function.name, callPrecedence});
  _calls.push_back({function.referenceMask});
  _callBegins = true;
  _hasOperand = false;
}

// A call around a faulty one that is never closed itself is the formula's first fault, though it shows last.
bool PostfixBuilder::enclosingCallsClose() const {
  std::size_t depth = 0;
  for (const Call& call : _calls) depth += call.depth;
  InfixTokens ahead(_tokens.rest());
  for (auto token = ahead.next(); !token.empty() && depth > 0; token = ahead.next()) {
    if (token == u"(") ++depth;
    if (token == u")") --depth;
  }
  return depth == 0;
}

void PostfixBuilder::openParenthesis() {
  _stack.push_back({postfix::kParentheses, parenthesisPrecedence, !_callBegins});
  _callBegins = false;
  if (!_calls.empty()) ++_calls.back().depth;
}

void PostfixBuilder::closeParenthesis() {
  while (!_stack.empty() && _stack.back().precedence != parenthesisPrecedence) popToOutput();
  if (_stack.empty()) throw xlerror("error in formula");
  if (_stack.back().plain) put(postfix::kParentheses);
  _stack.pop_back();
  if (!_calls.empty() && --_calls.back().depth == 0) closeCall();
}

void PostfixBuilder::closeCall() {
  _output += _stack.back().text;
  appendDecimal(_output, _calls.back().count());
  _output += postfix::kFunctionEnd;
  _output += u' ';
  _stack.pop_back();
  _calls.pop_back();
  _hasOperand = true;
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

namespace {

// The tokens of a formula one after the other: without the blanks that normalising left outside quotes.
std::u16string joinedTokens(std::u16string_view text) {
  std::u16string result;
  result.reserve(text.size());
  InfixTokens tokens(text);
  for (auto token = tokens.next(); !token.empty(); token = tokens.next()) result += token;
  return result;
}

constexpr bool contains(std::u16string_view text, char16_t c) {
  return text.find(c) != std::u16string_view::npos;
}

}  // namespace

std::u16string postfixFromInfix(std::u16string_view text) {
  if (errorCode(text)) return std::u16string(text);
  if (!contains(text, u' ')) {
    if (text.starts_with(u'=')) text.remove_prefix(1);
    return PostfixBuilder(text).build();
  }
  std::u16string normalised = normalisedFormula(text);
  // Only where one kind of quote stands inside the other can blanks be left.
  if (contains(normalised, u'"') && contains(normalised, u'\'')) normalised = joinedTokens(normalised);
  return PostfixBuilder(normalised).build();
}

}  // namespace rubrica::formula
