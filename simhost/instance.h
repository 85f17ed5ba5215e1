// What the script language knows of objects: an instance answers methods and properties by name, and an object source
// makes instances and names constants. The interpreter is written against these two alone; the component behind them
// is component_host.h's business, and tests put plain classes here.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simhost/value.h"

namespace rubrica::simhost {

// The parameters of a method call. The callee marks those that it gave a new value and that the method declares as
// passed by reference.
struct Arguments {
  std::vector<Value> values;
  std::vector<bool> changed;
};

class Instance {
 public:
  virtual ~Instance() = default;

  virtual const std::string& className() const = 0;
  virtual bool hasMethod(std::string_view name) const = 0;
  virtual bool hasProperty(std::string_view name) const = 0;

  // Throws ScriptError when there is no such method or property.
  virtual Value call(std::string_view name, Arguments& arguments) = 0;
  virtual Value property(std::string_view name) = 0;
  // Throws when the property may not be assigned.
  virtual void setProperty(std::string_view name, const Value& value) = 0;

  // Makes this instance a copy of another of the same class; its own identity stays.
  virtual void copyFrom(Instance& other) = 0;

  // Called when the object reports an error: code, description, long text, method name. Without a handler the source's
  // own default applies.
  using ErrorHandler = std::function<void(const std::vector<Value>& values)>;
  virtual void setErrorHandler(ErrorHandler handler) = 0;
};

class ObjectSource {
 public:
  virtual ~ObjectSource() = default;

  // The name that classes are qualified with ("Tabulix.Workbook") and static methods are called on.
  virtual std::string libraryName() const = 0;
  // Class names without the library; false for an unknown one.
  virtual bool hasClass(std::string_view name) const = 0;
  virtual std::shared_ptr<Instance> create(std::string_view className) = 0;
  virtual std::optional<Value> constant(std::string_view name) const = 0;
  virtual Value callStatic(std::string_view method, Arguments& arguments) = 0;
  virtual bool hasStatic(std::string_view method) const = 0;
};

}  // namespace rubrica::simhost
