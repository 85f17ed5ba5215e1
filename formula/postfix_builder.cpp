#include "formula/postfix_builder.h"

#include "engine/xlerror.h"
#include "formula/postfix.h"
#include "formula/ptg.h"
#include "formula/reference_text.h"

namespace rubrica::formula {
namespace {

constexpr char missingParentheses[] = "error: function parentheses not found";

// The function that `token` calls, or null. TRUE and FALSE are calls only in front of a parenthesis; as the last word
// of a formula they are taken for calls all the same, which then miss their parentheses.
const FunctionRow* calledFunction(std::u16string_view token, std::u16string_view rest) {
  const FunctionRow* const row = findFunction(token);
  if (!row || (token != postfix::kTrue && token != postfix::kFalse)) return row;
  return rest.empty() || rest[0] == u'(' ? row : nullptr;
}

}  // namespace

PostfixBuilder::Precedence PostfixBuilder::precedenceOf(std::uint8_t operatorToken) {
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

std::span<const PostfixItem> PostfixBuilder::build(std::u16string_view text) {
  _tokens = InfixTokens(text);
  _items.clear();
  _stack.clear();
  _calls.clear();
  _hasOperand = _callBegins = false;
  for (auto token = _tokens.next(); !token.empty(); token = _tokens.next()) {
    countArgument(token[0]);
    switch (token[0]) {
      case u'%':
        put(ptg::Percent);
        break;
      case u'(':
        openParenthesis();
        break;
      case u')':
        closeParenthesis();
        break;
      case u',':
      case u';':
        separator();
        break;
      default:
        if (const auto operatorToken = binaryOperatorToken(token)) {
          binaryOrSign(*operatorToken);
        } else if (const FunctionRow* const function = calledFunction(token, _tokens.rest())) {
          openCall(*function);
        } else {
          operand(token);
        }
    }
  }
  if (!_calls.empty()) throw xlerror(missingParentheses);
  while (!_stack.empty()) popToOutput();
  return _items;
}

void PostfixBuilder::popToOutput() {
  put(_stack.back().token);
  _stack.pop_back();
}

void PostfixBuilder::popNotBelow(Precedence precedence) {
  while (!_stack.empty() && _stack.back().precedence >= precedence) popToOutput();
}

// What stands directly inside a call's parentheses in front of the first separator makes the first argument.
void PostfixBuilder::countArgument(char16_t first) {
  if (_calls.empty() || _calls.back().depth != 1) return;
  Call& call = _calls.back();
  if (first == u',' || first == u';') {
    ++call.separators;
  } else if (call.separators == 0 && first != u')') {
    call.begunWithArgument = true;
  }
}

void PostfixBuilder::operand(std::u16string_view text) {
  const bool marked = !_calls.empty() && _calls.back().takesReference() && hasReferenceForm(text);
  _items.push_back({.kind = PostfixItem::Kind::operand, .marked = marked, .text = text});
  _hasOperand = true;
}

void PostfixBuilder::openCall(const FunctionRow& function) {
  const std::u16string_view rest = _tokens.rest();
  if (rest.empty()) throw xlerror(missingParentheses);
  if (rest[0] != u'(') {
    throw xlerror(enclosingCallsClose() ? "error: function name without open parenthesis" : missingParentheses);
  }
  _stack.push_back({.precedence = callPrecedence, .function = &function});
  _calls.push_back({.referenceMask = function.referenceMask});
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
  _stack.push_back({.precedence = parenthesisPrecedence, .token = ptg::Paren, .plain = !_callBegins});
  _callBegins = false;
  if (!_calls.empty()) ++_calls.back().depth;
}

void PostfixBuilder::closeParenthesis() {
  while (!_stack.empty() && _stack.back().precedence != parenthesisPrecedence) popToOutput();
  if (_stack.empty()) throw xlerror("error in formula");
  if (_stack.back().plain) put(ptg::Paren);
  _stack.pop_back();
  if (!_calls.empty() && --_calls.back().depth == 0) closeCall();
}

void PostfixBuilder::closeCall() {
  _items.push_back(
      {.kind = PostfixItem::Kind::call, .count = _calls.back().count(), .function = _stack.back().function});
  _stack.pop_back();
  _calls.pop_back();
  _hasOperand = true;
}

void PostfixBuilder::separator() {
  popNotBelow(separatorPrecedence);
  _hasOperand = false;
}

void PostfixBuilder::binaryOrSign(std::uint8_t operatorToken) {
  const bool isSign = !_hasOperand && (operatorToken == ptg::Sub || operatorToken == ptg::Add);
  const Precedence precedence = precedenceOf(operatorToken);
  if (_hasOperand) popNotBelow(precedence);
  if (isSign) {
    _stack.push_back({.precedence = unaryPrecedence, .token = operatorToken == ptg::Sub ? ptg::Uminus : ptg::Uplus});
  } else {
    _stack.push_back({.precedence = precedence, .token = operatorToken});
  }
  _hasOperand = false;
}

}  // namespace rubrica::formula
