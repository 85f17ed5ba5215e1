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

}  // namespace
}  // namespace rubrica::simhost
