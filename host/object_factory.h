// Makes the object of a class id, as `construct` and the list messages ask for it.
#pragma once

#include "host/nv_obj.h"

namespace rubrica::host {

// Null for an id that is no class.
boost::shared_ptr<NVObjCopyable> makeObject(std::uint32_t classId, ObjectHandle self);

}  // namespace rubrica::host
