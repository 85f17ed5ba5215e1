// HostCall: the logic's view of one message's call block: what is called, with which parameters, and where results go.
// MethodCall adds what a method gathers on its way: its name and the long text of an error. Both live on the message
// handler's stack.
#pragma once

#include <cstdint>
#include <string>

#include "host/host_field.h"
#include "host/host_list.h"
#include "host/omnis_abi.h"

namespace rubrica::host {

class HostCall {
 public:
  explicit HostCall(CallBlock& block) : _block(block) {}

  Word context() const { return _block.context; }
  Word groupId() const { return _block.groupId; }
  std::uint32_t classId() const { return static_cast<std::uint32_t>(_block.classId); }
  // The method or property id; 0 without a value record.
  int id() const;
  // The count of parameter numbers that exist without a gap, from 1.
  int parameterCount() const;
  // Parameter n, without a handle when it was not passed.
  HostField parameter(int n) const;
  // Tells the host to copy parameter n back.
  void markChanged(int n);

  HostField newField() const { return HostField::make(context()); }
  // Adds the return value at the end of the chain; the record owns the field until releaseResults.
  void addReturn(HostField field);
  void returnBoolean(bool value);
  void returnInteger(std::int32_t value);
  void returnNumber(double value);
  void returnText(std::u16string_view text);
  void returnUtf32(std::u32string_view text);
  void returnObject(ObjectHandle object);
  void returnReference(ObjectHandle object);
  void returnList(HostList list);

  // Frees every record that the component added, with its field.
  void releaseResults();

 private:
  ValueRecord* find(int n) const;

  CallBlock& _block;
};

struct MethodCall {
  explicit MethodCall(CallBlock& block) : host(block) {}

  HostCall host;
  std::string methodName;
  std::string longError;
};

}  // namespace rubrica::host
