// The printer's second step: postfix text becomes formula text.
#include <cstdint>
#include <span>
#include <vector>

#include "engine/xlerror.h"
#include "formula/function_table.h"
#include "formula/postfix.h"
#include "formula/print.h"

namespace rubrica::formula {
namespace {

// Expressions as chains of text pieces, which join in constant time and are written out once at the end: building the
// text of every part on its own would copy the innermost ones once a level.
class PieceChains {
 public:
  // From the first piece to the last.
  struct Chain {
    std::uint32_t first;
    std::uint32_t last;
  };

  Chain piece(std::u16string_view text) {
    const auto index = static_cast<std::uint32_t>(_pieces.size());
    _pieces.push_back({text, end});
    return {index, index};
  }

  Chain join(const Chain& left, const Chain& right) {
    _pieces[left.last].next = right.first;
    return {left.first, right.last};
  }

  std::u16string text(const Chain& chain) const {
    std::size_t length = 0;
    for (std::uint32_t i = chain.first; i != end; i = _pieces[i].next) length += _pieces[i].text.size();
    std::u16string result;
    result.reserve(length);
    for (std::uint32_t i = chain.first; i != end; i = _pieces[i].next) result += _pieces[i].text;
    return result;
  }

  void reserve(std::size_t pieces) { _pieces.reserve(pieces); }

 private:
  static constexpr std::uint32_t end = 0xFFFFFFFF;

  struct Piece {
    std::u16string_view text;
    std::uint32_t next;
  };

  std::vector<Piece> _pieces;
};

class Folder {
 public:
  explicit Folder(std::size_t length) { _chains.reserve(length / 2); }

  void fold(std::u16string_view item);
  std::u16string result() const;

 private:
  using Chain = PieceChains::Chain;

  // The top of the stack; throws `message` when there is none.
  Chain& operand(const char* message);
  void binary(std::u16string_view text, const char* message);
  void call(const FunctionItem& function);

  PieceChains _chains;
  std::vector<Chain> _stack;
};

PieceChains::Chain& Folder::operand(const char* message) {
  if (_stack.empty()) throw xlerror(message);
  return _stack.back();
}

void Folder::binary(std::u16string_view text, const char* message) {
  if (_stack.size() < 2) throw xlerror(message);
  const Chain right = _stack.back();
  _stack.pop_back();
  _stack.back() = _chains.join(_chains.join(_stack.back(), _chains.piece(text)), right);
}

// A call that the table doesn't know carries the function's name as its first argument.
void Folder::call(const FunctionItem& function) {
  const auto count = static_cast<std::size_t>(function.count);
  if (_stack.size() < count) throw xlerror("toInfix error: incorrect function expression");
  const auto items = std::span(_stack).last(count);
  const bool namedByArgument = function.number == kUserDefinedFunction && count > 0;
  Chain chain = namedByArgument ? items[0] : _chains.piece(function.name);
  std::u16string_view before = u"(";
  for (const Chain& argument : items.subspan(namedByArgument ? 1 : 0)) {
    chain = _chains.join(_chains.join(chain, _chains.piece(before)), argument);
    before = u",";
  }
  chain = _chains.join(chain, _chains.piece(before == u"(" ? u"()" : u")"));
  _stack.resize(_stack.size() - count);
  _stack.push_back(chain);
}

void Folder::fold(std::u16string_view item) {
  if (item == postfix::kUnaryMinus) {
    Chain& top = operand("toInfix error: incorrect unary minus expression");
    top = _chains.join(_chains.piece(u"-"), top);
  } else if (item == postfix::kUnaryPlus) {
    Chain& top = operand("toInfix error: incorrect unary plus expression");
    top = _chains.join(_chains.piece(u"+"), top);
  } else if (item == postfix::kPercent) {
    Chain& top = operand("toInfix error: incorrect percent expression");
    top = _chains.join(top, _chains.piece(u"%"));
  } else if (item == postfix::kRange) {
    binary(u":", "toInfix error: incorrect ptgRange expression");
  } else if (binaryOperatorToken(item)) {
    binary(item, "toInfix error: expected two operands for binary operator");
  } else if (item == postfix::kParentheses) {
    Chain& top = operand("toInfix error: incorrect brackets");
    top = _chains.join(_chains.join(_chains.piece(u"("), top), _chains.piece(u")"));
  } else if (const auto function = functionItem(item)) {
    call(*function);
  } else {
    _stack.push_back(_chains.piece(item));
  }
}

std::u16string Folder::result() const {
  if (_stack.size() != 1) throw xlerror("can't build infix formula string");
  return _chains.text(_stack[0]);
}

}  // namespace

std::u16string infixFromPostfix(std::u16string_view postfix) {
  Folder folder(postfix.size());
  PostfixItems items(postfix);
  for (std::u16string_view item; items.next(item);) folder.fold(item);
  return folder.result();
}

}  // namespace rubrica::formula
