// Runs a parsed script: statements, loops, methods and the overrides that objects call back. One interpreter runs one
// script; it owns the script's variables and so the instances in them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "simhost/ast.h"
#include "simhost/evaluator.h"
#include "simhost/variables.h"

namespace rubrica::simhost {

class ObjectSource;

struct RunOptions {
  // Takes one printed line, without its end.
  std::function<void(const std::string& line)> print;
  // Values of the script's parameters, in order.
  std::vector<std::string> arguments;
  std::string scriptFolder;
};

class Interpreter {
 public:
  // `source` may be null for a script without objects; both it and the program outlive the interpreter.
  Interpreter(const Program& program, ObjectSource* source, RunOptions options);

  // Throws ScriptError, with its line, for a failure of the script.
  void run();
  // The line of the statement that is under way.
  int line() const { return _line; }

 private:
  enum class Flow { Next, BreakLoop, BreakSwitch, ContinueLoop, QuitMethod, QuitAll };

  Flow execute(const Block& block);
  Flow execute(const Stmt& stmt);
  Flow run(const DoStmt& stmt);
  Flow run(const DoMethodStmt& stmt);
  Flow run(const CalculateStmt& stmt);
  Flow run(const IfStmt& stmt);
  Flow run(const ForStmt& stmt);
  Flow run(const ForEachLineStmt& stmt);
  Flow run(const WhileStmt& stmt);
  Flow run(const RepeatStmt& stmt);
  Flow run(const SwitchStmt& stmt);
  Flow run(const JumpStmt& stmt);
  Flow run(const InitializeStmt& stmt);
  Flow run(const OutputStmt& stmt);
  Flow run(const SignalStmt& stmt);

  Value callMethod(const Method& method, const std::vector<ExprPtr>& arguments);
  void bindArguments(const Method& method, Frame& frame, const std::vector<ExprPtr>& arguments);
  void copyBack(const Method& method, Frame& frame, const std::vector<ExprPtr>& arguments);
  void setDefaults(const Method& method, Frame& frame, std::size_t given);
  // `given` parameters have their values; the others get their defaults.
  Value enter(const Method& method, Frame& frame, std::size_t given);
  void callOverride(const Method& method, const std::vector<Value>& values);

  const Program& _program;
  RunOptions _options;
  Variables _variables;
  Evaluator _evaluator;
  Frame _globals;
  Value _returned;
  bool _quitAll = false;
  int _line = 0;
};

}  // namespace rubrica::simhost
