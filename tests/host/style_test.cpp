#include "tests/host/host_fixture.h"

namespace rubrica::host::testing {
namespace {

class StyleObjects : public HostTest {
 protected:
  ObjectHandle workbook = host.construct(classid::workbook);
  ObjectHandle format = objectOf(host.call(workbook, 2008));
  ObjectHandle font = objectOf(host.call(workbook, 2009));
  RecordingFormat& formatCalls() { return *book().formats[0]; }
  RecordingFont& fontCalls() { return *book().fonts[0]; }

  // Walks a whole group through a property: by number, by name, as a constant, and back.
  void expectConstants(ObjectHandle object, CallLog& calls, int property, const std::string& getter,
                       std::uint32_t firstResource, const std::vector<int>& engineValues) {
    for (std::size_t i = 0; i < engineValues.size(); ++i) {
      const auto value = static_cast<std::int32_t>(i + 1);
      const std::u32string& row = host.strings.at(firstResource + static_cast<std::uint32_t>(i));
      const std::size_t begin = row.find(U'~') == row.npos ? 0 : row.find(U'~') + 1;
      const std::u32string name = row.substr(begin, row.find(U':') - begin);
      for (const Value& given : {integerValue(value), constantValue(value), textValue(name)}) {
        calls.numbers[getter] = -12345;
        EXPECT_EQ(host.set(object, property, given), 1);
        EXPECT_EQ(calls.numbers[getter], engineValues[i]) << getter << " " << value;
      }
      const Result read = host.get(object, property);
      EXPECT_EQ(read.value->integer, value) << getter;
      EXPECT_TRUE(read.value->text == U"kXL" + name) << getter;
    }
    const int last = static_cast<int>(engineValues.size());
    calls.numbers[getter] = engineValues[0];
    for (const Value& wrong : {integerValue(0), integerValue(last + 1), integerValue(-1), textValue(U"NoSuchName"),
                               textValue(U""), numberValue(1.0), booleanValue(true), Value{}}) {
      EXPECT_EQ(host.set(object, property, wrong), 1);
      EXPECT_EQ(calls.numbers[getter], engineValues[0]) << getter;
    }
    calls.numbers[getter] = 1234567;
    EXPECT_TRUE(host.get(object, property).value->isEmpty()) << getter;
  }

