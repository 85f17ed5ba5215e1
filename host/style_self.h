// $self of Format and Font: a second object on the same engine entry, as a reference or as an object.
#pragma once

#include <optional>

#include "host/host_object.h"
#include "host/nv_obj_base.h"

namespace rubrica::host {

template <class T>
int returnSelf(T& self, MethodCall& call, int parameterCount) {
  bool asReference = true;
  if (parameterCount > 0) {
    const std::optional<bool> given = call.host.parameter(1).optionalBoolean();
    if (!given) {
      call.longError = "First parameter, asObjRef, is unrecognized.  Expected boolean.";
      return code::badParameters;
    }
    asReference = *given;
  }
  const ObjectHandle made = newStyleObject<T>(call.host, self.book, &self.engine(), self.ownerHandle);
  if (asReference) {
    call.host.returnReference(made);
  } else {
    call.host.returnObject(made);
  }
  return code::done;
}

}  // namespace rubrica::host
