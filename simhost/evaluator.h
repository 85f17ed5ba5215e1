// Evaluates expressions and assigns to paths: `lList.[i].name`, `oBook.$getSheet(1).$cell(2,'B').$value`. Owned by the
// interpreter, which sets the frame of the method that runs; knows objects through the Instance interface alone.
#pragma once

#include <string>
#include <vector>

#include "simhost/ast.h"
#include "simhost/list_notation.h"
#include "simhost/variables.h"

namespace rubrica::simhost {

class Instance;
class ObjectSource;

// Counts how deep calls, blocks and brackets nest while a script runs, so that a runaway recursion ends in a message
// long before the stack does.
class Depth {
 public:
  static constexpr int most = 1600;

  explicit Depth(int& depth);
  ~Depth() { --_depth; }
  Depth(const Depth&) = delete;
  Depth& operator=(const Depth&) = delete;

 private:
  int& _depth;
};

class Evaluator {
 public:
  Evaluator(ObjectSource* source, Variables& variables, std::string scriptFolder)
      : _source(source), _variables(variables), _scriptFolder(std::move(scriptFolder)) {}

  Value evaluate(const Expr& expression);
  std::vector<Value> evaluateAll(const std::vector<ExprPtr>& expressions);
  void assign(const Expr& target, const Value& value);
  // The variable behind a target without steps, else null.
  Variable* variableOf(const Expr& expression);
  // A loop over the lines of a list: their number, and which one is current.
  std::size_t lineCount(const Expr& list);
  void setCurrentLine(const Expr& list, std::size_t line);

  void setFrames(Frame* globals, Frame* locals) {
    _globals = globals;
    _locals = locals;
  }
  Frame* locals() const { return _locals; }
  int& depth() { return _depth; }

 private:
  // A step of navigation with the value of its index.
  struct Pending {
    const Step* step;
    Value index;
  };
  // Where notation stands: a value, or a part of the list in it.
  struct Place {
    Value* value = nullptr;
    ListPlace part;
    // The list and cell that `value` was taken from; null when it isn't a cell.
    List* owner = nullptr;
    std::size_t line = 0;
    std::size_t column = 0;
    bool isPart() const { return part.part != ListPlace::Part::Whole; }
  };
  // Holds the start of a walk: a variable's value, or the result of the last call.
  struct Walk {
    Value* start = nullptr;
    Value result;
    std::vector<Pending> pending;
    Value missing;

    void restart(Value value) {
      result = std::move(value);
      start = &result;
      pending.clear();
    }
  };

  Value evaluatePath(const Path& path);
  Value evaluateChain(const Chain& chain);
  Value callFunction(const FunctionCall& call);
  Value callSpecial(const FunctionCall& call);
  Value makeList(const FunctionCall& call, bool row);
  Value listCell(const FunctionCall& call);
  Value fileFunction(const FunctionCall& call);

  // Begins a walk at the path's base; answers how many steps that took.
  std::size_t begin(Walk& walk, const Path& path);
  std::size_t beginAtName(Walk& walk, const Path& path, const Name& name);
  std::size_t beginAtLibrary(Walk& walk, const Path& path);
  std::size_t beginAtExternalObjects(Walk& walk, const Path& path);
  std::size_t beginAtFileOps(Walk& walk, const Path& path);
  // Goes over the steps before `end`; what is left of them to navigate stands in walk.pending.
  void advance(Walk& walk, const Path& path, std::size_t end);
  Place navigate(Walk& walk, bool forWriting);
  void navigateStep(Place& place, const Pending& pending, Walk& walk, bool forWriting);
  void navigateColumn(Place& place, std::size_t column, Walk& walk, bool forWriting);
  Value read(const Place& place);

  Value act(Walk& walk, const Step& step);
  Value callObject(const std::shared_ptr<Instance>& instance, const Step& step);
  Value callReference(Walk& walk, const Step& step);
  Value callList(Walk& walk, const Step& step);
  Value searchList(Walk& walk, const Step& step);
  Value loadColumns(Walk& walk, const Step& step);
  std::vector<Column> columnsNamed(const std::vector<ExprPtr>& names);
  std::vector<List::SortKey> sortKeys(Walk& walk, const Step& step);
  void assignSteps(const Path& path, std::size_t count, const Value& value);
  void assignPlace(Walk& walk, const Step& last, const Value& value);
  Variable& variable(const Name& name);

  ObjectSource* _source;
  Variables& _variables;
  std::string _scriptFolder;
  Frame* _globals = nullptr;
  Frame* _locals = nullptr;
  int _depth = 0;
  // The list and line that `$ref` means inside of $search().
  Value _searched;
  std::size_t _searchedLine = 0;
};

}  // namespace rubrica::simhost
