#include "simhost/interpreter.h"

#include <utility>

#include "simhost/instance.h"
#include "simhost/operators.h"
#include "simhost/script_error.h"

namespace rubrica::simhost {

Interpreter::Interpreter(const Program& program, ObjectSource* source, RunOptions options)
    : _program(program),
      _options(std::move(options)),
      _variables(source,
                 [this](const std::string& variable, Instance& instance) {
                   const Method* method = _program.overrideOf(variable, "$error");
                   if (method == nullptr) return;
                   instance.setErrorHandler(
                       [this, method](const std::vector<Value>& values) { callOverride(*method, values); });
                 }),
      _evaluator(source, _variables, _options.scriptFolder) {}

void Interpreter::run() {
  const Method& main = _program.main();
  _globals = _variables.makeFrame(main);
  _evaluator.setFrames(&_globals, &_globals);
  if (_options.arguments.size() > main.parameterCount) {
    throw ScriptError("The script takes " + std::to_string(main.parameterCount) + " parameters, not " +
                      std::to_string(_options.arguments.size()));
  }
  for (std::size_t i = 0; i < _options.arguments.size(); ++i) {
    _variables.assign(_globals[i], Value::utf8(_options.arguments[i]));
  }
  setDefaults(main, _globals, _options.arguments.size());
  execute(main.body);
}

void Interpreter::setDefaults(const Method& method, Frame& frame, std::size_t given) {
  for (std::size_t i = given; i < method.parameterCount; ++i) {
    const Declaration& declaration = method.variables[i];
    if (declaration.initial != nullptr) _variables.assign(frame[i], _evaluator.evaluate(*declaration.initial));
  }
}

Interpreter::Flow Interpreter::execute(const Block& block) {
  const Depth depth(_evaluator.depth());
  for (const Stmt& stmt : block) {
    _line = stmt.line;
    Flow flow = Flow::Next;
    try {
      flow = execute(stmt);
    } catch (ScriptError& error) {
      error.setLine(_line);
      throw;
    }
    // An override that an object called may have ended the script.
    if (_quitAll) return Flow::QuitAll;
    if (flow != Flow::Next) return flow;
  }
  return Flow::Next;
}

Interpreter::Flow Interpreter::execute(const Stmt& stmt) {
  return std::visit([this](const auto& node) { return run(node); }, stmt.node);
}

Interpreter::Flow Interpreter::run(const DoStmt& stmt) {
  const Value value = _evaluator.evaluate(*stmt.expression);
  if (stmt.returns != nullptr) _evaluator.assign(*stmt.returns, value);
  return Flow::Next;
}

Interpreter::Flow Interpreter::run(const DoMethodStmt& stmt) {
  const int line = _line;
  const Value value = callMethod(_program.methods[stmt.method], stmt.arguments);
  _line = line;
  if (_quitAll) return Flow::QuitAll;
  if (stmt.returns != nullptr) _evaluator.assign(*stmt.returns, value);
  return Flow::Next;
}

Interpreter::Flow Interpreter::run(const CalculateStmt& stmt) {
  _evaluator.assign(*stmt.target, _evaluator.evaluate(*stmt.value));
  return Flow::Next;
}

Interpreter::Flow Interpreter::run(const InitializeStmt& stmt) {
  _evaluator.assign(*stmt.target, _evaluator.evaluate(*stmt.value));
  return Flow::Next;
}

Interpreter::Flow Interpreter::run(const IfStmt& stmt) {
  for (const IfStmt::Branch& branch : stmt.branches) {
    _line = branch.line;
    if (branch.condition == nullptr || _evaluator.evaluate(*branch.condition).toBoolean()) return execute(branch.body);
  }
  return Flow::Next;
}

Interpreter::Flow Interpreter::run(const ForStmt& stmt) {
  const int line = _line;
  const Value one = Value::integer(1);
  Value counter = _evaluator.evaluate(*stmt.from);
  const Value last = _evaluator.evaluate(*stmt.to);
  const Value step = stmt.step == nullptr ? one : _evaluator.evaluate(*stmt.step);
  const double direction = step.toNumber();
  if (!(direction > 0 || direction < 0)) throw ScriptError("The step of a For loop can't be 0");
  while (true) {
    // A counter such as $line can't hold a number past the end, so that the number itself is what counts.
    const int order = compareValues(Value::number(counter.toNumber()), Value::number(last.toNumber()));
    if (order == 2 || (direction > 0 ? order > 0 : order < 0)) break;
    _evaluator.assign(*stmt.counter, counter);
    const Flow flow = execute(stmt.body);
    if (flow == Flow::BreakLoop) break;
    if (flow != Flow::Next && flow != Flow::ContinueLoop) return flow;
    _line = line;
    counter = applied(Operator::Add, _evaluator.evaluate(*stmt.counter), step);
  }
  return Flow::Next;
}

Interpreter::Flow Interpreter::run(const ForEachLineStmt& stmt) {
  const int line = _line;
  for (std::size_t i = 1; i <= _evaluator.lineCount(*stmt.list); ++i) {
    _evaluator.setCurrentLine(*stmt.list, i);
    const Flow flow = execute(stmt.body);
    if (flow == Flow::BreakLoop) break;
    if (flow != Flow::Next && flow != Flow::ContinueLoop) return flow;
    _line = line;
  }
  return Flow::Next;
}

Interpreter::Flow Interpreter::run(const WhileStmt& stmt) {
  const int line = _line;
  while (_evaluator.evaluate(*stmt.condition).toBoolean()) {
    const Flow flow = execute(stmt.body);
    if (flow == Flow::BreakLoop) break;
    if (flow != Flow::Next && flow != Flow::ContinueLoop) return flow;
    _line = line;
  }
  return Flow::Next;
}

Interpreter::Flow Interpreter::run(const RepeatStmt& stmt) {
  do {
    const Flow flow = execute(stmt.body);
    if (flow == Flow::BreakLoop) break;
    if (flow != Flow::Next && flow != Flow::ContinueLoop) return flow;
    _line = stmt.untilLine;
  } while (!_evaluator.evaluate(*stmt.until).toBoolean());
  return Flow::Next;
}

Interpreter::Flow Interpreter::run(const SwitchStmt& stmt) {
  const Value subject = _evaluator.evaluate(*stmt.subject);
  for (const SwitchStmt::Case& branch : stmt.cases) {
    _line = branch.line;
    bool matches = branch.values.empty();
    for (const ExprPtr& value : branch.values) {
      matches = matches || compareValues(subject, _evaluator.evaluate(*value)) == 0;
    }
    if (!matches) continue;
    const Flow flow = execute(branch.body);
    return flow == Flow::BreakSwitch ? Flow::Next : flow;
  }
  return Flow::Next;
}

Interpreter::Flow Interpreter::run(const JumpStmt& stmt) {
  switch (stmt.kind) {
    case JumpStmt::Kind::BreakLoop:
      return Flow::BreakLoop;
    case JumpStmt::Kind::BreakSwitch:
      return Flow::BreakSwitch;
    case JumpStmt::Kind::ContinueLoop:
      return Flow::ContinueLoop;
    case JumpStmt::Kind::QuitMethod:
      _returned = stmt.value == nullptr ? Value() : _evaluator.evaluate(*stmt.value);
      return Flow::QuitMethod;
    case JumpStmt::Kind::QuitAll:
      break;
  }
  _quitAll = true;
  return Flow::QuitAll;
}

Interpreter::Flow Interpreter::run(const OutputStmt& stmt) {
  std::string line;
  for (const ExprPtr& item : stmt.items) {
    if (&item != &stmt.items.front()) line += ' ';
    line += _evaluator.evaluate(*item).toUtf8();
  }
  _options.print(line);
  return Flow::Next;
}

Interpreter::Flow Interpreter::run(const SignalStmt& stmt) {
  throw ScriptError(_evaluator.evaluate(*stmt.text).toUtf8());
}

Value Interpreter::callMethod(const Method& method, const std::vector<ExprPtr>& arguments) {
  const Depth depth(_evaluator.depth());
  if (arguments.size() > method.parameterCount) {
    throw ScriptError("Method '" + method.name + "' takes " + std::to_string(method.parameterCount) +
                      " parameters, not " + std::to_string(arguments.size()));
  }
  Frame frame = _variables.makeFrame(method);
  bindArguments(method, frame, arguments);
  Value returned = enter(method, frame, arguments.size());
  copyBack(method, frame, arguments);
  return returned;
}

void Interpreter::bindArguments(const Method& method, Frame& frame, const std::vector<ExprPtr>& arguments) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    Variable* variable = _evaluator.variableOf(*arguments[i]);
    if (method.variables[i].type.fieldReference && variable != nullptr) {
      frame[i].alias = variable;
    } else {
      _variables.assign(frame[i], _evaluator.evaluate(*arguments[i]));
    }
  }
}

