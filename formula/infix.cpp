#include "formula/infix.h"

#include "formula/infix_tokens.h"
#include "formula/postfix.h"
#include "formula/ptg.h"

namespace rubrica::formula {
namespace {

void normalise(std::u16string_view text, std::u16string& result) {
  result.clear();
  result.reserve(text.size());
  bool inText = false, inName = false;
  for (const char16_t c : text) {
    if (c == u'"') inText = !inText;
    if (c == u'\'') inName = !inName;
    if (c != u' ' || inText || inName) result += c;
  }
  if (!result.empty() && result[0] == u'=') result.erase(0, 1);
}

// The tokens of a formula one after the other: without the blanks that normalising left outside quotes.
std::u16string joinedTokens(std::u16string_view text) {
  std::u16string result;
  result.reserve(text.size());
  InfixTokens tokens(text);
  for (auto token = tokens.next(); !token.empty(); token = tokens.next()) result += token;
  return result;
}

struct Contents {
  bool looseBlanks = false;  // those that normalising takes out
  bool quotedBlanks = false;
  bool texts = false, names = false;  // double quotes, apostrophes
};

Contents contentsOf(std::u16string_view text) {
  constexpr char16_t lastOfInterest = u'\'';
  Contents contents;
  bool inText = false, inName = false;
  for (const char16_t c : text) {
    if (c > lastOfInterest) continue;
    if (c == u'"') {
      inText = !inText;
      contents.texts = true;
    } else if (c == u'\'') {
      inName = !inName;
      contents.names = true;
    } else if (c == u' ') {
      (inText || inName ? contents.quotedBlanks : contents.looseBlanks) = true;
    }
  }
  return contents;
}

std::u16string_view operationText(std::uint8_t token) {
  switch (token) {
    case ptg::Uminus:
      return postfix::kUnaryMinus;
    case ptg::Uplus:
      return postfix::kUnaryPlus;
    case ptg::Percent:
      return postfix::kPercent;
    case ptg::Paren:
      return postfix::kParentheses;
    default:
      return binaryOperatorText(token);
  }
}

}  // namespace

std::u16string normalisedFormula(std::u16string_view text) {
  std::u16string result;
  normalise(text, result);
  return result;
}

std::u16string_view textWithoutBlanks(std::u16string_view text, std::u16string& room) {
  const bool hasBlanks = text.find(u' ') != std::u16string_view::npos;
  const Contents contents = hasBlanks ? contentsOf(text) : Contents();
  // Only where one kind of quote stands inside the other can blanks be left.
  const bool mayLeaveBlanks = contents.quotedBlanks && contents.texts && contents.names;
  if (!contents.looseBlanks && !mayLeaveBlanks) {
    if (text.starts_with(u'=')) text.remove_prefix(1);
    return text;
  }
  normalise(text, room);
  if (mayLeaveBlanks) room = joinedTokens(room);
  return room;
}

std::u16string postfixText(std::span<const PostfixItem> items) {
  std::u16string text;
  text.reserve(8 * items.size());
  for (const PostfixItem& item : items) {
    if (!text.empty()) text += u' ';
    switch (item.kind) {
      case PostfixItem::Kind::operation:
        text += operationText(item.token);
        break;
      case PostfixItem::Kind::integer:
      case PostfixItem::Kind::cell:
      case PostfixItem::Kind::area:
      case PostfixItem::Kind::operand:
        text += item.text;
        if (item.marked) text += postfix::kReferenceMark;
        break;
      case PostfixItem::Kind::call:
        appendFunctionItem(text, *item.function, item.count);
    }
  }
  return text;
}

std::u16string postfixFromInfix(std::u16string_view text) {
  if (errorCode(text)) return std::u16string(text);
  std::u16string room;
  PostfixBuilder builder;
  return postfixText(builder.build(textWithoutBlanks(text, room)));
}

}  // namespace rubrica::formula
