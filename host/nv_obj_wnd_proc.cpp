#include "host/nv_obj_wnd_proc.h"

#include "host/host_call.h"
#include "host/host_services.h"
#include "host/object_factory.h"
#include "host/object_registry.h"
#include "host/table_lists.h"

namespace rubrica::host {
namespace {

constexpr std::uint32_t kLibraryNameResource = 1000, kPrefixResource = 23000;
constexpr int kVersionMethod = 1901;
// Fixed, whatever the component's own version.
constexpr std::u32string_view kRubricaVersion = U"3.8.2.0";

ObjectRegistry& registry() {
  return ObjectRegistry::instance();
}

std::int32_t construct(const HostCall& call, ObjectHandle handle) {
  if (registry().find(call.groupId(), handle)) return 1;
  const auto object = makeObject(call.classId(), handle);
  if (!object) return 0;
  registry().enter(call.groupId(), handle, object);
  return 1;
}

std::int32_t callStaticMethod(HostCall& call) {
  if (call.id() == kVersionMethod) call.returnUtf32(kRubricaVersion);
  return 0;
}

bool isClass(std::uint32_t classId) {
  return classId >= classid::workbook && classId <= classid::format;
}

void copyObject(const HostCall& call, const CopyHandles* handles) {
  if (handles == nullptr || !isClass(call.classId())) return;
  const ObjectTable& objects = *services().objects;
  const ObjectPtr source = registry().find(call.groupId(), objects.canonical(handles->source));
  if (!source) return;
  const ObjectPtr destination = registry().find(call.groupId(), objects.canonical(handles->destination));
  if (!destination) {
    // A new object starts empty; the host copies onto it once more where it wants the content.
    if (const auto made = makeObject(call.classId(), handles->destination)) {
      registry().enter(call.groupId(), handles->destination, made);
    }
    return;
  }
  if (auto* copyable = dynamic_cast<NVObjCopyable*>(destination.get())) copyable->copyFrom(*source);
}

// The messages that every host may send without a call block.
std::int32_t answerWithoutServices(std::uint32_t messageNumber) {
  switch (messageNumber) {
    case message::connect:
      return kConnectAnswer;
    case message::getVersion:
      return kComponentVersion;
    case message::disconnect:
    case message::featureQuery:
      return 1;
    default:
      return 0;
  }
}

std::int32_t answer(std::uint32_t messageNumber, Word wParam, Word lParam, CallBlock& block) {
  MethodCall method(block);
  HostCall& call = method.host;
  const auto object = [&] { return registry().find(call.groupId(), lParam); };
  switch (messageNumber) {
    case message::getLibraryName:
      call.returnUtf32(resourceText(kLibraryNameResource));
      return 0;
    case message::getConstantPrefix:
      call.returnUtf32(resourceText(kPrefixResource));
      return 1;
    case message::getProperties: {
      const auto made = makeObject(call.classId(), 0);
      return made ? made->listProperties(call) : 0;
    }
    case message::getMethods: {
      const auto made = makeObject(call.classId(), 0);
      return made ? made->listMethods(call) : 0;
    }
    case message::getConstants:
      return listConstants(call);
    case message::getObjects:
      return listObjects(call);
    case message::setProperty: {
      const ObjectPtr found = object();
      return found ? found->setProperty(call) : 0;
    }
    case message::getProperty: {
      const ObjectPtr found = object();
      return found ? found->getProperty(call) : 0;
    }
    case message::canAssignProperty: {
      const ObjectPtr found = object();
      return found ? found->canAssignProperty(call, call.id()) : 0;
    }
    case message::callMethod: {
      const ObjectPtr found = object();
      return found ? found->callMethod(method) : callStaticMethod(call);
    }
    case message::releaseResults:
      call.releaseResults();
      return 1;
    case message::construct:
      return construct(call, lParam);
    case message::destruct:
      if (wParam == 1) registry().take(call.groupId(), lParam);
      return 1;
    case message::copyObject:
      // NOLINTNEXTLINE(performance-no-int-to-ptr): the message carries the pointer in its second word.
      copyObject(call, reinterpret_cast<const CopyHandles*>(lParam));
      // A copy is answered with the static methods, on which hosts in use rely.
      [[fallthrough]];
    case message::getStaticMethods:
      return listMethodTable(call, staticMethods());
    case message::listStrings:
      listStrings(wParam, lParam);
      return 0;
    default:
      return answerWithoutServices(messageNumber);
  }
}

}  // namespace
}  // namespace rubrica::host

std::int32_t TABULIX_CALL NVObjWndProc(rubrica::host::Word window, std::uint32_t messageNumber,
                                       rubrica::host::Word wParam, rubrica::host::Word lParam,
                                       rubrica::host::CallBlock* call) {
  using namespace rubrica::host;
  if (call == nullptr) return answerWithoutServices(messageNumber);
  if (!adoptServices(window, *call)) return 0;
  if (messageNumber < message::getLibraryName) {
    return services().handlers->defaultHandler(window, messageNumber, wParam, lParam, call);
  }
  return answer(messageNumber, wParam, lParam, *call);
}
