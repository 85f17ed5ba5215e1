// The built module with real .xls books, driven through its exported function alone.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

#include <gtest/gtest.h>

#include "host/text.h"
#include "tests/host/fake_host.h"
#include "tests/host/loaded_module.h"
#include "tests/host/module_file.h"
#include "tests/support/temporary_directory.h"

namespace rubrica::host::testing {
namespace {

class Component : public ::testing::Test {
 protected:
  ~Component() override {
    while (!host.instances.empty()) host.destruct(host.instances.begin()->first);
    EXPECT_EQ(host.fields, 0);
    EXPECT_EQ(host.lists, 0);
    EXPECT_TRUE(host.errors.empty()) << host.errors.size() << " errors, the last one \""
                                     << utf8FromUtf32(host.errors.back().longText) << '"';
    std::filesystem::remove(path);
  }

  static ObjectHandle objectOf(const Result& result) { return result.value ? result.value->object : 0; }
  ObjectHandle addSheet(const char32_t* name) { return objectOf(host.call(workbook, 2005, {textValue(name)})); }
  ObjectHandle cellAt(ObjectHandle sheet, int row, int column) {
    return objectOf(host.call(sheet, 3000, {integerValue(row), integerValue(column)}));
  }
  Value valueAt(ObjectHandle sheet, int row, int column) { return *host.get(cellAt(sheet, row, column), 4103).value; }
  void write(ObjectHandle sheet, int row, int column, std::vector<Value> parameters) {
    host.call(cellAt(sheet, row, column), 4001, std::move(parameters));
  }
  bool isTrue(const Result& result) { return result.value && result.value->integer == kHostTrue; }
  std::u32string message() { return host.get(workbook, 2500).value->text; }
  FiredError takeError() {
    if (host.errors.empty()) return {};
    const FiredError error = host.errors.back();
    host.errors.clear();
    return error;
  }
  Value pathValue() { return textValue(utf32FromUtf8(path)); }

