// FakeHost: the least that a host must be for tests of the component: values, lists and instances behind the service
// tables, and the messages as functions. It reaches the component only through the entry point that it is given. One
// exists at a time, since service functions carry no pointer to it.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/omnis_abi.h"

namespace rubrica::host::testing {

struct List;

struct Value {
  std::int32_t type = kind::none;
  std::int32_t subtype = 0;
  std::int32_t integer = 0;  // also the boolean code and the value of a constant
  double number = 0.0;
  std::u32string text;  // also the name of a constant
  DateParts date{};
  std::string bytes;
  std::shared_ptr<List> list;
  ObjectHandle object = 0;

  bool isEmpty() const { return type == kind::none; }
};

Value textValue(std::u32string text);
Value integerValue(std::int32_t value);
Value numberValue(double value);
Value booleanValue(bool value);
Value constantValue(std::int32_t value);
Value binaryValue(std::string bytes);
Value objectValue(ObjectHandle object);
Value referenceValue(ObjectHandle object);
Value dateValue(int year, int month, int day);
Value timeValue(int hour, int minute, int second, int hundredths, bool hasSeconds = true);
Value dateTimeValue(int year, int month, int day, int hour, int minute, int second);
Value listValue(std::shared_ptr<List> list, std::int32_t type = kind::list);

struct Column {
  std::u32string name;
  std::int32_t type = kind::character;
  std::int32_t subtype = 0;
  std::int32_t length = 0;
};

struct List {
  std::vector<Column> columns;
  std::vector<std::vector<Value>> rows;

  const Value& at(int row, int column) const;  // both from 1
};

std::shared_ptr<List> makeList(std::vector<Column> columns, std::vector<std::vector<Value>> rows);

struct FiredError {
  ObjectHandle target;
  std::int32_t code;
  std::u32string text, longText, method;
};

struct Result {
  std::int32_t answer = 0;
  std::optional<Value> value;
  std::vector<Value> parameters;  // as the component left them
  std::set<int> changed;          // the parameters to copy back
};

class FakeHost {
 public:
  FakeHost(ComponentProcedure procedure, const std::string& modulePath);
  ~FakeHost();

  std::int32_t send(std::uint32_t messageNumber, Word wParam, Word lParam, CallBlock* block);
  // A call block with this host's tables.
  CallBlock block(std::uint32_t classId = 0);
  // Sends a message with an id and parameters, takes the return value, and has the results released.
  Result exchange(std::uint32_t messageNumber, Word wParam, ObjectHandle object, std::uint32_t classId, int id,
                  std::vector<Value> parameters);

  ObjectHandle construct(std::uint32_t classId);
  void destruct(ObjectHandle object);
  Result call(ObjectHandle object, int method, std::vector<Value> parameters = {});
  Result get(ObjectHandle object, int property);
  std::int32_t set(ObjectHandle object, int property, const Value& value);
  bool canAssign(ObjectHandle object, int property);
  Value constant(const std::u32string& name) const;

  std::vector<FiredError> errors;
  std::function<void(ObjectHandle)> onError;
  std::map<std::uint32_t, std::u32string> strings;
  std::map<ObjectHandle, std::uint32_t> instances;  // handle to class
  std::vector<std::pair<std::uint32_t, std::u32string>> collected;
  int fields = 0;  // component's fields that are not freed
  int lists = 0;
  int defaultHandled = 0;
  bool refusesObjects = false;
  std::size_t mostRows = SIZE_MAX;  // that a list takes
  Word group = 7;
  ObjectHandle nextHandle = 0x1000;
  Value scratch;  // the cell of a list that lies outside it, in writing

 private:
  ComponentProcedure _procedure;
};

}  // namespace rubrica::host::testing
