#include "simhost/service_tables.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <limits>
#include <optional>

#include "simhost/component_call.h"
#include "simhost/component_host.h"
#include "simhost/expression.h"
#include "simhost/list.h"

namespace rubrica::simhost {

namespace {

using host::FieldHandle;
using host::ListHandle;
using host::ObjectHandle;
using host::Word;

std::atomic<std::size_t> liveFields{0};
std::atomic<std::size_t> liveLists{0};

ComponentHost& hostOf(Word context) {
  return *pointerFrom<ComponentHost>(context);
}
List* listOf(ListHandle list) {
  return pointerFrom<List>(list);
}

// What a component asks of no field at all reads as empty.
const Value& readable(FieldHandle field) {
  static const Value empty{};
  return field == 0 ? empty : *valueOf(field);
}

// A bound cell that keeps its column's kind, and the subtype of its dates. Any other field takes what is written.
const Value* columnsOwn(FieldHandle field) {
  return (field & boundCell) != 0 && valueOf(field)->kind() != Kind::None ? valueOf(field) : nullptr;
}

// Mostly a field gets a value of the kind that it has, and no more has to be known.
bool isOfKind(FieldHandle field, Kind kind) {
  return field != 0 && valueOf(field)->kind() == kind;
}

void write(FieldHandle field, Value value) {
  if (field == 0) return;
  Value& target = *valueOf(field);
  const Value* cell = columnsOwn(field);
  target =
      cell == nullptr ? std::move(value) : value.as(cell->kind(), cell->kind() == Kind::Date ? cell->dateSubtype() : 0);
}

template <typename Unit>
std::size_t copyOut(const Unit* from, std::size_t length, Unit* buffer, std::size_t capacity) {
  if (buffer != nullptr && length > 0) std::copy_n(from, std::min(length, capacity), buffer);
  return length;
}

// ---- Values

FieldHandle createField(Word) {
  ++liveFields;
  return handleOf(new Value());
}
void destroyField(FieldHandle field) {
  if (field == 0) return;
  --liveFields;
  delete valueOf(field);
}

std::int32_t fieldType(FieldHandle field, std::int32_t* subtype) {
  const Value& value = readable(field);
  if (subtype != nullptr) *subtype = value.kind() == Kind::Date ? value.dateSubtype() : 0;
  return static_cast<std::int32_t>(value.kind());
}

std::int32_t readInteger(FieldHandle field) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(
      readable(field).toInteger(), std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}
double readNumber(FieldHandle field) {
  return readable(field).toNumber();
}

std::int32_t readBoolean(FieldHandle field, std::int32_t* succeeded) {
  const Value& value = readable(field);
  const bool known = value.kind() == Kind::Boolean
                         ? value.storedBoolean() == booleanFalse || value.storedBoolean() == booleanTrue
                         : value.isWhole() && (value.toInteger() == 0 || value.toInteger() == 1);
  if (succeeded != nullptr) *succeeded = known && !value.isNull() ? 1 : 0;
  if (value.kind() == Kind::Boolean) return static_cast<std::int32_t>(value.storedBoolean());
  return value.toBoolean() ? booleanTrue : booleanFalse;
}

std::size_t readText(FieldHandle field, char32_t* buffer, std::size_t capacity) {
  const Value& value = readable(field);
  if (value.kind() == Kind::Character) {
    const std::size_t length = value.textLength();
    if (buffer != nullptr) value.copyText(buffer, std::min(length, capacity));
    return length;
  }
  const Text text = value.toText();
  return copyOut(text.data(), text.size(), buffer, capacity);
}

void readDate(FieldHandle field, host::DateParts* parts) {
  const DateTime date = readable(field).toDate();
  const auto small = [](int number) { return static_cast<std::uint8_t>(number); };
  *parts = {static_cast<std::int16_t>(date.year),
            small(date.month),
            small(date.day),
            small(date.hour),
            small(date.minute),
            small(date.second),
            small(date.hundredth),
            small(date.hasDate),
            small(date.hasTime),
            small(date.hasSeconds),
            small(date.hasHundredths)};
}

std::size_t readBinary(FieldHandle field, void* buffer, std::size_t capacity) {
  const Value& value = readable(field);
  auto* bytes = static_cast<std::uint8_t*>(buffer);
  if (value.kind() == Kind::Binary) return copyOut(value.bytes().data(), value.bytes().size(), bytes, capacity);
  const Bytes converted = value.toBinary();
  return copyOut(converted.data(), converted.size(), bytes, capacity);
}

void writeInteger(FieldHandle field, std::int32_t value) {
  if (isOfKind(field, Kind::Integer)) {
    valueOf(field)->assignInteger(value);
  } else {
    write(field, Value::integer(value));
  }
}
void writeNumber(FieldHandle field, double value, std::int32_t) {
  if (isOfKind(field, Kind::Number)) {
    valueOf(field)->assignNumber(value);
  } else {
    write(field, Value::number(value));
  }
}
void writeBoolean(FieldHandle field, std::int32_t code) {
  if (isOfKind(field, Kind::Boolean)) {
    valueOf(field)->assignBooleanCode(code);
  } else {
    write(field, Value::booleanCode(code));
  }
}
void writeText(FieldHandle field, const char32_t* text, std::size_t length) {
  if (isOfKind(field, Kind::Character)) {
    valueOf(field)->assignText({text, length});
  } else {
    write(field, Value::text({text, length}));
  }
}

void writeDate(FieldHandle field, const host::DateParts* parts, std::int32_t subtype) {
  DateTime date;
  date.hasDate = parts->dateSet != 0 && isValidDate(parts->year, parts->month, parts->day);
  if (date.hasDate) {
    date.year = parts->year;
    date.month = parts->month;
    date.day = parts->day;
  }
  date.hasTime = parts->timeSet != 0;
  date.hasSeconds = parts->secondsSet != 0;
  date.hasHundredths = parts->hundredthsSet != 0;
  if (date.hasTime) {
    date.hour = parts->hour % 24;
    date.minute = parts->minute % 60;
  }
  if (date.hasSeconds) date.second = parts->second % 60;
  if (date.hasHundredths) date.hundredth = parts->hundredths % 100;
  date.subtype = subtype;
  const Value* cell = columnsOwn(field);
  if (cell != nullptr && cell->kind() == Kind::Date) {
    *valueOf(field) = Value::date(dateAsSubtype(date, cell->dateSubtype()));
  } else {
    write(field, Value::date(date));
  }
}

void writeBinary(FieldHandle field, const void* data, std::size_t size) {
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  write(field, Value::binary(size == 0 ? Bytes() : Bytes(bytes, bytes + size)));
}

void destroyList(ListHandle list) {
  if (list == 0) return;
  --liveLists;
  delete listOf(list);
}

void writeList(FieldHandle field, ListHandle list) {
  if (list == 0) return;
  write(field, Value::list(std::move(*listOf(list))));
  destroyList(list);
}

// Handles are numbers that one component host hands out; the services reach that host through the calling thread.
void writeObject(FieldHandle field, ObjectHandle object) {
  write(field, Value::object(ComponentHost::find(object)));
}
void writeReference(FieldHandle field, ObjectHandle object) {
  write(field, Value::reference(ComponentHost::find(object)));
}

void writeConstant(FieldHandle field, const char32_t* name, std::size_t length) {
  const std::optional<Value> known = ComponentHost::current().constant(utf8FromText({name, length}));
  if (known) {
    write(field, *known);
  } else {
    write(field, Value());
  }
}

// ---- Lists

// The component writes to lists that it made only; those that it borrows from a parameter it reads, and they may share
// their content with the script's variable.
ListHandle listFromField(FieldHandle field) {
  const Value& value = readable(field);
  return value.isList() ? reinterpret_cast<ListHandle>(&value.listRef()) : 0;
}
ListHandle createList(Word) {
  ++liveLists;
  return reinterpret_cast<ListHandle>(new List());
}
std::int32_t rowCount(ListHandle list) {
  return list == 0 ? 0 : static_cast<std::int32_t>(listOf(list)->lineCount());
}
std::int16_t columnCount(ListHandle list) {
  return list == 0 ? std::int16_t{0} : static_cast<std::int16_t>(listOf(list)->columnCount());
}

FieldHandle listCell(ListHandle list, std::int32_t row, std::int16_t column) {
  if (list == 0 || row < 1 || column < 1) return 0;
  const auto line = static_cast<std::size_t>(row);
  const auto number = static_cast<std::size_t>(column);
  return listOf(list)->has(line, number) ? handleOf(&listOf(list)->at(line, number)) : 0;
}
FieldHandle bindCell(ListHandle list, std::int32_t row, std::int16_t column) {
  const FieldHandle cell = listCell(list, row, column);
  return cell == 0 ? 0 : cell | boundCell;
}

bool hasColumn(ListHandle list, std::int16_t column) {
  return list != 0 && column >= 1 && static_cast<std::size_t>(column) <= listOf(list)->columnCount();
}
std::size_t columnName(ListHandle list, std::int16_t column, char32_t* buffer, std::size_t capacity) {
  if (!hasColumn(list, column)) return 0;
  const Text& name = listOf(list)->column(static_cast<std::size_t>(column)).name;
  return copyOut(name.data(), name.size(), buffer, capacity);
}
void columnType(ListHandle list, std::int16_t column, std::int32_t* type, std::int32_t* subtype, std::int32_t* length) {
  *type = *subtype = *length = 0;
  if (!hasColumn(list, column)) return;
  const Column& found = listOf(list)->column(static_cast<std::size_t>(column));
  *type = static_cast<std::int32_t>(found.kind);
  *subtype = found.subtype;
  *length = found.length;
}
std::int32_t addColumn(ListHandle list, std::int32_t type, std::int32_t subtype, std::int32_t length,
                       const char32_t* name, std::size_t nameLength) {
  if (list == 0 || type < 0 || type > 255 || *kindName(static_cast<Kind>(type)) == '\0') return 0;
  return listOf(list)->addColumn({Text(name, nameLength), static_cast<Kind>(type), subtype, length}) ? 1 : 0;
}
std::int32_t addRow(ListHandle list) {
  return list == 0 ? 0 : static_cast<std::int32_t>(listOf(list)->addLine());
}

// ---- Objects, resources, settings

ObjectHandle createObject(Word context, std::uint32_t classId) {
  return hostOf(context).createForComponent(classId);
}

ObjectHandle ofKind(FieldHandle field, Kind kind) {
  const Value& value = readable(field);
  return value.kind() == kind ? ComponentHost::handleOfInstance(value.instance()) : 0;
}
ObjectHandle ofObject(FieldHandle field) {
  return ofKind(field, Kind::Object);
}
ObjectHandle ofReference(FieldHandle field) {
  return ofKind(field, Kind::ObjectReference);
}
ObjectHandle canonical(ObjectHandle object) {
  return object;
}

std::int32_t callMethod(Word context, ObjectHandle object, const char32_t* name, std::size_t length,
                        const FieldHandle* parameters, std::uint32_t count) {
  std::vector<Value> values;
  for (std::uint32_t i = 0; i < count; ++i) values.push_back(readable(parameters[i]));
  return hostOf(context).callFromComponent(object, utf8FromText({name, length}), std::move(values)) ? 1 : 0;
}

std::uint32_t readString(Word module, std::uint32_t id, char32_t* buffer, std::uint32_t capacity) {
  const auto& text = pointerFrom<const StringResources>(module)->text(id);
  const auto length = std::min<std::size_t>({text.size(), capacity, host::kMaxResourceText});
  copyOut(text.data(), length, buffer, length);
  return static_cast<std::uint32_t>(length);
}

void collectString(Word wParam, Word, std::uint32_t id, const char32_t* text, std::size_t length) {
  if (wParam != 0) pointerFrom<CollectedStrings>(wParam)->texts.emplace_back(id, Text(text, length));
}

// This host has no options of its own; every one of them is unset.
std::int32_t option(Word, const char32_t*, std::size_t) {
  return 0;
}

std::int32_t evaluateExpression(Word, const char32_t* expression, std::size_t length, FieldHandle result) {
  Value value;
  if (!evaluateText(utf8FromText({expression, length}), value)) return 0;
  write(result, std::move(value));
  return 1;
}

std::int32_t defaultHandler(Word, std::uint32_t, Word, Word, host::CallBlock*) {
  return 0;
}

template <typename Table>
constexpr host::TableHeader header = {sizeof(Table), host::kTableVersion};

constexpr host::ValueTable valueTable = {header<host::ValueTable>,
                                         createField,
                                         destroyField,
                                         fieldType,
                                         readInteger,
                                         readNumber,
                                         readBoolean,
                                         readText,
                                         readDate,
                                         readBinary,
                                         writeInteger,
                                         writeNumber,
                                         writeBoolean,
                                         writeText,
                                         writeDate,
                                         writeBinary,
                                         writeList,
                                         writeObject,
                                         writeReference,
                                         writeConstant};
constexpr host::ListTable listTable = {header<host::ListTable>,
                                       listFromField,
                                       createList,
                                       destroyList,
                                       rowCount,
                                       columnCount,
                                       listCell,
                                       bindCell,
                                       columnName,
                                       columnType,
                                       addColumn,
                                       addRow};
constexpr host::ObjectTable objectTable = {
    header<host::ObjectTable>, createObject, ofObject, ofReference, canonical, callMethod};
constexpr host::ResourceTable resourceTable = {header<host::ResourceTable>, readString, collectString};
constexpr host::SystemTable systemTable = {header<host::SystemTable>, option, evaluateExpression};
constexpr host::HandlerTable handlerTable = {header<host::HandlerTable>, defaultHandler};

}  // namespace

void setServiceTables(host::CallBlock& block) {
  block.valueTable = &valueTable;
  block.listTable = &listTable;
  block.objectTable = &objectTable;
  block.resourceTable = &resourceTable;
  block.systemTable = &systemTable;
  block.handlerTable = &handlerTable;
}

std::size_t liveServiceFields() {
  return liveFields;
}
std::size_t liveServiceLists() {
  return liveLists;
}

}  // namespace rubrica::simhost