  FakeHost host{loadedModule(), kTabulixPath};
  ObjectHandle workbook = host.construct(classid::workbook);
  rubrica::test::TemporaryDirectory directory;
  std::string path = directory.file("book.xls").string();
};

TEST_F(Component, ExportsItsEntryPointAndNothingElse) {
  EXPECT_EQ(exportedSymbols(kTabulixPath), std::vector<std::string>{"NVObjWndProc"});
}

TEST_F(Component, AWorkbookIsMadeSavedAndReadBack) {
  const ObjectHandle sheet = addSheet(U"Prices");
  const ObjectHandle money = objectOf(host.call(workbook, 2008));
  host.set(money, 5103, textValue(U"NumFormatNumber_sep_d2"));
  write(sheet, 1, 1, {textValue(U"T\u00e9 \u8336 \U0001F375")});
  write(sheet, 1, 2, {numberValue(1234.5), objectValue(money)});
  write(sheet, 2, 1, {booleanValue(true)});
  write(sheet, 2, 2, {integerValue(-7)});
  const ObjectHandle dates = objectOf(host.call(workbook, 2008));
  host.set(dates, 5103, host.constant(U"kXLNumFormatCustom_mdyyyy_hmm"));
  write(sheet, 3, 1, {dateTimeValue(2026, 11, 20, 18, 30, 15), objectValue(dates), integerValue(5)});
  ASSERT_TRUE(isTrue(host.call(workbook, 2002, {pathValue()}))) << utf8FromUtf32(message());

  ASSERT_TRUE(isTrue(host.call(workbook, 2001, {pathValue()}))) << utf8FromUtf32(message());
  const ObjectHandle loaded = objectOf(host.call(workbook, 2006, {integerValue(1)}));
  EXPECT_TRUE(valueAt(loaded, 1, 1).text == U"T\u00e9 \u8336 \U0001F375");
  EXPECT_EQ(valueAt(loaded, 1, 2).number, 1234.5);
  EXPECT_EQ(valueAt(loaded, 2, 1).integer, kHostTrue);
  EXPECT_EQ(valueAt(loaded, 2, 2).integer, -7);
  const Value date = valueAt(loaded, 3, 1);
  EXPECT_EQ(date.type, kind::date);
  EXPECT_EQ(date.subtype, datesubtype::dateTime);
  EXPECT_EQ(date.date.year, 2026);
  EXPECT_EQ(date.date.hour, 18);
  EXPECT_EQ(date.date.second, 15);
  EXPECT_TRUE(host.get(cellAt(loaded, 3, 1), 4100).value->text == U"kXLTypeDate");
  EXPECT_EQ(host.get(cellAt(loaded, 3, 1), 4110).value->integer, kHostTrue);
  const ObjectHandle format = objectOf(host.get(cellAt(loaded, 1, 2), 4102));
  EXPECT_TRUE(host.get(format, 5103).value->text == U"kXLNumFormatNumber_sep_d2");
  EXPECT_EQ(valueAt(loaded, 9, 9).type, kind::character);
  EXPECT_EQ(host.get(loaded, 3500).value->integer, 1);
  EXPECT_EQ(host.get(loaded, 3501).value->integer, 4);
  EXPECT_EQ(host.get(loaded, 3503).value->integer, 3);
}

TEST_F(Component, RawBytesMakeTheSameBook) {
  write(addSheet(U"A"), 1, 1, {textValue(U"raw")});
  const Result saved = host.call(workbook, 2004, {binaryValue(""), numberValue(0)});
  ASSERT_TRUE(isTrue(saved)) << utf8FromUtf32(message());
  EXPECT_EQ(saved.parameters[1].number, 0);
  const ObjectHandle other = host.construct(classid::workbook);
  EXPECT_TRUE(isTrue(host.call(other, 2003, {saved.parameters[0], numberValue(1)})));
  const ObjectHandle sheet = objectOf(host.call(other, 2006, {integerValue(1)}));
  EXPECT_TRUE(valueAt(sheet, 1, 1).text == U"raw");
  // Bytes that are no book fail with a reason, and the Workbook goes on with an empty one.
  EXPECT_FALSE(isTrue(host.call(other, 2003, {binaryValue("not a workbook")})));
  EXPECT_FALSE(host.get(other, 2500).value->text.empty());
  EXPECT_TRUE(valueAt(sheet, 1, 1).text == U"raw");
}

TEST_F(Component, LoadingAMissingFileLeavesAnEmptyBook) {
  const ObjectHandle sheet = addSheet(U"A");
  write(sheet, 1, 1, {integerValue(5)});
  EXPECT_FALSE(isTrue(host.call(workbook, 2001, {textValue(U"/nowhere/at/all.xls")})));
  EXPECT_FALSE(message() == U"ok");
  EXPECT_EQ(host.get(workbook, 2501).value->integer, 0);
  EXPECT_EQ(host.get(workbook, 2504).value->integer, 0);
  EXPECT_EQ(valueAt(sheet, 1, 1).integer, 5);
  EXPECT_FALSE(isTrue(host.call(workbook, 2002, {textValue(U"/nowhere/at/all.xls")})));
}

TEST_F(Component, SheetsAreAddedCopiedFoundAndDeleted) {
  const ObjectHandle first = addSheet(U"First");
  write(first, 2, 3, {textValue(U"copied")});
  const ObjectHandle copy = objectOf(host.call(workbook, 2005, {textValue(U"Copy"), objectValue(first)}));
  EXPECT_EQ(host.get(workbook, 2501).value->integer, 2);
  EXPECT_NE(copy, 0U);
  host.call(workbook, 2005, {textValue(U"First")});
  EXPECT_EQ(takeError().code, -2);
  host.call(workbook, 2006, {integerValue(3)});
  EXPECT_EQ(takeError().code, -2);
  host.call(workbook, 2006, {integerValue(0)});
  EXPECT_EQ(takeError().code, -102);
  host.set(workbook, 2504, integerValue(2));
  EXPECT_EQ(host.get(workbook, 2504).value->integer, 2);
  EXPECT_TRUE(isTrue(host.call(workbook, 2007, {integerValue(1)})));
  host.call(first, 3021);
  EXPECT_EQ(takeError().code, -2);
  EXPECT_FALSE(isTrue(host.call(workbook, 2007, {integerValue(1)})));
  EXPECT_TRUE(message() == U"can't remove the last sheet in workbook") << utf8FromUtf32(message());
}

TEST_F(Component, FormatsAndFontsKeepEverySetting) {
  const ObjectHandle format = objectOf(host.call(workbook, 2008));
  const ObjectHandle font = objectOf(host.call(workbook, 2009));
  host.set(format, 5102, objectValue(font));
  const std::pair<int, std::u32string> constants[] = {
      {5104, U"AlignHCenter"},
      {5105, U"AlignVTop"},
      {5110, U"BorderStyleThin"},
      {5111, U"BorderStyleDouble"},
      {5112, U"BorderStyleHair"},
      {5113, U"BorderStyleSlantDashDot"},
      {5114, U"ColorRed"},
      {5115, U"ColorBlue"},
      {5116, U"ColorGray80"},
      {5117, U"ColorBlack"},
      {5118, U"BorderDiagonalBoth"},
      {5119, U"ColorGreen"},
      {5120, U"FillPatternGray6p25"},
      {5121, U"ColorYellow"},
      {5122, U"ColorWhite"},
      {5103, U"NumFormatPercent_d2"},
  };
  for (const auto& [id, name] : constants) {
    host.set(format, id, textValue(name));
    EXPECT_TRUE(host.get(format, id).value->text == U"kXL" + name) << id;
  }
  for (int id : {5101, 5106, 5109}) {
    host.set(format, id, booleanValue(true));
    EXPECT_EQ(host.get(format, id).value->integer, kHostTrue) << id;
  }
  host.set(format, 5107, integerValue(45));
  host.set(format, 5107, integerValue(0));
  EXPECT_EQ(host.get(format, 5107).value->integer, 45);
  host.set(format, 5107, integerValue(255));
  EXPECT_EQ(host.get(format, 5107).value->integer, 255);
  host.set(format, 5108, integerValue(4));
  EXPECT_EQ(host.get(format, 5108).value->integer, 4);

  host.set(font, 6100, integerValue(17));
  host.set(font, 6103, textValue(U"ColorAuto"));
  host.set(font, 6104, booleanValue(true));
  host.set(font, 6105, textValue(U"ScriptSuper"));
  host.set(font, 6106, textValue(U"UnderlineDoubleAcc"));
  host.set(font, 6107, textValue(U"Courier New"));
  const ObjectHandle same = objectOf(host.get(format, 5102));
  EXPECT_EQ(host.get(same, 6100).value->integer, 17);
  EXPECT_TRUE(host.get(same, 6103).value->text == U"kXLColorAuto");
  EXPECT_EQ(host.get(same, 6104).value->integer, kHostTrue);
  EXPECT_TRUE(host.get(same, 6105).value->text == U"kXLScriptSuper");
  EXPECT_TRUE(host.get(same, 6106).value->text == U"kXLUnderlineDoubleAcc");
  EXPECT_TRUE(host.get(same, 6107).value->text == U"Courier New");
}

TEST_F(Component, CustomNumberFormatsReadAsTheirId) {
  const Result id = host.call(workbook, 2010, {textValue(U"0.00 \"kg\"")});
  ASSERT_TRUE(id.value);
  EXPECT_TRUE(host.call(workbook, 2011, {*id.value}).value->text == U"0.00 \"kg\"");
  EXPECT_TRUE(host.call(workbook, 2011, {integerValue(9999)}).value->text.empty());
  const ObjectHandle format = objectOf(host.call(workbook, 2008));
  host.set(format, 5103, *id.value);
  EXPECT_EQ(host.get(format, 5103).value->type, kind::integer);
  EXPECT_EQ(host.get(format, 5103).value->integer, id.value->integer);
}

TEST_F(Component, FormatOneIsTheSecondFormatOfAFreshBook) {
  const int formats = host.get(workbook, 2502).value->integer;
  ASSERT_GT(formats, 1);
  EXPECT_NE(objectOf(host.call(workbook, 2012, {integerValue(1)})), 0U);
  host.call(workbook, 2012, {integerValue(formats)});
  EXPECT_EQ(takeError().code, -2);
  host.call(workbook, 2012, {integerValue(formats + 2)});
  EXPECT_EQ(takeError().code, -102);
}

TEST_F(Component, RgbModeStaysOffForXls) {
  host.set(workbook, 2507, booleanValue(true));
  EXPECT_EQ(host.get(workbook, 2507).value->integer, 0);
}

TEST_F(Component, DefaultFontIsReadAndSet) {
  host.set(workbook, 2505, textValue(U"Verdana"));
  host.set(workbook, 2506, integerValue(12));
  EXPECT_TRUE(host.get(workbook, 2505).value->text == U"Verdana");
  EXPECT_EQ(host.get(workbook, 2506).value->integer, 12);
}

TEST_F(Component, AFontOfACellChangesEveryCellOfTheFormat) {
  const ObjectHandle sheet = addSheet(U"A");
  const ObjectHandle format = objectOf(host.call(workbook, 2008));
  write(sheet, 1, 1, {integerValue(1), objectValue(format)});
  write(sheet, 2, 1, {integerValue(2), objectValue(format)});
  const ObjectHandle font = objectOf(host.call(workbook, 2009));
  host.set(font, 6100, integerValue(30));
  host.set(cellAt(sheet, 1, 1), 4104, objectValue(font));
  EXPECT_EQ(host.get(objectOf(host.get(cellAt(sheet, 2, 1), 4104)), 6100).value->integer, 30);
}

TEST_F(Component, ListsGoToASheetAndBack) {
  auto list = makeList({{U"Name"}, {U"Number"}, {U"When"}, {U"Flag"}}, {});
  for (int i = 0; i < 2000; ++i) {
    list->rows.push_back({textValue(utf32FromUtf8("row " + std::to_string(i))), numberValue(i * 0.5),
                          dateValue(2026, 1 + i % 12, 1 + i % 28), booleanValue(i % 3 == 0)});
  }
  host.call(workbook, 2016, {listValue(list), integerValue(1)});
  const Result result = host.call(workbook, 2017, {integerValue(2)});
  ASSERT_TRUE(result.value && result.value->list);
  const List& back = *result.value->list;
  ASSERT_EQ(back.rows.size(), list->rows.size());
  ASSERT_EQ(back.columns.size(), 4U);
  EXPECT_TRUE(back.columns[2].name == U"When");
  EXPECT_EQ(back.columns[2].type, kind::date);
  for (int i = 1; i <= 2000; ++i) {
    ASSERT_TRUE(back.at(i, 1).text == list->at(i, 1).text);
    const Value& number = back.at(i, 2);
    ASSERT_EQ(number.type == kind::integer ? number.integer : number.number, list->at(i, 2).number);
    ASSERT_EQ(back.at(i, 3).date.month, list->at(i, 3).date.month);
    ASSERT_EQ(back.at(i, 3).date.day, list->at(i, 3).date.day);
    ASSERT_EQ(back.at(i, 4).integer, list->at(i, 4).integer);
  }
  // Twice in a row: the only sheet is replaced.
  host.call(workbook, 2016, {listValue(makeList({{U"x"}}, {{integerValue(9)}}))});
  EXPECT_EQ(host.get(workbook, 2501).value->integer, 1);
  EXPECT_EQ(host.call(workbook, 2017).value->list->at(1, 1).integer, 9);
}

TEST_F(Component, ListsPastTheLastRowAndColumnOfTheSheetFailInSilence) {
  auto list = makeList({{U"x"}}, {});
  for (int i = 0; i < 65540; ++i) list->rows.push_back({integerValue(i)});
  host.call(workbook, 2016, {listValue(list)});
  Result result = host.call(workbook, 2017);
  EXPECT_EQ(result.value->list->rows.size(), 65536U);
  EXPECT_EQ(result.value->list->at(65536, 1).integer, 65535);

  auto wide = makeList({}, {{}});
  for (int i = 0; i < 300; ++i) {
    wide->columns.push_back({utf32FromUtf8("c" + std::to_string(i))});
    wide->rows[0].push_back(integerValue(i));
  }
  host.call(workbook, 2016, {listValue(wide)});
  result = host.call(workbook, 2017);
  EXPECT_EQ(result.value->list->columns.size(), 255U);
  EXPECT_EQ(result.value->list->at(1, 255).integer, 254);
}

// A PNG as far as the component looks into it, 32 by 20 pixels, whose bytes tell it from others.
std::string pictureFile(char filler) {
  using namespace std::string_literals;
  return "\x89PNG\r\n\x1a\n\0\0\0\x0DIHDR\0\0\0\x20\0\0\0\x14"s + std::string(300, filler);
}

int countOf(const std::string& bytes, const std::string& part) {
  int count = 0;
  for (auto at = bytes.find(part); at != std::string::npos; at = bytes.find(part, at + 1)) ++count;
  return count;
}

// The start of an Obj record: FtCmo of 18 bytes with the type of the object.
std::string objectOfType(char type) {
  using namespace std::string_literals;
  return "\x15\0\x12\0"s + type + '\0';
}

TEST_F(Component, PicturesAreAddedFromFilesAndBinariesAndPlaced) {
  const ObjectHandle sheet = addSheet(U"Pictures");
  const std::string picturePath = directory.file("logo.png").string();
  std::ofstream(picturePath, std::ios::binary) << pictureFile('f');
  EXPECT_EQ(host.call(workbook, 2014, {textValue(utf32FromUtf8(picturePath))}).value->integer, 0);
  EXPECT_EQ(host.call(workbook, 2015, {binaryValue(pictureFile('r')), numberValue(1)}).value->integer, 1);
  host.call(cellAt(sheet, 1, 1), 4000, {integerValue(0), numberValue(1)});
  host.call(cellAt(sheet, 5, 2), 4000, {integerValue(1), numberValue(0.5)});
  host.call(cellAt(sheet, 9, 3), 4000, {integerValue(1), integerValue(4), integerValue(2)});
  EXPECT_TRUE(message() == U"ok") << utf8FromUtf32(message());
  host.call(cellAt(sheet, 1, 1), 4000, {integerValue(2), numberValue(1)});
  EXPECT_TRUE(message() == U"pictureId is out of range") << utf8FromUtf32(message());

  for (int round = 0; round < 2; ++round) {
    const std::string saved = host.call(workbook, 2004, {binaryValue(""), numberValue(0)}).parameters[0].bytes;
    EXPECT_EQ(countOf(saved, pictureFile('f')), 1);
    EXPECT_EQ(countOf(saved, pictureFile('r')), 1);
    EXPECT_EQ(countOf(saved, objectOfType(8)), 3);
    ASSERT_TRUE(isTrue(host.call(workbook, 2003, {binaryValue(saved), numberValue(1)})));
  }
}

TEST_F(Component, PicturesThatAreNoneAreRefused) {
  EXPECT_EQ(host.call(workbook, 2014, {textValue(U"/nowhere/logo.png")}).value->integer, -1);
  EXPECT_TRUE(takeError().longText == U"Unable to add picture: \"/nowhere/logo.png\".  Error: can't open file");
  const std::string empty = directory.file("empty.png").string();
  std::ofstream(empty, std::ios::binary) << "";
  EXPECT_EQ(host.call(workbook, 2014, {textValue(utf32FromUtf8(empty))}).value->integer, -1);
  EXPECT_TRUE(message() == U"picture is empty");
  takeError();
  EXPECT_EQ(host.call(workbook, 2015, {binaryValue("no picture at all"), numberValue(17)}).value->integer, -1);
  EXPECT_TRUE(takeError().longText == U"Unable to add picture from binary.  Error: unknown picture format");
  host.call(workbook, 2015, {binaryValue(""), numberValue(0)});
  EXPECT_TRUE(takeError().longText == U"No binary data in parameter");
}

TEST_F(Component, CommentsAreSetReplacedAndReadBackAfterALoad) {
  ObjectHandle sheet = addSheet(U"Comments");
  host.call(cellAt(sheet, 2, 3), 4003,
            {textValue(U"First \u8336"), textValue(U"Inger"), integerValue(150), integerValue(60)});
  host.call(cellAt(sheet, 4, 1), 4003, {textValue(U"Before")});
  host.call(cellAt(sheet, 4, 1), 4003, {textValue(U"After"), textValue(U"")});
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(host.get(cellAt(sheet, 2, 3), 4108).value->text == U"First \u8336");
    EXPECT_TRUE(host.get(cellAt(sheet, 4, 1), 4108).value->text == U"After");
    EXPECT_TRUE(host.get(cellAt(sheet, 1, 1), 4108).value->text.empty());
    const std::string saved = host.call(workbook, 2004, {binaryValue(""), numberValue(0)}).parameters[0].bytes;
    EXPECT_EQ(countOf(saved, objectOfType(25)), 3) << "the box of the former comment stays";
    ASSERT_TRUE(isTrue(host.call(workbook, 2003, {binaryValue(saved), numberValue(1)})));
    sheet = objectOf(host.call(workbook, 2006, {integerValue(1)}));
  }
}

// The leak checker of the sanitizer build sees what is left behind.
TEST_F(Component, AHundredThousandObjectsAreMadeCopiedAndDestroyedOnBooksThatAreReplaced) {
  constexpr int kRounds = 1000, kObjectsInRound = 100;
  int made = 0;
  const auto copyOf = [&](ObjectHandle object, std::uint32_t classId) {
    CopyHandles handles{object, host.construct(classId)};
    CallBlock block = host.block(classId);
    host.send(message::copyObject, 0, reinterpret_cast<Word>(&handles), &block);
    host.send(message::releaseResults, 0, 0, &block);
    made += 2;
    return handles.destination;
  };
  std::vector<ObjectHandle> kept;
  for (int round = 0; round < kRounds; ++round) {
    const ObjectHandle sheet = addSheet(U"A");
    std::vector<ObjectHandle> objects = {sheet, copyOf(sheet, classid::worksheet)};
    while (objects.size() < kObjectsInRound) {
      const ObjectHandle here = cellAt(sheet, static_cast<int>(objects.size()), 1);
      const ObjectHandle format = objectOf(host.call(workbook, 2008));
      const ObjectHandle child = objects.size() % 8 == 2 ? format : objectOf(host.call(workbook, 2009));
      host.call(here, 4001, {integerValue(round), objectValue(format)});
      for (ObjectHandle object : {here, copyOf(here, classid::cell), child,
                                  copyOf(child, child == format ? classid::format : classid::font)}) {
        objects.push_back(object);
      }
      if (child != format) host.destruct(format);
    }
    host.call(workbook, 2000);  // a new book: all that is left stands on the former one
    EXPECT_EQ(valueAt(objects[1], 2, 1).integer, round);
    EXPECT_EQ(host.get(objects[3], 4103).value->integer, round);
    EXPECT_EQ(host.get(workbook, 2501).value->integer, 0);
    // Some outlive several books; the others go in one order and in the other.
    if (round % 2 == 1) std::reverse(objects.begin(), objects.end());
    for (std::size_t i = 0; i < objects.size(); ++i) {
      if (i % 50 == 7) {
        kept.push_back(objects[i]);
      } else {
        host.destruct(objects[i]);
      }
    }
    if (kept.size() > 100) {
      for (ObjectHandle object : kept) host.destruct(object);
      kept.clear();
    }
  }
  EXPECT_GE(made, kRounds * kObjectsInRound);
}

}  // namespace
}  // namespace rubrica::host::testing
