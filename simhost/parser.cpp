#include "simhost/parser.h"

#include <array>
#include <optional>

#include "simhost/expression_parser.h"
#include "simhost/instance.h"
#include "simhost/lexer.h"
#include "simhost/resolver.h"
#include "simhost/script_error.h"
#include "simhost/type_parser.h"

namespace rubrica::simhost {

namespace {

enum class Command {
  DoMethod,
  Do,
  Calculate,
  If,
  ElseIf,
  Else,
  EndIf,
  For,
  ForEachLine,
  EndFor,
  While,
  EndWhile,
  Repeat,
  Until,
  Switch,
  Case,
  Default,
  EndSwitch,
  BreakLoop,
  BreakSwitch,
  ContinueLoop,
  QuitMethod,
  QuitAll,
  Variable,
  Parameter,
  Method,
  EndMethod,
  Trace,
  Print,
  Message,
  Signal
};

struct CommandWord {
  std::string_view words;
  Command command;
};

// Longer phrases stand before those that they begin with.
constexpr std::array commandWords = {
    CommandWord{"do method", Command::DoMethod},
    CommandWord{"do", Command::Do},
    CommandWord{"calculate", Command::Calculate},
    CommandWord{"if", Command::If},
    CommandWord{"else if", Command::ElseIf},
    CommandWord{"else", Command::Else},
    CommandWord{"end if", Command::EndIf},
    CommandWord{"for each line in list", Command::ForEachLine},
    CommandWord{"for", Command::For},
    CommandWord{"end for", Command::EndFor},
    CommandWord{"while", Command::While},
    CommandWord{"end while", Command::EndWhile},
    CommandWord{"repeat", Command::Repeat},
    CommandWord{"until", Command::Until},
    CommandWord{"switch", Command::Switch},
    CommandWord{"case", Command::Case},
    CommandWord{"default", Command::Default},
    CommandWord{"end switch", Command::EndSwitch},
    CommandWord{"break to end of loop", Command::BreakLoop},
    CommandWord{"break to end of switch", Command::BreakSwitch},
    CommandWord{"jump to start of loop", Command::ContinueLoop},
    CommandWord{"quit method", Command::QuitMethod},
    CommandWord{"quit all methods", Command::QuitAll},
    CommandWord{"var", Command::Variable},
    CommandWord{"local variable", Command::Variable},
    CommandWord{"parameter", Command::Parameter},
    CommandWord{"method", Command::Method},
    CommandWord{"end method", Command::EndMethod},
    CommandWord{"send to trace log", Command::Trace},
    CommandWord{"print", Command::Print},
    CommandWord{"ok message", Command::Message},
    CommandWord{"signal error", Command::Signal},
};

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

// The length of the line's beginning that spells the phrase, with any spaces between its words; 0 when it doesn't.
std::size_t lengthOfPhrase(std::string_view line, std::string_view phrase) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < phrase.size(); ++i) {
    if (phrase[i] == ' ') {
      if (at >= line.size() || !isBlank(line[at])) return 0;
      while (at < line.size() && isBlank(line[at])) ++at;
    } else {
      if (at >= line.size() || !sameName(line.substr(at, 1), phrase.substr(i, 1))) return 0;
      ++at;
    }
  }
  const bool ends = at == line.size() || isBlank(line[at]) || line[at] == '(' || line[at] == '{' || line[at] == '\'' ||
                    line[at] == '"';
  return ends ? at : 0;
}

class Parser {
 public:
  Parser(std::string_view script, const ObjectSource* source) : _lines(linesOf(script)), _source(source) {}

  Program run() {
    _program.methods.emplace_back();
    while (_at < _lines.size()) {
      if (commandOf(line()) == Command::Method) {
        parseMethod();
      } else {
        parseStatement(_program.methods.front().body);
      }
    }
    resolveWords(_program, _names, _source);
    return std::move(_program);
  }

 private:
  static constexpr int maxNesting = 60;

  const SourceLine& line() const { return _lines[_at]; }
  Method& method() { return _program.methods[_method]; }
  [[noreturn]] void fail(const std::string& message) const { throw ScriptError(message, line().number); }

  static std::optional<Command> commandOf(const SourceLine& line, std::string_view* rest = nullptr) {
    for (const CommandWord& word : commandWords) {
      const std::size_t length = lengthOfPhrase(line.text, word.words);
      if (length == 0) continue;
      if (rest != nullptr) *rest = std::string_view(line.text).substr(length);
      return word.command;
    }
    return std::nullopt;
  }

  ExpressionParser wordsOf(std::string_view text) { return {text, line().number, _method, _names}; }
  ExprPtr wholeExpression(std::string_view text) {
    ExpressionParser words = wordsOf(text);
    ExprPtr result = words.expression();
    words.expectEnd();
    return result;
  }

