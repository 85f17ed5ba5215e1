// What user code meets at the seams: sheets of a book that has been replaced, cells that are no cells, lists from
// sheets with gaps.
#include <fstream>

#include "tests/component/component_calls.h"

namespace rubrica::simhost::test {
namespace {

Value integer(int value) {
  return Value::integer(value);
}
Value text(const char* value) {
  return Value::utf8(value);
}

class RealBooks : public ComponentCalls {
 protected:
  Object addSheet(const char* name) { return objectFrom(workbook, "$addSheet", {text(name)}); }
  BookPtr savedBook() {
    const auto file = directory.file("saved.xls");
    EXPECT_TRUE(call(workbook, "$save", {text(file.c_str())}).toBoolean());
    return loadedBook(file);
  }
  List listOf(Values values) {
    List list;
    list.addColumn({U"c", values.empty() ? Kind::Character : values[0].kind()});
    for (const Value& value : values) list.set(list.addLine(), 1, value);
    return list;
  }

  Object workbook = make("Workbook");
};

TEST_F(RealBooks, SheetsFromBeforeALoadWorkOnTheDroppedBookAndAreNotSaved) {
  set(cell(addSheet("Kept"), 1, 1), "$value", text("saved"));
  const auto file = directory.file("first.xls");
  ASSERT_TRUE(call(workbook, "$save", {text(file.c_str())}).toBoolean());
  const Object former = objectFrom(workbook, "$getSheet", {integer(1)});
  ASSERT_TRUE(call(workbook, "$load", {text(file.c_str())}).toBoolean());
  set(cell(former, 1, 1), "$value", text("changed on the former book"));
  set(cell(former, 2, 1), "$value", integer(5));
  EXPECT_EQ(get(cell(former, 2, 1), "$value").toInteger(), 5);
  const BookPtr book = savedBook();
  ASSERT_NE(book, nullptr);
  EXPECT_EQ(std::u16string(book->getSheet(0)->readStr(0, 0)), u"saved");
  EXPECT_EQ(book->getSheet(0)->cellType(1, 0), CellType::empty);
}

TEST_F(RealBooks, EveryMethodOfACellInRowZeroTellsThatNothingStandsBehindIt) {
  const Object nowhere = cell(addSheet("A"), 0, 1);
  for (const ComponentClass& objectClass : host.classes()) {
    if (objectClass.name != "Cell") continue;
    ASSERT_FALSE(objectClass.methods.empty());
    for (const ComponentMethod& method : objectClass.methods) {
      EXPECT_EQ(call(nowhere, method.name, {integer(1), integer(1)}).kind(), Kind::None) << method.name;
      EXPECT_EQ(takeErrors(), "-2 Internal Error.  Object dependencies are not setup.\n") << method.name;
    }
  }
}

TEST_F(RealBooks, AnUnknownExtractionStyleIsReportedWithTheBareText) {
  addSheet("A");
  std::vector<Value> reported;
  workbook->setErrorHandler([&](const std::vector<Value>& values) { reported = values; });
  call(workbook, "$extractList", {integer(6)});
  ASSERT_EQ(reported.size(), 4u);
  EXPECT_EQ(reported[0].toInteger(), constant("kXLErrBadParams").toInteger());
  EXPECT_EQ(reported[1].toUtf8(), "Invalid parameters");
  EXPECT_EQ(reported[2].toUtf8(), "");
}

TEST_F(RealBooks, AnUnknownPopulationStyleKeepsTheBook) {
  set(cell(addSheet("Mine"), 1, 1), "$value", text("mine"));
  call(workbook, "$populateWithList", {Value::list(listOf({text("x")})), integer(4)});
  EXPECT_EQ(takeErrors(), "-104 Style 4 is not valid.\n");
  const BookPtr book = savedBook();
  ASSERT_EQ(book->sheetCount(), 1);
  EXPECT_EQ(std::u16string(book->getSheet(0)->name()), u"Mine");
  EXPECT_EQ(std::u16string(book->getSheet(0)->readStr(0, 0)), u"mine");
}

TEST_F(RealBooks, AnEmptyListMakesAnEmptySheet1) {
  call(workbook, "$populateWithList", {Value::list(List()), integer(0)});
  const BookPtr book = savedBook();
  ASSERT_EQ(book->sheetCount(), 1);
  EXPECT_EQ(std::u16string(book->getSheet(0)->name()), u"Sheet1");
  EXPECT_EQ(book->getSheet(0)->lastRow(), book->getSheet(0)->firstRow());
}

TEST_F(RealBooks, DatesOfAListShareAFormatForEachNumberFormatAndZeroDatesAreBlank) {
  DateTime day;
  day.year = 2026;
  day.month = 11;
  day.day = 20;
  day.hasDate = true;
  day.subtype = shortDate;
  DateTime nextDay = day;
  nextDay.day = 21;
  DateTime none;
  none.subtype = shortDate;
  call(workbook, "$populateWithList",
       {Value::list(listOf({Value::date(day), Value::date(nextDay), Value::date(none)})), integer(0)});
  const BookPtr book = savedBook();
  Sheet& sheet = *book->getSheet(0);
  constexpr int dayFormat = 14;
  EXPECT_TRUE(sheet.isDate(0, 0));
  EXPECT_EQ(sheet.readNum(1, 0), 46347);
  EXPECT_EQ(sheet.cellFormat(0, 0), sheet.cellFormat(1, 0));
  EXPECT_EQ(sheet.cellFormat(0, 0)->numFormat(), dayFormat);
  EXPECT_EQ(sheet.cellType(2, 0), CellType::blank);
}

TEST_F(RealBooks, AnEmptyCellAmongTheHeadingsNamesItsColumnByLetter) {
  const Object sheet = addSheet("A");
  for (int column : {1, 2, 4}) set(cell(sheet, 1, column), "$value", text(("h" + std::to_string(column)).c_str()));
  for (int column = 1; column <= 4; ++column) set(cell(sheet, 2, column), "$value", integer(column));
  const Value list = call(workbook, "$extractList", {integer(2)});
  ASSERT_TRUE(list.isList());
  ASSERT_EQ(list.listRef().columnCount(), 4u);
  EXPECT_EQ(list.listRef().column(2).name, U"h2");
  EXPECT_EQ(list.listRef().column(3).name, U"C");
  EXPECT_EQ(list.listRef().column(4).name, U"h4");
  EXPECT_EQ(list.listRef().at(1, 3).toInteger(), 3);
}

TEST_F(RealBooks, OnlyTheFirstOfSeveralSheetsIsExtracted) {
  set(cell(addSheet("First"), 1, 1), "$value", text("from the first"));
  const Object second = addSheet("Second");
  for (int row = 1; row <= 3; ++row) set(cell(second, row, 2), "$value", text("from the second"));
  set(workbook, "$activeSheet", integer(2));
  const Value list = call(workbook, "$extractList");
  ASSERT_TRUE(list.isList());
  ASSERT_EQ(list.listRef().lineCount(), 1u);
  ASSERT_EQ(list.listRef().columnCount(), 1u);
  EXPECT_EQ(list.listRef().at(1, 1).toUtf8(), "from the first");
}

TEST_F(RealBooks, MappedHeadingsThatTheDefinitionLacksAreDropped) {
  const Object sheet = addSheet("A");
  const char* headings[] = {"Age", "Shoe size", "Name"};
  for (int column = 1; column <= 3; ++column) {
    set(cell(sheet, 1, column), "$value", text(headings[column - 1]));
    set(cell(sheet, 2, column), "$value", integer(column * 10));
  }
  List definition;
  definition.addColumn({U"Name"});
  definition.addColumn({U"Age"});
  const Value list = call(workbook, "$extractList", {integer(5), Value::list(definition)});
  ASSERT_TRUE(list.isList());
  ASSERT_EQ(list.listRef().columnCount(), 2u);
  ASSERT_EQ(list.listRef().lineCount(), 1u);
  EXPECT_EQ(list.listRef().at(1, 1).toInteger(), 30);
  EXPECT_EQ(list.listRef().at(1, 2).toInteger(), 10);
}

TEST_F(RealBooks, FormatOneIsTheFormatThatTheEngineCountsAsTheSecond) {
  const Object format = objectFrom(workbook, "$format", {integer(1)});
  set(format, "$rotation", integer(77));
  addSheet("A");
  const BookPtr book = savedBook();
  EXPECT_EQ(book->format(1)->rotation(), 77);
  EXPECT_NE(book->format(0)->rotation(), 77);
}

}  // namespace
}  // namespace rubrica::simhost::test
