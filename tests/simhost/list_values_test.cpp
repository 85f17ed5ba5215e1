// The values of a list beyond one block, and texts of every size and kind of character.
#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "simhost/list.h"

namespace rubrica::simhost {
namespace {

constexpr std::size_t kBlock = ColumnValues::kBlock;

List listOf(std::size_t lines) {
  List list;
  list.addColumn({U"n", Kind::Integer, 0, 0});
  for (std::size_t line = 1; line <= lines; ++line) {
    EXPECT_EQ(list.addLine(), line);
    list.at(line, 1) = Value::integer(static_cast<std::int64_t>(line));
  }
  return list;
}

std::vector<std::int64_t> numbersOf(const List& list) {
  std::vector<std::int64_t> numbers;
  for (std::size_t line = 1; line <= list.lineCount(); ++line) numbers.push_back(list.at(line, 1).toInteger());
  return numbers;
}

TEST(ListValues, AreInsertedAndRemovedAcrossBlocks) {
  for (const std::size_t lines : {std::size_t{1}, std::size_t{5}, kBlock - 1, kBlock, kBlock + 1, 3 * kBlock + 7}) {
    List list = listOf(lines);
    std::vector<std::int64_t> expected = numbersOf(list);
    ASSERT_EQ(expected.back(), static_cast<std::int64_t>(lines));
    EXPECT_EQ(list.insertLine(1), 1U);
    expected.insert(expected.begin(), 0);
    EXPECT_EQ(numbersOf(list), expected) << lines;
    list.removeLine(2);
    expected.erase(expected.begin() + 1);
    EXPECT_EQ(numbersOf(list), expected) << lines;
    list.addLine();
    expected.push_back(0);
    EXPECT_EQ(numbersOf(list), expected) << lines;
    list.sort({{1, true}});
    std::sort(expected.rbegin(), expected.rend());
    EXPECT_EQ(numbersOf(list), expected) << lines;
  }
}

TEST(ListValues, OfLinesThatComeBackAreEmpty) {
  for (const std::size_t kept : {std::size_t{0}, std::size_t{3}, kBlock - 1, kBlock, kBlock + 1}) {
    List list = listOf(2 * kBlock + 1);
    std::vector<std::int64_t> expected = numbersOf(list);
    list.setLineCount(kept);
    list.setLineCount(2 * kBlock);
    expected.resize(kept);
    expected.resize(2 * kBlock, 0);
    EXPECT_EQ(numbersOf(list), expected) << kept;
    list.addColumn({U"t", Kind::Character, 0, 0});
    EXPECT_EQ(list.at(2 * kBlock, 2).toUtf8(), "");
  }
}

TEST(TextValues, KeepEveryCharacterAtEveryLength) {
  for (const char32_t last : {U'a', U'\xFF', U'\x100', U'\x1F600'}) {
    for (std::size_t length = 1; length <= 40; ++length) {
      Text text(length, U'x');
      text.back() = last;
      const Value value = Value::text(text);
      EXPECT_EQ(value.textLength(), length);
      Value copy = value;
      const Value moved = std::move(copy);
      EXPECT_EQ(moved.toText(), text);
      copy = moved;
      EXPECT_EQ(copy.toText(), text);
      char32_t first = 0;
      value.copyText(&first, 1);
      EXPECT_EQ(first, text.front());
    }
  }
  EXPECT_EQ(Value::text(U"").textLength(), 0U);
}

TEST(Values, KeepTheEndsOfTheirRanges) {
  for (const std::int64_t number : {INT64_MIN, std::int64_t{-1}, std::int64_t{0}, INT64_MAX}) {
    EXPECT_EQ(Value::integer(number).toInteger(), number);
    EXPECT_EQ(Value::constant(number).toInteger(), number);
    EXPECT_EQ(Value::booleanCode(number).storedBoolean(), number);
  }
  for (const double number : {-1.7976931348623157e308, -0.0, 4.9e-324, 1e300}) {
    EXPECT_EQ(Value::number(number).toNumber(), number);
  }
  for (const int year : {-32768, -1, 0, 2026, 9999, 32767}) {
    const DateTime written = {year, 12, 31, 23, 59, 58, 99, true, false, true, false, shortTime};
    const Value date = Value::date(written);
    const DateTime read = date.toDate();
    EXPECT_EQ(read.year, year);
    EXPECT_EQ(read.month * 100 + read.day, 1231);
    EXPECT_EQ(read.hour * 10000 + read.minute * 100 + read.second, 235958);
    EXPECT_EQ(read.hundredth, 99);
    EXPECT_TRUE(read.hasDate && !read.hasTime && read.hasSeconds && !read.hasHundredths);
    EXPECT_EQ(read.subtype, shortTime);
    EXPECT_EQ(date.dateSubtype(), shortTime);
  }
}

TEST(Values, ThatShareTheirContentAreWrittenToAlone) {
  const Text longText(40, U'x');
  std::vector<Value> values = {Value::text(longText), Value::binary({1, 2, 3}), Value::list(listOf(2)),
                               Value::object(nullptr)};
  for (Value& value : values) {
    const Value copy = value;
    Value other = copy;
    const Value& same = other;
    other = same;
    EXPECT_EQ(other.kind(), copy.kind());
    other = Value::integer(1);
    value.assignText(U"short");
    EXPECT_EQ(value.toUtf8(), "short");
    EXPECT_NE(copy.kind(), Kind::Integer);
    value = copy;
    const Value moved = std::move(value);
    EXPECT_EQ(moved.kind(), copy.kind());
  }
  const Value list = Value::list(listOf(2));
  Value changed = list;
  changed.mutableList().addLine();
  EXPECT_EQ(list.listRef().lineCount(), 2U);
  EXPECT_EQ(changed.listRef().lineCount(), 3U);
  const Value row = changed.as(Kind::List);
  changed.mutableList().addLine();
  EXPECT_EQ(row.listRef().lineCount(), 3U);
}

}  // namespace
}  // namespace rubrica::simhost
