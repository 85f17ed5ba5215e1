#include "simhost/expression_parser.h"

#include <algorithm>
#include <array>
#include <span>

#include "simhost/script_error.h"

namespace rubrica::simhost {

namespace {

struct OperatorWord {
  std::string_view mark;
  Operator op;
};

constexpr std::array orWords = {OperatorWord{"|", Operator::Or}};
constexpr std::array andWords = {OperatorWord{"&", Operator::And}};
constexpr std::array compareWords = {OperatorWord{"=", Operator::Equal},   OperatorWord{"<>", Operator::NotEqual},
                                     OperatorWord{"<", Operator::Less},    OperatorWord{"<=", Operator::LessEqual},
                                     OperatorWord{">", Operator::Greater}, OperatorWord{">=", Operator::GreaterEqual}};
constexpr std::array addWords = {OperatorWord{"+", Operator::Add}, OperatorWord{"-", Operator::Subtract}};
constexpr std::array multiplyWords = {OperatorWord{"*", Operator::Multiply}, OperatorWord{"/", Operator::Divide}};

// From the loosest binding to the tightest.
constexpr std::array<std::span<const OperatorWord>, 5> levels = {orWords, andWords, compareWords, addWords,
                                                                 multiplyWords};

ExprPtr makeExpr(decltype(Expr::node) node) {
  return std::make_unique<Expr>(Expr{std::move(node)});
}

class Nesting {
 public:
  Nesting(int& depth, const ExpressionParser& parser) : _depth(depth) {
    if (++_depth > ExpressionParser::maxNesting) {
      --_depth;
      parser.fail("The expression nests more than " + std::to_string(ExpressionParser::maxNesting) + " brackets");
    }
  }
  ~Nesting() { --_depth; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;

 private:
  int& _depth;
};

}  // namespace

void ExpressionParser::fail(const std::string& message) const {
  throw ScriptError(message, _line);
}

std::string ExpressionParser::shown(const Token& token) const {
  switch (token.kind) {
    case Token::Kind::End:
      return "the end of the line";
    case Token::Kind::String:
      return "a text";
    default:
      return "'" + token.text + "'";
  }
}

bool ExpressionParser::take(std::string_view text) {
  const Token& token = peek();
  const bool matches = (token.kind == Token::Kind::Word && sameName(token.text, text)) ||
                       (token.kind == Token::Kind::Mark && token.text == text);
  if (matches) ++_at;
  return matches;
}

void ExpressionParser::expect(std::string_view text) {
  if (!take(text)) fail("Expected '" + std::string(text) + "' but found " + shown(peek()));
}

void ExpressionParser::expectEnd() {
  if (!atEnd()) fail("Expected the end of the line but found " + shown(peek()));
}

std::string ExpressionParser::takeWord() {
  return peek().kind == Token::Kind::Word ? next().text : std::string();
}

ExprPtr ExpressionParser::nameExpression(const std::string& name) {
  Path path;
  path.base = Name{name, Name::Kind::Unresolved, 0, {}};
  ExprPtr expression = makeExpr(std::move(path));
  _names.push_back({expression.get(), _method, _line});
  return expression;
}

ExprPtr ExpressionParser::expression() {
  const Nesting nesting(_nesting, *this);
  return chain(0);
}

ExprPtr ExpressionParser::chain(int level) {
  if (level == static_cast<int>(levels.size())) return operand();
  ExprPtr first = chain(level + 1);
  Chain node;
  while (true) {
    const Token& token = peek();
    const auto words = levels[static_cast<std::size_t>(level)];
    const auto word = std::find_if(words.begin(), words.end(), [&token](const OperatorWord& candidate) {
      return token.kind == Token::Kind::Mark && token.text == candidate.mark;
    });
    if (word == words.end()) break;
    ++_at;
    node.rest.emplace_back(word->op, chain(level + 1));
  }
  if (node.rest.empty()) return first;
  node.first = std::move(first);
  return makeExpr(std::move(node));
}

ExprPtr ExpressionParser::operand() {
  const Token& token = peek();
  const bool isNot = token.kind == Token::Kind::Word && sameName(token.text, "not") && peek(1).text != "(";
  if ((token.kind == Token::Kind::Mark && token.text == "-") || isNot) {
    const Nesting nesting(_nesting, *this);
    ++_at;
    return makeExpr(Unary{isNot ? Unary::Operator::Not : Unary::Operator::Minus, operand()});
  }
  if (token.kind == Token::Kind::Number || token.kind == Token::Kind::String) return makeExpr(Literal{next().value});
  return path();
}

ExprPtr ExpressionParser::path() {
  ExprPtr result;
  if (take("(")) {
    ExprPtr inner = expression();
    expect(")");
    if (peek().text != ".") return inner;
    Path node;
    node.base = std::move(inner);
    result = makeExpr(std::move(node));
  } else {
    if (peek().kind != Token::Kind::Word) fail("Expected a value but found " + shown(peek()));
    const std::string name = next().text;
    result = peek().text == "(" && peek().kind == Token::Kind::Mark ? functionCall(name) : nameExpression(name);
  }
  steps(std::get<Path>(result->node));
  return result;
}

ExprPtr ExpressionParser::functionCall(const std::string& name) {
  const Function* function = findFunction(name);
  if (function == nullptr) fail("Unknown function '" + name + "'");
  FunctionCall call{function, optionalArguments()};
  const std::size_t count = call.arguments.size();
  if (count < function->minArguments || count > function->maxArguments) {
    fail(std::string(function->name) + "() takes " + std::to_string(function->minArguments) +
         (function->maxArguments == function->minArguments ? ""
          : function->maxArguments == anyNumber            ? " or more"
                                                           : " to " + std::to_string(function->maxArguments)) +
         " parameters, not " + std::to_string(count));
  }
  Path path;
  path.base = std::move(call);
  return makeExpr(std::move(path));
}

std::vector<ExprPtr> ExpressionParser::optionalArguments() {
  if (!take("(")) return {};
  if (take(")")) return {};
  std::vector<ExprPtr> arguments = commaSeparated();
  expect(")");
  return arguments;
}

std::vector<ExprPtr> ExpressionParser::commaSeparated() {
  std::vector<ExprPtr> list;
  do {
    list.push_back(expression());
    if (list.size() > anyNumber) fail("There are more than " + std::to_string(anyNumber) + " parameters");
  } while (take(","));
  return list;
}

void ExpressionParser::steps(Path& path) {
  while (peek().kind == Token::Kind::Mark && peek().text == ".") {
    ++_at;
    path.steps.push_back(step());
  }
}

Step ExpressionParser::step() {
  Step step{Step::Kind::Index, {}, {}};
  if (peek().kind == Token::Kind::Number) {
    step.arguments.push_back(makeExpr(Literal{next().value}));
    return step;
  }
  if (take("[")) {
    step.arguments.push_back(expression());
    expect("]");
    return step;
  }
  step.kind = Step::Kind::Member;
  step.name = takeWord();
  if (step.name.empty()) fail("Expected a name after '.' but found " + shown(peek()));
  if (peek().kind == Token::Kind::Mark && peek().text == "(") {
    step.kind = Step::Kind::Call;
    step.arguments = optionalArguments();
  }
  return step;
}

ExprPtr ExpressionParser::target() {
  ExprPtr result = path();
  const auto* node = std::get_if<Path>(&result->node);
  const bool assignable = node != nullptr && std::holds_alternative<Name>(node->base) &&
                          (node->steps.empty() || node->steps.back().kind != Step::Kind::Call);
  if (!assignable) fail("Expected a variable or a property to assign to");
  return result;
}

ExprPtr interpolated(std::string_view text, int line, std::size_t method, std::vector<NameUse>& names) {
  FunctionCall con{findFunction("con"), {}};
  while (!text.empty()) {
    const std::size_t open = text.find('[');
    if (open != 0) con.arguments.push_back(makeExpr(Literal{Value::utf8(text.substr(0, open))}));
    if (open == std::string_view::npos) break;
    std::size_t close = open + 1;
    char quote = 0;
    for (int depth = 1; close < text.size(); ++close) {
      const char c = text[close];
      if (quote != 0) {
        if (c == quote) quote = 0;
      } else if (c == '\'' || c == '"') {
        quote = c;
      } else if (c == '[') {
        ++depth;
      } else if (c == ']' && --depth == 0) {
        break;
      }
    }
    if (close >= text.size()) throw ScriptError("A '[' in the text has no ']'", line);
    ExpressionParser inner(text.substr(open + 1, close - open - 1), line, method, names);
    con.arguments.push_back(inner.expression());
    inner.expectEnd();
    text.remove_prefix(close + 1);
    if (con.arguments.size() > anyNumber) throw ScriptError("The text holds too many values", line);
  }
  Path path;
  path.base = std::move(con);
  return makeExpr(std::move(path));
}

}  // namespace rubrica::simhost
