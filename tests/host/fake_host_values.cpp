#include <utility>

#include "tests/host/fake_host.h"

namespace rubrica::host::testing {
namespace {

Value ofType(std::int32_t type) {
  Value value;
  value.type = type;
  return value;
}

}  // namespace

Value textValue(std::u32string text) {
  Value value = ofType(kind::character);
  value.text = std::move(text);
  return value;
}

Value integerValue(std::int32_t integer) {
  Value value = ofType(kind::integer);
  value.integer = integer;
  return value;
}

Value numberValue(double number) {
  Value value = ofType(kind::number);
  value.number = number;
  return value;
}

Value booleanValue(bool boolean) {
  Value value = ofType(kind::boolean);
  value.integer = boolean ? kHostTrue : kHostFalse;
  return value;
}

Value constantValue(std::int32_t integer) {
  Value value = ofType(kind::constant);
  value.integer = integer;
  return value;
}

Value binaryValue(std::string bytes) {
  Value value = ofType(kind::binary);
  value.bytes = std::move(bytes);
  return value;
}

Value objectValue(ObjectHandle object) {
  Value value = ofType(kind::object);
  value.object = object;
  return value;
}

Value referenceValue(ObjectHandle object) {
  Value value = ofType(kind::objectReference);
  value.object = object;
  return value;
}

Value dateValue(int year, int month, int day) {
  Value value = ofType(kind::date);
  value.subtype = datesubtype::date1980;
  value.date.dateSet = 1;
  value.date.year = static_cast<std::int16_t>(year);
  value.date.month = static_cast<std::uint8_t>(month);
  value.date.day = static_cast<std::uint8_t>(day);
  return value;
}

Value timeValue(int hour, int minute, int second, int hundredths, bool hasSeconds) {
  Value value = ofType(kind::date);
  value.subtype = datesubtype::time;
  value.date.timeSet = 1;
  value.date.secondsSet = value.date.hundredthsSet = hasSeconds ? 1 : 0;
  value.date.hour = static_cast<std::uint8_t>(hour);
  value.date.minute = static_cast<std::uint8_t>(minute);
  value.date.second = static_cast<std::uint8_t>(second);
  value.date.hundredths = static_cast<std::uint8_t>(hundredths);
  return value;
}

Value dateTimeValue(int year, int month, int day, int hour, int minute, int second) {
  Value value = timeValue(hour, minute, second, 0);
  const Value date = dateValue(year, month, day);
  value.subtype = datesubtype::dateTime;
  value.date.dateSet = 1;
  value.date.year = date.date.year;
  value.date.month = date.date.month;
  value.date.day = date.date.day;
  return value;
}

Value listValue(std::shared_ptr<List> list, std::int32_t type) {
  Value value = ofType(type);
  value.list = std::move(list);
  return value;
}

const Value& List::at(int row, int column) const {
  return rows.at(static_cast<std::size_t>(row) - 1).at(static_cast<std::size_t>(column) - 1);
}

std::shared_ptr<List> makeList(std::vector<Column> columns, std::vector<std::vector<Value>> rows) {
  auto list = std::make_shared<List>();
  list->columns = std::move(columns);
  list->rows = std::move(rows);
  return list;
}

}  // namespace rubrica::host::testing
