// One message to the component: the call block with its chain of value records, built before and taken apart after the
// message. Used by the component host and its instances; owns the records and values that it puts into the chain.
#pragma once

#include <deque>
#include <string_view>
#include <vector>

#include "host/omnis_abi.h"
#include "simhost/value.h"

namespace rubrica::simhost {

class ComponentHost;

// A value's handle, as the component holds it: its address. The lowest bit marks a cell of a list that is bound for
// writing, which keeps its kind. Value is aligned to more than a byte, so that the bit is free.
inline constexpr host::Word boundCell = 1;
inline host::FieldHandle handleOf(const Value* value) {
  return reinterpret_cast<host::FieldHandle>(value);
}

// A word of the interface that is the address of something of the host's.
template <typename Target>
Target* pointerFrom(host::Word word) {
  return reinterpret_cast<Target*>(word);  // NOLINT(performance-no-int-to-ptr): addresses cross as words
}
inline Value* valueOf(host::FieldHandle field) {
  return pointerFrom<Value>(field & ~boundCell);
}

class ComponentCall {
 public:
  // `member` is the id of the method or property that the call is about.
  ComponentCall(ComponentHost& host, std::uint32_t classId, std::uint32_t member = 0);
  ComponentCall(const ComponentCall&) = delete;
  ComponentCall& operator=(const ComponentCall&) = delete;
  // Has the component free what it added.
  ~ComponentCall();

  void addParameter(Value value);
  std::int32_t send(std::uint32_t message, host::Word wParam = 0, host::Word lParam = 0);
  // For the end of things, which has nobody to tell of a failure.
  std::int32_t sendWithoutFailure(std::uint32_t message, host::Word wParam = 0, host::Word lParam = 0);

  bool hasResult() const;
  // The last value that the component added as the return value; empty when there is none.
  Value result() const;
  // The parameter, from 1, as it stands now, and whether the component marked it as changed.
  const Value& parameter(std::size_t number) const { return _values[number - 1]; }
  bool changed(std::size_t number) const;

 private:
  const host::ValueRecord* resultRecord() const;

  ComponentHost& _host;
  host::CallBlock _block{};
  std::deque<Value> _values;
  std::deque<host::ValueRecord> _records;
  std::size_t _createdBefore;
  bool _sent = false;
};

}  // namespace rubrica::simhost
