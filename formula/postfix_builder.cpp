#include "formula/postfix_builder.h"

#include <limits>

#include "engine/xlerror.h"
#include "formula/characters.h"
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

bool endsOperand(std::u16string_view text, std::size_t at) {
  return at == text.size() || infixKindOf(text[at]) == InfixKind::delimiter;
}

}  // namespace

std::span<const PostfixItem> PostfixBuilder::build(std::u16string_view text) {
  _tokens.restart(text);
  _items.clear();
  _stack.clear();
  _calls.clear();
  _hasOperand = _callBegins = false;
  while (!_tokens.rest().empty()) {
    const char16_t first = _tokens.rest()[0];
    countArgument(first);
    if (infixKindOf(first) == InfixKind::delimiter) {
      delimiter(_tokens.takeDelimiter());
    } else if (!plainReference() && !integer()) {  // no function has a name of either form
      nameOrOperand(_tokens.next());
    }
  }
  if (!_calls.empty()) throw xlerror(missingParentheses);
  while (!_stack.empty()) popToOutput();
  return _items;
}

void PostfixBuilder::delimiter(std::u16string_view token) {
  switch (token[0]) {
    case u'%':
      return put(ptg::Percent);
    case u'(':
      return openParenthesis();
    case u')':
      return closeParenthesis();
    case u',':
    case u';':
      return separator();
    case u'+':
      return binaryOrSign(ptg::Add, ptg::Uplus);
    case u'-':
      return binaryOrSign(ptg::Sub, ptg::Uminus);
    case u'*':
      return binary(ptg::Mul, multiplyPrecedence);
    case u'/':
      return binary(ptg::Div, multiplyPrecedence);
    case u'^':
      return binary(ptg::Power, powerPrecedence);
    case u'&':
      return binary(ptg::Concat, concatPrecedence);
    case u'=':
      return binary(ptg::Eq, equalPrecedence);
    case u'<':
      if (token.size() == 1) return binary(ptg::Lt, lessPrecedence);
      return token[1] == u'=' ? binary(ptg::Le, lessPrecedence) : binary(ptg::Ne, equalPrecedence);
    case u'>':
      return token.size() == 1 ? binary(ptg::Gt, lessPrecedence) : binary(ptg::Ge, lessPrecedence);
  }
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

bool PostfixBuilder::integer() {
  constexpr std::size_t mostDigits = 5;
  const std::u16string_view rest = _tokens.rest();
  std::size_t length = 0;
  unsigned value = 0;
  for (; length < rest.size() && length < mostDigits && isDigit(rest[length]); ++length) {
    value = value * 10 + (rest[length] - u'0');
  }
  if (length == 0 || !endsOperand(rest, length) || value > std::numeric_limits<std::uint16_t>::max()) return false;
  plainOperand(PostfixItem::Kind::integer, length).first = static_cast<std::uint16_t>(value);
  return true;
}

bool PostfixBuilder::plainReference() {
  std::u16string_view rest = _tokens.rest();
  const PlainCell first = takePlainCell(rest);
  if (!first.found) return false;
  const bool isArea = !rest.empty() && rest[0] == u':';
  PlainCell last = first;
  if (isArea) {
    rest.remove_prefix(1);
    last = takePlainCell(rest);
    if (!last.found) return false;
  }
  if (!endsOperand(rest, 0)) return false;
  const std::size_t length = _tokens.rest().size() - rest.size();
  PostfixItem& item = plainOperand(isArea ? PostfixItem::Kind::area : PostfixItem::Kind::cell, length);
  item.marked = takesReference() && !last.marked;
  item.first = first.row;
  item.second = isArea ? last.row : first.columnWord;
  item.third = first.columnWord;
  item.fourth = last.columnWord;
  return true;
}

PostfixItem& PostfixBuilder::plainOperand(PostfixItem::Kind kind, std::size_t length) {
  PostfixItem& item = _items.emplace_back();
  item.kind = kind;
  item.text = _tokens.rest().substr(0, length);
  _tokens.drop(length);
  _hasOperand = true;
  return item;
}

void PostfixBuilder::nameOrOperand(std::u16string_view text) {
  if (const FunctionRow* const function = calledFunction(text, _tokens.rest())) {
    openCall(*function);
  } else {
    operand(text);
  }
}

void PostfixBuilder::operand(std::u16string_view text) {
  const bool marked = takesReference() && hasReferenceForm(text);
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

void PostfixBuilder::binary(std::uint8_t operatorToken, Precedence precedence) {
  if (_hasOperand) popNotBelow(precedence);
  _stack.push_back({.precedence = precedence, .token = operatorToken});
  _hasOperand = false;
}

void PostfixBuilder::binaryOrSign(std::uint8_t operatorToken, std::uint8_t sign) {
  if (_hasOperand) return binary(operatorToken, addPrecedence);
  _stack.push_back({.precedence = unaryPrecedence, .token = sign});
}

}  // namespace rubrica::formula
