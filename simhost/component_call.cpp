#include "simhost/component_call.h"

#include "simhost/component_host.h"

namespace rubrica::simhost {

ComponentCall::ComponentCall(ComponentHost& host, std::uint32_t classId, std::uint32_t member)
    : _host(host), _createdBefore(host.createdCount()) {
  host.fill(_block);
  _block.classId = classId;
  // The member's id travels in the first record. Without parameters that is a record of number 0 without a field.
  _records.push_back({member, 0, 0, 0, 0, 0, nullptr});
  _block.values = &_records.front();
}

ComponentCall::~ComponentCall() {
  if (!_sent) return;
  {
    const ComponentHost::Sending sending(_host);
    _host.module().send(host::message::releaseResults, 0, 0, _block);
  }
  _host.releaseCreated(_createdBefore);
}

void ComponentCall::addParameter(Value value) {
  _values.push_back(std::move(value));
  const host::FieldHandle field = handleOf(&_values.back());
  if (_values.size() == 1) {
    _records.front().field = field;
    _records.front().number = 1;
    return;
  }
  host::ValueRecord& previous = _records.back();
  _records.push_back({0, 0, field, 0, static_cast<std::uint8_t>(_values.size()), 0, nullptr});
  previous.next = &_records.back();
}

std::int32_t ComponentCall::sendWithoutFailure(std::uint32_t message, host::Word wParam, host::Word lParam) {
  _sent = true;
  const ComponentHost::Sending sending(_host);
  return _host.module().send(message, wParam, lParam, _block);
}

std::int32_t ComponentCall::send(std::uint32_t message, host::Word wParam, host::Word lParam) {
  const std::int32_t answer = sendWithoutFailure(message, wParam, lParam);
  _host.rethrowPending();
  return answer;
}

const host::ValueRecord* ComponentCall::resultRecord() const {
  const host::ValueRecord* found = nullptr;
  for (const host::ValueRecord* record = _block.values; record != nullptr; record = record->next) {
    if (record->number == 0 && record->field != 0) found = record;
  }
  return found;
}

bool ComponentCall::hasResult() const {
  return resultRecord() != nullptr;
}

Value ComponentCall::result() const {
  const host::ValueRecord* record = resultRecord();
  return record == nullptr ? Value() : *valueOf(record->field);
}

bool ComponentCall::changed(std::size_t number) const {
  return (_records[number - 1].flags & host::kRecordChanged) != 0;
}

}  // namespace rubrica::simhost
