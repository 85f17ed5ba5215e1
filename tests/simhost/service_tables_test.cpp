#include "simhost/service_tables.h"

#include <gtest/gtest.h>

#include "simhost/component_call.h"
#include "simhost/list.h"

namespace rubrica::simhost::test {
namespace {

class ServiceTables : public testing::Test {
 protected:
  ServiceTables() { setServiceTables(block); }

  host::FieldHandle field(Value value) {
    kept.push_back(std::make_unique<Value>(std::move(value)));
    return handleOf(kept.back().get());
  }
  std::int32_t kindOf(host::FieldHandle handle) const { return block.valueTable->type(handle, nullptr); }

  host::CallBlock block{};
  std::vector<std::unique_ptr<Value>> kept;
};

TEST_F(ServiceTables, CarryTheirSizesAndTheVersion) {
  EXPECT_EQ(block.valueTable->header.size, sizeof(host::ValueTable));
  EXPECT_EQ(block.listTable->header.size, sizeof(host::ListTable));
  EXPECT_EQ(block.objectTable->header.size, sizeof(host::ObjectTable));
  EXPECT_EQ(block.resourceTable->header.size, sizeof(host::ResourceTable));
  EXPECT_EQ(block.systemTable->header.size, sizeof(host::SystemTable));
  EXPECT_EQ(block.handlerTable->header.size, sizeof(host::HandlerTable));
  EXPECT_EQ(block.valueTable->header.version, host::kTableVersion);
}

TEST_F(ServiceTables, FieldsThatAComponentMakesAreCountedUntilItFreesThem) {
  const std::size_t before = liveServiceFields();
  const host::FieldHandle made = block.valueTable->create(0);
  EXPECT_EQ(liveServiceFields(), before + 1);
  EXPECT_EQ(kindOf(made), host::kind::none);
  block.valueTable->destroy(made);
  EXPECT_EQ(liveServiceFields(), before);
}

TEST_F(ServiceTables, ValuesReadAsTheKindThatIsAskedFor) {
  const host::ValueTable& values = *block.valueTable;
  EXPECT_EQ(values.readInteger(field(Value::utf8("12.9"))), 12);
  EXPECT_EQ(values.readInteger(field(Value::integer(5'000'000'000))), 2147483647);
  EXPECT_EQ(values.readInteger(field(Value::number(-1e300))), -2147483647 - 1);
  EXPECT_EQ(values.readNumber(field(Value::utf8("abc"))), 0.0);
  EXPECT_EQ(values.readNumber(0), 0.0);
  char32_t buffer[4] = {};
  EXPECT_EQ(values.readText(field(Value::integer(-12345)), buffer, 4), 6u);
  EXPECT_EQ(std::u32string(buffer, 4), U"-123");
  EXPECT_EQ(values.readText(field(Value::utf8("žž")), nullptr, 0), 2u);
  std::uint8_t bytes[2] = {};
  EXPECT_EQ(values.readBinary(field(Value::binary({1, 2, 3})), bytes, 2), 3u);
  EXPECT_EQ(bytes[1], 2);
}

TEST_F(ServiceTables, BooleansKeepTheirCodesAndTellWhetherTheyAreSet) {
  const host::ValueTable& values = *block.valueTable;
  std::int32_t known = 7;
  EXPECT_EQ(values.readBoolean(field(Value::boolean(true)), &known), host::kHostTrue);
  EXPECT_EQ(known, 1);
  EXPECT_EQ(values.readBoolean(field(Value::boolean(false)), &known), host::kHostFalse);
  EXPECT_EQ(known, 1);
  EXPECT_EQ(values.readBoolean(field(Value::emptyOf(Kind::Boolean)), &known), 0);
  EXPECT_EQ(known, 0);
  EXPECT_EQ(values.readBoolean(field(Value::integer(1)), &known), host::kHostTrue);
  EXPECT_EQ(known, 1);
  EXPECT_EQ(values.readBoolean(field(Value::constant(0)), &known), host::kHostFalse);
  EXPECT_EQ(known, 1);
  values.readBoolean(field(Value::integer(2)), &known);
  EXPECT_EQ(known, 0);
  values.readBoolean(field(Value::number(1)), &known);
  EXPECT_EQ(known, 0);
  const host::FieldHandle raw = field(Value());
  values.writeBoolean(raw, 7);
  EXPECT_EQ(valueOf(raw)->storedBoolean(), 7);
  EXPECT_FALSE(valueOf(raw)->toBoolean());
}

TEST_F(ServiceTables, DatesKeepTheirPartsAndSubtype) {
  const host::DateParts written = {2026, 11, 20, 14, 30, 5, 25, 1, 1, 1, 1};
  const host::FieldHandle date = field(Value());
  block.valueTable->writeDate(date, &written, host::datesubtype::dateTime);
  host::DateParts read{};
  block.valueTable->readDate(date, &read);
  EXPECT_EQ(read.year, 2026);
  EXPECT_EQ(read.hundredths, 25);
  EXPECT_EQ(read.secondsSet, 1);
  std::int32_t subtype = 0;
  EXPECT_EQ(block.valueTable->type(date, &subtype), host::kind::date);
  EXPECT_EQ(subtype, host::datesubtype::dateTime);
  const host::DateParts absurd = {2026, 13, 40, 99, 99, 99, 255, 1, 1, 1, 1};
  block.valueTable->writeDate(date, &absurd, host::datesubtype::dateTime);
  block.valueTable->readDate(date, &read);
  EXPECT_EQ(read.dateSet, 0);
  EXPECT_LT(read.hour, 24);
}

TEST_F(ServiceTables, ListsGrowByColumnsAndRowsAndBoundCellsConvert) {
  const host::ListTable& lists = *block.listTable;
  const std::size_t before = liveServiceLists();
  const host::ListHandle list = lists.create(0);
  EXPECT_EQ(lists.addColumn(list, host::kind::character, 0, host::kLongTextLength, U"name", 4), 1);
  EXPECT_EQ(lists.addColumn(list, host::kind::date, host::datesubtype::date1980, 0, U"day", 3), 1);
  EXPECT_EQ(lists.addColumn(list, 99, 0, 0, U"x", 1), 0);
  EXPECT_EQ(lists.addRow(list), 1);
  EXPECT_EQ(lists.rowCount(list), 1);
  EXPECT_EQ(lists.columnCount(list), 2);
  block.valueTable->writeNumber(lists.bindCell(list, 1, 1), 2.5, host::kFloatingPlaces);
  EXPECT_EQ(valueOf(lists.cell(list, 1, 1))->toUtf8(), "2.5");
  EXPECT_EQ(kindOf(lists.cell(list, 1, 1)), host::kind::character);
  const host::DateParts moment = {2026, 11, 20, 14, 30, 0, 0, 1, 1, 0, 0};
  block.valueTable->writeDate(lists.bindCell(list, 1, 2), &moment, host::datesubtype::dateTime);
  EXPECT_EQ(valueOf(lists.cell(list, 1, 2))->toUtf8(), "2026-11-20");
  char32_t name[8] = {};
  EXPECT_EQ(lists.columnName(list, 2, name, 8), 3u);
  EXPECT_EQ(std::u32string(name), U"day");
  std::int32_t type = 0, subtype = 0, length = 0;
  lists.columnType(list, 1, &type, &subtype, &length);
  EXPECT_EQ(type, host::kind::character);
  EXPECT_EQ(length, host::kLongTextLength);
  const host::FieldHandle result = field(Value());
  block.valueTable->writeList(result, list);
  EXPECT_EQ(liveServiceLists(), before);
  EXPECT_EQ(valueOf(result)->listRef().lineCount(), 1u);
}

TEST_F(ServiceTables, PlacesOutsideOfAListAreNoFields) {
  const host::ListTable& lists = *block.listTable;
  const host::ListHandle list = lists.create(0);
  lists.addColumn(list, host::kind::integer, 0, 0, U"n", 1);
  lists.addRow(list);
  for (const auto& [row, column] :
       {std::pair(0, 1), std::pair(2, 1), std::pair(1, 0), std::pair(1, 2), std::pair(-1, -1)}) {
    EXPECT_EQ(lists.cell(list, row, static_cast<std::int16_t>(column)), 0u);
    EXPECT_EQ(lists.bindCell(list, row, static_cast<std::int16_t>(column)), 0u);
  }
  // Writing to no field, as to the cell of column 0, is harmless.
  block.valueTable->writeInteger(lists.bindCell(list, 1, 0), 5);
  std::int32_t type = 1, subtype = 1, length = 1;
  lists.columnType(list, 9, &type, &subtype, &length);
  EXPECT_EQ(type + subtype + length, 0);
  EXPECT_EQ(lists.columnName(list, 9, nullptr, 0), 0u);
  EXPECT_EQ(lists.rowCount(0), 0);
  EXPECT_EQ(lists.addRow(0), 0);
  lists.destroy(list);
  lists.destroy(0);
}

TEST_F(ServiceTables, ListsAreReachedThroughTheFieldThatHoldsThem) {
  List list;
  list.addColumn({U"n", Kind::Integer, 0, 0});
  list.addLine();
  list.set(1, 1, Value::integer(42));
  const host::ListHandle handle = block.listTable->fromField(field(Value::list(list)));
  EXPECT_EQ(block.valueTable->readInteger(block.listTable->cell(handle, 1, 1)), 42);
  EXPECT_NE(block.listTable->fromField(field(Value::row(list))), 0u);
  EXPECT_EQ(block.listTable->fromField(field(Value::integer(1))), 0u);
}

TEST_F(ServiceTables, ExpressionsAreEvaluatedWithoutAScript) {
  const host::FieldHandle result = field(Value());
  EXPECT_EQ(block.systemTable->evaluate(0, U"sys(1)", 6, result), 1);
  EXPECT_EQ(valueOf(result)->toUtf8(), "1.0.0");
  EXPECT_EQ(block.systemTable->evaluate(0, U"1+", 2, result), 0);
  EXPECT_EQ(block.systemTable->evaluate(0, U"lName", 5, result), 0);
}

TEST_F(ServiceTables, ObjectsOfNothingHaveNoHandle) {
  EXPECT_EQ(block.objectTable->ofObject(field(Value::object(nullptr))), 0u);
  EXPECT_EQ(block.objectTable->ofObject(field(Value::integer(4))), 0u);
  EXPECT_EQ(block.objectTable->ofReference(0), 0u);
  EXPECT_EQ(block.objectTable->canonical(77), 77u);
  EXPECT_EQ(block.handlerTable->defaultHandler(0, 1, 0, 0, &block), 0);
}

}  // namespace
}  // namespace rubrica::simhost::test
