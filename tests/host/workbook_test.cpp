#include "tests/host/host_fixture.h"

namespace rubrica::host::testing {
namespace {

class Workbook : public HostTest {
 protected:
  ObjectHandle workbook = host.construct(classid::workbook);
  bool isTrue(const Result& result) { return result.value && result.value->integer == kHostTrue; }
  bool isFalse(const Result& result) { return result.value && result.value->integer == kHostFalse; }
};

TEST_F(Workbook, BeginsAsAnEmptyXlsBook) {
  EXPECT_FALSE(book().isXml);
  EXPECT_EQ(host.get(workbook, 2501).value->integer, 0);
  EXPECT_TRUE(host.get(workbook, 2500).value->text == U"ok");
}

TEST_F(Workbook, InitializeTakesXlsxOnlyForItsConstant) {
  const auto isXmlAfter = [&](std::vector<Value> parameters) {
    const Result result = host.call(workbook, 2000, std::move(parameters));
    EXPECT_FALSE(result.value);
    return book().isXml;
  };
  EXPECT_TRUE(isXmlAfter({integerValue(11)}));
  EXPECT_FALSE(isXmlAfter({integerValue(99)}));
  EXPECT_TRUE(isXmlAfter({host.constant(U"kXLxlsx")}));
  EXPECT_FALSE(isXmlAfter({}));
  EXPECT_TRUE(isXmlAfter({numberValue(11.0)}));
  EXPECT_FALSE(isXmlAfter({textValue(U"11")}));
  EXPECT_FALSE(isXmlAfter({integerValue(-2147483647 - 1)}));
  EXPECT_EQ(RecordingBook::alive, 1);
  expectNoError();
}

TEST_F(Workbook, LoadAnswersWhatTheBookSays) {
  RecordingBook* before = &book();
  EXPECT_TRUE(isFalse(host.call(workbook, 2001, {textValue(U"/tmp/\u00e4.xls")})));
  EXPECT_NE(&book(), before);
  EXPECT_EQ(book().last("load"), "load(\"/tmp/\xc3\xa4.xls\", null)");
  expectNoError();
  expectError(host.call(workbook, 2001), -102, U"", U"$load");
}

TEST_F(Workbook, SaveKeepsTheBook) {
  RecordingBook* before = &book();
  book().calls.numbers["save"] = 1;
  EXPECT_TRUE(isTrue(host.call(workbook, 2002, {textValue(U"a.xls")})));
  EXPECT_EQ(&book(), before);
  EXPECT_EQ(book().last("save"), "save(\"a.xls\", false)");
  expectError(host.call(workbook, 2002), -102, U"", U"$save");
}

TEST_F(Workbook, LoadRawTakesTheLengthOfTheBinary) {
  EXPECT_TRUE(isFalse(host.call(workbook, 2003, {binaryValue("abcde"), numberValue(2)})));
  EXPECT_EQ(book().last("loadRaw"), "loadRaw(set, 5, -1, -1, -1)");
  expectError(host.call(workbook, 2003), -102, U"", U"$loadraw");
  RecordingBook* before = &book();
  expectError(host.call(workbook, 2003, {binaryValue("")}), -102, U"No data in parameter", U"$loadraw");
  expectError(host.call(workbook, 2003, {integerValue(5)}), -102, U"No data in parameter", U"$loadraw");
  EXPECT_EQ(&book(), before);
}

TEST_F(Workbook, SaveRawFillsItsFirstParameterAlone) {
  book().calls.numbers["saveRaw"] = 1;
  book().rawData = std::string("a\0b", 3);
  const Result result = host.call(workbook, 2004, {binaryValue(""), numberValue(17)});
  EXPECT_TRUE(isTrue(result));
  EXPECT_EQ(result.parameters[0].bytes, std::string("a\0b", 3));
  EXPECT_EQ(result.parameters[1].number, 17);
  EXPECT_EQ(result.changed, std::set<int>{1});
}

TEST_F(Workbook, SaveRawWithoutDataSaysNothing) {
  book().calls.numbers["saveRaw"] = 1;
  const Result nothing = host.call(workbook, 2004, {binaryValue("x"), numberValue(1)});
  EXPECT_FALSE(nothing.value);
  EXPECT_EQ(nothing.parameters[0].bytes, "x");
  expectNoError();
  book().calls.numbers["saveRaw"] = 0;
  const Result failed = host.call(workbook, 2004, {binaryValue("x")});
  EXPECT_TRUE(isFalse(failed));
  EXPECT_TRUE(failed.changed.empty());
  expectError(host.call(workbook, 2004), -102, U"", U"$saveraw");
}

TEST_F(Workbook, AddSheetGivesAWorksheet) {
  const Result result = host.call(workbook, 2005, {textValue(U"Prices")});
  ASSERT_TRUE(result.value);
  EXPECT_EQ(result.value->type, kind::object);
  EXPECT_EQ(host.instances[result.value->object], classid::worksheet);
  EXPECT_EQ(book().last("addSheet"), "addSheet(\"Prices\", null)");
  host.call(workbook, 2005, {textValue(U"Copy"), objectValue(result.value->object)});
  EXPECT_EQ(book().last("addSheet"), "addSheet(\"Copy\", set)");
  host.call(workbook, 2005, {textValue(U"Copy 2"), referenceValue(result.value->object)});
  EXPECT_EQ(book().last("addSheet"), "addSheet(\"Copy 2\", set)");
  // What is no Worksheet, or one without a sheet, counts as not passed.
  host.call(workbook, 2005, {textValue(U"C"), integerValue(3)});
  EXPECT_EQ(book().last("addSheet"), "addSheet(\"C\", null)");
  host.call(workbook, 2005, {textValue(U"D"), objectValue(host.construct(classid::worksheet))});
  EXPECT_EQ(book().last("addSheet"), "addSheet(\"D\", null)");
  host.call(workbook, 2005, {textValue(U"E"), objectValue(workbook)});
  EXPECT_EQ(book().last("addSheet"), "addSheet(\"E\", null)");
  expectNoError();
}

TEST_F(Workbook, AddSheetTellsWhyItFails) {
  expectError(host.call(workbook, 2005), -102, U"First parameter, sheetName, is required.", U"$addSheet");
  book().refusesNewObjects = true;
  book().message = "book already contains such sheet name";
  expectError(host.call(workbook, 2005, {textValue(U"A")}), -2,
              U"Worksheet object returned empty. Error: book already contains such sheet name", U"$addSheet");
}

TEST_F(Workbook, GetSheetCountsFromOneAndLetsOneAboveThrough) {
  addSheet(workbook, U"A");
  addSheet(workbook, U"B");
  const ObjectHandle second = objectOf(host.call(workbook, 2006, {integerValue(2)}));
  host.set(second, 3509, integerValue(150));
  EXPECT_EQ(sheet(1).calls.numbers["zoom"], 150);
  expectError(host.call(workbook, 2006), -102, U"First parameter, sheetIndex, is required.", U"$getSheet");
  book().message = "sheetIndex is out of range";
  expectError(host.call(workbook, 2006, {integerValue(3)}), -2,
              U"Worksheet object returned empty. Error: sheetIndex is out of range", U"$getSheet");
  for (int index : {0, 4, -1, 2147483647, -2147483647 - 1}) {
    expectError(host.call(workbook, 2006, {integerValue(index)}), -102,
                U"First parameter, sheetIndex, is out of range.  Must be between 1 and the number of Worksheets(2)",
                U"$getSheet");
  }
}

TEST_F(Workbook, DelSheetAnswersWhatTheBookSays) {
  addSheet(workbook, U"A");
  addSheet(workbook, U"B");
  EXPECT_TRUE(isTrue(host.call(workbook, 2007, {integerValue(2)})));
  EXPECT_EQ(book().last("delSheet"), "delSheet(1)");
  EXPECT_TRUE(isFalse(host.call(workbook, 2007, {integerValue(1)})));
  expectNoError();
  expectError(host.call(workbook, 2007), -102, U"First parameter, sheetIndex, is required.", U"$delSheet");
  expectError(host.call(workbook, 2007, {integerValue(0)}), -102,
              U"First parameter, sheetIndex, is out of range.  Must be between 1 and the number of Worksheets(1)",
              U"$delSheet");
}

TEST_F(Workbook, FormatAndFontAreAskedForByTheEnginesIndex) {
  for (int i = 0; i < 3; ++i) {
    host.call(workbook, 2008);
    host.call(workbook, 2009);
  }
  const ObjectHandle format = objectOf(host.call(workbook, 2012, {integerValue(1)}));
  EXPECT_EQ(book().last("format"), "format(1)");
  host.set(format, 5106, booleanValue(true));
  EXPECT_EQ(book().formats[1]->calls.numbers["wrap"], 1);
  const ObjectHandle font = objectOf(host.call(workbook, 2013, {integerValue(2)}));
  host.set(font, 6104, booleanValue(true));
  EXPECT_EQ(book().fonts[2]->calls.numbers["bold"], 1);

  book().message = "index is out of range";
  for (int index : {3, 4}) {
    expectError(host.call(workbook, 2012, {integerValue(index)}), -2,
                U"Format object returned empty. Error: index is out of range", U"$format");
    expectError(host.call(workbook, 2013, {integerValue(index)}), -2,
                U"Font object returned empty. Error: index is out of range", U"$font");
  }
  for (int index : {0, 5, -7}) {
    expectError(host.call(workbook, 2012, {integerValue(index)}), -102,
                U"First parameter, index, is out of range.  Must be between 1 and size of Formats(3)", U"$format");
    expectError(host.call(workbook, 2013, {integerValue(index)}), -102,
                U"First parameter, index, is out of range.  Must be between 1 and size of Fonts(3)", U"$font");
  }
  expectError(host.call(workbook, 2012), -102, U"First parameter, index, is required.", U"$format");
  expectError(host.call(workbook, 2013), -102, U"First parameter, index, is required.", U"$font");
}

TEST_F(Workbook, AddFormatAndAddFontCopyWhatIsGiven) {
  const ObjectHandle format = objectOf(host.call(workbook, 2008));
  const ObjectHandle font = objectOf(host.call(workbook, 2009));
  EXPECT_EQ(book().last("addFormat"), "addFormat(null)");
  host.call(workbook, 2008, {objectValue(format)});
  EXPECT_EQ(book().last("addFormat"), "addFormat(set)");
  host.call(workbook, 2009, {referenceValue(font)});
  EXPECT_EQ(book().last("addFont"), "addFont(set)");
  host.call(workbook, 2008, {objectValue(host.construct(classid::format))});
  EXPECT_EQ(book().last("addFormat"), "addFormat(null)");
  expectNoError();
  for (const Value& wrong : {integerValue(1), objectValue(font), objectValue(999999), objectValue(0), textValue(U"")}) {
    expectError(host.call(workbook, 2008, {wrong}), -2, U"Unrecognized first parameter, initFormat.", U"$addFormat");
  }
  expectError(host.call(workbook, 2009, {objectValue(format)}), -2, U"Unrecognized first parameter, initFont.",
              U"$addFont");
  book().refusesNewObjects = true;
  expectError(host.call(workbook, 2008), -2, U"Format object returned empty. Error: ok", U"$addFormat");
  expectError(host.call(workbook, 2009), -2, U"Font object returned empty. Error: ok", U"$addFont");
}

TEST_F(Workbook, CustomNumberFormats) {
  book().calls.numbers["addCustomNumFormat"] = 164;
  EXPECT_EQ(host.call(workbook, 2010, {textValue(U"0.0")}).value->integer, 164);
  book().calls.numbers["addCustomNumFormat"] = 0;
  book().message = "full";
  expectError(host.call(workbook, 2010, {textValue(U"0.0")}), -2,
              U"Unable to create custom number format.  Error: full", U"$addCustomNumFormat");
  expectError(host.call(workbook, 2010), -102, U"First parameter, customNumFormat, is required.",
              U"$addCustomNumFormat");
  book().calls.texts["customNumFormat"] = u"0.0";
  EXPECT_TRUE(host.call(workbook, 2011, {integerValue(164)}).value->text == U"0.0");
  EXPECT_EQ(book().last("customNumFormat"), "customNumFormat(164)");
  book().calls.texts.clear();
  EXPECT_TRUE(host.call(workbook, 2011, {integerValue(1)}).value->text.empty());
  expectNoError();
  expectError(host.call(workbook, 2011), -102, U"First parameter, fmt, is required.", U"$customNumFormat");
}

TEST_F(Workbook, PicturesGiveTheirIdAlsoWhenTheyFail) {
  book().calls.numbers["addPicture"] = 3;
  EXPECT_EQ(host.call(workbook, 2014, {textValue(U"p.png")}).value->integer, 3);
  expectNoError();
  book().calls.numbers["addPicture"] = book().calls.numbers["addPicture2"] = -1;
  book().message = "not found";
  const Result file = host.call(workbook, 2014, {textValue(U"\u00e4%s.png")});
  EXPECT_EQ(file.value->integer, -1);
  expectError(file, -2, U"Unable to add picture: \"\u00e4%s.png\".  Error: not found", U"$addPicture");
  expectError(host.call(workbook, 2014), -102, U"", U"$addPicture");
  const Result raw = host.call(workbook, 2015, {binaryValue("PNG"), numberValue(1)});
  EXPECT_EQ(raw.value->integer, -1);
  EXPECT_EQ(book().last("addPicture2"), "addPicture2(set, 3)");
  expectError(raw, -2, U"Unable to add picture from binary.  Error: not found", U"$addPictureRaw");
  expectError(host.call(workbook, 2015), -102, U"", U"$addPictureRaw");
  expectError(host.call(workbook, 2015, {binaryValue("")}), -102, U"No binary data in parameter", U"$addPictureRaw");
}

TEST_F(Workbook, SheetsOfAReplacedBookWorkOnTheFormerOne) {
  const ObjectHandle sheet1 = addSheet(workbook);
  RecordingBook* former = &book();
  host.call(workbook, 2001, {textValue(U"missing.xls")});
  EXPECT_EQ(RecordingBook::alive, 2);
  host.set(sheet1, 3509, integerValue(80));
  EXPECT_EQ(former->sheets[0]->calls.numbers["zoom"], 80);
  EXPECT_EQ(host.get(workbook, 2501).value->integer, 0);
  host.destruct(sheet1);
  EXPECT_EQ(RecordingBook::alive, 1);
}

TEST_F(Workbook, ActiveSheetCountsFromOneWithoutALowerBound) {
  EXPECT_EQ(host.get(workbook, 2504).value->integer, 0);
  addSheet(workbook, U"A");
  addSheet(workbook, U"B");
  EXPECT_EQ(host.get(workbook, 2504).value->integer, 1);
  host.set(workbook, 2504, integerValue(2));
  EXPECT_EQ(book().last("setActiveSheet"), "setActiveSheet(1)");
  EXPECT_EQ(host.get(workbook, 2504).value->integer, 2);
  book().clearLines();
  host.set(workbook, 2504, integerValue(2));
  host.set(workbook, 2504, integerValue(3));
  EXPECT_EQ(book().last("setActiveSheet"), "");
  host.set(workbook, 2504, integerValue(0));
  EXPECT_EQ(book().last("setActiveSheet"), "setActiveSheet(-1)");
}

TEST_F(Workbook, DefaultFontIsSetWithItsSize) {
  book().calls.texts["defaultFont"] = u"Arial";
  book().calls.outs["defaultFont"] = {10};
  EXPECT_TRUE(host.get(workbook, 2505).value->text == U"Arial");
  EXPECT_EQ(host.get(workbook, 2506).value->integer, 10);
  host.set(workbook, 2505, textValue(U"Arial"));
  host.set(workbook, 2506, integerValue(10));
  EXPECT_EQ(book().last("setDefaultFont"), "");
  host.set(workbook, 2505, textValue(U"Times"));
  EXPECT_EQ(book().last("setDefaultFont"), "setDefaultFont(\"Times\", 10)");
  host.set(workbook, 2506, integerValue(12));
  EXPECT_EQ(book().last("setDefaultFont"), "setDefaultFont(\"Arial\", 12)");
}

TEST_F(Workbook, RgbModeGoesOnForXlsxAloneAndStaysOn) {
  EXPECT_EQ(host.get(workbook, 2507).value->integer, 0);
  host.set(workbook, 2507, booleanValue(true));
  EXPECT_EQ(book().last("setRgbMode"), "");
  host.call(workbook, 2000, {integerValue(11)});
  host.set(workbook, 2507, booleanValue(false));
  EXPECT_EQ(book().last("setRgbMode"), "setRgbMode(true)");
  EXPECT_EQ(host.get(workbook, 2507).value->integer, 1);
  book().clearLines();
  host.set(workbook, 2507, booleanValue(true));
  EXPECT_EQ(book().last("setRgbMode"), "");
}

TEST_F(Workbook, CountsAreReadOnly) {
  host.call(workbook, 2008);
  host.call(workbook, 2009);
  host.call(workbook, 2009);
  EXPECT_EQ(host.get(workbook, 2502).value->integer, 1);
  EXPECT_EQ(host.get(workbook, 2503).value->integer, 2);
  EXPECT_EQ(host.set(workbook, 2502, integerValue(5)), 1);
  EXPECT_EQ(host.get(workbook, 2502).value->integer, 1);
}

TEST_F(Workbook, AHostThatMakesNoObjectsGetsEmptyOnes) {
  host.refusesObjects = true;
  const Result result = host.call(workbook, 2005, {textValue(U"A")});
  ASSERT_TRUE(result.value);
  EXPECT_EQ(result.value->object, 0U);
  EXPECT_EQ(objectOf(host.call(workbook, 2008)), 0U);
}

}  // namespace
}  // namespace rubrica::host::testing