  static std::vector<int> counted(int count, int first = 0) {
    std::vector<int> values;
    for (int i = 0; i < count; ++i) values.push_back(first + i);
    return values;
  }
  static std::vector<int> colors() {
    std::vector<int> values = counted(58, 8);
    values.push_back(81);
    values.push_back(32767);
    return values;
  }
};

TEST_F(StyleObjects, ConstantsOfFormatsTravelBothWays) {
  CallLog& calls = formatCalls().calls;
  expectConstants(format, calls, 5104, "alignH", 23300, counted(8));
  expectConstants(format, calls, 5105, "alignV", 23350, counted(5));
  const char* sides[] = {"borderLeft", "borderRight", "borderTop", "borderBottom"};
  for (int i = 0; i < 4; ++i) {
    expectConstants(format, calls, 5110 + i, sides[i], 23400, counted(14));
    expectConstants(format, calls, 5114 + i, std::string(sides[i]) + "Color", 23150, colors());
  }
  expectConstants(format, calls, 5118, "borderDiagonal", 23450, counted(4));
  expectConstants(format, calls, 5119, "borderDiagonalColor", 23150, colors());
  expectConstants(format, calls, 5120, "fillPattern", 23500, counted(19));
  expectConstants(format, calls, 5121, "patternForegroundColor", 23150, colors());
  expectConstants(format, calls, 5122, "patternBackgroundColor", 23150, colors());
}

TEST_F(StyleObjects, ConstantsOfFontsTravelBothWays) {
  CallLog& calls = fontCalls().calls;
  expectConstants(font, calls, 6103, "color", 23150, colors());
  expectConstants(font, calls, 6105, "script", 23550, counted(3));
  expectConstants(font, calls, 6106, "underline", 23600, {0, 1, 2, 33, 34});
}

TEST_F(StyleObjects, ColorsCalledInternalCanBeSetAllTheSame) {
  host.set(font, 6103, textValue(U"ColorAuto"));
  EXPECT_EQ(book().last("setColor"), "setColor(32767)");
  host.set(font, 6103, textValue(U"ColorTooltip"));
  EXPECT_EQ(book().last("setColor"), "setColor(81)");
}

TEST_F(StyleObjects, PlainPropertiesAreReadAndSetOnlyWhenTheyDiffer) {
  const std::vector<std::tuple<ObjectHandle, int, std::string, Value>> properties = {
      {format, 5100, "Locked", booleanValue(true)},      {format, 5101, "Hidden", booleanValue(true)},
      {format, 5106, "Wrap", booleanValue(true)},        {format, 5108, "Indent", integerValue(3)},
      {format, 5109, "ShrinkToFit", booleanValue(true)}, {font, 6100, "Size", integerValue(14)},
      {font, 6101, "Italic", booleanValue(true)},        {font, 6102, "StrikeOut", booleanValue(true)},
      {font, 6104, "Bold", booleanValue(true)}};
  for (const auto& [object, id, name, value] : properties) {
    EXPECT_EQ(host.set(object, id, value), 1);
    EXPECT_NE(book().last("set" + name), "") << name;
    EXPECT_EQ(host.get(object, id).value->integer, value.integer) << name;
    book().clearLines();
    host.set(object, id, value);
    EXPECT_EQ(book().last("set" + name), "") << name;
  }
}

TEST_F(StyleObjects, NumFormatTakesConstantsAndIds) {
  const auto setTo = [&](const Value& value) {
    book().clearLines();
    host.set(format, 5103, value);
    return book().last("setNumFormat");
  };
  EXPECT_EQ(setTo(host.constant(U"kXLNumFormatText")), "setNumFormat(49)");
  EXPECT_TRUE(host.get(format, 5103).value->text == U"kXLNumFormatText");
  EXPECT_EQ(setTo(textValue(U"NumFormatNumber_sep_negbra")), "setNumFormat(37)");
  EXPECT_EQ(host.get(format, 5103).value->integer, 24);
  EXPECT_EQ(setTo(integerValue(164)), "setNumFormat(164)");
  EXPECT_EQ(host.get(format, 5103).value->type, kind::integer);
  EXPECT_EQ(host.get(format, 5103).value->integer, 164);
  EXPECT_EQ(setTo(integerValue(164)), "");
  EXPECT_EQ(setTo(numberValue(14.0)), "setNumFormat(14)");
  EXPECT_TRUE(host.get(format, 5103).value->text == U"kXLNumFormatDate");
  for (const Value& wrong : {constantValue(0), constantValue(37), textValue(U"NumFormatNothing"), textValue(U"")}) {
    EXPECT_EQ(setTo(wrong), "");
  }
}

TEST_F(StyleObjects, RotationRefusesTheEndsOfItsRange) {
  const auto setTo = [&](int rotation) {
    formatCalls().calls.numbers["rotation"] = 0;
    book().clearLines();
    host.set(format, 5107, integerValue(rotation));
    return !book().last("setRotation").empty();
  };
  for (int good : {1, 90, 91, 179, 255}) EXPECT_TRUE(setTo(good)) << good;
  for (int bad : {0, 180, 181, 254, 256, -1, -2147483647 - 1, 2147483647}) EXPECT_FALSE(setTo(bad)) << bad;
  formatCalls().calls.numbers["rotation"] = 45;
  EXPECT_EQ(host.get(format, 5107).value->integer, 45);
}

TEST_F(StyleObjects, BorderMethodsMapUnknownNumbersToNothing) {
  host.call(format, 5000, {integerValue(3)});
  EXPECT_EQ(book().last("setBorder"), "setBorder(2)");
  host.call(format, 5000, {integerValue(99)});
  EXPECT_EQ(book().last("setBorder"), "setBorder(0)");
  host.call(format, 5001, {host.constant(U"kXLColorRed")});
  EXPECT_EQ(book().last("setBorderColor"), "setBorderColor(10)");
  host.call(format, 5001, {integerValue(-5)});
  EXPECT_EQ(book().last("setBorderColor"), "setBorderColor(0)");
  expectNoError();
  expectError(host.call(format, 5000), -102, U"First parameter, borderStyleConstant, is required.", U"$setBorder");
  expectError(host.call(format, 5001), -102, U"First parameter, borderColor, is required.", U"$setBorderColor");
}

TEST_F(StyleObjects, SelfGivesAReferenceUnlessAnObjectIsAskedFor) {
  for (const auto& [object, method, property] :
       std::vector<std::tuple<ObjectHandle, int, int>>{{format, 5002, 5101}, {font, 6000, 6101}}) {
    const Result reference = host.call(object, method);
    EXPECT_EQ(reference.value->type, kind::objectReference);
    EXPECT_EQ(host.call(object, method, {booleanValue(true)}).value->type, kind::objectReference);
    EXPECT_EQ(host.call(object, method, {integerValue(1)}).value->type, kind::objectReference);
    const Result copy = host.call(object, method, {booleanValue(false)});
    EXPECT_EQ(copy.value->type, kind::object);
    EXPECT_EQ(host.call(object, method, {constantValue(0)}).value->type, kind::object);
    host.set(objectOf(reference), property, booleanValue(true));
    EXPECT_EQ(host.get(objectOf(copy), property).value->integer, kHostTrue);
    for (const Value& wrong : {textValue(U"yes"), integerValue(2), numberValue(1), Value{}}) {
      expectError(host.call(object, method, {wrong}), -102,
                  U"First parameter, asObjRef, is unrecognized.  Expected boolean.", U"$self");
    }
  }
}

TEST_F(StyleObjects, FontOfAFormat) {
  Result none = host.get(format, 5102);
  ASSERT_TRUE(none.value);
  EXPECT_TRUE(none.value->isEmpty());
  formatCalls().givenFont = &fontCalls();
  const ObjectHandle found = objectOf(host.get(format, 5102));
  host.set(found, 6104, booleanValue(true));
  EXPECT_EQ(fontCalls().calls.numbers["bold"], 1);
  book().clearLines();
  host.set(format, 5102, objectValue(font));
  EXPECT_EQ(book().last("setFont"), "");
  host.set(format, 5102, objectValue(objectOf(host.call(workbook, 2009))));
  EXPECT_EQ(book().last("setFont"), "setFont(set)");
  book().clearLines();
  for (const Value& wrong : {objectValue(format), textValue(U"Arial"), objectValue(host.construct(classid::font))}) {
    host.set(format, 5102, wrong);
  }
  EXPECT_EQ(book().last("setFont"), "");
}

TEST_F(StyleObjects, FontNameChangesOnlyWhereThereIsOne) {
  host.set(font, 6107, textValue(U"Arial"));
  EXPECT_EQ(book().last("setName"), "");
  fontCalls().calls.texts["name"] = u"Calibri";
  host.set(font, 6107, textValue(U"Calibri"));
  EXPECT_EQ(book().last("setName"), "");
  host.set(font, 6107, textValue(U"Arial"));
  EXPECT_EQ(book().last("setName"), "setName(\"Arial\")");
  EXPECT_TRUE(host.get(font, 6107).value->text == U"Arial");
}

}  // namespace
}  // namespace rubrica::host::testing
