#include <algorithm>
#include <map>
#include <string>

#include "tests/host/host_fixture.h"

namespace rubrica::host::testing {
namespace {

class Lists : public HostTest {
 protected:
  ObjectHandle workbook = host.construct(classid::workbook);

  static std::vector<Column> columns(std::vector<std::u32string> names) {
    std::vector<Column> result;
    for (auto& name : names) result.push_back({std::move(name)});
    return result;
  }
  std::shared_ptr<List> people() {
    return makeList(columns({U"Name", U"Age"}), {{textValue(U"Ann"), integerValue(41)}, {textValue(U"Bo"), Value{}}});
  }
  std::vector<std::string> written() {
    std::vector<std::string> result;
    for (const std::string& line : book().lines()) {
      if (line.rfind("write", 0) == 0) result.push_back(line);
    }
    return result;
  }
  Result populate(std::vector<Value> parameters) { return host.call(workbook, 2016, std::move(parameters)); }
};

TEST_F(Lists, WithoutAHeaderTheListStandsFromTheFirstRow) {
  const Result result = populate({listValue(people())});
  EXPECT_FALSE(result.value);
  EXPECT_EQ(book().last("addSheet"), "addSheet(\"Sheet1\", null)");
  EXPECT_EQ(written(), (std::vector<std::string>{"writeStr(0, 0, \"Ann\", null, 2)", "writeStr(1, 0, \"Bo\", null, 2)",
                                                 "writeNum(0, 1, 41, null)"}));
  EXPECT_EQ(book().last("addFont"), "");
  expectNoError();
}

TEST_F(Lists, HeaderComesFromTheDefinition) {
  populate({listValue(people()), host.constant(U"kXLPopulateDefinitionHeader")});
  EXPECT_EQ(written(), (std::vector<std::string>{"writeStr(0, 0, \"Name\", set, 2)", "writeStr(0, 1, \"Age\", set, 2)",
                                                 "writeStr(1, 0, \"Ann\", null, 2)", "writeStr(2, 0, \"Bo\", null, 2)",
                                                 "writeNum(1, 1, 41, null)"}));
  EXPECT_EQ(book().last("setBold"), "setBold(true)");
  EXPECT_EQ(book().last("setSize"), "setSize(11)");
  EXPECT_EQ(book().last("setWrap"), "setWrap(true)");
  EXPECT_EQ(book().last("setFont"), "setFont(set)");
  EXPECT_EQ(book().last("setBorderBottom"), "setBorderBottom(2)");
}

TEST_F(Lists, CustomHeadersAreWrittenByTheirKind) {
  const auto header = makeList(columns({U"a", U"b"}), {{textValue(U"Who"), integerValue(2026)}});
  for (std::int32_t type : {kind::list, kind::row}) {
    book().clearLines();
    populate({listValue(people()), integerValue(2), listValue(header, type)});
    EXPECT_EQ(written()[0], "writeStr(0, 0, \"Who\", set, 2)");
    EXPECT_EQ(written()[1], "writeNum(0, 1, 2026, set)");
    expectNoError();
  }
  // A header row that is too short leaves cells as they were.
  book().clearLines();
  populate({listValue(people()), integerValue(2), listValue(makeList(columns({U"a"}), {{textValue(U"Who")}}))});
  EXPECT_EQ(written().size(), 4U);
}

TEST_F(Lists, ColumnsTakeTheFormatsOfTheFormatRow) {
  const ObjectHandle format = objectOf(host.call(workbook, 2008));
  const auto header = makeList(columns({U"a", U"b"}), {{textValue(U"A"), textValue(U"B")}});
  const auto formats = makeList(columns({U"a", U"b"}), {{objectValue(format), referenceValue(0)}});
  populate({listValue(people()), integerValue(3), listValue(header), listValue(formats, kind::row)});
  EXPECT_EQ(written()[2], "writeStr(1, 0, \"Ann\", set, 2)");
  EXPECT_EQ(written()[4], "writeNum(1, 1, 41, null)");
  expectNoError();
}

TEST_F(Lists, BadFormatRowsLeaveTheHeaderAlone) {
  const auto header = makeList(columns({U"a", U"b"}), {{textValue(U"A"), textValue(U"B")}});
  const ObjectHandle format = objectOf(host.call(workbook, 2008));
  const auto with = [&](const Value& second) {
    book().clearLines();
    return populate({listValue(people()), integerValue(3), listValue(header),
                     listValue(makeList(columns({U"a", U"b"}), {{objectValue(format), second}}))});
  };
  expectError(with(integerValue(1)), -102,
              U"Invalid definition in contents of 4th parameter, formatRow.  Expected kObject.", U"$populateFromList");
  EXPECT_EQ(written().size(), 2U);
  const std::u32string unresolved =
      U"Found object in 4th parameter, formatRow, but couldn't resolve object contents in column 2.";
  expectError(with(objectValue(host.construct(classid::format))), -102, unresolved, U"$populateFromList");
  expectError(with(objectValue(workbook)), -102, unresolved, U"$populateFromList");
  EXPECT_EQ(written().size(), 2U);
  // A row that is too short has nothing where an object is expected.
  expectError(populate({listValue(people()), integerValue(3), listValue(header),
                        listValue(makeList(columns({U"a"}), {{objectValue(format)}}))}),
              -102, U"Invalid definition in contents of 4th parameter, formatRow.  Expected kObject.",
              U"$populateFromList");
}

TEST_F(Lists, ParametersAreCheckedBeforeTheBookIsTouched) {
  addSheet(workbook, U"Mine");
  const std::u32string name = U"$populateFromList";
  expectError(populate({}), -102, U"List in 1st parameter not recognized.", name);
  expectError(populate({textValue(U"x")}), -102, U"List in 1st parameter not recognized.", name);
  expectError(populate({listValue(people(), kind::row)}), -102, U"List in 1st parameter not recognized.", name);
  expectError(populate({listValue(people()), integerValue(2)}), -102, U"Missing header row in 3rd parameter.", name);
  expectError(populate({listValue(people()), integerValue(3), textValue(U"x")}), -102,
              U"Missing header row in 3rd parameter.", name);
  expectError(populate({listValue(people()), integerValue(3), listValue(people())}), -102,
              U"Missing format row in 4th parameter.", name);
  expectError(populate({listValue(people()), integerValue(4)}), -104, U"Style 4 is not valid.", name);
  expectError(populate({listValue(people()), integerValue(255)}), -104, U"Style 255 is not valid.", name);
  EXPECT_EQ(book().sheetCount(), 1);
  EXPECT_EQ(sheet().calls.texts["name"], u"Mine");
}

TEST_F(Lists, StylesThatAreNoNumberOrTooGreatCountAsNone) {
  for (const Value& style : {textValue(U"2"), integerValue(256), integerValue(2147483647), integerValue(-3), Value{}}) {
    populate({listValue(people()), style});
    expectNoError();
    EXPECT_EQ(book().last("addFont"), "");
  }
}

TEST_F(Lists, EveryOtherSheetGoesAndAnOnlySheetIsReplaced) {
  const auto namesAfter = [&](int sheets) {
    host.call(workbook, 2000);
    for (int i = 0; i < sheets; ++i) addSheet(workbook, std::u32string(1, U'A' + static_cast<char32_t>(i)).c_str());
    populate({listValue(people())});
    expectNoError();
    std::vector<std::u16string> names;
    for (const auto& s : book().sheets) names.push_back(s->calls.texts["name"]);
    return names;
  };
  using Names = std::vector<std::u16string>;
  EXPECT_EQ(namesAfter(0), (Names{u"Sheet1"}));
  EXPECT_EQ(namesAfter(1), (Names{u"Sheet1"}));
  EXPECT_EQ(namesAfter(2), (Names{u"B", u"Sheet1"}));
  EXPECT_EQ(namesAfter(3), (Names{u"B", u"Sheet1"}));
  EXPECT_EQ(namesAfter(4), (Names{u"B", u"D", u"Sheet1"}));
}

TEST_F(Lists, ABookThatGivesNoSheetIsNoError) {
  book().refusesNewObjects = true;
  EXPECT_FALSE(populate({listValue(people())}).value);
  expectNoError();
}

TEST_F(Lists, DatesShareFormatsAndZeroDatesAreBlanks) {
  Value zero;
  zero.type = kind::date;
  zero.date.dateSet = 0;
  populate({listValue(makeList(columns({U"d"}), {{dateValue(2026, 11, 20)},
                                                 {dateValue(2026, 11, 21)},
                                                 {dateTimeValue(2026, 11, 20, 12, 0, 0)},
                                                 {timeValue(0, 0, 0, 0)},
                                                 {binaryValue("x")},
                                                 {booleanValue(true)},
                                                 {numberValue(0.5)}}))});
  EXPECT_EQ(written(), (std::vector<std::string>{"writeNum(0, 0, 46346, set)", "writeNum(1, 0, 46347, set)",
                                                 "writeNum(2, 0, 46346.5, set)", "writeBlank(3, 0, set)",
                                                 "writeBool(5, 0, true, null, 255)", "writeNum(6, 0, 0.5, null)"}));
  ASSERT_EQ(book().formats.size(), 3U);
  EXPECT_EQ(book().formats[0]->calls.numbers["numFormat"], 14);
  EXPECT_EQ(book().formats[1]->calls.numbers["numFormat"], 22);
  EXPECT_EQ(book().formats[2]->calls.numbers["numFormat"], 18);
}

TEST_F(Lists, AnEmptyListGivesAnEmptySheet) {
  populate({listValue(makeList({}, {}))});
  EXPECT_EQ(book().sheetCount(), 1);
  EXPECT_TRUE(written().empty());
}

class Extraction : public Lists {
 protected:
  // A sheet whose cells are numbers row * 100 + column, 0-based, with text in the header row where a test says so.
  void use(int firstRow, int lastRow, int firstCol, int lastCol) {
    addSheet(workbook);
    CallLog& calls = sheet().calls;
    calls.numbers["firstRow"] = firstRow;
    calls.numbers["lastRow"] = lastRow;
    calls.numbers["firstCol"] = firstCol;
    calls.numbers["lastCol"] = lastCol;
    calls.numbers["cellType"] = static_cast<int>(CellType::number);
    calls.numbers["readNum"] = 1;
  }
  std::shared_ptr<List> extract(std::vector<Value> parameters) {
    const Result result = host.call(workbook, 2017, std::move(parameters));
    expectNoError();
    return result.value ? result.value->list : nullptr;
  }
  std::vector<std::u32string> names(const std::shared_ptr<List>& list) {
    std::vector<std::u32string> result;
    for (const Column& column : list->columns) result.push_back(column.name);
    return result;
  }
  using Names = std::vector<std::u32string>;
};

TEST_F(Extraction, RowsFollowTheStyle) {
  use(0, 3, 0, 2);
  const std::pair<int, std::size_t> rows[] = {{0, 3}, {1, 2}, {2, 2}, {3, 3}, {4, 2}, {5, 2}};
  for (const auto& [style, count] : rows) {
    const auto list = extract({integerValue(style), listValue(people())});
    EXPECT_EQ(list->rows.size(), count) << style;
    EXPECT_EQ(list->columns.size(), 2U) << style;
  }
}

TEST_F(Extraction, NamesFollowTheStyle) {
  use(0, 3, 0, 4);
  EXPECT_TRUE(names(extract({})) == (Names{U"A", U"B", U"C", U"D"}));
  EXPECT_TRUE(names(extract({integerValue(1)})) == (Names{U"A", U"B", U"C", U"D"}));
  EXPECT_TRUE(names(extract({integerValue(2)})) == (Names{U"1", U"1", U"1", U"1"}));
  EXPECT_TRUE(names(extract({integerValue(3), listValue(people())})) == (Names{U"Name", U"Age", U"C", U"D"}));
  EXPECT_TRUE(names(extract({integerValue(4), listValue(people())})) == (Names{U"Name", U"Age", U"C", U"D"}));
  EXPECT_TRUE(names(extract({integerValue(5), listValue(people())})) == (Names{U"Name", U"Age"}));
}

TEST_F(Extraction, AnEmptyHeaderCellGivesTheLetters) {
  use(0, 2, 0, 3);
  sheet().calls.numbers["cellType"] = static_cast<int>(CellType::blank);
  const auto list = extract({integerValue(2)});
  EXPECT_TRUE(names(list) == (Names{U"A", U"B", U"C"}));
  EXPECT_EQ(list->columns[0].type, kind::character);
  EXPECT_EQ(list->columns[0].length, 10000000);
}

TEST_F(Extraction, FirstDataValueDecidesAColumnsKind) {
  use(0, 2, 0, 1);
  sheet().calls.numbers["isDate"] = 1;
  sheet().calls.numbers["readNum"] = 46346;
  const auto list = extract({});
  EXPECT_EQ(list->columns[0].type, kind::date);
  EXPECT_EQ(list->columns[0].subtype, 1);
  EXPECT_EQ(list->columns[0].length, 0);
  EXPECT_EQ(list->at(2, 1).date.year, 2026);
}

TEST_F(Extraction, EveryRowIsReadOnceUntilTheListRefuses) {
  constexpr int kFirstRow = 3;
  use(kFirstRow, kFirstRow + 1, 0, 2);
  for (const int rows : {1, 2, 31, 32, 33, 64, 65, 100}) {
    for (const std::size_t most : {std::size_t{0}, std::size_t{1}, std::size_t{32}, std::size_t{40}, SIZE_MAX}) {
      sheet().calls.numbers["lastRow"] = kFirstRow + rows;
      host.mostRows = most;
      const std::vector<std::string>& lines = book().lines();
      const std::size_t before = lines.size();
      const auto list = extract({});
      std::map<int, int> reads;
      for (std::size_t i = before; i < lines.size(); ++i) {
        if (lines[i].rfind("readNum(", 0) == 0) ++reads[std::stoi(lines[i].substr(8)) - kFirstRow];
      }
      const auto taken = static_cast<int>(std::min(most, static_cast<std::size_t>(rows)));
      ASSERT_EQ(static_cast<int>(list->rows.size()), taken);
      // The first row is read for the kinds of the columns too.
      for (int row = 0; row <= rows; ++row) {
        ASSERT_EQ(reads[row], (row < taken ? 2 : 0) + (row == 0 ? 2 : 0)) << rows << " " << most << " " << row;
      }
      for (int row = 1; row <= taken; ++row) ASSERT_EQ(list->at(row, 2).integer, 1);
    }
  }
}

TEST_F(Extraction, TextsOfTheEngineComeWholeWhateverTheyHold) {
  use(0, 1, 0, 1);
  sheet().calls.numbers["cellType"] = static_cast<int>(CellType::string);
  const auto extracted = [this](std::u16string text) {
    sheet().calls.texts["readStr"] = std::move(text);
    return extract({})->at(1, 1).text;
  };
  for (const std::size_t length : {0U, 1U, 255U, 256U, 257U, 32767U}) {
    EXPECT_TRUE(extracted(std::u16string(length, u'x')) == std::u32string(length, U'x')) << length;
    EXPECT_TRUE(extracted(std::u16string(length, u'x') + u"\u20ac") == std::u32string(length, U'x') + U"\u20ac")
        << length;
    EXPECT_TRUE(extracted(std::u16string(length, u'x') + u"\U0001F375") == std::u32string(length, U'x') + U"\U0001F375")
        << length;
  }
  EXPECT_TRUE(extracted(u"\U0001F375\uFFFFz") == U"\U0001F375\uFFFFz");
  EXPECT_TRUE(extracted({u'a', 0xD83D, u'b', 0xDE00}) == U"a\ufffdb\ufffd");
  sheet().calls.texts.erase("readStr");
  EXPECT_TRUE(extract({})->at(1, 1).text.empty());
}

TEST_F(Extraction, MappedColumnsTakeTheDefinitionAndDropUnknownHeaders) {
  use(0, 2, 0, 2);
  sheet().calls.numbers["cellType"] = static_cast<int>(CellType::string);
  sheet().calls.texts["readStr"] = u"Age";
  auto list = extract({integerValue(5), listValue(people())});
  ASSERT_EQ(list->rows.size(), 1U);
  EXPECT_TRUE(list->at(1, 1).isEmpty());
  EXPECT_TRUE(list->at(1, 2).text == U"Age");
  sheet().calls.texts["readStr"] = u"Unknown";
  list = extract({integerValue(5), listValue(people())});
  EXPECT_TRUE(list->at(1, 1).isEmpty());
  EXPECT_TRUE(list->at(1, 2).isEmpty());
}

TEST_F(Extraction, ValuesOfARangeThatBeginsFurtherRightLandBesideTheirHeadings) {
  use(4, 6, 1, 3);  // columns B and C
  const auto list = extract({});
  EXPECT_TRUE(names(list) == (Names{U"B", U"C"}));
  // Position 1 has no entry, position 2 is sheet column 2: the first value goes nowhere, the second to column 2.
  EXPECT_TRUE(list->at(1, 1).isEmpty());
  EXPECT_EQ(list->at(1, 2).integer, 1);
  book().clearLines();
  extract({});
  const auto& lines = book().lines();
  EXPECT_NE(std::find(lines.begin(), lines.end(), "readNum(4, 2, null)"), lines.end());
  EXPECT_NE(std::find(lines.begin(), lines.end(), "readNum(5, 2, null)"), lines.end());
}

TEST_F(Extraction, MoreThan255ColumnsAreDropped) {
  use(0, 1, 0, 300);
  EXPECT_EQ(extract({})->columns.size(), 255U);
}

TEST_F(Extraction, ASheetWithoutCellsGivesAListWithoutAnything) {
  use(0, 0, 0, 0);
  for (int style = 0; style <= 4; ++style) {
    const auto list = extract({integerValue(style), listValue(people())});
    EXPECT_TRUE(list->rows.empty());
    EXPECT_TRUE(list->columns.empty());
  }
}

TEST_F(Extraction, ParametersAreChecked) {
  const std::u32string name = U"$extractList";
  expectError(host.call(workbook, 2017), -105, U"Invalid sheet count.  Expected greater then 0, got 0.", name);
  use(0, 1, 0, 1);
  expectError(host.call(workbook, 2017, {integerValue(6)}), -102, U"", name);
  for (int style : {3, 4, 5}) {
    expectError(host.call(workbook, 2017, {integerValue(style)}), -102, U"List in 2nd parameter is not recognized.",
                name);
    expectError(host.call(workbook, 2017, {integerValue(style), listValue(people(), kind::row)}), -102,
                U"List in 2nd parameter is not recognized.", name);
  }
  EXPECT_NE(extract({integerValue(256)}), nullptr);
}

}  // namespace
}  // namespace rubrica::host::testing
