// Whole lists into sheets and back, through the built component and its real .xls books: every style of both methods,
// every kind of value, and the ends of a sheet.
#include <gtest/gtest.h>

#include "simhost/component_host.h"
#include "simhost/list.h"

namespace rubrica::simhost::test {
namespace {

enum PopulateStyle { noHeader, definitionHeader, customHeader, customHeaderAndFormat };
enum ExtractStyle { noHeaderIn, ignoreHeader, defineFromHeader, customDefine, customDefineIgnoreHeader, mapFromHeader };

// Names and kinds are in the style that the tests read best: {"name", Kind}.
List listOf(std::vector<std::pair<std::string, Kind>> columns, const std::vector<std::vector<Value>>& lines) {
  List list;
  for (auto& [name, kind] : columns) {
    list.addColumn({textFromUtf8(name), kind, kind == Kind::Date ? dateAndTime : 0, 0});
  }
  for (const auto& line : lines) {
    const std::size_t number = list.addLine();
    for (std::size_t i = 0; i < line.size(); ++i) list.at(number, i + 1) = line[i];
  }
  return list;
}

Value dateOf(const std::string& text, int subtype) {
  DateTime date = *dateFromText(textFromUtf8(text));
  date.subtype = subtype;
  return Value::date(date);
}

class ListStyles : public testing::Test {
 protected:
  ListStyles() : host(SIMHOST_COMPONENT), book(host.create("Workbook")) {
    host.setUnhandledError([this](const std::string&, const std::vector<Value>& values) {
      errors += values[0].toUtf8() + " " + values[2].toUtf8() + "\n";
    });
  }
  void TearDown() override { EXPECT_EQ(errors, ""); }

  static Value call(Instance& object, const char* method, std::vector<Value> values) {
    Arguments arguments{std::move(values), {}};
    arguments.changed.assign(arguments.values.size(), false);
    return object.call(method, arguments);
  }
  void populate(const List& list, std::vector<Value> more = {}) {
    more.insert(more.begin(), Value::list(list));
    call(*book, "$populateWithList", std::move(more));
  }
  List extract(ExtractStyle style, const List* definition = nullptr) {
    std::vector<Value> parameters = {Value::integer(style)};
    if (definition != nullptr) parameters.push_back(Value::list(*definition));
    const Value answer = call(*book, "$extractList", std::move(parameters));
    return answer.isList() ? answer.listRef() : List();
  }
  std::shared_ptr<Instance> sheet(int number = 1) {
    return call(*book, "$getSheet", {Value::integer(number)}).instance();
  }
  std::shared_ptr<Instance> cell(int row, int column, int sheetNumber = 1) {
    return call(*sheet(sheetNumber), "$cell", {Value::integer(row), Value::integer(column)}).instance();
  }
  std::string shown(int row, int column) { return cell(row, column)->property("$value").toUtf8(); }
  void write(int row, int column, const Value& value, int type = -1) {
    call(*cell(row, column), "$setValue", {value, call(*book, "$addFormat", {}), Value::integer(type)});
  }
  static std::string names(const List& list) {
    std::string text;
    for (std::size_t i = 1; i <= list.columnCount(); ++i) text += utf8FromText(list.column(i).name) + " ";
    return text;
  }
  static std::string kinds(const List& list) {
    std::string text;
    for (std::size_t i = 1; i <= list.columnCount(); ++i) text += std::string(kindName(list.column(i).kind)) + " ";
    return text;
  }
  static std::string line(const List& list, std::size_t number) {
    std::string text;
    for (std::size_t i = 1; i <= list.columnCount(); ++i) text += list.at(number, i).toUtf8() + "|";
    return text;
  }

