#include <algorithm>

#include "tests/host/host_fixture.h"
#include "tests/host/module_file.h"

namespace rubrica::host::testing {
namespace {

class Messages : public HostTest {
 protected:
  Result list(std::uint32_t messageNumber, std::uint32_t classId = 0) {
    return host.exchange(messageNumber, 0, 0, classId, 0, {});
  }
  static std::size_t rows(const Result& result) {
    return result.value && result.value->list ? result.value->list->rows.size() : 0;
  }
};

TEST_F(Messages, TheModuleExportsItsEntryPointAndNothingElse) {
  EXPECT_EQ(exportedSymbols(kModulePath), std::vector<std::string>{"NVObjWndProc"});
}

TEST_F(Messages, FixedAnswersNeedNoCallBlock) {
  EXPECT_EQ(host.send(message::connect, 0, 0, nullptr), 525);
  EXPECT_EQ(host.send(message::disconnect, 0, 0, nullptr), 1);
  EXPECT_EQ(host.send(message::getVersion, 0, 0, nullptr), 0x00030055);
  EXPECT_EQ(host.send(message::featureQuery, 0, 0, nullptr), 1);
  EXPECT_EQ(host.send(message::callMethod, 0, 0, nullptr), 0);
  EXPECT_EQ(host.send(message::copyObject, 0, 0, nullptr), 0);
  EXPECT_EQ(host.send(5, 0, 0, nullptr), 0);
}

TEST_F(Messages, FixedAnswersAreTheSameWithACallBlock) {
  CallBlock block = host.block();
  EXPECT_EQ(host.send(message::connect, 0, 0, &block), 525);
  EXPECT_EQ(host.send(message::disconnect, 0, 0, &block), 1);
  EXPECT_EQ(host.send(message::getVersion, 0, 0, &block), 0x00030055);
  EXPECT_EQ(host.send(message::featureQuery, 0, 0, &block), 1);
}

TEST_F(Messages, TablesOfAnotherSizeOrVersionAreRefused) {
  CallBlock block = host.block(classid::workbook);
  ValueTable otherSize = *block.valueTable;
  otherSize.header.size += 4;
  block.valueTable = &otherSize;
  EXPECT_EQ(host.send(message::construct, 0, 99, &block), 0);
  EXPECT_EQ(RecordingBook::alive, 0);

  block = host.block(classid::workbook);
  ListTable otherVersion = *block.listTable;
  otherVersion.header.version = kTableVersion + 1;
  block.listTable = &otherVersion;
  EXPECT_EQ(host.send(message::connect, 0, 0, &block), 0);

  block = host.block(classid::workbook);
  block.objectTable = nullptr;
  EXPECT_EQ(host.send(message::construct, 0, 99, &block), 0);
}

TEST_F(Messages, SmallNumbersGoToTheHostsHandlerWithAllArguments) {
  CallBlock block = host.block();
  EXPECT_EQ(host.send(0xFFFF, 10, 20, &block), 0xFFFF + 30);
  EXPECT_EQ(host.defaultHandled, 1);
}

TEST_F(Messages, UnknownNumbersAnswerZero) {
  CallBlock block = host.block();
  std::vector<std::uint32_t> known = {
      message::getLibraryName, message::getConstantPrefix, message::getProperties, message::getConstants,
      message::getMethods,     message::setProperty,       message::connect,       message::disconnect,
      message::callMethod,     message::releaseResults,    message::construct,     message::destruct,
      message::getProperty,    message::canAssignProperty, message::getVersion,    message::featureQuery,
      message::getObjects,     message::getStaticMethods,  message::copyObject,    message::listStrings};
  for (std::uint32_t number = 0x00010000; number <= 0x01000000; number += 0x00010000) {
    if (std::find(known.begin(), known.end(), number) != known.end()) continue;
    EXPECT_EQ(host.send(number, 0, 0, &block), 0) << number;
    EXPECT_EQ(block.values, nullptr);
  }
  EXPECT_EQ(host.send(message::getVersion + 1, 0, 0, &block), 0);
  EXPECT_EQ(host.send(0xFFFFFFFF, 0, 0, &block), 0);
}

TEST_F(Messages, NameAndPrefixComeFromTheResources) {
  const Result name = list(message::getLibraryName), prefix = list(message::getConstantPrefix);
  EXPECT_EQ(name.answer, 0);
  EXPECT_TRUE(name.value->text == U"Tabulix");
  EXPECT_EQ(prefix.answer, 1);
  EXPECT_TRUE(prefix.value->text == U"kXL");
}

TEST_F(Messages, ObjectListHasFiveClassesAndNamesTheGroupOnce) {
  const Result result = list(message::getObjects);
  EXPECT_NE(result.answer, 0);
  ASSERT_EQ(rows(result), 5U);
  const List& objects = *result.value->list;
  EXPECT_EQ(objects.columns.size(), 4U);
  const std::u32string names[] = {U"Workbook: Object representing an Excel Workbook",
                                  U"Worksheet: Object representing a Worksheet within a Workbook",
                                  U"Cell: Object representing a Cell within a Worksheet",
                                  U"Font: Object representing a Font for a Cell",
                                  U"Format: Object representing a Format for a Cell"};
  for (int row = 1; row <= 5; ++row) {
    EXPECT_EQ(objects.at(row, 1).integer, 1001 + row);
    EXPECT_TRUE(objects.at(row, 2).text == names[row - 1]);
    EXPECT_EQ(objects.at(row, 3).integer, 0);
    EXPECT_TRUE(objects.at(row, 4).text == (row == 1 ? U"Tabulix" : U""));
  }
}

TEST_F(Messages, EveryTableHasItsRows) {
  struct {
    std::uint32_t classId;
    std::size_t methods, properties;
  } const tables[] = {{classid::workbook, 19, 8},
                      {classid::worksheet, 25, 24},
                      {classid::cell, 6, 9},
                      {classid::font, 1, 8},
                      {classid::format, 3, 23}};
  for (const auto& table : tables) {
    const Result methods = list(message::getMethods, table.classId);
    EXPECT_NE(methods.answer, 0);
    EXPECT_EQ(rows(methods), table.methods) << table.classId;
    const Result properties = list(message::getProperties, table.classId);
    EXPECT_NE(properties.answer, 0);
    EXPECT_EQ(rows(properties), table.properties) << table.classId;
  }
  EXPECT_EQ(rows(list(message::getStaticMethods)), 1U);
  EXPECT_EQ(list(message::getMethods, 1001).answer, 0);
  EXPECT_EQ(list(message::getProperties, 1007).answer, 0);
}

TEST_F(Messages, MethodRowsTellParametersWithTheirFlags) {
  const Result result = list(message::getMethods, classid::workbook);
  const List& methods = *result.value->list;
  EXPECT_EQ(methods.at(1, 1).integer, 2000);
  EXPECT_TRUE(methods.at(1, 2).text.rfind(U"$initialize:", 0) == 0);
  EXPECT_EQ(methods.at(1, 3).integer, kind::none);
  const List& initialize = *methods.at(1, 6).list;
  ASSERT_EQ(initialize.rows.size(), 1U);
  EXPECT_TRUE(initialize.at(1, 1).text == U"fileType");
  EXPECT_EQ(initialize.at(1, 2).integer, kind::integer);
  EXPECT_EQ(initialize.at(1, 3).integer, 0x4000);
  const List& saveRaw = *methods.at(5, 6).list;
  ASSERT_EQ(saveRaw.rows.size(), 2U);
  EXPECT_EQ(saveRaw.at(1, 3).integer, 0x200000);
  EXPECT_EQ(saveRaw.at(2, 3).integer, 0x200000);
  EXPECT_EQ(methods.at(19, 1).integer, 2018);
  EXPECT_EQ(methods.at(19, 6).list->rows.size(), 4U);
}

TEST_F(Messages, PropertyRowsTellTheirConstants) {
  const Result result = list(message::getProperties, classid::worksheet);
  const List& properties = *result.value->list;
  EXPECT_EQ(properties.at(7, 1).integer, 3506);
  EXPECT_EQ(properties.at(7, 3).integer, kind::constant);
  EXPECT_EQ(properties.at(7, 4).integer, 0x40000);
  EXPECT_EQ(properties.at(7, 6).integer, 23050);
  EXPECT_EQ(properties.at(7, 7).integer, 23091);
  EXPECT_EQ(properties.at(8, 4).integer, 0);
}

TEST_F(Messages, CellPropertiesLeaveOutTheTwoThatAreOnlyAnswered) {
  const Result result = list(message::getProperties, classid::cell);
  for (const auto& row : result.value->list->rows) {
    EXPECT_NE(row[0].integer, 4107);
    EXPECT_NE(row[0].integer, 4108);
  }
}

TEST_F(Messages, ConstantListHasARowForEachText) {
  const Result result = list(message::getConstants);
  EXPECT_NE(result.answer, 0);
  const auto first = host.strings.lower_bound(23001), last = host.strings.upper_bound(24999);
  EXPECT_EQ(rows(result), static_cast<std::size_t>(std::distance(first, last)));
  EXPECT_EQ(rows(result), 229U);
  EXPECT_EQ(result.value->list->at(1, 1).integer, 23001);
  EXPECT_TRUE(result.value->list->at(1, 2).text == U"Formats~xls:10:xls:Save in Excel 97-2003 BIFF8 .xls format.");
}

TEST_F(Messages, ListStringsHandsOutEveryText) {
  CallBlock block = host.block();
  EXPECT_EQ(host.send(message::listStrings, 3, 4, &block), 0);
  EXPECT_EQ(host.collected.size(), host.strings.size());
  EXPECT_EQ(host.collected.front().first, 1000U);
  EXPECT_EQ(host.collected.back().first, 31000U);
  EXPECT_TRUE(host.collected.back().second == U"NVObjWndProc");
}

TEST_F(Messages, VersionIsAStaticMethod) {
  const Result result = host.exchange(message::callMethod, 0, 0, 0, 1901, {});
  EXPECT_TRUE(result.value->text == U"3.8.2.0");
  EXPECT_FALSE(host.exchange(message::callMethod, 0, 0, 0, 1902, {}).value);
  const Result methods = list(message::getStaticMethods);
  EXPECT_EQ(methods.value->list->at(1, 3).integer, kind::none);
}

TEST_F(Messages, ResourceTextsThatCodeReliesOnStandAsTheyAre) {
  const auto expect = [&](std::uint32_t id, const std::u32string& text) {
    EXPECT_TRUE(host.strings[id] == text) << id << ": " << utf8FromUtf32(host.strings[id]);
  };
  expect(1000, U"Tabulix");
  expect(1001, U"Tabulix");
  expect(1901,
         U"$rubricaVersion:$rubricaVersion() Returns version number of Rubrica that this library is compiled "
         U"against.");
  expect(3003,
         U"$setCol:$setCol(ShortInt/Char colFirst, ShortInt/Char colLast, Number width, Format format[none], "
         U"Boolean hidden[kFalse]) Sets column width and format for all columns from colFirst to colLast. "
         U"Columns may be hidden. Returns kFalse if error occurs.  Get error info $errorMessage.");
  expect(23002, U"xlsx:11:xlsx:Save in Excel 2007+ OOXML .xlsx format.");
  expect(23059, U"PaperA4:10:PaperA4: A4 210 x 297 mm");
  expect(23065, U"PaperQuatro:16:PaperQuatro: Quarto 215 x 275 mm");
  expect(23208, U"ColorTooltip:59:ColorTooltip: Tooltip color. (Cannot be set to this Color, it is internal only.)");
  expect(23209, U"ColorAuto:60:ColorAuto: Automatic color.  (Cannot be set to this Color, it is internal only.)");
  expect(23250, U"NumberFormats~NumFormatGeneral:1:NumFormatGeneral: general format");
  expect(23285, U"NumFormatText:36:NumFormatText: text value     any text");
  for (std::uint32_t gap : {23007U, 23008U, 23009U, 23149U, 23249U, 24006U}) EXPECT_FALSE(host.strings.contains(gap));
}

TEST_F(Messages, EveryConstantNameHasItsValueAndAllAreDifferent) {
  std::set<std::u32string> names;
  for (const auto& [id, row] : host.strings) {
    if (id < 23001 || id > 24999) continue;
    const std::u32string::size_type begin = row.find(U'~') == row.npos ? 0 : row.find(U'~') + 1;
    const std::u32string name = U"kXL" + row.substr(begin, row.find(U':') - begin);
    EXPECT_TRUE(names.insert(name).second) << utf8FromUtf32(name);
    EXPECT_EQ(host.constant(name).type, kind::constant);
  }
  EXPECT_EQ(host.constant(U"kXLErrBadCalculation").integer, -105);
  EXPECT_EQ(host.constant(U"kXLxlsx").integer, 11);
  EXPECT_EQ(host.constant(U"kXLExtractMapFromHeader").integer, 5);
}

TEST_F(Messages, ResultsAreReleasedOnce) {
  CallBlock block = host.block();
  EXPECT_EQ(host.send(message::getLibraryName, 0, 0, &block), 0);
  EXPECT_EQ(host.send(message::getConstantPrefix, 0, 0, &block), 1);
  ASSERT_NE(block.values, nullptr);
  EXPECT_TRUE(block.values->next != nullptr);
  EXPECT_EQ(host.fields, 2);
  EXPECT_EQ(host.send(message::releaseResults, 0, 0, &block), 1);
  EXPECT_EQ(block.values, nullptr);
  EXPECT_EQ(host.fields, 0);
  EXPECT_EQ(host.send(message::releaseResults, 0, 0, &block), 1);
}

}  // namespace
}  // namespace rubrica::host::testing
