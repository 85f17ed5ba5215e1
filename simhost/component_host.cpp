#include "simhost/component_host.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "simhost/script_error.h"
#include "simhost/service_tables.h"

namespace rubrica::simhost {

namespace {

// The registry group of all instances of this host.
constexpr host::Word instanceGroup = 1;
constexpr std::size_t mostParameters = 255;
// wParam of `destruct` when the object itself ends.
constexpr host::Word objectEnds = 1;

thread_local ComponentHost* currentHost = nullptr;

}  // namespace

// ---- Instances

ComponentInstance::ComponentInstance(ComponentHost& host, const ComponentClass& objectClass, host::ObjectHandle handle)
    : _host(host), _class(objectClass), _handle(handle) {
  ComponentCall call(host, objectClass.id);
  if (call.send(host::message::construct, 0, handle) == 0) {
    throw ScriptError("The component refuses to make a " + objectClass.name);
  }
}

ComponentInstance::~ComponentInstance() {
  _host.forget(_handle);
  ComponentCall call(_host, _class.id);
  call.sendWithoutFailure(host::message::destruct, objectEnds, _handle);
}

Value ComponentInstance::call(std::string_view name, Arguments& arguments) {
  const ComponentMethod* method = _class.method(name);
  if (method == nullptr) throw ScriptError("A " + _class.name + " has no method '" + std::string(name) + "'");
  if (arguments.values.size() > mostParameters) throw ScriptError("A method takes 255 parameters at most");
  const auto alive = shared_from_this();
  ComponentCall call(_host, _class.id, method->id);
  for (const Value& value : arguments.values) call.addParameter(value);
  call.send(host::message::callMethod, 0, _handle);
  for (std::size_t i = 0; i < arguments.values.size(); ++i) {
    const bool byReference = i < method->byReference.size() && method->byReference[i];
    arguments.changed[i] = byReference && call.changed(i + 1);
    if (arguments.changed[i]) arguments.values[i] = call.parameter(i + 1);
  }
  return call.result();
}

const ComponentProperty& ComponentInstance::requiredProperty(std::string_view name) const {
  const ComponentProperty* property = _class.property(name);
  if (property != nullptr) return *property;
  if (hasMethod(name)) throw ScriptError(std::string(name) + " is a method; write it with its brackets");
  throw ScriptError("A " + _class.name + " has no property '" + std::string(name) + "'");
}

Value ComponentInstance::property(std::string_view name) {
  const auto alive = shared_from_this();
  ComponentCall call(_host, _class.id, requiredProperty(name).id);
  call.send(host::message::getProperty, 0, _handle);
  return call.result();
}

void ComponentInstance::setProperty(std::string_view name, const Value& value) {
  const auto alive = shared_from_this();
  const std::uint32_t id = requiredProperty(name).id;
  ComponentCall question(_host, _class.id, id);
  if (question.send(host::message::canAssignProperty, 0, _handle) == 0) {
    throw ScriptError("The property " + std::string(name) + " of a " + _class.name + " can't be assigned");
  }
  ComponentCall call(_host, _class.id, id);
  call.addParameter(value);
  call.send(host::message::setProperty, 0, _handle);
}

void ComponentInstance::copyFrom(Instance& other) {
  auto* source = dynamic_cast<ComponentInstance*>(&other);
  if (source == nullptr || source->_class.id != _class.id) {
    throw ScriptError("A " + other.className() + " can't be copied to a " + _class.name);
  }
  host::CopyHandles handles{source->_handle, _handle};
  ComponentCall call(_host, _class.id);
  call.send(host::message::copyObject, 0, reinterpret_cast<host::Word>(&handles));
}

// ---- The host

ComponentHost::Sending::Sending(ComponentHost& host) : _host(host), _outer(currentHost) {
  currentHost = &host;
  ++host._messageDepth;
}

ComponentHost::Sending::~Sending() {
  currentHost = _outer;
  --_host._messageDepth;
}

ComponentHost::ComponentHost(const std::string& modulePath) : _module(modulePath) {
  {
    ComponentCall call(*this, 0);
    if (call.send(host::message::connect) != host::kConnectAnswer) {
      throw std::runtime_error(modulePath + " doesn't answer as a component that this host knows");
    }
  }
  _libraryName = textAnswer(host::message::getLibraryName);
  _classes = classesFrom(listAnswer(host::message::getObjects, 0));
  for (ComponentClass& objectClass : _classes) {
    objectClass.methods = methodsFrom(listAnswer(host::message::getMethods, objectClass.id));
    objectClass.properties = propertiesFrom(listAnswer(host::message::getProperties, objectClass.id));
  }
  _staticMethods = methodsFrom(listAnswer(host::message::getStaticMethods, 0));
  _constants = constantsFrom(listAnswer(host::message::getConstants, 0), textAnswer(host::message::getConstantPrefix));
}

ComponentHost::~ComponentHost() {
  ComponentCall call(*this, 0);
  call.sendWithoutFailure(host::message::disconnect);
}

void ComponentHost::fill(host::CallBlock& block) {
  setServiceTables(block);
  block.groupId = instanceGroup;
  block.module = reinterpret_cast<host::Word>(&_module.resources());
  block.context = reinterpret_cast<host::Word>(this);
}

List ComponentHost::listAnswer(std::uint32_t message, std::uint32_t classId) {
  ComponentCall call(*this, classId);
  call.send(message);
  const Value answer = call.result();
  return answer.isList() ? answer.listRef() : List();
}

std::string ComponentHost::textAnswer(std::uint32_t message) {
  ComponentCall call(*this, 0);
  call.send(message);
  return call.result().toUtf8();
}

const ComponentClass* ComponentHost::classNamed(std::string_view name) const {
  const auto found = std::find_if(_classes.begin(), _classes.end(),
                                  [name](const ComponentClass& candidate) { return sameName(candidate.name, name); });
  return found == _classes.end() ? nullptr : &*found;
}

std::shared_ptr<ComponentInstance> ComponentHost::makeInstance(const ComponentClass& objectClass) {
  const host::ObjectHandle handle = _nextHandle++;
  auto instance = std::make_shared<ComponentInstance>(*this, objectClass, handle);
  _instances.emplace(handle, instance);
  return instance;
}

std::shared_ptr<Instance> ComponentHost::create(std::string_view className) {
  const ComponentClass* found = classNamed(className);
  if (found == nullptr) throw ScriptError("Unknown object class '" + std::string(className) + "'");
  return makeInstance(*found);
}

std::optional<Value> ComponentHost::constant(std::string_view name) const {
  const auto found = _constants.find(nameKey(name));
  if (found == _constants.end()) return std::nullopt;
  return Value::constant(found->second);
}

bool ComponentHost::hasStatic(std::string_view method) const {
  return std::any_of(_staticMethods.begin(), _staticMethods.end(),
                     [method](const ComponentMethod& candidate) { return sameName(candidate.name, method); });
}

Value ComponentHost::callStatic(std::string_view method, Arguments& arguments) {
  for (const ComponentMethod& candidate : _staticMethods) {
    if (!sameName(candidate.name, method)) continue;
    ComponentCall call(*this, 0, candidate.id);
    for (const Value& value : arguments.values) call.addParameter(value);
    call.send(host::message::callMethod);
    return call.result();
  }
  throw ScriptError(_libraryName + " has no static method '" + std::string(method) + "'");
}

void ComponentHost::rethrowPending() {
  if (_pending != nullptr && _pendingDepth > _messageDepth) std::rethrow_exception(std::exchange(_pending, nullptr));
}

void ComponentHost::keepFailure() {
  _pending = std::current_exception();
  _pendingDepth = _messageDepth;
}

void ComponentHost::releaseCreated(std::size_t count) {
  while (_created.size() > count) {
    // Taken out first: the end of an instance is a message of its own, which looks at the list too.
    const std::shared_ptr<ComponentInstance> last = std::move(_created.back());
    _created.pop_back();
  }
}

host::ObjectHandle ComponentHost::createForComponent(std::uint32_t classId) {
  try {
    for (const ComponentClass& candidate : _classes) {
      if (candidate.id != classId) continue;
      _created.push_back(makeInstance(candidate));
      return _created.back()->handle();
    }
  } catch (...) {
    keepFailure();
  }
  return 0;
}

bool ComponentHost::callFromComponent(host::ObjectHandle object, const std::string& name, std::vector<Value> values) {
  const auto found = _instances.find(object);
  const std::shared_ptr<ComponentInstance> instance = found == _instances.end() ? nullptr : found->second.lock();
  if (instance == nullptr) return false;
  try {
    const bool isError = sameName(name, "$error");
    if (isError && instance->errorHandler()) {
      instance->errorHandler()(values);
      return true;
    }
    if (isError && _unhandledError) _unhandledError(instance->className(), values);
    if (!instance->hasMethod(name)) return false;
    Arguments arguments;
    arguments.changed.assign(values.size(), false);
    arguments.values = std::move(values);
    instance->call(name, arguments);
  } catch (...) {
    keepFailure();
  }
  return true;
}

ComponentHost& ComponentHost::current() {
  return *currentHost;
}

std::shared_ptr<Instance> ComponentHost::find(host::ObjectHandle handle) {
  const auto found = currentHost->_instances.find(handle);
  return found == currentHost->_instances.end() ? nullptr : found->second.lock();
}

host::ObjectHandle ComponentHost::handleOfInstance(const std::shared_ptr<Instance>& instance) {
  const auto* known = dynamic_cast<const ComponentInstance*>(instance.get());
  return known == nullptr ? 0 : known->handle();
}

}  // namespace rubrica::simhost