  void parseMethod();
  void parseMethodHeader(std::string_view rest);
  void parseStatement(Block& block);
  void parseBlockStatement(Command command, std::string_view rest, Block& block);
  void parseSimpleStatement(Command command, std::string_view rest, Block& block);
  void parseDo(ExpressionParser& words, Block& block);
  void parseDoMethod(ExpressionParser& words, Block& block);
  void parseIf(std::string_view rest, Block& block);
  void parseSwitch(std::string_view rest, Block& block);
  void parseFor(std::string_view rest, Block& block);
  void parseDeclarations(std::string_view rest, bool parameter, Block& block);
  void declare(Declaration declaration);
  ExprPtr textOperand(std::string_view rest);
  void parseJump(Command command, std::string_view rest, Block& block);

  // Statements up to one of the two ends, which is left for the caller to take.
  Block body(const SourceLine& opening, Command end, std::optional<Command> otherEnd = std::nullopt,
             std::optional<Command> thirdEnd = std::nullopt);
  void takeEnd(bool bare = true) {
    std::string_view rest;
    commandOf(line(), &rest);
    if (bare) wordsOf(rest).expectEnd();
    ++_at;
  }

  std::vector<SourceLine> _lines;
  const ObjectSource* _source;
  Program _program;
  std::vector<NameUse> _names;
  std::size_t _at = 0;
  std::size_t _method = 0;
  int _nesting = 0;
  int _loops = 0;
  int _switches = 0;
};

Block Parser::body(const SourceLine& opening, Command end, std::optional<Command> otherEnd,
                   std::optional<Command> thirdEnd) {
  if (_nesting >= maxNesting) {
    throw ScriptError("Blocks nest more than " + std::to_string(maxNesting) + " deep", opening.number);
  }
  ++_nesting;
  Block block;
  while (true) {
    if (_at >= _lines.size()) throw ScriptError("'" + opening.text + "' has no end", opening.number);
    const auto command = commandOf(line());
    if (command && (command == end || command == otherEnd || command == thirdEnd)) break;
    parseStatement(block);
  }
  --_nesting;
  return block;
}

void Parser::parseMethodHeader(std::string_view rest) {
  ExpressionParser words = wordsOf(rest);
  std::string name = words.takeWord();
  if (name.empty()) words.fail("A method needs a name");
  if (words.take(".")) {
    method().object = name;
    name = words.takeWord();
    if (name.empty()) words.fail("A method needs a name after '.'");
  }
  method().name = name;
  for (const Method& other : _program.methods) {
    if (&other != &method() && sameName(other.name, name) && sameName(other.object, method().object)) {
      words.fail("There is a method '" + name + "' already, at line " + std::to_string(other.line));
    }
  }
  if (words.take("(") && !words.take(")")) {
    do {
      Declaration parameter;
      parameter.name = words.takeWord();
      parameter.line = line().number;
      if (parameter.name.empty()) words.fail("A parameter needs a name");
      parameter.type = parseType(words, _source);
      if (words.take("=")) parameter.initial = words.expression();
      declare(std::move(parameter));
    } while (words.take(","));
    words.expect(")");
  }
  words.expectEnd();
  method().parameterCount = method().variables.size();
}

void Parser::parseMethod() {
  const SourceLine opening = line();
  std::string_view rest;
  commandOf(opening, &rest);
  _program.methods.emplace_back();
  _method = _program.methods.size() - 1;
  method().line = opening.number;
  parseMethodHeader(rest);
  ++_at;
  Block block = body(opening, Command::EndMethod);
  takeEnd();
  method().body = std::move(block);
  _method = 0;
}

void Parser::parseStatement(Block& block) {
  std::string_view rest;
  const auto command = commandOf(line(), &rest);
  if (!command) {
    ExpressionParser words = wordsOf(line().text);
    const std::string word = words.takeWord();
    if (word.empty()) fail("Expected a command");
    if (words.peek().text == "." || words.peek().text == "(") {
      fail("Unknown command '" + word + "' (write: Do " + line().text.substr(0, 60) + ")");
    }
    fail("Unknown command '" + word + "'");
  }
  switch (*command) {
    case Command::If:
    case Command::For:
    case Command::ForEachLine:
    case Command::While:
    case Command::Repeat:
    case Command::Switch:
      parseBlockStatement(*command, rest, block);
      break;
    case Command::ElseIf:
    case Command::Else:
    case Command::EndIf:
    case Command::EndFor:
    case Command::EndWhile:
    case Command::Until:
    case Command::Case:
    case Command::Default:
    case Command::EndSwitch:
    case Command::EndMethod:
      fail("'" + line().text + "' belongs to nothing before it");
    case Command::Method:
      fail("A method can't stand within another one or within a block");
    default:
      parseSimpleStatement(*command, rest, block);
      ++_at;
  }
}

