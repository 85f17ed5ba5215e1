// A long day of a host: a hundred thousand objects made, copied and destroyed while their books are loaded anew under
// them. What it forgets the leak checker of the sanitizer build shows.
#include "tests/component/component_calls.h"

namespace rubrica::simhost::test {
namespace {

class LongRun : public ComponentCalls, public testing::WithParamInterface<const char*> {
 protected:
  std::string savedBook(const Object& workbook) {
    const Object sheet = objectFrom(workbook, "$addSheet", {Value::utf8("Kept")});
    set(cell(sheet, 1, 1), "$value", Value::integer(1));
    const std::string file = directory.file(std::string("kept.") + GetParam());
    EXPECT_TRUE(call(workbook, "$save", {Value::utf8(file.c_str())}).toBoolean());
    return file;
  }
};

TEST_P(LongRun, AHundredThousandObjectsOfBooksThatAreReplacedAreAllGivenBack) {
  constexpr int kBooks = 200,
                kCellsOfABook = 84;  // with sheet, format and font, and a copy of each cell: 50,000 in a form
  const Object workbook = make("Workbook");
  call(workbook, "$initialize", {constant(std::string("kXL") + GetParam())});
  const std::string file = savedBook(workbook);
  std::vector<Object> survivors;  // of the book before
  std::size_t made = 0;
  for (int round = 0; round < kBooks; ++round) {
    ASSERT_TRUE(call(workbook, "$load", {Value::utf8(file.c_str())}).toBoolean());
    // The children of the book that has just been replaced still reach it, and go now.
    for (const Object& survivor : survivors) ASSERT_EQ(get(survivor, "$value").toInteger(), round - 1);
    survivors.clear();
    const Object sheet = objectFrom(workbook, "$getSheet", {Value::integer(1)});
    const Object format = objectFrom(workbook, "$addFormat");
    const Object font = objectFrom(workbook, "$addFont");
    made += 3;
    for (int row = 1; row <= kCellsOfABook; ++row) {
      const Object one = cell(sheet, row, 2);
      const Object other = cell(sheet, row, 3);
      const Object copy = make("Cell");
      copy->copyFrom(*one);
      set(one, "$value", Value::integer(round));
      ASSERT_EQ(get(copy, "$value").toInteger(), round);
      made += 3;
      if (row % 4 == 0) survivors.push_back(copy);
    }
  }
  EXPECT_GE(made, 50'000U);
  EXPECT_EQ(takeErrors(), "");
}

INSTANTIATE_TEST_SUITE_P(Forms, LongRun, testing::Values("xls", "xlsx"),
                         [](const auto& form) { return std::string(form.param); });

}  // namespace
}  // namespace rubrica::simhost::test
