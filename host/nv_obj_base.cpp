#include "host/nv_obj_base.h"

#include <string_view>

#include "host/host_services.h"

namespace rubrica::host {
namespace {

const char* commonErrorText(int errorCode) {
  switch (errorCode) {
    case code::failed:
      return "Method failed.";
    case code::badMethod:
      return "Invalid method called. Internal method index error.";
    case code::badParameters:
      return "Invalid parameters";
    case code::outOfMemory:
      return "Out of memory.";
    case code::notSupported:
      return "The feature is not supported";
    case code::badCalculation:
      return "Calculation is invalid";
    case code::notImplemented:
      return "Feature not implemented.";
    default:
      return "";
  }
}

bool isSuccess(int resultCode) {
  return resultCode == code::nothing || resultCode == -1 || resultCode == code::formulaWritten ||
         resultCode == code::done;
}

}  // namespace

int NVObjBase::listMethods(HostCall&) {
  return 1;
}
int NVObjBase::callMethod(MethodCall&) {
  return 1;
}
int NVObjBase::listProperties(HostCall&) {
  return 1;
}
int NVObjBase::getProperty(HostCall&) {
  return 1;
}
int NVObjBase::setProperty(HostCall&) {
  return 1;
}
int NVObjBase::canAssignProperty(HostCall&, int) {
  return 0;
}
std::string NVObjBase::errorTextForCode(int) {
  return {};
}

void NVObjBase::reportResult(MethodCall& call, int resultCode) {
  if (isSuccess(resultCode)) return;
  std::string text = errorTextForCode(resultCode);
  if (text.empty()) text = commonErrorText(resultCode);

  HostField values[] = {call.host.newField(), call.host.newField(), call.host.newField(), call.host.newField()};
  values[0].setInteger(resultCode);
  values[1].setUtf8(text);
  if (!call.longError.empty()) values[2].setUtf8(call.longError);
  if (!call.methodName.empty()) values[3].setUtf8(call.methodName);
  const FieldHandle parameters[] = {values[0].handle(), values[1].handle(), values[2].handle(), values[3].handle()};

  const ObjectHandle target = ownerHandle != 0 ? ownerHandle : selfHandle;
  const std::u32string_view method = U"$error";
  services().objects->callMethod(call.host.context(), target, method.data(), method.size(), parameters,
                                 static_cast<std::uint32_t>(std::size(parameters)));
}

}  // namespace rubrica::host
