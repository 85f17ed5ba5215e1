// Ranges below zero, beyond the sheet and back to front, given to every operation that takes one: a message, and the
// book is byte for byte what it was.
#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "tests/support/sample_book.h"

namespace rubrica {
namespace {

using test::BookForm;

struct RangeOperation {
  const char* name;
  std::function<void(Sheet&, int rowFirst, int rowLast, int colFirst, int colLast)> apply;
  bool usesRows, usesCols;
  bool takesReversed = false;  // orders its ends instead of refusing
};

const RangeOperation kOperations[] = {
    {"setMerge", [](Sheet& s, int r1, int r2, int c1, int c2) { s.setMerge(r1, r2, c1, c2); }, true, true},
    {"setCol", [](Sheet& s, int, int, int c1, int c2) { s.setCol(c1, c2, 12); }, false, true},
    {"groupRows", [](Sheet& s, int r1, int r2, int, int) { s.groupRows(r1, r2); }, true, false},
    {"groupCols", [](Sheet& s, int, int, int c1, int c2) { s.groupCols(c1, c2); }, false, true},
    {"clear", [](Sheet& s, int r1, int r2, int c1, int c2) { s.clear(r1, r2, c1, c2); }, true, true},
    {"insertRow", [](Sheet& s, int r1, int r2, int, int) { s.insertRow(r1, r2); }, true, false},
    {"insertCol", [](Sheet& s, int, int, int c1, int c2) { s.insertCol(c1, c2); }, false, true},
    {"removeRow", [](Sheet& s, int r1, int r2, int, int) { s.removeRow(r1, r2); }, true, false},
    {"removeCol", [](Sheet& s, int, int, int c1, int c2) { s.removeCol(c1, c2); }, false, true},
    {"setPrintArea", [](Sheet& s, int r1, int r2, int c1, int c2) { s.setPrintArea(r1, r2, c1, c2); }, true, true,
     true},
    {"setPrintRepeatRows", [](Sheet& s, int r1, int r2, int, int) { s.setPrintRepeatRows(r1, r2); }, true, false, true},
    {"setPrintRepeatCols", [](Sheet& s, int, int, int c1, int c2) { s.setPrintRepeatCols(c1, c2); }, false, true, true},
    {"setNamedRange", [](Sheet& s, int r1, int r2, int c1, int c2) { s.setNamedRange(u"bad", r1, r2, c1, c2); }, true,
     true, true},
    {"addHyperlink", [](Sheet& s, int r1, int r2, int c1, int c2) { s.addHyperlink(u"http://x", r1, r2, c1, c2); },
     true, true, true},
    {"addIgnoredError", [](Sheet& s, int r1, int r2, int c1, int c2) { s.addIgnoredError(r1, c1, r2, c2, 4); }, true,
     true, true},
};

class BadRanges : public testing::TestWithParam<BookForm> {
 protected:
  int rows() const { return GetParam().rows; }
  int cols() const { return GetParam().cols; }

