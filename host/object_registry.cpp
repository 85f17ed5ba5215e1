#include "host/object_registry.h"

#include <algorithm>

namespace rubrica::host {

ObjectRegistry& ObjectRegistry::instance() {
  // Never destroyed: a host may send messages while the process's static objects are being torn down.
  static auto* registry = new ObjectRegistry;
  return *registry;
}

ObjectPtr ObjectRegistry::find(Word group, ObjectHandle handle) const {
  const std::lock_guard guard(_lock);
  for (const Group& candidate : _groups) {
    if (group != 0 && candidate.id != group) continue;
    if (const auto found = candidate.objects.find(handle); found != candidate.objects.end()) return found->second;
  }
  return {};
}

void ObjectRegistry::enter(Word group, ObjectHandle handle, const ObjectPtr& object) {
  ObjectPtr replaced;  // declared first: an object that makes way ends after the lock is given back
  const std::lock_guard guard(_lock);
  auto found = std::find_if(_groups.begin(), _groups.end(), [group](const Group& g) { return g.id == group; });
  if (found == _groups.end()) found = _groups.insert(_groups.begin(), Group{group, {}});
  ObjectPtr& place = found->objects[handle];
  replaced.swap(place);
  place = object;
}

ObjectPtr ObjectRegistry::take(Word group, ObjectHandle handle) {
  const std::lock_guard guard(_lock);
  for (auto candidate = _groups.begin(); candidate != _groups.end(); ++candidate) {
    if (group != 0 && candidate->id != group) continue;
    const auto found = candidate->objects.find(handle);
    if (found == candidate->objects.end()) continue;
    ObjectPtr object = found->second;
    candidate->objects.erase(found);
    if (candidate->objects.empty()) _groups.erase(candidate);
    return object;
  }
  return {};
}

}  // namespace rubrica::host
