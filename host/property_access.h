// Readers and writers for properties that only forward to one getter and one setter of the engine. Each is a function
// made from two member pointers, for the rows of a class's property table:
//
//   {3507, readBoolean<NVObjWorksheet, &Sheet::displayGridlines>,
//    writeBoolean<NVObjWorksheet, &Sheet::displayGridlines, &Sheet::setDisplayGridlines>}
//
// A writer calls the setter only when the value differs from what the getter gives.
#pragma once

#include "host/constants.h"
#include "host/host_call.h"
#include "host/index_base.h"
#include "host/text.h"

namespace rubrica::host {

template <class T, auto Get>
bool readBoolean(T& self, HostCall&, HostField& value) {
  value.setBoolean((self.engine().*Get)());
  return true;
}

template <class T, auto Get, auto Set>
void writeBoolean(T& self, const HostField& value) {
  const bool wanted = value.boolean();
  if (wanted != (self.engine().*Get)()) (self.engine().*Set)(wanted);
}

template <class T, auto Get>
bool readInteger(T& self, HostCall&, HostField& value) {
  value.setInteger((self.engine().*Get)());
  return true;
}

// A row or column number.
template <class T, auto Get>
bool readIndex(T& self, HostCall&, HostField& value) {
  value.setInteger(toHost((self.engine().*Get)()));
  return true;
}

template <class T, auto Get, auto Set>
void writeInteger(T& self, const HostField& value) {
  const int wanted = value.integer();
  if (wanted != (self.engine().*Get)()) (self.engine().*Set)(wanted);
}

template <class T, auto Get>
bool readNumber(T& self, HostCall&, HostField& value) {
  value.setNumber((self.engine().*Get)());
  return true;
}

template <class T, auto Get, auto Set>
void writeNumber(T& self, const HostField& value) {
  const double wanted = value.number();
  if (wanted != (self.engine().*Get)()) (self.engine().*Set)(wanted);
}

template <class T, auto Get>
bool readText(T& self, HostCall&, HostField& value) {
  value.setText(orEmpty((self.engine().*Get)()));
  return true;
}

// Constants: Map is the function that gives the group; the engine's type is an enumeration or int.
template <class T, auto Get, auto Map>
bool readConstantProperty(T& self, HostCall&, HostField& value) {
  const ConstantMap& map = Map();
  constantField(value, map.resourceOf(map.backward(static_cast<int>((self.engine().*Get)()))));
  return true;
}

template <class T, auto Get, auto Set, auto Map>
void writeConstantProperty(T& self, const HostField& value) {
  const ConstantMap& map = Map();
  const int constant = readConstant(value, map.firstResource(), map.lastResource());
  if (!map.isValid(constant)) return;
  using Engine = decltype((self.engine().*Get)());
  const auto wanted = static_cast<Engine>(map.forward(constant));
  if (wanted != (self.engine().*Get)()) (self.engine().*Set)(wanted);
}

}  // namespace rubrica::host