  void expectRefused(const RangeOperation& operation, int r1, int r2, int c1, int c2) {
    const BookPtr book(GetParam().create());
    test::fillSample(*book);
    const std::string before = test::savedBytes(*book);
    operation.apply(*book->getSheet(0), r1, r2, c1, c2);
    EXPECT_STRNE(book->errorMessage(), "ok") << operation.name << " " << r1 << ".." << r2 << ", " << c1 << ".." << c2;
    EXPECT_TRUE(test::savedBytes(*book) == before)
        << operation.name << " " << r1 << ".." << r2 << ", " << c1 << ".." << c2 << " changed the book";
  }
};

TEST_P(BadRanges, BelowZeroAndBeyondTheSheetChangeNothing) {
  constexpr int kLeast = std::numeric_limits<int>::min(), kMost = std::numeric_limits<int>::max();
  for (const RangeOperation& operation : kOperations) {
    if (operation.usesRows) {
      for (const auto& [first, last] :
           {std::pair{-1, 2}, {kLeast, 2}, {2, rows()}, {2, kMost}, {rows(), rows()}, {-5, -3}}) {
        expectRefused(operation, first, last, 1, 2);
      }
    }
    if (operation.usesCols) {
      for (const auto& [first, last] :
           {std::pair{-1, 2}, {kLeast, 2}, {2, cols()}, {2, kMost}, {cols(), cols()}, {-5, -3}}) {
        expectRefused(operation, 1, 2, first, last);
      }
    }
  }
}

TEST_P(BadRanges, BackToFrontChangesNothing) {
  for (const RangeOperation& operation : kOperations) {
    if (operation.takesReversed) continue;
    if (operation.usesRows) expectRefused(operation, 5, 2, 1, 2);
    if (operation.usesCols) expectRefused(operation, 1, 2, 5, 2);
  }
}

TEST_P(BadRanges, TheWholeSheetIsNoBadRange) {
  const BookPtr book(GetParam().create());
  Sheet* sheet = book->addSheet(u"S");
  EXPECT_TRUE(sheet->setMerge(0, rows() - 1, 0, cols() - 1)) << book->errorMessage();
  EXPECT_TRUE(sheet->setCol(0, cols() - 1, 12)) << book->errorMessage();
  sheet->setPrintArea(0, rows() - 1, 0, cols() - 1);
  EXPECT_STREQ(book->errorMessage(), "ok");
  const std::string bytes = test::savedBytes(*book);
  const BookPtr again(GetParam().create());
  ASSERT_TRUE(again->loadRaw(bytes.data(), bytes.size())) << again->errorMessage();
  int r1 = 0, r2 = 0, c1 = 0, c2 = 0;
  ASSERT_TRUE(again->getSheet(0)->merge(0, &r1, &r2, &c1, &c2));
  EXPECT_EQ(r2, rows() - 1);
  EXPECT_EQ(c2, cols() - 1);
}

TEST_P(BadRanges, AnEighthOutlineLevelOfColumnsIsRefused) {
  const BookPtr book(GetParam().create());
  Sheet* sheet = book->addSheet(u"S");
  for (int level = 0; level < 7; ++level) ASSERT_TRUE(sheet->groupCols(2, 4, false)) << book->errorMessage();
  const std::string before = test::savedBytes(*book);
  EXPECT_FALSE(sheet->groupCols(2, 4, false));
  EXPECT_STREQ(book->errorMessage(), "exceeded outline level");
  EXPECT_TRUE(test::savedBytes(*book) == before);
}

TEST_P(BadRanges, AMillionMergesAreKept) {
  constexpr int kMerges = 1'000'000, kPerRow = 100;
  const BookPtr book(GetParam().create());
  Sheet* sheet = book->addSheet(u"S");
  for (int i = 0; i < kMerges; ++i) {
    const int row = i / kPerRow, col = i % kPerRow * 2;
    ASSERT_TRUE(sheet->setMerge(row, row, col, col + 1)) << i << book->errorMessage();
  }
  const std::string bytes = test::savedBytes(*book);
  const BookPtr again(GetParam().create());
  ASSERT_TRUE(again->loadRaw(bytes.data(), bytes.size())) << again->errorMessage();
  EXPECT_EQ(again->getSheet(0)->mergeSize(), kMerges);
  int r1 = 0, r2 = 0, c1 = 0, c2 = 0;
  ASSERT_TRUE(again->getSheet(0)->merge(kMerges - 1, &r1, &r2, &c1, &c2));
  EXPECT_EQ(r1, kMerges / kPerRow - 1);
  EXPECT_EQ(c1, 198);
}

INSTANTIATE_TEST_SUITE_P(Forms, BadRanges, testing::ValuesIn(test::kBookForms),
                         [](const auto& form) { return std::string(form.param.name); });

}  // namespace
}  // namespace rubrica
