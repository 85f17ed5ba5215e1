// Host instances from the logic's side: making a new one, and finding the object behind a value.
#pragma once

#include <boost/smart_ptr/make_shared.hpp>

#include "host/book_share.h"
#include "host/host_call.h"
#include "host/host_services.h"
#include "host/object_registry.h"

namespace rubrica::host {

// The object of class T behind a value of kind object or object reference; null for anything else.
template <class T>
boost::shared_ptr<T> resolveObject(const HostField& field) {
  ObjectHandle handle = 0;
  if (field.type() == kind::object) handle = services().objects->ofObject(field.handle());
  if (field.type() == kind::objectReference) handle = services().objects->ofReference(field.handle());
  if (handle == 0) return {};
  return boost::dynamic_pointer_cast<T>(ObjectRegistry::instance().find(0, handle));
}

// A new instance of class T, made by the host, which has the component construct its object at once. Both members are
// empty when the host can't make one.
template <class T>
struct NewObject {
  explicit NewObject(HostCall& call) : handle(services().objects->create(call.context(), T::kClassId)) {
    if (handle != 0) object = boost::dynamic_pointer_cast<T>(ObjectRegistry::instance().find(0, handle));
  }

  ObjectHandle handle;
  boost::shared_ptr<T> object;
};

// A new Format or Font object on a format or font of a book, in the tree of `owner`. Answers its handle.
template <class T, class Engine>
ObjectHandle newStyleObject(HostCall& call, const BookPtr& book, Engine* engine, ObjectHandle owner) {
  NewObject<T> made(call);
  if (made.object && engine != nullptr) {
    made.object->book = book;
    made.object->setEngine(engine);
    made.object->ownerHandle = owner;
  }
  return made.handle;
}

}  // namespace rubrica::host
