#include "simhost/variables.h"

#include "simhost/instance.h"
#include "simhost/script_error.h"
#include "simhost/type_parser.h"

namespace rubrica::simhost {

Frame Variables::makeFrame(const Method& method) const {
  Frame frame(method.variables.size());
  for (std::size_t i = 0; i < frame.size(); ++i) {
    frame[i].declaration = &method.variables[i];
    if (!frame[i].declaration->type.fieldReference) frame[i].value = emptyOf(frame[i].declaration->type);
  }
  return frame;
}

std::shared_ptr<Instance> Variables::create(const std::string& className, const std::string& variable) {
  if (_source == nullptr) throw ScriptError("There is no component to make a " + className);
  std::shared_ptr<Instance> instance = _source->create(className);
  if (instance == nullptr) throw ScriptError("The component makes no " + className);
  _watcher(variable, *instance);
  return instance;
}

Value& Variables::use(Variable& variable) {
  Variable& target = variable.target();
  const TypeSpec& type = target.declaration->type;
  if (type.kind == Kind::Object && !type.className.empty() && target.value.isObject() &&
      target.value.instance() == nullptr) {
    target.value = Value::object(create(type.className, target.declaration->name));
  }
  return target.value;
}

void Variables::assign(Variable& variable, const Value& value) {
  Variable& target = variable.target();
  const TypeSpec& type = target.declaration->type;
  if (type.fieldReference) {
    target.value = value;
    return;
  }
  const bool isObject = type.kind == Kind::Object || type.kind == Kind::ObjectReference;
  const bool clears = value.isNull() || value.kind() == Kind::None;
  const bool isList = type.kind == Kind::List || type.kind == Kind::Row;
  if ((isObject && !value.isObject() && !clears) || (isList && !value.isList() && !clears)) {
    throw ScriptError(std::string("A ") + kindName(value.kind()) + " can't be assigned to " + target.declaration->name +
                      ", which is a " + kindName(type.kind));
  }
  if (type.kind != Kind::Object) {
    target.value = convertedTo(value, type);
    return;
  }
  if (clears || value.instance() == nullptr) {
    target.value = Value::object(nullptr);
    return;
  }
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): making the copy may change what the value is held in
  const std::shared_ptr<Instance> source = value.instance();
  std::shared_ptr<Instance> own = target.value.isObject() ? target.value.instance() : nullptr;
  if (own == source) return;
  if (own == nullptr || own->className() != source->className()) {
    own = create(source->className(), target.declaration->name);
  }
  own->copyFrom(*source);
  target.value = Value::object(std::move(own));
}

std::shared_ptr<Instance> Variables::copied(const std::shared_ptr<Instance>& instance) {
  if (instance == nullptr || _source == nullptr) return nullptr;
  std::shared_ptr<Instance> copy = _source->create(instance->className());
  if (copy != nullptr) copy->copyFrom(*instance);
  return copy;
}

Value Variables::forCell(const Value& value, Kind kind, int subtype) {
  if (kind == Kind::Object && value.isObject()) return Value::object(copied(value.instance()));
  return value.as(kind, subtype);
}

}  // namespace rubrica::simhost
