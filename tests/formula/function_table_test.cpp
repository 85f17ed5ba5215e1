#include "formula/function_table.h"

#include <set>

#include <gtest/gtest.h>

#include "tests/formula/fake_book.h"

namespace rubrica::formula {
namespace {

TEST(FunctionTable, Has373RowsWithOneNumberEach) {
  std::set<std::uint16_t> numbers;
  for (const FunctionRow& row : functionRows()) numbers.insert(row.number);
  EXPECT_EQ(functionRows().size(), 373u);
  EXPECT_EQ(numbers.size(), 373u);
  EXPECT_EQ(*numbers.rbegin(), 379);
}

TEST(FunctionTable, NumbersHaveTheGapsOfThePublishedIndexes) {
  for (const int gap : {202, 203, 217, 218, 249, 250, 333, 380, 65535}) {
    EXPECT_EQ(findFunction(static_cast<std::uint16_t>(gap)), nullptr) << gap;
  }
}

TEST(FunctionTable, EveryRowIsFoundByNameAndByNumber) {
  for (const FunctionRow& row : functionRows()) {
    EXPECT_EQ(findFunction(row.name), &row);
    EXPECT_EQ(findFunction(row.number), &row);
  }
}

struct ExpectedRow {
  std::u16string_view name;
  int number;
  int fixedCount;
  std::uint32_t mask;
};

TEST(FunctionTable, RowsCarryNumberCountAndMask) {
  const ExpectedRow expected[] = {
      {u"COUNT", 0, 0, 0x3FFFFFFF},
      {u"IF", 1, 0, 0},
      {u"SUM", 4, 0, 0},
      {u"ROW", 8, 0, 1},
      {u"NPV", 11, 0, 0x3FFFFFFE},
      {u"LOG10", 23, 1, 0},
      {u"LOG", 109, 0, 0},
      {u"TRUE", 34, 0, 0},
      {u"FALSE", 35, 0, 0},
      {u"LINEST", 49, 0, 0xF},
      {u"SERIES", 92, 0, 0x17},
      {u"MIRR", 61, 3, 1},
      {u"CREATE.OBJECT", 236, 0, 0x7FE},
      {u"COUNTIF", 346, 2, 1},
      {u"SUMIF", 345, 0, 5},
      {u"FORMULA.CONVERT", 241, 0, 0x1E},
      {u"RTD", 379, 0, 0},
      {u"USERDEFINED", 255, 0, 0},
      {u"GETPIVOTDATA", 358, 0, 3},
      {u"OFFSET", 78, 0, 1},
      {u"VLOOKUP", 102, 0, 6},
  };
  for (const ExpectedRow& row : expected) {
    const FunctionRow* const found = findFunction(row.name);
    ASSERT_NE(found, nullptr) << row.number;
    EXPECT_EQ(found->number, row.number);
    EXPECT_EQ(found->fixedCount, row.fixedCount) << row.number;
    EXPECT_EQ(found->referenceMask, row.mask) << row.number;
  }
}

TEST(FunctionTable, TheSumsOverAllRowsAreThoseOfThePublishedList) {
  std::uint64_t numbers = 0, counts = 0, masked = 0;
  for (const FunctionRow& row : functionRows()) {
    numbers += row.number;
    counts += row.fixedCount;
    masked += row.referenceMask != 0 ? 1 : 0;
  }
  // All numbers from 0 to 379 less the seven gaps.
  EXPECT_EQ(numbers, 379u * 380u / 2 - (202 + 203 + 217 + 218 + 249 + 250 + 333));
  EXPECT_EQ(counts, 319u);
  EXPECT_EQ(masked, 91u);
}

TEST(FunctionTable, NamesAreComparedExactly) {
  EXPECT_EQ(findFunction(u"sum"), nullptr);
  EXPECT_EQ(findFunction(u"Sum"), nullptr);
  EXPECT_EQ(findFunction(u"SU"), nullptr);
  EXPECT_EQ(findFunction(u"SUMX"), nullptr);
  EXPECT_EQ(findFunction(u""), nullptr);
  EXPECT_EQ(findFunction(u"Ä"), nullptr);
  EXPECT_EQ(findFunction(u"ZZZ"), nullptr);
  EXPECT_EQ(findFunction(u"A"), nullptr);
}

}  // namespace
}  // namespace rubrica::formula
