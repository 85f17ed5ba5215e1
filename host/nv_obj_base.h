// NVObjBase: one object of Omnis code as the message handler sees it. A concrete class overrides all of it through
// NVObj; the base answers what an object without any methods or properties would. `selfHandle` is the object's own host
// handle, `ownerHandle` that of the Workbook at the top of its tree, 0 for an object that the user made directly.
#pragma once

#include <string>

#include "host/host_call.h"
#include "host/object_registry.h"

namespace rubrica::host {

// What a method handler answers.
namespace code {
inline constexpr int done = 2, formulaWritten = 1, nothing = 0;
inline constexpr int failed = -2, badMethod = -101, badParameters = -102, outOfMemory = -103, notSupported = -104,
                     badCalculation = -105, notImplemented = -999;
}  // namespace code

class NVObjBase {
 public:
  explicit NVObjBase(ObjectHandle self) : selfHandle(self) {}
  virtual ~NVObjBase() = default;
  NVObjBase(const NVObjBase&) = delete;
  NVObjBase& operator=(const NVObjBase&) = delete;

  virtual void copyParentFrom(const NVObjBase& other) { ownerHandle = other.ownerHandle; }
  virtual int listMethods(HostCall& call);
  virtual int callMethod(MethodCall& call);
  virtual int listProperties(HostCall& call);
  virtual int getProperty(HostCall& call);
  virtual int setProperty(HostCall& call);
  virtual int canAssignProperty(HostCall& call, int propertyId);
  // A text of the class's own for a code; empty for the common ones.
  virtual std::string errorTextForCode(int code);

  ObjectHandle ownerHandle = 0;
  ObjectHandle selfHandle;

 protected:
  // Fires "$error" on the Workbook of the tree, or on this object when there is none, unless the code means success.
  // Code that overrides $error may do anything, also destroy this object: nothing of it is touched afterwards.
  void reportResult(MethodCall& call, int code);
};

}  // namespace rubrica::host
