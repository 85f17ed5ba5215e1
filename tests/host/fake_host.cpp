#include "tests/host/fake_host.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "host/text.h"
#include "tests/host/module_file.h"

namespace rubrica::host::testing {
namespace {

FakeHost* host = nullptr;

Value& at(FieldHandle field) {
  return *reinterpret_cast<Value*>(field);
}
FieldHandle handleOf(Value& value) {
  return reinterpret_cast<FieldHandle>(&value);
}
std::shared_ptr<List>& listAt(ListHandle list) {
  return *reinterpret_cast<std::shared_ptr<List>*>(list);
}

template <class T>
std::size_t copyOut(const T* from, std::size_t length, T* buffer, std::size_t capacity) {
  std::copy_n(from, std::min(length, capacity), buffer);
  return length;
}

std::u32string asText(const Value& value) {
  switch (value.type) {
    case kind::character:
      return value.text;
    case kind::integer:
    case kind::constant:
      return utf32FromUtf8(std::to_string(value.integer));
    case kind::number:
      return utf32FromUtf8(std::to_string(value.number));
    default:
      return {};
  }
}

FieldHandle createField(Word) {
  ++host->fields;
  return handleOf(*new Value);
}

void destroyField(FieldHandle field) {
  --host->fields;
  delete &at(field);
}

std::int32_t typeOf(FieldHandle field, std::int32_t* subtype) {
  if (subtype != nullptr) *subtype = at(field).subtype;
  return at(field).type;
}

std::int32_t readInteger(FieldHandle field) {
  const Value& value = at(field);
  if (value.type == kind::character) return std::atoi(utf8FromUtf32(value.text).c_str());
  if (value.type != kind::number) return value.integer;
  return value.number > -2147483649.0 && value.number < 2147483648.0 ? static_cast<std::int32_t>(value.number) : 0;
}

double readNumber(FieldHandle field) {
  const Value& value = at(field);
  if (value.type == kind::character) return std::atof(utf8FromUtf32(value.text).c_str());
  return value.type == kind::number ? value.number : value.integer;
}

std::int32_t readBoolean(FieldHandle field, std::int32_t* succeeded) {
  const Value& value = at(field);
  const bool isBoolean = value.type == kind::boolean && value.integer != 0;
  const bool isWhole = value.type == kind::integer || value.type == kind::constant;
  const bool isReadable = isBoolean || (isWhole && (value.integer == 0 || value.integer == 1));
  if (succeeded != nullptr) *succeeded = isReadable ? 1 : 0;
  if (!isReadable) return 0;
  return isBoolean ? value.integer : value.integer + 1;
}

std::size_t readText(FieldHandle field, char32_t* buffer, std::size_t capacity) {
  const std::u32string text = asText(at(field));
  return copyOut(text.data(), text.size(), buffer, capacity);
}

void readDate(FieldHandle field, DateParts* parts) {
  *parts = at(field).date;
}

std::size_t readBinary(FieldHandle field, void* buffer, std::size_t capacity) {
  const std::string& bytes = at(field).bytes;
  return copyOut(bytes.data(), bytes.size(), static_cast<char*>(buffer), capacity);
}

void writeInteger(FieldHandle field, std::int32_t value) {
  at(field) = integerValue(value);
}
void writeNumber(FieldHandle field, double value, std::int32_t) {
  at(field) = numberValue(value);
}
void writeBoolean(FieldHandle field, std::int32_t code) {
  at(field) = booleanValue(false);
  at(field).integer = code;
}
void writeText(FieldHandle field, const char32_t* text, std::size_t length) {
  at(field) = textValue({text, length});
}
void writeDate(FieldHandle field, const DateParts* parts, std::int32_t subtype) {
  at(field) = Value{};
  at(field).type = kind::date;
  at(field).subtype = subtype;
  at(field).date = *parts;
}
void writeBinary(FieldHandle field, const void* data, std::size_t size) {
  at(field) = binaryValue({static_cast<const char*>(data), size});
}
void writeList(FieldHandle field, ListHandle list) {
  auto* owned = &listAt(list);
  at(field) = listValue(*owned);
  --host->lists;
  delete owned;
}
void writeObject(FieldHandle field, ObjectHandle object) {
  at(field) = objectValue(object);
}
void writeReference(FieldHandle field, ObjectHandle object) {
  at(field) = referenceValue(object);
}
void writeConstant(FieldHandle field, const char32_t* name, std::size_t length) {
  at(field) = host->constant({name, length});
}

ListHandle listFromField(FieldHandle field) {
  auto& list = at(field).list;
  return list ? reinterpret_cast<ListHandle>(&list) : 0;
}
ListHandle createList(Word) {
  ++host->lists;
  return reinterpret_cast<ListHandle>(new std::shared_ptr<List>(std::make_shared<List>()));
}
void destroyList(ListHandle list) {
  --host->lists;
  delete &listAt(list);
}
std::int32_t rowCount(ListHandle list) {
  return static_cast<std::int32_t>(listAt(list)->rows.size());
}
std::int16_t columnCount(ListHandle list) {
  return static_cast<std::int16_t>(listAt(list)->columns.size());
}

FieldHandle listCell(ListHandle list, std::int32_t row, std::int16_t column) {
  List& rows = *listAt(list);
  if (row < 1 || row > rowCount(list) || column < 1 || column > columnCount(list)) return 0;
  return handleOf(rows.rows[static_cast<std::size_t>(row) - 1][static_cast<std::size_t>(column) - 1]);
}

FieldHandle bindCell(ListHandle list, std::int32_t row, std::int16_t column) {
  const FieldHandle found = listCell(list, row, column);
  return found != 0 ? found : handleOf(host->scratch);
}

const Column* columnAt(ListHandle list, std::int16_t column) {
  if (column < 1 || column > columnCount(list)) return nullptr;
  return &listAt(list)->columns[static_cast<std::size_t>(column) - 1];
}

std::size_t columnName(ListHandle list, std::int16_t column, char32_t* buffer, std::size_t capacity) {
  const Column* found = columnAt(list, column);
  return found != nullptr ? copyOut(found->name.data(), found->name.size(), buffer, capacity) : 0;
}

void columnType(ListHandle list, std::int16_t column, std::int32_t* type, std::int32_t* subtype, std::int32_t* length) {
  const Column* found = columnAt(list, column);
  *type = found != nullptr ? found->type : 0;
  *subtype = found != nullptr ? found->subtype : 0;
  *length = found != nullptr ? found->length : 0;
}

std::int32_t addColumn(ListHandle list, std::int32_t type, std::int32_t subtype, std::int32_t length,
                       const char32_t* name, std::size_t nameLength) {
  listAt(list)->columns.push_back({{name, nameLength}, type, subtype, length});
  return 1;
}

std::int32_t addRow(ListHandle list) {
  if (listAt(list)->rows.size() >= host->mostRows) return 0;
  listAt(list)->rows.emplace_back(listAt(list)->columns.size());
  return rowCount(list);
}

ObjectHandle createObject(Word, std::uint32_t classId) {
  return host->refusesObjects ? 0 : host->construct(classId);
}
ObjectHandle ofObject(FieldHandle field) {
  return at(field).object;
}
ObjectHandle canonical(ObjectHandle object) {
  return object;
}

std::int32_t callMethod(Word, ObjectHandle object, const char32_t* name, std::size_t length,
                        const FieldHandle* parameters, std::uint32_t count) {
  if (std::u32string(name, length) != U"$error" || count != 4) return 0;
  host->errors.push_back(
      {object, at(parameters[0]).integer, at(parameters[1]).text, at(parameters[2]).text, at(parameters[3]).text});
  if (host->onError) host->onError(object);
  return 1;
}

std::uint32_t readString(Word, std::uint32_t id, char32_t* buffer, std::uint32_t capacity) {
  const auto found = host->strings.find(id);
  if (found == host->strings.end()) return 0;
  return static_cast<std::uint32_t>(
      std::min<std::size_t>(copyOut(found->second.data(), found->second.size(), buffer, capacity), capacity));
}

void collectString(Word, Word, std::uint32_t id, const char32_t* text, std::size_t length) {
  host->collected.emplace_back(id, std::u32string(text, length));
}

std::int32_t option(Word, const char32_t*, std::size_t) {
  return 0;
}
std::int32_t evaluate(Word, const char32_t*, std::size_t, FieldHandle result) {
  at(result) = textValue(U"10.2");
  return 1;
}

std::int32_t defaultHandler(Word window, std::uint32_t messageNumber, Word wParam, Word lParam, CallBlock*) {
  ++host->defaultHandled;
  return static_cast<std::int32_t>(window + messageNumber + wParam + lParam);
}

template <class Table>
constexpr TableHeader header() {
  return {sizeof(Table), kTableVersion};
}

constexpr ValueTable kValues{header<ValueTable>(), createField, destroyField, typeOf,         readInteger,
                             readNumber,           readBoolean, readText,     readDate,       readBinary,
                             writeInteger,         writeNumber, writeBoolean, writeText,      writeDate,
                             writeBinary,          writeList,   writeObject,  writeReference, writeConstant};
constexpr ListTable kLists{header<ListTable>(), listFromField, createList, destroyList, rowCount,
                           columnCount,         listCell,      bindCell,   columnName,  columnType,
                           addColumn,           addRow};
constexpr ObjectTable kObjects{header<ObjectTable>(), createObject, ofObject, ofObject, canonical, callMethod};
constexpr ResourceTable kResources{header<ResourceTable>(), readString, collectString};
constexpr SystemTable kSystem{header<SystemTable>(), option, evaluate};
constexpr HandlerTable kHandlers{header<HandlerTable>(), defaultHandler};

}  // namespace

FakeHost::FakeHost(ComponentProcedure procedure, const std::string& modulePath)
    : strings(readStringResources(modulePath)), _procedure(procedure) {
  host = this;
}

FakeHost::~FakeHost() {
  while (!instances.empty()) destruct(instances.begin()->first);
  host = nullptr;
}

std::int32_t FakeHost::send(std::uint32_t messageNumber, Word wParam, Word lParam, CallBlock* block) {
  return _procedure(0, messageNumber, wParam, lParam, block);
}

CallBlock FakeHost::block(std::uint32_t classId) {
  CallBlock block{};
  block.classId = classId;
  block.groupId = group;
  block.valueTable = &kValues;
  block.listTable = &kLists;
  block.objectTable = &kObjects;
  block.resourceTable = &kResources;
  block.systemTable = &kSystem;
  block.handlerTable = &kHandlers;
  return block;
}

Result FakeHost::exchange(std::uint32_t messageNumber, Word wParam, ObjectHandle object, std::uint32_t classId, int id,
                          std::vector<Value> parameters) {
  Result result;
  std::vector<ValueRecord> records(std::max<std::size_t>(parameters.size(), 1));
  for (std::size_t i = 0; i < records.size(); ++i) {
    records[i] = ValueRecord{};
    if (i < parameters.size()) {
      records[i].field = handleOf(parameters[i]);
      records[i].number = static_cast<std::uint8_t>(i + 1);
    }
    if (i + 1 < records.size()) records[i].next = &records[i + 1];
  }
  records[0].first = static_cast<Word>(id);
  CallBlock call = block(classId);
  call.values = records.data();
  result.answer = send(messageNumber, wParam, object, &call);
  for (const ValueRecord* record = call.values; record != nullptr; record = record->next) {
    if (record->number == 0 && record->field != 0) result.value = at(record->field);
    if ((record->flags & kRecordChanged) != 0) result.changed.insert(record->number);
  }
  send(message::releaseResults, 0, object, &call);
  result.parameters = std::move(parameters);
  return result;
}

ObjectHandle FakeHost::construct(std::uint32_t classId) {
  const ObjectHandle handle = nextHandle++;
  CallBlock call = block(classId);
  if (send(message::construct, 0, handle, &call) != 1) return 0;
  instances[handle] = classId;
  return handle;
}

void FakeHost::destruct(ObjectHandle object) {
  CallBlock call = block(instances[object]);
  send(message::destruct, 1, object, &call);
  instances.erase(object);
}

Result FakeHost::call(ObjectHandle object, int method, std::vector<Value> parameters) {
  return exchange(message::callMethod, 0, object, 0, method, std::move(parameters));
}

Result FakeHost::get(ObjectHandle object, int property) {
  return exchange(message::getProperty, 0, object, 0, property, {});
}

std::int32_t FakeHost::set(ObjectHandle object, int property, const Value& value) {
  return exchange(message::setProperty, 0, object, 0, property, {value}).answer;
}

bool FakeHost::canAssign(ObjectHandle object, int property) {
  return exchange(message::canAssignProperty, 0, object, 0, property, {}).answer == 1;
}

Value FakeHost::constant(const std::u32string& name) const {
  for (const auto& [id, row] : strings) {
    if (id < 23001 || id > 24999) continue;
    const std::size_t begin = row.find(U'~') == row.npos ? 0 : row.find(U'~') + 1;
    const std::size_t colon = row.find(U':');
    if (name != U"kXL" + row.substr(begin, colon - begin)) continue;
    Value value = constantValue(std::atoi(utf8FromUtf32(row.substr(colon + 1)).c_str()));
    value.text = name;
    return value;
  }
  return {};
}

}  // namespace rubrica::host::testing