void Parser::parseBlockStatement(Command command, std::string_view rest, Block& block) {
  const SourceLine opening = line();
  if (command == Command::If) return parseIf(rest, block);
  if (command == Command::Switch) return parseSwitch(rest, block);
  ++_loops;
  if (command == Command::For) {
    parseFor(rest, block);
  } else if (command == Command::ForEachLine) {
    ExpressionParser words = wordsOf(rest);
    ForEachLineStmt loop{words.target(), {}};
    words.expectEnd();
    ++_at;
    loop.body = body(opening, Command::EndFor);
    takeEnd();
    block.push_back({opening.number, std::move(loop)});
  } else if (command == Command::While) {
    WhileStmt loop{wholeExpression(rest), {}};
    ++_at;
    loop.body = body(opening, Command::EndWhile);
    takeEnd();
    block.push_back({opening.number, std::move(loop)});
  } else {
    wordsOf(rest).expectEnd();
    ++_at;
    RepeatStmt loop{body(opening, Command::Until), nullptr, 0};
    loop.untilLine = line().number;
    std::string_view condition;
    commandOf(line(), &condition);
    loop.until = wholeExpression(condition);
    ++_at;
    block.push_back({opening.number, std::move(loop)});
  }
  --_loops;
}

void Parser::parseIf(std::string_view rest, Block& block) {
  const SourceLine opening = line();
  IfStmt node;
  IfStmt::Branch branch{wholeExpression(rest), opening.number, {}};
  ++_at;
  while (true) {
    branch.body = body(opening, Command::EndIf, Command::Else, Command::ElseIf);
    const bool wasElse = branch.condition == nullptr;
    node.branches.push_back(std::move(branch));
    std::string_view condition;
    const auto command = commandOf(line(), &condition);
    if (command == Command::EndIf) break;
    if (wasElse) fail("Nothing but 'End If' can follow 'Else'");
    branch = {command == Command::ElseIf ? wholeExpression(condition) : nullptr, line().number, {}};
    if (command == Command::Else) wordsOf(condition).expectEnd();
    ++_at;
  }
  takeEnd();
  block.push_back({opening.number, std::move(node)});
}

void Parser::parseSwitch(std::string_view rest, Block& block) {
  const SourceLine opening = line();
  SwitchStmt node{wholeExpression(rest), {}};
  ++_switches;
  ++_at;
  while (true) {
    if (_at >= _lines.size()) throw ScriptError("'" + opening.text + "' has no end", opening.number);
    std::string_view values;
    const auto command = commandOf(line(), &values);
    if (command == Command::EndSwitch) break;
    SwitchStmt::Case branch{{}, line().number, {}};
    ExpressionParser words = wordsOf(values);
    if (command == Command::Case) {
      branch.values = words.commaSeparated();
    } else if (command != Command::Default) {
      fail("Expected 'Case', 'Default' or 'End Switch'");
    }
    words.expectEnd();
    ++_at;
    std::optional<Command> otherCase = Command::Case;
    if (command == Command::Default) otherCase = std::nullopt;
    branch.body =
        body(opening, Command::EndSwitch, otherCase, otherCase ? std::optional(Command::Default) : std::nullopt);
    node.cases.push_back(std::move(branch));
  }
  takeEnd();
  --_switches;
  block.push_back({opening.number, std::move(node)});
}

void Parser::parseFor(std::string_view rest, Block& block) {
  const SourceLine opening = line();
  ExpressionParser words = wordsOf(rest);
  ForStmt loop;
  loop.counter = words.target();
  words.expect("from");
  loop.from = words.expression();
  words.expect("to");
  loop.to = words.expression();
  if (words.take("step")) loop.step = words.expression();
  words.expectEnd();
  ++_at;
  loop.body = body(opening, Command::EndFor);
  takeEnd();
  block.push_back({opening.number, std::move(loop)});
}

void Parser::parseDo(ExpressionParser& words, Block& block) {
  DoStmt node{words.expression(), nullptr};
  if (words.take("returns")) node.returns = words.target();
  words.expectEnd();
  block.push_back({line().number, std::move(node)});
}

void Parser::parseDoMethod(ExpressionParser& words, Block& block) {
  DoMethodStmt node;
  node.name = words.takeWord();
  if (node.name.empty()) words.fail("'Do method' needs the name of a method");
  node.arguments = words.optionalArguments();
  if (words.take("returns")) node.returns = words.target();
  words.expectEnd();
  block.push_back({line().number, std::move(node)});
}

