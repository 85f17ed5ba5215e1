#include <cmath>
#include <limits>

#include "tests/host/host_fixture.h"

namespace rubrica::host::testing {
namespace {

class CellObject : public HostTest {
 protected:
  ObjectHandle workbook = host.construct(classid::workbook);
  ObjectHandle worksheet = addSheet(workbook);
  ObjectHandle here = cell(worksheet, 3, 2);  // row 2, column 1 of the engine

  std::string reached(int method, std::vector<Value> parameters) {
    book().clearLines();
    lastResult = host.call(here, method, std::move(parameters));
    expectNoError();
    return book().lines().empty() ? "" : book().lines().back();
  }
  std::string assigned(const Value& value) {
    book().clearLines();
    EXPECT_EQ(host.set(here, 4103, value), 1);
    return book().lines().empty() ? "" : book().lines().back();
  }
  void holds(CellType type, const std::string& reader, double value, bool isDate = false) {
    sheet().calls.numbers["cellType"] = static_cast<int>(type);
    sheet().calls.numbers["isDate"] = isDate ? 1 : 0;
    sheet().calls.numbers[reader] = value;
  }
  Value read() { return *host.get(here, 4103).value; }

  Result lastResult;
};

TEST_F(CellObject, KindOfTheValueDecidesHowItIsWritten) {
  EXPECT_EQ(assigned(textValue(U"caf\u00e9")), "writeStr(2, 1, \"caf\xc3\xa9\", null, 2)");
  EXPECT_EQ(assigned(integerValue(-7)), "writeNum(2, 1, -7, null)");
  EXPECT_EQ(assigned(numberValue(2.5)), "writeNum(2, 1, 2.5, null)");
  EXPECT_EQ(assigned(booleanValue(true)), "writeBool(2, 1, true, null, 255)");
  EXPECT_EQ(assigned(booleanValue(false)), "writeBool(2, 1, false, null, 255)");
  EXPECT_EQ(assigned(dateValue(2026, 11, 20)), "writeBlank(2, 1, null)");
  EXPECT_EQ(assigned(binaryValue("x")), "writeBlank(2, 1, null)");
  EXPECT_EQ(assigned(Value{}), "writeBlank(2, 1, null)");
}

TEST_F(CellObject, TypeParameterDecidesOverTheKind) {
  const auto date = dateValue(2026, 11, 20);
  EXPECT_EQ(reached(4001, {date}), "writeBlank(2, 1, null)");
  EXPECT_FALSE(lastResult.value);
  const ObjectHandle format = objectOf(host.call(workbook, 2008));
  const auto with = [&](Value value, int type) {
    return reached(4001, {std::move(value), objectValue(format), integerValue(type)});
  };
  EXPECT_EQ(with(integerValue(3), 1), "writeBlank(2, 1, set)");
  EXPECT_EQ(with(textValue(U"1.5"), 2), "writeNum(2, 1, 1.5, set)");
  EXPECT_EQ(with(integerValue(12), 3), "writeStr(2, 1, \"12\", set, 2)");
  EXPECT_EQ(with(booleanValue(true), 4), "writeBool(2, 1, true, set, 255)");
  EXPECT_EQ(with(date, 5), "writeNum(2, 1, 46346, set)");
  EXPECT_EQ(with(date, 6), "writeBlank(2, 1, set)");
  for (int type : {7, 0, 8, -2, 2147483647}) EXPECT_EQ(with(date, type), "") << type;
  EXPECT_EQ(reached(4001, {integerValue(3), objectValue(format), textValue(U"5")}), "writeNum(2, 1, 3, set)");
}

TEST_F(CellObject, SetValueRefusesAMissingValueAndAStrangeFormat) {
  expectError(host.call(here, 4001), -102, U"First parameter, value, is required.", U"$setValue");
  expectError(host.call(here, 4001, {integerValue(1), integerValue(2)}), -102,
              U"Unrecognized second parameter, format.  Expected Format object.", U"$setValue");
}

TEST_F(CellObject, DatesShareOneFormatForEachNumberFormat) {
  const auto write = [&](const Value& date) {
    const std::size_t before = book().formats.size();
    host.call(here, 4001, {date, objectValue(0), integerValue(5)});
    return book().formats.size() - before;
  };
  // A format parameter that is no Format is refused, so dates without a format are written by the list or by no
  // parameter at all; here the type stands at its place behind an empty Format object.
  host.errors.clear();
  const ObjectHandle empty = host.construct(classid::format);
  const auto writeWithEmpty = [&](const Value& date) {
    const std::size_t before = book().formats.size();
    host.call(here, 4001, {date, objectValue(empty), host.constant(U"kXLTypeDate")});
    return book().formats.size() - before;
  };
  EXPECT_EQ(write(dateValue(2026, 1, 1)), 0U);
  EXPECT_EQ(host.errors.size(), 1U);
  host.errors.clear();
  EXPECT_EQ(writeWithEmpty(dateValue(2026, 1, 1)), 1U);
  EXPECT_EQ(book().formats.back()->calls.numbers["numFormat"], 14);
  EXPECT_EQ(writeWithEmpty(dateValue(2026, 1, 2)), 0U);
  EXPECT_EQ(writeWithEmpty(dateTimeValue(2026, 1, 2, 3, 4, 5)), 1U);
  EXPECT_EQ(book().formats.back()->calls.numbers["numFormat"], 22);
  EXPECT_EQ(writeWithEmpty(timeValue(3, 4, 5, 0)), 1U);
  EXPECT_EQ(book().formats.back()->calls.numbers["numFormat"], 18);
  EXPECT_EQ(writeWithEmpty(timeValue(3, 4, 0, 0, false)), 1U);
  EXPECT_EQ(book().formats.back()->calls.numbers["numFormat"], 19);
  // Without any part the id is the kind of the value.
  Value nothing;
  nothing.type = kind::date;
  EXPECT_EQ(writeWithEmpty(nothing), 1U);
  EXPECT_EQ(book().formats.back()->calls.numbers["numFormat"], 23);
  EXPECT_EQ(book().last("writeBlank"), "writeBlank(2, 1, set)");
  EXPECT_EQ(writeWithEmpty(nothing), 0U);
  expectNoError();
}

TEST_F(CellObject, SubtypeOfADateTellsWhichPartsCount) {
  const ObjectHandle format = objectOf(host.call(workbook, 2008));
  const auto written = [&](const Value& date) { return reached(4001, {date, objectValue(format), integerValue(5)}); };
  EXPECT_EQ(written(timeValue(12, 0, 0, 0)), "writeNum(2, 1, 0.5, set)");
  EXPECT_EQ(written(dateTimeValue(2026, 11, 20, 12, 0, 0)), "writeNum(2, 1, 46346.5, set)");
  Value dateWithoutTime = dateTimeValue(2026, 11, 20, 12, 0, 0);
  dateWithoutTime.subtype = datesubtype::date2000;
  EXPECT_EQ(written(dateWithoutTime), "writeNum(2, 1, 46346, set)");
  Value timeWithoutDate = dateTimeValue(2026, 11, 20, 12, 0, 0);
  timeWithoutDate.subtype = datesubtype::time;
  EXPECT_EQ(written(timeWithoutDate), "writeNum(2, 1, 0.5, set)");
  EXPECT_EQ(written(timeValue(0, 0, 0, 50)), "writeNum(2, 1, 5.78704e-06, set)");
  EXPECT_EQ(written(timeValue(0, 0, 0, 0)), "writeBlank(2, 1, set)");
  EXPECT_EQ(written(integerValue(46346)), "writeBlank(2, 1, set)");
}

TEST_F(CellObject, NumbersReadAsIntegersWhereTheyAre) {
  const auto reads = [&](double number) {
    holds(CellType::number, "readNum", number);
    return read();
  };
  EXPECT_EQ(reads(3.0).type, kind::integer);
  EXPECT_EQ(reads(3.0).integer, 3);
  EXPECT_EQ(reads(-2147483648.0).integer, -2147483647 - 1);
  EXPECT_EQ(reads(3.5).type, kind::number);
  EXPECT_EQ(reads(3.5).number, 3.5);
  EXPECT_EQ(reads(3000000000.0).type, kind::number);
  EXPECT_EQ(reads(2147483648.0).type, kind::number);
  EXPECT_EQ(reads(1e300).type, kind::number);
  EXPECT_EQ(reads(std::numeric_limits<double>::quiet_NaN()).type, kind::number);
  EXPECT_EQ(reads(-std::numeric_limits<double>::infinity()).type, kind::number);
}

TEST_F(CellObject, OtherKindsReadAsThemselvesOrAsEmptyText) {
  holds(CellType::string, "x", 0);
  sheet().calls.texts["readStr"] = u"text";
  EXPECT_TRUE(read().text == U"text");
  sheet().calls.texts.clear();
  EXPECT_EQ(read().type, kind::character);
  holds(CellType::boolean, "readBool", 1);
  EXPECT_EQ(read().type, kind::boolean);
  EXPECT_EQ(read().integer, kHostTrue);
  for (CellType type : {CellType::empty, CellType::blank, CellType::error}) {
    holds(type, "x", 0);
    EXPECT_EQ(read().type, kind::character);
    EXPECT_TRUE(read().text.empty());
  }
}

TEST_F(CellObject, DatesReadWithTheSubtypeOfTheirParts) {
  const auto reads = [&](double number) {
    holds(CellType::number, "readNum", number, true);
    return read();
  };
  Value value = reads(46346.0);
  EXPECT_EQ(value.type, kind::date);
  EXPECT_EQ(value.subtype, 1);
  EXPECT_EQ(value.date.year, 2026);
  EXPECT_EQ(value.date.month, 11);
  EXPECT_EQ(value.date.day, 20);
  EXPECT_EQ(value.date.timeSet, 0);
  value = reads(46346.75);
  EXPECT_EQ(value.subtype, 4);
  EXPECT_EQ(value.date.hour, 18);
  EXPECT_EQ(value.date.secondsSet, 1);
  EXPECT_EQ(value.date.hundredthsSet, 1);
  value = reads(0.25 + 0.999 / 86400);
  EXPECT_EQ(value.subtype, 6);
  EXPECT_EQ(value.date.dateSet, 0);
  EXPECT_EQ(value.date.hour, 6);
  EXPECT_EQ(value.date.hundredths, 99);
  for (double nothing : {0.0, 1e300, -1e300, std::numeric_limits<double>::quiet_NaN()}) {
    value = reads(nothing);
    EXPECT_EQ(value.type, kind::date);
    EXPECT_EQ(value.subtype, 4);
    EXPECT_EQ(value.date.dateSet + value.date.timeSet, 0);
  }
}

TEST_F(CellObject, TypeIsDateOrNumber) {
  holds(CellType::string, "x", 0);
  EXPECT_TRUE(host.get(here, 4100).value->text == U"kXLTypeNumber");
  holds(CellType::empty, "x", 0);
  EXPECT_EQ(host.get(here, 4100).value->integer, 2);
  holds(CellType::number, "x", 0, true);
  EXPECT_TRUE(host.get(here, 4100).value->text == U"kXLTypeDate");
}

TEST_F(CellObject, ErrorsTravelAsConstants) {
  const std::pair<int, std::u32string> errors[] = {
      {0, U"kXLTypeErrorNull"},  {7, U"kXLTypeErrorDivByZero"}, {15, U"kXLTypeErrorValue"}, {23, U"kXLTypeErrorRef"},
      {29, U"kXLTypeErrorName"}, {36, U"kXLTypeErrorNum"},      {42, U"kXLTypeErrorNA"},    {255, U"kXLTypeErrorNone"}};
  for (const auto& [code, name] : errors) {
    sheet().calls.numbers["readError"] = code;
    EXPECT_TRUE(host.get(here, 4101).value->text == name) << code;
  }
}

TEST_F(CellObject, FormatIsReadAsAnObjectAndAssigned) {
  Result result = host.get(here, 4102);
  EXPECT_EQ(host.instances[objectOf(result)], classid::format);
  expectError(host.call(objectOf(result), 5000, {integerValue(1)}), -2,
              U"Internal Error.  Object dependencies are not setup.", U"");
  const ObjectHandle format = objectOf(host.call(workbook, 2008));
  sheet().givenFormat = book().formats[0].get();
  result = host.get(here, 4102);
  host.set(objectOf(result), 5106, booleanValue(true));
  EXPECT_EQ(book().formats[0]->calls.numbers["wrap"], 1);
  host.call(objectOf(result), 5000);
  EXPECT_EQ(host.errors.back().target, workbook);
  host.errors.clear();

  book().clearLines();
  EXPECT_EQ(host.set(here, 4102, objectValue(format)), 1);
  EXPECT_EQ(book().last("setCellFormat"), "setCellFormat(2, 1, set)");
  book().clearLines();
  for (const Value& wrong : {objectValue(here), objectValue(host.construct(classid::format)), integerValue(1),
                             objectValue(424242), Value{}}) {
    EXPECT_EQ(host.set(here, 4102, wrong), 1);
  }
  EXPECT_EQ(book().last("setCellFormat"), "");
}

TEST_F(CellObject, FontIsThatOfTheFormat) {
  Result result = host.get(here, 4104);
  EXPECT_EQ(host.instances[objectOf(result)], classid::font);
  expectError(host.call(objectOf(result), 6000), -2, U"Internal Error.  Object dependencies are not setup.", U"");
  host.call(workbook, 2008);
  const ObjectHandle font = objectOf(host.call(workbook, 2009));
  sheet().givenFormat = book().formats[0].get();
  EXPECT_FALSE(host.get(here, 4104).value);
  book().formats[0]->givenFont = book().fonts[0].get();
  host.set(objectOf(host.get(here, 4104)), 6104, booleanValue(true));
  EXPECT_EQ(book().fonts[0]->calls.numbers["bold"], 1);

  book().clearLines();
  host.set(here, 4104, objectValue(font));
  EXPECT_EQ(book().last("setFont"), "setFont(set)");
  EXPECT_EQ(book().last("addFormat"), "");
  sheet().givenFormat = nullptr;
  host.set(here, 4104, objectValue(font));
  EXPECT_EQ(book().last("addFormat"), "addFormat(null)");
  EXPECT_EQ(book().last("setCellFormat"), "setCellFormat(2, 1, set)");
  book().refusesNewObjects = true;
  book().clearLines();
  host.set(here, 4104, objectValue(font));
  host.set(here, 4104, textValue(U"Arial"));
  EXPECT_EQ(book().last("setFont"), "");
}

TEST_F(CellObject, UnlistedPropertiesAreAnswered) {
  EXPECT_TRUE(host.get(here, 4107).value->text == U"A");
  const auto letters = [&](int column) { return host.get(cell(worksheet, 1, column + 1), 4107).value->text; };
  EXPECT_TRUE(letters(0).empty());
  EXPECT_TRUE(letters(25) == U"Z");
  EXPECT_TRUE(letters(27) == U"AA");
  EXPECT_TRUE(letters(51) == U"AZ");
  EXPECT_TRUE(letters(53) == U"BA");
  std::set<std::u32string> all;
  for (int column = 1; column <= 675; ++column) {
    EXPECT_FALSE(letters(column).empty()) << column;
    EXPECT_TRUE(all.insert(letters(column)).second) << column;
  }
  EXPECT_EQ(letters(2147483645).size(), 2U);
  sheet().calls.texts["readComment"] = u"note";
  EXPECT_TRUE(host.get(here, 4108).value->text == U"note");
}

TEST_F(CellObject, FlagsAreRead) {
  EXPECT_EQ(host.get(here, 4109).value->integer, kHostFalse);
  sheet().calls.numbers["isFormula"] = sheet().calls.numbers["isDate"] = 1;
  EXPECT_EQ(host.get(here, 4109).value->integer, kHostTrue);
  EXPECT_EQ(host.get(here, 4110).value->integer, kHostTrue);
}

TEST_F(CellObject, ClearTakesTheOneCell) {
  EXPECT_EQ(reached(4002, {}), "clear(2, 2, 1, 1)");
}

TEST_F(CellObject, CommentSizesStandTheOtherWayAbout) {
  EXPECT_EQ(reached(4003, {textValue(U"x")}), "writeComment(2, 1, \"x\", null, 75, 129)");
  EXPECT_EQ(reached(4003, {textValue(U"x"), textValue(U"me"), integerValue(10), integerValue(20)}),
            "writeComment(2, 1, \"x\", \"me\", 10, 20)");
  expectError(host.call(here, 4003), -102, U"First parameter, comment, is required.", U"$setComment");
}

TEST_F(CellObject, PicturesTakeAScaleOrWidthAndHeight) {
  EXPECT_EQ(reached(4000, {integerValue(1), numberValue(0.5)}), "setPicture(2, 1, 1, 0.5, 0, 0, 0)");
  EXPECT_EQ(reached(4000, {integerValue(1), integerValue(50), integerValue(100)}),
            "setPicture(2, 1, 1, 100, 50, 0, 0)");
  expectError(host.call(here, 4000), -102, U"First parameter, row, is required.", U"$setPicture");
  const std::u32string count = U"Invalid number of parameters. Takes 2 or 3 parameters.";
  expectError(host.call(here, 4000, {integerValue(1)}), -102, count, U"$setPicture");
  expectError(host.call(here, 4000, {integerValue(1), integerValue(1), integerValue(1), integerValue(1)}), -102, count,
              U"$setPicture");
}

TEST_F(CellObject, Formulas) {
  expectError(host.call(here, 4004), -2, U"Cannot return formula for the cell.  Cell does not contain a formula value.",
              U"$readFormula");
  sheet().calls.numbers["isFormula"] = 1;
  EXPECT_TRUE(host.call(here, 4004).value->text.empty());
  sheet().calls.texts["readFormula"] = u"A1+1";
  EXPECT_TRUE(host.call(here, 4004).value->text == U"A1+1");
  EXPECT_EQ(book().last("readFormula"), "readFormula(2, 1, null)");
  EXPECT_EQ(reached(4005, {textValue(U"=A1")}), "writeFormula(2, 1, \"=A1\", null)");
  EXPECT_EQ(lastResult.value->integer, kHostFalse);
  sheet().calls.numbers["writeFormula"] = 1;
  reached(4005, {textValue(U"A1")});
  EXPECT_EQ(lastResult.value->integer, kHostTrue);
  expectError(host.call(here, 4005), -2, U"Parameter 1 is unrecognized.  Expected Character containing formula.",
              U"$writeFormula");
}

TEST_F(CellObject, TextOutsideTheFirstPlaneAndBrokenTextAreWritten) {
  EXPECT_EQ(assigned(textValue(U"\U0001F600")), "writeStr(2, 1, \"\xf0\x9f\x98\x80\", null, 2)");
  EXPECT_EQ(assigned(textValue({U'a', static_cast<char32_t>(0xD800), static_cast<char32_t>(0x110000)})),
            "writeStr(2, 1, \"a\xef\xbf\xbd\xef\xbf\xbd\", null, 2)");
  const std::u32string longText(70000, U'x');
  EXPECT_EQ(assigned(textValue(longText)).size(), 70000U + 27U);
}

}  // namespace
}  // namespace rubrica::host::testing