  // A value of each kind that a cell can hold, and one that it can't; in the second line nearly all are empty.
  const List mixed =
      listOf({{"name", Kind::Character},
              {"count", Kind::Integer},
              {"price", Kind::Number},
              {"flag", Kind::Boolean},
              {"day", Kind::Date},
              {"moment", Kind::Date},
              {"clock", Kind::Date},
              {"bytes", Kind::Binary}},
             {{Value::utf8("tea \xF0\x9F\x8D\xB5"), Value::integer(-7), Value::number(2.5), Value::boolean(true),
               dateOf("2026-11-20", shortDate), dateOf("2026-11-20 18:30:15", dateAndTime),
               dateOf("06:45:30", shortTime), Value::binary({1, 2, 3})},
              {Value::utf8(""), Value::integer(0), Value::number(0), Value::boolean(false),
               Value::emptyOf(Kind::Date, shortDate), Value::emptyOf(Kind::Date, dateAndTime),
               Value::emptyOf(Kind::Date, shortTime), Value::binary({})},
              {Value::utf8("coffee"), Value::integer(2147483647), Value::number(-1e-9), Value::boolean(false),
               dateOf("1900-03-01", shortDate), dateOf("1999-12-31 23:59:59", dateAndTime),
               dateOf("23:59:59", shortTime), Value::binary({0})}});

