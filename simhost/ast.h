// The tree of a parsed script. Made by the parser, walked by the interpreter. Operands of one precedence level, the
// steps of a path and the branches of an If stand side by side in vectors, so that only brackets and blocks nest, and
// those the parser bounds.
#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "simhost/functions.h"
#include "simhost/value.h"

namespace rubrica::simhost {

struct Expr;
using ExprPtr = std::unique_ptr<Expr>;

struct Literal {
  Value value;
};

// What a bare word turned out to be.
struct Name {
  enum class Kind { Unresolved, Local, Global, Constant, Library, ExternalObjects, FileOps, ListReference };
  std::string name;
  Kind kind = Kind::Unresolved;
  std::size_t slot = 0;
  Value constant;
};

struct FunctionCall {
  const Function* function;
  std::vector<ExprPtr> arguments;
};

// `.name`, `.$name(arguments)`, `.3` and `.[expression]`.
struct Step {
  enum class Kind { Member, Call, Index } kind;
  std::string name;
  std::vector<ExprPtr> arguments;  // of a call; the one expression of an index
};

struct Path {
  std::variant<Name, FunctionCall, ExprPtr> base;
  std::vector<Step> steps;
};

struct Unary {
  enum class Operator { Minus, Not } op;
  ExprPtr operand;
};

enum class Operator {
  Or,
  And,
  Equal,
  NotEqual,
  Less,
  LessEqual,
  Greater,
  GreaterEqual,
  Add,
  Subtract,
  Multiply,
  Divide
};

// first op operand op operand ..., all of one precedence, from left to right.
struct Chain {
  ExprPtr first;
  std::vector<std::pair<Operator, ExprPtr>> rest;
};

struct Expr {
  std::variant<Literal, Path, Unary, Chain> node;
};

struct TypeSpec {
  Kind kind = Kind::Character;
  int subtype = 0;
  int length = 0;
  int places = -1;              // of a Number; -1 is floating
  std::string className;        // of an Object, without the library; empty when not named
  bool fieldReference = false;  // a parameter that stands for the caller's variable
};

struct Declaration {
  std::string name;
  TypeSpec type;
  ExprPtr initial;
  int line = 0;
};

struct Stmt;
using Block = std::vector<Stmt>;

struct DoStmt {
  ExprPtr expression;
  ExprPtr returns;
};
struct DoMethodStmt {
  std::string name;
  std::size_t method = 0;
  std::vector<ExprPtr> arguments;
  ExprPtr returns;
};
struct CalculateStmt {
  ExprPtr target;
  ExprPtr value;
};
struct IfStmt {
  struct Branch {
    ExprPtr condition;  // empty for Else
    int line;
    Block body;
  };
  std::vector<Branch> branches;
};
struct ForStmt {
  ExprPtr counter;
  ExprPtr from;
  ExprPtr to;
  ExprPtr step;  // may be empty
  Block body;
};
struct ForEachLineStmt {
  ExprPtr list;
  Block body;
};
struct WhileStmt {
  ExprPtr condition;
  Block body;
};
struct RepeatStmt {
  Block body;
  ExprPtr until;
  int untilLine;
};
struct SwitchStmt {
  struct Case {
    std::vector<ExprPtr> values;  // empty for Default
    int line;
    Block body;
  };
  ExprPtr subject;
  std::vector<Case> cases;
};
struct JumpStmt {
  enum class Kind { BreakLoop, BreakSwitch, ContinueLoop, QuitMethod, QuitAll } kind;
  ExprPtr value;  // of QuitMethod, may be empty
};
struct InitializeStmt {
  ExprPtr target;
  ExprPtr value;
};
struct OutputStmt {
  std::vector<ExprPtr> items;
};
struct SignalStmt {
  ExprPtr text;
};

struct Stmt {
  int line;
  std::variant<DoStmt, DoMethodStmt, CalculateStmt, IfStmt, ForStmt, ForEachLineStmt, WhileStmt, RepeatStmt, SwitchStmt,
               JumpStmt, InitializeStmt, OutputStmt, SignalStmt>
      node;
};

// The script itself is the method at position 0; its variables are visible in all others.
struct Method {
  std::string name;
  std::string object;                  // of `Method oBook.$error(...)`, else empty
  std::vector<Declaration> variables;  // parameters first
  std::size_t parameterCount = 0;
  Block body;
  int line = 0;
};

struct Program {
  std::vector<Method> methods;

  const Method& main() const { return methods.front(); }
  // The method `name` that overrides a method of the object variable; null without one.
  const Method* overrideOf(std::string_view object, std::string_view name) const {
    for (const Method& method : methods) {
      if (!method.object.empty() && sameName(method.object, object) && sameName(method.name, name)) return &method;
    }
    return nullptr;
  }
};

}  // namespace rubrica::simhost
