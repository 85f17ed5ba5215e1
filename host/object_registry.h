// ObjectRegistry: the process-wide list of all host objects, in groups as the host's call blocks name them. It owns the
// objects; whoever works on one holds a share, so that an object that is destroyed by code that its own method called
// lives until that method is done. One lock guards every operation and is never held while an object runs.
#pragma once

#include <list>
#include <mutex>
#include <unordered_map>

#include <boost/shared_ptr.hpp>

#include "host/omnis_abi.h"

namespace rubrica::host {

class NVObjBase;
using ObjectPtr = boost::shared_ptr<NVObjBase>;

class ObjectRegistry {
 public:
  static ObjectRegistry& instance();

  // The object of a handle, null when there is none. Group 0 searches all groups, the newest first.
  ObjectPtr find(Word group, ObjectHandle handle) const;
  void enter(Word group, ObjectHandle handle, const ObjectPtr& object);
  // Takes an object out, and its group with it when it was the last one. Null when there is none.
  ObjectPtr take(Word group, ObjectHandle handle);

 private:
  struct Group {
    Word id;
    std::unordered_map<ObjectHandle, ObjectPtr> objects;
  };

  mutable std::mutex _lock;
  std::list<Group> _groups;
};

}  // namespace rubrica::host