void Parser::declare(Declaration declaration) {
  for (const Declaration& other : method().variables) {
    if (sameName(other.name, declaration.name)) {
      fail("There is a variable '" + declaration.name + "' already, at line " + std::to_string(other.line));
    }
  }
  method().variables.push_back(std::move(declaration));
}

void Parser::parseDeclarations(std::string_view rest, bool parameter, Block& block) {
  if (parameter && (_method != 0 || _nesting != 0)) fail("A method's parameters stand in its first line");
  if (parameter && method().parameterCount != method().variables.size())
    fail("Parameters stand before other variables");
  ExpressionParser words = wordsOf(rest);
  std::vector<std::string> names;
  do {
    names.push_back(words.takeWord());
    if (names.back().empty()) words.fail("A declaration needs the name of a variable");
  } while (words.take(","));
  const TypeSpec type = parseType(words, _source);
  if (type.fieldReference) fail("Only a parameter of a method can be a field reference");
  const bool initialized = words.take("=") || words.take("init");
  if (initialized && names.size() > 1) fail("Only one variable at a time can be given a value");
  ExprPtr initial = initialized ? words.expression() : nullptr;
  words.expectEnd();
  for (const std::string& name : names) {
    Declaration declaration{name, type, parameter ? std::move(initial) : nullptr, line().number};
    declare(std::move(declaration));
  }
  if (parameter) {
    method().parameterCount = method().variables.size();
  } else if (initial) {
    block.push_back({line().number, InitializeStmt{words.nameExpression(names.front()), std::move(initial)}});
  }
}

// The text of `Send to trace log {text [expression]}`: in braces or not, after an optional `(options)`.
ExprPtr Parser::textOperand(std::string_view rest) {
  const auto trim = [&rest] {
    while (!rest.empty() && isBlank(rest.front())) rest.remove_prefix(1);
  };
  trim();
  if (rest.starts_with('(') && rest.find('{') != std::string_view::npos && rest.find(')') < rest.find('{')) {
    rest.remove_prefix(rest.find(')') + 1);
    trim();
  }
  if (rest.starts_with('{')) {
    if (!rest.ends_with('}')) fail("The text that begins with '{' has no '}'");
    rest = rest.substr(1, rest.size() - 2);
  }
  return interpolated(rest, line().number, _method, _names);
}

void Parser::parseJump(Command command, std::string_view rest, Block& block) {
  JumpStmt node{JumpStmt::Kind::QuitAll, nullptr};
  ExpressionParser words = wordsOf(rest);
  if (command == Command::BreakLoop || command == Command::ContinueLoop) {
    if (_loops == 0) fail("There is no loop around this command");
    node.kind = command == Command::BreakLoop ? JumpStmt::Kind::BreakLoop : JumpStmt::Kind::ContinueLoop;
  } else if (command == Command::BreakSwitch) {
    if (_switches == 0) fail("There is no Switch around this command");
    node.kind = JumpStmt::Kind::BreakSwitch;
  } else if (command == Command::QuitMethod) {
    node.kind = JumpStmt::Kind::QuitMethod;
    words.take("returns");
    if (!words.atEnd()) node.value = words.expression();
  }
  words.expectEnd();
  block.push_back({line().number, std::move(node)});
}

void Parser::parseSimpleStatement(Command command, std::string_view rest, Block& block) {
  const int number = line().number;
  switch (command) {
    case Command::Trace:
    case Command::Message: {
      OutputStmt node;
      node.items.push_back(textOperand(rest));
      block.push_back({number, std::move(node)});
      return;
    }
    case Command::Signal:
      block.push_back({number, SignalStmt{textOperand(rest)}});
      return;
    case Command::Variable:
      return parseDeclarations(rest, false, block);
    case Command::Parameter:
      return parseDeclarations(rest, true, block);
    case Command::BreakLoop:
    case Command::BreakSwitch:
    case Command::ContinueLoop:
    case Command::QuitMethod:
    case Command::QuitAll:
      return parseJump(command, rest, block);
    default:
      break;
  }
  ExpressionParser words = wordsOf(rest);
  if (command == Command::DoMethod) return parseDoMethod(words, block);
  if (command == Command::Do) return parseDo(words, block);
  if (command == Command::Print) {
    OutputStmt node;
    if (!words.atEnd()) node.items = words.commaSeparated();
    words.expectEnd();
    block.push_back({number, std::move(node)});
    return;
  }
  CalculateStmt node;
  node.target = words.target();
  words.expect("as");
  node.value = words.expression();
  words.expectEnd();
  block.push_back({number, std::move(node)});
}

}  // namespace

Program parseScript(std::string_view script, const ObjectSource* source) {
  return Parser(script, source).run();
}

}  // namespace rubrica::simhost
