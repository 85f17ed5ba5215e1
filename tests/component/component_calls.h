// The fixture of tests that drive the built component on real workbooks: calls by name, which are noted down, errors
// that would otherwise go unseen, and the engine's view of what was saved.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "engine/book_ptr.h"
#include "simhost/component_host.h"
#include "simhost/list.h"
#include "tests/support/temporary_directory.h"

namespace rubrica::simhost::test {

using Object = std::shared_ptr<Instance>;
using Values = std::vector<Value>;

class ComponentCalls : public testing::Test {
 protected:
  ComponentCalls();
  ~ComponentCalls() override;

  Object make(const char* className) { return host.create(className); }
  Value call(const Object& object, const std::string& method, Values values = {}, Values* after = nullptr);
  // The object that a method gives.
  Object objectFrom(const Object& object, const std::string& method, Values values = {});
  Value get(const Object& object, const std::string& property);
  Object objectIn(const Object& object, const std::string& property) { return get(object, property).instance(); }
  void set(const Object& object, const std::string& property, const Value& value);
  Object cell(const Object& sheet, int row, int column) {
    return objectFrom(sheet, "$cell", {Value::integer(row), Value::integer(column)});
  }
  Value constant(const std::string& name) { return host.constant(name).value(); }
  // Takes the errors that have been reported since, one a line: the code, then the long text.
  std::string takeErrors();

  ComponentHost host{TABULIX_MODULE};
  rubrica::test::TemporaryDirectory directory;
  std::set<std::string> called;          // "Worksheet.$split"
  std::set<std::string> read, assigned;  // "Worksheet.$zoom"

 private:
  std::string _errors;
};

inline Value yes() {
  return Value::boolean(true);
}
inline Value no() {
  return Value::boolean(false);
}

// The file as the engine reads it; null when it doesn't.
BookPtr loadedBook(const std::filesystem::path& path);

}  // namespace rubrica::simhost::test
