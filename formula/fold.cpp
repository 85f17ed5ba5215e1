// The printer's second step: postfix text becomes formula text.
#include <vector>

#include "engine/xlerror.h"
#include "formula/function_table.h"
#include "formula/postfix.h"
#include "formula/print.h"

namespace rubrica::formula {
namespace {

// Expressions as a tree of text pieces, written out once at the end: building the text of every part on its own would
// copy the innermost ones once a level.
class ExpressionTree {
 public:
  using Index = std::size_t;

  // A node prints as head, its children with the separator between them, tail.
  struct Pieces {
    std::u16string_view head = {};
    std::u16string_view separator = {};
    std::u16string_view tail = {};
  };

  Index add(const Pieces& pieces, std::span<const Index> children = {}) {
    _nodes.push_back({pieces, _children.size(), children.size()});
    _children.insert(_children.end(), children.begin(), children.end());
    return _nodes.size() - 1;
  }

  std::u16string text(Index root) const;

 private:
  struct Node {
    Pieces pieces;
    std::size_t firstChild;
    std::size_t childCount;
  };

  std::vector<Node> _nodes;
  std::vector<Index> _children;
};

std::u16string ExpressionTree::text(Index root) const {
  struct Visit {
    const Node* node;
    std::size_t child;
  };
  std::u16string result(_nodes[root].pieces.head);
  std::vector<Visit> open{{&_nodes[root], 0}};
  while (!open.empty()) {
    Visit& visit = open.back();
    const Node& node = *visit.node;
    if (visit.child == node.childCount) {
      result += node.pieces.tail;
      open.pop_back();
      continue;
    }
    if (visit.child > 0) result += node.pieces.separator;
    const Node& child = _nodes[_children[node.firstChild + visit.child++]];
    result += child.pieces.head;
    open.push_back({&child, 0});
  }
  return result;
}

class Folder {
 public:
  void fold(std::u16string_view item);
  std::u16string result() const;

 private:
  // Replaces the top `count` expressions by one over them; throws `message` when there are fewer.
  void combine(std::size_t count, const ExpressionTree::Pieces& pieces, const char* message);
  void call(const FunctionItem& function);

  ExpressionTree _tree;
  std::vector<ExpressionTree::Index> _stack;
};

void Folder::combine(std::size_t count, const ExpressionTree::Pieces& pieces, const char* message) {
  if (_stack.size() < count) throw xlerror(message);
  const auto operands = std::span(_stack).last(count);
  const auto node = _tree.add(pieces, operands);
  _stack.resize(_stack.size() - count);
  _stack.push_back(node);
}

// A call that the table doesn't know carries the function's name as its first argument.
void Folder::call(const FunctionItem& function) {
  const auto count = static_cast<std::size_t>(function.count);
  if (_stack.size() < count) throw xlerror("toInfix error: incorrect function expression");
  const auto items = std::span(_stack).last(count);
  const bool namedByArgument = function.number == kUserDefinedFunction && count > 0;
  const auto name = namedByArgument ? items[0] : _tree.add({.head = function.name});
  const auto arguments = _tree.add({.head = u"(", .separator = u",", .tail = u")"}, items.subspan(namedByArgument));
  const ExpressionTree::Index parts[] = {name, arguments};
  const auto node = _tree.add({}, parts);
  _stack.resize(_stack.size() - count);
  _stack.push_back(node);
}

void Folder::fold(std::u16string_view item) {
  if (item == postfix::kUnaryMinus) {
    combine(1, {.head = u"-"}, "toInfix error: incorrect unary minus expression");
  } else if (item == postfix::kUnaryPlus) {
    combine(1, {.head = u"+"}, "toInfix error: incorrect unary plus expression");
  } else if (item == postfix::kPercent) {
    combine(1, {.tail = u"%"}, "toInfix error: incorrect percent expression");
  } else if (item == postfix::kRange) {
    combine(2, {.separator = u":"}, "toInfix error: incorrect ptgRange expression");
  } else if (binaryOperatorToken(item)) {
    combine(2, {.separator = item}, "toInfix error: expected two operands for binary operator");
  } else if (item == postfix::kParentheses) {
    combine(1, {.head = u"(", .tail = u")"}, "toInfix error: incorrect brackets");
  } else if (const auto function = functionItem(item)) {
    call(*function);
  } else {
    _stack.push_back(_tree.add({.head = item}));
  }
}

std::u16string Folder::result() const {
  if (_stack.size() != 1) throw xlerror("can't build infix formula string");
  return _tree.text(_stack[0]);
}

}  // namespace

std::u16string infixFromPostfix(std::u16string_view postfix) {
  Folder folder;
  PostfixItems items(postfix);
  for (std::u16string_view item; items.next(item);) folder.fold(item);
  return folder.result();
}

}  // namespace rubrica::formula
