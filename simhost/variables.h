// The variables of a running script: one frame for the script, one for each method that is under way. Assignment
// follows the rules of the declared type; an object variable owns an instance of its own and copies into it.
#pragma once

#include <functional>
#include <vector>

#include "simhost/ast.h"

namespace rubrica::simhost {

class Instance;
class ObjectSource;

struct Variable {
  const Declaration* declaration = nullptr;
  Value value;
  // Of a field reference: the caller's variable, which this one stands for.
  Variable* alias = nullptr;

  Variable& target() { return alias != nullptr ? alias->target() : *this; }
};

// Sized when the method is entered, so that references to its variables hold until the method ends.
using Frame = std::vector<Variable>;

class Variables {
 public:
  // Told of each instance that a variable comes to own, under the variable's name.
  using InstanceWatcher = std::function<void(const std::string& variable, Instance& instance)>;

  Variables(ObjectSource* source, InstanceWatcher watcher) : _source(source), _watcher(std::move(watcher)) {}

  Frame makeFrame(const Method& method) const;

  // The variable's value. An object variable of a known class gets its instance when it is first used.
  Value& use(Variable& variable);
  void assign(Variable& variable, const Value& value);

  // An own instance with the content of another, for a list cell that holds an object. Null for null.
  std::shared_ptr<Instance> copied(const std::shared_ptr<Instance>& instance);
  // The value as a list cell of the kind keeps it: objects as copies of their own.
  Value forCell(const Value& value, Kind kind, int subtype);

 private:
  std::shared_ptr<Instance> create(const std::string& className, const std::string& variable);

  ObjectSource* _source;
  InstanceWatcher _watcher;
};

}  // namespace rubrica::simhost
