// NVObj: what the five concrete classes have in common: dispatch of methods and properties through constant tables.
// A class T gives:
//   static constexpr std::uint32_t kClassId
//   static constexpr int kUnknownMethodCode              reported for a method id that the table does not hold
//   static std::span<const MethodEntry<T>> methods()     a null handler stands for a method that does nothing
//   static std::span<const PropertyEntry<T>> properties()
//   static std::span<const MethodRow> methodRows(), static std::span<const PropertyRow> propertyRows()
//   bool isSetUp() const                                 whether the object stands for something in a book
//   void copyStateFrom(const T& other)
#pragma once

#include <algorithm>
#include <span>
#include <utility>

#include "host/host_call.h"
#include "host/nv_obj_base.h"
#include "host/table_lists.h"

namespace rubrica::host {

template <class T>
struct MethodEntry {
  int id;
  const char* name;  // as $error tells it
  int (*run)(T& self, MethodCall& call, int parameterCount);
};

template <class T>
struct PropertyEntry {
  int id;
  // Fills the value; false when the property has none to give.
  bool (*read)(T& self, HostCall& call, HostField& value);
  // Null for a property that can't be assigned. A bad value changes nothing.
  void (*write)(T& self, const HostField& value);
};

// The slot that the concrete classes add to the base.
class NVObjCopyable : public NVObjBase {
 public:
  using NVObjBase::NVObjBase;
  // Becomes a second object on what the other stands for; `selfHandle` stays. Nothing for an object of another class.
  virtual void copyFrom(const NVObjBase& other) = 0;
};

template <class T>
class NVObj : public NVObjCopyable {
 public:
  using NVObjCopyable::NVObjCopyable;

  int listMethods(HostCall& call) override { return listMethodTable(call, T::methodRows()); }
  int listProperties(HostCall& call) override { return listPropertyTable(call, T::propertyRows()); }

  int callMethod(MethodCall& call) override {
    const int id = call.host.id();
    const int parameterCount = call.host.parameterCount();
    if (!self().isSetUp()) {
      call.longError = "Internal Error.  Object dependencies are not setup.";
      reportResult(call, code::failed);
      return 0;
    }
    const MethodEntry<T>* method = find(T::methods(), id);
    if (method == nullptr) {
      reportResult(call, T::kUnknownMethodCode);
      return 0;
    }
    call.methodName = method->name;
    reportResult(call, method->run != nullptr ? method->run(self(), call, parameterCount) : code::done);
    return 0;
  }

  int getProperty(HostCall& call) override {
    HostField value = call.newField();
    if (!self().isSetUp()) {
      call.addReturn(std::move(value));
      return 1;
    }
    const PropertyEntry<T>* property = find(T::properties(), call.id());
    if (property != nullptr && property->read(self(), call, value)) call.addReturn(std::move(value));
    return 1;
  }

  int setProperty(HostCall& call) override {
    if (!self().isSetUp()) return 0;
    const HostField value = call.parameter(1);
    if (!value) return 0;
    const PropertyEntry<T>* property = find(T::properties(), call.id());
    if (property != nullptr && property->write != nullptr) property->write(self(), value);
    return 1;
  }

  int canAssignProperty(HostCall&, int propertyId) override {
    const PropertyEntry<T>* property = find(T::properties(), propertyId);
    return property != nullptr && property->write != nullptr ? 1 : 0;
  }

  void copyFrom(const NVObjBase& other) override {
    const auto* source = dynamic_cast<const T*>(&other);
    if (source == nullptr || source == this) return;
    copyParentFrom(other);
    self().copyStateFrom(*source);
  }

 private:
  T& self() { return static_cast<T&>(*this); }

  template <class Entry>
  static const Entry* find(std::span<const Entry> entries, int id) {
    const auto found = std::find_if(entries.begin(), entries.end(), [id](const Entry& e) { return e.id == id; });
    return found != entries.end() ? &*found : nullptr;
  }
};

}  // namespace rubrica::host
