// The substitute host around one loaded component: connects it, learns its classes and constants, makes and destroys
// instances, and carries calls both ways. Scripts see it as an ObjectSource; the service tables see the rest.
//
// One thread at a time. A failure inside of a callback from the component, such as an error in a script's `$error`
// override, is kept until the message that led to it has returned, since no exception may cross the component.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "simhost/component_call.h"
#include "simhost/component_classes.h"
#include "simhost/component_module.h"
#include "simhost/instance.h"

namespace rubrica::simhost {

class ComponentHost;

// One object of the component, alive from `construct` to `destruct`.
class ComponentInstance : public Instance, public std::enable_shared_from_this<ComponentInstance> {
 public:
  ComponentInstance(ComponentHost& host, const ComponentClass& objectClass, host::ObjectHandle handle);
  ~ComponentInstance() override;
  ComponentInstance(const ComponentInstance&) = delete;
  ComponentInstance& operator=(const ComponentInstance&) = delete;

  const std::string& className() const override { return _class.name; }
  bool hasMethod(std::string_view name) const override { return _class.method(name) != nullptr; }
  bool hasProperty(std::string_view name) const override { return _class.property(name) != nullptr; }
  Value call(std::string_view name, Arguments& arguments) override;
  Value property(std::string_view name) override;
  void setProperty(std::string_view name, const Value& value) override;
  void copyFrom(Instance& other) override;
  void setErrorHandler(ErrorHandler handler) override { _errorHandler = std::move(handler); }

  host::ObjectHandle handle() const { return _handle; }
  const ErrorHandler& errorHandler() const { return _errorHandler; }

 private:
  const ComponentProperty& requiredProperty(std::string_view name) const;

  ComponentHost& _host;
  const ComponentClass& _class;
  host::ObjectHandle _handle;
  ErrorHandler _errorHandler;
};

class ComponentHost : public ObjectSource {
 public:
  // Loads the module and reads what it offers. Throws std::runtime_error when it is no component or can't be connected.
  explicit ComponentHost(const std::string& modulePath);
  ~ComponentHost() override;
  ComponentHost(const ComponentHost&) = delete;
  ComponentHost& operator=(const ComponentHost&) = delete;

  std::string libraryName() const override { return _libraryName; }
  bool hasClass(std::string_view name) const override { return classNamed(name) != nullptr; }
  std::shared_ptr<Instance> create(std::string_view className) override;
  std::optional<Value> constant(std::string_view name) const override;
  Value callStatic(std::string_view method, Arguments& arguments) override;
  bool hasStatic(std::string_view method) const override;

  // Told of each `$error` that no script overrides: the class, and the values of the call.
  using ErrorWatcher = std::function<void(const std::string& className, const std::vector<Value>& values)>;
  void setUnhandledError(ErrorWatcher watcher) { _unhandledError = std::move(watcher); }

  const ComponentModule& module() const { return _module; }
  const std::vector<ComponentClass>& classes() const { return _classes; }
  const std::unordered_map<std::string, std::int64_t>& constants() const { return _constants; }
  std::size_t liveInstances() const { return _instances.size(); }

  // ---- For calls and services

  void fill(host::CallBlock& block);
  std::shared_ptr<ComponentInstance> makeInstance(const ComponentClass& objectClass);
  void forget(host::ObjectHandle handle) { _instances.erase(handle); }
  // Throws what a callback of the message that has just returned left behind.
  void rethrowPending();
  // Instances that the component asked for live at least until the message ends that it asked in.
  std::size_t createdCount() const { return _created.size(); }
  void releaseCreated(std::size_t count);

  host::ObjectHandle createForComponent(std::uint32_t classId);
  bool callFromComponent(host::ObjectHandle object, const std::string& name, std::vector<Value> values);
  // The instance behind a handle of the host that is sending a message on this thread; null when it is gone.
  static std::shared_ptr<Instance> find(host::ObjectHandle handle);
  static host::ObjectHandle handleOfInstance(const std::shared_ptr<Instance>& instance);
  // The host that is sending a message on this thread.
  static ComponentHost& current();

  // Names the host as the current one for the length of a message.
  class Sending {
   public:
    explicit Sending(ComponentHost& host);
    ~Sending();
    Sending(const Sending&) = delete;
    Sending& operator=(const Sending&) = delete;

   private:
    ComponentHost& _host;
    ComponentHost* _outer;
  };

 private:
  const ComponentClass* classNamed(std::string_view name) const;
  void keepFailure();
  List listAnswer(std::uint32_t message, std::uint32_t classId);
  std::string textAnswer(std::uint32_t message);

  ComponentModule _module;
  std::string _libraryName;
  std::vector<ComponentClass> _classes;
  std::vector<ComponentMethod> _staticMethods;
  std::unordered_map<std::string, std::int64_t> _constants;
  std::unordered_map<host::ObjectHandle, std::weak_ptr<ComponentInstance>> _instances;
  std::vector<std::shared_ptr<ComponentInstance>> _created;
  host::ObjectHandle _nextHandle = 1;
  int _messageDepth = 0;
  std::exception_ptr _pending;
  int _pendingDepth = 0;
  ErrorWatcher _unhandledError;
};

}  // namespace rubrica::simhost
