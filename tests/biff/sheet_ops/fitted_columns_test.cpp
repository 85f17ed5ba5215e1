#include "tests/biff/sheet_ops/sheet_fixture.h"

namespace rubrica::test {
namespace {

constexpr double kNear = 1e-9;

TEST(FittedColumns, TakeTheirWidestCell) {
  TestBook book;
  book.sheet->writeStr(0, 2, u"1234567890");
  book.sheet->writeNum(1, 2, 12345);
  book.sheet->writeBool(2, 2, true);
  EXPECT_TRUE(book.sheet->setCol(2, 2, -1));
  EXPECT_EQ(book.message(), "ok");
  EXPECT_EQ(book.sheet->colWidth(2), 10);
}

TEST(FittedColumns, NumbersAreMeasuredInTheirFormat) {
  TestBook book;
  Format* money = book.book->addFormat(nullptr);
  money->setNumFormat(7);
  book.sheet->writeNum(0, 0, 1.5, money);  // "1.50" and nine blanks
  Format* date = book.book->addFormat(nullptr);
  date->setNumFormat(book.book->addCustomNumFormat(u"dddd"));
  book.sheet->writeNum(0, 1, 1.5, date);
  EXPECT_TRUE(book.sheet->setCol(0, 1, -1));
  EXPECT_EQ(book.sheet->colWidth(0), 13);
  EXPECT_EQ(book.sheet->colWidth(1), 9);
}

TEST(FittedColumns, FormulasAreMeasuredByTheirValues) {
  TestBook book;
  book.sheet->writeFormulaStr(0, 0, u"A2", u"abcdefgh");
  book.sheet->writeFormulaNum(0, 1, u"A2", 123456);
  EXPECT_TRUE(book.sheet->setCol(0, 1, -1));
  EXPECT_EQ(book.sheet->colWidth(0), 8);
  EXPECT_EQ(book.sheet->colWidth(1), 6);
}

TEST(FittedColumns, TheCellsFontIsMeasured) {
  TestBook book;
  auto metrics = std::make_unique<FakeMetrics>();
  FakeMetrics* fake = metrics.get();
  book.book->setTextMetrics(std::move(metrics));
  Format* format = book.book->addFormat(nullptr);
  Font* font = book.book->addFont(nullptr);
  font->setName(u"Carlito");
  font->setSize(20);
  font->setBold(true);
  format->setFont(font);
  book.sheet->writeStr(0, 0, u"1234567", format);
  EXPECT_TRUE(book.sheet->setCol(0, 0, -1));
  EXPECT_EQ(book.sheet->colWidth(0), 9);
  EXPECT_EQ(fake->lastFont.name, u"Carlito");
  EXPECT_EQ(fake->lastFont.points, 20);
  EXPECT_TRUE(fake->lastFont.bold);
}

TEST(FittedColumns, AnEmptyColumnKeepsItsWidth) {
  TestBook book;
  book.sheet->setCol(0, 0, 20);
  EXPECT_TRUE(book.sheet->setCol(0, 1, -1));
  EXPECT_EQ(book.sheet->colWidth(0), 20);
  EXPECT_EQ(book.sheet->colWidth(1), 8);
}

TEST(FittedColumns, TheAreaLimitsWhatIsMeasured) {
  TestBook book;
  book.sheet->writeStr(0, 0, u"a heading far too long for the column");
  book.sheet->writeStr(1, 0, u"12345");
  book.sheet->writeStr(9, 0, u"1234567890");
  book.sheet->setAutoFitArea(1, 0, 8, 0);
  EXPECT_TRUE(book.sheet->setCol(0, 0, -1));
  EXPECT_EQ(book.sheet->colWidth(0), 5);
  book.sheet->setAutoFitArea(1, 0, -1, -1);
  EXPECT_TRUE(book.sheet->setCol(0, 0, -1));
  EXPECT_EQ(book.sheet->colWidth(0), 10);
  book.sheet->setAutoFitArea(0, 1, -1, -1);
  EXPECT_TRUE(book.sheet->setCol(0, 0, -1));
  EXPECT_EQ(book.sheet->colWidth(0), 10);
}

TEST(FittedColumns, NoneIsWiderThanTheFormatAllows) {
  for (const int digit : {1, 2, 5, 7, 12, 13, 29, 60}) {
    TestBook book(digit);
    book.sheet->writeStr(0, 0, std::u16string(30000, u'x').c_str());
    EXPECT_TRUE(book.sheet->setCol(0, 0, -1));
    EXPECT_EQ(book.sheet->colWidth(0), 250) << digit;
  }
}

TEST(FittedColumns, WithoutADigitWidthNothingChanges) {
  TestBook book(0);
  book.sheet->writeStr(0, 0, u"text");
  EXPECT_FALSE(book.sheet->setCol(0, 0, -1));
  EXPECT_TRUE(book.saved(id::kColInfo).empty());
}

// Liberation Sans and Carlito are the metric-compatible families for Arial and Calibri.
TEST(FittedColumns, RealFontsGiveTextItsRoomAndNoMore) {
  const auto metrics = platform::createTextMetrics();
  if (metrics->measure({u"Liberation Sans", 10, false}, u"m").width == 0) GTEST_SKIP() << "no fonts are installed";
  for (const char16_t* family : {u"Arial", u"Calibri"}) {
    TestBook book;
    book.book->setTextMetrics(platform::createTextMetrics());
    book.book->setDefaultFont(family, 11);
    const int digit = book.book->digitWidth();
    const std::u16string text = u"Quarterly figures, northern region";
    book.sheet->writeStr(0, 0, text.c_str());
    ASSERT_TRUE(book.sheet->setCol(0, 0, -1));
    const int pixels = static_cast<int>(book.sheet->colWidth(0) * digit + 0.5);
    const int wanted = metrics->measure({family, 11, false}, text).width;
    EXPECT_GT(wanted, 150);
    EXPECT_GE(pixels, wanted - 1);
    EXPECT_LE(pixels, wanted + 1);
  }
}

}  // namespace
}  // namespace rubrica::test
