#include "host/host_call.h"

#include <bitset>
#include <utility>

#include "host/host_services.h"

namespace rubrica::host {

int HostCall::id() const {
  constexpr Word kIdMask = 0xFFFF;
  return _block.values != nullptr ? static_cast<int>(_block.values->first & kIdMask) : 0;
}

int HostCall::parameterCount() const {
  std::bitset<256> present;
  for (const ValueRecord* record = _block.values; record != nullptr; record = record->next) {
    if (record->field != 0) present.set(record->number);
  }
  std::size_t count = 0;
  while (count + 1 < present.size() && present.test(count + 1)) ++count;
  return static_cast<int>(count);
}

ValueRecord* HostCall::find(int n) const {
  for (ValueRecord* record = _block.values; record != nullptr; record = record->next) {
    if (record->number == n && record->field != 0) return record;
  }
  return nullptr;
}

HostField HostCall::parameter(int n) const {
  const ValueRecord* record = find(n);
  return record != nullptr ? HostField::wrap(record->field) : HostField();
}

void HostCall::markChanged(int n) {
  if (ValueRecord* record = find(n)) record->flags = static_cast<std::uint8_t>(record->flags | kRecordChanged);
}

void HostCall::addReturn(HostField field) {
  auto* added = new ValueRecord{};
  added->field = field.release();
  added->flags = kRecordOwnedByComponent;
  if (_block.values == nullptr) {
    _block.values = added;
    return;
  }
  ValueRecord* last = _block.values;
  while (last->next != nullptr) last = last->next;
  last->next = added;
}

void HostCall::returnBoolean(bool value) {
  HostField field = newField();
  field.setBoolean(value);
  addReturn(std::move(field));
}

void HostCall::returnInteger(std::int32_t value) {
  HostField field = newField();
  field.setInteger(value);
  addReturn(std::move(field));
}

void HostCall::returnNumber(double value) {
  HostField field = newField();
  field.setNumber(value);
  addReturn(std::move(field));
}

void HostCall::returnText(std::u16string_view text) {
  HostField field = newField();
  field.setText(text);
  addReturn(std::move(field));
}

void HostCall::returnUtf32(std::u32string_view text) {
  HostField field = newField();
  field.setUtf32(text);
  addReturn(std::move(field));
}

void HostCall::returnObject(ObjectHandle object) {
  HostField field = newField();
  field.setObject(object);
  addReturn(std::move(field));
}

void HostCall::returnReference(ObjectHandle object) {
  HostField field = newField();
  field.setReference(object);
  addReturn(std::move(field));
}

void HostCall::returnList(HostList list) {
  HostField field = newField();
  list.giveTo(field);
  addReturn(std::move(field));
}

void HostCall::releaseResults() {
  ValueRecord* previous = nullptr;
  for (ValueRecord* record = _block.values; record != nullptr;) {
    ValueRecord* next = record->next;
    if ((record->flags & kRecordOwnedByComponent) != 0) {
      if (previous != nullptr) {
        previous->next = next;
      } else {
        _block.values = next;
      }
      services().values->destroy(record->field);
      delete record;
    } else {
      previous = record;
    }
    record = next;
  }
}

}  // namespace rubrica::host