  ComponentHost host;
  std::shared_ptr<Instance> book;
  std::string errors;
};

TEST_F(ListStyles, EveryHeaderStyleWritesTheSameDataBelowItsHeader) {
  List headers = listOf({{"a", Kind::Character}, {"b", Kind::Integer}, {"c", Kind::Date}},
                        {{Value::utf8("Name of it"), Value::integer(2026), dateOf("2026-01-01", shortDate)}});
  List formats;
  for (std::size_t i = 1; i <= mixed.columnCount(); ++i) formats.addColumn({U"f", Kind::Object, 0, 0});
  formats.addLine();
  for (std::size_t i = 1; i <= mixed.columnCount(); ++i) {
    formats.at(1, i) = call(*book, "$addFormat", {});
    formats.at(1, i).instance()->setProperty("$indent", Value::integer(static_cast<int>(i)));
  }
  for (const int style : {noHeader, definitionHeader, customHeader, customHeaderAndFormat}) {
    SCOPED_TRACE(style);
    populate(mixed, {Value::integer(style), Value::row(headers), Value::row(formats)});
    const int first = style == noHeader ? 1 : 2;
    const std::string head = shown(1, 1) + " " + shown(1, 2) + " " + shown(1, 3);
    if (style == definitionHeader) {
      EXPECT_EQ(head, "name count price");
    } else if (style != noHeader) {
      EXPECT_EQ(head, "Name of it 2026 46023") << "the format of a header is no date";
    }
    if (style != noHeader) {
      EXPECT_TRUE(cell(1, 1)->property("$font").instance()->property("$bold").toBoolean());
      EXPECT_EQ(cell(1, 2)->property("$font").instance()->property("$size").toInteger(), 11);
      EXPECT_TRUE(cell(1, 1)->property("$format").instance()->property("$wrap").toBoolean());
    }
    EXPECT_EQ(shown(first, 1), "tea \xF0\x9F\x8D\xB5");
    EXPECT_EQ(shown(first, 2), "-7");
    EXPECT_EQ(shown(first, 3), "2.5");
    EXPECT_EQ(cell(first, 4)->property("$value").kind(), Kind::Boolean);
    EXPECT_EQ(shown(first, 4), "YES");
    EXPECT_EQ(shown(first + 2, 2), "2147483647");
    EXPECT_EQ(shown(first + 2, 3), "-0.000000001");
    // What a cell can't hold leaves no cell; the used range ends before it.
    EXPECT_EQ(sheet()->property("$lastCol").toInteger() - 1, style == definitionHeader ? 8 : 7);
    EXPECT_EQ(sheet()->property("$lastRow").toInteger() - 1, first + 2);
    // A format that is given is taken also for a date, which then is a number to whoever reads it.
    const auto indent = [&](int column) {
      return cell(first, column)->property("$format").instance()->property("$indent").toInteger();
    };
    if (style == customHeaderAndFormat) {
      for (int column = 1; column <= 7; ++column) EXPECT_EQ(indent(column), column);
      EXPECT_EQ(shown(first, 5), "46346");
    } else {
      EXPECT_EQ(indent(1), 0);
      EXPECT_EQ(shown(first, 5), "2026-11-20");
      EXPECT_EQ(shown(first, 6), "2026-11-20 18:30:15");
      EXPECT_EQ(shown(first, 7), "06:45:30");
      EXPECT_EQ(shown(first + 2, 5), "1900-03-01");
      EXPECT_EQ(shown(first + 2, 7), "23:59:59");
      for (const int column : {5, 6, 7}) EXPECT_EQ(shown(first + 1, column), "") << "an empty date is a blank";
      const auto format = [&](int row, int column) {
        return cell(row, column)->property("$format").instance()->property("$numFormat").toInteger();
      };
      EXPECT_EQ(format(first, 5), host.constant("kXLNumFormatDate")->toInteger());
      EXPECT_EQ(format(first, 6), host.constant("kXLNumFormatCustom_mdyyyy_hmm")->toInteger());
      EXPECT_EQ(format(first, 7), host.constant("kXLNumFormatCustom_hmm_am")->toInteger());
    }
  }
}

TEST_F(ListStyles, DatesOfOneKindShareOneFormatHoweverManyTheyAre) {
  List days = listOf({{"day", Kind::Date}}, {});
  for (int i = 0; i < 500; ++i) {
    days.at(days.addLine(), 1) = i % 2 == 0 ? dateOf("2026-11-20", shortDate) : dateOf("2026-11-20 12:00", dateAndTime);
  }
  const std::int64_t before = book->property("$formatSize").toInteger();
  populate(days);
  EXPECT_EQ(book->property("$formatSize").toInteger(), before + 2);
  populate(days);
  EXPECT_EQ(book->property("$formatSize").toInteger(), before + 2);
}

TEST_F(ListStyles, EveryExtractionStyleNamesAndReadsAsItSays) {
  const List fruit = listOf({{"fruit", Kind::Character}, {"price", Kind::Number}, {"picked", Kind::Date}},
                            {{Value::utf8("pear"), Value::number(2.75), dateOf("2026-09-01", shortDate)},
                             {Value::utf8("plum"), Value::number(4), dateOf("2026-08-15", shortDate)}});
  populate(fruit, {Value::integer(definitionHeader)});
  const List definition = listOf({{"price", Kind::Character}, {"sort", Kind::Integer}, {"fruit", Kind::Character}}, {});

  List list = extract(noHeaderIn);
  EXPECT_EQ(names(list), "A B C ");
  EXPECT_EQ(kinds(list), "Character Character Character ");
  EXPECT_EQ(list.lineCount(), 3u);
  EXPECT_EQ(line(list, 1), "fruit|price|picked|");
  EXPECT_EQ(line(list, 2), "pear|2.75|2026-09-01|") << "values of another kind come as the host's text of them";
  EXPECT_EQ(list.column(1).length, host::kLongTextLength);

  list = extract(ignoreHeader);
  EXPECT_EQ(names(list), "A B C ");
  EXPECT_EQ(kinds(list), "Character Number Date ");
  EXPECT_EQ(list.lineCount(), 2u);
  EXPECT_EQ(line(list, 2), "plum|4|2026-08-15|");
  EXPECT_EQ(list.column(2).length, 0);

  list = extract(defineFromHeader);
  EXPECT_EQ(names(list), "fruit price picked ");
  EXPECT_EQ(kinds(list), "Character Number Date ");
  EXPECT_EQ(line(list, 1), "pear|2.75|2026-09-01|");

  list = extract(customDefine, &definition);
  EXPECT_EQ(names(list), "price sort fruit ");
  EXPECT_EQ(kinds(list), "Character Character Character ");
  EXPECT_EQ(list.lineCount(), 3u);

  list = extract(customDefineIgnoreHeader, &definition);
  EXPECT_EQ(names(list), "price sort fruit ");
  EXPECT_EQ(kinds(list), "Character Number Date ") << "the definition names the columns, the data gives their kinds";
  EXPECT_EQ(line(list, 1), "pear|2.75|2026-09-01|");

  list = extract(mapFromHeader, &definition);
  EXPECT_EQ(names(list), "price sort fruit ");
  EXPECT_EQ(kinds(list), "Character Integer Character ");
  EXPECT_EQ(list.lineCount(), 2u);
  EXPECT_EQ(line(list, 1), "2.75|0|pear|");
  EXPECT_EQ(line(list, 2), "4|0|plum|");
}

TEST_F(ListStyles, ADefinitionThatIsTooShortLeavesLettersToTheRest) {
  populate(listOf({{"a", Kind::Integer}, {"b", Kind::Integer}, {"c", Kind::Integer}},
                  {{Value::integer(1), Value::integer(2), Value::integer(3)}}));
  const List one = listOf({{"only", Kind::Character}}, {});
  EXPECT_EQ(names(extract(customDefine, &one)), "only B C ");
  EXPECT_EQ(names(extract(customDefineIgnoreHeader, &one)), "only B C ");
  const List none;
  EXPECT_EQ(names(extract(customDefine, &none)), "A B C ");
}

TEST_F(ListStyles, FirstDataCellDecidesTheKindOfAColumnOfMixedValues) {
  call(*book, "$addSheet", {Value::utf8("Mixed")});
  // Column 1 begins with a number, column 2 with nothing, column 3 with a date, column 4 with a boolean.
  write(1, 1, Value::number(1.5));
  write(2, 1, Value::utf8("12.5 kg"));
  write(3, 1, Value::utf8("none"));
  write(4, 1, Value::boolean(true));
  write(2, 2, Value::number(0.25));
  write(3, 2, Value::integer(7));
  write(4, 2, Value::boolean(true));
  const Value day = call(*book, "$addFormat", {});
  day.instance()->setProperty("$numFormat", *host.constant("kXLNumFormatDate"));
  call(*cell(1, 3), "$setValue", {dateOf("2026-11-20", shortDate), day, Value::integer(5)});
  write(2, 3, Value::utf8("2026-11-21"));
  write(3, 3, Value::utf8("not a day"));
  write(1, 4, Value::boolean(true));
  write(2, 4, Value::integer(0));
  write(3, 4, Value::utf8("YES"));
  const List list = extract(noHeaderIn);
  EXPECT_EQ(kinds(list), "Number Character Date Boolean ");
  EXPECT_EQ(line(list, 1), "1.5||2026-11-20|YES|");
  EXPECT_EQ(line(list, 2), "12.5|0.25|2026-11-21||");
  EXPECT_EQ(line(list, 3), "0|7||YES|");
  EXPECT_EQ(line(list, 4), "1|YES|||");
}

TEST_F(ListStyles, GapsAndErrorsComeAsNothing) {
  call(*book, "$addSheet", {Value::utf8("Gaps")});
  write(1, 1, Value::utf8("a"));
  write(1, 3, Value::utf8("c"));
  write(4, 1, Value::utf8("last"));
  call(*cell(4, 3), "$writeFormula", {Value::utf8("#N/A")});
  write(3, 2, Value::utf8(""), 6);
  const List list = extract(defineFromHeader);
  EXPECT_EQ(names(list), "a B c ");
  EXPECT_EQ(list.lineCount(), 3u);
  EXPECT_EQ(line(list, 1), "|||");
  EXPECT_EQ(line(list, 3), "last|||");
}

TEST_F(ListStyles, OnlyTheFirstSheetIsRead) {
  call(*book, "$addSheet", {Value::utf8("First")});
  call(*book, "$addSheet", {Value::utf8("Second")});
  write(1, 1, Value::utf8("from the first"));
  call(*cell(1, 1, 2), "$setValue", {Value::utf8("from the second")});
  const List list = extract(noHeaderIn);
  EXPECT_EQ(list.lineCount(), 1u);
  EXPECT_EQ(line(list, 1), "from the first|");
}

TEST_F(ListStyles, ASheetWithoutCellsGivesNothingButWhatTheDefinitionHas) {
  call(*book, "$addSheet", {Value::utf8("Empty")});
  const List definition = listOf({{"x", Kind::Integer}, {"y", Kind::Date}}, {});
  for (const ExtractStyle style :
       {noHeaderIn, ignoreHeader, defineFromHeader, customDefine, customDefineIgnoreHeader, mapFromHeader}) {
    const List list = extract(style, &definition);
    EXPECT_EQ(list.lineCount(), 0u) << style;
    EXPECT_EQ(list.columnCount(), style == mapFromHeader ? 2u : 0u) << style;
  }
}

TEST_F(ListStyles, AHeaderWithoutDataGivesColumnsWithoutLines) {
  populate(listOf({{"x", Kind::Integer}, {"y", Kind::Number}}, {}), {Value::integer(definitionHeader)});
  const List definition = listOf({{"y", Kind::Number}}, {});
  EXPECT_EQ(names(extract(defineFromHeader)), "x y ");
  EXPECT_EQ(extract(defineFromHeader).lineCount(), 0u);
  EXPECT_EQ(extract(mapFromHeader, &definition).lineCount(), 0u);
  EXPECT_EQ(extract(noHeaderIn).lineCount(), 1u);
}

// 65,536 rows are all that a sheet has: what is beyond fails in silence.
TEST_F(ListStyles, RowsFillTheSheetAndWhatIsBeyondIsLost) {
  constexpr std::size_t kSheetRows = 65536;
  List numbers = listOf({{"n", Kind::Integer}}, {});
  const auto fillTo = [&](std::size_t count) {
    while (numbers.lineCount() < count) {
      const std::size_t at = numbers.addLine();
      numbers.at(at, 1) = Value::integer(static_cast<int>(at));
    }
  };
  for (const std::size_t count : {kSheetRows - 1, kSheetRows, kSheetRows + 1, std::size_t{70000}}) {
    fillTo(count);
    populate(numbers);
    List back = extract(noHeaderIn);
    EXPECT_EQ(back.lineCount(), std::min(count, kSheetRows)) << count;
    EXPECT_EQ(back.at(back.lineCount(), 1).toInteger(), static_cast<std::int64_t>(back.lineCount()));
    populate(numbers, {Value::integer(definitionHeader)});
    back = extract(defineFromHeader);
    EXPECT_EQ(back.lineCount(), std::min(count, kSheetRows - 1)) << count;
    EXPECT_EQ(names(back), "n ");
    EXPECT_EQ(back.at(back.lineCount(), 1).toInteger(), static_cast<std::int64_t>(back.lineCount()));
  }
}

// A sheet has 256 columns, and a list takes 255 of them.
TEST_F(ListStyles, ThreeHundredColumnsAreCutToTheSheetAndThenToTheList) {
  List wide;
  for (int i = 1; i <= 300; ++i) wide.addColumn({textFromUtf8("c" + std::to_string(i)), Kind::Integer, 0, 0});
  for (int row = 0; row < 3; ++row) {
    const std::size_t at = wide.addLine();
    for (std::size_t i = 1; i <= 300; ++i) wide.at(at, i) = Value::integer(row * 1000 + static_cast<int>(i));
  }
  populate(wide, {Value::integer(definitionHeader)});
  EXPECT_EQ(sheet()->property("$lastCol").toInteger() - 1, 256);
  for (const ExtractStyle style :
       {noHeaderIn, ignoreHeader, defineFromHeader, customDefine, customDefineIgnoreHeader}) {
    const List list = extract(style, &wide);
    EXPECT_EQ(list.columnCount(), 255u) << style;
    EXPECT_EQ(list.at(list.lineCount(), 255).toInteger(), 2255) << style;
  }
  const List mapped = extract(mapFromHeader, &wide);
  EXPECT_EQ(mapped.columnCount(), 255u);
  EXPECT_EQ(mapped.at(1, 255).toInteger(), 255);
  // Narrow again: a header found far right maps to a column of the definition's own number.
  const List one = listOf({{"c200", Kind::Integer}}, {});
  const List column = extract(mapFromHeader, &one);
  EXPECT_EQ(column.columnCount(), 1u);
  EXPECT_EQ(column.at(3, 1).toInteger(), 2200);
}

TEST_F(ListStyles, AListComesBackFromASavedBook) {
  populate(mixed, {Value::integer(definitionHeader)});
  Arguments saved{{Value::binary({})}, {false}};
  ASSERT_TRUE(book->call("$saveRaw", saved).toBoolean());
  ASSERT_TRUE(call(*book, "$loadRaw", {saved.values[0]}).toBoolean());
  const List back = extract(defineFromHeader);
  EXPECT_EQ(names(back), "name count price flag day moment clock bytes ");
  EXPECT_EQ(line(back, 1), "tea \xF0\x9F\x8D\xB5|-7|2.5|YES|2026-11-20|2026-11-20 18:30:15|06:45:30||");
  EXPECT_EQ(line(back, 3), "coffee|2147483647|-0.000000001|NO|1900-03-01|1999-12-31 23:59:59|23:59:59||");
}

TEST_F(ListStyles, TextsOfEveryLengthAndKindOfCharacterComeBack) {
  std::vector<Text> texts = {U"a\xFFz", U"\xD7FF\xE000\xFFFF", U"\x1F375 first", U"in the \x1F375 middle"};
  for (const std::size_t length : {1U, 8U, 12U, 13U, 16U, 255U, 256U, 257U, 32765U}) {
    for (const Text last : {U"x", U"\xFF", U"\x20AC", U"\x1F375"}) texts.push_back(Text(length, U'x') + last);
  }
  texts.push_back(Text(32767, U'x'));
  List list = listOf({{"text", Kind::Character}}, {});
  for (const Text& text : texts) list.at(list.addLine(), 1) = Value::text(text);
  populate(list);
  const List back = extract(noHeaderIn);
  ASSERT_EQ(back.lineCount(), texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_TRUE(back.at(i + 1, 1).toText() == texts[i]) << i;
}

TEST_F(ListStyles, TextsThatNoCellHoldsComeBackAsFarAsOneDoes) {
  const char32_t lone[] = {U'a', 0xD83D, U'b', 0x110000};
  const std::vector<std::vector<Value>> lines = {{Value::text({lone, 4})},
                                                 {Value::text(TextView(U"before\0after", 12))},
                                                 {Value::utf8("")},
                                                 {Value::text(Text(32768, U'x'))},
                                                 {Value::utf8("last")}};
  populate(listOf({{"text", Kind::Character}}, lines));
  const List back = extract(noHeaderIn);
  EXPECT_TRUE(back.at(1, 1).toText() == U"a\xFFFD\x62\xFFFD");
  EXPECT_EQ(back.at(2, 1).toUtf8(), "before");
  EXPECT_EQ(back.at(3, 1).toUtf8(), "");
  EXPECT_EQ(back.at(4, 1).toUtf8(), "");
  EXPECT_EQ(back.at(5, 1).toUtf8(), "last");
}

TEST_F(ListStyles, SheetsOfADroppedBookAreNotSaved) {
  call(*book, "$addSheet", {Value::utf8("Former")});
  const auto former = cell(1, 1);
  EXPECT_FALSE(call(*book, "$load", {Value::utf8("/nowhere/at/all.xls")}).toBoolean());
  call(*former, "$setValue", {Value::utf8("late")});
  EXPECT_EQ(former->property("$value").toUtf8(), "late");
  call(*book, "$addSheet", {Value::utf8("New")});
  Arguments saved{{Value::binary({})}, {false}};
  ASSERT_TRUE(book->call("$saveRaw", saved).toBoolean());
  ASSERT_TRUE(call(*book, "$loadRaw", {saved.values[0]}).toBoolean());
  EXPECT_EQ(book->property("$sheetCount").toInteger(), 1);
  EXPECT_EQ(shown(1, 1), "");
}

}  // namespace
}  // namespace rubrica::simhost::test
