// Parses expressions and paths from the tokens of one line. The parser of statements drives it, and resolves the bare
// words that it collects once all variables are known.
#pragma once

#include <string_view>
#include <vector>

#include "simhost/ast.h"
#include "simhost/lexer.h"

namespace rubrica::simhost {

// A bare word that waits to be resolved: an expression whose node is a Path with a Name as its base.
struct NameUse {
  Expr* expression;
  std::size_t method;
  int line;
};

class ExpressionParser {
 public:
  // Brackets nest at most this deep.
  static constexpr int maxNesting = 100;

  ExpressionParser(std::string_view text, int line, std::size_t method, std::vector<NameUse>& names)
      : _tokens(tokensOf(text, line)), _line(line), _method(method), _names(names) {}

  ExprPtr expression();
  // Something that can be assigned to: a name with its steps.
  ExprPtr target();
  // `name`, `name(arguments)`: the arguments of a call that isn't a function.
  std::vector<ExprPtr> optionalArguments();
  std::vector<ExprPtr> commaSeparated();

  // Takes the word or mark if it is next.
  bool take(std::string_view text);
  void expect(std::string_view text);
  bool atEnd() const { return peek().kind == Token::Kind::End; }
  void expectEnd();
  // The next word, "" when something else is next.
  std::string takeWord();
  const Token& peek(std::size_t ahead = 0) const { return _tokens[std::min(_at + ahead, _tokens.size() - 1)]; }
  Token next() { return _at < _tokens.size() ? _tokens[_at++] : Token(); }
  [[noreturn]] void fail(const std::string& message) const;

  // An expression for a variable of the script, to be resolved with the others.
  ExprPtr nameExpression(const std::string& name);

 private:
  ExprPtr chain(int level);
  ExprPtr operand();
  ExprPtr path();
  ExprPtr functionCall(const std::string& name);
  void steps(Path& path);
  Step step();
  std::string shown(const Token& token) const;

  std::vector<Token> _tokens;
  std::size_t _at = 0;
  int _line;
  int _nesting = 0;
  std::size_t _method;
  std::vector<NameUse>& _names;
};

// A literal text in which every `[expression]` stands for its value, as the call con(...) that builds it.
ExprPtr interpolated(std::string_view text, int line, std::size_t method, std::vector<NameUse>& names);

}  // namespace rubrica::simhost
