// The operator stack of the compiler's first stage: formula text without blanks outside quotes becomes postfix items.
// Used by compile.cpp, which turns the items into tokens, and by infix.cpp, which writes them out as text. Keeps its
// room from one formula to the next.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "formula/function_table.h"
#include "formula/infix_tokens.h"

namespace rubrica::formula {

// One item of a formula in postfix order. What nearly all operands are is read as soon as it is met; what others are,
// if anything, is the token writer's to find out.
struct PostfixItem {
  enum class Kind : std::uint8_t {
    operation,  // `token` is the whole token: an operator, a sign, a percent sign, parentheses
    integer,    // an operand: `first` as PtgInt has it
    cell,       // an operand: row and column word in `first` and `second`
    area,       // an operand: first and last row, first and last column word
    operand,    // any other
    call,       // `function` with `count` arguments
  };

  Kind kind = Kind::operation;
  std::uint8_t token = 0;
  bool marked = false;  // an operand of the form of a reference where its function takes references
  std::uint16_t first = 0, second = 0, third = 0, fourth = 0;
  std::uint32_t count = 0;
  const FunctionRow* function = nullptr;
  std::u16string_view text = {};  // of an operand, a part of the formula
};

class PostfixBuilder {
 public:
  // The items of `text`, which they point into; good until the next call. Throws what postfixFromInfix throws.
  std::span<const PostfixItem> build(std::u16string_view text);
  // Whether the text of the last build began a quote that it didn't end.
  bool endsInsideQuotes() const { return _tokens.endsInsideQuotes(); }

 private:
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

  struct Pending {
    Precedence precedence;
    std::uint8_t token = 0;
    bool plain = false;  // parentheses that belong to no call
    const FunctionRow* function = nullptr;
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

  void delimiter(std::u16string_view token);
  void put(std::uint8_t token) { _items.push_back({.kind = PostfixItem::Kind::operation, .token = token}); }
  void popToOutput();
  void popNotBelow(Precedence precedence);
  bool takesReference() const { return !_calls.empty() && _calls.back().takesReference(); }
  void countArgument(char16_t first);
  // Take what nearly all operands are off the rest of the text, or answer false.
  bool integer();
  bool plainReference();
  PostfixItem& plainOperand(PostfixItem::Kind kind, std::size_t length);
  void operand(std::u16string_view text);
  void nameOrOperand(std::u16string_view text);
  void openCall(const FunctionRow& function);
  void closeCall();
  void openParenthesis();
  void closeParenthesis();
  void separator();
  void binary(std::uint8_t operatorToken, Precedence precedence);
  void binaryOrSign(std::uint8_t operatorToken, std::uint8_t sign);
  bool enclosingCallsClose() const;

  InfixTokens _tokens{{}};
  std::vector<PostfixItem> _items;
  std::vector<Pending> _stack;
  std::vector<Call> _calls;
  bool _hasOperand = false;  // "-" and "+" are signs while there is none
  bool _callBegins = false;  // the next parenthesis is a call's
};

}  // namespace rubrica::formula
