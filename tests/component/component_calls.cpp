#include "tests/component/component_calls.h"

#include <utility>

namespace rubrica::simhost::test {

ComponentCalls::ComponentCalls() {
  host.setUnhandledError([this](const std::string&, const std::vector<Value>& values) {
    _errors += values.at(0).toUtf8() + " " + values.at(2).toUtf8() + "\n";
  });
}

ComponentCalls::~ComponentCalls() {
  EXPECT_EQ(_errors, "");
  EXPECT_EQ(host.liveInstances(), 0u);
}

Value ComponentCalls::call(const Object& object, const std::string& method, Values values, Values* after) {
  called.insert(object->className() + "." + method);
  Arguments arguments{std::move(values), {}};
  arguments.changed.assign(arguments.values.size(), false);
  Value answer = object->call(method, arguments);
  if (after != nullptr) *after = arguments.values;
  return answer;
}

Object ComponentCalls::objectFrom(const Object& object, const std::string& method, Values values) {
  return call(object, method, std::move(values)).instance();
}

Value ComponentCalls::get(const Object& object, const std::string& property) {
  read.insert(object->className() + "." + property);
  return object->property(property);
}

void ComponentCalls::set(const Object& object, const std::string& property, const Value& value) {
  assigned.insert(object->className() + "." + property);
  object->setProperty(property, value);
}

std::string ComponentCalls::takeErrors() {
  return std::exchange(_errors, {});
}

BookPtr loadedBook(const std::filesystem::path& path) {
  BookPtr book(createBiffBook());
  return book->load(path.u16string().c_str()) ? std::move(book) : nullptr;
}

}  // namespace rubrica::simhost::test