// A field reference to something that isn't a variable, such as a list's cell, works on a copy that returns here.
void Interpreter::copyBack(const Method& method, Frame& frame, const std::vector<ExprPtr>& arguments) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (!method.variables[i].type.fieldReference || frame[i].alias != nullptr) continue;
    const auto* path = std::get_if<Path>(&arguments[i]->node);
    const auto* name = path == nullptr ? nullptr : std::get_if<Name>(&path->base);
    const bool variable = name != nullptr && (name->kind == Name::Kind::Local || name->kind == Name::Kind::Global);
    if (variable && path->steps.back().kind != Step::Kind::Call) _evaluator.assign(*arguments[i], frame[i].value);
  }
}

Value Interpreter::enter(const Method& method, Frame& frame, std::size_t given) {
  Frame* outer = _evaluator.locals();
  _evaluator.setFrames(&_globals, &frame);
  _returned = Value();
  try {
    setDefaults(method, frame, given);
    execute(method.body);
  } catch (...) {
    _evaluator.setFrames(&_globals, outer);
    throw;
  }
  _evaluator.setFrames(&_globals, outer);
  return std::exchange(_returned, Value());
}

void Interpreter::callOverride(const Method& method, const std::vector<Value>& values) {
  const Depth depth(_evaluator.depth());
  const int line = _line;
  Frame frame = _variables.makeFrame(method);
  for (std::size_t i = 0; i < std::min(values.size(), method.parameterCount); ++i)
    _variables.assign(frame[i], values[i]);
  const Value outerReturn = _returned;
  enter(method, frame, values.size());
  _returned = outerReturn;
  _line = line;
}

}  // namespace rubrica::simhost
